// The system clipboard as the clipboard engine needs it. Every call opens the clipboard
// (retrying briefly while another program holds it) and always closes it again.
#pragma once

#include <cstdint>

#include "platform/Text.h"

namespace mq {

// Clipboard format codes as entries and list files carry them: the platform's plain-text
// format, and the registered rich-text format.
constexpr int16_t kFormatPlain = 1;
constexpr int16_t kFormatRich = -16639;

enum class ClipRead {
  PlainOnly,   // the Unicode text, whatever else is there
  PreferRich,  // the rich text when there is some, else the Unicode text
  RichAndText, // PreferRich, and the Unicode text beside the rich text when there is both
};

struct ClipboardData {
  bool isPrivate = false;  // marked by a password manager: never captured or rewritten
  bool hasText = false;
  bool hasRich = false;
  // Any format beyond the text (with what the system synthesises from it: ANSI, OEM and
  // locale) and the rich text: a picture, HTML, a file list, an application's own data.
  bool hasOther = false;
  int16_t format = 0;  // what was read: kFormatPlain, kFormatRich, or 0 for nothing
  Text text;           // set for kFormatPlain, and for kFormatRich read with RichAndText
  Bytes rtf;           // set for kFormatRich
};

class Clipboard {
 public:
  virtual ~Clipboard() = default;
  // False when the clipboard could not be opened or its data could not be read.
  virtual bool Read(ClipRead mode, ClipboardData& out) = 0;
  // Empty the clipboard and put this one format on it; false on failure.
  virtual bool WriteText(TextView text) = 0;
  virtual bool WriteRich(std::string_view rtf) = 0;
};

}  // namespace mq
