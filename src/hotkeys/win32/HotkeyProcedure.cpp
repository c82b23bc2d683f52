#include "hotkeys/win32/HotkeyProcedure.h"

#include "platform/win32/MessageWindow.h"

namespace mq::win32 {

bool HotkeyProcedure::Install(HWND hwnd, HotkeyControls& controls) {
  return SetPlainProcedure(hwnd, Procedure, &controls);
}

void HotkeyProcedure::Remove(HWND hwnd, HotkeyControls& controls) {
  if (RemovePlainProcedure(hwnd, Procedure))
    controls.RemoveWindow(reinterpret_cast<intptr_t>(hwnd));
}

LRESULT HotkeyProcedure::Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam,
                                  void* controls) {
  auto& owner = *static_cast<HotkeyControls*>(controls);
  try {
    if (message == WM_HOTKEY)
      owner.DispatchHotkey(reinterpret_cast<intptr_t>(hwnd), static_cast<uint32_t>(lParam));
    else if (message == WM_CLOSE || message == WM_DESTROY)
      Remove(hwnd, owner);
  } catch (...) {
    // Nothing may unwind through the system's dispatcher: a press whose handler failed is lost.
  }
  // Taken off or not, the window's default handling still gets the message.
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

}  // namespace mq::win32
