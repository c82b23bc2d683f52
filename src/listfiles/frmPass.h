// frmPass, "Input Password": asks for the password of a protected list, twice on saving and
// once on loading, and hands it to whoever asked (the save and load commands). The password
// lives only in the dialog's boxes and for the length of that call.
#pragma once

#include "platform/ListFilePorts.h"
#include "platform/Ports.h"

namespace mq {

enum class PassMode { Save, Load };
enum class PassVerdict { Done, WrongPassword };

class PasswordConsumer {
 public:
  virtual ~PasswordConsumer() = default;
  // Completes the pending save or load. WrongPassword keeps the dialog open for another try.
  virtual PassVerdict UsePassword(PassMode mode, TextView password) = 0;
};

// Overwrites a text's characters before it goes, so no copy of a password outlives its use.
void WipeText(Text& text);

class frmPass {
 public:
  enum class Key { Enter, Escape };

  // Message boxes shown over the dialog.
  explicit frmPass(MessageBoxes& messages) : messages_(messages) {}
  void SetView(PasswordView* view) { view_ = view; }

  // Shows the dialog without blocking: with the confirmation box for a save.
  void Show(PassMode mode, PasswordConsumer& consumer);
  bool Loaded() const { return loaded_; }
  PassMode Mode() const { return mode_; }

  // The window became active: the first time after Show, txtPW(0) gets the focus.
  void Form_Activate();
  void txtPW_KeyPress(int index, Key key);
  // Enter or Esc that reached the form itself.
  void Form_KeyPress(Key key);
  // cmdOp(0) "&OK", cmdOp(1) "&Cancel".
  void cmdOp_Click(int index);
  // The window was closed from outside (its close box, the program's exit).
  void Form_Unload();

 private:
  void Confirm();
  void Close();

  MessageBoxes& messages_;
  PasswordView* view_ = nullptr;
  PasswordConsumer* consumer_ = nullptr;
  PassMode mode_ = PassMode::Load;
  bool loaded_ = false;
  bool activated_ = false;
};

}  // namespace mq
