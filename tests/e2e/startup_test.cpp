// Start-up, the single-instance guard, the help window and shut-down of the real program.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Fixture.h"

using namespace e2e;

namespace {

constexpr wchar_t kActiveText[] =
    L"Marquill is already running. Look for the paperclip icon in the system tray (on the "
    L"\"Start\" bar near the clock).";

// The help file is built beside marquill.exe by tests/help/run (scripts/test runs it first).
TEST_F(EndToEnd, SecondCopyReportsAndTheFirstShowsItsHelpUntilItEnds) {
  ASSERT_TRUE(std::filesystem::exists(ProgramFolder() + L"\\mq2_help.chm"))
      << "mq2_help.chm is missing beside marquill.exe: run tests/help/run first";
  StartMarquill({{L"Set_RC_Op", L"9"}});  // a right click on the tray icon: Help

  Marquill second;
  ASSERT_TRUE(second.Start());
  HWND box = WaitForMessageBox(L"Error: Marquill active", 30s, second.Pid());
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(MessageBoxText(box), kActiveText);
  EXPECT_TRUE(PressButton(box, IDOK));
  EXPECT_TRUE(second.WaitExit());

  // The title of the help window comes from the help project (docs/help/mq2_help.hhp).
  app.TrayClick(WM_RBUTTONDOWN);
  HWND help = WaitForTopWindow(L"Marquill Help", 30s, L"HH Parent", app.Pid());
  ASSERT_NE(help, nullptr) << "no HTML Help window titled \"Marquill Help\"";
  EXPECT_TRUE(WaitFor([&] { return IsShown(help); }, 10s));
  EXPECT_TRUE(MessageBoxesOf(app.Pid()).empty()) << "the help reported a problem";
  // Choosing Help again brings back the same window rather than a second one.
  app.TrayClick(WM_RBUTTONDOWN);
  Pump(1500ms);
  auto shown = FindTopWindows(nullptr, L"HH Parent", app.Pid());
  EXPECT_EQ(std::count_if(shown.begin(), shown.end(), IsShown), 1);
  // The first copy still runs; it closes its help window when it ends, and ends in order.
  EXPECT_TRUE(app.Close(30s));
  EXPECT_EQ(app.ExitCode(), 0u);
  EXPECT_FALSE(IsWindow(help));
}

TEST_F(EndToEnd, AStoredDisabledStateStartsDisabledAndClosingDeletesStrayScratchFiles) {
  const std::wstring scratch[] = {ProgramFolder() + L"\\temp.tmp", ProgramFolder() + L"\\temp2.tmp"};
  for (const auto& file : scratch) std::ofstream(std::filesystem::path(file)) << "left over";
  WriteSettings({{L"Set_En", L"0"}, {L"Cur_En", L"2"}});
  ASSERT_TRUE(app.Start());
  HWND splash = WaitForTopWindow(L"About Marquill", 30s, nullptr, app.Pid());
  ASSERT_NE(splash, nullptr);
  ASSERT_TRUE(app.WaitReady());
  ASSERT_FALSE(app.Modules().empty()) << "the process's modules cannot be listed";
  EXPECT_FALSE(app.HasLoaded(L"comctl32.dll")) << "the first window that uses it loads it";
  // The splash unloads itself after 2,000 ms.
  EXPECT_TRUE(WaitFor([&] { return !IsWindow(splash); }, 10s));
  EXPECT_EQ(ReadSetting(L"Cur_En"), L"2");
  EXPECT_TRUE(std::filesystem::exists(scratch[0])) << "start-up leaves them alone";
  EXPECT_TRUE(app.Close());
  for (const auto& file : scratch) EXPECT_FALSE(std::filesystem::exists(file));
}

}  // namespace
