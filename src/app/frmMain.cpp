#include "app/frmMain.h"

#include "app/MenuCaptions.h"
#include "settings/KeyTable.h"

namespace mq {

namespace {
constexpr TextView kActiveTitle = u"Error: Marquill active";
constexpr TextView kActiveText =
    u"Marquill is already running. Look for the paperclip icon in the system tray (on the "
    u"\"Start\" bar near the clock).";
constexpr TextView kCorruptTitle = u"Error: Corrupt Settings.";
constexpr TextView kCorruptText =
    u"Some of the program settings were corrupted. The corrupt settings have been returned to "
    u"their default values.";
constexpr TextView kUnknownText =
    u"There is an unknown problem with the program settings. All settings have been returned "
    u"to their default values.";

VBHotKey::Design CtrlKeyDesign(int32_t vkey) {
  VBHotKey::Design design;
  design.CtrlKey = true;
  design.WinKey = false;
  design.VKey = vkey;
  return design;
}
}  // namespace

frmMain::frmMain(MainServices& services) : s_(services) {
  using settings::DefaultHotkeyVKey;
  hkPaste_ = std::make_unique<VBHotKey>(s_.hotkeys, s_.hotkeyControls,
                                        CtrlKeyDesign(DefaultHotkeyVKey(-1)));
  for (int i = 0; i < 4; ++i)
    hkFunc_[i] = std::make_unique<VBHotKey>(s_.hotkeys, s_.hotkeyControls,
                                            CtrlKeyDesign(DefaultHotkeyVKey(i)));
  hkPaste_->HotkeyPressed = [this] { hkPaste_HotkeyPressed(); };
  for (int i = 0; i < 4; ++i) hkFunc_[i]->HotkeyPressed = [this, i] { hkFunc_HotkeyPressed(i); };
  BuildMenu();
}

frmMain::~frmMain() = default;

void frmMain::BuildMenu() {
  auto item = [](MenuItem& m, const char16_t* name, const char16_t* caption, int command) {
    m.name = name;
    m.caption = caption;
    m.commandId = command;
  };
  item(mnuPopUp_, u"mnuPopUp", u"PopUp", 0);
  item(mnuSide_, u"mnuSide", u"sidebar", 0);
  item(mnuEnVal_, u"mnuEnVal", u"-{Raised}[ENABLED]", 0);
  item(mnuEnable_, u"mnuEnable", u"Disable Me{IMG:I1}", kCmdEnable);
  item(mnuMode_, u"mnuMode", u"To Single Mode", kCmdMode);
  item(mnuBar3_, u"mnuBar3", u"-", 0);
  item(mnuList_, u"mnuList", u"Show Clip List{IMG:I6|DEFAULT}", kCmdList);
  item(mnuBar1_, u"mnuBar1", u"-", 0);
  item(mnuFormat_, u"mnuFormat", u"Purge Formatting", kCmdFormat);
  item(mnuOpHead_, u"mnuOpHead", u"CaseChange", 0);
  item(mnuOp_No_, u"mnuOp_No", u"(No Change)", kCmdOpNo);
  item(mnuOp_St_, u"mnuOp_St", u"Standardize", kCmdOpSt);
  item(mnuOp_UC_, u"mnuOp_UC", u"UPPER CASE", kCmdOpUC);
  item(mnuOp_lc_, u"mnuOp_lc", u"lower case", kCmdOplc);
  item(mnuBar2_, u"mnuBar2", u"-", 0);
  item(mnuSettings_, u"mnuSettings", u"Settings{IMG:I3}", kCmdSettings);
  item(mnuHelp_, u"mnuHelp", u"Help{IMG:I7}", kCmdHelp);
  item(mnuAbout_, u"mnuAbout", u"About{IMG:I4}", kCmdAbout);
  item(mnuExit_, u"mnuExit", u"Exit{IMG:I5}", kCmdExit);
  mnuOpHead_.items = {&mnuOp_No_, &mnuOp_St_, &mnuOp_UC_, &mnuOp_lc_};
  mnuPopUp_.items = {&mnuSide_,   &mnuEnVal_,    &mnuEnable_, &mnuMode_,  &mnuBar3_,
                     &mnuList_,   &mnuBar1_,     &mnuFormat_, &mnuOpHead_, &mnuBar2_,
                     &mnuSettings_, &mnuHelp_, &mnuAbout_, &mnuExit_};
  Render();
}

bool frmMain::Form_Load() {
  // The guard comes before anything is read, registered or joined.
  if (s_.view.AnotherInstanceRunning()) {
    s_.messages.Show(kActiveText, kActiveTitle, MsgIcon::Exclamation);
    Form_QueryUnload();
    Form_Unload();
    return false;
  }
  s_.view.AttachClipboardMonitor();
  s_.view.ShowSplash();
  menuStyle_.fontName = u"Tahoma";
  mnuSide_.caption = SidebarCaption();
  osVersionText_ = mq::OsVersionText(s_.os);
  iconBase_ = IconBaseFor(s_.os);

  bool corrupt = false;
  s_.settings.ClearFailure();
  if (ReadStartupSettings(corrupt)) {
    if (corrupt) s_.messages.Show(kCorruptText, kCorruptTitle, MsgIcon::Exclamation);
  } else {
    ResetAllSettings();
  }
  return true;
}

// The start-up reads of the main state, the hotkeys and the fader, in their order. False when
// the settings store failed underneath them.
bool frmMain::ReadStartupSettings(bool& corrupt) {
  using namespace settings;
  Settings& settings = s_.settings;

  PairResult op = ReadStartupPair(settings, kCaseRule);
  caseOp_ = static_cast<int16_t>(LeadingNumber(op.value) - 1);
  caseRepaired_ = op.repaired;
  corrupt |= op.repaired;
  Render();
  if (settings.Failed()) return false;

  PairResult mode = ReadStartupPair(settings, kModeRule);
  corrupt |= mode.repaired;
  if (mode.value == u"1") mnuMode_Click();
  if (settings.Failed()) return false;

  PairResult format = ReadStartupPair(settings, kFormatRule);
  corrupt |= format.repaired;
  if (format.value == u"2") mnuFormat_Click();
  if (settings.Failed()) return false;

  if (!ConfigureHotkeys() || settings.Failed()) return false;
  // Live from here on, also while a start-up message below waits for the user.
  StartHotkeys();

  PairResult enabled = ReadStartupPair(settings, kEnabledRule);
  TrayAdd(101);
  corrupt |= enabled.repaired;
  if (enabled.value == u"2") mnuEnable_Click();
  if (settings.Failed()) return false;

  OpacityResult opacity = ReadOpacity(settings);
  corrupt |= opacity.repaired;
  s_.list.EnsureLoaded();
  FadeResult fade = ReadFadeSpeed(settings);
  corrupt |= fade.repaired;
  ApplyFader(opacity.percent, fade.speed, fade.noFade);
  return !settings.Failed();
}

void frmMain::ApplyHotkeys(std::optional<int> pasteKey,
                           const std::array<HotkeySlotChange, 4>& slots) {
  std::vector<std::pair<VBHotKey*, int32_t>> changes;
  if (pasteKey) changes.emplace_back(hkPaste_.get(), *pasteKey);
  for (size_t n = 0; n < slots.size(); ++n) {
    if (!slots[n].enabled) {
      hkFunc_[n]->StopHotkey();
    } else if (slots[n].vkey) {
      changes.emplace_back(hkFunc_[n].get(), *slots[n].vkey);
    }
  }
  VBHotKey::SetVKeys(changes);
}

void frmMain::ApplyFader(int opacity, int speed, bool noFade) {
  noFade_ = noFade;
  FaderSettings fader = s_.list.Fader1;
  fader.opacity = opacity;
  if (!noFade) fader.fadeIn = speed;  // "No Fade" leaves the speed as it was
  fader.fadeOut = fader.fadeIn;
  s_.list.SetFader(fader);
}

void frmMain::ResetAllSettings() {
  settings::WriteResetValues(s_.settings);
  if (!Enabled()) mnuEnable_Click();
  if (SingleMode()) mnuMode_Click();
  if (Purging()) mnuFormat_Click();
  caseOp_ = kCaseNone;
  caseRepaired_ = false;
  Render();
  // The hotkeys take the keys the reset just wrote.
  hkPaste_->SetVKey(settings::DefaultHotkeyVKey(-1));
  for (int i = 0; i < 4; ++i) hkFunc_[i]->SetVKey(settings::DefaultHotkeyVKey(i));
  StartHotkeys();
  if (trayAdded_) {
    TrayModify(101);
  } else {
    TrayAdd(101);
  }
  noFade_ = false;
  const int speed = settings::FadeSpeedFor(settings::key::Set_FS.defaultValue);
  s_.list.SetFader({settings::DefaultOpacity(), speed, speed});
  s_.settings.ClearFailure();
  s_.messages.Show(kUnknownText, kCorruptTitle, MsgIcon::Critical);
}

bool frmMain::ConfigureHotkeys() {
  using namespace settings;
  for (int n = 0; n < 4; ++n) {
    KeyCodeResult key = ReadHotkeyCode(s_.settings, n);
    if (key.tooLarge) return false;
    hkFunc_[n]->SetVKey(key.vkey);
    if (!ReadHotkeyEnabled(s_.settings, n)) hkFunc_[n]->StopHotkey();
  }
  KeyCodeResult paste = ReadHotkeyCode(s_.settings, -1);
  if (paste.tooLarge) return false;
  hkPaste_->SetVKey(paste.vkey);
  return true;
}

// Registered once the keys are known, so the design keys never collide with configured ones.
void frmMain::StartHotkeys() {
  if (!hkPaste_->Stopped()) hkPaste_->Start();
  for (auto& hotkey : hkFunc_)
    if (!hotkey->Stopped()) hotkey->Start();
}

void frmMain::Form_QueryUnload() { s_.view.CloseHelp(); }

void frmMain::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  s_.files.Delete(s_.programFolder + u"\\temp.tmp");
  s_.files.Delete(s_.programFolder + u"\\temp2.tmp");
  s_.list.ProgramEnding(iconBase_ == 0 && !noFade_);
  TrayDelete();
  hkPaste_->StopHotkey();
  for (auto& hotkey : hkFunc_) hotkey->StopHotkey();
  s_.view.UnloadWindows();
  s_.view.Quit();
}

}  // namespace mq
