// The settings dialog of the real program: opened from the tray, keys, launch at log-on and
// the clip list window's opacity applied on saving.
#include "Apps.h"
#include "Fixture.h"

#include <commctrl.h>

#include <optional>

using namespace e2e;

namespace {

constexpr wchar_t kDialogTitle[] = L"Marquill Settings";
// The dialog's control ids.
constexpr int kPasteKeyBox = 130, kAutoRunBox = 116, kOpacitySlider = 165;
std::optional<std::wstring> RunValue() { return ReadUserString(kLaunchAtLogOnKey, L"marquill"); }

void DeleteRunValue() { RegDeleteKeyValueW(HKEY_CURRENT_USER, kLaunchAtLogOnKey, L"marquill"); }

class SettingsDialog : public EndToEnd {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    DeleteRunValue();
  }
  void TearDown() override { DeleteRunValue(); }
  // A right click on the tray icon runs action code 8: Settings.
  void StartWithDialog() { StartMarquill({{L"Set_RC_Op", L"8"}}); }
  HWND OpenDialog() {
    app.TrayClick(WM_RBUTTONDOWN);
    return WaitForTopWindow(kDialogTitle, 10s, nullptr, app.Pid());
  }
  bool WaitClosed() {
    return WaitFor([&] { return !FindTopWindow(kDialogTitle, nullptr, app.Pid()); });
  }
  static bool Checked(HWND dialog, int id) {
    return SendMessageW(GetDlgItem(dialog, id), BM_GETCHECK, 0, 0) == BST_CHECKED;
  }
};

TEST_F(SettingsDialog, NewPasteKeyWorksAtOnceAndTheOldOneNoLonger) {
  StartWithDialog();
  HWND dialog = OpenDialog();
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
  ASSERT_TRUE(PressButton(dialog, IDOK));
  ASSERT_TRUE(WaitClosed());
  EXPECT_EQ(ReadSetting(L"Set_HV_Ky"), L"57");

  Editor notepad(Editor::Kind::Notepad);
  ASSERT_TRUE(notepad.Start());
  notepad.SetText(L"pasted");
  ASSERT_TRUE(notepad.Focus());
  notepad.SelectAllAndCopy();
  ASSERT_TRUE(WaitForRows({L"\tpasted"}));
  notepad.SetText(L"");
  ASSERT_TRUE(notepad.Focus());
  CtrlTap('1');
  Pump(800ms);
  EXPECT_EQ(notepad.Text(), L"") << "CTRL+1 no longer pastes";
  EXPECT_EQ(Rows().size(), 1u);
  CtrlTap('9');
  EXPECT_TRUE(WaitFor([&] { return notepad.Text() == L"pasted"; })) << notepad.Text().c_str();
}

// Launch at log-on and the clip list window's opacity, both applied on saving.
TEST_F(SettingsDialog, LaunchAtLogOnAndOpacityAreAppliedOnSaving) {
  StartWithDialog();
  HWND dialog = OpenDialog();
  ASSERT_NE(dialog, nullptr);
  EXPECT_FALSE(Checked(dialog, kAutoRunBox));
  PressButton(dialog, kAutoRunBox);
  ASSERT_TRUE(WaitFor([&] { return Checked(dialog, kAutoRunBox); }));
  HWND slider = GetDlgItem(dialog, kOpacitySlider);
  SendMessageW(slider, TBM_SETPOS, TRUE, 50);
  SendMessageW(dialog, WM_HSCROLL, MAKEWPARAM(TB_ENDTRACK, 0), reinterpret_cast<LPARAM>(slider));
  PressButton(dialog, IDOK);
  ASSERT_TRUE(WaitClosed());
  std::wstring path = MarquillPath();
  EXPECT_EQ(RunValue(), path.find(L' ') == std::wstring::npos ? path : L"\"" + path + L"\"");
  EXPECT_EQ(ReadSetting(L"Set_FO"), L"50");
  CtrlTap('2');  // slot 0 on a fresh installation: show the list, at half opacity
  ASSERT_TRUE(WaitFor([&] { return IsShown(listWindow); }));
  BYTE alpha = 0;
  EXPECT_TRUE(WaitFor([&] {
    DWORD flags = 0;
    return GetLayeredWindowAttributes(listWindow, nullptr, &alpha, &flags) && alpha == 50 * 255 / 100;
  })) << static_cast<int>(alpha);

}

}  // namespace
