// The never-shown rich-text box (rtbFormat) that converts between rich text and plain text.
#pragma once

#include "platform/Text.h"

namespace mq {

class RichTextBox {
 public:
  virtual ~RichTextBox() = default;
  // Replaces the content with the RTF document; false when it is not rich text.
  virtual bool LoadRtf(std::string_view rtf) = 0;
  virtual Text PlainText() = 0;
  // Replaces the whole content with plain text (taking the box's formatting at the start).
  virtual void SetPlainText(TextView text) = 0;
  virtual Bytes Rtf() = 0;
  virtual void Clear() = 0;
};

}  // namespace mq
