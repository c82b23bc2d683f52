// frmSettings: "&Reset Defaults", "&Save && Exit" and launch at log-on.
#include "settings/KeyTable.h"
#include "settings/frmSettings.h"

namespace mq {

namespace {
using namespace settings;

int DefaultIndex(const Key& k) { return static_cast<int>(LeadingNumber(k.defaultValue)); }

Text Index(const ComboModel& box) { return ToDecimal(box.index < 0 ? 0 : box.index); }

std::optional<int> KeyCode(const KeyBoxModel& box) {
  if (box.text.empty()) return std::nullopt;
  return static_cast<int>(ToUpperAscii(box.text.substr(0, 1))[0]);
}

Text ActionText(const ComboModel& action, const ComboModel& second) {
  return ActionCodeText(action.index < 0 ? 0 : action.index, second.index);
}
}  // namespace

void frmSettings::ResetDefaults() {
  cbEnable.index = DefaultIndex(key::Set_En);
  cbMode.index = DefaultIndex(key::Set_Mo);
  cbFormat.index = DefaultIndex(key::Set_Fm);
  cbOp.index = DefaultIndex(key::Set_Op);
  SelectRC(DefaultIndex(key::Set_RC_Op));
  SetChkAutoRun(false);
  for (int n = 0; n < 4; ++n) {
    SetChkHK(n, true);
    txtHK[n + 1].text = Text(1, static_cast<char16_t>(DefaultHotkeyVKey(n)));
    ActionCode code;
    ParseActionCode(DefaultActionCode(n), code);
    SelectAction(n, code.action);
    if (code.second >= 0) cbAction2[n].index = code.second;
  }
  txtHK[0].text = Text(1, static_cast<char16_t>(DefaultHotkeyVKey(-1)));
  cbPin.index = DefaultIndex(key::Set_Pn);
  cbDel.index = 0;  // "Last Used": the dialog's default, unlike the reset after a failure
  cbView.index = DefaultIndex(key::Set_Vu);
  cbLstOp.index = DefaultIndex(key::Set_LO);
  // Without transparency the fade and opacity controls stay as the load left them.
  if (s_.xpClass) {
    cbFadeSpd.index = DefaultIndex(key::Set_FS);
    sliOpacity = DefaultOpacity();
  }
  chkSize = key::Set_Sz.defaultValue == u"1";
  s_.effects.ClearNoFade();
}

void frmSettings::Save() {
  Settings& st = s_.settings;
  st.WriteSetting(key::Set_En.name, Index(cbEnable));
  st.WriteSetting(key::Set_Mo.name, Index(cbMode));
  st.WriteSetting(key::Set_Fm.name, Index(cbFormat));
  st.WriteSetting(key::Set_Op.name, Index(cbOp));
  st.WriteSetting(key::Set_RC_Op.name, ActionText(cbRC, cbRC2));
  SaveLaunchAtLogon();
  SaveHotkeys();
  st.WriteSetting(key::Set_Pn.name, Index(cbPin));
  st.WriteSetting(key::Set_Dl.name, Index(cbDel));
  st.WriteSetting(key::Set_Vu.name, Index(cbView));
  st.WriteSetting(key::Set_LO.name, Index(cbLstOp));
  st.WriteSetting(key::Set_FS.name, Index(cbFadeSpd));
  st.WriteSetting(key::Set_FO.name, ToDecimal(sliOpacity));
  st.WriteSetting(key::Set_Sz.name, chkSize ? u"1" : u"0");
  Text fade = Index(cbFadeSpd);
  s_.effects.ApplyFader(sliOpacity, FadeSpeedFor(fade), fade == u"0");
  closed = true;
}

void frmSettings::SaveHotkeys() {
  Settings& st = s_.settings;
  std::array<HotkeySlotChange, 4> slots;
  for (int n = 0; n < 4; ++n) {
    st.WriteSetting(HotkeyKey(n, HotkeyField::Op).name, ActionText(cbAction[n], cbAction2[n]));
    // An emptied box keeps the slot's stored key.
    std::optional<int> code = KeyCode(txtHK[n + 1]);
    if (code) st.WriteSetting(HotkeyKey(n, HotkeyField::Ky).name, ToDecimal(*code));
    slots[n] = {chkHK[n], code};
    st.WriteSetting(HotkeyKey(n, HotkeyField::En).name, chkHK[n] ? u"1" : u"0");
  }
  std::optional<int> paste = KeyCode(txtHK[0]);
  if (paste) st.WriteSetting(HotkeyKey(-1, HotkeyField::Ky).name, ToDecimal(*paste));
  s_.effects.ApplyHotkeys(paste, slots);
}

void frmSettings::SaveLaunchAtLogon() {
  if (s_.launch.SetAutoRun(chkAutoRun) || !chkAutoRun) return;
  MsgResult answer = s_.messages.Show(
      u"Problem interfacing with the Windows Registry while trying to set the Start Up option. "
      u"Perhaps your Administrator has disabled access to the system registry. \r\n\r\n"
      u"Would you like Marquill to try to set the Autostart on Windows Start Up option another "
      u"way? Marquill will not be able to undo this option automatically using this alternate "
      u"method, but you can undo it manually very easily. A link to the program will be placed "
      u"in your StartUp folder. To delete the link, click Start | Programs | StartUp then "
      u"right-click on the \"marquill\" label and select \"Delete\" from the menu that pops up "
      u"under your mouse cursor.\r\n\r\nShall I proceed to try this alternate method?",
      u"Error: Cannot access System Registry.", MsgIcon::Critical, MsgButtons::YesNo);
  if (answer == MsgResult::Yes) {
    AutoRunByShortcut();
  } else {
    SetChkAutoRun(false);
  }
}

void frmSettings::AutoRunByShortcut() {
  constexpr TextView kFailedTitle = u"Error: Autorun unsuccessful.";
  if (!s_.launch.ExecutableExists()) {
    s_.messages.Show(
        u"Cannot identify program location. Alternate Autorun method was not successful.",
        kFailedTitle, MsgIcon::Critical);
    return;
  }
  if (s_.launch.CreateStartupShortcut()) {
    s_.messages.Show(u"Alternate Autorun method successful!", u"Autorun success.",
                     MsgIcon::Exclamation);
  } else {
    s_.messages.Show(u"Alternate Autorun method was not successful.", kFailedTitle,
                     MsgIcon::Information);
  }
}

}  // namespace mq
