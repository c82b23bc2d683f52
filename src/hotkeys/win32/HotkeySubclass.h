// The window procedure that turns WM_HOTKEY into HotkeyPressed events, installed on each
// hotkey control's window, and the records of the windows so treated (SubclassedWindows).
#pragma once

#include <windows.h>

#include "hotkeys/VBHotKey.h"
#include "platform/Text.h"

namespace mq::win32 {

struct ApiSubclassedWindow {
  HWND hwnd = nullptr;
  WNDPROC OldWndProc = nullptr;  // the procedure before HotkeyWndProc
  WNDPROC NewWndProc = nullptr;  // the procedure read back after installing
  HotkeyControls* controls = nullptr;  // where the window's controls are found
};

// Installs HotkeyWndProc on hwnd and records it under "hwnd:" + handle. Returns null and
// changes nothing when HotkeyWndProc is already the window's procedure.
const ApiSubclassedWindow* SubclassWindow(HWND hwnd, HotkeyControls* controls);
// Restores the old procedure, forgets the record and drops the window's controls from
// HotkeyControls. Unknown windows are ignored.
void UnsubclassWindow(HWND hwnd);
LRESULT CALLBACK HotkeyWndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// The record for hwnd, or null.
const ApiSubclassedWindow* FindSubclassedWindow(HWND hwnd);
size_t SubclassedWindowCount();

// The system's message text for an error code, trimmed (the system's texts end in a line
// break); LastErrorText does so for GetLastError().
Text ErrorMessageText(DWORD code);
Text LastErrorText();

}  // namespace mq::win32
