// The keyboard of a small modeless window whose keys the message loop does not route through
// IsDialogMessage: Tab and Shift+Tab (and the arrows between buttons) move the focus, Alt and
// a button's underlined letter press it, and Enter and Esc go to the window as
// kDialogKeyMessage (wParam: the key, lParam: the control). Controls are subclassed with
// SetWindowSubclass and unhook themselves when destroyed.
#pragma once

#include <windows.h>

namespace mq::win32 {

inline constexpr UINT kDialogKeyMessage = WM_APP + 0x51;

void AttachDialogKeys(HWND control);
// Shows focus rectangles and underlined letters from the start, whatever the system's
// keyboard-cue setting: these windows are meant to be used from the keyboard.
void ShowKeyboardCues(HWND window);
// Presses the visible, enabled button of `window` whose caption underlines `letter`.
bool PressMnemonic(HWND window, wchar_t letter);

}  // namespace mq::win32
