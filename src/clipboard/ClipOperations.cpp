#include "clipboard/ClipOperations.h"

namespace mq {

namespace {
constexpr TextView kAccessTitle = u"Error: Cannot access clipboard.";
constexpr TextView kAccessText =
    u"Marquill is unable to access the clipboard. Either another program was attempting to "
    u"simultaneously access the clipboard, or another program has locked access to the "
    u"clipboard. You may try to copy the desired text again if you wish.";

// Resets a flag when the scope ends, whatever path leaves it.
class FlagScope {
 public:
  explicit FlagScope(bool& flag) : flag_(flag) { flag_ = true; }
  ~FlagScope() { flag_ = false; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;

 private:
  bool& flag_;
};
}  // namespace

Text FullMessageText() {
  return u"Extended Clipboard is Full. You can add no more than " + ToDecimal(kClipSlots) +
         u" entries in the clip list.";
}

void ClipOperations::AddClipEntry(bool purge, int16_t caseOp) {
  // A change that arrives while our own message box is open is passed on, not captured.
  if (inMessageBox_) return;
  uint64_t now = d_.clock.TickCount();
  if (WithinMs(now, LastAddTick, kDebounceMs) && !CaptureRetry) return;
  LastAddTick = now;

  if (TryCapture(purge, caseOp) == Attempt::Done) return;
  if (!CaptureRetry) {
    CaptureRetry = true;
    if (TryCapture(purge, caseOp) == Attempt::Done) return;
  }
  CaptureRetry = false;
  FlagScope modal(inMessageBox_);
  d_.messages.Show(kAccessText, kAccessTitle, MsgIcon::Critical);
}

ClipOperations::Attempt ClipOperations::TryCapture(bool purge, int16_t caseOp) {
  ClipboardData data;
  if (!d_.clipboard.Read(purge ? ClipRead::PlainOnly : ClipRead::PreferRich, data))
    return Attempt::Failed;
  if (data.isPrivate) return Attempt::Done;

  int16_t format = data.format == kFormatRich ? kFormatRich : kFormatPlain;
  Text content = format == kFormatRich ? Widen(data.rtf) : std::move(data.text);
  if (data.format == 0) content.clear();

  // The identical-content check looks at the content as read, before any case change.
  if (content == LastCapturedText) return Attempt::Done;
  LastCapturedText = content;
  if (content.empty()) return Attempt::Done;

  if (d_.store.FindFreeSlot() < 0) {
    // A late echo of our own paste is not an offer, so it never reports a full list.
    if (IsPasteEcho(content)) return Attempt::Done;
    ShowFull();
    return Attempt::Done;
  }

  Text display;
  if (format == kFormatRich) {
    Bytes rtf = Narrow(content);
    bool loaded = RichCaseChange(d_.rtbFormat, caseOp, d_.cases, rtf, &display);
    d_.rtbFormat.Clear();
    if (loaded) {
      content = Widen(rtf);
    } else {
      // Rich text that the box cannot read: keep the plain text rather than nothing.
      if (!data.hasText) return Attempt::Done;
      if (!d_.clipboard.Read(ClipRead::PlainOnly, data)) return Attempt::Failed;
      if (data.format != kFormatPlain || data.text.empty()) return Attempt::Done;
      format = kFormatPlain;
      content = ApplyCaseOp(caseOp, data.text, d_.cases);
      display = content;
    }
  } else {
    content = ApplyCaseOp(caseOp, content, d_.cases);
    display = content;
  }

  if (IsPasteEcho(content)) return Attempt::Done;

  d_.store.Append(std::move(content), format, display);
  return Attempt::Done;
}

bool ClipOperations::IsPasteEcho(TextView content) {
  return WithinMs(d_.clock.TickCount(), LastPasteTick, kEchoWindowMs) && content == LastPastedText;
}

void ClipOperations::ShowFull() {
  FlagScope modal(inMessageBox_);
  d_.messages.Show(FullMessageText(), kFullMessageTitle, MsgIcon::Exclamation);
}

bool ClipOperations::PasteFirstEntry(bool deleteOnPaste) {
  ListModel& rows = d_.store.lstClip;
  if (rows.ListCount() == 0) return false;
  int slot = rows.ItemData(0);
  if (slot < 0 || slot >= kClipSlots) return false;
  const Text& entry = d_.store.ClipText[slot];

  bool written;
  {
    FlagScope guard(SelfWrite);
    written = d_.store.ClipFormat[slot] == kFormatRich ? d_.clipboard.WriteRich(Narrow(entry))
                                                       : d_.clipboard.WriteText(entry);
    if (written) {
      LastPastedText = entry;
      LastPasteTick = d_.clock.TickCount();
    }
  }
  if (!written) return false;

  if (deleteOnPaste) {
    d_.store.DeleteRow(0);
  } else {
    ListRow first = rows.Rows().front();
    rows.AddItem(first.text, first.itemData);
    rows.RemoveItem(0);
  }
  d_.keys.SendPaste();
  return true;
}

namespace {
// True when the clipboard holds this one textual format and nothing else (the formats the
// system synthesises from plain text aside), so that writing it would change nothing.
bool HoldsExactly(const ClipboardData& data, int16_t format, TextView text, std::string_view rtf) {
  if (data.hasOther || data.format != format) return false;
  if (format == kFormatRich) return !data.hasText && data.rtf == rtf;
  return format == kFormatPlain && !data.hasRich && data.text == text;
}
}  // namespace

void ClipOperations::WriteRewrite(const ClipboardData& current, Content content) {
  if (HoldsExactly(current, content.format, content.text, content.rtf)) return;
  bool written = content.format == kFormatRich ? d_.clipboard.WriteRich(content.rtf)
                                               : d_.clipboard.WriteText(content.text);
  if (written) lastRewrite_ = std::move(content);
}

void ClipOperations::RewriteInPlace(bool purge, int16_t caseOp) {
  FlagScope guard(SelfWrite);
  ClipboardData data;
  if (!d_.clipboard.Read(purge ? ClipRead::PlainOnly : ClipRead::PreferRich, data)) return;
  if (data.isPrivate) return;
  // Our own write coming back, whatever the order of the viewers before us.
  if (HoldsExactly(data, lastRewrite_.format, lastRewrite_.text, lastRewrite_.rtf)) return;
  if (data.format == kFormatRich) {
    Bytes rtf = data.rtf;
    if (RichCaseChange(d_.rtbFormat, caseOp, d_.cases, rtf)) {
      d_.rtbFormat.Clear();
      WriteRewrite(data, {kFormatRich, Text(), std::move(rtf)});
      return;
    }
    // A document the box cannot read: fall back to the plain text, if there is any.
    if (!d_.clipboard.Read(ClipRead::PlainOnly, data) || data.format != kFormatPlain) return;
  }
  if (data.format != kFormatPlain) return;  // nothing textual: leave the content alone
  WriteRewrite(data, {kFormatPlain, ApplyCaseOp(caseOp, data.text, d_.cases), Bytes()});
}

void ClipOperations::RewritePlainText(int16_t caseOp) {
  FlagScope guard(SelfWrite);
  ClipboardData data;
  if (!d_.clipboard.Read(ClipRead::PlainOnly, data) || data.isPrivate) return;
  if (data.format != kFormatPlain) return;
  WriteRewrite(data, {kFormatPlain, ApplyCaseOp(caseOp, data.text, d_.cases), Bytes()});
}

}  // namespace mq
