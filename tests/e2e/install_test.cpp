// The per-user installer in build/dist/ (scripts/test builds it before these tests): a silent
// installation, the installed program, and a silent removal while that program runs.
#include <shlobj.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Fixture.h"
#include "platform/win32/Strings.h"
#include "settings/win32/cShellLinkA.h"

using namespace e2e;
namespace fs = std::filesystem;

namespace {

const wchar_t kUninstallKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Marquill";

std::wstring KnownFolder(REFKNOWNFOLDERID id) {
  PWSTR path = nullptr;
  std::wstring result;
  if (SUCCEEDED(SHGetKnownFolderPath(id, 0, nullptr, &path))) result = path;
  CoTaskMemFree(path);
  return result;
}

bool KeyExists(const wchar_t* key) {
  mq::win32::UniqueRegKey handle;
  return RegOpenKeyExW(HKEY_CURRENT_USER, key, 0, KEY_READ, handle.Out()) == ERROR_SUCCESS;
}

// The product version in marquill.exe's version resource ("2.0.0").
std::wstring ProductVersion(const fs::path& exe) {
  DWORD size = GetFileVersionInfoSizeW(exe.c_str(), nullptr);
  std::vector<BYTE> data(size);
  if (!size || !GetFileVersionInfoW(exe.c_str(), 0, size, data.data())) return {};
  wchar_t* text = nullptr;
  UINT length = 0;
  if (!VerQueryValueW(data.data(), L"\\StringFileInfo\\040904B0\\ProductVersion",
                      reinterpret_cast<void**>(&text), &length))
    return {};
  return std::wstring(text, length ? length - 1 : 0);
}

// The target the shortcut names, read with the program's own reader of shortcuts.
std::wstring ShortcutTarget(const fs::path& link) {
  mq::win32::cShellLinkA reader;
  return reader.GetLinkInfo(mq::win32::FromW(link.wstring())) ? std::wstring(mq::win32::WV(reader.ExeName)) : L"";
}

class Installation : public EndToEnd {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    if (IsSkipped()) return;
    folder = fs::path(KnownFolder(FOLDERID_LocalAppData)) / L"Programs" / L"Marquill";
    folderWithSpace = fs::path(KnownFolder(FOLDERID_LocalAppData)) / L"Programs" / L"Marquill Copy";
    shortcut = fs::path(KnownFolder(FOLDERID_Programs)) / L"Marquill.lnk";
    RemoveLeftovers();
  }
  void TearDown() override { RemoveLeftovers(); }
  // What an earlier, failed run may have left behind.
  void RemoveLeftovers() {
    if (HWND main = FindTopWindow(L"Marquill", L"MarquillMain")) PostMessageW(main, WM_CLOSE, 0, 0);
    WaitFor([] { return !FindTopWindow(L"Marquill", L"MarquillMain"); }, 10s);
    std::error_code error;
    fs::remove_all(folder, error);
    fs::remove_all(folderWithSpace, error);
    fs::remove(shortcut, error);
    RegDeleteTreeW(HKEY_CURRENT_USER, kUninstallKey);
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kLaunchAtLogOnKey, L"marquill");
  }
  void InstallRunRemove(const std::wstring& options);
  bool Gone() const {
    return !fs::exists(folder) && !fs::exists(shortcut) && !KeyExists(kUninstallKey) &&
           !ReadUserString(kLaunchAtLogOnKey, L"marquill");
  }

  fs::path folder, folderWithSpace, shortcut;
};

// Installs silently (into `folder`; `options` may choose another), checks the installation,
// starts the installed program and removes everything silently while it runs.
void Installation::InstallRunRemove(const std::wstring& options) {
  // The installer of the version built here, beside the build folder.
  const fs::path built = ProgramFolder();
  const std::wstring version = ProductVersion(built / L"marquill.exe");
  const fs::path setup = built.parent_path() / L"dist" / (L"marquill-setup-" + version + L".exe");
  ASSERT_TRUE(fs::exists(setup)) << setup.string() << " is missing: run scripts/package";
  // A setting of the user's, which a silent removal keeps.
  WriteSettings({{L"Set_RC_Op", L"2"}});

  // Silent installation, with "Start Marquill when Windows starts" chosen.
  auto start = std::chrono::steady_clock::now();
  ASSERT_EQ(RunProgram(L"\"" + setup.wstring() + L"\" /S /AUTORUN" + options, 180s), 0)
      << setup.string();
  const std::chrono::duration<double> installTime = std::chrono::steady_clock::now() - start;

  // The files, each as built.
  for (const wchar_t* name : {L"marquill.exe", L"mq2_help.chm", L"mqlist.exe"}) {
    ASSERT_TRUE(fs::exists(folder / name)) << fs::path(name).string();
    EXPECT_EQ(FileContents(folder / name), FileContents(built / name)) << fs::path(name).string();
  }
  EXPECT_TRUE(fs::exists(folder / L"LICENSE.txt"));

  // The Start menu shortcut starts the installed program.
  const std::wstring exe = (folder / L"marquill.exe").wstring();
  EXPECT_EQ(lstrcmpiW(ShortcutTarget(shortcut).c_str(), exe.c_str()), 0) << "shortcut target";

  // "Apps and features": the current user's uninstall entry, with the program's own version.
  EXPECT_EQ(ReadUserString(kUninstallKey, L"DisplayName"), L"Marquill");
  EXPECT_EQ(ReadUserString(kUninstallKey, L"DisplayVersion"), ProductVersion(exe));
  EXPECT_EQ(ReadUserString(kUninstallKey, L"UninstallString"),
            L"\"" + (folder / L"uninstall.exe").wstring() + L"\"");

  // The program's own launch-at-log-on value: named after the executable, the full path in
  // double quotes when it holds a space.
  const std::wstring runData = exe.find(L' ') == std::wstring::npos ? exe : L"\"" + exe + L"\"";
  EXPECT_EQ(ReadUserString(kLaunchAtLogOnKey, L"marquill"), runData);

  // The installed program runs and has its hidden main window.
  ASSERT_TRUE(app.Start(exe));
  ASSERT_TRUE(app.WaitReady());

  // Silent removal while it runs: it is closed first and ends in order.
  start = std::chrono::steady_clock::now();
  // It hands over to a copy of itself outside the folder and ends.
  ASSERT_EQ(RunProgram(L"\"" + (folder / L"uninstall.exe").wstring() + L"\" /S"), 0);
  EXPECT_TRUE(app.WaitExit(60s)) << "Marquill was not closed";
  EXPECT_EQ(app.ExitCode(), 0u) << "Marquill did not end in order";
  WaitFor([&] { return Gone(); }, 120s, 100ms);
  const std::chrono::duration<double> uninstallTime = std::chrono::steady_clock::now() - start;

  EXPECT_FALSE(fs::exists(folder)) << "files are left";
  EXPECT_FALSE(fs::exists(shortcut)) << "the Start menu shortcut is left";
  EXPECT_FALSE(ReadUserString(kLaunchAtLogOnKey, L"marquill")) << "the Run value is left";
  EXPECT_FALSE(KeyExists(kUninstallKey)) << "the uninstall entry is left";
  EXPECT_EQ(ReadSetting(L"Set_RC_Op"), L"2") << "a silent removal keeps the settings";

  std::printf("figure: install %.1f s, uninstall %.1f s\n", installTime.count(), uninstallTime.count());
}

TEST_F(Installation, SilentInstallThenSilentRemovalWhileMarquillRuns) { InstallRunRemove(L""); }

// A folder with a space: the Run value's path is quoted, and the removal still finds it.
TEST_F(Installation, IntoAFolderWithASpace) {
  folder = folderWithSpace;
  // /D= comes last and is not quoted, even with spaces.
  InstallRunRemove(L" /D=" + folder.wstring());
}

}  // namespace
