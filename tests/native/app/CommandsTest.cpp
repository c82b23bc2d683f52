#include <gtest/gtest.h>

#include <algorithm>

#include "app/MainHarness.h"
#include "ui/modMenus.h"

namespace mq {
namespace {

using test::MainHarness;

struct Loaded : MainHarness {
  Loaded() {
    main.Form_Load();
    log.clear();
    messages.shown.clear();
  }
  std::string LastNotice() const {
    if (shell.notices.empty()) return "<none>";
    const FlashModel& m = shell.notices.back();
    if (m.lblOpVisible) return ToUtf8(m.lblOpCaption);
    return m.picIconVisible[0] ? "<enabled image>" : m.picIconVisible[1] ? "<disabled image>" : "";
  }
  void Press(char key) { hotkeys.Press(hotkeyControls, 2, key); }
};

// A menu item as drawn: its text, then its image and default mark.
std::string Look(const MenuItem& item) {
  auto parts = modMenus::SplitCaption(item.caption);
  return ToUtf8(parts.text) + " " + ToUtf8(modMenus::ReadProperty(parts.properties, u"IMG:")) +
         (modMenus::ReadProperty(parts.properties, u"Default") == u"True" ? " default" : "");
}

TEST(TrayCommands, EnableTogglesEverythingThatShowsTheState) {
  Loaded h;
  // The enable item, the items greyed with capture, the key, the icon, the raised label and
  // the image the notice is prepared with.
  auto shown = [&] {
    const FlashModel& f = h.main.frmFlash();
    return Look(h.main.mnuEnable()) + (h.main.mnuFormat().enabled ? " format" : "") +
           (h.main.mnuOpHead().enabled ? " case" : "") + " Cur_En=" + h.port.Get(u"Cur_En") +
           " icon" + std::to_string(h.shell.trayIcon) + " " + ToUtf8(h.main.mnuEnVal().caption) +
           " notice" + (f.picIconVisible[0] ? " on" : "") + (f.picIconVisible[1] ? " off" : "") +
           (f.lblOpVisible ? " text" : "");
  };
  h.main.mnuEnable_Click();
  EXPECT_EQ(shown(), "Enable Me i2 Cur_En=2 icon102 -{Raised}[DISABLED] notice off");
  EXPECT_EQ(h.main.menuStyle().raisedLabelColor, Rgb(208, 0, 0));
  h.main.mnuFormat_Click();  // the icon follows the state after later changes too
  EXPECT_EQ(h.shell.trayIcon, 102);
  h.main.mnuEnable_Click();
  EXPECT_EQ(shown(), "Disable Me i1 format case Cur_En=1 icon101 -{Raised}[ENABLED] notice on");
  EXPECT_EQ(h.main.menuStyle().raisedLabelColor, Rgb(0, 160, 0));
  EXPECT_TRUE(h.shell.notices.empty()) << "the tray command prepares the notice, shows none";
}

TEST(TrayCommands, ModeSwitchHidesTheListAndItsCommand) {
  Loaded h;
  // The mode item, the list item and its separator when shown, the key and the tip.
  auto mode = [&] {
    return ToUtf8(h.main.mnuMode().caption) +
           (h.main.mnuList().visible ? " | " + Look(h.main.mnuList()) : "") +
           (h.main.mnuBar1().visible ? " -" : "") + " Cur_Mo=" + h.port.Get(u"Cur_Mo") + " " +
           h.shell.trayTip;
  };
  h.main.mnuList_Click();  // the clip list window is shown
  ASSERT_EQ(h.log.back(), "list.show fade");
  EXPECT_EQ(Look(h.main.mnuList()), "Hide Clip List I6 default");
  h.main.mnuMode_Click();
  EXPECT_EQ(mode(), "To Multi Mode Cur_Mo=1 Marquill (Single No)");
  EXPECT_EQ(std::count(h.log.begin(), h.log.end(), "list.hide fade"), 1);
  h.main.mnuMode_Click();
  EXPECT_EQ(mode(), "To Single Mode | Show Clip List I6 default - Cur_Mo=2 Marquill (Multi No)");
}

TEST(TrayCommands, OlderSystemsGetTheClassicIconsAndNoFading) {
  MainHarness noFade;
  noFade.port.Set(u"Set_FS", u"0");
  noFade.main.Form_Load();
  noFade.main.mnuList_Click();
  EXPECT_EQ(noFade.log.back(), "list.show");
  MainHarness w2k;
  w2k.services.os = OsVersion{2, 5, 0, 2195, u"Service Pack 4"};  // no layered windows
  w2k.main.Form_Load();
  EXPECT_EQ(w2k.shell.trayIcon, 103) << "the pre-XP icons";
  w2k.main.mnuAbout_Click();
  EXPECT_EQ(w2k.shell.aboutText, "Windows 2000 5.0 Build 2195 (Service Pack 4)");
  w2k.main.mnuList_Click();
  EXPECT_EQ(w2k.log.back(), "list.show");
  w2k.main.mnuList_Click();
  EXPECT_EQ(w2k.log.back(), "list.hide");
}

TEST(TrayCommands, FormattingAndCaseCommandsSetKeysCaptionsAndTip) {
  Loaded h;
  h.main.mnuFormat_Click();
  EXPECT_TRUE(h.main.mnuFormat().checked);
  EXPECT_EQ(h.port.Get(u"Cur_Fm"), "2");
  EXPECT_EQ(h.shell.trayTip, "Marquill (Multi Purge No)");
  h.main.mnuFormat_Click();
  EXPECT_EQ(h.port.Get(u"Cur_Fm"), "1");
  struct {
    void (frmMain::*command)();
    const char* cur;
    const char* state;
  } cases[] = {
      {&frmMain::mnuOp_St_Click, "2", "case1 [CaseChange (St) mnuOp_St] icon101 \"Marquill (Multi St)\""},
      {&frmMain::mnuOp_UC_Click, "3", "case2 [CaseChange (UC) mnuOp_UC] icon101 \"Marquill (Multi UC)\""},
      {&frmMain::mnuOp_lc_Click, "4", "case3 [CaseChange (lc) mnuOp_lc] icon101 \"Marquill (Multi lc)\""},
      {&frmMain::mnuOp_No_Click, "1", "case0 [CaseChange (None) mnuOp_No] icon101 \"Marquill (Multi No)\""},
  };
  for (const auto& c : cases) {
    (h.main.*c.command)();
    EXPECT_EQ(h.State(), std::string("on multi ") + c.state + " fader 75/2/2");
    EXPECT_EQ(h.port.Get(u"Cur_Op"), c.cur);
  }
}

TEST(TrayCommands, HelpSettingsAndExit) {
  Loaded h;
  h.main.mnuHelp_Click();
  h.files.files[u"C:\\Apps\\Marquill\\mq2_help.chm"] = "ITSF";
  h.main.mnuHelp_Click();
  EXPECT_EQ(h.log.back(), "help C:\\Apps\\Marquill\\mq2_help.chm main");
  h.shell.helpWorks = false;
  h.main.mnuHelp_Click();
  EXPECT_EQ(h.messages.Log(),
            (std::vector<std::string>{"! Error: Help file missing: The help file "
                                      "\"C:\\Apps\\Marquill\\mq2_help.chm\" could not be found.",
                                      "! Error: Help unavailable: The help file "
                                      "\"C:\\Apps\\Marquill\\mq2_help.chm\" could not be opened. "
                                      "HTML Help is not installed."}));

  h.main.mnuSettings_Click();
  EXPECT_EQ(h.log.back(), "settings");
  h.main.RunMenuCommand(frmMain::kCmdExit);
  EXPECT_TRUE(h.main.Unloaded());
  EXPECT_EQ(h.log.back(), "quit");
}

TEST(TrayIcon, OnlyTheButtonsPressedOnTheIconAct) {
  Loaded h;
  for (int message : {0x0200, 0x0202, 0x0203}) h.main.OnTrayNotify(message);  // move, up, double
  EXPECT_TRUE(h.log.empty());
  h.main.OnTrayNotify(0x0201);
  h.main.OnTrayNotify(0x0204);  // right button, nothing stored: "12" pops up the menu
  EXPECT_EQ(h.log, (std::vector<std::string>{"popup", "popup"}));
}

TEST(ActionCodes, EveryCodeDoesWhatItNames) {
  Loaded h;
  // Each code, with the notice it shows or the window it reaches.
  struct {
    const char16_t* code;
    const char* notice;
    const char* event;
  } steps[] = {{u"1", "Single", ""},     {u"1", "Multi", ""},   {u"3", "De-Format", ""},
               {u"3", "Format", ""},     {u"2", "", "list.show fade"}, {u"10", "", "about"},
               {u"12", "", "popup"},     {u"8", "", "settings"},
               // "41" with (No Change) selected: the Action 2 choice, Standardize, and back.
               {u"41", "Standardize", ""}, {u"41", "(No Change)", ""}, {u"41", "Standardize", ""},
               {u"63", "UPPER CASE", ""}, {u"63", "lower case", ""}};
  for (const auto& s : steps) {
    size_t notices = h.shell.notices.size();
    h.main.RunActionCode(s.code);
    if (*s.notice) EXPECT_EQ(h.LastNotice(), s.notice) << ToUtf8(s.code);
    else EXPECT_EQ(h.shell.notices.size(), notices) << ToUtf8(s.code);
    if (*s.event) EXPECT_EQ(h.log.back(), s.event);
  }
  EXPECT_EQ(h.port.Get(u"Cur_Op"), "4");
  h.main.RunActionCode(u"70");
  EXPECT_EQ(h.main.CaseOp(), 0) << "lower case is selected: its Action 2 choice";
  h.main.RunActionCode(u"51");  // Standardize selected: "5" names no second case
  size_t notices = h.shell.notices.size();
  h.main.RunActionCode(u"5");
  EXPECT_EQ(h.main.CaseOp(), 1);
  EXPECT_EQ(h.shell.notices.size(), notices);

  // Codes that do nothing.
  size_t events = h.log.size(), writes = h.port.writes.size();
  for (const char16_t* code : {u"13", u"x", u"", u"-1"}) h.main.RunActionCode(code);
  EXPECT_EQ(h.log.size(), events);
  EXPECT_EQ(h.shell.notices.size(), notices);
  EXPECT_EQ(h.port.writes.size(), writes);
  h.main.RunActionCode(u"9");
  EXPECT_EQ(h.messages.shown.size(), 1u) << "help: the file is missing here";
  h.main.RunActionCode(u"11");
  EXPECT_TRUE(h.main.Unloaded());
}

TEST(Hotkeys, FunctionSlotsReadTheirCodeAtEveryPressAndPasteNeedsARow) {
  Loaded h;
  h.Press('3');
  EXPECT_EQ(h.port.Get(u"Set_H1_Op"), "3") << "the default is written when absent";
  EXPECT_TRUE(h.main.Purging());
  h.port.Set(u"Set_H1_Op", u"z");  // unknown: nothing happens and it stays
  h.Press('3');
  EXPECT_TRUE(h.main.Purging());
  EXPECT_EQ(h.port.Get(u"Set_H1_Op"), "z");
  h.port.Set(u"Set_H1_Op", u"1");
  h.Press('3');
  EXPECT_TRUE(h.main.SingleMode());
  // The paste hotkey needs a row, but not the enabled state.
  h.Press('1');
  EXPECT_EQ(h.keys.pastes, 0);
  h.store.Append(ClipEntry::Plain(u"entry"), u"entry");
  h.main.mnuEnable_Click();  // disabled: pasting still works
  h.Press('1');
  EXPECT_EQ(h.keys.pastes, 1);
  EXPECT_EQ(ToUtf8(h.clipboard.text), "entry");
  EXPECT_EQ(h.list.lstClip.ListCount(), 0) << "a fresh installation deletes pasted entries";
}

// Capture off, and single mode rewriting in place, are also checked end to end.
TEST(ClipboardChanges, DependOnTheStateTheGuardAndTheMode) {
  Loaded h;
  auto copy = [&](const char16_t* text) {
    h.clock.Advance(1000);
    h.clipboard.SetText(text);
    h.main.cpFlag_ClipboardChanged();
  };
  h.main.mnuEnable_Click();
  copy(u"copied");
  EXPECT_EQ(h.list.lstClip.ListCount(), 0) << "disabled";
  h.main.mnuEnable_Click();
  copy(u"second");
  ASSERT_EQ(h.list.lstClip.ListCount(), 1);
  // The notice that our own paste causes arrives while it writes: it is not a copy.
  h.clipboard.onWrite = [&] {
    h.clock.Advance(1000);  // past the echo window too: only the guard keeps it out
    h.main.cpFlag_ClipboardChanged();
  };
  h.clock.Advance(1000);
  h.clip.PasteFirstEntry(false);
  EXPECT_EQ(h.list.lstClip.ListCount(), 1) << "our own write";
  h.clipboard.onWrite = nullptr;
  // A case command rewrites the clipboard itself in single mode only, and (No Change) never.
  h.clipboard.SetText(u"abc");
  h.main.mnuOp_UC_Click();  // multi mode: only later captures change
  EXPECT_EQ(ToUtf8(h.clipboard.text), "abc");
  h.main.mnuMode_Click();
  h.main.mnuOp_UC_Click();
  EXPECT_EQ(ToUtf8(h.clipboard.text), "ABC");
  h.clipboard.SetText(u"MiXed");
  h.main.mnuOp_No_Click();
  EXPECT_EQ(ToUtf8(h.clipboard.text), "MiXed");
  // Each copy in single mode is rewritten in place, not captured.
  h.main.mnuOp_lc_Click();
  copy(u"Hello");
  EXPECT_EQ(ToUtf8(h.clipboard.text), "hello");
  EXPECT_EQ(h.list.lstClip.ListCount(), 1);
}

}  // namespace
}  // namespace mq
