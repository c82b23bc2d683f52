// Saving and loading lists from the clip list window of the real program, through the real
// common dialogs, the load-mode popup and the password dialog.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <windows.h>
#include <psapi.h>

#include "Fixture.h"
#include "ListFiles.h"

using namespace e2e;
namespace fs = std::filesystem;

namespace {

class ListFiles : public EndToEnd {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    if (IsSkipped()) return;
    folder = (fs::temp_directory_path() / (L"mq e2e \u00E9t\u00E9 \u6587\u5B57 " + std::to_wstring(GetTickCount64()))).wstring();
    fs::create_directory(folder);
  }
  void TearDown() override {
    if (folder.empty()) return;
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(folder, error))
      SetFileAttributesW(entry.path().c_str(), FILE_ATTRIBUTE_NORMAL);
    fs::remove_all(folder, error);
  }

  // Starts the program; skips the test while the clip list window has no Save/Load buttons
  // (the caller returns when IsSkipped()).
  void Start(const Values& settings = {}) {
    StartMarquill(settings);
    save = FindToolButton(listWindow, L"Save List");
    load = FindToolButton(listWindow, L"Load List");
    if (!save || !load)
      GTEST_SKIP() << "the clip list window has no buttons with the tips \"Save List\" and "
                      "\"Load List\" yet";
  }
  void Copy(const std::wstring& text) {
    ASSERT_TRUE(SetClipboardText(text));
    Pump(400ms);  // past the capture debounce
  }
  bool WaitForRowCount(size_t n, Duration timeout = 10s) const {
    return WaitFor([&] { return Rows().size() == n; }, timeout, 5ms);
  }
  std::wstring Path(const std::wstring& name) const { return folder + L"\\" + name; }

  void SaveAs(const std::wstring& name) {
    ClickButton(save);
    ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Save Marquill File", Path(name)));
  }
  // The Load button, then the popup's button when the list has rows.
  void LoadAs(const std::wstring& name, const wchar_t* popupButton = nullptr) {
    ClickButton(load);
    if (popupButton) {
      HWND button = WaitForPopupButton(app.Pid(), popupButton);
      ASSERT_NE(button, nullptr);
      ClickButton(button);
    }
    ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Load Marquill File", name.empty() ? L"" : Path(name)));
  }
  std::string FileStart(const std::wstring& name, size_t n = 4) {
    std::ifstream in(fs::path(Path(name)), std::ios::binary);
    std::string bytes(n, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(n));
    return in ? bytes : std::string();
  }
  bool WaitForFile(const std::wstring& name, Duration timeout = 10s) {
    return WaitFor([&] { return fs::exists(Path(name)); }, timeout, 5ms);
  }
  // mqlist.exe, built beside the test program.
  static bool MqList(const std::wstring& args) {
    return RunProgram(L"\"" + ProgramFolder() + L"\\mqlist.exe\" " + args) == 0;
  }

  std::wstring folder;
  HWND save = nullptr, load = nullptr;
};

TEST_F(ListFiles, PlainListSavedAndLoadedBack) {
  Start();
  if (IsSkipped() || HasFatalFailure()) return;
  Copy(L"first entry");
  ASSERT_TRUE(SetClipboardRtf("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\b Bold\\b0  and plain}"));
  Pump(400ms);
  Copy(L"th\u00EErd \u03A9");
  ASSERT_TRUE(WaitForRowCount(3));
  const auto rows = Rows();

  SaveAs(L"three");
  ASSERT_TRUE(WaitForFile(L"three.mql"));
  EXPECT_EQ(FileStart(L"three.mql"), "M2L\r");

  LoadAs(L"three.mql", L"&Open as New");
  EXPECT_TRUE(WaitFor([&] { return Rows() == rows; }));

}

TEST_F(ListFiles, ProtectedListAsksForItsPassword) {
  // The protected filter was the last one chosen: a name without extension is saved as .mqp.
  Start({{L"Cur_FF_S", L"2"}});
  if (IsSkipped() || HasFatalFailure()) return;
  Copy(L"secret one");
  Copy(L"secret two");
  ASSERT_TRUE(WaitForRowCount(2));
  const auto rows = Rows();

  SaveAs(L"vault");
  HWND pass = WaitForPasswordDialog(app.Pid());
  ASSERT_NE(pass, nullptr);
  EXPECT_EQ(GetWindow(pass, GW_OWNER), listWindow);
  EnterPassword(pass, 0, L"abc");
  EnterPassword(pass, 1, L"ABC");
  EXPECT_EQ(DismissMessageBox(app.Pid(), L"Error: Password mismatch"), L"Passwords do not match");
  EXPECT_EQ(PasswordBoxText(pass, 1), L"");
  EnterPassword(pass, 1, L"abc");
  ASSERT_TRUE(WaitForFile(L"vault.mqp"));
  EXPECT_TRUE(WaitFor([&] { return !IsWindow(pass); }));
  EXPECT_EQ(FileStart(L"vault.mqp"), "M2P\r");
  // Nothing but the list is left in the folder: no scratch or temporary files.
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);

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

TEST_F(ListFiles, PopupButtonsMergeInTheirOrder) {
  Start();
  if (IsSkipped() || HasFatalFailure()) return;
  Copy(L"loaded");
  ASSERT_TRUE(WaitForRowCount(1));
  SaveAs(L"one.mql");
  ASSERT_TRUE(WaitForFile(L"one.mql"));
  Copy(L"existing");
  ASSERT_TRUE(WaitForRowCount(2));
  LoadAs(L"one.mql", L"&Open as New");
  ASSERT_TRUE(WaitForRows({L"\tloaded"}));
  Copy(L"mine");
  ASSERT_TRUE(WaitForRowCount(2));
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

TEST_F(ListFiles, AReadOnlyFileRefusesTheSaveWithTheSystemsReason) {
  Start();
  if (IsSkipped() || HasFatalFailure()) return;
  Copy(L"keep me");
  ASSERT_TRUE(WaitForRowCount(1));
  const auto rows = Rows();
  // A file that refuses writes: the system's own reason, the old file untouched.
  std::ofstream(fs::path(Path(L"old.mql"))) << "previous";
  SetFileAttributesW(Path(L"old.mql").c_str(), FILE_ATTRIBUTE_READONLY);
  SaveAs(L"old.mql");
  // The overwrite prompt first.
  HWND confirm = nullptr;
  if (WaitFor([&] { return (confirm = FindTopWindow(L"Save Marquill File", L"#32770", app.Pid())) &&
                           MessageBoxText(confirm).find(L"exists") != std::wstring::npos; }, 5s))
    PressButton(confirm, IDYES);
  HWND error = WaitForMessageBox(L"Marquill", 10s, app.Pid());
  ASSERT_NE(error, nullptr);
  EXPECT_EQ(MessageBoxText(error).rfind(L"Error: ", 0), 0u) << MessageBoxText(error);
  PressButton(error, IDOK);
  EXPECT_EQ(FileStart(L"old.mql", 8), "previous");
  EXPECT_EQ(Rows(), rows);
}

TEST_F(ListFiles, PinnedWindowStepsBackWhileItsOwnDialogIsOpen) {
  Start({{L"Set_Pn", L"2"}});
  if (IsSkipped() || HasFatalFailure()) return;
  ASSERT_TRUE(IsTopmost(listWindow));
  ClickButton(load);  // an empty list: straight to the dialog
  HWND dialog = WaitForTopWindow(L"Load Marquill File", 30s, L"#32770", app.Pid());
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(GetWindow(dialog, GW_OWNER), listWindow);
  EXPECT_FALSE(IsTopmost(listWindow));
  ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Load Marquill File", L""));
  EXPECT_TRUE(WaitFor([&] { return IsTopmost(listWindow); }));
}

}  // namespace

// Not a check of speed: it prints how long a full list (100 entries of 32 KB) takes to load and
// to save through the window, plain and protected, and checks that every entry arrives.
TEST_F(ListFiles, FullListThroughTheWindowPrintsItsTimes) {
  Start();
  if (IsSkipped() || HasFatalFailure()) return;
  std::wstring entries;
  for (int k = 0; k < 100; ++k) {
    std::wstring name = Path(L"e" + std::to_wstring(k) + L".txt");
    std::ofstream out(fs::path(name), std::ios::binary);
    for (int line = 0; out.tellp() < 32 * 1024; ++line)
      out << "entry " << k << " line " << line << " of a long text that fills the list\r\n";
    entries += L" \"" + name + L"\"";
  }
  ASSERT_TRUE(MqList(L"make \"" + Path(L"full.mql") + L"\"" + entries));
  ASSERT_TRUE(MqList(L"make \"" + Path(L"full.mqp") + L"\" --password pw" + entries));
  using Clock = std::chrono::steady_clock;
  Clock::time_point start;
  auto ms = [&] { return std::chrono::duration<double, std::milli>(Clock::now() - start).count(); };

  // The program's memory (its working set: Wine reports no private bytes) before and after.
  auto memoryMb = [&] {
    mq::win32::UniqueKernelObject process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, app.Pid()));
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    bool got = process && K32GetProcessMemoryInfo(process.Get(), &counters, sizeof(counters));
    return got ? counters.WorkingSetSize / (1024.0 * 1024.0) : 0.0;
  };
  const double emptyMb = memoryMb();

  LoadAs(L"full.mql");
  start = Clock::now();
  ASSERT_TRUE(WaitForRowCount(100, 60s));
  const double loadPlain = ms();
  Pump(500ms);
  const double fullMb = memoryMb();

  SaveAs(L"saved");
  start = Clock::now();
  ASSERT_TRUE(WaitForFile(L"saved.mql", 60s));
  const double savePlain = ms();

  SaveAs(L"saved.mqp");
  HWND pass = WaitForPasswordDialog(app.Pid());
  ASSERT_NE(pass, nullptr);
  EnterPassword(pass, 0, L"pw");
  start = Clock::now();
  EnterPassword(pass, 1, L"pw");
  ASSERT_TRUE(WaitForFile(L"saved.mqp", 60s));
  const double saveProtected = ms();

  LoadAs(L"full.mqp", L"&Open as New");
  pass = WaitForPasswordDialog(app.Pid());
  ASSERT_NE(pass, nullptr);
  start = Clock::now();
  EnterPassword(pass, 0, L"pw");
  ASSERT_TRUE(WaitFor([&] { return !IsWindow(pass) && Rows().size() == 100; }, 60s, 5ms));
  const double loadProtected = ms();
  EXPECT_EQ(Rows().front().substr(0, 8), L"\tentry 0");

  std::printf("full list of 100 x 32 KB through the window: load %.0f ms, save %.0f ms (plain); "
              "load %.0f ms, save %.0f ms (protected); working set %.1f MB empty, %.1f MB full\n",
              loadPlain, savePlain, loadProtected, saveProtected, emptyMb, fullMb);
}
