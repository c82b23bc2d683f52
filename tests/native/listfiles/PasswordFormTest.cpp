#include <gtest/gtest.h>

#include "fakes/FakeListFilePorts.h"
#include "fakes/FakePorts.h"
#include "listfiles/frmPass.h"

namespace mq {
namespace {

using Strs = std::vector<std::string>;

// Answers like the list routines: "right" is the only password that opens the file.
class Consumer : public PasswordConsumer {
 public:
  PassVerdict UsePassword(PassMode mode, TextView password) override {
    calls.push_back((mode == PassMode::Save ? "save " : "load ") + ToUtf8(password));
    return mode == PassMode::Load && password != u"right" ? PassVerdict::WrongPassword
                                                          : PassVerdict::Done;
  }
  Strs calls;
};

class PasswordForm : public ::testing::Test {
 protected:
  void SetUp() override { form.SetView(&view); }
  test::FakeMessageBoxes messages;
  frmPass form{messages};
  test::FakePasswordView view{form};
  Consumer consumer;
};

// Typing, Enter in each box, a mismatch, wrong passwords, empty boxes and Cancel are driven
// through the real window's keys (and end to end); here the rules the window cannot show.
TEST_F(PasswordForm, FocusFormKeysAndLateClicks) {
  form.Show(PassMode::Save, consumer);
  form.Form_Activate();
  EXPECT_EQ(view.focus, 0);
  view.focus = -1;
  form.Form_Activate();  // only the first activation moves the focus
  EXPECT_EQ(view.focus, -1);
  view.Enter(0, u"abc");
  view.Enter(1, u"ABC");
  EXPECT_EQ(messages.Log(), Strs{"! Error: Password mismatch: Passwords do not match"});
  view.box[1] = u"abc";
  form.Form_KeyPress(frmPass::Key::Enter);  // Enter that reached the form: OK
  EXPECT_EQ(consumer.calls, Strs{"save abc"});
  EXPECT_FALSE(form.Loaded());
  EXPECT_EQ(view.box[0], u"");  // wiped on close

  form.Show(PassMode::Load, consumer);
  EXPECT_FALSE(view.confirmation);
  view.Enter(0, u"wrong");  // Enter in the only box is OK; the dialog stays for another try
  EXPECT_TRUE(view.shown);
  EXPECT_EQ(messages.Log().back(), "! Error: Wrong Password: You have either entered the wrong "
                                   "password or the file is corrupted.");
  view.Enter(0, u"right");
  EXPECT_EQ(view.shows, 2);
  form.Show(PassMode::Load, consumer);
  form.Form_KeyPress(frmPass::Key::Escape);
  EXPECT_FALSE(view.shown);
  form.cmdOp_Click(0);  // a closed dialog ignores late clicks
  EXPECT_EQ(consumer.calls, (Strs{"save abc", "load wrong", "load right"}));
  Text secret = u"hunter2";
  WipeText(secret);
  EXPECT_TRUE(secret.empty());
}

}  // namespace
}  // namespace mq
