#include "platform/win32/Window.h"

#include "platform/win32/Gdi.h"

namespace mq::win32 {

Window::~Window() { Destroy(); }

void Window::Destroy() {
  if (hwnd_ && IsWindow(hwnd_)) DestroyWindow(hwnd_);
}

void Window::RegisterClassOnce(const wchar_t* className, UINT style, HBRUSH background, HICON icon) {
  WNDCLASSEXW wc{};
  HINSTANCE instance = GetModuleHandleW(nullptr);
  if (GetClassInfoExW(instance, className, &wc)) return;
  wc.cbSize = sizeof(wc);
  wc.style = style;
  wc.lpfnWndProc = &Window::Procedure;
  wc.hInstance = instance;
  wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  wc.hbrBackground = background;
  wc.hIcon = icon;
  wc.lpszClassName = className;
  RegisterClassExW(&wc);
}

bool Window::Create(const wchar_t* className, const wchar_t* title, DWORD style, DWORD exStyle,
                    int x, int y, int width, int height, HWND parent) {
  CreateWindowExW(exStyle, className, title, style, x, y, width, height, parent, nullptr,
                  GetModuleHandleW(nullptr), this);
  return hwnd_ != nullptr;
}

LRESULT Window::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  return Default(message, wParam, lParam);
}

LRESULT CALLBACK Window::Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* self = reinterpret_cast<Window*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
  if (message == WM_NCCREATE) {
    self = static_cast<Window*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    self->hwnd_ = hwnd;
    SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  if (!self) return DefWindowProcW(hwnd, message, wParam, lParam);
  LRESULT result = 0;
  try {
    result = self->HandleMessage(message, wParam, lParam);
  } catch (...) {
    // Nothing may unwind through the system's dispatcher: that ends the process with the
    // viewer chain and the tray icon left behind. The handler is abandoned instead.
    result = DefWindowProcW(hwnd, message, wParam, lParam);
  }
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
    self->hwnd_ = nullptr;
    self->OnDestroyed();
  }
  return result;
}

UINT DpiOfSystem() {
  WindowDc screen;
  UINT dpi = screen.Get() ? static_cast<UINT>(GetDeviceCaps(screen.Get(), LOGPIXELSY)) : 96;
  return dpi ? dpi : 96;
}

UINT DpiOfWindow(HWND hwnd) {
  // GetDpiForWindow exists from Windows 10 1607 on; older systems have one system DPI.
  using Fn = UINT(WINAPI*)(HWND);
  static Fn getDpiForWindow = reinterpret_cast<Fn>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
  UINT dpi = getDpiForWindow && hwnd ? getDpiForWindow(hwnd) : 0;
  return dpi ? dpi : DpiOfSystem();
}

}  // namespace mq::win32
