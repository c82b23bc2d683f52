#include "platform/Ports.h"

namespace mq {

namespace {
// Latin-1 letters: a-z, and U+00E0..U+00FE except U+00F7 (division sign); ÿ has its capital
// outside Latin-1.
char16_t UpperOf(char16_t c) {
  if (c >= u'a' && c <= u'z') return c - 32;
  if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 32;
  if (c == 0xFF) return 0x178;
  return c;
}
char16_t LowerOf(char16_t c) {
  if (c >= u'A' && c <= u'Z') return c + 32;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
  if (c == 0x178) return 0xFF;
  return c;
}
}  // namespace

Text Latin1CaseMapper::Upper(TextView text) const {
  Text out(text);
  for (auto& c : out) c = UpperOf(c);
  return out;
}

Text Latin1CaseMapper::Lower(TextView text) const {
  Text out(text);
  for (auto& c : out) c = LowerOf(c);
  return out;
}

}  // namespace mq
