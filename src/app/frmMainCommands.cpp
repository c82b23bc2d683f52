// The tray icon, the tray menu's commands, the notices and the action codes.
#include "app/MenuCaptions.h"
#include "app/frmMain.h"
#include "settings/KeyTable.h"

namespace mq {

namespace {
constexpr uint32_t kLeftButtonDown = 0x0201;
constexpr uint32_t kRightButtonDown = 0x0204;
constexpr uint32_t kRed = Rgb(208, 0, 0);
constexpr uint32_t kGreen = Rgb(0, 160, 0);

struct CaseEntry {
  MenuItem frmMain::*item;
  const char16_t* header;
  const char16_t* tip;
};
constexpr CaseEntry kCases[4] = {
    {&frmMain::mnuOp_No, u"CaseChange (None)", u"No"},
    {&frmMain::mnuOp_St, u"CaseChange (St)", u"St"},
    {&frmMain::mnuOp_UC, u"CaseChange (UC)", u"UC"},
    {&frmMain::mnuOp_lc, u"CaseChange (lc)", u"lc"},
};
}  // namespace

// ---- Tray icon ----------------------------------------------------------------------------

Text frmMain::TrayTip() const { return u"Marquill (" + ModeText + FormatText + CaseText + u")"; }

void frmMain::TrayAdd(int n) {
  s_.tray.Add(n + IconBase, TrayTip());
  trayAdded_ = true;
}

void frmMain::TrayModify(int n) {
  // Before the icon is added there is nothing to modify; the add takes the current tip.
  if (trayAdded_) s_.tray.Modify(n + IconBase, TrayTip());
}

void frmMain::TrayDelete() {
  if (trayAdded_) s_.tray.Delete();
  trayAdded_ = false;
}

void frmMain::RefreshTrayIcon() { TrayModify(Contains(mnuEnVal.caption, u"EN") ? 101 : 102); }

void frmMain::OnTrayNotify(uint32_t mouseMessage) {
  if (mouseMessage == kLeftButtonDown) {
    s_.view.PopupMenu();
  } else if (mouseMessage == kRightButtonDown) {
    Text code = s_.settings.ReadSetting(u"Set_RC_Op", u"x");
    if (code == u"x") {
      code = u"12";
      s_.settings.WriteSetting(u"Set_RC_Op", code);
    }
    RunActionCode(code);
  }
}

// ---- Commands -----------------------------------------------------------------------------

void frmMain::RunMenuCommand(int command) {
  switch (command) {
    case kCmdEnable: mnuEnable_Click(); break;
    case kCmdMode: mnuMode_Click(); break;
    case kCmdList: mnuList_Click(); break;
    case kCmdFormat: mnuFormat_Click(); break;
    case kCmdOpNo: mnuOp_No_Click(); break;
    case kCmdOpSt: mnuOp_St_Click(); break;
    case kCmdOpUC: mnuOp_UC_Click(); break;
    case kCmdOplc: mnuOp_lc_Click(); break;
    case kCmdSettings: mnuSettings_Click(); break;
    case kCmdHelp: mnuHelp_Click(); break;
    case kCmdAbout: mnuAbout_Click(); break;
    case kCmdExit: mnuExit_Click(); break;
    default: break;
  }
}

void frmMain::mnuEnable_Click() {
  bool disabling = Contains(mnuEnable.caption, u"Disable");
  mnuFormat.enabled = !disabling;
  mnuOpHead.enabled = !disabling;
  s_.settings.WriteSetting(u"Cur_En", disabling ? u"2" : u"1");
  TrayModify(disabling ? 102 : 101);
  mnuEnable.caption = CaptionWithImage(mnuEnable.caption, disabling ? u"i2" : u"i1");
  mnuEnable.caption = CaptionWithText(mnuEnable.caption, disabling ? u"Enable Me" : u"Disable Me");
  menuStyle.raisedLabelColor = disabling ? kRed : kGreen;
  mnuEnVal.caption = disabling ? u"-{Raised}[DISABLED]" : u"-{Raised}[ENABLED]";
  frmFlash.picIconVisible[0] = !disabling;
  frmFlash.picIconVisible[1] = disabling;
  frmFlash.lblOpVisible = false;
}

void frmMain::mnuMode_Click() {
  if (mnuMode.caption != u"To Single Mode") {
    mnuMode.caption = u"To Single Mode";
    ModeText = u"Multi ";
    mnuList.visible = true;
    mnuBar1.visible = true;
    s_.settings.WriteSetting(u"Cur_Mo", u"2");
  } else {
    mnuMode.caption = u"To Multi Mode";
    ModeText = u"Single ";
    mnuList.visible = false;
    mnuBar1.visible = false;
    s_.clip.SelfWrite = false;
    s_.settings.WriteSetting(u"Cur_Mo", u"1");
    if (Contains(mnuList.caption, u"Hide")) mnuList_Click();
  }
  SingleMode = !SingleMode;
  RefreshTrayIcon();
}

void frmMain::mnuList_Click() {
  // Fading needs layered windows (XP-class) and may be switched off.
  bool fade = IconBase == 0 && !NoFade;
  if (Contains(mnuList.caption, u"Show")) {
    s_.list.Show(fade);
    mnuList.caption = CaptionWithText(mnuList.caption, u"Hide Clip List");
  } else {
    s_.list.Hide(fade);
    mnuList.caption = CaptionWithText(mnuList.caption, u"Show Clip List");
  }
}

void frmMain::mnuFormat_Click() {
  mnuFormat.checked = !mnuFormat.checked;
  s_.settings.WriteSetting(u"Cur_Fm", mnuFormat.checked ? u"2" : u"1");
  FormatText = mnuFormat.checked ? u"Purge " : u"";
  RefreshTrayIcon();
}

void frmMain::SetCaseState(int16_t code) {
  if (code < kCaseNone || code > kCaseLower) code = kCaseNone;
  CaseOp = code;
  for (int i = 0; i < 4; ++i) (this->*kCases[i].item).checked = i == code;
  mnuOpHead.caption = kCases[code].header;
  CaseText = kCases[code].tip;
}

void frmMain::SelectCase(int16_t code) {
  SetCaseState(code);
  s_.settings.WriteSetting(u"Cur_Op", ToDecimal(code + 1));
  if (code != kCaseNone && SingleMode) s_.clip.RewritePlainText(code);
  RefreshTrayIcon();
}

void frmMain::mnuSettings_Click() { s_.view.ShowSettings(); }

void frmMain::mnuHelp_Click() {
  Text path = s_.programFolder + u"\\mq2_help.chm";
  Text error;
  if (!s_.files.Length(path)) {
    s_.messages.Show(u"The help file \"" + path + u"\" could not be found.",
                     u"Error: Help file missing", MsgIcon::Exclamation);
  } else if (!s_.view.OpenHelp(path, u"main", error)) {
    s_.messages.Show(u"The help file \"" + path + u"\" could not be opened. " + error,
                     u"Error: Help unavailable", MsgIcon::Exclamation);
  }
}

void frmMain::mnuAbout_Click() { s_.view.ShowAbout(OsVersionText); }

void frmMain::mnuExit_Click() {
  Form_QueryUnload();
  Form_Unload();
}

// ---- Notices and action codes -------------------------------------------------------------

void frmMain::ShowNotice(int code) {
  static constexpr const char16_t* kCaseNotices[4] = {u"(No Change)", u"Standardize",
                                                      u"UPPER CASE", u"lower case"};
  frmFlash.picIconVisible[0] = frmFlash.picIconVisible[1] = false;
  if (code == 0) {
    frmFlash.lblOpCaption = mnuFormat.checked ? u"De-Format" : u"Format";
  } else if (code >= 1 && code <= 4) {
    frmFlash.lblOpCaption = kCaseNotices[code - 1];
  } else if (code == 5) {
    frmFlash.lblOpCaption = SingleMode ? u"Single" : u"Multi";
  }
  frmFlash.lblOpVisible = true;
  ShowFlash();
}

void frmMain::SelectCaseByDigit(TextView digit) {
  if (digit.size() != 1 || digit[0] < u'0' || digit[0] > u'3') return;
  int16_t code = static_cast<int16_t>(digit[0] - u'0');
  SelectCase(code);
  ShowNotice(code + 1);
}

void frmMain::RunActionCode(TextView code) {
  if (code.empty()) return;
  char16_t c1 = code.front(), c2 = code.back();
  switch (c1) {
    case u'0':
      mnuEnable_Click();
      ShowFlash();
      break;
    case u'1':
      if (code.size() == 1) {
        mnuMode_Click();
        ShowNotice(5);
      } else if (c2 == u'0') {
        mnuAbout_Click();
      } else if (c2 == u'1') {
        mnuExit_Click();
      } else if (c2 == u'2') {
        s_.view.PopupMenu();
      }
      break;
    case u'2':
      mnuList_Click();
      break;
    case u'3':
      mnuFormat_Click();
      ShowNotice(0);
      break;
    case u'4': case u'5': case u'6': case u'7': {
      int16_t target = static_cast<int16_t>(c1 - u'4');
      if (!(this->*kCases[target].item).checked) {
        SelectCase(target);
        ShowNotice(target + 1);
      } else {
        SelectCaseByDigit(TextView(&c2, 1));
      }
      break;
    }
    case u'8':
      mnuSettings_Click();
      break;
    case u'9':
      mnuHelp_Click();
      break;
    default:
      break;
  }
}

void frmMain::hkFunc_HotkeyPressed(int index) {
  Text key = settings::HotkeyKey(index, u"_Op");
  Text code = s_.settings.ReadSetting(key, u"x");
  if (code == u"x") {
    code = Text(settings::DefaultActionCode(index));
    s_.settings.WriteSetting(key, code);
  }
  RunActionCode(code);
}

void frmMain::hkPaste_HotkeyPressed() {
  if (s_.list.lstClip.ListCount() > 0) s_.clip.PasteFirstEntry(s_.list.DeleteOnPaste);
}

void frmMain::cpFlag_ClipboardChanged() {
  if (!Enabled() || s_.clip.SelfWrite) return;
  if (!SingleMode) {
    s_.clip.AddClipEntry(Purging(), CaseOp);
  } else {
    s_.clip.RewriteInPlace(Purging(), CaseOp);
  }
}

}  // namespace mq
