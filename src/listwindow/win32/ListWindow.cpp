#include "listwindow/win32/ListWindow.h"

#include "platform/win32/Strings.h"
#include "resource.h"

namespace mq::win32 {

namespace {
constexpr wchar_t kClassName[] = L"MarquillClipList";
// Design size and list margin, in twips.
constexpr int kWidthTwips = 3735, kHeightTwips = 3255, kMarginTwips = 120;
constexpr COLORREF kBorderColour = RGB(60, 90, 140);
}  // namespace

ListWindow::ListWindow(frmList& model, bool layeredWindows)
    : model_(model), layered_(layeredWindows) {}

ListWindow::~ListWindow() {
  model_.lstClip.SetObserver(nullptr);
  Destroy();
}

bool ListWindow::CreateHidden() {
  HINSTANCE instance = GetModuleHandleW(nullptr);
  HICON icon = static_cast<HICON>(LoadImageW(instance, MAKEINTRESOURCEW(IDI_LIST_WINDOW),
                                             IMAGE_ICON, 0, 0, LR_DEFAULTSIZE | LR_SHARED));
  RegisterClassOnce(kClassName, CS_DBLCLKS, GetSysColorBrush(COLOR_BTNFACE), icon);
  dpi_ = DpiOfSystem();
  int width = PixelsFromTwips(kWidthTwips, dpi_), height = PixelsFromTwips(kHeightTwips, dpi_);
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  int margin = ScaleToDpi(16, dpi_);
  DWORD ex = WS_EX_TOOLWINDOW | (layered_ ? WS_EX_LAYERED : 0);
  if (!Create(kClassName, W(model_.Caption), WS_POPUP | WS_CLIPCHILDREN, ex,
              work.right - width - margin, work.bottom - height - margin, width, height))
    return false;
  dpi_ = DpiOfWindow(hwnd());

  list_ = CreateWindowExW(0, L"ListBox", L"", WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_TABSTOP |
                              LBS_NOTIFY | LBS_USETABSTOPS | LBS_NOINTEGRALHEIGHT | WS_BORDER,
                          0, 0, 0, 0, hwnd(), nullptr, instance, nullptr);
  // The marker column ("+") stays narrow; every row's text starts at the same place.
  int tabs[2] = {0, 10};
  SendMessageW(list_, LB_SETTABSTOPS, 2, reinterpret_cast<LPARAM>(tabs));
  fader_.Attach(hwnd(), layered_);
  UpdateFont();
  Layout();
  model_.lstClip.SetObserver(this);
  for (int i = 0; i < model_.lstClip.ListCount(); ++i)
    RowInserted(i, model_.lstClip.Rows()[i]);
  StateChanged();
  return true;
}

void ListWindow::UpdateFont() {
  UniqueFont font = CreateProgramFont(dpi_, 9);
  SendMessageW(list_, WM_SETFONT, reinterpret_cast<WPARAM>(font.Get()), TRUE);
  font_ = std::move(font);  // the old font goes once the list no longer uses it
}

void ListWindow::Layout() {
  RECT client{};
  GetClientRect(hwnd(), &client);
  int margin = PixelsFromTwips(kMarginTwips, dpi_);
  MoveWindow(list_, margin, margin, client.right - 2 * margin, client.bottom - 2 * margin, TRUE);
}

void ListWindow::Paint() {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(hwnd(), &ps);
  RECT client{};
  GetClientRect(hwnd(), &client);
  FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
  // shpBorder: the window's visible border, since it has no frame of its own.
  UniqueBrush border(CreateSolidBrush(kBorderColour));
  int thickness = ScaleToDpi(1, dpi_);
  for (int i = 0; i < thickness; ++i) {
    RECT r{client.left + i, client.top + i, client.right - i, client.bottom - i};
    FrameRect(dc, &r, border.Get());
  }
  EndPaint(hwnd(), &ps);
}

void ListWindow::Show(bool fade) { fader_.FadeIn(fade); }

void ListWindow::Hide(bool fade) { fader_.FadeOut(fade); }

void ListWindow::StateChanged() {
  if (!hwnd()) return;
  fader_.SetOpacity(model_.Fader1.opacity);
  fader_.SetSpeeds(model_.Fader1.fadeIn, model_.Fader1.fadeOut);
  SetWindowTextW(hwnd(), W(model_.Caption));
  SetWindowPos(hwnd(), model_.Pinned() ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void ListWindow::RowInserted(int index, const ListRow& row) {
  Text text = row.text;
  LRESULT at = SendMessageW(list_, LB_INSERTSTRING, index, reinterpret_cast<LPARAM>(W(text)));
  if (at >= 0) SendMessageW(list_, LB_SETITEMDATA, at, row.itemData);
}

void ListWindow::RowRemoved(int index) { SendMessageW(list_, LB_DELETESTRING, index, 0); }

void ListWindow::RowChanged(int index, const ListRow& row) {
  LRESULT selected = SendMessageW(list_, LB_GETCURSEL, 0, 0);
  SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
  RowRemoved(index);
  RowInserted(index, row);
  if (selected == index) SendMessageW(list_, LB_SETCURSEL, index, 0);
  SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list_, nullptr, TRUE);
}

void ListWindow::Cleared() { SendMessageW(list_, LB_RESETCONTENT, 0, 0); }

void ListWindow::ListIndexChanged(int index) { SendMessageW(list_, LB_SETCURSEL, index, 0); }

LRESULT ListWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      if (list_) Layout();
      InvalidateRect(hwnd(), nullptr, TRUE);
      return 0;
    case WM_TIMER:
      if (wParam == Fader::kTimerId) fader_.OnTimer();
      return 0;
    case WM_COMMAND:
      if (reinterpret_cast<HWND>(lParam) == list_ && HIWORD(wParam) == LBN_SELCHANGE) {
        // Keep the model's current index in step with the user's selection.
        int index = static_cast<int>(SendMessageW(list_, LB_GETCURSEL, 0, 0));
        model_.lstClip.SetObserver(nullptr);
        model_.lstClip.SetListIndex(index);
        model_.lstClip.SetObserver(this);
      }
      return 0;
    case WM_DPICHANGED: {
      dpi_ = HIWORD(wParam);
      const RECT* suggested = reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(hwnd(), nullptr, suggested->left, suggested->top,
                   suggested->right - suggested->left, suggested->bottom - suggested->top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
      UpdateFont();
      Layout();
      return 0;
    }
    case WM_CLOSE:
      // Closed only when the program ends; otherwise the request is refused.
      if (closeAllowed_) DestroyWindow(hwnd());
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace mq::win32
