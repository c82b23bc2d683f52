// Message boxes owned by one of the program's windows (the clip list window, the password
// dialog), so they stay above it and block it while they are open.
#pragma once

#include <windows.h>

#include <functional>

#include "platform/Ports.h"

namespace mq::win32 {

class OwnedMessageBoxes final : public MessageBoxes {
 public:
  explicit OwnedMessageBoxes(std::function<HWND()> owner) : owner_(std::move(owner)) {}
  MsgResult Show(TextView text, TextView title, MsgIcon icon, MsgButtons buttons) override;

 private:
  std::function<HWND()> owner_;
};

}  // namespace mq::win32
