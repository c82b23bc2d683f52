// Wine's own notepad and wordpad as the other applications a user copies from and pastes into.
#pragma once

#include <windows.h>

#include <string>

#include "E2E.h"

namespace e2e {

class Editor {
 public:
  enum class Kind { Notepad, Wordpad };
  explicit Editor(Kind kind) : kind_(kind) {}
  ~Editor();
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  bool Start();
  HWND Window() const { return window_; }
  HWND Edit() const { return edit_; }
  // Brings the editor to the front with the keyboard focus in its text.
  bool Focus();
  std::wstring Text() const;
  void SetText(const std::wstring& text);
  // Select all and copy, with keystrokes as a user would.
  void SelectAllAndCopy();
  void Paste() { CtrlTap('V'); }

 private:
  Kind kind_;
  HANDLE process_ = nullptr;
  DWORD pid_ = 0;
  HWND window_ = nullptr;
  HWND edit_ = nullptr;
};

// Waits until the clipboard's text is this text.
bool WaitForClipboardText(const std::wstring& text, Duration timeout = 5s);

}  // namespace e2e
