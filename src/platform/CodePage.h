// Conversion between the program's Unicode text and the ANSI code page's bytes.
#pragma once

#include "platform/Text.h"

namespace mq {

class CodePage {
 public:
  virtual ~CodePage() = default;
  // Fills out with the ANSI bytes of text, unrepresentable characters replaced by the
  // code page's default character; returns false when anything was replaced.
  virtual bool ToAnsi(TextView text, Bytes& out) const = 0;
  virtual Text FromAnsi(std::string_view bytes) const = 0;
  // ToAnsi, true only when the bytes read back as exactly the text. A code page whose
  // conversion is one to one overrides it to skip the round trip.
  virtual bool ToAnsiExact(TextView text, Bytes& out) const {
    return ToAnsi(text, out) && FromAnsi(out) == text;
  }
};

// Windows-1252: the native build's ANSI code page.
class Windows1252 final : public CodePage {
 public:
  bool ToAnsi(TextView text, Bytes& out) const override;
  Text FromAnsi(std::string_view bytes) const override;
  // Every character ToAnsi keeps has a byte of its own, so an exact conversion reads back.
  bool ToAnsiExact(TextView text, Bytes& out) const override { return ToAnsi(text, out); }
};

}  // namespace mq
