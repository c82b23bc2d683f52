// What the measuring and screenshot programs share beside the end-to-end support library
// (clipboard, keys, windows): the clock, the median, and content that looks like what
// people copy.
#pragma once

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "E2E.h"

namespace probe {

inline double NowMs() {
  LARGE_INTEGER t, frequency;
  QueryPerformanceCounter(&t);
  QueryPerformanceFrequency(&frequency);
  return 1000.0 * static_cast<double>(t.QuadPart) / static_cast<double>(frequency.QuadPart);
}

inline double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const size_t n = values.size();
  return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// Natural-looking words; the variant makes every content differ from the last one.
inline std::string Words(size_t chars, int variant) {
  static const char* words[] = {"clip ", "board ",    "paste ", "entry ", "queue ",
                                "soak ", "Marquill ", "text ",  "copy ",  "rich "};
  std::string text = "#";  // built in steps: GCC 12 warns wrongly on "#" + ... + " "
  text += std::to_string(variant);
  text += ' ';
  for (size_t i = 0; text.size() < chars; ++i) text += words[(i * 7 + size_t(variant)) % 10];
  text.resize(chars);
  return text;
}

inline std::wstring Wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

// A document whose plain text is `plain` (ASCII without braces or backslashes), in bold
// every few words, as a word processor puts it on the clipboard.
inline std::string Rtf(const std::string& plain) {
  std::string rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 ";
  for (size_t i = 0; i < plain.size(); ++i) {
    if (i % 97 == 0) rtf += i % 194 ? "\\b0 " : "\\b ";
    rtf.push_back(plain[i]);
  }
  return rtf + "}";
}

// A copy as a program puts it on the clipboard: the text (UTF-16 with its terminator), and
// the document beside it when there is one.
using Formats = std::vector<std::pair<UINT, std::string>>;
inline Formats Copy(const std::wstring& text, const std::string& rtf = {}) {
  Formats formats{{CF_UNICODETEXT, std::string(reinterpret_cast<const char*>(text.c_str()),
                                               (text.size() + 1) * sizeof(wchar_t))}};
  if (!rtf.empty()) formats.push_back({RegisterClipboardFormatW(L"Rich Text Format"), rtf + '\0'});
  return formats;
}

}  // namespace probe
