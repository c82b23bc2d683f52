#include "hotkeys/win32/HotkeySubclass.h"

#include "platform/win32/MessageWindow.h"

namespace mq::win32 {

namespace {
constexpr UINT_PTR kSubclassId = 1;
}  // namespace

bool HotkeySubclass::Install(HWND hwnd, HotkeyControls& controls) {
  if (!IsWindow(hwnd) || IsInstalled(hwnd)) return false;
  return SetWindowSubclass(hwnd, Procedure, kSubclassId, reinterpret_cast<DWORD_PTR>(&controls));
}

void HotkeySubclass::Remove(HWND hwnd, HotkeyControls& controls) {
  if (RemoveWindowSubclass(hwnd, Procedure, kSubclassId))
    controls.RemoveWindow(reinterpret_cast<intptr_t>(hwnd));
}

bool HotkeySubclass::IsInstalled(HWND hwnd) {
  DWORD_PTR controls = 0;
  return FindWindowSubclass(hwnd, Procedure, kSubclassId, controls);
}

LRESULT CALLBACK HotkeySubclass::Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam,
                                           UINT_PTR, DWORD_PTR controls) {
  auto& owner = *reinterpret_cast<HotkeyControls*>(controls);
  try {
    if (message == WM_HOTKEY)
      owner.DispatchHotkey(reinterpret_cast<intptr_t>(hwnd), static_cast<uint32_t>(lParam));
    else if (message == WM_CLOSE || message == WM_DESTROY)
      Remove(hwnd, owner);
  } catch (...) {
    // Nothing may unwind through the system's dispatcher: a press whose handler failed is lost.
  }
  // Windows: taking a subclass off inside its own procedure is allowed; the message still
  // goes on to the procedures below.
  return DefSubclassProc(hwnd, message, wParam, lParam);
}

}  // namespace mq::win32
