#include "platform/CodePage.h"

#include <array>

namespace mq {

namespace {
// 0x80..0x9F of Windows-1252; 0 marks the five bytes the code page leaves undefined.
constexpr char16_t kHigh[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// Byte to character; undefined bytes map to the same-numbered control characters, as
// Windows does.
constexpr std::array<char16_t, 256> kToUnicode = [] {
  std::array<char16_t, 256> table{};
  for (int b = 0; b < 256; ++b)
    table[b] = b >= 0x80 && b < 0xA0 && kHigh[b - 0x80] ? kHigh[b - 0x80] : char16_t(b);
  return table;
}();

// The byte of a character outside Latin-1's one-to-one ranges, or -1.
int HighByteOf(char16_t c) {
  if (c >= 0x80 && c < 0xA0) return kHigh[c - 0x80] == 0 ? c : -1;  // undefined: itself
  for (int i = 0; i < 32; ++i)
    if (kHigh[i] != 0 && kHigh[i] == c) return 0x80 + i;
  return -1;
}
}  // namespace

bool Windows1252::ToAnsi(TextView text, Bytes& out) const {
  out.resize(text.size());
  char* o = out.data();
  bool exact = true;
  for (char16_t c : text) {
    // Most text is ASCII or Latin-1, which maps to itself.
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
      *o++ = static_cast<char>(c);
      continue;
    }
    int b = HighByteOf(c);
    if (b < 0) exact = false;
    *o++ = static_cast<char>(b < 0 ? '?' : b);
  }
  return exact;
}

Text Windows1252::FromAnsi(std::string_view bytes) const {
  Text out(bytes.size(), u'\0');
  char16_t* o = out.data();
  for (char ch : bytes) *o++ = kToUnicode[static_cast<unsigned char>(ch)];
  return out;
}

}  // namespace mq
