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
  hkPaste_ = std::make_unique<VBHotKey>(s_.hotkeys, s_.hotkeyControls, CtrlKeyDesign(49));
  for (int i = 0; i < 4; ++i)
    hkFunc_[i] = std::make_unique<VBHotKey>(s_.hotkeys, s_.hotkeyControls, CtrlKeyDesign(50 + i));
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
  item(mnuPopUp, u"mnuPopUp", u"PopUp", 0);
  item(mnuSide, u"mnuSide", u"sidebar", 0);
  item(mnuEnVal, u"mnuEnVal", u"-{Raised}[ENABLED]", 0);
  item(mnuEnable, u"mnuEnable", u"Disable Me{IMG:I1}", kCmdEnable);
  item(mnuMode, u"mnuMode", u"To Single Mode", kCmdMode);
  item(mnuBar3, u"mnuBar3", u"-", 0);
  item(mnuList, u"mnuList", u"Show Clip List{IMG:I6|DEFAULT}", kCmdList);
  item(mnuBar1, u"mnuBar1", u"-", 0);
  item(mnuFormat, u"mnuFormat", u"Purge Formatting", kCmdFormat);
  item(mnuOpHead, u"mnuOpHead", u"CaseChange", 0);
  item(mnuOp_No, u"mnuOp_No", u"(No Change)", kCmdOpNo);
  item(mnuOp_St, u"mnuOp_St", u"Standardize", kCmdOpSt);
  item(mnuOp_UC, u"mnuOp_UC", u"UPPER CASE", kCmdOpUC);
  item(mnuOp_lc, u"mnuOp_lc", u"lower case", kCmdOplc);
  item(mnuBar2, u"mnuBar2", u"-", 0);
  item(mnuSettings, u"mnuSettings", u"Settings{IMG:I3}", kCmdSettings);
  item(mnuHelp, u"mnuHelp", u"Help{IMG:I7}", kCmdHelp);
  item(mnuAbout, u"mnuAbout", u"About{IMG:I4}", kCmdAbout);
  item(mnuExit, u"mnuExit", u"Exit{IMG:I5}", kCmdExit);
  mnuOpHead.items = {&mnuOp_No, &mnuOp_St, &mnuOp_UC, &mnuOp_lc};
  mnuPopUp.items = {&mnuSide, &mnuEnVal, &mnuEnable, &mnuMode,  &mnuBar3,
                    &mnuList, &mnuBar1,  &mnuFormat, &mnuOpHead, &mnuBar2,
                    &mnuSettings, &mnuHelp, &mnuAbout, &mnuExit};
}

bool frmMain::Enabled() const { return Contains(mnuEnable.caption, u"Disable"); }

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
  menuStyle.fontName = u"Tahoma";
  mnuSide.caption = SidebarCaption();
  OsVersionText = mq::OsVersionText(s_.os);
  IconBase = IconBaseFor(s_.os);
  ModeText = u"Multi ";

  bool corrupt = false;
  s_.settings.ClearFailure();
  if (ReadStartupSettings(corrupt)) {
    if (corrupt) s_.messages.Show(kCorruptText, kCorruptTitle, MsgIcon::Exclamation);
  } else {
    ResetAllSettings();
  }
  return true;
}

// Start-up steps 8 to 13. False when the settings store failed underneath them.
bool frmMain::ReadStartupSettings(bool& corrupt) {
  using namespace settings;
  Settings& settings = s_.settings;

  PairResult op = ReadStartupPair(settings, kCaseRule);
  SetCaseState(static_cast<int16_t>(LeadingNumber(op.value) - 1));
  if (op.repaired) {
    mnuOpHead.caption = u"CaseChange (No)";
    corrupt = true;
  }
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

void frmMain::ApplyFader(int opacity, int speed, bool noFade) {
  NoFade = noFade;
  FaderSettings fader = s_.list.Fader1;
  fader.opacity = opacity;
  if (!noFade) fader.fadeIn = speed;  // "No Fade" leaves the speed as it was
  fader.fadeOut = fader.fadeIn;
  s_.list.SetFader(fader);
}

void frmMain::ResetAllSettings() {
  settings::WriteResetValues(s_.settings);
  if (!Enabled()) mnuEnable_Click();
  if (SingleMode) mnuMode_Click();
  if (Purging()) mnuFormat_Click();
  SetCaseState(kCaseNone);
  ModeText = u"Multi ";
  // The hotkeys take the keys the reset just wrote.
  hkPaste_->SetVKey(49);
  for (int i = 0; i < 4; ++i) hkFunc_[i]->SetVKey(50 + i);
  StartHotkeys();
  if (trayAdded_) {
    TrayModify(101);
  } else {
    TrayAdd(101);
  }
  NoFade = false;
  s_.list.SetFader({75, 2, 2});
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
  Ending = true;
  TrayDelete();
  hkPaste_->StopHotkey();
  for (auto& hotkey : hkFunc_) hotkey->StopHotkey();
  s_.view.UnloadWindows();
  s_.view.Quit();
}

}  // namespace mq
