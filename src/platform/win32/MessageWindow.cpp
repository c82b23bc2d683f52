#include "platform/win32/MessageWindow.h"

#include <iterator>

namespace mq::win32 {

namespace {
constexpr wchar_t kClassName[] = L"MarquillPlainWindow";
// The window's extra bytes: its procedure, then the procedure's data.
constexpr int kProcedureSlot = 0;
constexpr int kDataSlot = sizeof(LONG_PTR);

LRESULT CALLBACK Dispatch(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  // Read on every message: the procedure may take itself off while handling one.
  if (auto procedure = reinterpret_cast<PlainProcedure>(GetWindowLongPtrW(hwnd, kProcedureSlot)))
    return procedure(hwnd, message, wParam, lParam,
                     reinterpret_cast<void*>(GetWindowLongPtrW(hwnd, kDataSlot)));
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

bool EnsureClass(HINSTANCE instance) {
  WNDCLASSEXW wc{};
  if (GetClassInfoExW(instance, kClassName, &wc)) return true;
  wc.cbSize = sizeof(wc);
  wc.lpfnWndProc = Dispatch;
  wc.cbWndExtra = 2 * sizeof(LONG_PTR);
  wc.hInstance = instance;
  wc.lpszClassName = kClassName;
  return RegisterClassExW(&wc) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

bool IsPlainWindow(HWND hwnd) {
  // A window of another class has other extra bytes, or none.
  wchar_t name[std::size(kClassName) + 1] = {};
  return hwnd && GetClassNameW(hwnd, name, static_cast<int>(std::size(name))) &&
         lstrcmpW(name, kClassName) == 0;
}

PlainProcedure ProcedureOf(HWND hwnd) {
  return IsPlainWindow(hwnd)
             ? reinterpret_cast<PlainProcedure>(GetWindowLongPtrW(hwnd, kProcedureSlot))
             : nullptr;
}
}  // namespace

HWND CreatePlainWindow(HWND parent, const wchar_t* title) {
  HINSTANCE instance = GetModuleHandleW(nullptr);
  if (!EnsureClass(instance)) return nullptr;
  DWORD style = parent ? WS_CHILD : 0;
  return CreateWindowExW(0, kClassName, title, style, 0, 0, 0, 0, parent ? parent : HWND_MESSAGE,
                         nullptr, instance, nullptr);
}

bool SetPlainProcedure(HWND hwnd, PlainProcedure procedure, void* data) {
  if (!procedure || !IsPlainWindow(hwnd) || ProcedureOf(hwnd)) return false;
  SetWindowLongPtrW(hwnd, kDataSlot, reinterpret_cast<LONG_PTR>(data));
  SetWindowLongPtrW(hwnd, kProcedureSlot, reinterpret_cast<LONG_PTR>(procedure));
  return true;
}

bool RemovePlainProcedure(HWND hwnd, PlainProcedure procedure) {
  if (!procedure || ProcedureOf(hwnd) != procedure) return false;
  SetWindowLongPtrW(hwnd, kProcedureSlot, 0);
  SetWindowLongPtrW(hwnd, kDataSlot, 0);
  return true;
}

}  // namespace mq::win32
