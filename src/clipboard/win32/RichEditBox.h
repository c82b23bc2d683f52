// The never-shown rich-text box (rtbFormat) on the platform's rich edit control: msftedit's
// RICHEDIT50W where present, riched20's RichEdit20W otherwise.
//
// Every replacement of the whole content (LoadRtf, SetPlainText) starts from a fresh
// control, and Clear drops the control, instead of deleting the old text: Wine: deleting a
// long text takes time quadratic in its paragraphs (a 1 MB text took over a minute), while a
// new control costs a few ms. Handle() therefore changes with each of them. The control and
// its library are made on first use.
#pragma once

#include <windows.h>

#include "platform/RichTextBox.h"
#include "platform/win32/MessageWindow.h"

namespace mq::win32 {

// The rich edit control's window class (loading its library on first use), or null.
const wchar_t* RichEditWindowClass();
// Streams bytes into a rich edit control (SF_RTF, or SF_TEXT | SF_UNICODE for UTF-16). RTF
// that CheckRtfGroups does not find readable is refused (false) and not streamed.
bool StreamInto(HWND box, WPARAM format, const void* data, size_t size);
// Lets a control take a whole entry (its default limit is 32,767 characters) and keeps no
// undo for it.
void TakeLongText(HWND box);

class RichEditBox final : public RichTextBox {
 public:
  // A hidden child of parent, or in a message-only window of its own when parent is null
  // (rtbFormat is never shown, so it needs no window to live in).
  explicit RichEditBox(HWND parent = nullptr);

  // Make the control if it is not there yet (the library is loaded on first use).
  bool IsReady();
  HWND Handle();

  bool LoadRtf(std::string_view rtf) override;
  // Paragraph ends come back as CR LF, as on the clipboard.
  Text PlainText() override;
  // Takes the character and paragraph formatting found at the start of the old content.
  void SetPlainText(TextView text) override;
  Bytes Rtf() override;
  void Clear() override;

 private:
  void Renew();  // a fresh, empty control in place of the old one

  HWND parent_;
  UniqueWindow box_;
};

}  // namespace mq::win32
