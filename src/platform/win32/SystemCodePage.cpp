#include "platform/win32/SystemCodePage.h"

#include <climits>

namespace mq::win32 {

bool SystemCodePage::ToAnsi(TextView text, Bytes& out) const {
  out.clear();
  if (text.empty()) return true;
  if (text.size() > static_cast<size_t>(INT_MAX)) return false;
  const auto* w = reinterpret_cast<const wchar_t*>(text.data());
  const int length = static_cast<int>(text.size());
  // No best fit: "é" must not quietly become "e" in a code page without it; the default
  // character marks the loss and lpUsedDefaultChar reports it.
  BOOL usedDefault = FALSE;
  int n = WideCharToMultiByte(codePage_, WC_NO_BEST_FIT_CHARS, w, length, nullptr, 0, nullptr,
                              &usedDefault);
  if (n > 0) {
    out.resize(static_cast<size_t>(n));
    WideCharToMultiByte(codePage_, WC_NO_BEST_FIT_CHARS, w, length, out.data(), n, nullptr,
                        &usedDefault);
    return !usedDefault;
  }
  // Windows: UTF-8 (a possible system code page since Windows 10) and a few others take
  // neither the flag nor lpUsedDefaultChar; a round trip tells whether anything was lost.
  n = WideCharToMultiByte(codePage_, 0, w, length, nullptr, 0, nullptr, nullptr);
  if (n <= 0) return false;
  out.resize(static_cast<size_t>(n));
  WideCharToMultiByte(codePage_, 0, w, length, out.data(), n, nullptr, nullptr);
  return FromAnsi(out) == text;
}

Text SystemCodePage::FromAnsi(std::string_view bytes) const {
  if (bytes.empty() || bytes.size() > static_cast<size_t>(INT_MAX)) return Text();
  const int length = static_cast<int>(bytes.size());
  const int n = MultiByteToWideChar(codePage_, 0, bytes.data(), length, nullptr, 0);
  if (n <= 0) return Text();
  Text out(static_cast<size_t>(n), u'\0');
  MultiByteToWideChar(codePage_, 0, bytes.data(), length,
                      reinterpret_cast<wchar_t*>(out.data()), n);
  return out;
}

}  // namespace mq::win32
