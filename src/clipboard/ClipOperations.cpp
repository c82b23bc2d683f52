#include "clipboard/ClipOperations.h"
#include "clipboard/RtfGroups.h"

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
  if (WithinMs(now, lastAddTick_, kDebounceMs) && !captureRetry_) return;
  lastAddTick_ = now;

  if (TryCapture(purge, caseOp) == Attempt::Done) return;
  if (!captureRetry_) {
    captureRetry_ = true;
    if (TryCapture(purge, caseOp) == Attempt::Done) return;
  }
  captureRetry_ = false;
  FlagScope modal(inMessageBox_);
  d_.messages.Show(kAccessText, kAccessTitle, MsgIcon::Critical);
}

ClipOperations::Attempt ClipOperations::TryCapture(bool purge, int16_t caseOp) {
  ClipboardData data;
  if (!d_.clipboard.Read(purge ? ClipRead::PlainOnly : ClipRead::RichAndText, data))
    return Attempt::Failed;
  if (data.isPrivate) return Attempt::Done;

  ClipEntry content;
  if (data.format == kFormatRich) {
    content = ClipEntry::Rich(std::move(data.rtf));
  } else if (data.format == kFormatPlain) {
    content = ClipEntry::Plain(std::move(data.text));
  }

  // The identical-content check looks at the content as read, before any case change.
  if (content == lastCaptured_) return Attempt::Done;
  lastCaptured_ = content;
  if (content.Empty()) return Attempt::Done;

  if (d_.store.FindFreeSlot() < 0) {
    // A late echo of our own paste is not an offer, so it never reports a full list.
    if (IsPasteEcho(content)) return Attempt::Done;
    ShowFull();
    return Attempt::Done;
  }

  Text display;
  if (content.IsRich() && KeepsRichAsItIs(data, content.rtf, caseOp)) {
    // The rich text's own plain text is what the clipboard offers beside it: the box, slow
    // to load and slower to read a long document, has nothing to add.
    display = std::move(data.text);
  } else if (content.IsRich()) {
    bool loaded = RichCaseChange(d_.rtbFormat, caseOp, d_.cases, content.rtf, &display);
    d_.rtbFormat.Clear();
    if (!loaded) {
      // Rich text that the box cannot read: keep the plain text rather than nothing.
      if (!data.hasText) return Attempt::Done;
      if (!d_.clipboard.Read(ClipRead::PlainOnly, data)) return Attempt::Failed;
      if (data.format != kFormatPlain || data.text.empty()) return Attempt::Done;
      content = ClipEntry::Plain(ApplyCaseOp(caseOp, data.text, d_.cases));
      display = content.text;
    }
  } else {
    if (caseOp != kCaseNone) content.text = ApplyCaseOp(caseOp, content.text, d_.cases);
    display = content.text.substr(0, kRowTextChars);  // all a row keeps
  }

  if (IsPasteEcho(content)) return Attempt::Done;

  d_.store.Append(std::move(content), display);
  return Attempt::Done;
}

bool ClipOperations::KeepsRichAsItIs(const ClipboardData& data, std::string_view rtf,
                                     int16_t caseOp) const {
  // A document the box would refuse goes the box's way, which ends in the plain text.
  if (data.text.empty() || CheckRtfGroups(rtf) != RtfGroups::Readable) return false;
  return caseOp == kCaseNone || ApplyCaseOp(caseOp, data.text, d_.cases) == data.text;
}

bool ClipOperations::IsPasteEcho(const ClipEntry& content) {
  return WithinMs(d_.clock.TickCount(), lastPasteTick_, kEchoWindowMs) && content == lastPasted_;
}

void ClipOperations::ShowFull() {
  FlagScope modal(inMessageBox_);
  d_.messages.Show(FullMessageText(), kFullMessageTitle, MsgIcon::Exclamation);
}

bool ClipOperations::Write(const ClipEntry& entry) {
  return entry.IsRich() ? d_.clipboard.WriteRich(entry.rtf) : d_.clipboard.WriteText(entry.text);
}

bool ClipOperations::PasteFirstEntry(bool deleteOnPaste) {
  ListModel& rows = d_.store.lstClip;
  if (rows.ListCount() == 0) return false;
  int slot = rows.ItemData(0);
  if (slot < 0 || slot >= kClipSlots) return false;
  const ClipEntry& entry = d_.store.Entry(slot);

  bool written;
  {
    FlagScope guard(selfWrite_);
    written = Write(entry);
    if (written) {
      lastPasted_ = entry;
      lastPasteTick_ = d_.clock.TickCount();
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
bool HoldsExactly(const ClipboardData& data, const ClipEntry& entry) {
  if (data.hasOther || data.format != entry.format) return false;
  if (entry.IsRich()) return !data.hasText && data.rtf == entry.rtf;
  return entry.format == kFormatPlain && !data.hasRich && data.text == entry.text;
}
}  // namespace

void ClipOperations::WriteRewrite(const ClipboardData& current, ClipEntry content) {
  if (HoldsExactly(current, content)) return;
  if (Write(content)) lastRewrite_ = std::move(content);
}

void ClipOperations::RewriteInPlace(bool purge, int16_t caseOp) {
  FlagScope guard(selfWrite_);
  ClipboardData data;
  if (!d_.clipboard.Read(purge ? ClipRead::PlainOnly : ClipRead::PreferRich, data)) return;
  if (data.isPrivate) return;
  // Our own write coming back, whatever the order of the viewers before us.
  if (HoldsExactly(data, lastRewrite_)) return;
  if (data.format == kFormatRich) {
    Bytes rtf = data.rtf;
    if (RichCaseChange(d_.rtbFormat, caseOp, d_.cases, rtf)) {
      d_.rtbFormat.Clear();
      WriteRewrite(data, ClipEntry::Rich(std::move(rtf)));
      return;
    }
    // A document the box cannot read: fall back to the plain text, if there is any.
    if (!d_.clipboard.Read(ClipRead::PlainOnly, data) || data.format != kFormatPlain) return;
  }
  if (data.format != kFormatPlain) return;  // nothing textual: leave the content alone
  WriteRewrite(data, ClipEntry::Plain(ApplyCaseOp(caseOp, data.text, d_.cases)));
}

void ClipOperations::RewritePlainText(int16_t caseOp) {
  FlagScope guard(selfWrite_);
  ClipboardData data;
  if (!d_.clipboard.Read(ClipRead::PlainOnly, data) || data.isPrivate) return;
  if (data.format != kFormatPlain) return;
  WriteRewrite(data, ClipEntry::Plain(ApplyCaseOp(caseOp, data.text, d_.cases)));
}

}  // namespace mq
