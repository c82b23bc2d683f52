#include "platform/win32/SystemError.h"

#include "platform/win32/Handles.h"
#include "platform/win32/Strings.h"

namespace mq::win32 {

Text SystemErrorText(DWORD code) {
  UniqueLocal buffer;
  const DWORD n = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                     FORMAT_MESSAGE_IGNORE_INSERTS,
                                 nullptr, code, 0, reinterpret_cast<wchar_t*>(buffer.Out()), 0,
                                 nullptr);
  if (n == 0 || !buffer) return {};
  std::wstring_view text(static_cast<const wchar_t*>(buffer.Get()), n);
  const auto first = text.find_first_not_of(L" \r\n");
  if (first == std::wstring_view::npos) return {};
  text = text.substr(first, text.find_last_not_of(L" \r\n") + 1 - first);
  return FromW(text);
}

Text LastErrorText() { return SystemErrorText(GetLastError()); }

}  // namespace mq::win32
