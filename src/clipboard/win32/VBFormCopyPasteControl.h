// The clipboard monitor (cpFlag): a window of its own in the clipboard viewer chain that
// raises ClipboardChanged for every change and passes the chain's messages on.
#pragma once

#include <windows.h>

#include <functional>

#include "platform/Text.h"
#include "platform/win32/MessageWindow.h"

namespace mq::win32 {

class VBFormCopyPasteControl {
 public:
  // The window is message-only when parent is null, otherwise a hidden child of parent.
  explicit VBFormCopyPasteControl(HWND parent = nullptr);
  ~VBFormCopyPasteControl();  // destroying the window leaves the chain
  VBFormCopyPasteControl(const VBFormCopyPasteControl&) = delete;
  VBFormCopyPasteControl& operator=(const VBFormCopyPasteControl&) = delete;

  // Joins the viewer chain; called once the program knows it is the only instance.
  bool Attach();
  bool Attached() const { return attached_; }

  HWND WindowHandle() const { return window_.Get(); }
  HWND NextViewer() const { return next_; }

  // Raised once for each change notification that reaches the window, before the
  // notification is passed on.
  std::function<void()> ClipboardChanged;

 private:
  // The plain window's procedure while attached, with the control as its data.
  static LRESULT Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                           void* control);
  // The window comes from the message: while it is being destroyed window_ may be empty.
  // Nothing may unwind through the system's dispatcher: the one handler that could throw,
  // ClipboardChanged, is caught inside.
  LRESULT HandleMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  void Detach(HWND window);
  // A viewer that joined after us and died without leaving takes the chain's head with it,
  // and no notice reaches us any more. A change that the clipboard counted but that never
  // reached us (seen on two checks in a row) means the chain is broken: join it again.
  void CheckChain(HWND window);
  bool Rejoin(HWND window);

  UniqueWindow window_;
  HWND next_ = nullptr;
  bool attached_ = false;
  DWORD seenSequence_ = 0;     // the clipboard's change count at the last notice
  DWORD suspectSequence_ = 0;  // a count that came without a notice, at the last check
  int inNotice_ = 0;           // the handler may run a modal loop in which the timer fires
};

}  // namespace mq::win32
