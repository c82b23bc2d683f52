// Saving and loading lists from the clip list window of the real program, through the real
// common dialogs, the load-mode popup and the password dialog.
#include <windows.h>

#include "Fixture.h"

using namespace e2e;

namespace {

using ListFiles = WithListFiles;

bool RichEditLoaded(const Marquill& app) {
  return app.HasLoaded(L"msftedit.dll") || app.HasLoaded(L"riched20.dll");
}

// Libraries that start-up leaves alone come with their first use: the real program is ready
// without them, and each works the first time it is needed, also when that is inside a load.
TEST_F(ListFiles, SavedListIsLoadedBackByAFreshCopy) {
  Start();
  ASSERT_FALSE(app.Modules().empty()) << "the process's modules cannot be listed";
  for (const wchar_t* module : {L"comdlg32.dll", L"ole32.dll", L"msftedit.dll", L"riched20.dll", L"hhctrl.ocx"})
    EXPECT_FALSE(app.HasLoaded(module)) << module;
  EXPECT_TRUE(app.HasLoaded(L"comctl32.dll")) << "the clip list window uses it";
  Copy(L"first entry");
  EXPECT_FALSE(RichEditLoaded(app)) << "plain text needs no rich edit control";
  Copy([] { return SetClipboardRtf("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\b Bold\\b0  and plain}"); });
  Copy(L"th\u00EErd \u03A9");
  const auto rows = Rows();
  EXPECT_EQ(rows[1].rfind(L"+\tBold and plain", 0), 0u) << rows[1].c_str();

  SaveAs(L"three");
  ASSERT_TRUE(WaitForFile(L"three.mql"));
  EXPECT_EQ(FileBytes(L"three.mql").substr(0, 4), "M2L\r");
  EXPECT_TRUE(app.HasLoaded(L"comdlg32.dll"));
  ASSERT_TRUE(app.Close());

  Start();  // its first rich text arrives inside the load
  LoadAs(L"three.mql");
  EXPECT_TRUE(WaitForRows(rows));
  EXPECT_TRUE(RichEditLoaded(app));
}

TEST_F(ListFiles, ProtectedListAsksForItsPassword) {
  // The protected filter was the last one chosen: a name without extension is saved as .mqp.
  Start({{L"Cur_FF_S", L"2"}});
  Copy(L"secret one");
  Copy(L"secret two");
  const auto rows = Rows();

  SaveAs(L"vault");
  HWND pass = WaitForPasswordDialog(app.Pid());
  ASSERT_NE(pass, nullptr);
  EXPECT_EQ(GetWindow(pass, GW_OWNER), ClipList());
  EnterPassword(pass, 0, L"abc");
  EnterPassword(pass, 1, L"ABC");
  EXPECT_EQ(DismissMessageBox(app.Pid(), L"Error: Password mismatch"), L"Passwords do not match");
  EXPECT_EQ(PasswordBoxText(pass, 1), L"") << "the confirmation is typed again";
  EnterPassword(pass, 1, L"abc");
  ASSERT_TRUE(WaitForFile(L"vault.mqp"));
  EXPECT_TRUE(WaitFor([&] { return !IsWindow(pass); }));
  EXPECT_EQ(FileBytes(L"vault.mqp").substr(0, 4), "M2P\r");
  // Nothing but the list is left in the folder: no scratch or temporary files.
  EXPECT_EQ(Files(), std::set<std::wstring>{L"vault.mqp"});

  LoadAs(L"vault", L"&Open as New");
  pass = WaitForPasswordDialog(app.Pid());
  ASSERT_NE(pass, nullptr);
  EnterPassword(pass, 0, L"abd");
  EXPECT_EQ(DismissMessageBox(app.Pid(), L"Error: Wrong Password"),
            L"You have either entered the wrong password or the file is corrupted.");
  EXPECT_TRUE(IsWindow(pass));
  EnterPassword(pass, 0, L"abc");
  EXPECT_TRUE(WaitFor([&] { return !IsWindow(pass); }));
  EXPECT_EQ(Rows(), rows);
}

TEST_F(ListFiles, PinnedWindowStepsBackForItsDialogsAndPopupButtonsMergeInTheirOrder) {
  Start({{L"Set_Pn", L"2"}});
  ASSERT_TRUE(IsTopmost(ClipList()));
  ClickButton(load);  // an empty list: straight to the dialog
  HWND dialog = WaitForTopWindow(L"Load Marquill File", 30s, L"#32770", app.Pid());
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(GetWindow(dialog, GW_OWNER), ClipList());
  EXPECT_FALSE(IsTopmost(ClipList()));
  ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Load Marquill File", L""));
  EXPECT_TRUE(WaitFor([&] { return IsTopmost(ClipList()); }));

  Copy(L"loaded");
  SaveAs(L"one.mql");
  ASSERT_TRUE(WaitForFile(L"one.mql"));
  Copy(L"existing");
  LoadAs(L"one.mql", L"&Open as New");
  ASSERT_TRUE(WaitForRows({L"\tloaded"}));
  Copy(L"mine");
  LoadAs(L"one.mql", L"&Insert before Current");
  EXPECT_TRUE(WaitForRows({L"\tloaded", L"\tloaded", L"\tmine"}));
  const auto before = Rows();
  ClickButton(load);
  HWND cancel = WaitForPopupButton(app.Pid(), L"&Cancel");
  ASSERT_NE(cancel, nullptr);
  ClickButton(cancel);
  Pump(1s);
  EXPECT_FALSE(FindTopWindow(L"Load Marquill File", L"#32770", app.Pid()));
  EXPECT_EQ(Rows(), before);
}

}  // namespace
