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
};

// Windows-1252: the native build's ANSI code page.
class Windows1252 final : public CodePage {
 public:
  bool ToAnsi(TextView text, Bytes& out) const override;
  Text FromAnsi(std::string_view bytes) const override;
};

}  // namespace mq
