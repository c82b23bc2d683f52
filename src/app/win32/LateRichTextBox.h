// rtbFormat as start-up sees it: the rich edit control, its library and the OLE apartment
// cost more than the rest of start-up together, and plain text never needs them. The real
// box is made by the first call that needs one.
#pragma once

#include <memory>

#include "platform/RichTextBox.h"

namespace mq::win32 {

class RichEditBox;

class LateRichTextBox final : public RichTextBox {
 public:
  LateRichTextBox();
  ~LateRichTextBox() override;

  // True once the real box exists.
  bool Made() const { return static_cast<bool>(box_); }

  bool LoadRtf(std::string_view rtf) override;
  Text PlainText() override;
  void SetPlainText(TextView text) override;
  Bytes Rtf() override;
  // A box not made yet is as empty as a cleared one: nothing to do.
  void Clear() override;

 private:
  RichEditBox& Box();

  std::unique_ptr<RichEditBox> box_;
};

}  // namespace mq::win32
