// The tray icon's buttons and the function hotkeys of the real program (which function each
// slot and action code runs is the unit tests' part).
#include "Fixture.h"

using namespace e2e;

namespace {

TEST_F(EndToEnd, TrayButtonsOpenTheMenuAndFunctionHotkeysAct) {
  StartMarquill();
  // The open pop-up menu (the system's menu window class), if any.
  auto menuShown = [] { return IsShown(FindTopWindow(L"", L"#32768")); };
  // The right button without a setting stores and runs 12, the menu; the left one opens it too.
  for (UINT button : {WM_RBUTTONDOWN, WM_LBUTTONDOWN}) {
    app.TrayClick(button);
    EXPECT_TRUE(WaitFor(menuShown)) << button;
    Tap(VK_ESCAPE);
    EXPECT_TRUE(WaitFor([&] { return !menuShown(); }));
  }
  EXPECT_EQ(ReadSetting(L"Set_RC_Op"), L"12");

  // CTRL+2: show the clip list window, hidden from start-up on, and hide it, with no notice.
  auto flash = [&] { return FindTopWindow(L"FlashNotify", nullptr, app.Pid()); };
  EXPECT_FALSE(IsShown(ClipList()));
  CtrlTap('2');
  EXPECT_TRUE(WaitFor([&] { return IsShown(ClipList()); }));
  EXPECT_FALSE(flash()) << "showing the list flashes no notice";
  CtrlTap('2');
  EXPECT_TRUE(WaitFor([&] { return !IsShown(ClipList()); }));
  // CTRL+5: capturing off, with a notice that goes again; disabled, a copy changes nothing.
  CtrlTap('5');
  EXPECT_TRUE(WaitFor([&] { return ReadSetting(L"Cur_En") == L"2"; }));
  EXPECT_TRUE(WaitFor([&] { return flash() != nullptr; }, 5s) && WaitFor([&] { return !flash(); }, 5s));
  ASSERT_TRUE(SetClipboardText(L"not captured"));
  Pump(500ms);
  EXPECT_TRUE(Rows().empty());
  CtrlTap('5');
  EXPECT_TRUE(WaitFor([&] { return ReadSetting(L"Cur_En") == L"1"; }));
  Copy(L"captured again");
}

}  // namespace
