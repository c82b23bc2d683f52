// The start-up readers' validation and repairs, value by value. How the program and its
// windows react to them is tested with the main form and the clip list window.
#include "settings/KeyTable.h"

#include <gtest/gtest.h>

#include "fakes/FakeSettings.h"

namespace mq::settings {
namespace {

using test::FakeSettings;

// A start-up reader's result: its value, "!" when it repaired the key.
template <typename Result>
std::string Repaired(const std::string& value, const Result& r) {
  return value + (r.repaired ? "!" : "");
}

TEST(StartupPairs, CurIsConsultedOnlyForZeroAndInvalidValuesAreRepaired) {
  // Set_ and Cur_ as stored (nullptr: absent); the value read, then both keys afterwards.
  const std::tuple<const StartupPairRule*, const char16_t*, const char16_t*, const char*> cases[] = {
      {&kCaseRule, nullptr, nullptr, "1 <absent> <absent>"},
      {&kCaseRule, u"0", u"3", "3 0 3"},
      {&kCaseRule, u"4", u"2", "4 4 2"},
      {&kCaseRule, u" 0", u"2", "1! 0 1"},  // not exactly "0": invalid itself
      {&kCaseRule, u"7", nullptr, "1! 0 1"},
      {&kCaseRule, u"0", u"5", "1! 0 1"},
      {&kModeRule, nullptr, nullptr, "2 <absent> <absent>"},
      {&kModeRule, u"abc", u"1", "1 abc 1"},  // numeric value 0: Cur_Mo
      {&kModeRule, u"1", u"2", "1 1 2"},
      {&kModeRule, u"3", nullptr, "2! 0 2"},
      {&kFormatRule, nullptr, nullptr, "1 <absent> <absent>"},
      {&kFormatRule, u"0", u"2", "2 0 2"},
      {&kFormatRule, u"0", u"9", "1! 0 1"},
      {&kEnabledRule, nullptr, nullptr, "1 <absent> <absent>"},
      {&kEnabledRule, u"0", u"2", "2 0 2"},
      {&kEnabledRule, u"2x", nullptr, "1! 1 1"},  // leading number 2, "2x" invalid
      {&kEnabledRule, u"5", nullptr, "1! 1 1"},
  };
  for (const auto& [rule, set, cur, expected] : cases) {
    FakeSettings port;
    Settings settings(port);
    if (set) port.Set(rule->setKey, set);
    if (cur) port.Set(rule->curKey, cur);
    const PairResult r = ReadStartupPair(settings, *rule);
    EXPECT_EQ(Repaired(ToUtf8(r.value), r) + " " + port.Get(rule->setKey) + " " +
                  port.Get(rule->curKey), expected)
        << ToUtf8(rule->setKey) << "=" << (set ? ToUtf8(set) : "absent");
    EXPECT_EQ(port.writes.size(), r.repaired ? 2u : 0u);
  }
}

// Opacity, fade speed and the hotkey codes: the value read, then what the key holds. A repair
// writes the default; a bad key code falls back to the slot's default and is left as it is.
TEST(StartupValues, OpacityFadeSpeedAndHotkeyCodes) {
  auto read = [](Settings& s, TextView key) -> std::string {
    if (key == u"Set_FO") {
      const OpacityResult r = ReadOpacity(s);
      return Repaired(std::to_string(r.percent), r);
    }
    if (key == u"Set_FS") {
      const FadeResult r = ReadFadeSpeed(s);
      return Repaired((r.noFade ? "off " : "") + std::to_string(r.speed), r);
    }
    for (int slot = -1; slot < 4; ++slot) {
      if (key != HotkeyKey(slot, HotkeyField::Ky).name) continue;
      const KeyCodeResult r = ReadHotkeyCode(s, slot);
      return std::to_string(r.vkey) + (r.tooLarge ? " too large" : "");
    }
    return "?";
  };
  const std::tuple<const char16_t*, const char16_t*, const char*> cases[] = {
      {u"Set_FO", nullptr, "75 <absent>"}, {u"Set_FO", u"25", "25 25"},
      {u"Set_FO", u"100", "100 100"},      {u"Set_FO", u"24", "75! 75"},
      {u"Set_FO", u"101", "75! 75"},       {u"Set_FO", u"abc", "75! 75"},
      {u"Set_FO", u"", "75! 75"},          {u"Set_FO", u" 60 ", "60  60 "},
      {u"Set_FO", u"50.5", "51 50.5"},     {u"Set_FO", u"24.9", "25 24.9"},
      {u"Set_FO", u"100.6", "75! 75"},     {u"Set_FO", u"1e2", "75! 75"},
      {u"Set_FS", nullptr, "2 <absent>"},  {u"Set_FS", u"0", "off 2 0"},
      {u"Set_FS", u"1", "4 1"},            {u"Set_FS", u"3", "1 3"},
      {u"Set_FS", u"4", "2! 2"},           {u"Set_FS", u"01", "2! 2"},
      {u"Set_HV_Ky", nullptr, "49 <absent>"}, {u"Set_H0_Ky", u"65", "65 65"},
      {u"Set_H1_Ky", u"1234", "51 1234"},  {u"Set_H1_Ky", u"6A", "51 6A"},
      {u"Set_H2_Ky", u" 52", "52  52"},    {u"Set_H3_Ky", u"+53", "53 +53"},
      {u"Set_H3_Ky", u"999", "53 too large 999"}, {u"Set_H0_Ky", u"255", "255 255"},
      {u"Set_H0_Ky", u"", "50 "},
  };
  for (const auto& [key, stored, expected] : cases) {
    FakeSettings port;
    Settings settings(port);
    if (stored) port.Set(key, stored);
    const std::string got = read(settings, key);
    EXPECT_EQ(got + " " + port.Get(key), expected)
        << ToUtf8(key) << "=" << (stored ? ToUtf8(stored) : "absent");
    EXPECT_EQ(port.writes.size(), got.back() == '!' ? 1u : 0u);
  }
}

// What a reset writes is the key table itself; the start-up test that resets after a store
// failure checks its effect.
TEST(Settings, FailuresAreRecordedAndReadsFallBack) {
  FakeSettings port;
  Settings settings(port);
  port.failKey = u"Set_Mo";
  EXPECT_EQ(ToUtf8(settings.ReadSetting(u"Set_Mo", u"2")), "2");
  EXPECT_TRUE(settings.Failed());
  settings.ClearFailure();
  port.failWrites = true;
  settings.WriteSetting(u"Cur_Mo", u"1");
  EXPECT_TRUE(settings.Failed());
}

}  // namespace
}  // namespace mq::settings
