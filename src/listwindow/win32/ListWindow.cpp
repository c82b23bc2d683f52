#include "listwindow/win32/ListWindow.h"

#include "platform/win32/CommonControls.h"
#include "platform/win32/Strings.h"
#include "resource.h"

namespace mq::win32 {

namespace {
constexpr wchar_t kClassName[] = L"MarquillClipList";
constexpr int kFirstId = 100;
constexpr COLORREF kBorderColour = RGB(60, 90, 140);
constexpr COLORREF kPressedColour = RGB(200, 221, 245);

struct ControlText {
  Ctl control;
  const wchar_t* caption;
  const wchar_t* tip;  // null: none, or the model's (the toggles)
};
// In tab order: top to bottom as the expanded view shows them.
constexpr ControlText kControls[] = {
    {Ctl::lstClip, L"", nullptr},
    {chkMenu(0), L"", nullptr},
    {chkMenu(1), L"", nullptr},
    {chkMenu(2), L"", nullptr},
    {cmdFile(1), L"Load List", L"Load List"},
    {cmdFile(0), L"Save List", L"Save List"},
    {cmdOp(2), L"De-&Format", L"Purge formatting of selected list item"},
    {cmdOp(3), L"Con&vert", L"Convert selected list item"},
    {Ctl::cbOp, L"", L"Select desired conversion mode for selected list item"},
    {cmdOp(1), L"D&uplicate", nullptr},
    {cmdOp(0), L"&Delete", L"Delete selected list item"},
    {Ctl::cmdNoSel, L"&Clear List", L"Clear all list entries"},
    {chkMenu(3), L"&D", L"Delete selected list item"},
    {chkMenu(4), L"&C", L"Clear all list entries"},
};

bool IsImageButton(Ctl c) {
  return c == chkMenu(0) || c == chkMenu(1) || c == chkMenu(2) || c == cmdFile(0) ||
         c == cmdFile(1);
}
}  // namespace

ListWindow::ListWindow(frmList& model, bool layeredWindows)
    : model_(model), layered_(layeredWindows) {}

ListWindow::~ListWindow() {
  model_.lstClip.SetObserver(nullptr);
  model_.SetViewer(nullptr);
  viewer_.Close();
  Destroy();
}

void ListWindow::Prepare() {
  // The design position, the work area's bottom right corner, is where saved geometry
  // starts from, so the model has it before it first loads.
  const UINT dpi = DpiOfSystem();
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  const Size design = ListLayout::kDesignSize;
  const int margin = ScaleToDpi(16, dpi);
  const int left = work.right - PixelsFromTwips(design.width, dpi) - margin;
  const int top = work.bottom - PixelsFromTwips(design.height, dpi) - margin;
  model_.SetTwipsPerPixel(1440.0 / dpi, 1440.0 / dpi);
  model_.layout.window.left = TwipsFromPixels(left, dpi);
  model_.layout.window.top = TwipsFromPixels(top, dpi);
  model_.SetViewer(&viewer_);
  model_.lstClip.SetObserver(this);
}

bool ListWindow::Load() {
  HINSTANCE instance = GetModuleHandleW(nullptr);
  HICON icon = static_cast<HICON>(LoadImageW(instance, MAKEINTRESOURCEW(IDI_LIST_WINDOW),
                                             IMAGE_ICON, 0, 0, LR_DEFAULTSIZE | LR_SHARED));
  RegisterClassOnce(kClassName, CS_DBLCLKS, nullptr, icon);
  // Tab and the "&" keys move between the controls as in a dialog (WS_EX_CONTROLPARENT).
  DWORD ex = WS_EX_TOOLWINDOW | WS_EX_CONTROLPARENT | (layered_ ? WS_EX_LAYERED : 0);
  const Size design = ListLayout::kDesignSize;
  // The window takes the model's geometry below; what it is made with must not become it.
  ++applying_;
  const bool made = Create(kClassName, W(model_.Caption), WS_POPUP | WS_CLIPCHILDREN, ex, 0, 0,
                           PixelsFromTwips(design.width, DpiOfSystem()),
                           PixelsFromTwips(design.height, DpiOfSystem()));
  --applying_;
  if (!made) return false;
  CreateControls();
  fader_.Attach(hwnd(), layered_);
  viewer_.SetOwner(hwnd());
  UpdateDpi(DpiOfWindow(hwnd()));
  const ListModel& rows = model_.lstClip;
  for (int i = 0; i < rows.ListCount(); ++i) RowInserted(i, rows.Rows()[i]);
  ListIndexChanged(rows.ListIndex());
  StateChanged();  // places the window where the model has it
  return true;
}

void ListWindow::CreateControls() {
  HINSTANCE instance = GetModuleHandleW(nullptr);
  comctl::Load();  // the tooltips and the drag list
  tips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP,
                          CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, hwnd(),
                          nullptr, instance, nullptr);
  for (const ControlText& c : kControls) {
    const int index = static_cast<int>(c.control);
    const wchar_t* cls = L"Button";
    DWORD style = WS_CHILD | WS_TABSTOP;
    if (c.control == Ctl::lstClip) {
      cls = L"ListBox";
      // Delete comes as WM_VKEYTOITEM; the marker column is a tab stop.
      style |= WS_VSCROLL | LBS_NOTIFY | LBS_USETABSTOPS | LBS_NOINTEGRALHEIGHT |
               LBS_WANTKEYBOARDINPUT;
    } else if (c.control == Ctl::cbOp) {
      cls = L"ComboBox";
      style |= CBS_DROPDOWNLIST | WS_VSCROLL;
    } else {
      style |= IsImageButton(c.control) ? BS_OWNERDRAW : BS_PUSHBUTTON;
    }
    HWND h = CreateWindowExW(c.control == Ctl::lstClip ? WS_EX_CLIENTEDGE : 0, cls, c.caption,
                             style, 0, 0, 0, 0, hwnd(),
                             reinterpret_cast<HMENU>(static_cast<INT_PTR>(kFirstId + index)),
                             instance, nullptr);
    controls_[index] = h;
    if (c.tip) AddTip(h, c.tip);
  }
  for (int i = 0; i < 3; ++i) AddTip(control(chkMenu(i)), W(model_.chkMenuTip[i]));
  for (const wchar_t* item : {L"Standardize", L"UPPER CASE", L"lower case"})
    SendMessageW(control(Ctl::cbOp), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item));
  dragList_.Attach(lstClip());
}

void ListWindow::AddTip(HWND control, const wchar_t* text) {
  TOOLINFOW tool{};
  tool.cbSize = sizeof(tool);
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = hwnd();
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = const_cast<wchar_t*>(text);
  SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void ListWindow::SetTip(HWND control, const Text& text) {
  TOOLINFOW tool{};
  tool.cbSize = sizeof(tool);
  tool.hwnd = hwnd();
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = const_cast<wchar_t*>(W(text));
  SendMessageW(tips_, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
  // The image buttons' text is their tool tip, for screen readers.
  SetWindowTextW(control, W(text));
}

void ListWindow::UpdateDpi(UINT dpi) {
  dpi_ = dpi;
  model_.SetTwipsPerPixel(1440.0 / dpi, 1440.0 / dpi);
  UniqueFont font = CreateProgramFont(dpi_, 8);
  for (HWND h : controls_)
    if (h) SendMessageW(h, WM_SETFONT, reinterpret_cast<WPARAM>(font.Get()), FALSE);
  font_ = std::move(font);  // the old font goes once no control uses it
  // Images drawn for this DPI's pixel size: never scaled, so never blurred.
  const int toggle = PixelsFromTwips(315, dpi_) - 2 * ScaleToDpi(3, dpi_);
  const int file = PixelsFromTwips(375, dpi_) - 2 * ScaleToDpi(3, dpi_);
  for (int i = 0; i < 8; ++i)
    images_[i] = AlphaImage(art::RenderButton(static_cast<art::ButtonArt>(i), i < 6 ? toggle : file));
  SendMessageW(tips_, TTM_SETMAXTIPWIDTH, 0, ScaleToDpi(400, dpi_));
}

void ListWindow::ApplyLayout() {
  ++applying_;
  const ListLayout& layout = model_.layout;
  auto px = [this](int twips) { return PixelsFromTwips(twips, dpi_); };
  const Rect& w = layout.window;
  RECT now{};
  GetWindowRect(hwnd(), &now);
  RECT want{px(w.left), px(w.top), px(w.left) + px(w.width), px(w.top) + px(w.height)};
  if (!EqualRect(&now, &want))
    SetWindowPos(hwnd(), nullptr, want.left, want.top, want.right - want.left,
                 want.bottom - want.top, SWP_NOZORDER | SWP_NOACTIVATE);
  HDWP defer = BeginDeferWindowPos(kControlCount);
  for (int i = 0; i < kControlCount; ++i) {
    HWND h = controls_[i];
    if (!h) continue;
    const ControlPlace& place = layout[static_cast<Ctl>(i)];
    const Rect& r = place.rect;
    // A drop-down list's height includes its open list.
    int height = static_cast<Ctl>(i) == Ctl::cbOp ? px(r.height) * 6 : px(r.height);
    UINT flags = SWP_NOZORDER | SWP_NOACTIVATE | (place.visible ? SWP_SHOWWINDOW : SWP_HIDEWINDOW);
    if (defer) defer = DeferWindowPos(defer, h, nullptr, px(r.left), px(r.top), px(r.width), height, flags);
  }
  if (defer) EndDeferWindowPos(defer);
  int tabs[2] = {layout.tabs[0], layout.tabs[1]};
  SendMessageW(lstClip(), LB_SETTABSTOPS, 2, reinterpret_cast<LPARAM>(tabs));
  InvalidateRect(lstClip(), nullptr, TRUE);
  InvalidateRect(hwnd(), nullptr, TRUE);
  --applying_;
}

void ListWindow::Paint() {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(hwnd(), &ps);
  RECT client{};
  GetClientRect(hwnd(), &client);
  FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
  // shpBorder: the window's visible border, since it has no frame of its own.
  UniqueBrush border(CreateSolidBrush(kBorderColour));
  for (int i = 0; i < ScaleToDpi(1, dpi_); ++i) {
    RECT r{client.left + i, client.top + i, client.right - i, client.bottom - i};
    FrameRect(dc, &r, border.Get());
  }
  EndPaint(hwnd(), &ps);
}

bool ListWindow::DrawButton(const DRAWITEMSTRUCT& item) {
  const int id = static_cast<int>(item.CtlID) - kFirstId;
  if (id < 0 || id >= kControlCount) return false;
  const Ctl c = static_cast<Ctl>(id);
  const bool toggle = c == chkMenu(0) || c == chkMenu(1) || c == chkMenu(2);
  const int toggleIndex = id - static_cast<int>(chkMenu(0));
  const bool down = (item.itemState & ODS_SELECTED) || (toggle && model_.chkMenu[toggleIndex]);
  RECT r = item.rcItem;
  HDC dc = item.hDC;
  if (toggle && model_.chkMenu[toggleIndex]) {
    UniqueBrush pressed(CreateSolidBrush(kPressedColour));
    FillRect(dc, &r, pressed.Get());
  } else {
    FillRect(dc, &r, GetSysColorBrush(COLOR_BTNFACE));
  }
  DrawEdge(dc, &r, down ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT);
  int art = toggle ? toggleIndex * 2 + (model_.chkMenu[toggleIndex] ? 1 : 0)
                   : (c == cmdFile(0) ? static_cast<int>(art::ButtonArt::Save)
                                      : static_cast<int>(art::ButtonArt::Load));
  const AlphaImage& image = images_[art];
  const int shift = down ? ScaleToDpi(1, dpi_) : 0;
  image.Draw(dc, (r.left + r.right - image.Width()) / 2 + shift,
             (r.top + r.bottom - image.Height()) / 2 + shift,
             (item.itemState & ODS_DISABLED) ? 128 : 255);
  if (item.itemState & ODS_FOCUS) {
    RECT focus = r;
    InflateRect(&focus, -ScaleToDpi(2, dpi_), -ScaleToDpi(2, dpi_));
    DrawFocusRect(dc, &focus);
  }
  return true;
}

ScreenRect ListWindow::LoadButtonRect() {
  RECT r{};
  GetWindowRect(control(cmdFile(1)), &r);
  return {r.left, r.top, r.right, r.bottom};
}

void ListWindow::Show(bool fade) {
  if (hwnd() || Load()) fader_.FadeIn(fade);
}

void ListWindow::Hide(bool fade) {
  viewer_.Close();
  if (!hwnd()) return;
  // At the program's exit the window goes right after: the fade runs to its end first.
  if (model_.Ending()) {
    fader_.FadeOutNow(fade);
  } else {
    fader_.FadeOut(fade);
  }
}

void ListWindow::StateChanged() {
  if (!hwnd()) return;
  fader_.SetOpacity(model_.Fader1.opacity);
  fader_.SetSpeeds(model_.Fader1.fadeIn, model_.Fader1.fadeOut);
  SetWindowTextW(hwnd(), W(model_.Caption));
  SetWindowPos(hwnd(), model_.Pinned() ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  for (int i = 0; i < 3; ++i) {
    SetTip(control(chkMenu(i)), model_.chkMenuTip[i]);
    InvalidateRect(control(chkMenu(i)), nullptr, FALSE);
  }
  SendMessageW(control(Ctl::cbOp), CB_SETCURSEL, model_.cbOpIndex, 0);
  ApplyLayout();
}

void ListWindow::RowInserted(int index, const ListRow& row) {
  // The first row makes the window, which takes every row the model has.
  if (!hwnd()) {
    Load();
    return;
  }
  LRESULT at = SendMessageW(lstClip(), LB_INSERTSTRING, index, reinterpret_cast<LPARAM>(W(row.text)));
  if (at >= 0) SendMessageW(lstClip(), LB_SETITEMDATA, at, row.itemData);
}

void ListWindow::RowRemoved(int index) { SendMessageW(lstClip(), LB_DELETESTRING, index, 0); }

void ListWindow::RowChanged(int index, const ListRow& row) {
  if (!hwnd()) return;
  HWND list = lstClip();
  LRESULT selected = SendMessageW(list, LB_GETCURSEL, 0, 0);
  SendMessageW(list, WM_SETREDRAW, FALSE, 0);
  RowRemoved(index);
  RowInserted(index, row);
  if (selected == index) SendMessageW(list, LB_SETCURSEL, index, 0);
  SendMessageW(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);
}

void ListWindow::Cleared() { SendMessageW(lstClip(), LB_RESETCONTENT, 0, 0); }

void ListWindow::ListIndexChanged(int index) { SendMessageW(lstClip(), LB_SETCURSEL, index, 0); }

void ListWindow::SyncSelection() {
  // The model's current index follows the user's selection without echoing it back.
  int index = static_cast<int>(SendMessageW(lstClip(), LB_GETCURSEL, 0, 0));
  model_.lstClip.SetObserver(nullptr);
  model_.lstClip.SetListIndex(index);
  model_.lstClip.SetObserver(this);
}

void ListWindow::OnCommand(int id, int code) {
  if (id == IDOK) {
    // Enter: the focused button's command, or the viewer for the list's selected row.
    HWND focus = GetFocus();
    if (focus == lstClip()) {
      SyncSelection();
      model_.lstClip_DblClick();
    } else if (focus && GetParent(focus) == hwnd()) {
      wchar_t cls[16] = {};
      GetClassNameW(focus, cls, 16);
      if (lstrcmpiW(cls, L"Button") == 0) SendMessageW(focus, BM_CLICK, 0, 0);
    }
    return;
  }
  if (id == IDCANCEL) {
    if (onEscape) onEscape();
    return;
  }
  const int index = id - kFirstId;
  if (index < 0 || index >= kControlCount) return;
  const Ctl c = static_cast<Ctl>(index);
  if (c == Ctl::lstClip) {
    if (code == LBN_SELCHANGE) SyncSelection();
    if (code == LBN_DBLCLK) {
      SyncSelection();
      model_.lstClip_DblClick();
    }
    return;
  }
  if (c == Ctl::cbOp) {
    if (code == CBN_SELCHANGE)
      model_.cbOp_Click(static_cast<int>(SendMessageW(control(c), CB_GETCURSEL, 0, 0)));
    return;
  }
  if (code != BN_CLICKED) return;
  SyncSelection();
  if (c >= chkMenu(0) && c <= chkMenu(4)) model_.chkMenu_Click(index - static_cast<int>(chkMenu(0)));
  else if (c == cmdFile(0) || c == cmdFile(1)) model_.cmdFile_Click(index - static_cast<int>(cmdFile(0)));
  else if (c >= cmdOp(0) && c <= cmdOp(3)) model_.cmdOp_Click(index - static_cast<int>(cmdOp(0)));
  else if (c == Ctl::cmdNoSel) model_.cmdNoSel_Click();
}

LRESULT ListWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == DragList::Message())
    return OnDragList(*reinterpret_cast<const DRAGLISTINFO*>(lParam));
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
    case WM_MOVE:
      if (!applying_) OnUserMoveOrSize();
      return 0;
    case WM_SETCURSOR:
      if (reinterpret_cast<HWND>(wParam) == hwnd() && LOWORD(lParam) == HTCLIENT && SetSizingCursor())
        return TRUE;
      return Default(message, wParam, lParam);
    case WM_LBUTTONDOWN: {
      POINT p{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
      RECT client{};
      GetClientRect(hwnd(), &client);
      int band = GrabBandPixels();
      DragLoop(HitTest(p.x, p.y, {client.right, client.bottom}, band, band));
      return 0;
    }
    case WM_TIMER:
      if (wParam == Fader::kTimerId) fader_.OnTimer();
      return 0;
    case WM_COMMAND:
      OnCommand(LOWORD(wParam), HIWORD(wParam));
      return 0;
    case WM_VKEYTOITEM:
      if (LOWORD(wParam) == VK_DELETE) {
        SyncSelection();
        model_.lstClip_KeyDown(VK_DELETE);
        return -2;  // handled
      }
      return -1;
    case WM_DRAWITEM:
      return DrawButton(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    case WM_DPICHANGED: {
      const RECT* suggested = reinterpret_cast<const RECT*>(lParam);
      UpdateDpi(HIWORD(wParam));
      // The size in twips stays; the place is where the system puts the window.
      model_.WindowMoved(TwipsFromPixels(suggested->left, dpi_), TwipsFromPixels(suggested->top, dpi_));
      StateChanged();
      return 0;
    }
    case WM_CLOSE:
      // Closed only when the program ends; otherwise the request is refused.
      if (closeAllowed_) DestroyWindow(hwnd());
      return 0;
    case WM_DESTROY:
      viewer_.Close();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace mq::win32
