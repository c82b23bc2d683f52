// The settings dialog's logic with fake settings, message boxes, hotkeys and launch-at-log-on.
#include "settings/frmSettings.h"

#include <gtest/gtest.h>

#include "fakes/FakePorts.h"
#include "fakes/FakeSettings.h"

namespace mq::test {
namespace {

using Strs = std::vector<std::string>;

// What saving applies at once, and launch at log-on with its registry and shortcut.
class FakeEffects : public SettingsEffects, public LaunchAtLogon {
 public:
  void ApplyHotkeys(std::optional<int> pasteKey,
                    const std::array<HotkeySlotChange, 4>& slots) override {
    ++hotkeyCalls;
    applied = "paste " + std::to_string(pasteKey.value_or(0));
    for (const auto& s : slots)
      applied += s.enabled ? " " + (s.vkey ? std::to_string(*s.vkey) : "keep") : " stop";
  }
  void ApplyFader(int opacity, int speed, bool noFade) override {
    fader = {opacity, speed, noFade ? 1 : 0};
  }
  void ClearNoFade() override { ++noFadeCleared; }
  bool SetAutoRun(bool enable) override {
    calls.push_back(enable ? "set" : "delete");
    if (!registryLocked) runValue = enable;
    return !registryLocked;
  }
  bool IsAutoRunSet() override { return runValue; }
  bool StartupShortcutFound() override { return shortcut; }
  bool ExecutableExists() override { return exeExists; }
  bool CreateStartupShortcut() override {
    calls.push_back("shortcut");
    if (!shortcutFails) shortcut = true;
    return !shortcutFails;
  }
  int hotkeyCalls = 0, noFadeCleared = 0;
  std::string applied;
  std::array<int, 3> fader{-1, -1, -1};
  bool registryLocked = false, runValue = false, shortcut = false, exeExists = true,
       shortcutFails = false;
  Strs calls;
};

struct Dialog {
  explicit Dialog(std::map<Text, Text> stored = {}, bool xp = true)
      : form({settings, messages, effects, effects, xp}) {
    port.values = std::move(stored);
  }
  frmSettings& Load() {
    form.Form_Load();
    port.writes.clear();
    return form;
  }
  FakeSettings port;
  Settings settings{port};
  FakeMessageBoxes messages;
  FakeEffects effects;
  frmSettings form;
};

std::string Item(const ComboModel& box) {
  std::string item = box.index >= 0 && box.index < static_cast<int>(box.items.size())
                         ? ToUtf8(box.items[box.index]) : "<none>";
  return box.enabled ? item : "~" + item;  // "~": greyed
}

// Everything the dialog shows, one line per page. A hotkey row reads
// "[x key action/action2]": "x" checked, "-" unchecked and greyed, "~" before a greyed key.
std::string View(const frmSettings& f) {
  std::string s = Item(f.cbEnable) + "|" + Item(f.cbMode) + "|" + Item(f.cbFormat) + "|" +
                  Item(f.cbOp) + "|" + Item(f.cbRC) + "|" + Item(f.cbRC2) +
                  (f.chkAutoRun ? "|autorun" : "") + "\n" + ToUtf8(f.txtHK[0].text);
  for (int n = 0; n < 4; ++n) {
    const bool grey = f.rowColor[n] == frmSettings::kRowOff;
    EXPECT_EQ(grey, !f.chkHK[n]) << "row colour " << n;
    s += std::string(" [") + (f.chkHK[n] ? "x " : "- ") + (f.txtHK[n + 1].enabled ? "" : "~") +
         ToUtf8(f.txtHK[n + 1].text) + " " + Item(f.cbAction[n]) + "/" + Item(f.cbAction2[n]) +
         "]";
  }
  return s + "\n" + Item(f.cbPin) + "|" + Item(f.cbDel) + "|" + Item(f.cbView) + "|" +
         Item(f.cbLstOp) + "|" + Item(f.cbFadeSpd) + "|" + std::to_string(f.sliOpacity) +
         (f.sliOpacityEnabled ? "" : "~") + (f.chkSize ? "|size" : "");
}

// A fresh installation's dialog, with the mode box showing mode.
std::string Fresh(const std::string& mode) {
  return "Enabled|" + mode + "|Last Used|Last Used|Popup Menu|~Popup Menu\n"
         "1 [x 2 Show List/~Hide List] [x 3 Purge Formatting/~Preserve Formatting]"
         " [x 4 (No Change)/Standardize] [x 5 Enable/~Disable]\n"
         "Last Used|Last Used|Last Used|Last Used|Canter|75|size";
}

TEST(SettingsDialog, LoadShowsStoredValuesAndWritesItsRepairs) {
  struct Case {
    std::map<Text, Text> stored;
    std::string view;
    Strs after;  // "key=value" once loaded ("<absent>" for none)
  } cases[] = {
      {{},
       Fresh("Multi"),
       {"Set_RC_Op=12", "Set_H0_En=1", "Set_H3_En=1", "Set_H0_Op=2", "Set_H2_Op=41",
        "Set_H3_Op=0", "Set_Pn=0", "Set_Dl=0", "Set_Vu=0", "Set_LO=0", "Set_FS=2", "Set_FO=75",
        "Set_En=<absent>", "Set_H0_Ky=<absent>"}},
      // 81 is "Q"; 999 and "1a" are invalid and show the slot's default; "11" is Exit;
      // "123" is too long; "63" holds Action 2's choice; "5" has no second digit.
      {{{u"Set_En", u"2"},     {u"Set_Mo", u"7"},      {u"Set_Fm", u"x"},      {u"Set_Op", u"4"},
        {u"Set_RC_Op", u"41"}, {u"Set_H0_Ky", u"81"},  {u"Set_H1_Ky", u"999"}, {u"Set_H2_Ky", u"1a"},
        {u"Set_H0_En", u"0"},  {u"Set_H1_En", u"yes"}, {u"Set_HV_Ky", u"57"},  {u"Set_H0_Op", u"11"},
        {u"Set_H1_Op", u"123"}, {u"Set_H2_Op", u"63"}, {u"Set_H3_Op", u"5"},   {u"Set_Pn", u"2"},
        {u"Set_Dl", u"3"},     {u"Set_Vu", u"1"},      {u"Set_LO", u"3"},      {u"Set_FS", u"0"},
        {u"Set_FO", u"50.5"},  {u"Set_Sz", u"0"}},
       "Disabled|Multi|Last Used|lower case|(No Change)|Standardize\n"
       "9 [- ~Q ~Exit/~Exit] [x 3 Purge Formatting/~Preserve Formatting]"
       " [x 4 UPPER CASE/lower case] [x 5 Standardize/Standardize]\n"
       "Always On Top|Last Used|Expanded|lower case|No Fade|51",
       {"Set_Mo=2", "Set_Fm=0", "Set_H1_Ky=999", "Set_H1_En=1", "Set_H1_Op=3", "Set_Dl=0"}},
  };
  for (auto& c : cases) {
    Dialog d(c.stored);
    d.form.Form_Load();
    EXPECT_EQ(View(d.form), c.view);
    for (const std::string& kv : c.after) {
      const size_t eq = kv.find('=');
      EXPECT_EQ(kv.substr(0, eq) + "=" + d.port.Get(FromUtf8(kv.substr(0, eq))), kv);
    }
    EXPECT_TRUE(d.messages.shown.empty()) << "load repairs are silent";
  }
}

TEST(SettingsDialog, TabsMoveTheFocusAndActionsRefillActionTwo) {
  Dialog d;
  frmSettings& f = d.Load();
  using F = frmSettings::Focus;
  for (auto [tab, focus] : {std::pair{1, F::txtHK0}, {2, F::cbPin}, {0, F::cbEnable}}) {
    f.cmdTab_Click(tab);
    EXPECT_EQ(f.tab, tab);
    EXPECT_EQ(f.focusRequest, focus) << tab;
  }
  d.port.Set(u"Set_H1_Op", u"72");  // Action 2 is refilled from the stored code
  for (auto [action, second] : {std::pair{7, "UPPER CASE"}, {5, "Standardize"}, {9, "~Help"}}) {
    f.SelectAction(1, action);
    EXPECT_EQ(Item(f.cbAction2[1]), second) << action;
  }
}

TEST(SettingsDialog, TypedKeysAreCheckedBeforeTheyAreTaken) {
  const std::string special = "x Error: Hotkey combination invalid.: Hotkeys can only be composed "
      "of standard letter or number keys. Please do not use special characters or function keys "
      "(F1, F2, etc.).";
  const std::string ctrlA = "!yn Warning: Hotkey combination used.: Many applications bind the "
      "hotkey combination CTRL+A to the command Select All Highlighted Text. Are you sure you "
      "want to use this hotkey combination?";
  const std::tuple<int, char16_t, MsgResult, const char*, std::string> steps[] = {
      {1, u'c', MsgResult::Yes, "2", "x Error: Hotkey combination invalid.: Microsoft Windows has "
       "bound the hotkey combination CTRL+C to the command Copy Selection. This hotkey cannot be "
       "used by Marquill."},
      {1, u'a', MsgResult::No, "2", ctrlA},
      {1, u'a', MsgResult::Yes, "A", ctrlA},
      {1, u'2', MsgResult::Yes, "2", ""},  // free again
      {3, u'2', MsgResult::Yes, "4", "x Error: Hotkey combination in use.: You have already "
       "assigned a command to this kothey combination. Please select a different hotkey."},
      {3, u'4', MsgResult::Yes, "4", ""},  // the box's own key
      {3, u'q', MsgResult::Yes, "Q", ""},
      {0, u'\r', MsgResult::Yes, "1", special}, {0, u'$', MsgResult::Yes, "1", special},
      {0, u'"', MsgResult::Yes, "1", special},  {0, u' ', MsgResult::Yes, "1", special},
      {0, u'\b', MsgResult::Yes, "1", special},
  };
  Dialog d;
  frmSettings& f = d.Load();
  for (const auto& [box, typed, answer, shows, message] : steps) {
    d.messages.shown.clear();
    d.messages.answer = answer;
    f.txtHK_KeyPress(box, typed);
    EXPECT_EQ(ToUtf8(f.txtHK[box].text), shows) << box << " " << int(typed);
    EXPECT_EQ(d.messages.Log(), message.empty() ? Strs{} : Strs{message}) << box << " " << int(typed);
  }
  EXPECT_TRUE(d.port.writes.empty()) << "typing writes nothing";
}

TEST(SettingsDialog, RestartWarningFollowsTheStateAtLoadAndResetWritesNothing) {
  Dialog d({{u"Set_H1_En", u"0"}, {u"Set_H3_En", u"0"}});
  frmSettings& f = d.Load();
  f.SetChkHK(1, true);
  EXPECT_EQ(d.messages.Log(),
            Strs{"i Warning: Restart Marquill required.: This setting will take effect the next "
                 "time Marquill starts. To enable this hotkey now, please close Marquill and "
                 "launch it again."});
  EXPECT_TRUE(f.txtHK[2].enabled);
  f.SetChkHK(1, false);
  EXPECT_FALSE(f.txtHK[2].enabled);
  f.SetChkHK(1, true);  // warns again
  f.SetChkHK(0, false);
  f.SetChkHK(0, true);  // on at load: never warns
  EXPECT_EQ(d.messages.shown.size(), 2u);
  // Reset Defaults checks every box: one warning for each slot unchecked now and off at load.
  d.messages.shown.clear();
  f.SetChkHK(0, false);
  f.txtHK_KeyPress(2, u'k');
  f.cbEnable.index = f.cbDel.index = 2;
  f.cmdOp_Click(1);
  EXPECT_EQ(d.messages.Titles(), Strs{"Warning: Restart Marquill required."});
  EXPECT_EQ(View(f), Fresh("Last Used"));  // the key table's reset values: Set_Mo "0"
  EXPECT_TRUE(d.port.writes.empty());
  EXPECT_EQ(d.effects.noFadeCleared, 1);
  EXPECT_FALSE(f.closed);
}

TEST(SettingsDialog, SaveWritesEveryKeyInOrderAndAppliesAtOnce) {
  Dialog d({{u"Set_H2_En", u"0"}});
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
  std::string written;
  for (const auto& [k, v] : d.port.writes) written += ToUtf8(k) + "=" + ToUtf8(v) + " ";
  EXPECT_EQ(written,
            "Set_En=1 Set_Mo=1 Set_Fm=0 Set_Op=0 Set_RC_Op=53 Set_H0_Op=2 Set_H0_Ky=81 "
            "Set_H0_En=1 Set_H1_Op=3 Set_H1_En=1 Set_H2_Op=41 Set_H2_Ky=52 Set_H2_En=1 "
            "Set_H3_Op=0 Set_H3_Ky=53 Set_H3_En=0 Set_HV_Ky=57 Set_Pn=0 Set_Dl=0 Set_Vu=0 "
            "Set_LO=0 Set_FS=1 Set_FO=50 Set_Sz=0 ");  // the emptied box writes no key
  EXPECT_EQ(d.effects.calls, Strs{"set"});
  EXPECT_EQ(d.effects.hotkeyCalls, 1);
  EXPECT_EQ(d.effects.applied, "paste 57 81 keep 52 stop");
  EXPECT_EQ(d.effects.fader, (std::array<int, 3>{50, 4, 0}));
  EXPECT_EQ(d.messages.Titles(), Strs{"Warning: Restart Marquill required."});

  // "No Fade" sets the flag; Cancel closes without writing.
  Dialog e;
  e.Load().cbFadeSpd.index = 0;
  e.form.cmdOp_Click(0);
  EXPECT_EQ(e.effects.fader, (std::array<int, 3>{75, 0, 1}));
  EXPECT_EQ(e.effects.calls, Strs{"delete"});
  Dialog c;
  c.Load().sliOpacity = 30;
  c.form.cmdOp_Click(2);
  EXPECT_TRUE(c.form.closed);
  EXPECT_TRUE(c.port.writes.empty());
  EXPECT_EQ(c.effects.hotkeyCalls, 0);
}

TEST(SettingsDialog, WithoutTransparencyOpacityIsFullAndFadingOff) {
  Dialog d({{u"Set_FO", u"40"}, {u"Set_FS", u"3"}}, false);
  frmSettings& f = d.Load();
  EXPECT_TRUE(f.transparencyUnavailable);
  EXPECT_EQ(Item(f.cbFadeSpd) + " " + std::to_string(f.sliOpacity) + (f.sliOpacityEnabled ? "" : "~"),
            "~No Fade 100~");
  f.cmdOp_Click(1);
  EXPECT_EQ(f.sliOpacity, 100);
  f.cmdOp_Click(0);
  EXPECT_EQ(d.port.Get(u"Set_FO"), "100");
  EXPECT_EQ(d.port.Get(u"Set_FS"), "0");
}

TEST(SettingsDialog, RegistryFailureOffersTheShortcut) {
  const std::string failed = "Error: Autorun unsuccessful.: ";
  // The answer to the offer, whether the shortcut fails, whether the program is found; then
  // what follows the offer and the calls made.
  const std::tuple<MsgResult, bool, bool, std::string, Strs> cases[] = {
      {MsgResult::No, false, true, "", {"set"}},
      {MsgResult::Yes, false, true, "! Autorun success.: Alternate Autorun method successful!",
       {"set", "shortcut"}},
      {MsgResult::Yes, true, true, "i " + failed + "Alternate Autorun method was not successful.",
       {"set", "shortcut"}},
      {MsgResult::Yes, false, false, "x " + failed + "Cannot identify program location. "
       "Alternate Autorun method was not successful.", {"set"}},
  };
  for (const auto& [answer, shortcutFails, exeExists, then, calls] : cases) {
    SCOPED_TRACE(then);
    Dialog d;
    d.effects.registryLocked = true;
    d.effects.shortcutFails = shortcutFails;
    d.effects.exeExists = exeExists;
    d.messages.answer = answer;
    d.Load().SetChkAutoRun(true);
    d.form.cmdOp_Click(0);
    Strs log = d.messages.Log();
    ASSERT_EQ(log.size(), then.empty() ? 1u : 2u);
    EXPECT_EQ(log[0].rfind("xyn Error: Cannot access System Registry.: ", 0), 0u);
    EXPECT_NE(log[0].find("system registry. \r\n\r\nWould you like Marquill"), std::string::npos);
    EXPECT_NE(log[0].find("on the \"marquill\" label and select \"Delete\" from the menu that pops "
                          "up under your mouse cursor.\r\n\r\nShall I proceed to try this "
                          "alternate method?"), std::string::npos);
    if (!then.empty()) EXPECT_EQ(log[1], then);
    EXPECT_EQ(d.effects.calls, calls);
    EXPECT_EQ(d.form.chkAutoRun, answer == MsgResult::Yes) << "unchecked when declined";
    EXPECT_EQ(d.effects.shortcut, calls.size() == 2 && !shortcutFails);
    EXPECT_EQ(d.port.Get(u"Set_Sz"), "1") << "the rest is saved";
  }
  Dialog off;  // unchecking while the registry is locked reports nothing
  off.effects.registryLocked = true;
  off.Load().cmdOp_Click(0);
  EXPECT_TRUE(off.messages.shown.empty());
}

TEST(SettingsDialog, ShortcutInEffectCannotBeUnchecked) {
  Dialog d;
  d.effects.shortcut = true;
  frmSettings& f = d.Load();
  EXPECT_TRUE(f.ShortcutAutoRun);
  f.lblAutoRun_Click();
  ASSERT_EQ(d.messages.Log().size(), 1u);
  EXPECT_EQ(d.messages.Log()[0].rfind("i Cannot automatically remove Start Up setting.: ", 0), 0u);
  EXPECT_NE(d.messages.Log()[0].find("look for the label \"marquill\". Right-click"), std::string::npos);
  EXPECT_TRUE(f.chkAutoRun);
  // The Run value found first: the shortcut is not looked at, and unchecking works.
  Dialog run;
  run.effects.runValue = run.effects.shortcut = true;
  run.Load().SetChkAutoRun(false);
  EXPECT_FALSE(run.form.ShortcutAutoRun);
  EXPECT_FALSE(run.form.chkAutoRun);
  EXPECT_TRUE(run.messages.shown.empty());
  run.form.lblSize_Click();
  EXPECT_FALSE(run.form.chkSize);
}

}  // namespace
}  // namespace mq::test
