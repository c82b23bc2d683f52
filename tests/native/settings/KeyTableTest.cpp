// The start-up readers' validation and repairs, value by value. How the program and its
// windows react to them is tested with the main form and the clip list window.
#include "settings/KeyTable.h"

#include <gtest/gtest.h>

#include "fakes/FakeSettings.h"

namespace mq::settings {
namespace {

using test::FakeSettings;

TEST(StartupPairs, CurIsConsultedOnlyForZeroAndInvalidValuesAreRepaired) {
  struct {
    const StartupPairRule& rule;
    const char16_t* set;  // nullptr: absent
    const char16_t* cur;
    const char* value;
    bool repaired;
    const char* setAfter;
    const char* curAfter;
  } cases[] = {
      {kCaseRule, nullptr, nullptr, "1", false, "<absent>", "<absent>"},
      {kCaseRule, u"0", u"3", "3", false, "0", "3"},
      {kCaseRule, u"4", u"2", "4", false, "4", "2"},
      {kCaseRule, u" 0", u"2", "1", true, "0", "1"},  // not exactly "0": invalid itself
      {kCaseRule, u"7", nullptr, "1", true, "0", "1"},
      {kCaseRule, u"0", u"5", "1", true, "0", "1"},
      {kModeRule, nullptr, nullptr, "2", false, "<absent>", "<absent>"},
      {kModeRule, u"abc", u"1", "1", false, "abc", "1"},  // numeric value 0: Cur_Mo
      {kModeRule, u"1", u"2", "1", false, "1", "2"},
      {kModeRule, u"3", nullptr, "2", true, "0", "2"},
      {kFormatRule, nullptr, nullptr, "1", false, "<absent>", "<absent>"},
      {kFormatRule, u"0", u"2", "2", false, "0", "2"},
      {kFormatRule, u"0", u"9", "1", true, "0", "1"},
      {kEnabledRule, nullptr, nullptr, "1", false, "<absent>", "<absent>"},
      {kEnabledRule, u"0", u"2", "2", false, "0", "2"},
      {kEnabledRule, u"2x", nullptr, "1", true, "1", "1"},  // leading number 2, "2x" invalid
      {kEnabledRule, u"5", nullptr, "1", true, "1", "1"},
  };
  for (const auto& c : cases) {
    FakeSettings port;
    Settings settings(port);
    if (c.set) port.Set(c.rule.setKey, c.set);
    if (c.cur) port.Set(c.rule.curKey, c.cur);
    SCOPED_TRACE(ToUtf8(c.rule.setKey) + "=" + (c.set ? ToUtf8(c.set) : "absent") + " cur=" +
                 (c.cur ? ToUtf8(c.cur) : "absent"));
    auto result = ReadStartupPair(settings, c.rule);
    EXPECT_EQ(ToUtf8(result.value), c.value);
    EXPECT_EQ(result.repaired, c.repaired);
    EXPECT_EQ(port.writes.size(), c.repaired ? 2u : 0u);
    EXPECT_EQ(port.Get(c.rule.setKey), c.setAfter);
    EXPECT_EQ(port.Get(c.rule.curKey), c.curAfter);
  }
}

TEST(StartupValues, OpacityFadeSpeedAndHotkeyCodes) {
  struct {
    const char16_t* stored;
    int percent;
    bool repaired;
  } opacity[] = {{nullptr, 75, false}, {u"25", 25, false},   {u"100", 100, false},
                 {u"24", 75, true},    {u"101", 75, true},   {u"abc", 75, true},
                 {u"", 75, true},      {u" 60 ", 60, false}, {u"50.5", 51, false},
                 {u"24.9", 25, false}, {u"100.6", 75, true}, {u"1e2", 75, true}};
  for (const auto& c : opacity) {
    FakeSettings port;
    Settings settings(port);
    if (c.stored) port.Set(u"Set_FO", c.stored);
    SCOPED_TRACE(c.stored ? ToUtf8(c.stored) : "absent");
    auto result = ReadOpacity(settings);
    EXPECT_EQ(result.percent, c.percent);
    EXPECT_EQ(result.repaired, c.repaired);
    EXPECT_EQ(port.Get(u"Set_FO"), c.repaired ? "75" : (c.stored ? ToUtf8(c.stored) : "<absent>"));
  }
  struct {
    const char16_t* stored;
    bool noFade;
    int speed;
    bool repaired;
  } fade[] = {{nullptr, false, 2, false}, {u"0", true, 2, false}, {u"1", false, 4, false},
              {u"3", false, 1, false},    {u"4", false, 2, true}, {u"01", false, 2, true}};
  for (const auto& c : fade) {
    FakeSettings port;
    Settings settings(port);
    if (c.stored) port.Set(u"Set_FS", c.stored);
    SCOPED_TRACE(c.stored ? ToUtf8(c.stored) : "absent");
    auto result = ReadFadeSpeed(settings);
    EXPECT_EQ(result.noFade, c.noFade);
    EXPECT_EQ(result.speed, c.speed);
    EXPECT_EQ(result.repaired, c.repaired);
    EXPECT_EQ(port.Get(u"Set_FS"), c.repaired ? "2" : (c.stored ? ToUtf8(c.stored) : "<absent>"));
  }
  // Key codes fall back to the slot's default without being rewritten; above 255 is flagged.
  struct {
    int slot;
    const char16_t* stored;
    int vkey;
    bool tooLarge;
  } keys[] = {{-1, nullptr, 49, false}, {0, u"65", 65, false}, {1, u"1234", 51, false},
              {1, u"6A", 51, false},    {2, u" 52", 52, false}, {3, u"+53", 53, false},
              {3, u"999", 53, true},    {0, u"255", 255, false}, {0, u"", 50, false}};
  for (const auto& c : keys) {
    FakeSettings port;
    Settings settings(port);
    if (c.stored) port.Set(HotkeyKey(c.slot, HotkeyField::Ky).name, c.stored);
    SCOPED_TRACE(c.stored ? ToUtf8(c.stored) : "absent");
    auto result = ReadHotkeyCode(settings, c.slot);
    EXPECT_EQ(result.vkey, c.vkey);
    EXPECT_EQ(result.tooLarge, c.tooLarge);
    EXPECT_TRUE(port.writes.empty());
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
