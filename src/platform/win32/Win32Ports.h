// The small ports on Win32: the tick clock, the paste keystroke and letter case in the
// user's locale.
#pragma once

#include <windows.h>

#include "platform/Ports.h"

namespace mq::win32 {

class Win32TickClock final : public TickClock {
 public:
  uint64_t TickCount() override { return GetTickCount64(); }
};

// Ctrl+V through SendInput. When Ctrl is already down (the user still holds it from CTRL+1)
// only V is sent, so holding Ctrl and tapping 1 pastes entry after entry and Ctrl stays as
// the user holds it.
class SendInputKeySender final : public KeySender {
 public:
  void SendPaste() override;
};

class LocaleCaseMapper final : public CaseMapper {
 public:
  Text Upper(TextView text) const override;
  Text Lower(TextView text) const override;
};

}  // namespace mq::win32
