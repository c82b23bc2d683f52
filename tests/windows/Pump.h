// Waiting in the in-process tests: pump this thread's messages until a condition holds; keys.
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

// A key pressed or released as the keyboard would.
inline void SendKey(WORD vk, bool up) {
  INPUT in{};
  in.type = INPUT_KEYBOARD;
  in.ki.wVk = vk;
  in.ki.wScan = static_cast<WORD>(MapVirtualKeyW(vk, MAPVK_VK_TO_VSC));
  in.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  SendInput(1, &in, sizeof(INPUT));
}

}  // namespace mq::win32
