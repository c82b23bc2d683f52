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

// One stored setting: its name and its default, the value a reset of every setting writes
// (the settings dialog's "Reset Defaults" shows the same values). Readers pass their own
// read defaults (often "x", meaning absent) and repairs, held in the rules below.
struct Key {
  TextView name;
  TextView defaultValue;
  bool reset = true;  // written by the reset after a settings failure (geometry is not)
};

// Every key the program stores, in the order the reset writes them.
namespace key {
inline constexpr Key Set_Op{u"Set_Op", u"0"}, Cur_Op{u"Cur_Op", u"1"};
inline constexpr Key Set_En{u"Set_En", u"1"}, Cur_En{u"Cur_En", u"1"};
inline constexpr Key Set_Mo{u"Set_Mo", u"0"}, Cur_Mo{u"Cur_Mo", u"2"};
inline constexpr Key Set_Fm{u"Set_Fm", u"0"}, Cur_Fm{u"Cur_Fm", u"1"};
inline constexpr Key Set_LO{u"Set_LO", u"0"}, Cur_LO{u"Cur_LO", u"0"};
inline constexpr Key Set_Pn{u"Set_Pn", u"0"}, Cur_Pn{u"Cur_Pn", u"0"};
inline constexpr Key Set_Dl{u"Set_Dl", u"1"}, Cur_Dl{u"Cur_Dl", u"1"};
inline constexpr Key Set_Vu{u"Set_Vu", u"0"}, Cur_Vu{u"Cur_Vu", u"0"};
inline constexpr Key Set_RC_Op{u"Set_RC_Op", u"12"};
inline constexpr Key Set_HV_Ky{u"Set_HV_Ky", u"49"};
inline constexpr Key Set_H0_Ky{u"Set_H0_Ky", u"50"}, Set_H0_En{u"Set_H0_En", u"1"},
    Set_H0_Op{u"Set_H0_Op", u"2"};
inline constexpr Key Set_H1_Ky{u"Set_H1_Ky", u"51"}, Set_H1_En{u"Set_H1_En", u"1"},
    Set_H1_Op{u"Set_H1_Op", u"3"};
inline constexpr Key Set_H2_Ky{u"Set_H2_Ky", u"52"}, Set_H2_En{u"Set_H2_En", u"1"},
    Set_H2_Op{u"Set_H2_Op", u"41"};
inline constexpr Key Set_H3_Ky{u"Set_H3_Ky", u"53"}, Set_H3_En{u"Set_H3_En", u"1"},
    Set_H3_Op{u"Set_H3_Op", u"0"};
inline constexpr Key Set_Sz{u"Set_Sz", u"1"}, Set_FO{u"Set_FO", u"75"}, Set_FS{u"Set_FS", u"2"};
inline constexpr Key Cur_FF_S{u"Cur_FF_S", u"1"}, Cur_FN_S{u"Cur_FN_S", u""};
inline constexpr Key Cur_FF_O{u"Cur_FF_O", u"3"}, Cur_FN_O{u"Cur_FN_O", u""};
// The clip list window's geometry in each view: never reset.
inline constexpr Key Cur_Lt_Sm{u"Cur_Lt_Sm", u"", false}, Cur_Tp_Sm{u"Cur_Tp_Sm", u"", false},
    Cur_Wd_Sm{u"Cur_Wd_Sm", u"", false}, Cur_Hi_Sm{u"Cur_Hi_Sm", u"", false};
inline constexpr Key Cur_Lt_Lg{u"Cur_Lt_Lg", u"", false}, Cur_Tp_Lg{u"Cur_Tp_Lg", u"", false},
    Cur_Wd_Lg{u"Cur_Wd_Lg", u"", false}, Cur_Hi_Lg{u"Cur_Hi_Lg", u"", false};
}  // namespace key

inline constexpr const Key* kAllKeys[] = {
    &key::Set_Op,    &key::Cur_Op,    &key::Set_En,    &key::Cur_En,    &key::Set_Mo,
    &key::Cur_Mo,    &key::Set_Fm,    &key::Cur_Fm,    &key::Set_LO,    &key::Cur_LO,
    &key::Set_Pn,    &key::Cur_Pn,    &key::Set_Dl,    &key::Cur_Dl,    &key::Set_Vu,
    &key::Cur_Vu,    &key::Set_RC_Op, &key::Set_HV_Ky, &key::Set_H0_Ky, &key::Set_H0_En,
    &key::Set_H0_Op, &key::Set_H1_Ky, &key::Set_H1_En, &key::Set_H1_Op, &key::Set_H2_Ky,
    &key::Set_H2_En, &key::Set_H2_Op, &key::Set_H3_Ky, &key::Set_H3_En, &key::Set_H3_Op,
    &key::Set_Sz,    &key::Set_FO,    &key::Set_FS,    &key::Cur_FF_S,  &key::Cur_FN_S,
    &key::Cur_FF_O,  &key::Cur_FN_O,  &key::Cur_Lt_Sm, &key::Cur_Tp_Sm, &key::Cur_Wd_Sm,
    &key::Cur_Hi_Sm, &key::Cur_Lt_Lg, &key::Cur_Tp_Lg, &key::Cur_Wd_Lg, &key::Cur_Hi_Lg,
};

// The clip list window opacity a repair or reset gives: Set_FO's default.
int DefaultOpacity();

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
// Set_FO: numeric, 25..100. Start-up reads with the key's default, the settings dialog
// with "x" (so a fresh installation gets "75" written on its first opening).
OpacityResult ReadOpacity(Settings& settings, TextView readDefault = key::Set_FO.defaultValue);

struct FadeResult {
  bool noFade = false;
  int speed = 2;  // 4 Gallop, 2 Canter, 1 Lope
  bool repaired = false;
};
FadeResult ReadFadeSpeed(Settings& settings);  // Set_FS: "0".."3"
int FadeSpeedFor(TextView code);                 // "1" 4, "2" 2, "3" 1, else 0

// ---- Hotkeys -------------------------------------------------------------------------
// Hotkey slot keys: "Set_H" + slot + suffix ("_Ky", "_En", "_Op"); slot -1 is the paste
// hotkey ("Set_HV_Ky").
enum class HotkeyField { Ky, En, Op };
const Key& HotkeyKey(int slot, HotkeyField field);
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

// ---- Settings dialog -------------------------------------------------------------------
// A list whose selected index is the stored value ("0".."count-1"); any other text is
// written back as the repair value, silently.
struct DialogChoice {
  const Key& key;
  TextView readDefault;
  int count;
  TextView repair;
};
extern const DialogChoice kDialogEnabled, kDialogMode, kDialogFormat, kDialogCase;
extern const DialogChoice kDialogPin, kDialogDelete, kDialogView, kDialogListCase, kDialogFade;
int ReadDialogChoice(Settings& settings, const DialogChoice& choice);

// An action code as the dialog shows it: the action's index (0..12) and, for the case
// actions 4..7, the Action 2 choice held in its second digit (-1 when it has none).
struct ActionCode {
  int action = 0;
  int second = -1;
};
inline constexpr int kActionCount = 13;
// Fewer than 3 characters, numeric, and naming one of the 13 actions: "1" starts the
// two-digit codes "10".."12", any other first digit is the action with an optional second.
bool ParseActionCode(TextView code, ActionCode& out);
// Set_RC_Op (slot -1) or Set_Hn_Op read with "x"; an invalid value is written back as
// "12" or the slot's default action code.
ActionCode ReadDialogActionCode(Settings& settings, int slot);
// The code stored for an action: "4".."7" followed by the Action 2 choice, else the index.
Text ActionCodeText(int action, int second);
const Key& ActionKey(int slot);  // slot -1: Set_RC_Op

// ---- The clip list window's file dialogs ---------------------------------------------------
struct FileDialogRule {
  const Key& filterKey;      // Cur_FF_S / Cur_FF_O, read with the default "x"
  bool allowsFour;           // the load dialog has a fourth filter
  const Key& lastFileKey;    // Cur_FN_S / Cur_FN_O
  TextView lastFileDefault;  // "" for the save dialog, "x" for the load dialog
};
extern const FileDialogRule kSaveDialogRule;
extern const FileDialogRule kLoadDialogRule;

// A numeric 1, 2 or 3 is used; 4 only by the load dialog. Anything else is written back as
// the key's default ("1" saving, "3" loading) and that is used.
int ReadFilterIndex(Settings& settings, const FileDialogRule& rule);
Text ReadLastFile(Settings& settings, const FileDialogRule& rule);

// ---- Reset -------------------------------------------------------------------------------
// Writes every key of kAllKeys marked for reset with its default, in table order.
void WriteResetValues(Settings& settings);

}  // namespace mq::settings
