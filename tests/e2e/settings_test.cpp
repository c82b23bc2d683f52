// The settings dialog of the real program: opened from the tray; the paste key, launch at
// log-on and the clip list window's opacity applied on saving.
#include "Fixture.h"

#include <commctrl.h>

using namespace e2e;

namespace {

constexpr wchar_t kDialogTitle[] = L"Marquill Settings";
// The dialog's control ids.
constexpr int kPasteKeyBox = 130, kAutoRunBox = 116, kOpacitySlider = 165;

class SettingsDialog : public EndToEnd {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    TearDown();
  }
  void TearDown() override { RegDeleteKeyValueW(HKEY_CURRENT_USER, kLaunchAtLogOnKey, L"marquill"); }
};

TEST_F(SettingsDialog, SavedChoicesApplyAtOnce) {
  StartMarquill({{L"Set_RC_Op", L"8"}});  // a right click on the tray icon: Settings
  app.TrayClick(WM_RBUTTONDOWN);
  HWND dialog = WaitForTopWindow(kDialogTitle, 10s, nullptr, app.Pid());
  ASSERT_NE(dialog, nullptr);
  // Opening it again brings the same window to the front.
  app.TrayClick(WM_RBUTTONDOWN);
  Pump(300ms);
  const std::wstring title = kDialogTitle;
  EXPECT_EQ(FindTopWindows(&title), std::vector<HWND>{dialog});

  HWND pasteKey = GetDlgItem(dialog, kPasteKeyBox);
  ASSERT_EQ(WindowText(pasteKey), L"1");
  PostMessageW(pasteKey, WM_CHAR, '9', 0);
  ASSERT_TRUE(WaitFor([&] { return WindowText(pasteKey) == L"9"; }));
  HWND autoRun = GetDlgItem(dialog, kAutoRunBox);
  EXPECT_EQ(SendMessageW(autoRun, BM_GETCHECK, 0, 0), BST_UNCHECKED);
  PressButton(dialog, kAutoRunBox);
  ASSERT_TRUE(WaitFor([&] { return SendMessageW(autoRun, BM_GETCHECK, 0, 0) == BST_CHECKED; }));
  HWND slider = GetDlgItem(dialog, kOpacitySlider);
  SendMessageW(slider, TBM_SETPOS, TRUE, 50);
  SendMessageW(dialog, WM_HSCROLL, MAKEWPARAM(TB_ENDTRACK, 0), reinterpret_cast<LPARAM>(slider));
  ASSERT_TRUE(PressButton(dialog, IDOK));
  ASSERT_TRUE(WaitFor([&] { return !IsWindow(dialog); }));
  EXPECT_EQ(ReadSetting(L"Set_HV_Ky"), L"57");
  EXPECT_EQ(ReadSetting(L"Set_FO"), L"50");
  const std::wstring path = MarquillPath();
  EXPECT_EQ(ReadUserString(kLaunchAtLogOnKey, L"marquill"),
            path.find(L' ') == std::wstring::npos ? path : L"\"" + path + L"\"");

  // A paste deletes the row on a fresh installation: CTRL+1 no longer pastes, CTRL+9 does.
  Copy(L"pasted");
  CtrlTap('1');
  Pump(800ms);
  EXPECT_EQ(Rows().size(), 1u) << "CTRL+1 still pastes";
  CtrlTap('9');
  EXPECT_TRUE(WaitForRows({}));

  CtrlTap('2');  // slot 0 on a fresh installation: show the list, at half opacity
  ASSERT_TRUE(WaitFor([&] { return IsShown(ClipList()); }));
  BYTE alpha = 0;
  EXPECT_TRUE(WaitFor([&] {
    DWORD flags = 0;
    return GetLayeredWindowAttributes(ClipList(), nullptr, &alpha, &flags) && alpha == 50 * 255 / 100;
  })) << static_cast<int>(alpha);
}

}  // namespace
