#include "listfiles/win32/OwnedMessageBoxes.h"

#include "platform/win32/MessageBox.h"
#include "platform/win32/Strings.h"

namespace mq::win32 {

MsgResult OwnedMessageBoxes::Show(TextView text, TextView title, MsgIcon icon, MsgButtons buttons) {
  HWND owner = owner_ ? owner_() : nullptr;
  if (owner && !IsWindow(owner)) owner = nullptr;
  return ShowMessageBox(owner, text, title, icon, buttons, owner ? 0 : MB_SETFOREGROUND);
}

}  // namespace mq::win32
