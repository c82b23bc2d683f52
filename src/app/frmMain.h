// The hidden main form: start-up and shut-down, the main state (enabled, mode, formatting,
// case operation), the tray icon and its menu commands, the hotkeys and their actions, and
// what a clipboard change means.
#pragma once

#include <array>
#include <memory>

#include "app/MainServices.h"
#include "platform/MenuItem.h"

namespace mq {

class frmMain {
 public:
  // What choosing a tray menu item reports.
  enum Command : int {
    kCmdEnable = 1, kCmdMode, kCmdList, kCmdFormat, kCmdOpNo, kCmdOpSt, kCmdOpUC, kCmdOplc,
    kCmdSettings, kCmdHelp, kCmdAbout, kCmdExit,
  };
  // The callback message of the tray icon: the left-button-down message number.
  static constexpr uint32_t kTrayCallbackMessage = 0x0201;

  explicit frmMain(MainServices& services);
  ~frmMain();
  frmMain(const frmMain&) = delete;
  frmMain& operator=(const frmMain&) = delete;

  // Start-up. False when another instance runs: that copy has shut down again.
  bool Form_Load();
  void Form_QueryUnload();
  void Form_Unload();
  bool Unloaded() const { return unloaded_; }

  // Tray icon.
  void TrayAdd(int n);
  void TrayModify(int n);
  void TrayDelete();
  void RefreshTrayIcon();
  Text TrayTip() const;
  void OnTrayNotify(uint32_t mouseMessage);

  // Tray menu commands.
  void RunMenuCommand(int command);
  void mnuEnable_Click();
  void mnuMode_Click();
  void mnuList_Click();
  void mnuFormat_Click();
  void mnuOp_No_Click() { SelectCase(kCaseNone); }
  void mnuOp_St_Click() { SelectCase(kCaseStandardize); }
  void mnuOp_UC_Click() { SelectCase(kCaseUpper); }
  void mnuOp_lc_Click() { SelectCase(kCaseLower); }
  void mnuSettings_Click();
  void mnuHelp_Click();
  void mnuAbout_Click();
  void mnuExit_Click();

  // Notices, action codes and hotkeys.
  void ShowNotice(int code);
  void SelectCaseByDigit(TextView digit);
  void RunActionCode(TextView code);
  void hkFunc_HotkeyPressed(int index);
  void hkPaste_HotkeyPressed();
  // Reads the five keys and four enables; false when a stored key code cannot be used.
  bool ConfigureHotkeys();

  // The clipboard monitor's change notification.
  void cpFlag_ClipboardChanged();

  // Main state.
  bool Enabled() const;
  bool Purging() const { return mnuFormat.checked; }
  int16_t CaseOp = kCaseNone;
  bool SingleMode = false;
  bool NoFade = false;
  bool Ending = false;  // tells the clip list window that the program is ending
  Text ModeText, FormatText, CaseText, OsVersionText;
  int IconBase = 0;

  // The tray menu, in display order.
  MenuItem mnuPopUp, mnuSide, mnuEnVal, mnuEnable, mnuMode, mnuBar3, mnuList, mnuBar1,
      mnuFormat, mnuOpHead, mnuOp_No, mnuOp_St, mnuOp_UC, mnuOp_lc, mnuBar2, mnuSettings,
      mnuHelp, mnuAbout, mnuExit;
  MenuStyle menuStyle;
  FlashModel frmFlash;

  VBHotKey& hkPaste() { return *hkPaste_; }
  VBHotKey& hkFunc(int index) { return *hkFunc_[index]; }

 private:
  void BuildMenu();
  void SelectCase(int16_t code);
  // CaseOp, the check marks, the submenu header and the tip part, without writing anything.
  void SetCaseState(int16_t code);
  bool ReadStartupSettings(bool& corrupt);
  void ResetAllSettings();
  void ApplyFader(int opacity, int speed, bool noFade);
  void StartHotkeys();
  void ShowFlash() { s_.flash.Show(frmFlash); }

  MainServices& s_;
  std::unique_ptr<VBHotKey> hkPaste_;
  std::array<std::unique_ptr<VBHotKey>, 4> hkFunc_;
  bool trayAdded_ = false;
  bool unloaded_ = false;
};

}  // namespace mq
