// Conversions between the core's UTF-16 text and the Win32 API's wchar_t strings (both are
// 16-bit on Windows, so no copy of the characters' values is needed beyond the container).
#pragma once

#include <string>
#include <string_view>

#include "platform/Text.h"

namespace mq::win32 {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "Windows wide characters are UTF-16");

inline const wchar_t* W(const Text& text) { return reinterpret_cast<const wchar_t*>(text.c_str()); }
inline std::wstring_view WV(TextView text) {
  return {reinterpret_cast<const wchar_t*>(text.data()), text.size()};
}
inline Text FromW(std::wstring_view text) {
  return Text(reinterpret_cast<const char16_t*>(text.data()), text.size());
}
inline Text FromW(const wchar_t* text) { return text ? FromW(std::wstring_view(text)) : Text(); }

}  // namespace mq::win32
