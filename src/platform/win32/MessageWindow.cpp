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

using GetWindowSubclassFn = BOOL(WINAPI*)(HWND, SUBCLASSPROC, UINT_PTR, DWORD_PTR*);

// Windows: comctl32 exports GetWindowSubclass by ordinal only, so the import library lacks it.
// Each comctl32 version keeps subclass records of its own; the one loaded under the plain
// name is the program's (version 6 through its manifest). Only queries depend on this: adding
// and removing procedures goes through the imports.
GetWindowSubclassFn LoadGetWindowSubclass() {
  HMODULE comctl32 = GetModuleHandleW(L"comctl32.dll");
  return comctl32 ? reinterpret_cast<GetWindowSubclassFn>(reinterpret_cast<void*>(
                        GetProcAddress(comctl32, MAKEINTRESOURCEA(411))))
                  : nullptr;
}
}  // namespace

bool FindWindowSubclass(HWND hwnd, SUBCLASSPROC procedure, UINT_PTR id, DWORD_PTR& data) {
  static const GetWindowSubclassFn getWindowSubclass = LoadGetWindowSubclass();
  data = 0;
  return hwnd && getWindowSubclass && getWindowSubclass(hwnd, procedure, id, &data);
}

HWND CreatePlainWindow(HWND parent, const wchar_t* title) {
  HINSTANCE instance = GetModuleHandleW(nullptr);
  if (!EnsureClass(instance)) return nullptr;
  DWORD style = parent ? WS_CHILD : 0;
  return CreateWindowExW(0, kClassName, title, style, 0, 0, 0, 0, parent ? parent : HWND_MESSAGE,
                         nullptr, instance, nullptr);
}

}  // namespace mq::win32
