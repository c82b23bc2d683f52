#include "listwindow/win32/ViewWindow.h"

#include <richedit.h>

#include "clipboard/win32/RichEditBox.h"

namespace mq::win32 {

namespace {
constexpr wchar_t kClassName[] = L"MarquillClipView";
constexpr int kLabelId = 1, kTextId = 2;
// Design places in twips: rtbView, Label1; Shape1 is the window's edge.
constexpr int kTextLeft = 120, kTextTop = 120, kTextWidth = 4335, kTextHeight = 4095;
constexpr int kLabelTop = 4320, kLabelHeight = 255;
constexpr COLORREF kBorderColour = RGB(60, 90, 140);
}  // namespace

ViewWindow::~ViewWindow() { Destroy(); }

bool ViewWindow::Load() {
  RegisterClassOnce(kClassName, 0, GetSysColorBrush(COLOR_BTNFACE));
  dpi_ = owner_ ? DpiOfWindow(owner_) : DpiOfSystem();
  if (!Create(kClassName, L"Clipboard Preview", WS_POPUP | WS_CLIPCHILDREN,
              WS_EX_TOOLWINDOW | WS_EX_TOPMOST, 0, 0, PixelsFromTwips(kViewerSize.width, dpi_),
              PixelsFromTwips(kViewerSize.height, dpi_), owner_))
    return false;
  HINSTANCE instance = GetModuleHandleW(nullptr);
  const wchar_t* richEdit = RichEditWindowClass();
  rtbView_ = CreateWindowExW(0, richEdit ? richEdit : L"Edit", L"",
                             WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_BORDER | ES_MULTILINE |
                                 ES_READONLY | ES_AUTOVSCROLL,
                             0, 0, 0, 0, hwnd(), reinterpret_cast<HMENU>(kTextId), instance, nullptr);
  if (richEdit) TakeLongText(rtbView_);
  // Keys and clicks in the text come to this window as EN_MSGFILTER notices.
  SendMessageW(rtbView_, EM_SETEVENTMASK, 0, ENM_KEYEVENTS | ENM_MOUSEEVENTS);
  SendMessageW(rtbView_, EM_SETBKGNDCOLOR, 0, GetSysColor(COLOR_WINDOW));
  label1_ = CreateWindowExW(0, L"Static", L"Click me to close.",
                            WS_CHILD | WS_VISIBLE | SS_CENTER | SS_NOTIFY | SS_CENTERIMAGE, 0, 0, 0,
                            0, hwnd(), reinterpret_cast<HMENU>(kLabelId), instance, nullptr);
  LayOut();
  Place();
  return true;
}

void ViewWindow::LayOut() {
  labelFont_ = CreateProgramFont(dpi_, 8);  // Tahoma
  SendMessageW(label1_, WM_SETFONT, reinterpret_cast<WPARAM>(labelFont_.Get()), TRUE);
  auto px = [this](int twips) { return PixelsFromTwips(twips, dpi_); };
  MoveWindow(rtbView_, px(kTextLeft), px(kTextTop), px(kTextWidth), px(kTextHeight), TRUE);
  MoveWindow(label1_, px(1), px(kLabelTop), px(kViewerSize.width) - 2 * px(15), px(kLabelHeight),
             TRUE);
}

void ViewWindow::Place() {
  RECT list{};
  GetWindowRect(owner_, &list);
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(owner_, MONITOR_DEFAULTTONEAREST), &monitor);
  const RECT& w = monitor.rcWork;
  Size size{PixelsFromTwips(kViewerSize.width, dpi_), PixelsFromTwips(kViewerSize.height, dpi_)};
  Rect r = PlaceViewer({list.left, list.top, list.right - list.left, list.bottom - list.top},
                       GetSystemMetrics(SM_CXSCREEN), size,
                       {w.left, w.top, w.right - w.left, w.bottom - w.top});
  SetWindowPos(hwnd(), nullptr, r.left, r.top, r.width, r.height, SWP_NOZORDER | SWP_NOACTIVATE);
  SetTop(true);
}

void ViewWindow::SetTop(bool pin) {
  if (hwnd())
    SetWindowPos(hwnd(), pin ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void ViewWindow::Open(const ClipEntry& entry) {
  if (!hwnd() && !Load()) return;
  // A new control content each time: the entry itself is only read.
  SetWindowTextW(rtbView_, L"");
  if (entry.IsRich()) {
    StreamInto(rtbView_, SF_RTF, entry.rtf.data(), entry.rtf.size());
  } else {
    StreamInto(rtbView_, SF_TEXT | SF_UNICODE, entry.text.data(),
               entry.text.size() * sizeof(char16_t));
  }
  SendMessageW(rtbView_, EM_SETSEL, 0, 0);
  ShowWindow(hwnd(), SW_SHOW);
  SetForegroundWindow(hwnd());
  SetFocus(rtbView_);
}

void ViewWindow::Close() {
  if (!hwnd()) return;
  SetWindowTextW(rtbView_, L"");
  Destroy();
  rtbView_ = label1_ = nullptr;
}

void ViewWindow::Paint() {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(hwnd(), &ps);
  RECT client{};
  GetClientRect(hwnd(), &client);
  FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
  UniqueBrush border(CreateSolidBrush(kBorderColour));  // Shape1
  for (int i = 0; i < ScaleToDpi(1, dpi_); ++i) {
    RECT r{client.left + i, client.top + i, client.right - i, client.bottom - i};
    FrameRect(dc, &r, border.Get());
  }
  EndPaint(hwnd(), &ps);
}

LRESULT ViewWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_NOTIFY: {
      auto* filter = reinterpret_cast<MSGFILTER*>(lParam);
      if (filter->nmhdr.code == EN_MSGFILTER &&
          (filter->msg == WM_KEYDOWN || filter->msg == WM_SYSKEYDOWN ||
           filter->msg == WM_LBUTTONDOWN || filter->msg == WM_RBUTTONDOWN))
        // Not at once: the rich edit control is still inside its own message.
        PostMessageW(hwnd(), kCloseMessage, 0, 0);
      return 0;
    }
    case WM_COMMAND:
      if (LOWORD(wParam) == kLabelId && HIWORD(wParam) == STN_CLICKED)
        PostMessageW(hwnd(), kCloseMessage, 0, 0);
      return 0;
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
    case kCloseMessage:
      Close();
      return 0;
    case WM_CTLCOLORSTATIC:
      SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
      return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
    case WM_DPICHANGED: {
      dpi_ = HIWORD(wParam);
      const RECT* r = reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(hwnd(), nullptr, r->left, r->top, r->right - r->left, r->bottom - r->top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
      LayOut();
      return 0;
    }
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace mq::win32
