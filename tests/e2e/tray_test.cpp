// The tray icon's buttons and the function hotkeys of the real program.
#include "Fixture.h"

using namespace e2e;

namespace {

class Tray : public EndToEnd {
 protected:
  void StartMarquill(const Values& settings = {}) {
    WriteSettings(settings);
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.WaitReady());
    listWindow = FindTopWindow(L"Clip List", nullptr, app.Pid());
    ASSERT_NE(listWindow, nullptr);
    WaitFor([&] { return !FindTopWindow(L"About Marquill", nullptr, app.Pid()); }, 5s);
  }
  HWND Flash() const { return FindTopWindow(L"FlashNotify", nullptr, app.Pid()); }
  // The open pop-up menu (the system's menu window class), if any.
  static HWND OpenMenu() { return FindTopWindow(L"", L"#32768"); }
  bool WaitForSetting(const std::wstring& key, const std::wstring& value) {
    return WaitFor([&] { return ReadSetting(key) == value; }, 5s);
  }
  // Waits until a notice appeared and went away again.
  bool NoticeFlashed() {
    if (!WaitFor([&] { return Flash() != nullptr; }, 5s)) return false;
    return WaitFor([&] { return Flash() == nullptr; }, 5s);
  }

  Marquill app;
  HWND listWindow = nullptr;
};

TEST_F(Tray, RightClickWithoutASettingOpensTheMenuAndStoresTwelve) {
  StartMarquill();
  app.TrayClick(WM_RBUTTONDOWN);
  EXPECT_TRUE(WaitFor([] { return IsShown(OpenMenu()); }));
  EXPECT_EQ(ReadSetting(L"Set_RC_Op"), L"12");
  Tap(VK_ESCAPE);
  EXPECT_TRUE(WaitFor([] { return !IsShown(OpenMenu()); }));
  // The left button opens it as well; other mouse events do nothing.
  app.TrayClick(WM_MOUSEMOVE);
  app.TrayClick(WM_LBUTTONUP);
  Pump(300ms);
  EXPECT_FALSE(IsShown(OpenMenu()));
  app.TrayClick(WM_LBUTTONDOWN);
  EXPECT_TRUE(WaitFor([] { return IsShown(OpenMenu()); }));
  Tap(VK_ESCAPE);
  EXPECT_TRUE(WaitFor([] { return !IsShown(OpenMenu()); }));
}

TEST_F(Tray, RightClickShowsAndHidesTheClipListWindow) {
  StartMarquill({{L"Set_RC_Op", L"2"}});
  EXPECT_FALSE(IsShown(listWindow));
  app.TrayClick(WM_RBUTTONDOWN);
  EXPECT_TRUE(WaitFor([&] { return IsShown(listWindow); }));
  app.TrayClick(WM_RBUTTONDOWN);
  EXPECT_TRUE(WaitFor([&] { return !IsShown(listWindow); }));
  EXPECT_FALSE(Flash()) << "showing the list flashes no notice";
}

TEST_F(Tray, RightClickTogglesCapturingAndFlashesTheNotice) {
  StartMarquill({{L"Set_RC_Op", L"0"}});
  app.TrayClick(WM_RBUTTONDOWN);
  EXPECT_TRUE(WaitForSetting(L"Cur_En", L"2"));
  EXPECT_TRUE(NoticeFlashed());
  // Disabled: a copy changes nothing.
  ASSERT_TRUE(SetClipboardText(L"not captured"));
  Pump(500ms);
  EXPECT_TRUE(ListBoxRows(FindChild(listWindow, L"ListBox")).empty());
  app.TrayClick(WM_RBUTTONDOWN);
  EXPECT_TRUE(WaitForSetting(L"Cur_En", L"1"));
  EXPECT_TRUE(NoticeFlashed());
}

TEST_F(Tray, FunctionHotkeysOnAFreshInstallation) {
  StartMarquill();
  // CTRL+2: show and hide the clip list window.
  CtrlTap('2');
  EXPECT_TRUE(WaitFor([&] { return IsShown(listWindow); }));
  EXPECT_EQ(ReadSetting(L"Set_H0_Op"), L"2") << "the slot default is written at the first press";
  CtrlTap('2');
  EXPECT_TRUE(WaitFor([&] { return !IsShown(listWindow); }));
  // CTRL+3: purge formatting on and off, each with a notice.
  CtrlTap('3');
  EXPECT_TRUE(WaitForSetting(L"Cur_Fm", L"2"));
  EXPECT_TRUE(NoticeFlashed());
  CtrlTap('3');
  EXPECT_TRUE(WaitForSetting(L"Cur_Fm", L"1"));
  // CTRL+4 alternates (No Change) and Standardize: (No Change) is selected, so the first
  // press selects the Action 2 choice.
  CtrlTap('4');
  EXPECT_TRUE(WaitForSetting(L"Cur_Op", L"2"));
  EXPECT_TRUE(NoticeFlashed());
  CtrlTap('4');
  EXPECT_TRUE(WaitForSetting(L"Cur_Op", L"1"));
  CtrlTap('4');
  EXPECT_TRUE(WaitForSetting(L"Cur_Op", L"2"));
  // CTRL+5: capturing off and on.
  CtrlTap('5');
  EXPECT_TRUE(WaitForSetting(L"Cur_En", L"2"));
  CtrlTap('5');
  EXPECT_TRUE(WaitForSetting(L"Cur_En", L"1"));
  EXPECT_EQ(ReadSetting(L"Set_H3_Op"), L"0");
}

TEST_F(Tray, ADisabledSlotLeavesItsKeyUnregistered) {
  StartMarquill({{L"Set_H3_En", L"0"}});
  // Only a free combination can be registered by this process.
  mq::win32::UniqueWindow probe(CreateWindowExW(0, L"Static", L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                                                nullptr, nullptr, nullptr));
  EXPECT_TRUE(RegisterHotKey(probe.Get(), 1, MOD_CONTROL, '5')) << "CTRL+5 is free";
  EXPECT_FALSE(RegisterHotKey(probe.Get(), 2, MOD_CONTROL, '4')) << "CTRL+4 is the program's";
  UnregisterHotKey(probe.Get(), 1);
  EXPECT_EQ(ReadSetting(L"Set_H3_En"), L"0");
}

}  // namespace
