// Launch at log-on: the Run value of this test program and a shortcut round trip.
#include <gtest/gtest.h>
#include <shlobj.h>

#include <optional>
#include <string>

#include "platform/win32/Strings.h"
#include "settings/win32/RegistryKey.h"
#include "settings/win32/cShellLinkA.h"
#include "settings/win32/modLaunchAtStartup.h"

namespace mq::win32 {
namespace {

namespace run = modLaunchAtStartup;

std::optional<std::wstring> RunValue(const std::wstring& name) {
  RegistryKey key = RegistryKey::Open(HKEY_CURRENT_USER, run::kRunKey, KEY_QUERY_VALUE);
  if (!key) return std::nullopt;
  wchar_t data[1024] = {};
  DWORD bytes = sizeof(data) - sizeof(wchar_t), type = 0;
  if (RegQueryValueExW(key.Get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data),
                       &bytes) != ERROR_SUCCESS || type != REG_SZ)
    return std::nullopt;
  return std::wstring(data);
}

void WriteRunValue(const std::wstring& name, const std::wstring& data) {
  RegistryKey key = RegistryKey::Create(HKEY_CURRENT_USER, run::kRunKey, KEY_SET_VALUE);
  ASSERT_TRUE(key);
  RegSetValueExW(key.Get(), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(data.c_str()),
                 static_cast<DWORD>((data.size() + 1) * sizeof(wchar_t)));
}

void DeleteRunValue(const std::wstring& name) {
  RegistryKey key = RegistryKey::Open(HKEY_CURRENT_USER, run::kRunKey, KEY_SET_VALUE);
  if (key) RegDeleteValueW(key.Get(), name.c_str());
}

class RunKey : public ::testing::Test {
 protected:
  void SetUp() override { Clean(); }
  void TearDown() override { Clean(); }
  void Clean() {
    DeleteRunValue(name);
    DeleteRunValue(neighbour);
  }
  std::wstring name{WV(run::ExecutableName())};
  std::wstring neighbour = name + L"2";
};

TEST_F(RunKey, PathHelpersNameThisProgram) {
  wchar_t module[MAX_PATH];
  GetModuleFileNameW(nullptr, module, MAX_PATH);
  EXPECT_EQ(std::wstring(WV(run::ExecutablePath())), module);
  EXPECT_EQ(name, L"marquill_win_tests");
  Text folder = run::ProgramFolderWithSlash();
  ASSERT_FALSE(folder.empty());
  EXPECT_EQ(folder.back(), u'\\');
}

TEST_F(RunKey, SetAutoRunWritesAndDeletesOnlyItsOwnValue) {
  EXPECT_FALSE(run::IsAutoRunSet());
  ASSERT_TRUE(run::SetAutoRun(true));
  std::wstring path(WV(run::ExecutablePath()));
  std::wstring expected = path.find(L' ') == std::wstring::npos ? path : L"\"" + path + L"\"";
  EXPECT_EQ(RunValue(name), expected);
  EXPECT_TRUE(run::IsAutoRunSet());
  // A neighbour named like the program plus "2" counts as set, and survives the delete.
  WriteRunValue(neighbour, L"C:\\Other\\other.exe");
  ASSERT_TRUE(run::SetAutoRun(false));
  EXPECT_FALSE(RunValue(name).has_value());
  EXPECT_EQ(RunValue(neighbour), L"C:\\Other\\other.exe");
  EXPECT_TRUE(run::IsAutoRunSet());
  DeleteRunValue(neighbour);
  EXPECT_FALSE(run::IsAutoRunSet());
  // Deleting a value that is not there still reaches the key.
  EXPECT_TRUE(run::SetAutoRun(false));
  // Names match case-sensitively.
  std::wstring upper = name;
  for (auto& c : upper) c = static_cast<wchar_t>(towupper(c));
  WriteRunValue(upper, L"x");
  EXPECT_FALSE(run::IsAutoRunSet());
  DeleteRunValue(upper);
}

TEST(ShellLink, CreateLinkThenGetLinkInfoRoundTripsEveryField) {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  std::wstring linkFile = std::wstring(temp) + L"marquill-link-test.lnk";
  DeleteFileW(linkFile.c_str());
  std::wstring target(WV(run::ExecutablePath()));
  uint16_t hotKey = cShellLinkA::MakeHotKey(HOTKEYF_CONTROL | HOTKEYF_ALT, 'M');
  ASSERT_TRUE(cShellLinkA::CreateLink(u"OELink \u00e9t\u00e9", FromW(linkFile), FromW(target),
                                      FromW(temp), u"--quiet \"two words\"", 0, hotKey, 5));
  cShellLinkA link;
  ASSERT_TRUE(link.GetLinkInfo(FromW(linkFile)));
  EXPECT_EQ(std::wstring(WV(link.ExeName)), target);
  EXPECT_EQ(std::wstring(WV(link.WorkingDir)), temp);
  EXPECT_EQ(link.ExeArgs, u"--quiet \"two words\"");
  EXPECT_EQ(link.Description, u"OELink \u00e9t\u00e9");
  EXPECT_EQ(std::wstring(WV(link.IconFile)), target);
  EXPECT_EQ(link.IconIndex, 0);
  // Windows: a link keeps only normal, maximized and minimized, so 5 (SW_SHOW) reads back as
  // normal. Wine: it reads every show command back as normal.
  EXPECT_EQ(link.ShowCommand, SW_SHOWNORMAL);
  uint8_t modifier = 0, key = 0;
  cShellLinkA::GetHotKeyInfo(link.HotKey, modifier, key);
  EXPECT_EQ(modifier, HOTKEYF_CONTROL | HOTKEYF_ALT);
  EXPECT_EQ(key, 'M');
  // Saving again over it clears what is no longer given.
  ASSERT_TRUE(cShellLinkA::CreateLink(u"OELink", FromW(linkFile), FromW(target), u"", u"", 0, 0, 5));
  ASSERT_TRUE(link.GetLinkInfo(FromW(linkFile)));
  EXPECT_EQ(link.ExeArgs, u"");
  EXPECT_EQ(link.HotKey, 0);
  DeleteFileW(linkFile.c_str());

  // Missing names and files fail.
  EXPECT_FALSE(link.GetLinkInfo(FromW(linkFile)));
  EXPECT_FALSE(link.GetLinkInfo(u""));
  EXPECT_FALSE(cShellLinkA::CreateLink(u"OELink", u"", FromW(target), u"", u"", 0, 0, 5));
  EXPECT_FALSE(cShellLinkA::CreateLink(u"OELink", FromW(linkFile), u"", u"", u"", 0, 0, 5));
  // The Startup folder has a path in the file system.
  Text startup = cShellLinkA::GetSystemFolderPath(nullptr, CSIDL_STARTUP);
  EXPECT_GT(startup.size(), 3u);
  EXPECT_EQ(startup.find(u'\0'), Text::npos);
}

}  // namespace
}  // namespace mq::win32
