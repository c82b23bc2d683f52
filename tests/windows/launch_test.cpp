// Launch at log-on: the Run value of this test program and a shortcut round trip.
#include <gtest/gtest.h>
#include <shlobj.h>

#include <optional>
#include <string>

#include "platform/win32/Strings.h"
#include "settings/win32/cShellLinkA.h"
#include "settings/win32/modLaunchAtStartup.h"

namespace mq::win32 {
namespace {

namespace run = modLaunchAtStartup;

std::optional<std::wstring> RunValue(const std::wstring& name) {
  wchar_t data[1024] = {};
  DWORD bytes = sizeof(data);
  if (RegGetValueW(HKEY_CURRENT_USER, run::kRunKey, name.c_str(), RRF_RT_REG_SZ, nullptr,
                   data, &bytes) != ERROR_SUCCESS)
    return std::nullopt;
  return std::wstring(data);
}

void WriteRunValue(const std::wstring& name, const std::wstring& data) {
  RegSetKeyValueW(HKEY_CURRENT_USER, run::kRunKey, name.c_str(), REG_SZ, data.c_str(),
                  static_cast<DWORD>((data.size() + 1) * sizeof(wchar_t)));
}

void DeleteRunValue(const std::wstring& name) {
  RegDeleteKeyValueW(HKEY_CURRENT_USER, run::kRunKey, name.c_str());
}

class RunKey : public ::testing::Test {
 protected:
  void SetUp() override { TearDown(); }
  void TearDown() override {
    for (const auto& value : {name, neighbour}) DeleteRunValue(value);
  }
  std::wstring name{WV(run::ExecutableName())};
  std::wstring neighbour = name + L"2";
};

// The value is named after the executable; one named like it plus "2" counts
// as set too, and survives a delete. Names match case-sensitively.
TEST_F(RunKey, SetAutoRunWritesAndDeletesOnlyItsOwnValue) {
  EXPECT_EQ(name, L"marquill_win_tests");
  ASSERT_TRUE(run::SetAutoRun(true));
  EXPECT_TRUE(run::IsAutoRunSet());
  WriteRunValue(neighbour, L"C:\\Other\\other.exe");
  ASSERT_TRUE(run::SetAutoRun(false));
  EXPECT_FALSE(RunValue(name).has_value());
  EXPECT_EQ(RunValue(neighbour), L"C:\\Other\\other.exe");
  EXPECT_TRUE(run::IsAutoRunSet());
  DeleteRunValue(neighbour);
  EXPECT_FALSE(run::IsAutoRunSet());
  EXPECT_TRUE(run::SetAutoRun(false)) << "deleting a value that is not there still reaches the key";
  std::wstring upper = name;
  for (auto& c : upper) c = static_cast<wchar_t>(towupper(c));
  WriteRunValue(upper, L"x");
  EXPECT_FALSE(run::IsAutoRunSet());
  DeleteRunValue(upper);
}

// A shortcut as the Startup folder's: created, found, read back.
TEST(ShellLink, CreateLinkThenGetLinkInfoRoundTrips) {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  std::wstring linkFile = std::wstring(temp) + L"marquill-link-test.lnk";
  std::wstring target(WV(run::ExecutablePath()));
  ASSERT_TRUE(cShellLinkA::CreateLink(u"OELink \u00e9t\u00e9", FromW(linkFile), FromW(target),
                                      FromW(temp), u"--quiet \"two words\"", 0, 0, 5));
  cShellLinkA link;
  ASSERT_TRUE(link.GetLinkInfo(FromW(linkFile)));
  EXPECT_EQ(std::wstring(WV(link.ExeName)), target);
  EXPECT_EQ(std::wstring(WV(link.WorkingDir)), temp);
  EXPECT_EQ(link.ExeArgs, u"--quiet \"two words\"");
  EXPECT_EQ(link.Description, u"OELink \u00e9t\u00e9");
  DeleteFileW(linkFile.c_str());
  EXPECT_FALSE(link.GetLinkInfo(FromW(linkFile))) << "a missing shortcut is not found";
  Text startup = cShellLinkA::GetSystemFolderPath(nullptr, CSIDL_STARTUP);
  EXPECT_GT(startup.size(), 3u);
  EXPECT_EQ(startup.find(u'\0'), Text::npos);
}

}  // namespace
}  // namespace mq::win32
