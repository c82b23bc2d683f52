// frmSettings: the settings dialog's logic. It reads the settings when it loads (repairing
// invalid values), checks the hotkey letters as they are typed, and writes every Set_ key on
// "&Save && Exit", applying the hotkeys and the clip list window's fader at once. The window
// (settings/win32) renders this model and forwards the user's actions to it.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/Ports.h"
#include "settings/SettingsEffects.h"
#include "settings/SettingsStore.h"

namespace mq {

// A drop-down list as the form sees it.
struct ComboModel {
  std::vector<Text> items;
  int index = -1;
  bool enabled = true;
  void Fill(std::initializer_list<TextView> texts);
  void Clear() { items.clear(), index = -1; }
};

struct KeyBoxModel {
  Text text;
  bool enabled = true;
};

class frmSettings {
 public:
  // The controls the tab buttons move the focus to.
  enum class Focus { None, cbEnable, txtHK0, cbPin };
  // VB colours (&HBBGGRR), the same layout as a Windows COLORREF.
  static constexpr uint32_t kRowOn = 0x800000, kRowOff = 0x404040;

  struct Services {
    Settings& settings;
    MessageBoxes& messages;
    SettingsEffects& effects;
    LaunchAtLogon& launch;
    bool xpClass = true;  // opacity and fading exist
  };
  explicit frmSettings(Services services) : s_(services) {}

  void Form_Load();
  void cmdTab_Click(int index);
  void cmdOp_Click(int index);  // 0 "&Save && Exit", 1 "&Reset Defaults", 2 "&Cancel"
  void cbRC_Click();
  void cbAction_Click(int n);
  // A typed character; the box's text changes only here (the window selects the whole text
  // when a box gets the focus).
  void txtHK_KeyPress(int index, char16_t typed);
  // A key box emptied with the Delete key.
  void txtHK_Cleared(int index) { txtHK[index].text.clear(); }
  // Check boxes set by the user or in code: the handler runs when the state changes.
  void SetChkHK(int n, bool checked);
  void SetChkAutoRun(bool checked);
  void lblAutoRun_Click() { SetChkAutoRun(!chkAutoRun); }
  void lblSize_Click() { chkSize = !chkSize; }

  // Selecting an item in code runs its click handler, as the user's choice would.
  void SelectRC(int index);
  void SelectAction(int n, int index);

  // Controls.
  ComboModel cbEnable, cbMode, cbFormat, cbOp, cbRC, cbRC2;
  bool chkAutoRun = false;
  std::array<KeyBoxModel, 5> txtHK;  // 0 paste, n+1 slot n
  std::array<bool, 4> chkHK{true, true, true, true};
  std::array<uint32_t, 4> rowColor{kRowOn, kRowOn, kRowOn, kRowOn};
  std::array<ComboModel, 4> cbAction, cbAction2;
  ComboModel cbPin, cbDel, cbView, cbLstOp, cbFadeSpd;
  int sliOpacity = 75;
  bool sliOpacityEnabled = true;
  bool chkSize = true;
  // Below XP-class: the opacity area says so.
  bool transparencyUnavailable = false;

  // Window state.
  int tab = 0;
  Focus focusRequest = Focus::None;  // taken by the window
  bool closed = false;
  std::array<bool, 4> HotkeyEnabledAtLoad{};
  bool ShortcutAutoRun = false;

  static void FillSecondAction(const ComboModel& action, ComboModel& second, TextView storedCode);
  static void SetFixedSecondAction(ComboModel& second, TextView item);
  static void FillCaseChoices(ComboModel& second);

 private:
  void FillLists();
  void LoadHotkeys();
  void LoadListOptions();
  void chkHK_Click(int n);
  void chkAutoRun_Click();
  void ResetDefaults();
  void Save();
  void SaveLaunchAtLogon();
  void SaveHotkeys();
  void AutoRunByShortcut();
  bool KeyInUse(int index, char16_t ch) const;

  Services s_;
};

}  // namespace mq
