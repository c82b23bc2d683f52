// The registry settings store, under a key of the tests' own.
#include <gtest/gtest.h>

#include "platform/win32/Handles.h"
#include "settings/KeyTable.h"
#include "settings/win32/RegistrySettings.h"

namespace mq::win32 {
namespace {

constexpr wchar_t kTestKey[] = L"Software\\Olvenar\\marquill-tests";

class RegistryStore : public ::testing::Test {
 protected:
  void SetUp() override { RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey); }
  void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey); }
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
  DWORD type = 0;
  RegGetValueW(HKEY_CURRENT_USER, kTestKey, L"Cur_FN_S", RRF_RT_ANY, &type, nullptr, nullptr);
  EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));

  // A string stored without its terminating NUL reads the same.
  RegSetKeyValueW(HKEY_CURRENT_USER, kTestKey, L"Set_FO", REG_SZ, L"60", 4);
  ASSERT_EQ(port.Read(u"Set_FO", value), SettingsPort::Status::Ok);
  EXPECT_EQ(value, u"60");
  // A number where a string belongs reads as an empty (invalid) text, for its reader to repair.
  DWORD number = 2;
  RegSetKeyValueW(HKEY_CURRENT_USER, kTestKey, L"Set_Mo", REG_DWORD, &number, sizeof(number));
  EXPECT_EQ(port.Read(u"Set_Mo", value), SettingsPort::Status::Ok);
  EXPECT_EQ(value, u"");
  Settings settings(port);
  settings::WriteResetValues(settings);
  EXPECT_FALSE(settings.Failed());
  ASSERT_EQ(port.Read(u"Set_Mo", value), SettingsPort::Status::Ok);
  EXPECT_EQ(value, u"0");
}

}  // namespace
}  // namespace mq::win32
