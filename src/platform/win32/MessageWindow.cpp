#include "platform/win32/MessageWindow.h"

namespace mq::win32 {

namespace {
constexpr wchar_t kClassName[] = L"MarquillPlainWindow";

bool EnsureClass(HINSTANCE instance) {
  WNDCLASSEXW wc{};
  if (GetClassInfoExW(instance, kClassName, &wc)) return true;
  wc.cbSize = sizeof(wc);
  wc.lpfnWndProc = DefWindowProcW;
  wc.hInstance = instance;
  wc.lpszClassName = kClassName;
  return RegisterClassExW(&wc) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}
}  // namespace

HWND CreatePlainWindow(HWND parent, const wchar_t* title) {
  HINSTANCE instance = GetModuleHandleW(nullptr);
  if (!EnsureClass(instance)) return nullptr;
  DWORD style = parent ? WS_CHILD : 0;
  return CreateWindowExW(0, kClassName, title, style, 0, 0, 0, 0, parent ? parent : HWND_MESSAGE,
                         nullptr, instance, nullptr);
}

}  // namespace mq::win32
