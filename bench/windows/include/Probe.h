// What the measuring and screenshot programs share beside the end-to-end
// support library (clipboard, keys, windows): content that looks like what
// people copy, and the clock.
#pragma once

#include <windows.h>

#include <string>

#include "E2E.h"
#include "Timing.h"

namespace probe {

// Natural-looking words; the variant makes every content differ from the last
// one.
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

// A document whose plain text is `plain` (ASCII without braces or backslashes),
// in bold every few words, as a word processor puts it on the clipboard.
inline std::string Rtf(const std::string& plain) {
  std::string rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 ";
  for (size_t i = 0; i < plain.size(); ++i) {
    if (i % 97 == 0) rtf += i % 194 ? "\\b0 " : "\\b ";
    rtf.push_back(plain[i]);
  }
  return rtf + "}";
}

// The clipboard's bytes of a text (UTF-16 with its terminator) and of a
// document.
inline std::string Utf16(const std::wstring& text) {
  return std::string(reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * 2);
}
inline std::pair<UINT, std::string> RtfFormat(const std::string& rtf) {
  return {RegisterClipboardFormatW(L"Rich Text Format"), rtf + '\0'};
}

}  // namespace probe
