#include <gtest/gtest.h>

#include "fakes/FakeListFilePorts.h"
#include "fakes/FakePorts.h"
#include "listfiles/frmPass.h"

namespace mq {
namespace {

// Answers like the list routines: "right" is the only password that opens the file.
class Consumer : public PasswordConsumer {
 public:
  PassVerdict UsePassword(PassMode mode, TextView password) override {
    calls.push_back({mode, Text(password)});
    return mode == PassMode::Load && password != u"right" ? PassVerdict::WrongPassword
                                                          : PassVerdict::Done;
  }
  std::vector<std::pair<PassMode, Text>> calls;
};

class PasswordForm : public ::testing::Test {
 protected:
  test::FakeMessageBoxes messages;
  frmPass form{messages};
  test::FakePasswordView view{form};
  Consumer consumer;
  void SetUp() override { form.SetView(&view); }
  std::vector<std::string> Titles() const {
    std::vector<std::string> out;
    for (const auto& m : messages.shown) out.push_back(m.title);
    return out;
  }
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
  EXPECT_TRUE(consumer.calls.empty());
  view.Enter(1, u"ABC");
  EXPECT_EQ(Titles(), std::vector<std::string>{"Error: Password mismatch"});
  EXPECT_EQ(messages.shown[0].text, "Passwords do not match");
  EXPECT_EQ(messages.shown[0].icon, MsgIcon::Exclamation);
  EXPECT_EQ(view.box[0], u"abc");
  EXPECT_EQ(view.box[1], u"");
  EXPECT_EQ(view.focus, 1);
  EXPECT_TRUE(view.shown);
  EXPECT_TRUE(consumer.calls.empty());

  view.box[1] = u"abc";
  form.Form_KeyPress(frmPass::Key::Enter);  // Enter that reached the form: OK
  ASSERT_EQ(consumer.calls.size(), 1u);
  EXPECT_EQ(consumer.calls[0], (std::pair{PassMode::Save, Text(u"abc")}));
  EXPECT_FALSE(view.shown);
  EXPECT_FALSE(form.Loaded());
  EXPECT_EQ(view.box[0], u"");  // wiped on close
}

TEST_F(PasswordForm, LoadRetriesWithoutReopening) {
  form.Show(PassMode::Load, consumer);
  EXPECT_FALSE(view.confirmation);
  for (TextView wrong : {u"one", u"two", u"three"}) {
    view.focus = -1;
    view.Enter(0, wrong);  // Enter in the only box is OK
    EXPECT_TRUE(view.shown);
    EXPECT_EQ(view.box[0], u"");
    EXPECT_EQ(view.focus, 0);
  }
  EXPECT_EQ(messages.shown.size(), 3u);
  EXPECT_EQ(messages.shown[0].title, "Error: Wrong Password");
  EXPECT_EQ(messages.shown[0].text,
            "You have either entered the wrong password or the file is corrupted.");
  view.Enter(0, u"right");
  EXPECT_FALSE(view.shown);
  EXPECT_EQ(view.shows, 1);
  ASSERT_EQ(consumer.calls.size(), 4u);
  EXPECT_EQ(consumer.calls[3].second, u"right");
}

TEST_F(PasswordForm, EmptyBoxAndCancelDoNothing) {
  for (PassMode mode : {PassMode::Save, PassMode::Load}) {
    form.Show(mode, consumer);
    view.box[1] = u"";
    form.cmdOp_Click(0);      // empty first box: ignored without a word
    view.Enter(1, u"");       // in save mode: OK with an empty first box, ignored too
    EXPECT_TRUE(view.shown);
    EXPECT_TRUE(messages.shown.empty());

    view.box[0] = u"typed";
    form.txtPW_KeyPress(0, frmPass::Key::Escape);
    EXPECT_FALSE(view.shown);
    form.Show(mode, consumer);
    form.Form_KeyPress(frmPass::Key::Escape);
    EXPECT_FALSE(view.shown);
    form.Show(mode, consumer);
    form.cmdOp_Click(1);
    EXPECT_FALSE(view.shown);
  }
  EXPECT_TRUE(consumer.calls.empty());
  form.cmdOp_Click(0);  // a closed dialog ignores late clicks
  EXPECT_TRUE(consumer.calls.empty());

  Text secret = u"hunter2";
  WipeText(secret);
  EXPECT_TRUE(secret.empty());
}

}  // namespace
}  // namespace mq
