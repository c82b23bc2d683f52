// Plain windows for the adapters that only need a window handle to receive messages
// (hotkeys, the clipboard viewer chain, clipboard ownership), and what their procedures,
// added with comctl32's SetWindowSubclass, need besides.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include "platform/win32/Handles.h"

namespace mq::win32 {

// A window whose procedure is DefWindowProcW; its users add theirs with SetWindowSubclass.
// Message-only when parent is null, otherwise a hidden child of parent. Null on failure.
HWND CreatePlainWindow(HWND parent = nullptr, const wchar_t* title = L"");

// GetWindowSubclass: true, with its reference data, when the window has the procedure under
// that id.
bool FindWindowSubclass(HWND hwnd, SUBCLASSPROC procedure, UINT_PTR id, DWORD_PTR& data);

}  // namespace mq::win32
