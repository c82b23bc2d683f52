// The settings dialog's logic with fake settings, message boxes, hotkeys and launch-at-log-on.
#include "settings/frmSettings.h"

#include <gtest/gtest.h>

#include "fakes/FakePorts.h"
#include "fakes/FakeSettings.h"

namespace mq::test {
namespace {

class FakeEffects : public SettingsEffects {
 public:
  void ApplyHotkeys(std::optional<int> pasteKey,
                    const std::array<HotkeySlotChange, 4>& slots) override {
    ++hotkeyCalls;
    paste = pasteKey;
    this->slots = slots;
  }
  void ApplyFader(int opacity, int speed, bool noFade) override {
    fader = {opacity, speed, noFade ? 1 : 0};
  }
  void ClearNoFade() override { ++noFadeCleared; }
  int hotkeyCalls = 0, noFadeCleared = 0;
  std::optional<int> paste;
  std::array<HotkeySlotChange, 4> slots;
  std::array<int, 3> fader{-1, -1, -1};
};

class FakeLaunch : public LaunchAtLogon {
 public:
  bool SetAutoRun(bool enable) override {
    calls.push_back(enable ? "set" : "delete");
    if (registryLocked) return false;
    runValue = enable;
    return true;
  }
  bool IsAutoRunSet() override { return runValue; }
  bool StartupShortcutFound() override { return shortcut; }
  bool ExecutableExists() override { return exeExists; }
  bool CreateStartupShortcut() override {
    calls.push_back("shortcut");
    if (shortcutFails) return false;
    shortcut = true;
    return true;
  }
  bool registryLocked = false, runValue = false, shortcut = false, exeExists = true,
       shortcutFails = false;
  std::vector<std::string> calls;
};

struct Dialog {
  explicit Dialog(bool xp = true) : form({settings, messages, effects, launch, xp}) {}
  frmSettings& Load() {
    form.Form_Load();
    port.writes.clear();
    return form;
  }
  std::vector<std::string> Titles() const {
    std::vector<std::string> titles;
    for (const auto& m : messages.shown) titles.push_back(m.title);
    return titles;
  }
  FakeSettings port;
  Settings settings{port};
  FakeMessageBoxes messages;
  FakeEffects effects;
  FakeLaunch launch;
  frmSettings form;
};

std::string Item(const ComboModel& box) {
  return box.index >= 0 && box.index < static_cast<int>(box.items.size())
             ? ToUtf8(box.items[box.index]) : "<none>";
}

TEST(SettingsDialog, FreshInstallationLoadsDefaultsAndWritesTheDialogRepairs) {
  Dialog d;
  d.form.Form_Load();
  frmSettings& f = d.form;
  EXPECT_EQ(Item(f.cbEnable), "Enabled");
  EXPECT_EQ(Item(f.cbMode), "Multi");
  EXPECT_EQ(Item(f.cbFormat), "Last Used");
  EXPECT_EQ(Item(f.cbOp), "Last Used");
  EXPECT_EQ(Item(f.cbRC), "Popup Menu");
  EXPECT_EQ(f.cbRC.items.size(), 13u);
  EXPECT_EQ(ToUtf8(f.cbRC.items[3]), "Purge Formatting");
  EXPECT_EQ(Item(f.cbRC2), "Popup Menu");
  EXPECT_FALSE(f.cbRC2.enabled);
  EXPECT_EQ(ToUtf8(f.txtHK[0].text), "1");
  EXPECT_EQ(ToUtf8(f.txtHK[1].text + f.txtHK[2].text + f.txtHK[3].text + f.txtHK[4].text), "2345");
  EXPECT_EQ(Item(f.cbAction[0]), "Show List");
  EXPECT_EQ(Item(f.cbAction2[0]), "Hide List");
  EXPECT_EQ(Item(f.cbAction[2]), "(No Change)");
  EXPECT_EQ(Item(f.cbAction2[2]), "Standardize");
  EXPECT_TRUE(f.cbAction2[2].enabled);
  EXPECT_EQ(f.cbAction2[2].items.size(), 4u);
  EXPECT_EQ(Item(f.cbAction[3]), "Enable");
  EXPECT_EQ(Item(f.cbAction2[3]), "Disable");
  EXPECT_EQ(Item(f.cbFadeSpd), "Canter");
  EXPECT_EQ(f.sliOpacity, 75);
  EXPECT_TRUE(f.chkSize);
  EXPECT_FALSE(f.chkAutoRun);
  EXPECT_EQ(f.HotkeyEnabledAtLoad, (std::array<bool, 4>{true, true, true, true}));
  EXPECT_TRUE(d.messages.shown.empty()) << "load repairs are silent";
  // The keys read with "x" get their repair values, and absent enables and action codes
  // their defaults.
  for (auto [key, value] : std::initializer_list<std::pair<TextView, const char*>>{
           {u"Set_RC_Op", "12"}, {u"Set_H0_En", "1"}, {u"Set_H3_En", "1"}, {u"Set_H0_Op", "2"},
           {u"Set_H2_Op", "41"}, {u"Set_H3_Op", "0"}, {u"Set_Pn", "0"}, {u"Set_Dl", "0"},
           {u"Set_Vu", "0"}, {u"Set_LO", "0"}, {u"Set_FS", "2"}, {u"Set_FO", "75"}})
    EXPECT_EQ(d.port.Get(key), value) << ToUtf8(key);
  EXPECT_FALSE(d.port.Has(u"Set_En"));
  EXPECT_FALSE(d.port.Has(u"Set_H0_Ky"));
}

TEST(SettingsDialog, StoredValuesAndEveryRepair) {
  Dialog d;
  d.port.values = {
      {u"Set_En", u"2"},     {u"Set_Mo", u"7"},      {u"Set_Fm", u"x"},     {u"Set_Op", u"4"},
      {u"Set_RC_Op", u"41"}, {u"Set_H0_Ky", u"81"},  {u"Set_H1_Ky", u"999"}, {u"Set_H2_Ky", u"1a"},
      {u"Set_H0_En", u"0"},  {u"Set_H1_En", u"yes"}, {u"Set_HV_Ky", u"57"}, {u"Set_H0_Op", u"11"},
      {u"Set_H1_Op", u"123"}, {u"Set_H2_Op", u"63"}, {u"Set_H3_Op", u"5"},  {u"Set_Pn", u"2"},
      {u"Set_Dl", u"3"},     {u"Set_Vu", u"1"},      {u"Set_LO", u"3"},     {u"Set_FS", u"0"},
      {u"Set_FO", u"50.5"},  {u"Set_Sz", u"0"}};
  frmSettings& f = d.form;
  f.Form_Load();
  EXPECT_EQ(Item(f.cbEnable), "Disabled");
  EXPECT_EQ(Item(f.cbMode), "Multi");  // "7" repaired to "2"
  EXPECT_EQ(d.port.Get(u"Set_Mo"), "2");
  EXPECT_EQ(Item(f.cbFormat), "Last Used");
  EXPECT_EQ(d.port.Get(u"Set_Fm"), "0");
  EXPECT_EQ(Item(f.cbOp), "lower case");
  EXPECT_EQ(Item(f.cbRC), "(No Change)");
  EXPECT_EQ(Item(f.cbRC2), "Standardize");
  // Keys: 81 is "Q"; 999 and "1a" are invalid and show the slot's default.
  EXPECT_EQ(ToUtf8(f.txtHK[1].text), "Q");
  EXPECT_EQ(ToUtf8(f.txtHK[2].text), "3");
  EXPECT_EQ(ToUtf8(f.txtHK[3].text), "4");
  EXPECT_EQ(ToUtf8(f.txtHK[0].text), "9");
  EXPECT_EQ(d.port.Get(u"Set_H1_Ky"), "999") << "the dialog does not rewrite keys on load";
  // Slot 0 off: its row is greyed; "yes" is rewritten to "1".
  EXPECT_FALSE(f.chkHK[0]);
  EXPECT_FALSE(f.txtHK[1].enabled);
  EXPECT_FALSE(f.cbAction[0].enabled);
  EXPECT_FALSE(f.cbAction2[0].enabled);
  EXPECT_EQ(f.rowColor[0], frmSettings::kRowOff);
  EXPECT_EQ(f.HotkeyEnabledAtLoad, (std::array<bool, 4>{false, true, true, true}));
  EXPECT_EQ(d.port.Get(u"Set_H1_En"), "1");
  // Action codes: "11" is Exit; "123" is too long and becomes slot 1's default "3".
  EXPECT_EQ(Item(f.cbAction[0]), "Exit");
  EXPECT_EQ(Item(f.cbAction[1]), "Purge Formatting");
  EXPECT_EQ(Item(f.cbAction2[1]), "Preserve Formatting");
  EXPECT_EQ(d.port.Get(u"Set_H1_Op"), "3");
  // "63": action 6 with the second digit as Action 2's choice.
  EXPECT_EQ(Item(f.cbAction[2]), "UPPER CASE");
  EXPECT_EQ(Item(f.cbAction2[2]), "lower case");
  // "5" has no second digit: Action 2 starts equal to Action 1.
  EXPECT_EQ(Item(f.cbAction[3]), "Standardize");
  EXPECT_EQ(Item(f.cbAction2[3]), "Standardize");
  EXPECT_EQ(Item(f.cbPin), "Always On Top");
  EXPECT_EQ(Item(f.cbDel), "Last Used");
  EXPECT_EQ(d.port.Get(u"Set_Dl"), "0");
  EXPECT_EQ(Item(f.cbView), "Expanded");
  EXPECT_EQ(Item(f.cbLstOp), "lower case");
  EXPECT_EQ(Item(f.cbFadeSpd), "No Fade");
  EXPECT_EQ(f.sliOpacity, 51);
  EXPECT_FALSE(f.chkSize);

  // A missing Set_RC_Op, a non-numeric code and an out-of-range opacity.
  Dialog e;
  e.port.values = {{u"Set_H3_Op", u"ab"}, {u"Set_FO", u"101"}, {u"Set_Op", u"5"}};
  e.form.Form_Load();
  EXPECT_EQ(Item(e.form.cbRC), "Popup Menu");
  EXPECT_EQ(e.port.Get(u"Set_RC_Op"), "12");
  EXPECT_EQ(Item(e.form.cbAction[3]), "Enable");
  EXPECT_EQ(e.port.Get(u"Set_H3_Op"), "0");
  EXPECT_EQ(e.form.sliOpacity, 75);
  EXPECT_EQ(e.port.Get(u"Set_FO"), "75");
  EXPECT_EQ(e.port.Get(u"Set_Op"), "0");
}

TEST(SettingsDialog, TabsShowTheirPageAndMoveTheFocus) {
  Dialog d;
  frmSettings& f = d.Load();
  f.cmdTab_Click(1);
  EXPECT_EQ(f.tab, 1);
  EXPECT_EQ(f.focusRequest, frmSettings::Focus::txtHK0);
  f.cmdTab_Click(2);
  EXPECT_EQ(f.focusRequest, frmSettings::Focus::cbPin);
  f.cmdTab_Click(0);
  EXPECT_EQ(f.focusRequest, frmSettings::Focus::cbEnable);
  // Choosing an action refills Action 2 from the stored code.
  d.port.Set(u"Set_H1_Op", u"72");
  f.SelectAction(1, 7);
  EXPECT_EQ(Item(f.cbAction2[1]), "UPPER CASE");
  f.SelectAction(1, 5);
  EXPECT_EQ(Item(f.cbAction2[1]), "Standardize");
  f.SelectAction(1, 9);
  EXPECT_EQ(Item(f.cbAction2[1]), "Help");
  EXPECT_FALSE(f.cbAction2[1].enabled);
}

TEST(SettingsDialog, KeyEntryMessagesAndOutcomes) {
  Dialog d;
  frmSettings& f = d.Load();
  // "c": Windows' own copy command; refused.
  f.txtHK_KeyPress(1, u'c');
  ASSERT_EQ(d.messages.shown.size(), 1u);
  EXPECT_EQ(d.messages.shown[0].title, "Error: Hotkey combination invalid.");
  EXPECT_EQ(d.messages.shown[0].text,
            "Microsoft Windows has bound the hotkey combination CTRL+C to the command Copy "
            "Selection. This hotkey cannot be used by Marquill.");
  EXPECT_EQ(d.messages.shown[0].icon, MsgIcon::Critical);
  EXPECT_EQ(ToUtf8(f.txtHK[1].text), "2");

  // "a": asked; No keeps the box, Yes takes "A".
  d.messages.answer = MsgResult::No;
  f.txtHK_KeyPress(1, u'a');
  ASSERT_EQ(d.messages.shown.size(), 2u);
  EXPECT_EQ(d.messages.shown[1].title, "Warning: Hotkey combination used.");
  EXPECT_EQ(d.messages.shown[1].text,
            "Many applications bind the hotkey combination CTRL+A to the command Select All "
            "Highlighted Text. Are you sure you want to use this hotkey combination?");
  EXPECT_EQ(d.messages.shown[1].icon, MsgIcon::Exclamation);
  EXPECT_EQ(d.messages.shown[1].buttons, MsgButtons::YesNo);
  EXPECT_EQ(ToUtf8(f.txtHK[1].text), "2");
  d.messages.answer = MsgResult::Yes;
  f.txtHK_KeyPress(1, u'a');
  EXPECT_EQ(ToUtf8(f.txtHK[1].text), "A");

  // "2" is free now; "3" belongs to txtHK(2); the box's own character is accepted.
  d.messages.shown.clear();
  f.txtHK_KeyPress(1, u'2');
  EXPECT_EQ(ToUtf8(f.txtHK[1].text), "2");
  f.txtHK_KeyPress(3, u'2');
  ASSERT_EQ(d.messages.shown.size(), 1u);
  EXPECT_EQ(d.messages.shown[0].title, "Error: Hotkey combination in use.");
  EXPECT_EQ(d.messages.shown[0].text,
            "You have already assigned a command to this kothey combination. Please select a "
            "different hotkey.");
  EXPECT_EQ(ToUtf8(f.txtHK[3].text), "4");
  f.txtHK_KeyPress(3, u'4');
  EXPECT_EQ(d.messages.shown.size(), 1u);
  EXPECT_EQ(ToUtf8(f.txtHK[3].text), "4");
  f.txtHK_KeyPress(3, u'q');
  EXPECT_EQ(ToUtf8(f.txtHK[3].text), "Q");

  // Enter, punctuation, the space and backspace: special characters.
  for (char16_t ch : {u'\r', u'$', u'"', u' ', u'\b'}) {
    d.messages.shown.clear();
    f.txtHK_KeyPress(0, ch);
    ASSERT_EQ(d.messages.shown.size(), 1u) << static_cast<int>(ch);
    EXPECT_EQ(d.messages.shown[0].title, "Error: Hotkey combination invalid.");
    EXPECT_EQ(d.messages.shown[0].text,
              "Hotkeys can only be composed of standard letter or number keys. Please do not "
              "use special characters or function keys (F1, F2, etc.).");
    EXPECT_EQ(ToUtf8(f.txtHK[0].text), "1");
  }
  EXPECT_TRUE(d.port.writes.empty()) << "typing writes nothing";
}

TEST(SettingsDialog, RestartWarningFollowsTheStateAtLoad) {
  Dialog d;
  d.port.values = {{u"Set_H1_En", u"0"}, {u"Set_H3_En", u"0"}};
  frmSettings& f = d.Load();
  f.SetChkHK(1, true);
  ASSERT_EQ(d.messages.shown.size(), 1u);
  EXPECT_EQ(d.messages.shown[0].title, "Warning: Restart Marquill required.");
  EXPECT_EQ(d.messages.shown[0].text,
            "This setting will take effect the next time Marquill starts. To enable this "
            "hotkey now, please close Marquill and launch it again.");
  EXPECT_EQ(d.messages.shown[0].icon, MsgIcon::Information);
  EXPECT_TRUE(f.txtHK[2].enabled);
  EXPECT_EQ(f.rowColor[1], frmSettings::kRowOn);
  // Again after unchecking; a slot that was on at load never warns.
  f.SetChkHK(1, false);
  EXPECT_EQ(f.rowColor[1], frmSettings::kRowOff);
  f.SetChkHK(1, true);
  f.SetChkHK(0, false);
  f.SetChkHK(0, true);
  EXPECT_EQ(d.messages.shown.size(), 2u);
  // Reset Defaults checks every box: one warning for each slot that is unchecked and was
  // off at load (slot 3 only; slot 1 is checked already). It writes nothing.
  d.messages.shown.clear();
  f.SetChkHK(0, false);
  f.txtHK_KeyPress(2, u'k');
  f.cmdOp_Click(1);
  EXPECT_EQ(d.Titles(), std::vector<std::string>{"Warning: Restart Marquill required."});
  EXPECT_TRUE(d.port.writes.empty());
  EXPECT_EQ(d.effects.noFadeCleared, 1);
  EXPECT_EQ(ToUtf8(f.txtHK[2].text), "3");
  EXPECT_EQ(f.chkHK, (std::array<bool, 4>{true, true, true, true}));
  EXPECT_EQ(Item(f.cbAction2[2]), "Standardize");
  EXPECT_EQ(Item(f.cbDel), "Last Used");
  EXPECT_EQ(Item(f.cbEnable), "Enabled");
  EXPECT_EQ(Item(f.cbRC), "Popup Menu");
  EXPECT_FALSE(f.closed);
}

TEST(SettingsDialog, SaveWritesEveryKeyInOrderAndAppliesAtOnce) {
  Dialog d;
  d.port.values = {{u"Set_H2_En", u"0"}};
  frmSettings& f = d.Load();
  f.cbMode.index = 1;
  f.SelectRC(5);
  f.cbRC2.index = 3;
  f.txtHK_KeyPress(0, u'9');
  f.txtHK_KeyPress(1, u'q');
  f.txtHK_Cleared(2);
  f.SetChkHK(2, true);
  f.SetChkHK(3, false);
  f.cbFadeSpd.index = 1;
  f.sliOpacity = 50;
  f.chkSize = false;
  f.SetChkAutoRun(true);
  f.cmdOp_Click(0);
  EXPECT_TRUE(f.closed);
  std::vector<std::pair<std::string, std::string>> written;
  for (const auto& [k, v] : d.port.writes) written.emplace_back(ToUtf8(k), ToUtf8(v));
  std::vector<std::pair<std::string, std::string>> expected{
      {"Set_En", "1"},    {"Set_Mo", "1"},    {"Set_Fm", "0"},    {"Set_Op", "0"},
      {"Set_RC_Op", "53"},
      {"Set_H0_Op", "2"}, {"Set_H0_Ky", "81"}, {"Set_H0_En", "1"},
      {"Set_H1_Op", "3"}, {"Set_H1_En", "1"},  // emptied box: no key written
      {"Set_H2_Op", "41"}, {"Set_H2_Ky", "52"}, {"Set_H2_En", "1"},
      {"Set_H3_Op", "0"}, {"Set_H3_Ky", "53"}, {"Set_H3_En", "0"},
      {"Set_HV_Ky", "57"},
      {"Set_Pn", "0"},    {"Set_Dl", "0"},    {"Set_Vu", "0"},    {"Set_LO", "0"},
      {"Set_FS", "1"},    {"Set_FO", "50"},   {"Set_Sz", "0"}};
  EXPECT_EQ(written, expected);
  EXPECT_EQ(d.launch.calls, std::vector<std::string>{"set"});
  ASSERT_EQ(d.effects.hotkeyCalls, 1);
  EXPECT_EQ(d.effects.paste, 57);
  EXPECT_EQ(d.effects.slots[0].vkey, 81);
  EXPECT_FALSE(d.effects.slots[1].vkey.has_value());
  EXPECT_TRUE(d.effects.slots[2].enabled);
  EXPECT_FALSE(d.effects.slots[3].enabled);
  EXPECT_EQ(d.effects.fader, (std::array<int, 3>{50, 4, 0}));
  EXPECT_EQ(d.Titles(), std::vector<std::string>{"Warning: Restart Marquill required."});

  // "No Fade" sets the flag; Cancel closes without writing.
  Dialog e;
  e.Load().cbFadeSpd.index = 0;
  e.form.cmdOp_Click(0);
  EXPECT_EQ(e.effects.fader, (std::array<int, 3>{75, 0, 1}));
  EXPECT_EQ(e.launch.calls, std::vector<std::string>{"delete"});
  Dialog c;
  c.Load().sliOpacity = 30;
  c.form.cmdOp_Click(2);
  EXPECT_TRUE(c.form.closed);
  EXPECT_TRUE(c.port.writes.empty());
  EXPECT_EQ(c.effects.hotkeyCalls, 0);
}

TEST(SettingsDialog, WithoutTransparencyOpacityIsFullAndFadingOff) {
  Dialog d(false);
  d.port.values = {{u"Set_FO", u"40"}, {u"Set_FS", u"3"}};
  frmSettings& f = d.Load();
  EXPECT_TRUE(f.transparencyUnavailable);
  EXPECT_EQ(f.sliOpacity, 100);
  EXPECT_FALSE(f.sliOpacityEnabled);
  EXPECT_EQ(Item(f.cbFadeSpd), "No Fade");
  EXPECT_FALSE(f.cbFadeSpd.enabled);
  f.cmdOp_Click(1);
  EXPECT_EQ(f.sliOpacity, 100);
  f.cmdOp_Click(0);
  EXPECT_EQ(d.port.Get(u"Set_FO"), "100");
  EXPECT_EQ(d.port.Get(u"Set_FS"), "0");
}

TEST(SettingsDialog, RegistryFailureOffersTheShortcut) {
  const char* question = "Error: Cannot access System Registry.";
  // No: the box is unchecked and the rest is saved.
  Dialog no;
  no.launch.registryLocked = true;
  no.messages.answer = MsgResult::No;
  no.Load().SetChkAutoRun(true);
  no.form.cmdOp_Click(0);
  EXPECT_EQ(no.Titles(), std::vector<std::string>{question});
  EXPECT_EQ(no.messages.shown[0].icon, MsgIcon::Critical);
  EXPECT_EQ(no.messages.shown[0].buttons, MsgButtons::YesNo);
  EXPECT_NE(no.messages.shown[0].text.find(
                "system registry. \r\n\r\nWould you like Marquill"), std::string::npos);
  EXPECT_NE(no.messages.shown[0].text.find(
                "on the \"marquill\" label and select \"Delete\" from the menu that pops up under "
                "your mouse cursor.\r\n\r\nShall I proceed to try this alternate method?"),
            std::string::npos);
  EXPECT_FALSE(no.form.chkAutoRun);
  EXPECT_EQ(no.launch.calls, std::vector<std::string>{"set"});
  EXPECT_EQ(no.port.Get(u"Set_Sz"), "1");
  // Yes: the shortcut is made and reported; a failure and a missing program are reported.
  Dialog yes;
  yes.launch.registryLocked = true;
  yes.Load().SetChkAutoRun(true);
  yes.form.cmdOp_Click(0);
  EXPECT_EQ(yes.Titles(), (std::vector<std::string>{question, "Autorun success."}));
  EXPECT_EQ(yes.messages.shown[1].text, "Alternate Autorun method successful!");
  EXPECT_EQ(yes.messages.shown[1].icon, MsgIcon::Exclamation);
  EXPECT_TRUE(yes.launch.shortcut);
  Dialog fails;
  fails.launch.registryLocked = fails.launch.shortcutFails = true;
  fails.Load().SetChkAutoRun(true);
  fails.form.cmdOp_Click(0);
  EXPECT_EQ(fails.messages.shown.back().title, "Error: Autorun unsuccessful.");
  EXPECT_EQ(fails.messages.shown.back().text, "Alternate Autorun method was not successful.");
  EXPECT_EQ(fails.messages.shown.back().icon, MsgIcon::Information);
  Dialog missing;
  missing.launch.registryLocked = true;
  missing.launch.exeExists = false;
  missing.Load().SetChkAutoRun(true);
  missing.form.cmdOp_Click(0);
  EXPECT_EQ(missing.messages.shown.back().text,
            "Cannot identify program location. Alternate Autorun method was not successful.");
  EXPECT_EQ(missing.launch.calls, std::vector<std::string>{"set"});
  // Unchecking while the registry is locked reports nothing.
  Dialog off;
  off.launch.registryLocked = true;
  off.Load().cmdOp_Click(0);
  EXPECT_TRUE(off.messages.shown.empty());
}

TEST(SettingsDialog, ShortcutInEffectCannotBeUnchecked) {
  Dialog d;
  d.launch.shortcut = true;
  frmSettings& f = d.Load();
  EXPECT_TRUE(f.ShortcutAutoRun);
  EXPECT_TRUE(f.chkAutoRun);
  f.lblAutoRun_Click();
  ASSERT_EQ(d.messages.shown.size(), 1u);
  EXPECT_EQ(d.messages.shown[0].title, "Cannot automatically remove Start Up setting.");
  EXPECT_EQ(d.messages.shown[0].icon, MsgIcon::Information);
  EXPECT_NE(d.messages.shown[0].text.find("look for the label \"marquill\". Right-click"),
            std::string::npos);
  EXPECT_TRUE(f.chkAutoRun);
  // The Run value found first: the shortcut is not looked at, and unchecking works.
  Dialog run;
  run.launch.runValue = run.launch.shortcut = true;
  run.Load().SetChkAutoRun(false);
  EXPECT_FALSE(run.form.ShortcutAutoRun);
  EXPECT_FALSE(run.form.chkAutoRun);
  EXPECT_TRUE(run.messages.shown.empty());
  // The size label toggles its box.
  run.form.lblSize_Click();
  EXPECT_FALSE(run.form.chkSize);
}

}  // namespace
}  // namespace mq::test
