#include "listfiles/frmPass.h"

namespace mq {

void WipeText(Text& text) {
  // Through a volatile pointer: a plain fill of a dying string may be optimised away.
  volatile char16_t* p = text.data();
  for (size_t i = 0; i < text.size(); ++i) p[i] = u'\0';
  text.clear();
}

void frmPass::Show(PassMode mode, PasswordConsumer& consumer) {
  mode_ = mode;
  consumer_ = &consumer;
  loaded_ = true;
  activated_ = false;
  if (view_) view_->Show(mode == PassMode::Save);
}

void frmPass::Form_Activate() {
  if (!loaded_ || activated_) return;
  activated_ = true;
  if (view_) view_->FocusBox(0);
}

void frmPass::txtPW_KeyPress(int index, Key key) {
  if (key == Key::Escape) return cmdOp_Click(1);
  if (index == 0 && mode_ == PassMode::Save) {
    if (view_) view_->FocusBox(1);
    return;
  }
  cmdOp_Click(0);
}

void frmPass::Form_KeyPress(Key key) { cmdOp_Click(key == Key::Enter ? 0 : 1); }

void frmPass::cmdOp_Click(int index) {
  if (!loaded_ || !view_) return;
  if (index == 0)
    Confirm();
  else
    Close();
}

void frmPass::Form_Unload() {
  loaded_ = false;
  consumer_ = nullptr;
}

void frmPass::Confirm() {
  Text password = view_->BoxText(0);
  if (password.empty()) return;  // ignored without a word
  if (mode_ == PassMode::Save) {
    Text confirmation = view_->BoxText(1);
    const bool same = password == confirmation;
    WipeText(confirmation);
    if (!same) {
      WipeText(password);
      messages_.Show(u"Passwords do not match", u"Error: Password mismatch", MsgIcon::Exclamation);
      view_->ClearBox(1);
      view_->FocusBox(1);
      return;
    }
  }
  const PassVerdict verdict = consumer_ ? consumer_->UsePassword(mode_, password) : PassVerdict::Done;
  WipeText(password);
  if (verdict == PassVerdict::Done) return Close();
  messages_.Show(u"You have either entered the wrong password or the file is corrupted.",
                 u"Error: Wrong Password", MsgIcon::Exclamation);
  view_->ClearBox(0);
  view_->FocusBox(0);
}

void frmPass::Close() {
  loaded_ = false;
  consumer_ = nullptr;
  if (view_) view_->Unload();
}

}  // namespace mq
