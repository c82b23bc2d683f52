#include "app/win32/FlashWindow.h"

#include <algorithm>

#include "platform/win32/Strings.h"
#include "ui/IconArt.h"

namespace mq::win32 {
namespace {

constexpr wchar_t kClassName[] = L"Marquill.frmFlash";
constexpr UINT_PTR kTimer1 = 1;

// Soft blue-grey, light at the top, with a slightly darker rim.
constexpr COLORREF kTop = RGB(0xFB, 0xFD, 0xFF);
constexpr COLORREF kBottom = RGB(0xDF, 0xE9, 0xF6);
constexpr COLORREF kRim = RGB(0x8C, 0xA6, 0xC8);
constexpr COLORREF kText = RGB(0x1C, 0x2A, 0x45);

}  // namespace

FlashWindow::FlashWindow(HMODULE resources, UINT lifetimeMs)
    : resources_(resources), lifetime_(lifetimeMs) {}

FlashWindow::~FlashWindow() { Unload(); }

bool FlashWindow::Load() {
  RegisterClassOnce(kClassName);
  // On the monitor the user is working on: the one under the mouse.
  POINT cursor{};
  GetCursorPos(&cursor);
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromPoint(cursor, MONITOR_DEFAULTTOPRIMARY), &monitor);
  const RECT& work = monitor.rcWork;
  // Created hidden and tiny on that monitor, so that its DPI is known before it is sized.
  if (!Create(kClassName, L"FlashNotify", WS_POPUP,
              WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, work.left, work.top, 1, 1))
    return false;
  FitToDpi(DpiOfWindow(hwnd()), nullptr);
  SetTimer(hwnd(), kTimer1, lifetime_, nullptr);
  return true;
}

void FlashWindow::FitToDpi(UINT dpi, const RECT* suggested) {
  dpi_ = dpi ? dpi : 96;
  const int width = S(220), height = S(124);
  int x, y;
  if (suggested) {
    x = suggested->left;
    y = suggested->top;
  } else {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(hwnd(), MONITOR_DEFAULTTOPRIMARY), &monitor);
    const RECT& work = monitor.rcWork;
    x = work.left + (work.right - work.left - width) / 2;
    y = work.top + (work.bottom - work.top - height) / 2;
  }
  SetWindowPos(hwnd(), HWND_TOPMOST, x, y, width, height, SWP_NOACTIVATE);

  // The region is the ellipse inscribed in the window's rectangle, in window coordinates.
  RECT rc{};
  GetWindowRect(hwnd(), &rc);
  UniqueRegion region(CreateEllipticRgn(0, 0, rc.right - rc.left, rc.bottom - rc.top));
  if (region && SetWindowRgn(hwnd(), region.Get(), TRUE)) region.Release();  // the window owns it

  iconSize_ = S(64);
  picIcon_[0] = AlphaImage(IconResourceImage(resources_, art::kTrayEnabledIcon, iconSize_,
                                             art::Art::ClipEnabled));
  picIcon_[1] = AlphaImage(IconResourceImage(resources_, art::kTrayDisabledIcon, iconSize_,
                                             art::Art::ClipDisabled));
  lblOpFont_ = CreateProgramFont(dpi_, 15, FW_BOLD);
  InvalidateRect(hwnd(), nullptr, FALSE);
}

void FlashWindow::Show(const FlashModel& model) {
  // A notice while one is shown reuses the window and keeps its timer.
  if (!IsLoaded() && !Load()) return;
  model_ = model;
  InvalidateRect(hwnd(), nullptr, FALSE);
  SetWindowPos(hwnd(), HWND_TOPMOST, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
  UpdateWindow(hwnd());
}

void FlashWindow::Unload() { Destroy(); }

void FlashWindow::Paint(HDC dc, int width, int height) {
  FillVerticalGradient(dc, {0, 0, width, height}, kTop, kBottom);
  {
    // PS_INSIDEFRAME keeps the whole rim within the region's ellipse.
    UniquePen pen(CreatePen(PS_INSIDEFRAME, std::max(1, S(2)), kRim));
    Selection selectPen(dc, pen.Get());
    Selection selectBrush(dc, GetStockObject(NULL_BRUSH));
    Ellipse(dc, 0, 0, width, height);
  }
  // Whatever is visible is stacked and centred: an image, the label, or both.
  const AlphaImage* image = model_.picIconVisible[0]   ? &picIcon_[0]
                            : model_.picIconVisible[1] ? &picIcon_[1]
                                                       : nullptr;
  Selection selectFont(dc, lblOpFont_.Get());
  RECT textRect{0, 0, 0, 0};
  const Text& caption = model_.lblOpCaption;
  if (model_.lblOpVisible)
    DrawTextW(dc, W(caption), static_cast<int>(caption.size()), &textRect,
              DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
  const int gap = image && model_.lblOpVisible ? S(4) : 0;
  const int total = (image ? iconSize_ : 0) + gap + (textRect.bottom - textRect.top);
  int y = (height - total) / 2;
  if (image) {
    image->Draw(dc, (width - iconSize_) / 2, y);
    y += iconSize_ + gap;
  }
  if (model_.lblOpVisible) {
    RECT line{0, y, width, y + textRect.bottom - textRect.top};
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, kText);
    DrawTextW(dc, W(caption), static_cast<int>(caption.size()), &line,
              DT_CENTER | DT_SINGLELINE | DT_NOPREFIX);
  }
}

LRESULT FlashWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_TIMER:
      if (wParam != kTimer1) break;
      Unload();  // Timer1: the notice's time is up
      return 0;
    case WM_MOUSEACTIVATE:
      return MA_NOACTIVATE;  // a click must not take the focus from the user's window
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(hwnd(), &ps);
      RECT rc{};
      GetClientRect(hwnd(), &rc);
      // Drawn off-screen first, so the notice appears whole.
      MemoryDc buffer(CreateCompatibleDC(dc));
      UniqueBitmap bitmap(CreateCompatibleBitmap(dc, rc.right, rc.bottom));
      {
        Selection select(buffer.Get(), bitmap.Get());
        Paint(buffer.Get(), rc.right, rc.bottom);
        BitBlt(dc, 0, 0, rc.right, rc.bottom, buffer.Get(), 0, 0, SRCCOPY);
      }
      EndPaint(hwnd(), &ps);
      return 0;
    }
    case WM_DPICHANGED:
      FitToDpi(HIWORD(wParam), reinterpret_cast<const RECT*>(lParam));
      return 0;
    default: break;
  }
  return Default(message, wParam, lParam);
}

}  // namespace mq::win32
