// "Help" opens the help file beside marquill.exe in an HTML Help window. The help file is
// built into the program's folder by tests/help/run (scripts/test runs it before these tests).
#include <algorithm>
#include <filesystem>

#include "Fixture.h"

using namespace e2e;

namespace {

// The title of the help window comes from the help project (docs/help/mq2_help.hhp).
const wchar_t kHelpTitle[] = L"Marquill Help";

TEST_F(EndToEnd, HelpActionOpensTheHelpFileInAnHtmlHelpWindow) {
  ASSERT_TRUE(std::filesystem::exists(ProgramFolder() + L"\\mq2_help.chm"))
      << "mq2_help.chm is missing beside marquill.exe: run tests/help/run first";
  // Action code "9" is "Help"; the tray icon's right button runs it.
  WriteSettings({{L"Set_RC_Op", L"9"}});
  ASSERT_TRUE(app.Start());
  ASSERT_TRUE(app.WaitReady());
  app.TrayClick(WM_RBUTTONDOWN);
  HWND help = WaitForTopWindow(kHelpTitle, 30s, L"HH Parent", app.Pid());
  EXPECT_NE(help, nullptr) << "no HTML Help window titled \"Marquill Help\"";
  EXPECT_TRUE(WaitFor([&] { return IsShown(help); }, 10s));
  EXPECT_TRUE(MessageBoxesOf(app.Pid()).empty()) << "the help reported a problem";
  // Choosing Help again brings back the same window rather than a second one.
  app.TrayClick(WM_RBUTTONDOWN);
  Pump(1500ms);
  auto shown = FindTopWindows(nullptr, L"HH Parent", app.Pid());
  EXPECT_EQ(std::count_if(shown.begin(), shown.end(), IsShown), 1);
  // The program closes its help window when it ends, and ends in order.
  EXPECT_TRUE(app.Close(30s));
  EXPECT_EQ(app.ExitCode(), 0u);
  EXPECT_FALSE(IsWindow(help));
}

}  // namespace
