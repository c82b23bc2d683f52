// The clip list window's Save and Load buttons and the windows they open, driven from outside:
// buttons found by their names, the common dialogs by their title, the password dialog and the
// load-mode popup by theirs.
#pragma once

#include <windows.h>

#include <string>

#include "E2E.h"

namespace e2e {

// The child of `window` named `tip`: the image buttons carry their tool tip as their text, which
// is what a screen reader says. Null when there is none.
HWND FindToolButton(HWND window, const std::wstring& tip);
// Clicks a button of another process as the mouse would (the window is brought to the front).
void ClickButton(HWND button);

// Waits for a file dialog of the process with this title, types `path` into its file-name box
// and presses its OK button (its Cancel button when `path` is empty).
bool AnswerFileDialog(DWORD pid, const std::wstring& title, const std::wstring& path,
                      Duration timeout = 30s);

// "Input Password": fills its boxes and presses Enter in the last box typed into.
HWND WaitForPasswordDialog(DWORD pid, Duration timeout = 10s);
std::wstring PasswordBoxText(HWND dialog, int index);
void EnterPassword(HWND dialog, int index, const std::wstring& text);

// Closes the message box with this title after checking nothing; returns its text.
std::wstring DismissMessageBox(DWORD pid, const std::wstring& title, Duration timeout = 10s);

// The load-mode popup's button with this caption ("&Open as New", ...).
HWND WaitForPopupButton(DWORD pid, const std::wstring& caption, Duration timeout = 10s);

bool IsTopmost(HWND hwnd);

}  // namespace e2e
