#include "listfiles/win32/OpenContextWindow.h"

#include <algorithm>
#include <string>

#include "listfiles/ListFileRules.h"
#include "listfiles/win32/DialogKeys.h"

namespace mq::win32 {

namespace {
constexpr wchar_t kClassName[] = L"MarquillOpenContext";
constexpr int kFirstId = 201;
// The design in twips: 1695 by 1470, four buttons 1695 wide and 375 high, 360 apart.
constexpr int kWidth = 1695, kHeight = 1470, kButtonHeight = 375, kButtonStep = 360;
constexpr const wchar_t* kCaptions[4] = {L"&Open as New", L"&Insert before Current",
                                         L"&Append after Current", L"&Cancel"};
}  // namespace

OpenContextWindow::OpenContextWindow(std::function<HWND()> owner, std::function<void(int)> clicked)
    : owner_(std::move(owner)), clicked_(std::move(clicked)) {}

OpenContextWindow::~OpenContextWindow() { Destroy(); }

bool OpenContextWindow::Load() {
  if (hwnd()) return true;
  RegisterClassOnce(kClassName, 0, GetSysColorBrush(COLOR_BTNFACE));
  HWND owner = owner_ ? owner_() : nullptr;
  if (!Create(kClassName, L"", WS_POPUP | WS_CLIPCHILDREN, WS_EX_TOOLWINDOW | WS_EX_CONTROLPARENT,
              0, 0, 0, 0, owner))
    return false;
  for (int i = 0; i < 4; ++i) {
    cmdOpen_[i] = CreateWindowExW(0, L"Button", kCaptions[i],
                                  WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 0, 0, 0, 0,
                                  hwnd(), reinterpret_cast<HMENU>(static_cast<INT_PTR>(kFirstId + i)),
                                  GetModuleHandleW(nullptr), nullptr);
    AttachDialogKeys(cmdOpen_[i]);
  }
  ShowKeyboardCues(hwnd());
  return true;
}

// The design width, or wider when a caption in the font at hand would touch the edges
// (Wine: its stand-in for Tahoma runs wider).
int OpenContextWindow::FittingWidth() const {
  WindowDc dc(hwnd());
  Selection font(dc.Get(), font_.Get());
  int widest = 0;
  for (const wchar_t* caption : kCaptions) {
    std::wstring text(caption);
    std::erase(text, L'&');
    SIZE size{};
    GetTextExtentPoint32W(dc.Get(), text.c_str(), static_cast<int>(text.size()), &size);
    widest = std::max(widest, static_cast<int>(size.cx));
  }
  return std::max(PixelsFromTwips(kWidth, dpi_), widest + 2 * MulDiv(8, static_cast<int>(dpi_), 96));
}

void OpenContextWindow::Layout() {
  font_ = CreateProgramFont(dpi_, 8);
  width_ = FittingWidth();
  // Later buttons overlap the one above by 15 twips, so each starts at a whole-pixel step.
  for (int i = 0; i < 4; ++i) {
    const int top = PixelsFromTwips(kButtonStep * i, dpi_);
    MoveWindow(cmdOpen_[i], 0, top, width_,
               PixelsFromTwips(kButtonStep * i + kButtonHeight, dpi_) - top, TRUE);
    SendMessageW(cmdOpen_[i], WM_SETFONT, reinterpret_cast<WPARAM>(font_.Get()), TRUE);
  }
}

void OpenContextWindow::Place() {
  const int width = width_, height = PixelsFromTwips(kHeight, dpi_);
  const RECT button{anchor_.left, anchor_.top, anchor_.right, anchor_.bottom};
  MONITORINFO mi{};
  mi.cbSize = sizeof(mi);
  GetMonitorInfoW(MonitorFromRect(&button, MONITOR_DEFAULTTONEAREST), &mi);
  const ScreenRect screen{mi.rcMonitor.left, mi.rcMonitor.top, mi.rcMonitor.right, mi.rcMonitor.bottom};
  const auto at = ListFileRules::PlacePopup(anchor_, width, height, screen);
  SetWindowPos(hwnd(), HWND_TOPMOST, at.x, at.y, width, height, SWP_NOACTIVATE);
}

void OpenContextWindow::Show(const ScreenRect& loadButton) {
  if (!Load()) return;
  anchor_ = loadButton;
  // The clip list window's DPI: the Load button's monitor.
  HWND owner = GetWindow(hwnd(), GW_OWNER);
  dpi_ = DpiOfWindow(owner ? owner : hwnd());
  Layout();
  Place();
  ShowWindow(hwnd(), SW_SHOW);
  SetForegroundWindow(hwnd());
  SetFocus(cmdOpen_[0]);
}

void OpenContextWindow::LeaveTopmost() {
  if (!hwnd()) return;
  SetWindowPos(hwnd(), HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  // Wine: an owned topmost popup lying right above its owner keeps its topmost band (the
  // owner's popups are re-inserted after themselves). Out of sight it covers no dialog, and
  // it closes as soon as the load is done.
  if (GetWindowLongW(hwnd(), GWL_EXSTYLE) & WS_EX_TOPMOST) ShowWindow(hwnd(), SW_HIDE);
}

LRESULT OpenContextWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND: {
      const int index = LOWORD(wParam) - kFirstId;
      if (index >= 0 && index < 4 && HIWORD(wParam) == BN_CLICKED && clicked_) clicked_(index);
      return 0;
    }
    case kDialogKeyMessage: {
      // Enter presses the focused button; Esc is "&Cancel".
      int index = 3;
      for (int i = 0; i < 4 && wParam == VK_RETURN; ++i)
        if (cmdOpen_[i] == reinterpret_cast<HWND>(lParam)) index = i;
      if (clicked_) clicked_(index);
      return 0;
    }
    case WM_ACTIVATE:
      if (LOWORD(wParam) != WA_INACTIVE) {
        HWND focus = GetFocus();
        if (!focus || !IsChild(hwnd(), focus)) SetFocus(cmdOpen_[0]);
      }
      return 0;
    case WM_DPICHANGED:
      dpi_ = HIWORD(wParam);
      Layout();
      Place();
      return 0;
    case WM_CLOSE:
      // Closed from outside (Alt+F4): the same as "&Cancel", which restores the pin.
      if (clicked_) clicked_(3);
      else Destroy();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace mq::win32
