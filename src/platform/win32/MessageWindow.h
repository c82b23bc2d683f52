// Plain windows for the adapters that only need a window handle to receive messages
// (hotkeys, the clipboard viewer chain, clipboard ownership). They run at start-up, so they
// take their procedure from here rather than from comctl32's subclassing, which would load
// the common controls library for them.
#pragma once

#include <windows.h>

#include "platform/win32/Handles.h"

namespace mq::win32 {

// A plain window's own procedure: gets every message with the data it was set with, and
// calls DefWindowProcW for what it leaves.
using PlainProcedure = LRESULT (*)(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam,
                                   void* data);

// A window whose procedure is DefWindowProcW until SetPlainProcedure gives it one.
// Message-only when parent is null, otherwise a hidden child of parent. Null on failure.
HWND CreatePlainWindow(HWND parent = nullptr, const wchar_t* title = L"");

// Gives a plain window its procedure. False, changing nothing, when hwnd is no plain window
// or has a procedure already.
bool SetPlainProcedure(HWND hwnd, PlainProcedure procedure, void* data);
// Takes the procedure off; false when the window did not have this one.
bool RemovePlainProcedure(HWND hwnd, PlainProcedure procedure);

}  // namespace mq::win32
