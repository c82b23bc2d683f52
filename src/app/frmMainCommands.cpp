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
  const char16_t* header;
  const char16_t* tip;
};
constexpr CaseEntry kCases[4] = {
    {u"CaseChange (None)", u"No"},
    {u"CaseChange (St)", u"St"},
    {u"CaseChange (UC)", u"UC"},
    {u"CaseChange (lc)", u"lc"},
};

int16_t ValidCase(int16_t code) { return code < kCaseNone || code > kCaseLower ? kCaseNone : code; }
}  // namespace

// ---- State to captions ----------------------------------------------------------------------

const MenuItem& frmMain::mnuOp(int16_t caseOp) const {
  const MenuItem* items[4] = {&mnuOp_No_, &mnuOp_St_, &mnuOp_UC_, &mnuOp_lc_};
  return *items[ValidCase(caseOp)];
}

void frmMain::Render() {
  caseOp_ = ValidCase(caseOp_);
  mnuEnVal_.caption = enabled_ ? u"-{Raised}[ENABLED]" : u"-{Raised}[DISABLED]";
  menuStyle_.raisedLabelColor = enabled_ ? kGreen : kRed;
  mnuEnable_.caption = CaptionWithImage(mnuEnable_.caption, enableImage_);
  mnuEnable_.caption = CaptionWithText(mnuEnable_.caption, enabled_ ? u"Disable Me" : u"Enable Me");
  mnuFormat_.enabled = enabled_;
  mnuOpHead_.enabled = enabled_;

  mnuMode_.caption = singleMode_ ? u"To Multi Mode" : u"To Single Mode";
  mnuList_.visible = !singleMode_;
  mnuBar1_.visible = !singleMode_;
  modeText_ = singleMode_ ? u"Single " : u"Multi ";
  mnuList_.caption = CaptionWithText(mnuList_.caption, listShown_ ? u"Hide Clip List" : u"Show Clip List");

  mnuFormat_.checked = purge_;
  formatText_ = purge_ ? u"Purge " : u"";

  MenuItem* cases[4] = {&mnuOp_No_, &mnuOp_St_, &mnuOp_UC_, &mnuOp_lc_};
  for (int i = 0; i < 4; ++i) cases[i]->checked = i == caseOp_;
  mnuOpHead_.caption = caseRepaired_ ? u"CaseChange (No)" : kCases[caseOp_].header;
  caseText_ = kCases[caseOp_].tip;
}

// ---- Tray icon ----------------------------------------------------------------------------

Text frmMain::TrayTip() const {
  return u"Marquill (" + modeText_ + formatText_ + caseText_ + u")";
}

void frmMain::TrayAdd(int n) {
  s_.tray.Add(n + iconBase_, TrayTip());
  trayAdded_ = true;
}

void frmMain::TrayModify(int n) {
  // Before the icon is added there is nothing to modify; the add takes the current tip.
  if (trayAdded_) s_.tray.Modify(n + iconBase_, TrayTip());
}

void frmMain::TrayDelete() {
  if (trayAdded_) s_.tray.Delete();
  trayAdded_ = false;
}

void frmMain::RefreshTrayIcon() { TrayModify(enabled_ ? 101 : 102); }

void frmMain::OnTrayNotify(uint32_t mouseMessage) {
  if (mouseMessage == kLeftButtonDown) {
    s_.view.PopupMenu();
  } else if (mouseMessage == kRightButtonDown) {
    const settings::Key& key = settings::key::Set_RC_Op;
    Text code = s_.settings.ReadSetting(key.name, u"x");
    if (code == u"x") {
      code = key.defaultValue;
      s_.settings.WriteSetting(key.name, code);
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
  enabled_ = !enabled_;
  s_.settings.WriteSetting(settings::key::Cur_En.name, enabled_ ? u"1" : u"2");
  TrayModify(enabled_ ? 101 : 102);
  enableImage_ = enabled_ ? u"i1" : u"i2";
  Render();
  frmFlash_.picIconVisible[0] = enabled_;
  frmFlash_.picIconVisible[1] = !enabled_;
  frmFlash_.lblOpVisible = false;
}

void frmMain::mnuMode_Click() {
  singleMode_ = !singleMode_;
  s_.settings.WriteSetting(settings::key::Cur_Mo.name, singleMode_ ? u"1" : u"2");
  Render();
  if (singleMode_) {
    s_.clip.ClearSelfWrite();
    if (listShown_) mnuList_Click();
  }
  RefreshTrayIcon();
}

void frmMain::mnuList_Click() {
  // Fading needs layered windows (XP-class) and may be switched off.
  bool fade = iconBase_ == 0 && !noFade_;
  listShown_ = !listShown_;
  if (listShown_) {
    s_.list.Show(fade);
  } else {
    s_.list.Hide(fade);
  }
  Render();
}

void frmMain::mnuFormat_Click() {
  purge_ = !purge_;
  s_.settings.WriteSetting(settings::key::Cur_Fm.name, purge_ ? u"2" : u"1");
  Render();
  RefreshTrayIcon();
}

void frmMain::SelectCase(int16_t code) {
  caseOp_ = ValidCase(code);
  caseRepaired_ = false;
  Render();
  s_.settings.WriteSetting(settings::key::Cur_Op.name, ToDecimal(caseOp_ + 1));
  if (caseOp_ != kCaseNone && singleMode_) s_.clip.RewritePlainText(caseOp_);
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

void frmMain::mnuAbout_Click() { s_.view.ShowAbout(osVersionText_); }

void frmMain::mnuExit_Click() {
  Form_QueryUnload();
  Form_Unload();
}

// ---- Notices and action codes -------------------------------------------------------------

void frmMain::ShowNotice(int code) {
  static constexpr const char16_t* kCaseNotices[4] = {u"(No Change)", u"Standardize",
                                                      u"UPPER CASE", u"lower case"};
  frmFlash_.picIconVisible[0] = frmFlash_.picIconVisible[1] = false;
  if (code == 0) {
    frmFlash_.lblOpCaption = purge_ ? u"De-Format" : u"Format";
  } else if (code >= 1 && code <= 4) {
    frmFlash_.lblOpCaption = kCaseNotices[code - 1];
  } else if (code == 5) {
    frmFlash_.lblOpCaption = singleMode_ ? u"Single" : u"Multi";
  }
  frmFlash_.lblOpVisible = true;
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
      if (caseOp_ != target) {
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
  const settings::Key& key = settings::HotkeyKey(index, settings::HotkeyField::Op);
  Text code = s_.settings.ReadSetting(key.name, u"x");
  if (code == u"x") {
    code = key.defaultValue;
    s_.settings.WriteSetting(key.name, code);
  }
  RunActionCode(code);
}

void frmMain::hkPaste_HotkeyPressed() {
  if (s_.list.lstClip.ListCount() > 0) s_.clip.PasteFirstEntry(s_.list.DeleteOnPaste);
}

void frmMain::cpFlag_ClipboardChanged() {
  if (!enabled_ || s_.clip.SelfWrite()) return;
  if (!singleMode_) {
    s_.clip.AddClipEntry(purge_, caseOp_);
  } else {
    s_.clip.RewriteInPlace(purge_, caseOp_);
  }
}

}  // namespace mq
