// The clip list window's own moving and resizing (it has no frame) and the drag list's
// reordering of rows.
#include "listwindow/win32/ListWindow.h"

#include "platform/win32/CommonControls.h"

namespace mq::win32 {

namespace {
const wchar_t* CursorFor(Grab grab) {
  switch (grab) {
    case Grab::Left:
    case Grab::Right: return IDC_SIZEWE;
    case Grab::Top:
    case Grab::Bottom: return IDC_SIZENS;
    case Grab::TopLeft:
    case Grab::BottomRight: return IDC_SIZENWSE;
    case Grab::TopRight:
    case Grab::BottomLeft: return IDC_SIZENESW;
    case Grab::None: break;
  }
  return IDC_ARROW;
}

// Runs the messages that are waiting; false once the program is asked to quit.
bool PumpPending() {
  MSG msg;
  while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
    if (msg.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(msg.wParam));
      return false;
    }
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  return true;
}
}  // namespace

int ListWindow::GrabBandPixels() const {
  // 5 or 3 pixels at 96 DPI; at higher DPI the band keeps its size on the screen.
  return ScaleToDpi(model_.layout.GrabBandPixels(), dpi_);
}

bool ListWindow::SetSizingCursor() {
  if (dragging_) return true;  // the drag chose its cursor
  POINT p;
  GetCursorPos(&p);
  ScreenToClient(hwnd(), &p);
  RECT client{};
  GetClientRect(hwnd(), &client);
  int band = GrabBandPixels();
  SetCursor(LoadCursorW(nullptr, CursorFor(HitTest(p.x, p.y, {client.right, client.bottom}, band, band))));
  return true;
}

// The left button is polled rather than captured: Wine: a window that moves itself while it
// holds the capture loses it after the first move. Messages keep running between polls, so
// clipboard changes and hotkeys are handled during the drag.
void ListWindow::DragLoop(Grab grab) {
  RECT start{};
  GetWindowRect(hwnd(), &start);
  const Rect from{start.left, start.top, start.right - start.left, start.bottom - start.top};
  POINT cursor;
  GetCursorPos(&cursor);
  const POINT offset{cursor.x - from.left, cursor.y - from.top};
  if (grab == Grab::None) {
    SetCursor(LoadCursorW(nullptr, IDC_SIZEALL));
  } else {
    int x = cursor.x, y = cursor.y;
    GrabPoint(grab, from, x, y);
    SetCursorPos(x, y);
    SetCursor(LoadCursorW(nullptr, CursorFor(grab)));
  }
  const int band = GrabBandPixels();
  const Size minTwips = model_.layout.MinimumSize();
  const Size minimum{std::max(PixelsFromTwips(minTwips.width, dpi_), 2 * band + 1),
                     std::max(PixelsFromTwips(minTwips.height, dpi_), 2 * band + 1)};
  const int button = GetSystemMetrics(SM_SWAPBUTTON) ? VK_RBUTTON : VK_LBUTTON;
  dragging_ = true;
  Rect last = from;
  while (GetAsyncKeyState(button) & 0x8000) {
    if (!PumpPending() || !hwnd()) break;
    GetCursorPos(&cursor);
    Rect r = grab == Grab::None
                 ? Rect{cursor.x - offset.x, cursor.y - offset.y, from.width, from.height}
                 : DragRect(grab, from, cursor.x, cursor.y, minimum);
    if (r != last) {
      SetWindowPos(hwnd(), nullptr, r.left, r.top, r.width, r.height,
                   SWP_NOZORDER | SWP_NOACTIVATE | (r.width == last.width && r.height == last.height ? SWP_NOSIZE : 0));
      last = r;
    }
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
  }
  dragging_ = false;
}

void ListWindow::OnUserMoveOrSize() {
  if (!hwnd() || !model_.Loaded()) return;
  RECT r{};
  GetWindowRect(hwnd(), &r);
  Rect twips{TwipsFromPixels(r.left, dpi_), TwipsFromPixels(r.top, dpi_),
             TwipsFromPixels(r.right - r.left, dpi_), TwipsFromPixels(r.bottom - r.top, dpi_)};
  const Rect& now = model_.layout.window;
  if (twips.width == now.width && twips.height == now.height) {
    model_.WindowMoved(twips.left, twips.top);
  } else {
    model_.WindowResized(twips, IsIconic(hwnd()) != FALSE);
  }
}

int ListWindow::DropIndex(POINT screen) const {
  int item = comctl::LBItemFromPt(lstClip(), screen, TRUE);
  if (item >= 0) return item;
  // Below the last row, inside the list: the end of the queue.
  RECT client{};
  GetClientRect(lstClip(), &client);
  POINT p = screen;
  ScreenToClient(lstClip(), &p);
  return PtInRect(&client, p) ? static_cast<int>(SendMessageW(lstClip(), LB_GETCOUNT, 0, 0)) : -1;
}

LRESULT ListWindow::OnDragList(const DRAGLISTINFO& info) {
  switch (info.uNotification) {
    case DL_BEGINDRAG:
      dragFrom_ = comctl::LBItemFromPt(lstClip(), info.ptCursor, FALSE);
      return dragFrom_ >= 0;
    case DL_DRAGGING: {
      int at = DropIndex(info.ptCursor);
      comctl::DrawInsert(hwnd(), lstClip(), at);
      return at < 0 ? DL_STOPCURSOR : DL_MOVECURSOR;
    }
    case DL_DROPPED: {
      int at = DropIndex(info.ptCursor);
      comctl::DrawInsert(hwnd(), lstClip(), -1);
      if (at >= 0 && dragFrom_ >= 0 && at != dragFrom_) model_.lstClip_Dropped(dragFrom_, at);
      dragFrom_ = -1;
      return 0;
    }
    case DL_CANCELDRAG:
      comctl::DrawInsert(hwnd(), lstClip(), -1);
      dragFrom_ = -1;
      return 0;
    default:
      return 0;
  }
}

}  // namespace mq::win32
