// The system's message box for the MessageBoxes port: the icon and buttons the program's
// logic names, the answer it understands.
#pragma once

#include <windows.h>

#include "platform/Ports.h"

namespace mq::win32 {

// `owner` may be null; extraFlags adds MB_ flags such as MB_SETFOREGROUND or MB_TOPMOST.
MsgResult ShowMessageBox(HWND owner, TextView text, TextView title, MsgIcon icon,
                         MsgButtons buttons, UINT extraFlags = 0);

}  // namespace mq::win32
