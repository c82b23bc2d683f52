// The road of a copied text: capture into the clip list (AddClipEntry), paste of the first
// entry (PasteFirstEntry), and the in-place rewrite of single mode. The capture and paste
// state that outlives a call (SelfWrite, the debounce and echo bookkeeping) lives here.
#pragma once

#include <cstdint>

#include "clipboard/CaseOps.h"
#include "clipboard/ClipStore.h"
#include "platform/Clipboard.h"
#include "platform/Ports.h"
#include "platform/RichTextBox.h"

namespace mq {

// "Extended Clipboard is Full. You can add no more than 100 entries in the clip list."
Text FullMessageText();
inline constexpr TextView kFullMessageTitle = u"Cannot write to clipboard.";

class ClipOperations {
 public:
  struct Deps {
    ClipStore& store;
    Clipboard& clipboard;
    RichTextBox& rtbFormat;
    TickClock& clock;
    const CaseMapper& cases;
    MessageBoxes& messages;
    KeySender& keys;
  };
  explicit ClipOperations(Deps deps) : d_(deps) {}

  // Capture the clipboard's content as a new entry (multi mode). purge: the formatting
  // check mark; caseOp: the current case operation.
  void AddClipEntry(bool purge, int16_t caseOp);

  // Puts the first queued entry on the clipboard, moves it to the end of the queue or
  // deletes it, and sends Ctrl+V. The queue must not be empty. When the clipboard cannot
  // be written, the queue is left as it was and no keystroke is sent.
  bool PasteFirstEntry(bool deleteOnPaste);

  // Single mode: rewrite the clipboard's content in place with the case operation (rich
  // text through the rich-text box unless formatting is purged). Content without text, or
  // marked private, is left alone. A rewrite whose result is what the clipboard holds
  // already writes nothing, and the clipboard holding exactly what the last rewrite put
  // there is that rewrite's own echo: another viewer before us in the chain passes the
  // notice on only after SelfWrite has been cleared, and answering it would loop forever.
  void RewriteInPlace(bool purge, int16_t caseOp);
  // The case commands in single mode: the clipboard's plain text, case-changed, as plain text.
  void RewritePlainText(int16_t caseOp);

  // True while the program itself writes the clipboard: the change notices that the
  // write causes are not the user's copies.
  bool SelfWrite() const { return selfWrite_; }
  // Switching to single mode starts from a clear flag.
  void ClearSelfWrite() { selfWrite_ = false; }

  // Capture state.
  uint64_t LastAddTick() const { return lastAddTick_; }
  const ClipEntry& LastCaptured() const { return lastCaptured_; }
  bool CaptureRetry() const { return captureRetry_; }
  // Paste bookkeeping, read by the capture to ignore the echo of a paste.
  const ClipEntry& LastPasted() const { return lastPasted_; }
  uint64_t LastPasteTick() const { return lastPasteTick_; }

  static constexpr uint64_t kDebounceMs = 250;
  static constexpr uint64_t kEchoWindowMs = 500;

 private:
  enum class Attempt { Done, Failed };
  Attempt TryCapture(bool purge, int16_t caseOp);
  void ShowFull();
  bool IsPasteEcho(const ClipEntry& content);
  // True when a rich capture keeps its document unchanged and takes the clipboard's Unicode
  // text for its row: there is such a text, the document can be read as rich text, and the
  // case operation leaves the text as it is.
  bool KeepsRichAsItIs(const ClipboardData& data, std::string_view rtf, int16_t caseOp) const;
  // Writes the entry unless the clipboard (as read into `current`) holds exactly it.
  void WriteRewrite(const ClipboardData& current, ClipEntry content);
  bool Write(const ClipEntry& entry);

  Deps d_;
  bool selfWrite_ = false;
  uint64_t lastAddTick_ = 0;
  ClipEntry lastCaptured_;
  bool captureRetry_ = false;
  ClipEntry lastPasted_;
  uint64_t lastPasteTick_ = 0;
  bool inMessageBox_ = false;
  ClipEntry lastRewrite_;  // what the last single-mode rewrite wrote
};

}  // namespace mq
