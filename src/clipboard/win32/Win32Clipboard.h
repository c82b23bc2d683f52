// The clipboard port on the Win32 clipboard: Unicode text, the registered "Rich Text Format",
// and the marks with which password managers flag content as private.
#pragma once

#include <windows.h>

#include "clipboard/win32/ClipboardSession.h"
#include "platform/Clipboard.h"
#include "platform/win32/MessageWindow.h"

namespace mq::win32 {

class Win32Clipboard final : public Clipboard {
 public:
  Win32Clipboard();

  bool Read(ClipRead mode, ClipboardData& out) override;
  bool WriteText(TextView text) override;
  bool WriteRich(std::string_view rtf) override;

  // How many opens the last call tried (the retry is visible to tests through this).
  int LastOpenAttempts() const { return lastAttempts_; }
  HWND OwnerWindow() const { return owner_.Get(); }

  static UINT RichTextFormat();
  // True when the open clipboard carries one of the private marks.
  static bool IsPrivate(const ClipboardSession& session);

 private:
  bool Write(UINT format, UniqueGlobal memory);
  // Windows: with no owner window EmptyClipboard leaves the clipboard ownerless, and
  // SetClipboardData may then fail; a window of our own owns what we write.
  UniqueWindow owner_;
  int lastAttempts_ = 0;
};

}  // namespace mq::win32
