// The registry settings store, under a key of the tests' own; launch at log-on: the Run value
// of this test program and a shortcut round trip.
#include <gtest/gtest.h>
#include <shlobj.h>

#include "settings/KeyTable.h"
#include "settings/win32/RegistrySettings.h"
#include "settings/win32/cShellLinkA.h"
#include "settings/win32/modLaunchAtStartup.h"
#include "Support.h"

namespace mq::win32 {
namespace {

constexpr wchar_t kTestKey[] = L"Software\\Olvenar\\marquill-tests";

class RegistryStore : public ::testing::Test {
 protected:
  void SetUp() override { RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey); }
  void TearDown() override { SetUp(); }
  DWORD TypeOf(const wchar_t* name) {
    DWORD type = REG_NONE;
    RegGetValueW(HKEY_CURRENT_USER, kTestKey, name, RRF_RT_ANY | RRF_NOEXPAND, &type, nullptr, nullptr);
    return type;
  }
  RegistrySettings port{kTestKey};
};

TEST_F(RegistryStore, StringValuesAndForeignOnes) {
  Text value;
  EXPECT_EQ(port.Read(u"Set_Op", value), SettingsPort::Status::Absent);  // no key at all
  for (const Text& written : {Text(u"C:\\Lists\\\u00e9t\u00e9 \u0416.mqp"), Text(u"")}) {
    ASSERT_TRUE(port.Write(u"Cur_FN_S", written));
    ASSERT_EQ(port.Read(u"Cur_FN_S", value), SettingsPort::Status::Ok);
    EXPECT_EQ(value, written);
  }
  EXPECT_EQ(port.Read(u"Set_Mo", value), SettingsPort::Status::Absent);  // key, no value
  // A string stored without its terminating NUL reads the same.
  RegSetKeyValueW(HKEY_CURRENT_USER, kTestKey, L"Set_FO", REG_SZ, L"60", 4);
  ASSERT_EQ(port.Read(u"Set_FO", value), SettingsPort::Status::Ok);
  EXPECT_EQ(value, u"60");

  // Numbers, binary data and texts far too long for any setting (this one numeric 75, were it
  // read) read as an empty, invalid text for their reader to repair, and never as a failed
  // store, which would reset every setting.
  const std::wstring megabyte = std::wstring(1 << 20, L'0') + L"75";
  const std::pair<DWORD, std::string> foreign[] = {
      {REG_DWORD, std::string("\x02\0\0\0", 4)},
      {REG_QWORD, std::string("\x02\0\0\0\0\0\0\0", 8)},
      {REG_BINARY, "\x01\x02"},
      {REG_BINARY, ""},
      {REG_MULTI_SZ, std::string("2\0\0\0\0\0", 6)},
      {REG_SZ, std::string(reinterpret_cast<const char*>(megabyte.c_str()), (megabyte.size() + 1) * 2)}};
  Settings settings(port);
  for (const auto& [type, bytes] : foreign) {
    SCOPED_TRACE(testing::Message() << "type " << type << ", " << bytes.size() << " bytes");
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kTestKey, L"Set_FO", type, bytes.data(),
                              static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
    ASSERT_EQ(port.Read(u"Set_FO", value), SettingsPort::Status::Ok);
    EXPECT_EQ(value, u"");
    // Its reader's repair writes a string over it.
    settings.ClearFailure();
    EXPECT_EQ(settings::ReadOpacity(settings).percent, 75);
    EXPECT_FALSE(settings.Failed());
    EXPECT_EQ(TypeOf(L"Set_FO"), static_cast<DWORD>(REG_SZ));
  }
}

namespace run = modLaunchAtStartup;

// The value is named after the executable; one named like it plus "2" counts as set too, and
// survives a delete. Names match case-sensitively.
TEST(RunKey, SetAutoRunWritesAndDeletesOnlyItsOwnValue) {
  RegistrySettings runKey{run::kRunKey};
  const Text name = run::ExecutableName(), neighbour = name + u"2";
  auto remove = [](const Text& v) { RegDeleteKeyValueW(HKEY_CURRENT_USER, run::kRunKey, W(v)); };
  Text value;
  EXPECT_EQ(name, u"marquill_win_tests");
  remove(neighbour);
  ASSERT_TRUE(run::SetAutoRun(true));
  EXPECT_TRUE(run::IsAutoRunSet());
  ASSERT_TRUE(runKey.Write(neighbour, u"C:\\Other\\other.exe"));
  ASSERT_TRUE(run::SetAutoRun(false));
  EXPECT_EQ(runKey.Read(name, value), SettingsPort::Status::Absent);
  ASSERT_EQ(runKey.Read(neighbour, value), SettingsPort::Status::Ok);
  EXPECT_EQ(value, u"C:\\Other\\other.exe");
  EXPECT_TRUE(run::IsAutoRunSet());
  remove(neighbour);
  EXPECT_FALSE(run::IsAutoRunSet());
  EXPECT_TRUE(run::SetAutoRun(false)) << "deleting a value that is not there still reaches the key";
  Text upper = name;
  for (auto& c : upper) c = static_cast<char16_t>(towupper(c));
  ASSERT_TRUE(runKey.Write(upper, u"x"));
  EXPECT_FALSE(run::IsAutoRunSet());
  remove(upper);
}

// A shortcut as the Startup folder's: created, found, read back.
TEST(ShellLink, CreateLinkThenGetLinkInfoRoundTrips) {
  ScratchFolder dir;
  const Text linkFile = dir.File(u"link.lnk"), target = run::ExecutablePath();
  ASSERT_TRUE(cShellLinkA::CreateLink(u"OELink \u00e9t\u00e9", linkFile, target, dir.Path(),
                                      u"--quiet \"two words\"", 0, 0, 5));
  cShellLinkA link;
  ASSERT_TRUE(link.GetLinkInfo(linkFile));
  EXPECT_EQ(link.ExeName, target);
  EXPECT_EQ(link.WorkingDir, dir.Path());
  EXPECT_EQ(link.ExeArgs, u"--quiet \"two words\"");
  EXPECT_EQ(link.Description, u"OELink \u00e9t\u00e9");
  DeleteFileW(W(linkFile));
  EXPECT_FALSE(link.GetLinkInfo(linkFile)) << "a missing shortcut is not found";
  Text startup = cShellLinkA::GetSystemFolderPath(nullptr, CSIDL_STARTUP);
  EXPECT_GT(startup.size(), 3u);
  EXPECT_EQ(startup.find(u'\0'), Text::npos);
}

}  // namespace
}  // namespace mq::win32
