#include "platform/CodePage.h"

namespace mq {

namespace {
// 0x80..0x9F of Windows-1252; 0 marks the five bytes the code page leaves undefined.
constexpr char16_t kHigh[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
}  // namespace

bool Windows1252::ToAnsi(TextView text, Bytes& out) const {
  out.clear();
  out.reserve(text.size());
  bool exact = true;
  for (char16_t c : text) {
    bool undefinedControl = c >= 0x80 && c < 0xA0 && kHigh[c - 0x80] == 0;
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF) || undefinedControl) {
      out.push_back(static_cast<char>(c));
      continue;
    }
    int found = -1;
    for (int i = 0; i < 32; ++i)
      if (kHigh[i] != 0 && kHigh[i] == c) found = i;
    if (found >= 0) {
      out.push_back(static_cast<char>(0x80 + found));
    } else {
      out.push_back('?');
      exact = false;
    }
  }
  return exact;
}

Text Windows1252::FromAnsi(std::string_view bytes) const {
  Text out;
  out.reserve(bytes.size());
  for (char ch : bytes) {
    auto b = static_cast<unsigned char>(ch);
    if (b >= 0x80 && b < 0xA0) {
      // Undefined bytes map to the same-numbered control characters, as Windows does.
      out.push_back(kHigh[b - 0x80] ? kHigh[b - 0x80] : static_cast<char16_t>(b));
    } else {
      out.push_back(b);
    }
  }
  return out;
}

}  // namespace mq
