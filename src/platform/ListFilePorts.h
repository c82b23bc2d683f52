// What the save and load commands of the clip list window reach: the standard file dialogs,
// the clip list window itself (its pin and its Load button), the load-mode popup and the
// password dialog's window. The Win32 shell implements them; tests use fakes.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/Text.h"

namespace mq {

// A rectangle in screen pixels.
struct ScreenRect {
  int left = 0, top = 0, right = 0, bottom = 0;
  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  bool operator==(const ScreenRect&) const = default;
};

// ---- File dialogs ------------------------------------------------------------------------
enum class FileDialogKind { Save, Open };

struct FileDialogRequest {
  FileDialogKind kind = FileDialogKind::Open;
  Text title;
  // Description and pattern pairs separated by bars: "Lists (*.MQL)|*.MQL|All (*.*)|*.*".
  Text filter;
  int filterIndex = 1;  // counts the pairs from 1
  Text initialFolder;
  Text fileName;
  bool overwritePrompt = false;
};

struct FileChoice {
  Text path;
  int filterIndex = 1;  // the filter selected when the user confirmed
};

class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  // Blocks until the user confirms (a path) or cancels (nothing).
  virtual std::optional<FileChoice> Show(const FileDialogRequest& request) = 0;
};

// ---- The clip list window as the save and load commands see it ---------------------------
class ListFileHost {
 public:
  virtual ~ListFileHost() = default;
  // The pin toggle chkMenu(2) is pressed.
  virtual bool Pinned() = 0;
  // frmList's SetTop: in or out of the topmost band (the pin toggle is not changed).
  virtual void SetTop(bool top) = 0;
  // Where the Load button cmdFile(1) is on the screen.
  virtual ScreenRect LoadButtonRect() = 0;
  // The window's native handle (an HWND on Windows): the dialogs' owner.
  virtual std::uintptr_t NativeWindow() = 0;
};

// ---- frmOpenContext, the load-mode popup ---------------------------------------------------
class LoadModePopup {
 public:
  virtual ~LoadModePopup() = default;
  // Loads the popup below the Load button, topmost, without blocking; its buttons come back
  // through ListFileCommands::cmdOpen_Click.
  virtual void Show(const ScreenRect& loadButton) = 0;
  // Takes the popup out of the topmost band.
  virtual void LeaveTopmost() = 0;
  virtual void Unload() = 0;
};

// ---- frmPass, the password dialog's window -------------------------------------------------
class PasswordView {
 public:
  virtual ~PasswordView() = default;
  // Loads and shows the dialog without blocking: with the confirmation label and box
  // (Label1(1), txtPW(1)) for a save, without them for a load.
  virtual void Show(bool confirmationVisible) = 0;
  // The text of txtPW(index). The caller wipes its copy when done.
  virtual Text BoxText(int index) = 0;
  virtual void ClearBox(int index) = 0;
  // Focuses txtPW(index), which selects its whole content.
  virtual void FocusBox(int index) = 0;
  // Closes the dialog; the boxes' memory is wiped first.
  virtual void Unload() = 0;
};

}  // namespace mq
