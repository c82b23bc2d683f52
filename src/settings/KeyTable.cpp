#include "settings/KeyTable.h"

#include <array>

namespace mq::settings {

namespace {
constexpr std::array<TextView, 4> kOneToFour{u"1", u"2", u"3", u"4"};
constexpr std::array<TextView, 2> kOneTwo{u"1", u"2"};

// Repairs write keys back to their defaults (the enabled state's Set_ key to "1").
constexpr std::array<KeyValue, 2> Repair(const Key& set, const Key& cur) {
  return {{{set.name, set.defaultValue}, {cur.name, cur.defaultValue}}};
}
constexpr auto kCaseRepair = Repair(key::Set_Op, key::Cur_Op);
constexpr auto kModeRepair = Repair(key::Set_Mo, key::Cur_Mo);
constexpr auto kFormatRepair = Repair(key::Set_Fm, key::Cur_Fm);
constexpr auto kEnabledRepair = Repair(key::Set_En, key::Cur_En);

constexpr std::array<TextView, 4> kZeroToThree{u"0", u"1", u"2", u"3"};
constexpr std::array<TextView, 3> kZeroToTwo{u"0", u"1", u"2"};
constexpr auto kListCaseRepair = Repair(key::Set_LO, key::Cur_LO);
constexpr auto kDeleteRepair = Repair(key::Set_Dl, key::Cur_Dl);
constexpr auto kViewRepair = Repair(key::Set_Vu, key::Cur_Vu);
constexpr auto kPinRepair = Repair(key::Set_Pn, key::Cur_Pn);

constexpr const Key* kHotkeyKeys[4][3] = {
    {&key::Set_H0_Ky, &key::Set_H0_En, &key::Set_H0_Op},
    {&key::Set_H1_Ky, &key::Set_H1_En, &key::Set_H1_Op},
    {&key::Set_H2_Ky, &key::Set_H2_En, &key::Set_H2_Op},
    {&key::Set_H3_Ky, &key::Set_H3_En, &key::Set_H3_Op},
};

bool OneOf(TextView value, std::span<const TextView> valid) {
  for (TextView v : valid)
    if (v == value) return true;
  return false;
}

void WriteAll(Settings& settings, std::span<const KeyValue> values) {
  for (const auto& kv : values) settings.WriteSetting(kv.key, kv.value);
}
}  // namespace

const StartupPairRule kCaseRule{key::Set_Op.name, u"0", LastUsed::ExactZero, key::Cur_Op.name,
                                u"1", kOneToFour, kCaseRepair, u"1"};
const StartupPairRule kModeRule{key::Set_Mo.name, u"2", LastUsed::NumericZero, key::Cur_Mo.name,
                                u"2", kOneTwo, kModeRepair, u"2"};
const StartupPairRule kFormatRule{key::Set_Fm.name, u"0", LastUsed::NumericZero,
                                  key::Cur_Fm.name, u"1", kOneTwo, kFormatRepair, u"1"};
const StartupPairRule kEnabledRule{key::Set_En.name, u"1", LastUsed::NumericZero,
                                   key::Cur_En.name, u"1", kOneTwo, kEnabledRepair, u"1"};

int DefaultOpacity() { return static_cast<int>(LeadingNumber(key::Set_FO.defaultValue)); }

PairResult ReadStartupPair(Settings& settings, const StartupPairRule& rule) {
  Text value = settings.ReadSetting(rule.setKey, rule.setDefault);
  bool lastUsed = rule.lastUsed == LastUsed::ExactZero ? value == u"0" : LeadingNumber(value) == 0;
  if (lastUsed) value = settings.ReadSetting(rule.curKey, rule.curDefault);
  if (OneOf(value, rule.valid)) return {value, false};
  WriteAll(settings, rule.repair);
  return {Text(rule.fallback), true};
}

OpacityResult ReadOpacity(Settings& settings, TextView readDefault) {
  Text value = settings.ReadSetting(key::Set_FO.name, readDefault);
  if (IsNumeric(value)) {
    double number = LeadingNumber(value);
    long long percent = RoundHalfAway(number);
    // The rounded value must land in 25..100 too: "100.6" would round to 101.
    if (number > 24 && number < 101 && percent >= 25 && percent <= 100)
      return {static_cast<int>(percent), false};
  }
  settings.WriteSetting(key::Set_FO.name, key::Set_FO.defaultValue);
  return {DefaultOpacity(), true};
}

int FadeSpeedFor(TextView code) {
  if (code == u"1") return 4;
  if (code == u"2") return 2;
  if (code == u"3") return 1;
  return 0;
}

FadeResult ReadFadeSpeed(Settings& settings) {
  const int canter = FadeSpeedFor(key::Set_FS.defaultValue);
  Text value = settings.ReadSetting(key::Set_FS.name, key::Set_FS.defaultValue);
  if (value == u"0") return {true, canter, false};
  if (int speed = FadeSpeedFor(value)) return {false, speed, false};
  settings.WriteSetting(key::Set_FS.name, key::Set_FS.defaultValue);
  return {false, canter, true};
}

const Key& HotkeyKey(int slot, HotkeyField field) {
  if (slot < 0 || slot > 3) return key::Set_HV_Ky;  // the paste hotkey has a key only
  return *kHotkeyKeys[slot][static_cast<int>(field)];
}

int DefaultHotkeyVKey(int slot) {
  return static_cast<int>(LeadingNumber(HotkeyKey(slot, HotkeyField::Ky).defaultValue));
}

TextView DefaultActionCode(int slot) {
  return slot >= 0 && slot < 4 ? HotkeyKey(slot, HotkeyField::Op).defaultValue : TextView{};
}

KeyCodeResult ReadHotkeyCode(Settings& settings, int slot) {
  Text value = settings.ReadSetting(HotkeyKey(slot, HotkeyField::Ky).name, u"x");
  bool digitsOnly = !value.empty();
  for (char16_t c : value) digitsOnly = digitsOnly && c >= u'0' && c <= u'9';
  if (value.size() >= 4 || !digitsOnly || !IsNumeric(value))
    return {DefaultHotkeyVKey(slot), false};
  int code = static_cast<int>(LeadingNumber(value));
  if (code > 255) return {DefaultHotkeyVKey(slot), true};
  return {code, false};
}

bool ReadHotkeyEnabled(Settings& settings, int slot) {
  TextView name = HotkeyKey(slot, HotkeyField::En).name;
  Text value = settings.ReadSetting(name, u"x");
  if (value == u"0") return false;
  if (value != u"1") settings.WriteSetting(name, u"1");
  return true;
}

const WindowOptionRule kListCaseRule{key::Set_LO.name, kZeroToThree, kListCaseRepair, u"1",
                                     key::Cur_LO.name, u"0"};
const WindowOptionRule kDeleteOnPasteRule{key::Set_Dl.name, kZeroToTwo, kDeleteRepair, u"1",
                                          key::Cur_Dl.name, u"1"};
const WindowOptionRule kViewRule{key::Set_Vu.name, kZeroToTwo, kViewRepair, u"1",
                                 key::Cur_Vu.name, u"1"};
const WindowOptionRule kPinRule{key::Set_Pn.name, kZeroToTwo, kPinRepair, u"1",
                                key::Cur_Pn.name, u"0"};

WindowOption ReadWindowOption(Settings& settings, const WindowOptionRule& rule) {
  Text set = settings.ReadSetting(rule.setKey, u"x");
  if (!OneOf(set, rule.validSet)) {
    WriteAll(settings, rule.repair);
    return {Text(rule.repairedSet), Text()};
  }
  if (set != u"0") return {set, Text()};
  return {set, settings.ReadSetting(rule.curKey, rule.curDefault)};
}

const DialogChoice kDialogEnabled{key::Set_En, u"1", 3, u"0"};
const DialogChoice kDialogMode{key::Set_Mo, u"2", 3, u"2"};
const DialogChoice kDialogFormat{key::Set_Fm, u"0", 3, u"0"};
const DialogChoice kDialogCase{key::Set_Op, u"0", 5, u"0"};
const DialogChoice kDialogPin{key::Set_Pn, u"x", 3, u"0"};
const DialogChoice kDialogDelete{key::Set_Dl, u"x", 3, u"0"};
const DialogChoice kDialogView{key::Set_Vu, u"x", 3, u"0"};
const DialogChoice kDialogListCase{key::Set_LO, u"x", 4, u"0"};
const DialogChoice kDialogFade{key::Set_FS, u"x", 4, u"2"};

int ReadDialogChoice(Settings& settings, const DialogChoice& choice) {
  Text value = settings.ReadSetting(choice.key.name, choice.readDefault);
  if (value.size() == 1 && value[0] >= u'0' && value[0] < u'0' + choice.count)
    return value[0] - u'0';
  settings.WriteSetting(choice.key.name, choice.repair);
  return choice.repair[0] - u'0';
}

bool ParseActionCode(TextView code, ActionCode& out) {
  if (code.size() >= 3 || !IsNumeric(code)) return false;
  auto digit = [](char16_t c) { return c >= u'0' && c <= u'9' ? c - u'0' : -1; };
  // Numeric texts such as " 4" or "-1" pass the test above but name no action.
  int first = digit(code[0]);
  int second = code.size() == 2 ? digit(code[1]) : -1;
  if (first < 0 || (code.size() == 2 && second < 0)) return false;
  if (first == 1) {
    out = {static_cast<int>(LeadingNumber(code)), -1};
    return out.action < kActionCount;
  }
  out = {first, second};
  return true;
}

const Key& ActionKey(int slot) {
  return slot < 0 ? key::Set_RC_Op : HotkeyKey(slot, HotkeyField::Op);
}

ActionCode ReadDialogActionCode(Settings& settings, int slot) {
  const Key& k = ActionKey(slot);
  ActionCode code;
  if (ParseActionCode(settings.ReadSetting(k.name, u"x"), code)) return code;
  settings.WriteSetting(k.name, k.defaultValue);
  ParseActionCode(k.defaultValue, code);
  return code;
}

Text ActionCodeText(int action, int second) {
  Text text = ToDecimal(action);
  if (action >= 4 && action <= 7) text += ToDecimal(second < 0 ? 0 : second);
  return text;
}

const FileDialogRule kSaveDialogRule{key::Cur_FF_S, false, key::Cur_FN_S, u""};
const FileDialogRule kLoadDialogRule{key::Cur_FF_O, true, key::Cur_FN_O, u"x"};

int ReadFilterIndex(Settings& settings, const FileDialogRule& rule) {
  const Text value = settings.ReadSetting(rule.filterKey.name, u"x");
  const double number = IsNumeric(value) ? LeadingNumber(value) : 0;
  if (number == 1 || number == 2 || number == 3) return static_cast<int>(number);
  if (number == 4 && rule.allowsFour) return 4;
  settings.WriteSetting(rule.filterKey.name, rule.filterKey.defaultValue);
  return static_cast<int>(LeadingNumber(rule.filterKey.defaultValue));
}

Text ReadLastFile(Settings& settings, const FileDialogRule& rule) {
  return settings.ReadSetting(rule.lastFileKey.name, rule.lastFileDefault);
}

void WriteResetValues(Settings& settings) {
  for (const Key* k : kAllKeys)
    if (k->reset) settings.WriteSetting(k->name, k->defaultValue);
}

}  // namespace mq::settings
