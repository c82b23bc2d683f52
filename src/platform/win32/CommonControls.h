// The common controls library (comctl32: per-window subclassing, the drag list's helpers,
// tooltips, the trackbar), loaded by the first window that uses it. Start-up uses none of it, and loading it
// (with the registration of its window classes) is a good part of a bare start under Wine.
//
// Called qualified, as comctl::SetWindowSubclass(...): the platform's declarations of the same
// names stay in view, but are never linked.
#pragma once

#include <windows.h>
#include <commctrl.h>

namespace mq::win32::comctl {

// Loads the library and registers its window classes, once; for a window about to make a
// tooltip or a trackbar. False when the system lacks it.
bool Load();

// Each of these loads the library first. Without it a window gets no subclass, and a call
// that then finds nothing returns what the function itself returns when it finds nothing.
BOOL SetWindowSubclass(HWND hwnd, SUBCLASSPROC procedure, UINT_PTR id, DWORD_PTR data);
BOOL RemoveWindowSubclass(HWND hwnd, SUBCLASSPROC procedure, UINT_PTR id);
LRESULT DefSubclassProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

int LBItemFromPt(HWND listBox, POINT screen, BOOL autoScroll);
void DrawInsert(HWND parent, HWND listBox, int item);

}  // namespace mq::win32::comctl
