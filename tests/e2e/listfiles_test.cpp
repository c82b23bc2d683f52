// Saving and loading lists from the clip list window of the real program, through the real
// common dialogs, the load-mode popup and the password dialog.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <windows.h>
#include <psapi.h>

#include "Fixture.h"
#include "ListFiles.h"

using namespace e2e;

namespace {

class ListFiles : public EndToEnd {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    if (IsSkipped()) return;
    wchar_t base[MAX_PATH];
    GetTempPathW(MAX_PATH, base);
    folder = std::wstring(base) + L"mq e2e \u00E9t\u00E9 \u6587\u5B57 " + std::to_wstring(GetTickCount64());
    CreateDirectoryW(folder.c_str(), nullptr);
  }
  void TearDown() override {
    if (folder.empty()) return;
    WIN32_FIND_DATAW found;
    HANDLE h = FindFirstFileW((folder + L"\\*").c_str(), &found);
    while (h != INVALID_HANDLE_VALUE) {
      std::wstring path = folder + L"\\" + found.cFileName;
      SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
      DeleteFileW(path.c_str());
      if (!FindNextFileW(h, &found)) break;
    }
    if (h != INVALID_HANDLE_VALUE) FindClose(h);
    RemoveDirectoryW(folder.c_str());
  }

  // Starts the program; skips the test while the clip list window has no Save/Load buttons
  // (the caller returns when IsSkipped()).
  void Start(const Values& settings = {}) {
    WriteSettings(settings);
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.WaitReady());
    window = FindTopWindow(L"Clip List", nullptr, app.Pid());
    if (!window) window = FindTopWindow(L"Clip List (Top)", nullptr, app.Pid());
    ASSERT_NE(window, nullptr);
    list = FindChild(window, L"ListBox");
    WaitFor([&] { return !FindTopWindow(L"About Marquill", nullptr, app.Pid()); }, 5s);
    save = FindToolButton(window, L"Save List");
    load = FindToolButton(window, L"Load List");
    if (!save || !load)
      GTEST_SKIP() << "the clip list window has no buttons with the tips \"Save List\" and "
                      "\"Load List\" yet";
  }
  void Copy(const std::wstring& text) {
    ASSERT_TRUE(SetClipboardText(text));
    Pump(400ms);  // past the capture debounce
  }
  void CopyRich(const char* rtf) {
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, strlen(rtf) + 1);
    memcpy(GlobalLock(memory), rtf, strlen(rtf) + 1);
    GlobalUnlock(memory);
    SetClipboardData(RegisterClipboardFormatW(L"Rich Text Format"), memory);
    CloseClipboard();
    Pump(400ms);
  }
  std::vector<std::wstring> Rows() const { return ListBoxRows(list); }
  bool WaitForRows(size_t n) const { return WaitFor([&] { return Rows().size() == n; }); }

  void SaveAs(const std::wstring& name) {
    ClickButton(save);
    ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Save Marquill File", folder + L"\\" + name));
  }
  // The Load button, then the popup's button when the list has rows.
  void LoadAs(const std::wstring& name, const wchar_t* popupButton = nullptr) {
    ClickButton(load);
    if (popupButton) {
      HWND button = WaitForPopupButton(app.Pid(), popupButton);
      ASSERT_NE(button, nullptr);
      ClickButton(button);
    }
    ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Load Marquill File", name.empty() ? L"" : folder + L"\\" + name));
  }
  std::string FileStart(const std::wstring& name, size_t n = 4) {
    std::ifstream in(std::filesystem::path(folder + L"\\" + name), std::ios::binary);
    std::string bytes(n, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(n));
    return in ? bytes : std::string();
  }
  bool WaitForFile(const std::wstring& name) {
    return WaitFor([&] { return GetFileAttributesW((folder + L"\\" + name).c_str()) != INVALID_FILE_ATTRIBUTES; });
  }

  Marquill app;
  std::wstring folder;
  HWND window = nullptr, list = nullptr, save = nullptr, load = nullptr;
};

TEST_F(ListFiles, PlainListSavedAndLoadedBack) {
  Start();
  if (IsSkipped() || HasFatalFailure()) return;
  Copy(L"first entry");
  CopyRich("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\b Bold\\b0  and plain}");
  Copy(L"th\u00EErd \u03A9");
  ASSERT_TRUE(WaitForRows(3));
  const auto rows = Rows();

  SaveAs(L"three");
  ASSERT_TRUE(WaitForFile(L"three.mql"));
  EXPECT_EQ(FileStart(L"three.mql"), "M2L\r");

  LoadAs(L"three.mql", L"&Open as New");
  EXPECT_TRUE(WaitFor([&] { return Rows() == rows; }));

  // The tool reads the same three entries, the rich one as its RTF.
  const std::wstring dump = folder + L"\\dump";
  CreateDirectoryW(dump.c_str(), nullptr);
  std::wstring command = L"\"" + ProgramFolder() + L"\\mqlist.exe\" dump \"" + folder +
                         L"\\three.mql\" \"" + dump + L"\"";
  STARTUPINFOW si{};
  si.cb = sizeof(si);
  PROCESS_INFORMATION pi{};
  ASSERT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi));
  WaitForSingleObject(pi.hProcess, 30000);
  DWORD code = 1;
  GetExitCodeProcess(pi.hProcess, &code);
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  EXPECT_EQ(code, 0u);
  auto read = [&](const wchar_t* name) {
    std::ifstream in(std::filesystem::path(dump + L"\\" + name), std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  };
  EXPECT_EQ(read(L"000.txt"), "first entry");
  EXPECT_NE(read(L"001.rtf").find("Bold"), std::string::npos);
  EXPECT_EQ(read(L"002.txt"), "th\xC3\xAErd \xCE\xA9");
  for (const wchar_t* name : {L"000.txt", L"001.rtf", L"002.txt"}) DeleteFileW((dump + L"\\" + name).c_str());
  RemoveDirectoryW(dump.c_str());
}

TEST_F(ListFiles, ProtectedListAsksForItsPassword) {
  Start();
  if (IsSkipped() || HasFatalFailure()) return;
  Copy(L"secret one");
  Copy(L"secret two");
  ASSERT_TRUE(WaitForRows(2));
  const auto rows = Rows();

  ClickButton(save);
  ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Save Marquill File", folder + L"\\vault.MQP"));
  HWND pass = WaitForPasswordDialog(app.Pid());
  ASSERT_NE(pass, nullptr);
  EXPECT_EQ(GetWindow(pass, GW_OWNER), window);
  EnterPassword(pass, 0, L"abc");
  EnterPassword(pass, 1, L"ABC");
  EXPECT_EQ(DismissMessageBox(app.Pid(), L"Error: Password mismatch"), L"Passwords do not match");
  EXPECT_EQ(PasswordBoxText(pass, 1), L"");
  EnterPassword(pass, 1, L"abc");
  ASSERT_TRUE(WaitForFile(L"vault.MQP"));
  EXPECT_TRUE(WaitFor([&] { return !IsWindow(pass); }));
  EXPECT_EQ(FileStart(L"vault.MQP"), "M2P\r");

  LoadAs(L"vault", L"&Open as New");
  pass = WaitForPasswordDialog(app.Pid());
  ASSERT_NE(pass, nullptr);
  for (const wchar_t* wrong : {L"abd", L"ab"}) {
    EnterPassword(pass, 0, wrong);
    EXPECT_EQ(DismissMessageBox(app.Pid(), L"Error: Wrong Password"),
              L"You have either entered the wrong password or the file is corrupted.");
    EXPECT_TRUE(IsWindow(pass));
  }
  EnterPassword(pass, 0, L"abc");
  EXPECT_TRUE(WaitFor([&] { return !IsWindow(pass); }));
  EXPECT_EQ(Rows(), rows);
}

TEST_F(ListFiles, PopupButtonsMergeInTheirOrder) {
  Start();
  if (IsSkipped() || HasFatalFailure()) return;
  Copy(L"loaded");
  ASSERT_TRUE(WaitForRows(1));
  SaveAs(L"one.mql");
  ASSERT_TRUE(WaitForFile(L"one.mql"));
  Copy(L"existing");
  ASSERT_TRUE(WaitForRows(2));
  LoadAs(L"one.mql", L"&Open as New");
  ASSERT_TRUE(WaitFor([&] { return Rows() == std::vector<std::wstring>{L"\tloaded"}; }));
  Copy(L"mine");
  ASSERT_TRUE(WaitForRows(2));
  LoadAs(L"one.mql", L"&Insert before Current");
  EXPECT_TRUE(WaitFor([&] { return Rows() == std::vector<std::wstring>{L"\tloaded", L"\tloaded", L"\tmine"}; }));
  LoadAs(L"one.mql", L"&Append after Current");
  EXPECT_TRUE(WaitFor([&] { return Rows().size() == 4 && Rows().back() == L"\tloaded"; }));
  const auto before = Rows();
  ClickButton(load);
  HWND cancel = WaitForPopupButton(app.Pid(), L"&Cancel");
  ASSERT_NE(cancel, nullptr);
  ClickButton(cancel);
  Pump(1s);
  EXPECT_FALSE(FindTopWindow(L"Load Marquill File", L"#32770", app.Pid()));
  EXPECT_EQ(Rows(), before);
}

TEST_F(ListFiles, RefusalsShowTheirMessagesAndLoseNothing) {
  Start();
  if (IsSkipped() || HasFatalFailure()) return;
  Copy(L"keep me");
  ASSERT_TRUE(WaitForRows(1));
  const auto rows = Rows();
  LoadAs(L"missing", L"&Open as New");
  EXPECT_EQ(DismissMessageBox(app.Pid(), L"Error: File not found"), L"File does not exist.");
  std::ofstream(std::filesystem::path(folder + L"\\foreign.mql")) << "Hello, I am a text file\r\n";
  LoadAs(L"foreign.mql", L"&Open as New");
  EXPECT_EQ(DismissMessageBox(app.Pid(), L"Error: Wrong file format"),
            L"Either the file was not created by Marquill or the file has become corrupted.");
  EXPECT_EQ(Rows(), rows);

  // A folder that refuses writes: the system's own reason, the old file untouched.
  std::ofstream(std::filesystem::path(folder + L"\\old.mql")) << "previous";
  SetFileAttributesW((folder + L"\\old.mql").c_str(), FILE_ATTRIBUTE_READONLY);
  ClickButton(save);
  ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Save Marquill File", folder + L"\\old.mql"));
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

TEST_F(ListFiles, PinnedWindowStepsBackWhileTheDialogIsOpen) {
  Start({{L"Set_Pn", L"2"}});
  if (IsSkipped() || HasFatalFailure()) return;
  ASSERT_TRUE(IsTopmost(window));
  ClickButton(load);  // an empty list: straight to the dialog
  ASSERT_TRUE(WaitForTopWindow(L"Load Marquill File", 30s, L"#32770", app.Pid()));
  EXPECT_FALSE(IsTopmost(window));
  ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Load Marquill File", L""));
  EXPECT_TRUE(WaitFor([&] { return IsTopmost(window); }));
}

}  // namespace

// Not a check of speed: it prints how long a full list (100 entries of 32 KB) takes to load and
// to save through the window, plain and protected, and checks that every entry arrives.
TEST_F(ListFiles, FullListThroughTheWindowPrintsItsTimes) {
  Start();
  if (IsSkipped() || HasFatalFailure()) return;
  std::wstring entries;
  for (int k = 0; k < 100; ++k) {
    std::wstring name = L"e" + std::to_wstring(k) + L".txt";
    std::ofstream out(std::filesystem::path(folder + L"\\" + name), std::ios::binary);
    for (int line = 0; out.tellp() < 32 * 1024; ++line)
      out << "entry " << k << " line " << line << " of a long text that fills the list\r\n";
    entries += L" \"" + folder + L"\\" + name + L"\"";
  }
  auto mqlist = [&](const std::wstring& args) {
    std::wstring command = L"\"" + ProgramFolder() + L"\\mqlist.exe\" " + args;
    STARTUPINFOW si{};
    si.cb = sizeof(si);
    PROCESS_INFORMATION pi{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi))
      return false;
    WaitForSingleObject(pi.hProcess, 60000);
    DWORD code = 1;
    GetExitCodeProcess(pi.hProcess, &code);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    return code == 0;
  };
  ASSERT_TRUE(mqlist(L"make \"" + folder + L"\\full.mql\"" + entries));
  ASSERT_TRUE(mqlist(L"make \"" + folder + L"\\full.mqp\" --password pw" + entries));
  using Clock = std::chrono::steady_clock;
  auto ms = [](Clock::time_point since) {
    return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
  };

  // The program's memory (its working set: Wine reports no private bytes) before and after.
  auto memoryMb = [&] {
    HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, app.Pid());
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    BOOL got = process && K32GetProcessMemoryInfo(process, &counters, sizeof(counters));
    if (process) CloseHandle(process);
    return got ? counters.WorkingSetSize / (1024.0 * 1024.0) : 0.0;
  };
  const double emptyMb = memoryMb();

  LoadAs(L"full.mql");
  auto start = Clock::now();
  ASSERT_TRUE(WaitFor([&] { return Rows().size() == 100; }, 60s, 5ms));
  const double loadPlain = ms(start);
  Pump(500ms);
  const double fullMb = memoryMb();

  SaveAs(L"saved");
  start = Clock::now();
  ASSERT_TRUE(WaitFor([&] { return GetFileAttributesW((folder + L"\\saved.mql").c_str()) !=
                                   INVALID_FILE_ATTRIBUTES; }, 60s, 5ms));
  const double savePlain = ms(start);

  ClickButton(save);
  ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Save Marquill File", folder + L"\\saved.mqp"));
  HWND pass = WaitForPasswordDialog(app.Pid());
  ASSERT_NE(pass, nullptr);
  EnterPassword(pass, 0, L"pw");
  start = Clock::now();
  EnterPassword(pass, 1, L"pw");
  ASSERT_TRUE(WaitFor([&] { return GetFileAttributesW((folder + L"\\saved.mqp").c_str()) !=
                                   INVALID_FILE_ATTRIBUTES; }, 60s, 5ms));
  const double saveProtected = ms(start);

  LoadAs(L"full.mqp", L"&Open as New");
  pass = WaitForPasswordDialog(app.Pid());
  ASSERT_NE(pass, nullptr);
  start = Clock::now();
  EnterPassword(pass, 0, L"pw");
  ASSERT_TRUE(WaitFor([&] { return !IsWindow(pass) && Rows().size() == 100; }, 60s, 5ms));
  const double loadProtected = ms(start);
  EXPECT_EQ(Rows().front().substr(0, 8), L"\tentry 0");

  std::printf("full list of 100 x 32 KB through the window: load %.0f ms, save %.0f ms (plain); "
              "load %.0f ms, save %.0f ms (protected); working set %.1f MB empty, %.1f MB full\n",
              loadPlain, savePlain, loadProtected, saveProtected, emptyMb, fullMb);
}
