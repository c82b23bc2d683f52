#include "clipboard/RtfGroups.h"

#include <cstdint>

namespace mq {

namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

RtfGroups CheckRtfGroups(std::string_view rtf, int maxDepth) {
  size_t i = rtf.find_first_not_of(" \t\r\n");
  if (i == std::string_view::npos || rtf.substr(i, 5) != "{\\rtf") return RtfGroups::NotRtf;

  const size_t n = rtf.size();
  int depth = 0;
  while (i < n) {
    const char c = rtf[i++];
    if (c == '{') {
      if (++depth > maxDepth) return RtfGroups::TooDeep;
    } else if (c == '}') {
      if (--depth == 0) return RtfGroups::Readable;
    } else if (c == '\\' && i < n) {
      if (!IsLetter(rtf[i])) {
        ++i;  // a control symbol: \{ \} \\ \' ...; its one character is not structure
        continue;
      }
      const size_t word = i;
      while (i < n && IsLetter(rtf[i])) ++i;
      const bool isBin = rtf.substr(word, i - word) == "bin";
      const bool negative = i < n && rtf[i] == '-';
      if (negative) ++i;
      // The parameter is at most a 32-bit number; longer digit runs only saturate it.
      uint64_t param = 0;
      while (i < n && IsDigit(rtf[i])) {
        if (param < (uint64_t{1} << 32)) param = param * 10 + static_cast<uint64_t>(rtf[i] - '0');
        ++i;
      }
      if (i < n && rtf[i] == ' ') ++i;  // the delimiter belongs to the word
      if (isBin && !negative) {
        if (param > n - i) return RtfGroups::Unbalanced;
        i += static_cast<size_t>(param);
      }
    }
  }
  return RtfGroups::Unbalanced;
}

}  // namespace mq
