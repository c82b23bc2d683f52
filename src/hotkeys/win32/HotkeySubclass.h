// The window procedure that turns WM_HOTKEY into HotkeyPressed events. It is added to each
// hotkey control's window with the platform's per-window subclassing (comctl32), with the
// HotkeyControls through which it finds the window's controls as its reference data.
#pragma once

#include <windows.h>

#include "hotkeys/VBHotKey.h"

namespace mq::win32 {

class HotkeySubclass {
 public:
  // Adds the procedure to hwnd. False, changing nothing, when the window is gone or has it.
  static bool Install(HWND hwnd, HotkeyControls& controls);
  // Takes the procedure off hwnd and drops the window's controls from controls. Windows
  // without it are ignored.
  static void Remove(HWND hwnd, HotkeyControls& controls);
  static bool IsInstalled(HWND hwnd);

 private:
  static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR id, DWORD_PTR controls);
};

}  // namespace mq::win32
