#include "platform/win32/MessageBox.h"

#include "platform/win32/Strings.h"

namespace mq::win32 {

MsgResult ShowMessageBox(HWND owner, TextView text, TextView title, MsgIcon icon,
                         MsgButtons buttons, UINT extraFlags) {
  UINT flags = (buttons == MsgButtons::YesNo ? MB_YESNO : MB_OK) | extraFlags;
  switch (icon) {
    case MsgIcon::Exclamation: flags |= MB_ICONEXCLAMATION; break;
    case MsgIcon::Critical: flags |= MB_ICONHAND; break;
    case MsgIcon::Question: flags |= MB_ICONQUESTION; break;
    case MsgIcon::Information: flags |= MB_ICONINFORMATION; break;
    case MsgIcon::None: break;
  }
  const Text t(text), c(title);
  const int result = MessageBoxW(owner, W(t), W(c), flags);
  if (result == IDYES) return MsgResult::Yes;
  if (result == IDNO) return MsgResult::No;
  return MsgResult::Ok;
}

}  // namespace mq::win32
