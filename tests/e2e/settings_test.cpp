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
constexpr int kPasteKeyBox = 130, kFirstSlotKeyBox = 131, kAutoRunBox = 116, kOpacitySlider = 165;
constexpr wchar_t kRunKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

std::optional<std::wstring> RunValue() {
  wchar_t data[1024] = {};
  DWORD bytes = sizeof(data);
  if (RegGetValueW(HKEY_CURRENT_USER, kRunKey, L"marquill", RRF_RT_REG_SZ, nullptr, data,
                   &bytes) != ERROR_SUCCESS)
    return std::nullopt;
  return std::wstring(data);
}

void DeleteRunValue() {
  HKEY key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kRunKey, 0, KEY_SET_VALUE, &key) != ERROR_SUCCESS) return;
  RegDeleteValueW(key, L"marquill");
  RegCloseKey(key);
}

class SettingsDialog : public EndToEnd {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    DeleteRunValue();
  }
  void TearDown() override { DeleteRunValue(); }
  void StartMarquill() {
    // A right click on the tray icon runs action code 8: Settings.
    WriteSettings({{L"Set_RC_Op", L"8"}});
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.WaitReady());
    listWindow = FindTopWindow(L"Clip List", nullptr, app.Pid());
    ASSERT_NE(listWindow, nullptr);
    WaitFor([&] { return !FindTopWindow(L"About Marquill", nullptr, app.Pid()); }, 5s);
  }
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

  Marquill app;
  HWND listWindow = nullptr;
};

TEST_F(SettingsDialog, NewPasteKeyWorksAtOnceAndTheOldOneNoLonger) {
  StartMarquill();
  HWND dialog = OpenDialog();
  ASSERT_NE(dialog, nullptr);
  // Opening it again brings the same window to the front.
  app.TrayClick(WM_RBUTTONDOWN);
  Pump(300ms);
  std::vector<HWND> all;
  EnumWindows([](HWND h, LPARAM out) {
    if (WindowText(h) == kDialogTitle) reinterpret_cast<std::vector<HWND>*>(out)->push_back(h);
    return TRUE;
  }, reinterpret_cast<LPARAM>(&all));
  EXPECT_EQ(all, std::vector<HWND>{dialog});

  HWND pasteKey = GetDlgItem(dialog, kPasteKeyBox);
  ASSERT_EQ(WindowText(pasteKey), L"1");
  PostMessageW(pasteKey, WM_CHAR, '9', 0);
  ASSERT_TRUE(WaitFor([&] { return WindowText(pasteKey) == L"9"; }));
  ASSERT_TRUE(PressButton(dialog, IDOK));
  ASSERT_TRUE(WaitClosed());
  EXPECT_EQ(ReadSetting(L"Set_HV_Ky"), L"57");
  EXPECT_EQ(ReadSetting(L"Set_H0_Ky"), L"50");

  Editor notepad(Editor::Kind::Notepad);
  ASSERT_TRUE(notepad.Start());
  notepad.SetText(L"pasted");
  ASSERT_TRUE(notepad.Focus());
  notepad.SelectAllAndCopy();
  HWND rows = FindChild(listWindow, L"ListBox");
  ASSERT_TRUE(WaitFor([&] { return ListBoxRows(rows) == std::vector<std::wstring>{L"\tpasted"}; }));
  notepad.SetText(L"");
  ASSERT_TRUE(notepad.Focus());
  CtrlTap('1');
  Pump(800ms);
  EXPECT_EQ(notepad.Text(), L"") << "CTRL+1 no longer pastes";
  EXPECT_EQ(ListBoxRows(rows).size(), 1u);
  CtrlTap('9');
  EXPECT_TRUE(WaitFor([&] { return notepad.Text() == L"pasted"; })) << notepad.Text().c_str();
}

TEST_F(SettingsDialog, CopyKeyIsRefusedAndCancelWritesNothing) {
  StartMarquill();
  HWND dialog = OpenDialog();
  ASSERT_NE(dialog, nullptr);
  HWND keyBox = GetDlgItem(dialog, kFirstSlotKeyBox);
  ASSERT_EQ(WindowText(keyBox), L"2");
  PostMessageW(keyBox, WM_CHAR, 'c', 0);
  HWND box = WaitForMessageBox(L"Error: Hotkey combination invalid.", 10s, app.Pid());
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(MessageBoxText(box),
            L"Microsoft Windows has bound the hotkey combination CTRL+C to the command Copy "
            L"Selection. This hotkey cannot be used by Marquill.");
  PressButton(box, IDOK);
  ASSERT_TRUE(WaitFor([&] { return MessageBoxesOf(app.Pid()).empty(); }));
  // Read again while the program returns from the message box to its own loop.
  EXPECT_TRUE(WaitFor([&] { return WindowText(keyBox) == L"2"; }, 3s)) << WindowText(keyBox);
  ASSERT_TRUE(PressButton(dialog, IDCANCEL));
  ASSERT_TRUE(WaitClosed());
  EXPECT_FALSE(ReadSetting(L"Set_H0_Ky").has_value());
}

TEST_F(SettingsDialog, LaunchAtLogOnWritesAndRemovesTheRunValue) {
  StartMarquill();
  HWND dialog = OpenDialog();
  ASSERT_NE(dialog, nullptr);
  EXPECT_FALSE(Checked(dialog, kAutoRunBox));
  PressButton(dialog, kAutoRunBox);
  ASSERT_TRUE(WaitFor([&] { return Checked(dialog, kAutoRunBox); }));
  PressButton(dialog, IDOK);
  ASSERT_TRUE(WaitClosed());
  std::optional<std::wstring> value = RunValue();
  ASSERT_TRUE(value.has_value());
  std::wstring path = MarquillPath();
  EXPECT_EQ(*value, path.find(L' ') == std::wstring::npos ? path : L"\"" + path + L"\"");

  dialog = OpenDialog();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(Checked(dialog, kAutoRunBox));
  PressButton(dialog, kAutoRunBox);
  ASSERT_TRUE(WaitFor([&] { return !Checked(dialog, kAutoRunBox); }));
  PressButton(dialog, IDOK);
  ASSERT_TRUE(WaitClosed());
  EXPECT_FALSE(RunValue().has_value());
}

TEST_F(SettingsDialog, SavedOpacityShowsTheClipListAtHalf) {
  StartMarquill();
  HWND dialog = OpenDialog();
  ASSERT_NE(dialog, nullptr);
  HWND slider = GetDlgItem(dialog, kOpacitySlider);
  SendMessageW(slider, TBM_SETPOS, TRUE, 50);
  SendMessageW(dialog, WM_HSCROLL, MAKEWPARAM(TB_ENDTRACK, 0), reinterpret_cast<LPARAM>(slider));
  PressButton(dialog, IDOK);
  ASSERT_TRUE(WaitClosed());
  EXPECT_EQ(ReadSetting(L"Set_FO"), L"50");
  CtrlTap('2');  // slot 0 on a fresh installation: show the list
  ASSERT_TRUE(WaitFor([&] { return IsShown(listWindow); }));
  BYTE alpha = 0;
  EXPECT_TRUE(WaitFor([&] {
    DWORD flags = 0;
    return GetLayeredWindowAttributes(listWindow, nullptr, &alpha, &flags) && alpha == 50 * 255 / 100;
  })) << static_cast<int>(alpha);
}

}  // namespace
