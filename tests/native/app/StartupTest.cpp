#include <gtest/gtest.h>

#include "app/MainHarness.h"

namespace mq {
namespace {

using test::MainHarness;
using Strs = std::vector<std::string>;

TEST(Startup, FreshInstallationWritesOnlyTheFirstRunKeys) {
  MainHarness h;
  ASSERT_TRUE(h.main.Form_Load());
  EXPECT_TRUE(h.messages.shown.empty());
  std::string written;
  for (const auto& [key, value] : h.port.writes) written += ToUtf8(key) + "=" + ToUtf8(value) + " ";
  EXPECT_EQ(written,
            "Set_H0_En=1 Set_H1_En=1 Set_H2_En=1 Set_H3_En=1 Cur_LO=0 Set_LO=0 Cur_LO=0 Set_Dl=1 "
            "Cur_Dl=1 Set_Vu=0 Cur_Vu=0 Set_Pn=0 Cur_Pn=0 ");
  EXPECT_EQ(h.State(),
            "on multi case0 [CaseChange (None) mnuOp_No] icon101 \"Marquill (Multi No)\" fader 75/2/2");
  for (uint32_t vkey = 49; vkey <= 53; ++vkey) EXPECT_TRUE(h.CtrlKeyRegistered(vkey)) << vkey;
  EXPECT_TRUE(h.list.DeleteOnPaste);
  EXPECT_EQ(h.list.cbOpIndex, 0);
}

TEST(Startup, StepsRunInOrderAfterTheGuard) {
  MainHarness h;
  int readsAtGuard = -1;
  h.view.onGuard = [&] { readsAtGuard = h.port.reads; };
  h.port.Set(u"Set_FS", u"3");
  h.main.Form_Load();
  EXPECT_EQ(readsAtGuard, 0);
  ASSERT_EQ(h.log.front(), "guard");
  EXPECT_LT(h.IndexOf("monitor.attach"), h.IndexOf("splash"));
  EXPECT_LT(h.IndexOf("splash"), h.IndexOf("tray.add"));
  // Five registrations, none refused: the configured keys were known before registering.
  EXPECT_EQ(h.hotkeys.registerCalls, 5);
  EXPECT_EQ(h.hotkeys.registrations.size(), 5u);
  EXPECT_EQ(h.list.Fader1.fadeIn, 1) << "the fade speed is applied by the end";
}

TEST(Startup, SecondInstanceReportsAndShutsDownWithoutTouchingSettings) {
  MainHarness h;
  h.view.anotherInstance = true;
  EXPECT_FALSE(h.main.Form_Load());
  EXPECT_EQ(h.messages.Titles(), Strs{"Error: Marquill active"});  // its text: end-to-end
  EXPECT_EQ(h.port.reads, 0);
  EXPECT_TRUE(h.port.writes.empty());
  EXPECT_EQ(h.hotkeys.registerCalls, 0);
  EXPECT_EQ(h.log, (Strs{"guard", "help.close", "delete C:\\Apps\\Marquill\\temp.tmp",
                         "delete C:\\Apps\\Marquill\\temp2.tmp", "list.allowclose",
                         "unload.windows", "quit"}));
}

TEST(Startup, StoredStatesAreRestored) {
  MainHarness h;
  for (auto [key, value] : {std::pair{u"Set_Op", u"0"}, {u"Cur_Op", u"3"}, {u"Set_Mo", u"1"},
                            {u"Set_Fm", u"0"}, {u"Cur_Fm", u"2"}, {u"Set_En", u"0"},
                            {u"Cur_En", u"2"}, {u"Set_FS", u"0"}, {u"Set_FO", u"25"}})
    h.port.Set(key, value);
  ASSERT_TRUE(h.main.Form_Load());
  EXPECT_TRUE(h.messages.shown.empty());
  // Added enabled, then switched to the disabled image.
  EXPECT_EQ(h.State(), "off single purge case2 [CaseChange (UC) mnuOp_UC] icon102 "
                       "\"Marquill (Single Purge UC)\" fader 25/2/2 nofade");
  EXPECT_EQ(ToUtf8(h.main.mnuMode().caption), "To Multi Mode");
  EXPECT_FALSE(h.main.mnuList().visible);
  EXPECT_FALSE(h.main.mnuBar1().visible);
  EXPECT_EQ(h.port.Get(u"Cur_Mo"), "1");
  EXPECT_EQ(h.port.Get(u"Cur_Op"), "3") << "start-up does not rewrite the chosen state";
}

TEST(Startup, RepairsAreReportedOnceHoweverManyThereAre) {
  MainHarness h;
  for (auto [key, value] : {std::pair{u"Set_Op", u"7"}, {u"Set_Mo", u"abc"}, {u"Set_Fm", u"5"},
                            {u"Set_En", u"9"}, {u"Set_FO", u"24"}, {u"Set_FS", u"7"},
                            {u"Set_H0_En", u"yes"}, {u"Set_H1_Ky", u"1234"}})
    h.port.Set(key, value);
  ASSERT_TRUE(h.main.Form_Load());
  EXPECT_EQ(h.messages.Titles(), Strs{"Error: Corrupt Settings."});
  EXPECT_EQ(h.messages.shown[0].icon, MsgIcon::Exclamation);
  EXPECT_EQ(h.State(),
            "on multi case0 [CaseChange (No) mnuOp_No] icon101 \"Marquill (Multi No)\" fader 75/2/2");
  EXPECT_EQ(h.port.Get(u"Set_H0_En"), "1") << "repaired silently";
  EXPECT_EQ(h.port.Get(u"Set_H1_Ky"), "1234") << "falls back to 51, not rewritten";
  EXPECT_TRUE(h.CtrlKeyRegistered(51));
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

TEST(Startup, HotkeysAreLiveWhileAStartupMessageWaits) {
  // A repair (its message at the end of start-up), then a store failure (the reset's message).
  for (bool storeFails : {false, true}) {
    MainHarness h;
    h.port.Set(u"Set_FO", u"abc");
    if (storeFails) h.port.failKey = u"Set_En";
    size_t registeredWhileShown = 0;
    h.messages.onShow = [&] { registeredWhileShown = h.hotkeys.registrations.size(); };
    h.main.Form_Load();
    ASSERT_EQ(h.messages.shown.size(), 1u);
    EXPECT_EQ(h.messages.shown[0].icon, storeFails ? MsgIcon::Critical : MsgIcon::Exclamation);
    EXPECT_EQ(registeredWhileShown, 5u) << (storeFails ? "reset" : "repair");
  }
}

TEST(Startup, AStoreFailureOrAKeyCodeAbove255ResetsEverySetting) {
  struct {
    std::vector<std::pair<const char16_t*, const char16_t*>> stored;
    const char16_t* failKey;
  } cases[] = {
      {{{u"Set_Mo", u"1"}}, u"Set_Fm"},  // single mode is reached before the failure
      {{{u"Set_H2_Ky", u"300"}, {u"Set_H0_Ky", u"70"}}, u""},
  };
  for (const auto& c : cases) {
    MainHarness h;
    for (auto [key, value] : c.stored) h.port.Set(key, value);
    h.port.failKey = c.failKey;
    ASSERT_TRUE(h.main.Form_Load());
    EXPECT_EQ(h.messages.Log(),
              Strs{"x Error: Corrupt Settings.: There is an unknown problem with the program "
                   "settings. All settings have been returned to their default values."});
    for (auto [key, value] : {std::pair{u"Set_RC_Op", "12"}, {u"Cur_FF_O", "3"},
                              {u"Set_Mo", "0"}, {u"Set_H0_Ky", "50"}, {u"Set_H2_Ky", "52"}})
      EXPECT_EQ(h.port.Get(key), value) << ToUtf8(key);
    EXPECT_EQ(h.State(), "on multi case0 [CaseChange (None) mnuOp_No] icon101 "
                         "\"Marquill (Multi No)\" fader 75/2/2");
    EXPECT_TRUE(h.tray.added);
    for (uint32_t vkey = 49; vkey <= 53; ++vkey) EXPECT_TRUE(h.CtrlKeyRegistered(vkey));
    EXPECT_FALSE(h.CtrlKeyRegistered(70));
  }
}

TEST(Shutdown, RunsItsStepsInOrder) {
  MainHarness h;
  h.main.Form_Load();
  h.log.clear();
  h.main.mnuExit_Click();
  EXPECT_EQ(h.log, (Strs{"help.close", "delete C:\\Apps\\Marquill\\temp.tmp",
                         "delete C:\\Apps\\Marquill\\temp2.tmp", "list.allowclose",
                         "tray.delete", "unload.windows", "quit"}));
  EXPECT_TRUE(h.list.Ending());
  EXPECT_TRUE(h.hotkeys.registrations.empty());
  EXPECT_EQ(h.hotkeys.AtomCount(), 0u);
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
  MainHarness h;
  h.services.os = {2, 5, 0, 2195, u"Service Pack 4"};
  h.main.Form_Load();
  EXPECT_EQ(h.tray.icon, 103);
  h.main.mnuAbout_Click();
  EXPECT_EQ(h.view.aboutText, "Windows 2000 5.0 Build 2195 (Service Pack 4)");
}

}  // namespace
}  // namespace mq
