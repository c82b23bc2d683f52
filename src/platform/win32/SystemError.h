// The system's texts for error codes, as the program shows them in its messages.
#pragma once

#include <windows.h>

#include "platform/Text.h"

namespace mq::win32 {

// The system's message for an error code without the spaces and line break around it; empty
// when the system has none.
Text SystemErrorText(DWORD code);
// The same for GetLastError().
Text LastErrorText();

}  // namespace mq::win32
