// The hidden main form: start-up and shut-down, the main state (enabled, mode, formatting,
// case operation), the tray icon and its menu commands, the hotkeys and their actions, and
// what a clipboard change means.
#pragma once

#include <array>
#include <memory>

#include "app/MainServices.h"
#include "platform/MenuItem.h"
#include "settings/SettingsEffects.h"

namespace mq {

class frmMain final : public SettingsEffects {
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

  // The main state. The menu's captions, check marks and visibility, the tip texts and the
  // tray image are produced from it (Render); nothing reads them back.
  bool Enabled() const { return enabled_; }
  bool SingleMode() const { return singleMode_; }
  bool Purging() const { return purge_; }
  int16_t CaseOp() const { return caseOp_; }
  bool ListShown() const { return listShown_; }
  bool NoFade() const { return noFade_; }
  const Text& ModeText() const { return modeText_; }
  const Text& FormatText() const { return formatText_; }
  const Text& CaseText() const { return caseText_; }
  const Text& OsVersionText() const { return osVersionText_; }
  int IconBase() const { return iconBase_; }

  // The tray menu, in display order, as the menu engine draws it.
  const MenuItem& mnuPopUp() const { return mnuPopUp_; }
  const MenuItem& mnuEnVal() const { return mnuEnVal_; }
  const MenuItem& mnuEnable() const { return mnuEnable_; }
  const MenuItem& mnuMode() const { return mnuMode_; }
  const MenuItem& mnuList() const { return mnuList_; }
  const MenuItem& mnuBar1() const { return mnuBar1_; }
  const MenuItem& mnuFormat() const { return mnuFormat_; }
  const MenuItem& mnuOpHead() const { return mnuOpHead_; }
  const MenuItem& mnuOp(int16_t caseOp) const;  // mnuOp_No, mnuOp_St, mnuOp_UC, mnuOp_lc
  const MenuStyle& menuStyle() const { return menuStyle_; }
  // What the notice window shows next.
  const FlashModel& frmFlash() const { return frmFlash_; }

  // What the settings dialog applies at once on saving.
  void ApplyHotkeys(std::optional<int> pasteKey,
                    const std::array<HotkeySlotChange, 4>& slots) override;
  void ApplyFader(int opacity, int speed, bool noFade) override;
  void ClearNoFade() override { noFade_ = false; }

  VBHotKey& hkPaste() { return *hkPaste_; }
  VBHotKey& hkFunc(int index) { return *hkFunc_[index]; }

 private:
  void BuildMenu();
  // Every caption, check mark, visibility and tip text from the state.
  void Render();
  void SelectCase(int16_t code);
  bool ReadStartupSettings(bool& corrupt);
  void ResetAllSettings();
  void StartHotkeys();
  void ShowFlash() { s_.flash.Show(frmFlash_); }

  MainServices& s_;
  bool enabled_ = true;
  bool singleMode_ = false;
  bool purge_ = false;
  int16_t caseOp_ = kCaseNone;
  bool caseRepaired_ = false;    // the header reads "CaseChange (No)" until the next choice
  Text enableImage_ = u"I1";     // the image token the last toggle of capturing chose
  bool listShown_ = false;
  bool noFade_ = false;
  Text modeText_, formatText_, caseText_, osVersionText_;
  int iconBase_ = 0;

  MenuItem mnuPopUp_, mnuSide_, mnuEnVal_, mnuEnable_, mnuMode_, mnuBar3_, mnuList_, mnuBar1_,
      mnuFormat_, mnuOpHead_, mnuOp_No_, mnuOp_St_, mnuOp_UC_, mnuOp_lc_, mnuBar2_, mnuSettings_,
      mnuHelp_, mnuAbout_, mnuExit_;
  MenuStyle menuStyle_;
  FlashModel frmFlash_;

  std::unique_ptr<VBHotKey> hkPaste_;
  std::array<std::unique_ptr<VBHotKey>, 4> hkFunc_;
  bool trayAdded_ = false;
  bool unloaded_ = false;
};

}  // namespace mq
