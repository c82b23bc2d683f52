#include "settings/KeyTable.h"

#include <array>

namespace mq::settings {

namespace {
constexpr std::array<TextView, 4> kOneToFour{u"1", u"2", u"3", u"4"};
constexpr std::array<TextView, 2> kOneTwo{u"1", u"2"};

constexpr std::array<KeyValue, 2> kCaseRepair{{{u"Set_Op", u"0"}, {u"Cur_Op", u"1"}}};
constexpr std::array<KeyValue, 2> kModeRepair{{{u"Set_Mo", u"0"}, {u"Cur_Mo", u"2"}}};
constexpr std::array<KeyValue, 2> kFormatRepair{{{u"Set_Fm", u"0"}, {u"Cur_Fm", u"1"}}};
constexpr std::array<KeyValue, 2> kEnabledRepair{{{u"Set_En", u"1"}, {u"Cur_En", u"1"}}};

constexpr std::array<TextView, 4> kZeroToThree{u"0", u"1", u"2", u"3"};
constexpr std::array<TextView, 3> kZeroToTwo{u"0", u"1", u"2"};
constexpr std::array<KeyValue, 2> kListCaseRepair{{{u"Set_LO", u"0"}, {u"Cur_LO", u"0"}}};
constexpr std::array<KeyValue, 2> kDeleteRepair{{{u"Set_Dl", u"1"}, {u"Cur_Dl", u"1"}}};
constexpr std::array<KeyValue, 2> kViewRepair{{{u"Set_Vu", u"0"}, {u"Cur_Vu", u"0"}}};
constexpr std::array<KeyValue, 2> kPinRepair{{{u"Set_Pn", u"0"}, {u"Cur_Pn", u"0"}}};

constexpr std::array<KeyValue, 37> kReset{{
    {u"Set_Op", u"0"},    {u"Cur_Op", u"1"},    {u"Set_En", u"1"},    {u"Cur_En", u"1"},
    {u"Set_Mo", u"0"},    {u"Cur_Mo", u"2"},    {u"Set_Fm", u"0"},    {u"Cur_Fm", u"1"},
    {u"Set_LO", u"0"},    {u"Cur_LO", u"0"},    {u"Set_Pn", u"0"},    {u"Cur_Pn", u"0"},
    {u"Set_Dl", u"1"},    {u"Cur_Dl", u"1"},    {u"Set_Vu", u"0"},    {u"Cur_Vu", u"0"},
    {u"Set_RC_Op", u"12"}, {u"Set_HV_Ky", u"49"}, {u"Set_H0_Ky", u"50"}, {u"Set_H0_En", u"1"},
    {u"Set_H0_Op", u"2"}, {u"Set_H1_Ky", u"51"}, {u"Set_H1_En", u"1"}, {u"Set_H1_Op", u"3"},
    {u"Set_H2_Ky", u"52"}, {u"Set_H2_En", u"1"}, {u"Set_H2_Op", u"41"}, {u"Set_H3_Ky", u"53"},
    {u"Set_H3_En", u"1"}, {u"Set_H3_Op", u"0"},  {u"Set_Sz", u"1"},    {u"Set_FO", u"75"},
    {u"Set_FS", u"2"},    {u"Cur_FF_S", u"1"},  {u"Cur_FN_S", u""},   {u"Cur_FF_O", u"3"},
    {u"Cur_FN_O", u""},
}};

bool OneOf(TextView value, std::span<const TextView> valid) {
  for (TextView v : valid)
    if (v == value) return true;
  return false;
}

void WriteAll(Settings& settings, std::span<const KeyValue> values) {
  for (const auto& kv : values) settings.WriteSetting(kv.key, kv.value);
}
}  // namespace

const StartupPairRule kCaseRule{u"Set_Op", u"0", LastUsed::ExactZero, u"Cur_Op", u"1",
                                kOneToFour, kCaseRepair, u"1"};
const StartupPairRule kModeRule{u"Set_Mo", u"2", LastUsed::NumericZero, u"Cur_Mo", u"2",
                                kOneTwo, kModeRepair, u"2"};
const StartupPairRule kFormatRule{u"Set_Fm", u"0", LastUsed::NumericZero, u"Cur_Fm", u"1",
                                  kOneTwo, kFormatRepair, u"1"};
const StartupPairRule kEnabledRule{u"Set_En", u"1", LastUsed::NumericZero, u"Cur_En", u"1",
                                   kOneTwo, kEnabledRepair, u"1"};

PairResult ReadStartupPair(Settings& settings, const StartupPairRule& rule) {
  Text value = settings.ReadSetting(rule.setKey, rule.setDefault);
  bool lastUsed = rule.lastUsed == LastUsed::ExactZero ? value == u"0" : LeadingNumber(value) == 0;
  if (lastUsed) value = settings.ReadSetting(rule.curKey, rule.curDefault);
  if (OneOf(value, rule.valid)) return {value, false};
  WriteAll(settings, rule.repair);
  return {Text(rule.fallback), true};
}

OpacityResult ReadOpacity(Settings& settings) {
  Text value = settings.ReadSetting(u"Set_FO", u"75");
  if (IsNumeric(value)) {
    double number = LeadingNumber(value);
    long long percent = RoundHalfAway(number);
    // The rounded value must land in 25..100 too: "100.6" would round to 101.
    if (number > 24 && number < 101 && percent >= 25 && percent <= 100)
      return {static_cast<int>(percent), false};
  }
  settings.WriteSetting(u"Set_FO", u"75");
  return {75, true};
}

int FadeSpeedFor(TextView code) {
  if (code == u"1") return 4;
  if (code == u"2") return 2;
  if (code == u"3") return 1;
  return 0;
}

FadeResult ReadFadeSpeed(Settings& settings) {
  Text value = settings.ReadSetting(u"Set_FS", u"2");
  if (value == u"0") return {true, 2, false};
  if (int speed = FadeSpeedFor(value)) return {false, speed, false};
  settings.WriteSetting(u"Set_FS", u"2");
  return {false, 2, true};
}

Text HotkeyKey(int slot, TextView suffix) {
  Text key = u"Set_H";
  key += slot < 0 ? u'V' : static_cast<char16_t>(u'0' + slot);
  key += suffix;
  return key;
}

int DefaultHotkeyVKey(int slot) { return slot < 0 ? 49 : 50 + slot; }

TextView DefaultActionCode(int slot) {
  constexpr std::array<TextView, 4> kCodes{u"2", u"3", u"41", u"0"};
  return slot >= 0 && slot < 4 ? kCodes[slot] : TextView{};
}

KeyCodeResult ReadHotkeyCode(Settings& settings, int slot) {
  Text value = settings.ReadSetting(HotkeyKey(slot, u"_Ky"), u"x");
  bool digitsOnly = !value.empty();
  for (char16_t c : value) digitsOnly = digitsOnly && c >= u'0' && c <= u'9';
  if (value.size() >= 4 || !digitsOnly || !IsNumeric(value))
    return {DefaultHotkeyVKey(slot), false};
  int code = static_cast<int>(LeadingNumber(value));
  if (code > 255) return {DefaultHotkeyVKey(slot), true};
  return {code, false};
}

bool ReadHotkeyEnabled(Settings& settings, int slot) {
  Text key = HotkeyKey(slot, u"_En");
  Text value = settings.ReadSetting(key, u"x");
  if (value == u"0") return false;
  if (value != u"1") settings.WriteSetting(key, u"1");
  return true;
}

const WindowOptionRule kListCaseRule{u"Set_LO", kZeroToThree, kListCaseRepair, u"1",
                                     u"Cur_LO", u"0"};
const WindowOptionRule kDeleteOnPasteRule{u"Set_Dl", kZeroToTwo, kDeleteRepair, u"1",
                                          u"Cur_Dl", u"1"};
const WindowOptionRule kViewRule{u"Set_Vu", kZeroToTwo, kViewRepair, u"1", u"Cur_Vu", u"1"};
const WindowOptionRule kPinRule{u"Set_Pn", kZeroToTwo, kPinRepair, u"1", u"Cur_Pn", u"0"};

WindowOption ReadWindowOption(Settings& settings, const WindowOptionRule& rule) {
  Text set = settings.ReadSetting(rule.setKey, u"x");
  if (!OneOf(set, rule.validSet)) {
    WriteAll(settings, rule.repair);
    return {Text(rule.repairedSet), Text()};
  }
  if (set != u"0") return {set, Text()};
  return {set, settings.ReadSetting(rule.curKey, rule.curDefault)};
}

const std::span<const KeyValue> kResetValues{kReset};

void WriteResetValues(Settings& settings) { WriteAll(settings, kResetValues); }

}  // namespace mq::settings
