// Wine's own notepad and wordpad as the other applications a user copies from and pastes into.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>

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
  // Brings the editor to the front with the keyboard focus in its text.
  bool Focus();
  std::wstring Text() const { return WindowText(edit_); }
  void SetText(const std::wstring& text) { SendMessageW(edit_, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str())); }
  // Select all and copy, with keystrokes as a user would.
  void SelectAllAndCopy() {
    SendMessageW(edit_, EM_SETSEL, 0, -1);
    Pump(50ms);
    CtrlTap('C');
  }

 private:
  Kind kind_;
  mq::win32::UniqueKernelObject process_;
  DWORD pid_ = 0;
  HWND window_ = nullptr;
  HWND edit_ = nullptr;
};

// Another clipboard viewer (a second clipboard manager, a remote-desktop client) that joins the
// chain after Marquill, so it is notified first and passes every notice on from its own
// thread. It counts the change notices it sees.
class OtherClipboardViewer {
 public:
  OtherClipboardViewer();
  ~OtherClipboardViewer();  // leaves the chain
  OtherClipboardViewer(const OtherClipboardViewer&) = delete;
  OtherClipboardViewer& operator=(const OtherClipboardViewer&) = delete;
  // Ends its thread without leaving the chain, as a crashing program does.
  void Abandon() { End(1); }

  int Notices() const { return notices_; }
  // Waits until no notice has come for `quiet`; false when they never stop within `limit`.
  bool WaitSettled(Duration quiet = 1500ms, Duration limit = 10s);

 private:
  static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  void Run();
  void End(WPARAM abandon);

  std::thread thread_;
  std::atomic<DWORD> threadId_{0};
  std::atomic<bool> ready_{false};
  std::atomic<int> notices_{0};
  std::atomic<ULONGLONG> lastNotice_{0};
  HWND window_ = nullptr;
  HWND next_ = nullptr;
};

}  // namespace e2e
