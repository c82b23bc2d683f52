// The tray icon's buttons and the function hotkeys of the real program.
#include "Fixture.h"

using namespace e2e;

namespace {

class Tray : public EndToEnd {
 protected:
  HWND Flash() const { return FindTopWindow(L"FlashNotify", nullptr, app.Pid()); }
  // The open pop-up menu (the system's menu window class), if any.
  static HWND OpenMenu() { return FindTopWindow(L"", L"#32768"); }
  bool WaitForSetting(const std::wstring& key, const std::wstring& value) {
    return WaitFor([&] { return ReadSetting(key) == value; }, 5s);
  }
  // Waits until a notice appeared and went away again.
  bool NoticeFlashed() {
    return WaitFor([&] { return Flash() != nullptr; }, 5s) &&
           WaitFor([&] { return Flash() == nullptr; }, 5s);
  }
};

TEST_F(Tray, RightClickWithoutASettingOpensTheMenuAndStoresTwelve) {
  StartMarquill();
  app.TrayClick(WM_RBUTTONDOWN);
  EXPECT_TRUE(WaitFor([] { return IsShown(OpenMenu()); }));
  EXPECT_EQ(ReadSetting(L"Set_RC_Op"), L"12");
  Tap(VK_ESCAPE);
  EXPECT_TRUE(WaitFor([] { return !IsShown(OpenMenu()); }));
  // The left button opens it as well.
  app.TrayClick(WM_LBUTTONDOWN);
  EXPECT_TRUE(WaitFor([] { return IsShown(OpenMenu()); }));
  Tap(VK_ESCAPE);
  EXPECT_TRUE(WaitFor([] { return !IsShown(OpenMenu()); }));
}

TEST_F(Tray, FunctionHotkeysOnAFreshInstallation) {
  StartMarquill();
  // CTRL+2: show and hide the clip list window, with no notice.
  CtrlTap('2');
  EXPECT_TRUE(WaitFor([&] { return IsShown(listWindow); }));
  EXPECT_FALSE(Flash()) << "showing the list flashes no notice";
  CtrlTap('2');
  EXPECT_TRUE(WaitFor([&] { return !IsShown(listWindow); }));
  // CTRL+3: purge formatting, with a notice.
  CtrlTap('3');
  EXPECT_TRUE(WaitForSetting(L"Cur_Fm", L"2"));
  EXPECT_TRUE(NoticeFlashed());
  // CTRL+4 alternates (No Change) and Standardize: (No Change) is selected, so the press
  // selects Standardize.
  CtrlTap('4');
  EXPECT_TRUE(WaitForSetting(L"Cur_Op", L"2"));
  EXPECT_TRUE(NoticeFlashed());
  // CTRL+5: capturing off, with a notice; disabled, a copy changes nothing; and on again.
  CtrlTap('5');
  EXPECT_TRUE(WaitForSetting(L"Cur_En", L"2"));
  EXPECT_TRUE(NoticeFlashed());
  ASSERT_TRUE(SetClipboardText(L"not captured"));
  Pump(500ms);
  EXPECT_TRUE(Rows().empty());
  CtrlTap('5');
  EXPECT_TRUE(WaitForSetting(L"Cur_En", L"1"));
}

}  // namespace
