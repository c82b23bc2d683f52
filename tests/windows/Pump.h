// Waiting in the in-process tests: pump this thread's messages until a condition holds.
#pragma once

#include <windows.h>

namespace mq::win32 {

template <typename Done>
bool PumpUntil(Done done, DWORD timeoutMs = 5000) {
  DWORD start = GetTickCount();
  for (;;) {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    if (done()) return true;
    if (GetTickCount() - start > timeoutMs) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
  }
}

inline void PumpFor(DWORD ms) { PumpUntil([] { return false; }, ms); }

}  // namespace mq::win32
