#include <gtest/gtest.h>

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
    if (flash.shown.empty()) return "<none>";
    const FlashModel& m = flash.shown.back();
    if (m.lblOpVisible) return ToUtf8(m.lblOpCaption);
    return m.picIconVisible[0] ? "<enabled image>" : m.picIconVisible[1] ? "<disabled image>" : "";
  }
};

std::string Text_(const MenuItem& item) { return ToUtf8(modMenus::SplitCaption(item.caption).text); }
std::string Prop(const MenuItem& item, TextView name) {
  return ToUtf8(modMenus::ReadProperty(modMenus::SplitCaption(item.caption).properties, name));
}

TEST(TrayCommands, EnableTogglesEverythingThatShowsTheState) {
  Loaded h;
  h.main.mnuEnable_Click();
  EXPECT_FALSE(h.main.Enabled());
  EXPECT_EQ(Text_(h.main.mnuEnable()), "Enable Me");
  EXPECT_EQ(Prop(h.main.mnuEnable(), u"IMG:"), "i2");
  EXPECT_FALSE(h.main.mnuFormat().enabled);
  EXPECT_FALSE(h.main.mnuOpHead().enabled);
  EXPECT_EQ(h.port.Get(u"Cur_En"), "2");
  EXPECT_EQ(h.tray.icon, 102);
  EXPECT_EQ(h.main.menuStyle().raisedLabelColor, Rgb(208, 0, 0));
  EXPECT_EQ(ToUtf8(h.main.mnuEnVal().caption), "-{Raised}[DISABLED]");
  EXPECT_FALSE(h.main.frmFlash().picIconVisible[0]);
  EXPECT_TRUE(h.main.frmFlash().picIconVisible[1]);
  EXPECT_FALSE(h.main.frmFlash().lblOpVisible);
  EXPECT_TRUE(h.flash.shown.empty()) << "the tray command prepares the notice, shows none";

  // The icon follows the state after later changes too.
  h.main.mnuFormat_Click();
  EXPECT_EQ(h.tray.icon, 102);

  h.main.mnuEnable_Click();
  EXPECT_TRUE(h.main.Enabled());
  EXPECT_EQ(Text_(h.main.mnuEnable()), "Disable Me");
  EXPECT_EQ(Prop(h.main.mnuEnable(), u"IMG:"), "i1");
  EXPECT_TRUE(h.main.mnuFormat().enabled);
  EXPECT_TRUE(h.main.mnuOpHead().enabled);
  EXPECT_EQ(h.port.Get(u"Cur_En"), "1");
  EXPECT_EQ(h.tray.icon, 101);
  EXPECT_EQ(h.main.menuStyle().raisedLabelColor, Rgb(0, 160, 0));
  EXPECT_EQ(ToUtf8(h.main.mnuEnVal().caption), "-{Raised}[ENABLED]");
  EXPECT_TRUE(h.main.frmFlash().picIconVisible[0]);
}

TEST(TrayCommands, ModeSwitchHidesTheListAndItsCommand) {
  Loaded h;
  h.main.mnuList_Click();  // the clip list window is shown
  ASSERT_EQ(h.log.back(), "list.show fade");
  EXPECT_EQ(Text_(h.main.mnuList()), "Hide Clip List");
  EXPECT_EQ(Prop(h.main.mnuList(), u"Default"), "True") << "still the default item";
  h.main.mnuMode_Click();
  EXPECT_TRUE(h.main.SingleMode());
  EXPECT_EQ(ToUtf8(h.main.mnuMode().caption), "To Multi Mode");
  EXPECT_FALSE(h.main.mnuList().visible);
  EXPECT_FALSE(h.main.mnuBar1().visible);
  EXPECT_EQ(h.port.Get(u"Cur_Mo"), "1");
  EXPECT_EQ(h.Count("list.hide fade"), 1);
  EXPECT_EQ(Text_(h.main.mnuList()), "Show Clip List");
  EXPECT_EQ(h.tray.tip, "Marquill (Single No)");

  h.main.mnuMode_Click();
  EXPECT_FALSE(h.main.SingleMode());
  EXPECT_TRUE(h.main.mnuList().visible);
  EXPECT_TRUE(h.main.mnuBar1().visible);
  EXPECT_EQ(h.port.Get(u"Cur_Mo"), "2");
  EXPECT_EQ(h.tray.tip, "Marquill (Multi No)");
}

TEST(TrayCommands, ListFadesOnlyOnXpClassSystemsWithFadingOn) {
  {
    MainHarness h;
    h.port.Set(u"Set_FS", u"0");  // No Fade
    h.main.Form_Load();
    h.main.mnuList_Click();
    EXPECT_EQ(h.log.back(), "list.show");
  }
  {
    MainHarness h;
    h.services.os = OsVersion{2, 5, 0, 2195, u"Service Pack 4"};  // before XP: no layered windows
    h.main.Form_Load();
    EXPECT_EQ(h.main.IconBase(), 2);
    h.main.mnuList_Click();
    EXPECT_EQ(h.log.back(), "list.show");
    h.main.mnuList_Click();
    EXPECT_EQ(h.log.back(), "list.hide");
  }
}

TEST(TrayCommands, FormattingAndCaseCommandsSetKeysCaptionsAndTip) {
  Loaded h;
  h.main.mnuFormat_Click();
  EXPECT_TRUE(h.main.mnuFormat().checked);
  EXPECT_EQ(h.port.Get(u"Cur_Fm"), "2");
  EXPECT_EQ(h.tray.tip, "Marquill (Multi Purge No)");
  h.main.mnuFormat_Click();
  EXPECT_EQ(h.port.Get(u"Cur_Fm"), "1");
  EXPECT_EQ(h.tray.tip, "Marquill (Multi No)");

  struct {
    void (frmMain::*command)();
    int caseOp;
    const char* cur;
    const char* header;
    const char* tip;
    const char* itemName;
  } cases[] = {
      {&frmMain::mnuOp_St_Click, 1, "2", "CaseChange (St)", "Marquill (Multi St)", "mnuOp_St"},
      {&frmMain::mnuOp_UC_Click, 2, "3", "CaseChange (UC)", "Marquill (Multi UC)", "mnuOp_UC"},
      {&frmMain::mnuOp_lc_Click, 3, "4", "CaseChange (lc)", "Marquill (Multi lc)", "mnuOp_lc"},
      {&frmMain::mnuOp_No_Click, 0, "1", "CaseChange (None)", "Marquill (Multi No)", "mnuOp_No"},
  };
  for (const auto& c : cases) {
    (h.main.*c.command)();
    EXPECT_EQ(h.main.CaseOp(), c.caseOp);
    EXPECT_EQ(h.port.Get(u"Cur_Op"), c.cur);
    EXPECT_EQ(ToUtf8(h.main.mnuOpHead().caption), c.header);
    EXPECT_EQ(h.tray.tip, c.tip);
    int checks = 0;
    for (const MenuItem* item : h.main.mnuOpHead().items) {
      checks += item->checked;
      if (item->checked) EXPECT_EQ(ToUtf8(item->name), c.itemName);
    }
    EXPECT_EQ(checks, 1);
  }
}

TEST(TrayCommands, CaseCommandsRewriteTheClipboardInSingleModeOnly) {
  Loaded h;
  h.clipboard.SetText(u"abc");
  h.main.mnuOp_UC_Click();  // multi mode: only later captures change
  EXPECT_EQ(ToUtf8(h.clipboard.text), "abc");

  h.main.mnuMode_Click();
  h.main.mnuOp_UC_Click();
  EXPECT_EQ(ToUtf8(h.clipboard.text), "ABC");
  EXPECT_EQ(h.list.lstClip.ListCount(), 0);
  h.clipboard.SetText(u"MiXed");
  h.main.mnuOp_No_Click();  // (No Change) rewrites nothing
  EXPECT_EQ(ToUtf8(h.clipboard.text), "MiXed");
  h.main.mnuOp_St_Click();
  EXPECT_EQ(ToUtf8(h.clipboard.text), "Mixed");
  EXPECT_FALSE(h.clip.SelfWrite());
}

TEST(TrayCommands, HelpAboutSettingsAndExit) {
  Loaded h;
  h.main.mnuHelp_Click();
  ASSERT_EQ(h.messages.shown.size(), 1u);
  EXPECT_EQ(h.messages.shown[0].title.rfind("Error: ", 0), 0u);
  EXPECT_NE(h.messages.shown[0].text.find("C:\\Apps\\Marquill\\mq2_help.chm"), std::string::npos);

  h.files.files[u"C:\\Apps\\Marquill\\mq2_help.chm"] = "ITSF";
  h.main.mnuHelp_Click();
  EXPECT_EQ(h.log.back(), "help C:\\Apps\\Marquill\\mq2_help.chm main");
  EXPECT_EQ(h.messages.shown.size(), 1u);
  h.view.helpWorks = false;
  h.main.mnuHelp_Click();
  ASSERT_EQ(h.messages.shown.size(), 2u);
  EXPECT_NE(h.messages.shown[1].text.find("HTML Help is not installed."), std::string::npos);

  h.main.mnuAbout_Click();
  EXPECT_EQ(h.view.aboutText, "Windows NT 10.0 Build 19045 ()");
  h.main.mnuSettings_Click();
  EXPECT_EQ(h.log.back(), "settings");
  h.main.RunMenuCommand(frmMain::kCmdExit);
  EXPECT_TRUE(h.main.Unloaded());
  EXPECT_EQ(h.log.back(), "quit");
}

TEST(TrayIcon, ButtonsOnTheIcon) {
  Loaded h;
  h.main.OnTrayNotify(0x0200);  // movement
  h.main.OnTrayNotify(0x0202);  // left button up
  h.main.OnTrayNotify(0x0203);  // double-click
  EXPECT_TRUE(h.log.empty());
  h.main.OnTrayNotify(0x0201);
  EXPECT_EQ(h.log.back(), "popup");

  h.main.OnTrayNotify(0x0204);  // right button, nothing stored: "12" pops up the menu
  EXPECT_EQ(h.port.Get(u"Set_RC_Op"), "12");
  EXPECT_EQ(h.Count("popup"), 2);

  h.port.Set(u"Set_RC_Op", u"2");
  h.main.OnTrayNotify(0x0204);
  EXPECT_EQ(h.log.back(), "list.show fade");
  h.main.OnTrayNotify(0x0204);
  EXPECT_EQ(h.log.back(), "list.hide fade");
  EXPECT_TRUE(h.flash.shown.empty());

  h.port.Set(u"Set_RC_Op", u"0");
  h.main.OnTrayNotify(0x0204);
  EXPECT_FALSE(h.main.Enabled());
  EXPECT_EQ(h.LastNotice(), "<disabled image>");
  h.main.OnTrayNotify(0x0204);
  EXPECT_EQ(h.LastNotice(), "<enabled image>");
}

TEST(ActionCodes, EveryCodeDoesWhatItNames) {
  Loaded h;
  h.main.RunActionCode(u"1");
  EXPECT_TRUE(h.main.SingleMode());
  EXPECT_EQ(h.LastNotice(), "Single");
  h.main.RunActionCode(u"1");
  EXPECT_EQ(h.LastNotice(), "Multi");

  h.main.RunActionCode(u"3");
  EXPECT_EQ(h.LastNotice(), "De-Format");
  h.main.RunActionCode(u"3");
  EXPECT_EQ(h.LastNotice(), "Format");

  h.main.RunActionCode(u"2");
  EXPECT_EQ(h.log.back(), "list.show fade");
  h.main.RunActionCode(u"10");
  EXPECT_EQ(h.log.back(), "about");
  h.main.RunActionCode(u"12");
  EXPECT_EQ(h.log.back(), "popup");
  h.main.RunActionCode(u"8");
  EXPECT_EQ(h.log.back(), "settings");

  // Codes that do nothing.
  size_t events = h.log.size(), notices = h.flash.shown.size(), writes = h.port.writes.size();
  for (const char16_t* code : {u"13", u"x", u"", u"-1"}) h.main.RunActionCode(code);
  EXPECT_EQ(h.log.size(), events);
  EXPECT_EQ(h.flash.shown.size(), notices);
  EXPECT_EQ(h.port.writes.size(), writes);

  h.main.RunActionCode(u"9");
  EXPECT_EQ(h.messages.shown.size(), 1u) << "help: the file is missing here";
  h.main.RunActionCode(u"11");
  EXPECT_TRUE(h.main.Unloaded());
}

TEST(ActionCodes, CaseTogglesAlternateBetweenTheirTwoChoices) {
  Loaded h;
  // "41" with (No Change) selected: the Action 2 choice, Standardize.
  h.main.RunActionCode(u"41");
  EXPECT_EQ(h.main.CaseOp(), 1);
  EXPECT_EQ(h.LastNotice(), "Standardize");
  h.main.RunActionCode(u"41");
  EXPECT_EQ(h.main.CaseOp(), 0);
  EXPECT_EQ(h.LastNotice(), "(No Change)");
  h.main.RunActionCode(u"41");
  EXPECT_EQ(h.main.CaseOp(), 1);

  // "5" with Standardize selected: the second character is "5" itself, which names no case.
  size_t notices = h.flash.shown.size();
  h.main.RunActionCode(u"5");
  EXPECT_EQ(h.main.CaseOp(), 1);
  EXPECT_EQ(h.flash.shown.size(), notices);

  h.main.RunActionCode(u"63");
  EXPECT_EQ(h.main.CaseOp(), 2);
  EXPECT_EQ(h.LastNotice(), "UPPER CASE");
  EXPECT_EQ(h.port.Get(u"Cur_Op"), "3");
  h.main.RunActionCode(u"63");
  EXPECT_EQ(h.main.CaseOp(), 3);
  EXPECT_EQ(h.LastNotice(), "lower case");
  h.main.RunActionCode(u"70");
  EXPECT_EQ(h.main.CaseOp(), 0) << "lower case is selected: its Action 2 choice";
}

TEST(Hotkeys, FunctionSlotsWriteTheirDefaultOnlyWhenAbsent) {
  Loaded h;
  // CTRL+2..CTRL+5 on a fresh installation.
  h.hotkeys.Press(h.hotkeyControls, 2, '2');
  EXPECT_EQ(h.port.Get(u"Set_H0_Op"), "2");
  EXPECT_EQ(h.log.back(), "list.show fade");
  h.hotkeys.Press(h.hotkeyControls, 2, '3');
  EXPECT_EQ(h.port.Get(u"Set_H1_Op"), "3");
  EXPECT_TRUE(h.main.Purging());
  h.hotkeys.Press(h.hotkeyControls, 2, '4');
  EXPECT_EQ(h.port.Get(u"Set_H2_Op"), "41");
  EXPECT_EQ(h.main.CaseOp(), 1);
  h.hotkeys.Press(h.hotkeyControls, 2, '5');
  EXPECT_EQ(h.port.Get(u"Set_H3_Op"), "0");
  EXPECT_FALSE(h.main.Enabled());

  // A stored code is read at every press; an unknown one does nothing and stays.
  h.port.Set(u"Set_H1_Op", u"z");
  h.hotkeys.Press(h.hotkeyControls, 2, '3');
  EXPECT_TRUE(h.main.Purging());
  EXPECT_EQ(h.port.Get(u"Set_H1_Op"), "z");
  h.port.Set(u"Set_H1_Op", u"1");
  h.hotkeys.Press(h.hotkeyControls, 2, '3');
  EXPECT_TRUE(h.main.SingleMode());
}

TEST(Hotkeys, PasteNeedsARowButNotTheEnabledState) {
  Loaded h;
  h.hotkeys.Press(h.hotkeyControls, 2, '1');
  EXPECT_EQ(h.keys.pastes, 0);
  h.store.Append(ClipEntry::Plain(u"entry"), u"entry");
  h.main.mnuEnable_Click();  // disabled: pasting still works
  h.hotkeys.Press(h.hotkeyControls, 2, '1');
  EXPECT_EQ(h.keys.pastes, 1);
  EXPECT_EQ(ToUtf8(h.clipboard.text), "entry");
  EXPECT_EQ(h.list.lstClip.ListCount(), 0) << "a fresh installation deletes pasted entries";
}

TEST(ClipboardChanges, DependOnTheStateAndTheGuard) {
  Loaded h;
  h.clock.Advance(1000);
  h.clipboard.SetText(u"copied");
  h.main.mnuEnable_Click();
  h.main.cpFlag_ClipboardChanged();
  EXPECT_EQ(h.list.lstClip.ListCount(), 0) << "disabled";
  h.main.mnuEnable_Click();
  h.main.cpFlag_ClipboardChanged();
  EXPECT_EQ(h.list.lstClip.ListCount(), 1);
  h.clock.Advance(1000);
  h.clipboard.SetText(u"second");
  h.main.cpFlag_ClipboardChanged();
  ASSERT_EQ(h.list.lstClip.ListCount(), 2);
  // The notice that our own paste causes arrives while it writes: it is not a copy.
  h.clock.Advance(1000);
  h.clipboard.onWrite = [&] {
    h.clock.Advance(1000);  // past the echo window too: only the guard keeps it out
    h.main.cpFlag_ClipboardChanged();
  };
  h.clip.PasteFirstEntry(false);
  h.clipboard.onWrite = nullptr;
  EXPECT_EQ(h.list.lstClip.ListCount(), 2) << "our own write";

  h.main.mnuMode_Click();
  h.main.mnuOp_lc_Click();
  h.clock.Advance(1000);
  h.clipboard.SetText(u"Hello");
  h.main.cpFlag_ClipboardChanged();
  EXPECT_EQ(ToUtf8(h.clipboard.text), "hello");
  EXPECT_EQ(h.list.lstClip.ListCount(), 2);
}

TEST(Notices, TextsFollowTheState) {
  Loaded h;
  const char* expected[] = {"Format", "(No Change)", "Standardize", "UPPER CASE", "lower case", "Multi"};
  for (int code = 0; code <= 5; ++code) {
    h.main.ShowNotice(code);
    EXPECT_EQ(h.LastNotice(), expected[code]) << code;
    EXPECT_FALSE(h.flash.shown.back().picIconVisible[0]);
    EXPECT_FALSE(h.flash.shown.back().picIconVisible[1]);
  }
  h.main.SelectCaseByDigit(u"2");
  EXPECT_EQ(h.main.CaseOp(), 2);
  EXPECT_EQ(h.LastNotice(), "UPPER CASE");
  size_t shown = h.flash.shown.size();
  h.main.SelectCaseByDigit(u"4");
  h.main.SelectCaseByDigit(u"");
  EXPECT_EQ(h.flash.shown.size(), shown);
}

}  // namespace
}  // namespace mq
