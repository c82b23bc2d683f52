// Start-up, the single-instance guard and shut-down of the real program.
#include <filesystem>
#include <fstream>

#include "Fixture.h"

using namespace e2e;

namespace {

constexpr wchar_t kActiveText[] =
    L"Marquill is already running. Look for the paperclip icon in the system tray (on the "
    L"\"Start\" bar near the clock).";

TEST_F(EndToEnd, FreshStartShowsNoMessageAndWritesOnlyTheFirstRunKeys) {
  StartMarquill();
  EXPECT_TRUE(MessageBoxesOf(app.Pid()).empty());
  Values expected{{L"Set_H0_En", L"1"}, {L"Set_H1_En", L"1"}, {L"Set_H2_En", L"1"},
                  {L"Set_H3_En", L"1"}, {L"Set_LO", L"0"},    {L"Cur_LO", L"0"},
                  {L"Set_Dl", L"1"},    {L"Cur_Dl", L"1"},    {L"Set_Vu", L"0"},
                  {L"Cur_Vu", L"0"},    {L"Set_Pn", L"0"},    {L"Cur_Pn", L"0"}};
  EXPECT_EQ(ReadSettings(), expected);
  EXPECT_FALSE(IsShown(listWindow)) << "the clip list window exists, hidden, from start-up on";
  EXPECT_TRUE(app.Close());
  EXPECT_EQ(app.ExitCode(), 0u);
}

TEST_F(EndToEnd, SecondCopyReportsAndLeavesTheFirstRunning) {
  StartMarquill();
  Values before = ReadSettings();

  Marquill second;
  ASSERT_TRUE(second.Start());
  HWND box = WaitForMessageBox(L"Error: Marquill active", 30s, second.Pid());
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(MessageBoxText(box), kActiveText);
  EXPECT_TRUE(PressButton(box, IDOK));
  EXPECT_TRUE(second.WaitExit());
  EXPECT_EQ(ReadSettings(), before) << "the second copy reads and writes no setting";
  EXPECT_TRUE(app.Close()) << "the first one still runs";
}

TEST_F(EndToEnd, AStoredDisabledStateStartsDisabledAndClosingDeletesStrayScratchFiles) {
  const std::wstring scratch[] = {ProgramFolder() + L"\\temp.tmp", ProgramFolder() + L"\\temp2.tmp"};
  for (const auto& file : scratch) std::ofstream(std::filesystem::path(file)) << "left over";
  WriteSettings({{L"Set_En", L"0"}, {L"Cur_En", L"2"}});
  ASSERT_TRUE(app.Start());
  HWND splash = WaitForTopWindow(L"About Marquill", 30s, nullptr, app.Pid());
  ASSERT_NE(splash, nullptr);
  ASSERT_TRUE(app.WaitReady());
  // The splash unloads itself after 2,000 ms.
  EXPECT_TRUE(WaitFor([&] { return !IsWindow(splash); }, 10s));
  EXPECT_EQ(ReadSetting(L"Cur_En"), L"2");
  EXPECT_TRUE(std::filesystem::exists(scratch[0])) << "start-up leaves them alone";
  EXPECT_TRUE(app.Close());
  for (const auto& file : scratch) EXPECT_FALSE(std::filesystem::exists(file));
}

}  // namespace
