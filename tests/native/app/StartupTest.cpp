#include <gtest/gtest.h>

#include "app/MainHarness.h"

namespace mq {
namespace {

using test::MainHarness;
using Keys = std::vector<std::string>;

TEST(Startup, FreshInstallationWritesOnlyTheFirstRunKeys) {
  MainHarness h;
  ASSERT_TRUE(h.main.Form_Load());
  EXPECT_TRUE(h.messages.shown.empty());
  EXPECT_EQ(h.port.WrittenKeys(),
            (Keys{"Set_H0_En", "Set_H1_En", "Set_H2_En", "Set_H3_En", "Cur_LO", "Set_LO",
                  "Cur_LO", "Set_Dl", "Cur_Dl", "Set_Vu", "Cur_Vu", "Set_Pn", "Cur_Pn"}));
  for (const char16_t* key : {u"Set_LO", u"Cur_LO", u"Set_Vu", u"Cur_Vu", u"Set_Pn", u"Cur_Pn"})
    EXPECT_EQ(h.port.Get(key), "0") << ToUtf8(key);
  EXPECT_EQ(h.port.Get(u"Set_Dl"), "1");
  EXPECT_EQ(h.port.Get(u"Cur_Dl"), "1");

  // Enabled, multi mode, formatting preserved, no case change.
  EXPECT_TRUE(h.main.Enabled());
  EXPECT_FALSE(h.main.SingleMode());
  EXPECT_FALSE(h.main.Purging());
  EXPECT_EQ(h.main.CaseOp(), 0);
  EXPECT_TRUE(h.main.mnuOp(kCaseNone).checked);
  EXPECT_EQ(ToUtf8(h.main.mnuOpHead().caption), "CaseChange (None)");
  EXPECT_EQ(h.tray.tip, "Marquill (Multi No)");
  EXPECT_EQ(h.tray.icon, 101);
  // Hotkeys CTRL+1 (paste) and CTRL+2..CTRL+5.
  for (uint32_t vkey = 49; vkey <= 53; ++vkey) EXPECT_TRUE(h.CtrlKeyRegistered(vkey)) << vkey;
  // The clip list window: opacity 75, Canter, deleting pasted entries.
  EXPECT_EQ(h.list.Fader1.opacity, 75);
  EXPECT_EQ(h.list.Fader1.fadeIn, 2);
  EXPECT_EQ(h.list.Fader1.fadeOut, 2);
  EXPECT_FALSE(h.main.NoFade());
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
  // The fade speed was read (and applied) by the time start-up ends.
  EXPECT_EQ(h.list.Fader1.fadeIn, 1);
}

TEST(Startup, SecondInstanceReportsAndShutsDownWithoutTouchingSettings) {
  MainHarness h;
  h.view.anotherInstance = true;
  EXPECT_FALSE(h.main.Form_Load());
  ASSERT_EQ(h.messages.shown.size(), 1u);
  EXPECT_EQ(h.messages.shown[0].title, "Error: Marquill active");
  EXPECT_EQ(h.messages.shown[0].text,
            "Marquill is already running. Look for the paperclip icon in the system tray (on "
            "the \"Start\" bar near the clock).");
  EXPECT_EQ(h.messages.shown[0].icon, MsgIcon::Exclamation);
  EXPECT_EQ(h.port.reads, 0);
  EXPECT_TRUE(h.port.writes.empty());
  EXPECT_EQ(h.hotkeys.registerCalls, 0);
  EXPECT_EQ(h.Count("tray."), 0);
  EXPECT_EQ(h.Count("monitor.attach"), 0);
  EXPECT_EQ(h.log, (std::vector<std::string>{
                       "guard", "help.close", "delete C:\\Apps\\Marquill\\temp.tmp",
                       "delete C:\\Apps\\Marquill\\temp2.tmp", "list.allowclose", "unload.windows",
                       "quit"}));
}

TEST(Startup, StoredStatesAreRestored) {
  MainHarness h;
  h.port.Set(u"Set_Op", u"0");
  h.port.Set(u"Cur_Op", u"3");
  h.port.Set(u"Set_Mo", u"1");
  h.port.Set(u"Set_Fm", u"0");
  h.port.Set(u"Cur_Fm", u"2");
  h.port.Set(u"Set_En", u"0");
  h.port.Set(u"Cur_En", u"2");
  h.port.Set(u"Set_FS", u"0");
  ASSERT_TRUE(h.main.Form_Load());
  EXPECT_TRUE(h.messages.shown.empty());
  EXPECT_EQ(h.main.CaseOp(), 2);
  EXPECT_TRUE(h.main.mnuOp(kCaseUpper).checked);
  EXPECT_FALSE(h.main.mnuOp(kCaseNone).checked);
  EXPECT_EQ(ToUtf8(h.main.mnuOpHead().caption), "CaseChange (UC)");
  EXPECT_TRUE(h.main.SingleMode());
  EXPECT_EQ(ToUtf8(h.main.mnuMode().caption), "To Multi Mode");
  EXPECT_FALSE(h.main.mnuList().visible);
  EXPECT_FALSE(h.main.mnuBar1().visible);
  EXPECT_EQ(h.port.Get(u"Cur_Mo"), "1");
  EXPECT_TRUE(h.main.Purging());
  EXPECT_FALSE(h.main.Enabled());
  EXPECT_EQ(h.tray.icon, 102);  // added enabled, then switched to the disabled image
  EXPECT_EQ(h.tray.tip, "Marquill (Single Purge UC)");
  EXPECT_TRUE(h.main.NoFade());
  EXPECT_EQ(h.port.Get(u"Cur_Op"), "3") << "start-up does not rewrite the chosen state";
}

TEST(Startup, RepairsAreReportedOnceHoweverManyThereAre) {
  MainHarness h;
  h.port.Set(u"Set_Op", u"7");
  h.port.Set(u"Set_Mo", u"abc");  // numeric value 0: Cur_Mo is used, no repair
  h.port.Set(u"Set_Fm", u"5");
  h.port.Set(u"Set_En", u"9");
  h.port.Set(u"Set_FO", u"24");
  h.port.Set(u"Set_FS", u"7");
  h.port.Set(u"Set_H0_En", u"yes");  // repaired silently
  h.port.Set(u"Set_H1_Ky", u"1234");  // falls back to 51, not rewritten
  ASSERT_TRUE(h.main.Form_Load());
  ASSERT_EQ(h.messages.shown.size(), 1u);
  EXPECT_EQ(h.messages.shown[0].title, "Error: Corrupt Settings.");
  EXPECT_EQ(h.messages.shown[0].text,
            "Some of the program settings were corrupted. The corrupt settings have been "
            "returned to their default values.");
  EXPECT_EQ(h.messages.shown[0].icon, MsgIcon::Exclamation);
  EXPECT_EQ(h.port.Get(u"Set_Op"), "0");
  EXPECT_EQ(h.port.Get(u"Cur_Op"), "1");
  EXPECT_EQ(ToUtf8(h.main.mnuOpHead().caption), "CaseChange (No)");
  EXPECT_TRUE(h.main.mnuOp(kCaseNone).checked);
  EXPECT_EQ(h.port.Get(u"Set_Mo"), "abc");
  EXPECT_EQ(h.port.Get(u"Set_Fm"), "0");
  EXPECT_EQ(h.port.Get(u"Cur_Fm"), "1");
  EXPECT_EQ(h.port.Get(u"Set_En"), "1");
  EXPECT_EQ(h.port.Get(u"Cur_En"), "1");
  EXPECT_EQ(h.port.Get(u"Set_FO"), "75");
  EXPECT_EQ(h.port.Get(u"Set_FS"), "2");
  EXPECT_EQ(h.port.Get(u"Set_H0_En"), "1");
  EXPECT_EQ(h.port.Get(u"Set_H1_Ky"), "1234");
  EXPECT_TRUE(h.CtrlKeyRegistered(51));
  EXPECT_TRUE(h.main.Enabled());
  EXPECT_FALSE(h.main.SingleMode());
  EXPECT_EQ(h.list.Fader1.opacity, 75);
}

TEST(Startup, OpacityBoundsAndSpeeds) {
  struct {
    const char16_t* fo;
    const char16_t* fs;
    int opacity, speed;
    bool message;
  } cases[] = {{u"25", u"1", 25, 4, false},
               {u"100", u"3", 100, 1, false},
               {u"101", u"2", 75, 2, true},
               {u"abc", u"2", 75, 2, true}};
  for (const auto& c : cases) {
    MainHarness h;
    h.port.Set(u"Set_FO", c.fo);
    h.port.Set(u"Set_FS", c.fs);
    h.main.Form_Load();
    EXPECT_EQ(h.list.Fader1.opacity, c.opacity) << ToUtf8(c.fo);
    EXPECT_EQ(h.list.Fader1.fadeIn, c.speed);
    EXPECT_EQ(h.list.Fader1.fadeOut, c.speed);
    EXPECT_EQ(h.messages.shown.size(), c.message ? 1u : 0u);
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

TEST(Startup, AStoreFailureResetsEverySetting) {
  MainHarness h;
  h.port.Set(u"Set_Mo", u"1");     // single mode is reached before the failure...
  h.port.failKey = u"Set_Fm";      // ...and the store fails at the formatting read
  ASSERT_TRUE(h.main.Form_Load());
  ASSERT_EQ(h.messages.shown.size(), 1u);
  EXPECT_EQ(h.messages.shown[0].title, "Error: Corrupt Settings.");
  EXPECT_EQ(h.messages.shown[0].text,
            "There is an unknown problem with the program settings. All settings have been "
            "returned to their default values.");
  EXPECT_EQ(h.messages.shown[0].icon, MsgIcon::Critical);
  EXPECT_EQ(h.port.Get(u"Set_RC_Op"), "12");
  EXPECT_EQ(h.port.Get(u"Cur_FF_O"), "3");
  EXPECT_EQ(h.port.Get(u"Set_Mo"), "0");
  EXPECT_FALSE(h.main.SingleMode());
  EXPECT_TRUE(h.main.Enabled());
  EXPECT_TRUE(h.main.mnuOp(kCaseNone).checked);
  EXPECT_TRUE(h.tray.added);
  EXPECT_EQ(h.tray.icon, 101);
  EXPECT_EQ(h.list.Fader1.opacity, 75);
  EXPECT_EQ(h.list.Fader1.fadeIn, 2);
  for (uint32_t vkey = 49; vkey <= 53; ++vkey) EXPECT_TRUE(h.CtrlKeyRegistered(vkey));
}

TEST(Startup, AKeyCodeAbove255ResetsEverySetting) {
  MainHarness h;
  h.port.Set(u"Set_H2_Ky", u"300");
  h.port.Set(u"Set_H0_Ky", u"70");
  h.main.Form_Load();
  ASSERT_EQ(h.messages.shown.size(), 1u);
  EXPECT_EQ(h.messages.shown[0].icon, MsgIcon::Critical);
  EXPECT_EQ(h.port.Get(u"Set_H2_Ky"), "52");
  EXPECT_EQ(h.port.Get(u"Set_H0_Ky"), "50");
  EXPECT_TRUE(h.CtrlKeyRegistered(50));
  EXPECT_FALSE(h.CtrlKeyRegistered(70));
}

TEST(Shutdown, RunsItsStepsInOrder) {
  MainHarness h;
  h.main.Form_Load();
  h.log.clear();
  h.main.mnuExit_Click();
  EXPECT_EQ(h.log, (std::vector<std::string>{
                       "help.close", "delete C:\\Apps\\Marquill\\temp.tmp",
                       "delete C:\\Apps\\Marquill\\temp2.tmp", "list.allowclose", "tray.delete",
                       "unload.windows", "quit"}));
  EXPECT_TRUE(h.list.Ending());
  EXPECT_TRUE(h.hotkeys.registrations.empty());
  EXPECT_EQ(h.hotkeys.AtomCount(), 0u);
  EXPECT_TRUE(h.main.Unloaded());
}

TEST(OsVersion, NamesAndIconBase) {
  EXPECT_EQ(ToUtf8(OsVersionText({2, 5, 1, 2600, u"Service Pack 3"})),
            "Windows XP 5.1 Build 2600 (Service Pack 3)");
  EXPECT_EQ(ToUtf8(OsVersionText({2, 10, 0, 19045, u""})), "Windows NT 10.0 Build 19045 ()");
  EXPECT_EQ(ToUtf8(OsVersionText({2, 5, 0, 2195, u""})), "Windows 2000 5.0 Build 2195 ()");
  EXPECT_EQ(ToUtf8(OsVersionText({1, 4, 90, 3000, u" "})), "Windows ME 4.90 Build 3000 ( )");
  EXPECT_EQ(ToUtf8(OsVersionText({1, 4, 10, 1998, u""})), "Windows 98 4.10 Build 1998 ()");
  EXPECT_EQ(ToUtf8(OsVersionText({0, 3, 1, 0, u""})), "Win32s 3.1 Build 0 ()");
  EXPECT_EQ(IconBaseFor({2, 5, 1, 0, u""}), 0);
  EXPECT_EQ(IconBaseFor({2, 10, 0, 0, u""}), 0);
  EXPECT_EQ(IconBaseFor({2, 5, 0, 0, u""}), 2);
  EXPECT_EQ(IconBaseFor({1, 4, 90, 0, u""}), 2);

  MainHarness h;
  h.services.os = {2, 5, 0, 2195, u"Service Pack 4"};
  h.main.Form_Load();
  EXPECT_EQ(h.tray.icon, 103);
  h.main.mnuAbout_Click();
  EXPECT_EQ(h.view.aboutText, "Windows 2000 5.0 Build 2195 (Service Pack 4)");
}

}  // namespace
}  // namespace mq
