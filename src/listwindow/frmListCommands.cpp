// The clip list window's commands on the selected entry and on the whole list, and its
// toggles.
#include "clipboard/CaseOps.h"
#include "clipboard/ClipOperations.h"
#include "listwindow/frmList.h"
#include "settings/KeyTable.h"

namespace mq {

namespace {
constexpr int kDeleteKey = 46;
}

void frmList::cmdOp_Click(int index) {
  if (!deps_) return;
  int row = lstClip.ListIndex();
  if (row < 0) return;
  switch (index) {
    case 0: Delete(row); break;
    case 1: Duplicate(row); break;
    case 2: Deformat(row); break;
    case 3: Convert(row); break;
    default: return;
  }
  if (index != 0 && lstClip.ListCount() > 0) lstClip.SetListIndex(row);
}

void frmList::Delete(int row) {
  deps_->store.DeleteRow(row);
  // The selection moves to the row above; after row 0 nothing stays selected.
  if (lstClip.ListCount() > 0) lstClip.SetListIndex(row - 1);
}

void frmList::Duplicate(int row) {
  if (deps_->store.DuplicateRow(row) < 0)
    deps_->messages.Show(FullMessageText(), kFullMessageTitle, MsgIcon::Exclamation);
}

void frmList::Deformat(int row) {
  ClipStore& store = deps_->store;
  const ClipEntry& entry = store.EntryAtRow(row);
  if (!entry.IsRich()) return;
  RichTextBox& box = deps_->rtbFormat;
  if (!box.LoadRtf(entry.rtf)) return;
  Text plain = box.PlainText();
  box.Clear();
  // An entry must keep a text: one whose document holds none stays as it is.
  if (plain.empty()) return;
  store.SetRowEntry(row, ClipEntry::Plain(plain), plain);
}

void frmList::Convert(int row) {
  ClipStore& store = deps_->store;
  const int16_t code = static_cast<int16_t>(cbOpIndex + 1);
  ClipEntry entry = store.EntryAtRow(row);
  if (entry.IsRich()) {
    Text plain;
    bool converted = RichCaseChange(deps_->rtbFormat, code, deps_->cases, entry.rtf, &plain);
    deps_->rtbFormat.Clear();
    if (!converted || plain.empty()) return;
    store.SetRowEntry(row, std::move(entry), plain);
  } else {
    Text changed = ApplyCaseOp(code, entry.text, deps_->cases);
    store.SetRowEntry(row, ClipEntry::Plain(changed), changed);
  }
}

void frmList::cmdNoSel_Click() {
  if (!deps_ || lstClip.ListCount() == 0) return;
  MsgResult answer =
      deps_->messages.Show(u"Are you sure that you wish to clear all clipboard entries from the list?",
                           u"Clear List?", MsgIcon::Question, MsgButtons::YesNo);
  if (answer == MsgResult::Yes) deps_->store.ClearAll();
}

void frmList::cbOp_Click(int index) {
  if (index < 0 || index > 2) return;
  cbOpIndex = index;
  settings_.WriteSetting(settings::key::Cur_LO.name, ToDecimal(index));
}

void frmList::chkMenu_Click(int index) {
  using namespace settings;
  switch (index) {
    case 0:
      chkMenu[0] = !chkMenu[0];
      SwitchView();
      break;
    case 1:
      chkMenu[1] = !chkMenu[1];
      DeleteOnPaste = chkMenu[1];
      settings_.WriteSetting(key::Cur_Dl.name, chkMenu[1] ? u"1" : u"0");
      chkMenuTip[1] = chkMenu[1] ? u"On paste, move pasted item to end of queue"
                                 : u"On paste, delete pasted item from queue";
      break;
    case 2:
      chkMenu[2] = !chkMenu[2];
      SetTop(chkMenu[2]);
      settings_.WriteSetting(key::Cur_Pn.name, chkMenu[2] ? u"1" : u"0");
      chkMenuTip[2] = chkMenu[2] ? u"Allow window to be hidden by other windows"
                                 : u"Pin window on top of all windows";
      break;
    case 3: cmdOp_Click(0); return;
    case 4: cmdNoSel_Click(); return;
    default: return;
  }
  Notify();
}

void frmList::cmdFile_Click(int index) {
  if ((index == 0 || index == 1) && onFileCommand) onFileCommand(index);
}

void frmList::lstClip_KeyDown(int keyCode) {
  if (keyCode == kDeleteKey) cmdOp_Click(0);
}

void frmList::lstClip_DblClick() {
  int row = lstClip.ListIndex();
  if (row < 0 || !viewer_ || !deps_) return;
  viewer_->Open(deps_->store.EntryAtRow(row));
}

void frmList::lstClip_Dropped(int from, int before) {
  int count = lstClip.ListCount();
  if (from < 0 || from >= count || before < 0 || before > count) return;
  // Removing the row first shifts the rows below it up by one.
  int to = before > from ? before - 1 : before;
  if (to != from) lstClip.MoveItem(from, to);
  lstClip.SetListIndex(to);
}

}  // namespace mq
