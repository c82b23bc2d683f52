#include "settings/KeyTable.h"

#include <gtest/gtest.h>

#include "fakes/FakeSettings.h"

namespace mq::settings {
namespace {

using test::FakeSettings;

struct PairCase {
  const char16_t* set;  // nullptr: absent
  const char16_t* cur;
  const char* value;
  bool repaired;
};

void ExpectPair(const StartupPairRule& rule, const PairCase& c) {
  FakeSettings port;
  Settings settings(port);
  if (c.set) port.Set(rule.setKey, c.set);
  if (c.cur) port.Set(rule.curKey, c.cur);
  auto result = ReadStartupPair(settings, rule);
  SCOPED_TRACE(ToUtf8(rule.setKey) + "=" + (c.set ? ToUtf8(c.set) : "absent") + " cur=" +
               (c.cur ? ToUtf8(c.cur) : "absent"));
  EXPECT_EQ(ToUtf8(result.value), c.value);
  EXPECT_EQ(result.repaired, c.repaired);
  EXPECT_EQ(port.writes.size(), c.repaired ? 2u : 0u);
}

TEST(StartupPairs, CaseUsesCurOnlyForAnExactZero) {
  ExpectPair(kCaseRule, {nullptr, nullptr, "1", false});  // fresh: "0" -> Cur_Op "1"
  ExpectPair(kCaseRule, {u"0", u"3", "3", false});
  ExpectPair(kCaseRule, {u"4", u"2", "4", false});
  // " 0" is not exactly "0": taken as the value itself, which is invalid.
  ExpectPair(kCaseRule, {u" 0", u"2", "1", true});
  ExpectPair(kCaseRule, {u"7", nullptr, "1", true});
  ExpectPair(kCaseRule, {u"0", u"5", "1", true});
}

TEST(StartupPairs, ModeFormatEnabledUseCurForAnyNumericZero) {
  ExpectPair(kModeRule, {nullptr, nullptr, "2", false});
  ExpectPair(kModeRule, {u"abc", u"1", "1", false});  // numeric value 0: Cur_Mo, no repair
  ExpectPair(kModeRule, {u"1", u"2", "1", false});
  ExpectPair(kModeRule, {u"3", nullptr, "2", true});
  ExpectPair(kFormatRule, {nullptr, nullptr, "1", false});
  ExpectPair(kFormatRule, {u"0", u"2", "2", false});
  ExpectPair(kFormatRule, {u"0", u"9", "1", true});
  ExpectPair(kEnabledRule, {nullptr, nullptr, "1", false});
  ExpectPair(kEnabledRule, {u"0", u"2", "2", false});
  ExpectPair(kEnabledRule, {u"2x", nullptr, "1", true});  // leading number 2, text "2x" invalid
}

TEST(StartupPairs, RepairsWriteTheTabledValues) {
  FakeSettings port;
  Settings settings(port);
  port.Set(u"Set_En", u"5");
  ReadStartupPair(settings, kEnabledRule);
  EXPECT_EQ(port.Get(u"Set_En"), "1");
  EXPECT_EQ(port.Get(u"Cur_En"), "1");
  port.Set(u"Set_Mo", u"9");
  ReadStartupPair(settings, kModeRule);
  EXPECT_EQ(port.Get(u"Set_Mo"), "0");
  EXPECT_EQ(port.Get(u"Cur_Mo"), "2");
}

TEST(Opacity, AcceptsTwentyFiveToHundredAndRounds) {
  struct {
    const char16_t* stored;
    int percent;
    bool repaired;
  } cases[] = {{nullptr, 75, false}, {u"25", 25, false},   {u"100", 100, false},
               {u"24", 75, true},    {u"101", 75, true},   {u"abc", 75, true},
               {u"", 75, true},      {u" 60 ", 60, false}, {u"50.5", 51, false},
               {u"24.9", 25, false}, {u"100.6", 75, true}, {u"1e2", 75, true}};
  for (const auto& c : cases) {
    FakeSettings port;
    Settings settings(port);
    if (c.stored) port.Set(u"Set_FO", c.stored);
    auto result = ReadOpacity(settings);
    SCOPED_TRACE(c.stored ? ToUtf8(c.stored) : "absent");
    EXPECT_EQ(result.percent, c.percent);
    EXPECT_EQ(result.repaired, c.repaired);
    EXPECT_EQ(port.Get(u"Set_FO"), c.repaired ? "75" : (c.stored ? ToUtf8(c.stored) : "<absent>"));
  }
}

TEST(FadeSpeed, MapsCodesAndRepairsTheRest) {
  struct {
    const char16_t* stored;
    bool noFade;
    int speed;
    bool repaired;
  } cases[] = {{nullptr, false, 2, false}, {u"0", true, 2, false}, {u"1", false, 4, false},
               {u"3", false, 1, false},    {u"4", false, 2, true}, {u"01", false, 2, true}};
  for (const auto& c : cases) {
    FakeSettings port;
    Settings settings(port);
    if (c.stored) port.Set(u"Set_FS", c.stored);
    auto result = ReadFadeSpeed(settings);
    EXPECT_EQ(result.noFade, c.noFade);
    EXPECT_EQ(result.speed, c.speed);
    EXPECT_EQ(result.repaired, c.repaired);
    EXPECT_EQ(port.Has(u"Set_FS"), c.stored != nullptr || c.repaired);
  }
}

TEST(Hotkeys, KeyCodesFallBackWithoutRewritingAndFlagCodesAbove255) {
  struct {
    int slot;
    const char16_t* stored;
    int vkey;
    bool tooLarge;
  } cases[] = {{-1, nullptr, 49, false}, {0, u"65", 65, false}, {1, u"1234", 51, false},
               {1, u"6A", 51, false},    {2, u" 52", 52, false}, {3, u"+53", 53, false},
               {3, u"999", 53, true},    {0, u"255", 255, false}, {0, u"", 50, false}};
  for (const auto& c : cases) {
    FakeSettings port;
    Settings settings(port);
    if (c.stored) port.Set(HotkeyKey(c.slot, HotkeyField::Ky).name, c.stored);
    auto result = ReadHotkeyCode(settings, c.slot);
    SCOPED_TRACE(c.stored ? ToUtf8(c.stored) : "absent");
    EXPECT_EQ(result.vkey, c.vkey);
    EXPECT_EQ(result.tooLarge, c.tooLarge);
    EXPECT_TRUE(port.writes.empty());
  }
}

TEST(Hotkeys, EnableFlagRepairsSilently) {
  FakeSettings port;
  Settings settings(port);
  port.Set(u"Set_H0_En", u"yes");
  port.Set(u"Set_H1_En", u"0");
  port.Set(u"Set_H2_En", u"1");
  EXPECT_TRUE(ReadHotkeyEnabled(settings, 0));
  EXPECT_FALSE(ReadHotkeyEnabled(settings, 1));
  EXPECT_TRUE(ReadHotkeyEnabled(settings, 2));
  EXPECT_TRUE(ReadHotkeyEnabled(settings, 3));  // absent
  EXPECT_EQ(port.WrittenKeys(), (std::vector<std::string>{"Set_H0_En", "Set_H3_En"}));
  EXPECT_EQ(port.Get(u"Set_H0_En"), "1");
  EXPECT_EQ(ToUtf8(HotkeyKey(-1, HotkeyField::Ky).name), "Set_HV_Ky");
  EXPECT_EQ(ToUtf8(HotkeyKey(2, HotkeyField::Op).name), "Set_H2_Op");
  EXPECT_EQ(ToUtf8(HotkeyKey(3, HotkeyField::En).name), "Set_H3_En");
  // The defaults the hotkeys fall back to come from the same table.
  EXPECT_EQ(DefaultHotkeyVKey(-1), 49);
  for (int slot = 0; slot < 4; ++slot) EXPECT_EQ(DefaultHotkeyVKey(slot), 50 + slot);
  EXPECT_EQ(ToUtf8(DefaultActionCode(2)), "41");
}

TEST(WindowOptions, ValidateSetThenConsultCur) {
  FakeSettings port;
  Settings settings(port);
  auto fresh = ReadWindowOption(settings, kDeleteOnPasteRule);
  EXPECT_EQ(ToUtf8(fresh.set), "1");
  EXPECT_EQ(port.Get(u"Set_Dl"), "1");
  EXPECT_EQ(port.Get(u"Cur_Dl"), "1");

  port.Set(u"Set_Dl", u"2");
  port.writes.clear();
  auto move = ReadWindowOption(settings, kDeleteOnPasteRule);
  EXPECT_EQ(ToUtf8(move.set), "2");
  EXPECT_TRUE(port.writes.empty());  // "2" leaves Cur_Dl alone

  port.Set(u"Set_Vu", u"0");
  auto view = ReadWindowOption(settings, kViewRule);  // Cur_Vu absent: its default "1"
  EXPECT_EQ(ToUtf8(view.cur), "1");

  port.Set(u"Set_Pn", u"7");
  auto pin = ReadWindowOption(settings, kPinRule);
  EXPECT_EQ(ToUtf8(pin.set), "1");
  EXPECT_EQ(port.Get(u"Set_Pn"), "0");
  EXPECT_EQ(port.Get(u"Cur_Pn"), "0");
}

TEST(Reset, WritesEveryDefaultInOrder) {
  FakeSettings port;
  Settings settings(port);
  WriteResetValues(settings);
  std::string written;
  for (const auto& key : port.WrittenKeys()) written += key + "=" + port.Get(FromUtf8(key)) + " ";
  EXPECT_EQ(written,
            "Set_Op=0 Cur_Op=1 Set_En=1 Cur_En=1 Set_Mo=0 Cur_Mo=2 Set_Fm=0 Cur_Fm=1 Set_LO=0 "
            "Cur_LO=0 Set_Pn=0 Cur_Pn=0 Set_Dl=1 Cur_Dl=1 Set_Vu=0 Cur_Vu=0 Set_RC_Op=12 "
            "Set_HV_Ky=49 Set_H0_Ky=50 Set_H0_En=1 Set_H0_Op=2 Set_H1_Ky=51 Set_H1_En=1 "
            "Set_H1_Op=3 Set_H2_Ky=52 Set_H2_En=1 Set_H2_Op=41 Set_H3_Ky=53 Set_H3_En=1 "
            "Set_H3_Op=0 Set_Sz=1 Set_FO=75 Set_FS=2 Cur_FF_S=1 Cur_FN_S= Cur_FF_O=3 Cur_FN_O= ");
  // The filter keys are the key table's "Cur_" names.
  EXPECT_EQ(port.Get(u"Cur_FF_S"), "1");
  EXPECT_EQ(port.Get(u"Cur_FF_O"), "3");
  EXPECT_EQ(port.Get(u"Cur_FN_S"), "");
  EXPECT_FALSE(port.Has(u"Set_FF_S"));
  EXPECT_FALSE(port.Has(u"Cur_Lt_Lg"));  // geometry is not reset
}

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
