// The operation notice window (frmFlash) as the program's logic sets it up.
#pragma once

#include "platform/Text.h"

namespace mq {

struct FlashModel {
  bool picIconVisible[2] = {true, false};  // picIcon(0) enabled image, picIcon(1) disabled
  Text lblOpCaption = u"(No Change)";
  bool lblOpVisible = false;
};

// The window behind it. Show loads the window when it is not loaded (which starts its
// 750 ms unload timer), puts the model's content on it and shows it without activating it;
// a window that is already shown keeps its timer.
class FlashView {
 public:
  virtual ~FlashView() = default;
  virtual void Show(const FlashModel& model) = 0;
  virtual void Unload() = 0;
};

}  // namespace mq
