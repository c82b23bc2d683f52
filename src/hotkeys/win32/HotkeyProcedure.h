// The window procedure that turns WM_HOTKEY into HotkeyPressed events. It is set on each
// hotkey control's plain window, with the HotkeyControls through which it finds the window's
// controls as its data.
#pragma once

#include <windows.h>

#include "hotkeys/VBHotKey.h"

namespace mq::win32 {

class HotkeyProcedure {
 public:
  // Sets the procedure on hwnd, a plain window. False, changing nothing, when hwnd is none or
  // has a procedure already.
  static bool Install(HWND hwnd, HotkeyControls& controls);
  // Takes the procedure off hwnd and drops the window's controls from controls. Windows
  // without it are ignored.
  static void Remove(HWND hwnd, HotkeyControls& controls);

 private:
  static LRESULT Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam,
                           void* controls);
};

}  // namespace mq::win32
