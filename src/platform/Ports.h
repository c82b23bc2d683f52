// Small ports through which the core reaches the system: clock, keystrokes, letter case,
// message boxes.
#pragma once

#include <cstdint>

#include "platform/Text.h"

namespace mq {

class TickClock {
 public:
  virtual ~TickClock() = default;
  // Milliseconds since system start; wraps at 2^32 (differences are taken as signed 32-bit).
  virtual uint32_t TickCount() = 0;
};

inline int32_t TicksSince(uint32_t now, uint32_t then) {
  return static_cast<int32_t>(now - then);
}

class KeySender {
 public:
  virtual ~KeySender() = default;
  // Ctrl+V to the focused window, queued without waiting.
  virtual void SendPaste() = 0;
};

// Letter case in the user's locale.
class CaseMapper {
 public:
  virtual ~CaseMapper() = default;
  virtual Text Upper(TextView text) const = 0;
  virtual Text Lower(TextView text) const = 0;
};

// ASCII and Latin-1 letters: the native build's stand-in for the user's locale.
class Latin1CaseMapper final : public CaseMapper {
 public:
  Text Upper(TextView text) const override;
  Text Lower(TextView text) const override;
};

enum class MsgIcon { None, Exclamation, Critical, Question, Information };
enum class MsgButtons { Ok, YesNo };
enum class MsgResult { Ok, Yes, No };

class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  virtual MsgResult Show(TextView text, TextView title, MsgIcon icon,
                         MsgButtons buttons = MsgButtons::Ok) = 0;
};

}  // namespace mq
