#include <gtest/gtest.h>

#include "app/MainHarness.h"

namespace mq {
namespace {

using test::MainHarness;
using Strs = std::vector<std::string>;

TEST(Startup, FreshInstallationRunsItsStepsAndWritesOnlyTheFirstRunKeys) {
  MainHarness h;
  int readsAtGuard = -1;
  h.shell.onGuard = [&] { readsAtGuard = h.port.reads; };
  ASSERT_TRUE(h.main.Form_Load());
  EXPECT_EQ(readsAtGuard, 0);
  ASSERT_GE(h.log.size(), 4u);
  EXPECT_EQ(Strs(h.log.begin(), h.log.begin() + 4),
            (Strs{"guard", "monitor.attach", "splash", "tray.add 101"}));
  EXPECT_TRUE(h.messages.shown.empty());
  std::string written;
  for (const auto& [key, value] : h.port.writes) written += ToUtf8(key) + "=" + ToUtf8(value) + " ";
  EXPECT_EQ(written,
            "Set_H0_En=1 Set_H1_En=1 Set_H2_En=1 Set_H3_En=1 Cur_LO=0 Set_LO=0 Cur_LO=0 Set_Dl=1 "
            "Cur_Dl=1 Set_Vu=0 Cur_Vu=0 Set_Pn=0 Cur_Pn=0 ");
  EXPECT_EQ(h.State(),
            "on multi case0 [CaseChange (None) mnuOp_No] icon101 \"Marquill (Multi No)\" fader 75/2/2");
  // Five registrations, none refused: the configured keys were known before registering.
  for (uint32_t vkey = 49; vkey <= 53; ++vkey) EXPECT_TRUE(h.CtrlKeyRegistered(vkey)) << vkey;
  EXPECT_EQ(h.hotkeys.registerCalls, 5);
}

// Stored states restored; repairs reported with one message however many there are; a store
// failure or a key code above 255 resets every setting. Any message waits with the hotkeys live.
TEST(Startup, StoredSettingsAreRestoredRepairedOrReset) {
  using Stored = std::vector<std::pair<const char16_t*, const char16_t*>>;
  const std::string fresh = "on multi case0 [CaseChange (None) mnuOp_No] icon101 "
                            "\"Marquill (Multi No)\" fader 75/2/2";
  const std::string reset = "x Error: Corrupt Settings.: There is an unknown problem with the "
                            "program settings. All settings have been returned to their default values.";
  const Strs resetKeys = {"Set_RC_Op=12", "Cur_FF_O=3", "Set_Mo=0", "Set_H0_Ky=50", "Set_H2_Ky=52"};
  struct {
    Stored stored;
    const char16_t* failKey;
    std::string message;  // "" for none
    std::string state;
    Strs after;  // "key=value" once started
  } cases[] = {
      // Added enabled, then switched to the disabled image; the chosen states are not rewritten.
      {{{u"Set_Op", u"0"}, {u"Cur_Op", u"3"}, {u"Set_Mo", u"1"}, {u"Set_Fm", u"0"}, {u"Cur_Fm", u"2"},
        {u"Set_En", u"0"}, {u"Cur_En", u"2"}, {u"Set_FS", u"0"}, {u"Set_FO", u"25"}},
       u"", "", "off single purge case2 [CaseChange (UC) mnuOp_UC] icon102 "
       "\"Marquill (Single Purge UC)\" fader 25/2/2 nofade", {"Cur_Op=3"}},
      {{{u"Set_Op", u"7"}, {u"Set_Mo", u"abc"}, {u"Set_Fm", u"5"}, {u"Set_En", u"9"},
        {u"Set_FO", u"24"}, {u"Set_FS", u"7"}, {u"Set_H0_En", u"yes"}, {u"Set_H1_Ky", u"1234"}},
       u"", "! Error: Corrupt Settings.: Some of the program settings were corrupted. The corrupt "
       "settings have been returned to their default values.",
       "on multi case0 [CaseChange (No) mnuOp_No] icon101 \"Marquill (Multi No)\" fader 75/2/2",
       {"Set_H0_En=1", "Set_H1_Ky=1234"}},  // a bad key code falls back but is not rewritten
      {{{u"Set_Mo", u"1"}}, u"Set_Fm", reset, fresh, resetKeys},  // after single mode is set
      {{{u"Set_H2_Ky", u"300"}, {u"Set_H0_Ky", u"70"}}, u"", reset, fresh, resetKeys},
      {{}, u"Set_En", reset, fresh, resetKeys},  // after the hotkeys have started
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.state + " " + c.message);
    MainHarness h;
    for (auto [key, value] : c.stored) h.port.Set(key, value);
    h.port.failKey = c.failKey;
    size_t registeredWhileShown = 0;
    h.messages.onShow = [&] { registeredWhileShown = h.hotkeys.registrations.size(); };
    ASSERT_TRUE(h.main.Form_Load());
    EXPECT_EQ(h.messages.Log(), c.message.empty() ? Strs{} : Strs{c.message});
    if (!c.message.empty()) EXPECT_EQ(registeredWhileShown, 5u);
    EXPECT_EQ(h.State(), c.state);
    for (const std::string& kv : c.after) {
      const size_t eq = kv.find('=');
      EXPECT_EQ(kv.substr(0, eq) + "=" + h.port.Get(FromUtf8(kv.substr(0, eq))), kv);
    }
    EXPECT_TRUE(h.shell.trayAdded);
    for (uint32_t vkey = 49; vkey <= 53; ++vkey) EXPECT_TRUE(h.CtrlKeyRegistered(vkey)) << vkey;
  }
}

TEST(Startup, DisabledHotkeySlotStaysUnregistered) {
  MainHarness h;
  h.port.Set(u"Set_H3_En", u"0");
  h.port.Set(u"Set_H0_Ky", u"65");
  h.port.Set(u"Set_HV_Ky", u"50");  // the paste hotkey takes CTRL+2 ...
  h.port.Set(u"Set_H1_Ky", u"49");  // ... and slot 1 takes CTRL+1: no collision
  h.main.Form_Load();
  EXPECT_FALSE(h.CtrlKeyRegistered(53));
  EXPECT_TRUE(h.main.hkFunc(3).Stopped());
  EXPECT_TRUE(h.CtrlKeyRegistered(65));
  EXPECT_EQ(h.main.hkPaste().VKey(), 50);
  EXPECT_EQ(h.main.hkFunc(1).VKey(), 49);
  EXPECT_EQ(h.hotkeys.registrations.size(), 4u);
}

TEST(Shutdown, RunsItsStepsInOrderAlsoForASecondInstance) {
  Strs steps = {"help.close", "delete C:\\Apps\\Marquill\\temp.tmp",
                "delete C:\\Apps\\Marquill\\temp2.tmp", "list.allowclose", "unload.windows", "quit"};
  // A second instance reports and shuts down before it reads, writes or registers anything.
  MainHarness second;
  second.shell.anotherInstance = true;
  EXPECT_FALSE(second.main.Form_Load());
  EXPECT_EQ(second.messages.Titles(), Strs{"Error: Marquill active"});  // its text: end-to-end
  EXPECT_EQ(second.port.reads, 0);
  EXPECT_TRUE(second.port.writes.empty());
  EXPECT_EQ(second.hotkeys.registerCalls, 0);
  EXPECT_EQ(second.log.front(), "guard");
  EXPECT_EQ(Strs(second.log.begin() + 1, second.log.end()), steps);

  MainHarness h;
  h.main.Form_Load();
  h.log.clear();
  h.main.mnuExit_Click();
  steps.insert(steps.begin() + 4, "tray.delete");
  EXPECT_EQ(h.log, steps);
  EXPECT_TRUE(h.list.Ending());
  EXPECT_TRUE(h.hotkeys.registrations.empty());
  EXPECT_TRUE(h.hotkeys.atoms.empty());
  EXPECT_TRUE(h.main.Unloaded());
}

TEST(OsVersion, NamesAndIconBase) {
  struct {
    OsVersion os;
    const char* text;
    int iconBase;
  } cases[] = {
      {{2, 5, 1, 2600, u"Service Pack 3"}, "Windows XP 5.1 Build 2600 (Service Pack 3)", 0},
      {{2, 10, 0, 19045, u""}, "Windows NT 10.0 Build 19045 ()", 0},
      {{2, 5, 0, 2195, u""}, "Windows 2000 5.0 Build 2195 ()", 2},
      {{1, 4, 90, 3000, u" "}, "Windows ME 4.90 Build 3000 ( )", 2},
      {{1, 4, 10, 1998, u""}, "Windows 98 4.10 Build 1998 ()", 2},
      {{0, 3, 1, 0, u""}, "Win32s 3.1 Build 0 ()", 2},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ToUtf8(OsVersionText(c.os)), c.text);
    EXPECT_EQ(IconBaseFor(c.os), c.iconBase) << c.text;
  }
}

}  // namespace
}  // namespace mq
