// The never-shown rich-text box (rtbFormat) on the platform's rich edit control: msftedit's
// RICHEDIT50W where present, riched20's RichEdit20W otherwise.
#pragma once

#include <windows.h>

#include "platform/RichTextBox.h"
#include "platform/win32/MessageWindow.h"

namespace mq::win32 {

class RichEditBox final : public RichTextBox {
 public:
  // A hidden child of parent (the clip list window owns rtbFormat), or a message-only
  // window of its own when parent is null.
  explicit RichEditBox(HWND parent = nullptr);

  bool IsReady() const { return static_cast<bool>(box_); }
  HWND Handle() const { return box_.Get(); }

  bool LoadRtf(std::string_view rtf) override;
  // Paragraph ends come back as CR LF, as on the clipboard.
  Text PlainText() override;
  void SetPlainText(TextView text) override;
  Bytes Rtf() override;
  void Clear() override;

 private:
  UniqueWindow box_;
};

}  // namespace mq::win32
