#include "settings/frmSettings.h"

#include "settings/KeyTable.h"

namespace mq {

namespace {
using namespace settings;

constexpr TextView kActions[kActionCount] = {
    u"Enable",       u"Single Mode", u"Show List",  u"Purge Formatting", u"(No Change)",
    u"Standardize",  u"UPPER CASE",  u"lower case", u"Settings",         u"Help",
    u"About",        u"Exit",        u"Popup Menu"};
// What Action 2 shows for the actions that are not case operations.
constexpr TextView kFixedSecond[kActionCount] = {
    u"Disable", u"Multi Mode", u"Hide List", u"Preserve Formatting", u"", u"", u"", u"",
    u"Settings", u"Help", u"About", u"Exit", u"Popup Menu"};

// The letters that Windows (CXV) or many applications (the rest) bind to CTRL, with the
// command each one names.
constexpr TextView kBoundLetters = u"CXVBUISOPAZN";
constexpr TextView kBoundCommands[] = {
    u"Copy Selection", u"Cut Selection", u"Paste Clipboard", u"Bold Text",
    u"Underline Text", u"Italic Text",   u"Save File",       u"Open File",
    u"Print",          u"Select All Highlighted Text",       u"Undo",
    u"New Document"};
constexpr size_t kWindowsBound = 3;  // "CXV"
constexpr TextView kSpecial = u"!@#$%^&*()`~-_=+[{]};:,<.>/?\\|'\"\r\n";

constexpr TextView kInvalidTitle = u"Error: Hotkey combination invalid.";
constexpr TextView kSpecialText =
    u"Hotkeys can only be composed of standard letter or number keys. Please do not use "
    u"special characters or function keys (F1, F2, etc.).";
constexpr TextView kInUseTitle = u"Error: Hotkey combination in use.";
constexpr TextView kInUseText =
    u"You have already assigned a command to this kothey combination. Please select a "
    u"different hotkey.";
constexpr TextView kRestartTitle = u"Warning: Restart Marquill required.";
constexpr TextView kRestartText =
    u"This setting will take effect the next time Marquill starts. To enable this hotkey now, "
    u"please close Marquill and launch it again.";

Text KeyText(int vkey) { return Text(1, static_cast<char16_t>(vkey)); }
}  // namespace

void ComboModel::Fill(std::initializer_list<TextView> texts) {
  for (TextView t : texts) items.emplace_back(t);
}

void frmSettings::FillLists() {
  const std::initializer_list<TextView> lastUsed3[] = {
      {u"Last Used", u"Enabled", u"Disabled"},
      {u"Last Used", u"Single", u"Multi"},
      {u"Last Used", u"Preserve Formatting", u"Purge Formatting"}};
  cbEnable.Fill(lastUsed3[0]);
  cbMode.Fill(lastUsed3[1]);
  cbFormat.Fill(lastUsed3[2]);
  cbOp.Fill({u"Last Used", u"(No Change)", u"Standardize", u"UPPER CASE", u"lower case"});
  for (ComboModel* box : {&cbRC, &cbAction[0], &cbAction[1], &cbAction[2], &cbAction[3]})
    for (TextView t : kActions) box->items.emplace_back(t);
  cbPin.Fill({u"Last Used", u"Normal", u"Always On Top"});
  cbDel.Fill({u"Last Used", u"Delete Item", u"Move Item to End"});
  cbView.Fill({u"Last Used", u"Expanded", u"Condensed"});
  cbLstOp.Fill({u"Last Used", u"Standardize", u"UPPER CASE", u"lower case"});
  cbFadeSpd.Fill({u"No Fade", u"Gallop", u"Canter", u"Lope"});
}

void frmSettings::Form_Load() {
  Settings& st = s_.settings;
  FillLists();
  cbEnable.index = ReadDialogChoice(st, kDialogEnabled);
  cbMode.index = ReadDialogChoice(st, kDialogMode);
  cbFormat.index = ReadDialogChoice(st, kDialogFormat);
  cbOp.index = ReadDialogChoice(st, kDialogCase);
  SelectRC(ReadDialogActionCode(st, -1).action);
  if (s_.launch.IsAutoRunSet()) {
    SetChkAutoRun(true);
  } else if (s_.launch.StartupShortcutFound()) {
    ShortcutAutoRun = true;
    SetChkAutoRun(true);
  }
  LoadHotkeys();
  LoadListOptions();
  chkSize = st.ReadSetting(key::Set_Sz.name, key::Set_Sz.defaultValue) == u"1";
  if (!s_.xpClass) {
    sliOpacity = 100;
    sliOpacityEnabled = false;
    cbFadeSpd.index = 0;
    cbFadeSpd.enabled = false;
    transparencyUnavailable = true;
  }
}

void frmSettings::LoadHotkeys() {
  Settings& st = s_.settings;
  auto keyText = [&](int slot) {
    KeyCodeResult code = ReadHotkeyCode(st, slot);
    // No key below "!" can be typed into a box; such a code shows the slot's default.
    int vkey = code.tooLarge || code.vkey <= 0x20 ? DefaultHotkeyVKey(slot) : code.vkey;
    return KeyText(vkey);
  };
  for (int n = 0; n < 4; ++n) {
    txtHK[n + 1].text = keyText(n);
    HotkeyEnabledAtLoad[n] = ReadHotkeyEnabled(st, n);
    if (!HotkeyEnabledAtLoad[n]) SetChkHK(n, false);
  }
  txtHK[0].text = keyText(-1);
  for (int n = 0; n < 4; ++n) SelectAction(n, ReadDialogActionCode(st, n).action);
}

void frmSettings::LoadListOptions() {
  Settings& st = s_.settings;
  cbPin.index = ReadDialogChoice(st, kDialogPin);
  cbDel.index = ReadDialogChoice(st, kDialogDelete);
  cbView.index = ReadDialogChoice(st, kDialogView);
  cbLstOp.index = ReadDialogChoice(st, kDialogListCase);
  cbFadeSpd.index = ReadDialogChoice(st, kDialogFade);
  sliOpacity = ReadOpacity(st, u"x").percent;
}

void frmSettings::cmdTab_Click(int index) {
  tab = index;
  focusRequest = index == 0 ? Focus::cbEnable : index == 1 ? Focus::txtHK0 : Focus::cbPin;
}

void frmSettings::cmdOp_Click(int index) {
  if (index == 0) Save();
  if (index == 1) ResetDefaults();
  if (index == 2) closed = true;
}

void frmSettings::SelectRC(int index) {
  cbRC.index = index;
  cbRC_Click();
}

void frmSettings::SelectAction(int n, int index) {
  cbAction[n].index = index;
  cbAction_Click(n);
}

void frmSettings::cbRC_Click() {
  FillSecondAction(cbRC, cbRC2, s_.settings.ReadSetting(key::Set_RC_Op.name, u"12"));
}

void frmSettings::cbAction_Click(int n) {
  TextView name = HotkeyKey(n, HotkeyField::Op).name;
  FillSecondAction(cbAction[n], cbAction2[n], s_.settings.ReadSetting(name, u"0"));
  // A row that is switched off keeps its Action 2 box off too.
  if (!chkHK[n]) cbAction2[n].enabled = false;
}

void frmSettings::FillSecondAction(const ComboModel& action, ComboModel& second,
                                   TextView storedCode) {
  int index = action.index;
  if (index < 4 || index > 7) {
    SetFixedSecondAction(second, index >= 0 && index < kActionCount ? kFixedSecond[index] : u"");
    return;
  }
  FillCaseChoices(second);
  second.index = index - 4;  // Action 2 starts equal to Action 1
  if (storedCode.size() == 2 && storedCode[0] == u'0' + index) {
    int choice = storedCode[1] - u'0';
    if (choice >= 0 && choice <= 3) second.index = choice;
  }
}

void frmSettings::SetFixedSecondAction(ComboModel& second, TextView item) {
  second.Clear();
  second.items.emplace_back(item);
  second.index = 0;
  second.enabled = false;
}

void frmSettings::FillCaseChoices(ComboModel& second) {
  second.Clear();
  second.Fill({u"(No Change)", u"Standardize", u"UPPER CASE", u"lower case"});
  second.enabled = true;
}

void frmSettings::txtHK_KeyPress(int index, char16_t typed) {
  char16_t ch = ToUpperAscii(Text(1, typed))[0];
  size_t bound = kBoundLetters.find(ch);
  if (bound != TextView::npos && bound < kWindowsBound) {
    s_.messages.Show(u"Microsoft Windows has bound the hotkey combination CTRL+" + Text(1, ch) +
                         u" to the command " + Text(kBoundCommands[bound]) +
                         u". This hotkey cannot be used by Marquill.",
                     kInvalidTitle, MsgIcon::Critical);
    return;
  }
  if (bound != TextView::npos) {
    MsgResult answer = s_.messages.Show(
        u"Many applications bind the hotkey combination CTRL+" + Text(1, ch) + u" to the command " +
            Text(kBoundCommands[bound]) + u". Are you sure you want to use this hotkey combination?",
        u"Warning: Hotkey combination used.", MsgIcon::Exclamation, MsgButtons::YesNo);
    if (answer != MsgResult::Yes) return;
  }
  // Space, backspace and the other control characters are no letter or number keys either.
  if (kSpecial.find(ch) != TextView::npos || ch <= 0x20 || ch == 0x7F) {
    s_.messages.Show(kSpecialText, kInvalidTitle, MsgIcon::Critical);
    return;
  }
  if (KeyInUse(index, ch)) {
    s_.messages.Show(kInUseText, kInUseTitle, MsgIcon::Critical);
    return;
  }
  txtHK[index].text = Text(1, ch);
}

bool frmSettings::KeyInUse(int index, char16_t ch) const {
  for (int i = 0; i < static_cast<int>(txtHK.size()); ++i)
    if (i != index && txtHK[i].text == Text(1, ch)) return true;
  return false;
}

void frmSettings::SetChkHK(int n, bool checked) {
  if (chkHK[n] == checked) return;
  chkHK[n] = checked;
  chkHK_Click(n);
}

void frmSettings::chkHK_Click(int n) {
  bool on = chkHK[n];
  txtHK[n + 1].enabled = on;
  cbAction[n].enabled = on;
  rowColor[n] = on ? kRowOn : kRowOff;
  if (!on) {
    cbAction2[n].enabled = false;
    return;
  }
  // A case action has choices; the other actions' single item stays greyed.
  cbAction2[n].enabled = cbAction2[n].items.size() > 1;
  if (!HotkeyEnabledAtLoad[n])
    s_.messages.Show(kRestartText, kRestartTitle, MsgIcon::Information);
}

void frmSettings::SetChkAutoRun(bool checked) {
  if (chkAutoRun == checked) return;
  chkAutoRun = checked;
  chkAutoRun_Click();
}

void frmSettings::chkAutoRun_Click() {
  if (chkAutoRun || !ShortcutAutoRun) return;
  s_.messages.Show(
      u"As Marquill could not access the Windows Registry, the Run at Startup option was still "
      u"set, but in such a way that this program cannot remove the setting. You can manually "
      u"turn off the setting by clicking Start | Programs | StartUp, then look for the label "
      u"\"marquill\". Right-click on the label and select \"Delete\" from the menu that pops up "
      u"under your mouse cursor.",
      u"Cannot automatically remove Start Up setting.", MsgIcon::Information);
  SetChkAutoRun(true);
}

}  // namespace mq
