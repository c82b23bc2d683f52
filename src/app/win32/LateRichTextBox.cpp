#include "app/win32/LateRichTextBox.h"

#include "clipboard/win32/RichEditBox.h"
#include "platform/win32/LateLibrary.h"

namespace mq::win32 {

LateRichTextBox::LateRichTextBox() = default;
LateRichTextBox::~LateRichTextBox() = default;

RichEditBox& LateRichTextBox::Box() {
  if (!box_) {
    OleApartment::Enter();
    box_ = std::make_unique<RichEditBox>();
  }
  return *box_;
}

bool LateRichTextBox::LoadRtf(std::string_view rtf) { return Box().LoadRtf(rtf); }
Text LateRichTextBox::PlainText() { return Box().PlainText(); }
void LateRichTextBox::SetPlainText(TextView text) { Box().SetPlainText(text); }
Bytes LateRichTextBox::Rtf() { return Box().Rtf(); }

void LateRichTextBox::Clear() {
  if (box_) box_->Clear();
}

}  // namespace mq::win32
