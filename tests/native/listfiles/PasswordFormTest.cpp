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

TEST_F(PasswordForm, SaveAsksTwiceAndRefusesAMismatch) {
  form.Show(PassMode::Save, consumer);
  EXPECT_TRUE(view.confirmation);
  form.Form_Activate();
  EXPECT_EQ(view.focus, 0);
  view.focus = -1;
  form.Form_Activate();  // only the first activation moves the focus
  EXPECT_EQ(view.focus, -1);
  view.Enter(0, u"abc");  // Enter in the first box only moves on
  EXPECT_EQ(view.focus, 1);
  view.Enter(1, u"ABC");
  EXPECT_EQ(messages.Log(), Strs{"Error: Password mismatch: Passwords do not match"});
  EXPECT_EQ(messages.shown[0].icon, MsgIcon::Exclamation);
  EXPECT_EQ(view.box[0] + u"|" + view.box[1], u"abc|");
  EXPECT_EQ(view.focus, 1);
  EXPECT_TRUE(view.shown);
  view.box[1] = u"abc";
  form.Form_KeyPress(frmPass::Key::Enter);  // Enter that reached the form: OK
  EXPECT_EQ(consumer.calls, Strs{"save abc"});
  EXPECT_FALSE(view.shown);
  EXPECT_FALSE(form.Loaded());
  EXPECT_EQ(view.box[0], u"");  // wiped on close
}

TEST_F(PasswordForm, LoadRetriesWithoutReopening) {
  form.Show(PassMode::Load, consumer);
  EXPECT_FALSE(view.confirmation);
  for (TextView wrong : {u"one", u"two"}) {
    view.focus = -1;
    view.Enter(0, wrong);  // Enter in the only box is OK
    EXPECT_TRUE(view.shown);
    EXPECT_EQ(view.box[0], u"");
    EXPECT_EQ(view.focus, 0);
  }
  const std::string wrong = "Error: Wrong Password: You have either entered the wrong password "
                            "or the file is corrupted.";
  EXPECT_EQ(messages.Log(), (Strs{wrong, wrong}));
  view.Enter(0, u"right");
  EXPECT_FALSE(view.shown);
  EXPECT_EQ(view.shows, 1);
  EXPECT_EQ(consumer.calls, (Strs{"load one", "load two", "load right"}));
}

// Empty boxes, Esc in a box and Cancel are driven through the real window's keys.
TEST_F(PasswordForm, EscapeAndLateClicksDoNothing) {
  form.Show(PassMode::Save, consumer);
  view.Enter(1, u"");  // OK with an empty first box: ignored without a word
  EXPECT_TRUE(view.shown);
  form.Form_KeyPress(frmPass::Key::Escape);
  EXPECT_FALSE(view.shown);
  form.cmdOp_Click(0);  // a closed dialog ignores late clicks
  EXPECT_TRUE(consumer.calls.empty());
  EXPECT_TRUE(messages.shown.empty());
  Text secret = u"hunter2";
  WipeText(secret);
  EXPECT_TRUE(secret.empty());
}

}  // namespace
}  // namespace mq
