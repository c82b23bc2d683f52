// Start-up, the single-instance guard and shut-down of the real program.
#include <filesystem>
#include <fstream>

#include "Fixture.h"

using namespace e2e;

namespace {

constexpr wchar_t kCorruptText[] =
    L"Some of the program settings were corrupted. The corrupt settings have been returned to "
    L"their default values.";
constexpr wchar_t kActiveText[] =
    L"Marquill is already running. Look for the paperclip icon in the system tray (on the "
    L"\"Start\" bar near the clock).";

TEST_F(EndToEnd, FreshStartShowsNoMessageAndWritesOnlyTheFirstRunKeys) {
  Marquill app;
  ASSERT_TRUE(app.Start());
  ASSERT_TRUE(app.WaitReady());
  Pump(300ms);
  EXPECT_TRUE(MessageBoxesOf(app.Pid()).empty());
  Values expected{{L"Set_H0_En", L"1"}, {L"Set_H1_En", L"1"}, {L"Set_H2_En", L"1"},
                  {L"Set_H3_En", L"1"}, {L"Set_LO", L"0"},    {L"Cur_LO", L"0"},
                  {L"Set_Dl", L"1"},    {L"Cur_Dl", L"1"},    {L"Set_Vu", L"0"},
                  {L"Cur_Vu", L"0"},    {L"Set_Pn", L"0"},    {L"Cur_Pn", L"0"}};
  EXPECT_EQ(ReadSettings(), expected);
  // The clip list window exists (hidden) from start-up on, with its list box.
  HWND list = FindTopWindow(L"Clip List", nullptr, app.Pid());
  ASSERT_NE(list, nullptr);
  EXPECT_FALSE(IsShown(list));
  EXPECT_NE(FindChild(list, L"ListBox"), nullptr);
  EXPECT_TRUE(app.Close());
  EXPECT_EQ(app.ExitCode(), 0u);
}

TEST_F(EndToEnd, CorruptValuesGiveOneMessage) {
  WriteSettings({{L"Set_Op", L"7"}, {L"Set_FO", L"abc"}, {L"Set_FS", L"9"}, {L"Set_Mo", L"5"}});
  Marquill app;
  ASSERT_TRUE(app.Start());
  HWND box = WaitForMessageBox(L"Error: Corrupt Settings.", 30s, app.Pid());
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(MessageBoxText(box), kCorruptText);
  EXPECT_TRUE(PressButton(box, IDOK));
  ASSERT_TRUE(app.WaitReady());
  Pump(300ms);
  EXPECT_TRUE(MessageBoxesOf(app.Pid()).empty()) << "several repairs, one message";
  EXPECT_EQ(ReadSetting(L"Set_Op"), L"0");
  EXPECT_EQ(ReadSetting(L"Cur_Op"), L"1");
  EXPECT_EQ(ReadSetting(L"Set_FO"), L"75");
  EXPECT_EQ(ReadSetting(L"Set_FS"), L"2");
  EXPECT_EQ(ReadSetting(L"Set_Mo"), L"0");
  EXPECT_EQ(ReadSetting(L"Cur_Mo"), L"2");
  EXPECT_TRUE(app.Close());
}

TEST_F(EndToEnd, HotkeysAreLiveWhileTheCorruptSettingsMessageIsOpen) {
  WriteSettings({{L"Set_FO", L"abc"}});
  Marquill app;
  ASSERT_TRUE(app.Start());
  HWND box = WaitForMessageBox(L"Error: Corrupt Settings.", 30s, app.Pid());
  ASSERT_NE(box, nullptr);
  // Marquill holds CTRL+1 already, so this process cannot take it.
  mq::win32::UniqueWindow probe(CreateWindowExW(0, L"Static", L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                                                nullptr, nullptr, nullptr));
  bool taken = RegisterHotKey(probe.Get(), 1, MOD_CONTROL, '1');
  if (taken) UnregisterHotKey(probe.Get(), 1);
  probe.Reset();
  EXPECT_FALSE(taken) << "CTRL+1 was free while the message was open";
  EXPECT_TRUE(PressButton(box, IDOK));
  ASSERT_TRUE(app.WaitReady());
  EXPECT_TRUE(app.Close());
}

TEST_F(EndToEnd, SecondCopyReportsAndLeavesTheFirstRunning) {
  Marquill first;
  ASSERT_TRUE(first.Start());
  ASSERT_TRUE(first.WaitReady());
  Values before = ReadSettings();

  Marquill second;
  ASSERT_TRUE(second.Start());
  HWND box = WaitForMessageBox(L"Error: Marquill active", 30s, second.Pid());
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(MessageBoxText(box), kActiveText);
  EXPECT_TRUE(PressButton(box, IDOK));
  EXPECT_TRUE(second.WaitExit());
  EXPECT_EQ(ReadSettings(), before) << "the second copy reads and writes no setting";

  EXPECT_TRUE(first.Running());
  EXPECT_NE(first.MainWindow(), nullptr);
  EXPECT_TRUE(first.Close());
}

TEST_F(EndToEnd, ClosingDeletesStrayScratchFilesAndEnds) {
  std::wstring scratch = ProgramFolder() + L"\\temp.tmp";
  std::wstring scratch2 = ProgramFolder() + L"\\temp2.tmp";
  std::ofstream(std::filesystem::path(scratch)) << "left over";
  std::ofstream(std::filesystem::path(scratch2)) << "left over";
  Marquill app;
  ASSERT_TRUE(app.Start());
  ASSERT_TRUE(app.WaitReady());
  EXPECT_NE(GetFileAttributesW(scratch.c_str()), INVALID_FILE_ATTRIBUTES)
      << "start-up leaves them alone";
  EXPECT_TRUE(app.Close());
  EXPECT_EQ(GetFileAttributesW(scratch.c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(GetFileAttributesW(scratch2.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(EndToEnd, AStoredDisabledStateStartsDisabledAndTheSplashCloses) {
  WriteSettings({{L"Set_En", L"0"}, {L"Cur_En", L"2"}});
  Marquill app;
  ASSERT_TRUE(app.Start());
  HWND splash = WaitForTopWindow(L"About Marquill", 30s, nullptr, app.Pid());
  ASSERT_NE(splash, nullptr);
  ASSERT_TRUE(app.WaitReady());
  // The splash unloads itself after 2,000 ms.
  EXPECT_TRUE(WaitFor([&] { return !IsWindow(splash); }, 10s));
  EXPECT_EQ(ReadSetting(L"Cur_En"), L"2");
  EXPECT_TRUE(app.Close());
}

}  // namespace
