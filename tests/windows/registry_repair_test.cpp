// Settings values that are not strings, or far too long for any setting, under a key of the
// tests' own: each reader repairs them like any invalid text, and the settings as a whole are
// never taken for a failed store (which would reset every one of them).
#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>

#include "platform/win32/Handles.h"
#include "settings/KeyTable.h"
#include "settings/win32/RegistrySettings.h"

namespace mq::win32 {
namespace {

constexpr wchar_t kTestKey[] = L"Software\\Olvenar\\marquill-repair-tests";

struct Raw {
  DWORD type;
  std::string bytes;
};
Raw Dword(DWORD v) { return {REG_DWORD, std::string(reinterpret_cast<const char*>(&v), 4)}; }
Raw Binary(std::string b) { return {REG_BINARY, std::move(b)}; }
Raw LongString(size_t chars, wchar_t c, const wchar_t* tail = L"") {
  std::wstring s = std::wstring(chars, c) + tail;
  chars = s.size();
  return {REG_SZ, std::string(reinterpret_cast<const char*>(s.c_str()), (chars + 1) * 2)};
}
Raw MultiString() { return {REG_MULTI_SZ, std::string("2\0\0\0\0\0", 6)}; }
Raw Qword() { return {REG_QWORD, std::string("\x02\0\0\0\0\0\0\0", 8)}; }

class RegistryRepair : public ::testing::Test {
 protected:
  void SetUp() override { RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey); }
  void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey); }

  void Store(const wchar_t* name, const Raw& raw) {
    UniqueRegKey key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kTestKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                              key.Out(), nullptr),
              ERROR_SUCCESS);
    ASSERT_EQ(RegSetValueExW(key.Get(), name, 0, raw.type,
                             reinterpret_cast<const BYTE*>(raw.bytes.data()),
                             static_cast<DWORD>(raw.bytes.size())),
              ERROR_SUCCESS);
  }
  // The value's type and, for a string, its text.
  std::wstring Stored(const wchar_t* name, DWORD* type) {
    UniqueRegKey key;
    RegOpenKeyExW(HKEY_CURRENT_USER, kTestKey, 0, KEY_QUERY_VALUE, key.Out());
    wchar_t buffer[64] = {};
    DWORD bytes = sizeof(buffer) - sizeof(wchar_t);
    *type = REG_NONE;
    if (RegQueryValueExW(key.Get(), name, nullptr, type, reinterpret_cast<BYTE*>(buffer),
                         &bytes) != ERROR_SUCCESS)
      return L"<unreadable>";
    return *type == REG_SZ ? std::wstring(buffer) : std::wstring();
  }

  RegistrySettings port{kTestKey};
  Settings settings{port};
};

TEST_F(RegistryRepair, WrongTypesAndHugeValuesGoToTheirDefaults) {
  using namespace settings;
  const Raw megabyteOfTwos = LongString(1 << 20, L'2');
  const Raw megabyteOf75 = LongString(1 << 20, L'0', L"75");  // numeric 75, were it read
  const struct {
    const wchar_t* key;
    Raw raw;
    std::function<Text(Settings&)> read;  // what the program then uses
    Text used;
    const wchar_t* writtenBack;  // nullptr: the value is left as it was
  } cases[] = {
      {L"Set_Op", Dword(3),
       [](Settings& s) { return ReadStartupPair(s, kCaseRule).repaired ? u"repaired" : u"kept"; },
       u"repaired", L"0"},
      {L"Set_Fm", Binary("\x01\x02"),
       [](Settings& s) { return ReadStartupPair(s, kFormatRule).value; }, u"1", nullptr},
      {L"Set_FO", Qword(), [](Settings& s) { return ToDecimal(ReadOpacity(s).percent); }, u"75",
       L"75"},
      {L"Set_FO", megabyteOf75, [](Settings& s) { return ToDecimal(ReadOpacity(s).percent); },
       u"75", L"75"},
      {L"Set_FS", megabyteOfTwos, [](Settings& s) { return ToDecimal(ReadFadeSpeed(s).speed); },
       u"2", L"2"},
      {L"Set_H0_En", MultiString(),
       [](Settings& s) { return ReadHotkeyEnabled(s, 0) ? u"on" : u"off"; }, u"on", L"1"},
      {L"Set_H1_Ky", Dword(65),
       [](Settings& s) { return ToDecimal(ReadHotkeyCode(s, 1).vkey); }, u"51", nullptr},
      {L"Set_HV_Ky", megabyteOfTwos,
       [](Settings& s) { return ToDecimal(ReadHotkeyCode(s, -1).vkey); }, u"49", nullptr},
      {L"Set_Pn", Dword(2), [](Settings& s) { return ReadWindowOption(s, kPinRule).set; }, u"1",
       L"0"},
      {L"Cur_FF_S", Binary(""),
       [](Settings& s) { return ToDecimal(ReadFilterIndex(s, kSaveDialogRule)); }, u"1", L"1"},
      {L"Cur_FN_O", megabyteOfTwos, [](Settings& s) { return ReadLastFile(s, kLoadDialogRule); },
       u"", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "key " << std::string(c.key, c.key + wcslen(c.key))
                                    << ", type " << c.raw.type << ", " << c.raw.bytes.size()
                                    << " bytes");
    RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey);
    Store(c.key, c.raw);
    settings.ClearFailure();
    EXPECT_EQ(c.read(settings), c.used);
    EXPECT_FALSE(settings.Failed()) << "taken for a broken store: every setting would be reset";
    DWORD type = 0;
    const std::wstring now = Stored(c.key, &type);
    if (c.writtenBack) {
      EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
      EXPECT_EQ(now, c.writtenBack);
    } else {
      EXPECT_EQ(type, c.raw.type) << "left as it was";
    }
  }
}

}  // namespace
}  // namespace mq::win32
