#include "listwindow/frmList.h"

#include "settings/KeyTable.h"

namespace mq {

void frmList::EnsureLoaded() {
  if (loaded_) return;
  loaded_ = true;
  LoadOptions();
}

void frmList::LoadOptions() {
  using namespace settings;
  Text cur = settings_.ReadSetting(key::Cur_LO.name, u"x");
  if (cur != u"0" && cur != u"1" && cur != u"2")
    settings_.WriteSetting(key::Cur_LO.name, key::Cur_LO.defaultValue);

  WindowOption caseBox = ReadWindowOption(settings_, kListCaseRule);
  if (caseBox.set == u"0") {
    cbOpIndex = static_cast<int>(LeadingNumber(caseBox.cur));
    if (cbOpIndex < 0 || cbOpIndex > 2) cbOpIndex = 0;
  } else {
    cbOpIndex = static_cast<int>(LeadingNumber(caseBox.set)) - 1;
  }

  WindowOption onPaste = ReadWindowOption(settings_, kDeleteOnPasteRule);
  bool deleteOnPaste = onPaste.set == u"1" || (onPaste.set == u"0" && onPaste.cur == u"1");
  if (deleteOnPaste) {
    DeleteOnPaste = true;
    chkMenu[1] = true;
    chkMenuTip[1] = u"On paste, move pasted item to end of queue";
  }

  WindowOption view = ReadWindowOption(settings_, kViewRule);
  if (view.set == u"2" || (view.set == u"0" && view.cur == u"1")) {
    chkMenu[0] = true;
    chkMenuTip[0] = u"Expanded view";
    settings_.WriteSetting(key::Cur_Vu.name, u"1");
  }

  WindowOption pin = ReadWindowOption(settings_, kPinRule);
  if (pin.set == u"2" || (pin.set == u"0" && pin.cur == u"1")) {
    chkMenu[2] = true;
    chkMenuTip[2] = u"Allow window to be hidden by other windows";
    Caption = u"Clip List (Top)";
    settings_.WriteSetting(key::Cur_Pn.name, u"1");
  }
  if (view_) view_->StateChanged();
}

void frmList::Show(bool fade) {
  EnsureLoaded();
  visible_ = true;
  if (view_) view_->Show(fade);
}

void frmList::Hide(bool fade) {
  visible_ = false;
  if (view_) view_->Hide(fade);
}

void frmList::ProgramEnding() {
  ending_ = true;
  if (view_) view_->AllowClose();
}

void frmList::SetFader(const FaderSettings& fader) {
  EnsureLoaded();
  Fader1 = fader;
  if (view_) view_->StateChanged();
}

}  // namespace mq
