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
  void Raw(const wchar_t* name, DWORD type, const void* data, DWORD bytes) {
    UniqueRegKey key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kTestKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                              key.Out(), nullptr),
              ERROR_SUCCESS);
    RegSetValueExW(key.Get(), name, 0, type, static_cast<const BYTE*>(data), bytes);
  }
  RegistrySettings port{kTestKey};
};

TEST_F(RegistryStore, AbsentWrittenAndRewrittenValues) {
  Text value;
  EXPECT_EQ(port.Read(u"Set_Op", value), SettingsPort::Status::Absent);  // no key at all
  ASSERT_TRUE(port.Write(u"Set_Op", u"3"));
  EXPECT_EQ(port.Read(u"Set_Mo", value), SettingsPort::Status::Absent);  // key, no value
  ASSERT_EQ(port.Read(u"Set_Op", value), SettingsPort::Status::Ok);
  EXPECT_EQ(value, u"3");
  ASSERT_TRUE(port.Write(u"Set_Op", u""));
  ASSERT_EQ(port.Read(u"Set_Op", value), SettingsPort::Status::Ok);
  EXPECT_EQ(value, u"");
  ASSERT_TRUE(port.Write(u"Cur_FN_S", u"C:\\Lists\\\u00e9t\u00e9 \u0416.mqp"));
  ASSERT_EQ(port.Read(u"Cur_FN_S", value), SettingsPort::Status::Ok);
  EXPECT_EQ(value, u"C:\\Lists\\\u00e9t\u00e9 \u0416.mqp");

  // Values are REG_SZ strings.
  UniqueRegKey key;
  ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kTestKey, 0, KEY_READ, key.Out()), ERROR_SUCCESS);
  DWORD type = 0;
  RegQueryValueExW(key.Get(), L"Set_Op", nullptr, &type, nullptr, nullptr);
  EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
}

TEST_F(RegistryStore, ForeignValuesAreReadOrReportedAsFailures) {
  // A string stored without its terminating NUL reads the same.
  Raw(L"Set_FO", REG_SZ, L"60", 4);
  Text value;
  ASSERT_EQ(port.Read(u"Set_FO", value), SettingsPort::Status::Ok);
  EXPECT_EQ(value, u"60");
  // A number where a string belongs reads as an empty (invalid) text, for its reader to repair.
  DWORD number = 2;
  Raw(L"Set_Mo", REG_DWORD, &number, sizeof(number));
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
