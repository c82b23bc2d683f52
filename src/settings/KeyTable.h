// Every setting's key with its reader defaults, valid values and repairs, as tables that
// the readers run. Readers that disagree keep their own defaults; the order they run in
// decides.
#pragma once

#include <span>

#include "settings/SettingsStore.h"

namespace mq::settings {

struct KeyValue {
  TextView key;
  TextView value;
};

// ---- Start-up pairs (case, mode, formatting, enabled) ------------------------------
enum class LastUsed {
  ExactZero,    // Set_ text is exactly "0"
  NumericZero,  // Set_ text's leading number is 0 (any non-numeric text too)
};

struct StartupPairRule {
  TextView setKey;
  TextView setDefault;
  LastUsed lastUsed;
  TextView curKey;
  TextView curDefault;
  std::span<const TextView> valid;
  std::span<const KeyValue> repair;  // written when the effective value is not valid
  TextView fallback;                 // the effective value after a repair
};

extern const StartupPairRule kCaseRule;     // Set_Op / Cur_Op
extern const StartupPairRule kModeRule;     // Set_Mo / Cur_Mo
extern const StartupPairRule kFormatRule;   // Set_Fm / Cur_Fm
extern const StartupPairRule kEnabledRule;  // Set_En / Cur_En

struct PairResult {
  Text value;
  bool repaired = false;
};
PairResult ReadStartupPair(Settings& settings, const StartupPairRule& rule);

// ---- Clip list window opacity and fade speed at start-up ---------------------------
struct OpacityResult {
  int percent = 75;
  bool repaired = false;
};
OpacityResult ReadOpacity(Settings& settings);  // Set_FO: numeric, 25..100

struct FadeResult {
  bool noFade = false;
  int speed = 2;  // 4 Gallop, 2 Canter, 1 Lope
  bool repaired = false;
};
FadeResult ReadFadeSpeed(Settings& settings);  // Set_FS: "0".."3"
int FadeSpeedFor(TextView code);                 // "1" 4, "2" 2, "3" 1, else 0

// ---- Hotkeys -------------------------------------------------------------------------
// Hotkey slot keys: "Set_H" + slot + suffix; slot -1 is the paste hotkey ("Set_HV_Ky").
Text HotkeyKey(int slot, TextView suffix);
int DefaultHotkeyVKey(int slot);        // 49 paste, 50 + slot
TextView DefaultActionCode(int slot);   // "2", "3", "41", "0"

// A stored key code is valid when shorter than 4 characters, numeric and all digits.
struct KeyCodeResult {
  int vkey = 0;
  bool tooLarge = false;  // above 255: the start-up reads fail
};
KeyCodeResult ReadHotkeyCode(Settings& settings, int slot);
// "0" off, "1" on; anything else is written back as "1" (no corrupt report).
bool ReadHotkeyEnabled(Settings& settings, int slot);

// ---- Clip list window options at its load ---------------------------------------------
struct WindowOptionRule {
  TextView setKey;  // read with the default "x"
  std::span<const TextView> validSet;
  std::span<const KeyValue> repair;
  TextView repairedSet;  // the Set_ value used after a repair
  TextView curKey;
  TextView curDefault;  // read only when the Set_ value is "0"
};
extern const WindowOptionRule kListCaseRule;     // Set_LO / Cur_LO
extern const WindowOptionRule kDeleteOnPasteRule;  // Set_Dl / Cur_Dl
extern const WindowOptionRule kViewRule;         // Set_Vu / Cur_Vu
extern const WindowOptionRule kPinRule;          // Set_Pn / Cur_Pn

struct WindowOption {
  Text set;  // the valid (or repaired) Set_ value
  Text cur;  // the Cur_ value when set is "0", else empty
};
WindowOption ReadWindowOption(Settings& settings, const WindowOptionRule& rule);

// ---- Reset -------------------------------------------------------------------------------
// Every value that a reset after an unknown settings failure writes, in order.
extern const std::span<const KeyValue> kResetValues;
void WriteResetValues(Settings& settings);

}  // namespace mq::settings
