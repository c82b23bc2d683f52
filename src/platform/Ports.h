// Small ports through which the core reaches the system: clock, keystrokes, letter case,
// message boxes.
#pragma once

#include <cstdint>

#include "platform/Text.h"

namespace mq {

class TickClock {
 public:
  virtual ~TickClock() = default;
  // Milliseconds since system start, 64 bits wide: it never wraps while a machine runs.
  virtual uint64_t TickCount() = 0;
};

// True when `now` lies less than `windowMs` after `then`. A 32-bit counter would turn gaps
// of more than 24.8 days negative and so "inside" every window; a 64-bit one cannot, and a
// `then` in the future (a clock that went back) counts as outside.
inline bool WithinMs(uint64_t now, uint64_t then, uint64_t windowMs) {
  return now >= then && now - then < windowMs;
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
