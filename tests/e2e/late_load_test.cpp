// Libraries that start-up leaves alone (the common dialogs, COM, the rich edit control) come
// with their first use: the real program is ready without them, and each works the first time
// it is needed, also when that first time is inside a load.
#include <windows.h>
#include <psapi.h>

#include <algorithm>
#include <cwctype>
#include <string>
#include <vector>

#include "Fixture.h"
#include "ListFiles.h"

using namespace e2e;

namespace {

// The lower-case file names of the modules loaded in the process.
std::vector<std::wstring> ModulesOf(DWORD pid) {
  std::vector<std::wstring> names;
  HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid);
  if (!process) return names;
  std::vector<HMODULE> modules(512);
  DWORD bytes = 0;
  if (EnumProcessModules(process, modules.data(), static_cast<DWORD>(modules.size() * sizeof(HMODULE)), &bytes)) {
    modules.resize(std::min<size_t>(modules.size(), bytes / sizeof(HMODULE)));
    for (HMODULE m : modules) {
      wchar_t name[MAX_PATH] = {};
      if (!GetModuleBaseNameW(process, m, name, MAX_PATH)) continue;
      std::wstring n = name;
      for (auto& c : n) c = static_cast<wchar_t>(std::towlower(c));
      names.push_back(n);
    }
  }
  CloseHandle(process);
  return names;
}

bool Loaded(DWORD pid, const std::wstring& module) {
  const auto names = ModulesOf(pid);
  return std::find(names.begin(), names.end(), module) != names.end();
}

class LateLoading : public EndToEnd {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    if (IsSkipped()) return;
    wchar_t base[MAX_PATH];
    GetTempPathW(MAX_PATH, base);
    folder = std::wstring(base) + L"mq late " + std::to_wstring(GetTickCount64());
    CreateDirectoryW(folder.c_str(), nullptr);
  }
  void TearDown() override {
    if (folder.empty()) return;
    DeleteFileW((folder + L"\\mixed.mql").c_str());
    RemoveDirectoryW(folder.c_str());
  }

  // Starts a copy of the program and finds its clip list window and buttons.
  void Start(Marquill& app) {
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.WaitReady());
    window = FindTopWindow(L"Clip List", nullptr, app.Pid());
    if (!window) window = FindTopWindow(L"Clip List (Top)", nullptr, app.Pid());
    ASSERT_NE(window, nullptr);
    list = FindChild(window, L"ListBox");
    save = FindToolButton(window, L"Save List");
    load = FindToolButton(window, L"Load List");
    ASSERT_TRUE(save && load);
  }

  std::wstring folder;
  HWND window = nullptr, list = nullptr, save = nullptr, load = nullptr;
};

TEST_F(LateLoading, ReadyWithoutThemAndEachWorksOnFirstUse) {
  const wchar_t* late[] = {L"comdlg32.dll", L"ole32.dll", L"msftedit.dll", L"riched20.dll", L"hhctrl.ocx"};
  std::vector<std::wstring> rows;
  {
    Marquill app;
    Start(app);
    if (HasFatalFailure()) return;
    ASSERT_FALSE(ModulesOf(app.Pid()).empty()) << "the process's modules cannot be listed";
    for (const wchar_t* module : late) EXPECT_FALSE(Loaded(app.Pid(), module)) << module;

    // Plain text needs none of them.
    ASSERT_TRUE(SetClipboardText(L"plain first"));
    ASSERT_TRUE(WaitFor([&] { return ListBoxRows(list).size() == 1; }));
    EXPECT_FALSE(Loaded(app.Pid(), L"msftedit.dll") || Loaded(app.Pid(), L"riched20.dll"));
    Pump(400ms);

    // The first rich text needs the rich edit control.
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    const char rtf[] = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\b Bold\\b0  and plain\\par second line}";
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, sizeof(rtf));
    memcpy(GlobalLock(memory), rtf, sizeof(rtf));
    GlobalUnlock(memory);
    SetClipboardData(RegisterClipboardFormatW(L"Rich Text Format"), memory);
    CloseClipboard();
    ASSERT_TRUE(WaitFor([&] { return ListBoxRows(list).size() == 2; }));
    rows = ListBoxRows(list);
    EXPECT_TRUE(std::any_of(rows.begin(), rows.end(), [](const std::wstring& row) {
      return row.find(L"Bold and plain") != std::wstring::npos;
    }));

    // The first save needs the common dialogs.
    ClickButton(save);
    ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Save Marquill File", folder + L"\\mixed"));
    ASSERT_TRUE(WaitFor([&] {
      return GetFileAttributesW((folder + L"\\mixed.mql").c_str()) != INVALID_FILE_ATTRIBUTES;
    }));
    EXPECT_TRUE(Loaded(app.Pid(), L"comdlg32.dll"));
    EXPECT_TRUE(app.Close());
  }
  {
    // A fresh copy whose first rich text arrives inside a load: the dialog and the rich edit
    // control are both loaded for the first time there, and the rows come back the same.
    Marquill app;
    Start(app);
    if (HasFatalFailure()) return;
    ClickButton(load);
    ASSERT_TRUE(AnswerFileDialog(app.Pid(), L"Load Marquill File", folder + L"\\mixed.mql"));
    EXPECT_TRUE(WaitFor([&] { return ListBoxRows(list) == rows; }));
    EXPECT_TRUE(Loaded(app.Pid(), L"msftedit.dll") || Loaded(app.Pid(), L"riched20.dll"));
    EXPECT_TRUE(app.Close());
  }
}

}  // namespace
