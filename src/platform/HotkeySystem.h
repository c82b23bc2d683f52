// System-wide hotkeys and global atoms as the hotkey controls need them.
#pragma once

#include <cstdint>

#include "platform/Text.h"

namespace mq {

// What the operating system provides for hotkeys (user32 and the global atom table).
class HotkeySystem {
 public:
  virtual ~HotkeySystem() = default;
  virtual uint16_t AddAtom(TextView name) = 0;
  virtual void DeleteAtom(uint16_t atom) = 0;
  virtual Text AtomName(uint16_t atom) = 0;
  // Registers and reports the thread's last-error code after the call (0 when none).
  virtual bool RegisterHotKey(intptr_t hwnd, int id, uint32_t modifiers, uint32_t vkey,
                              uint32_t& lastError) = 0;
  virtual void UnregisterHotKey(intptr_t hwnd, int id) = 0;
  // The system's message text for an error code, trimmed of surrounding spaces.
  virtual Text ErrorText(uint32_t code) = 0;
  // A window of the control's own that receives its WM_HOTKEY messages, with the hotkey
  // window procedure installed (HotkeyProcedure); 0 when none could be made.
  virtual intptr_t CreateHotkeyWindow() = 0;
  // Takes the hotkey window procedure off the window again.
  virtual void ReleaseHotkeyWindow(intptr_t hwnd) = 0;
  // Destroys a window made by CreateHotkeyWindow once its hotkey is unregistered.
  virtual void DestroyHotkeyWindow(intptr_t /*hwnd*/) {}
};

constexpr uint32_t MOD_ALT_BIT = 1, MOD_CONTROL_BIT = 2, MOD_SHIFT_BIT = 4, MOD_WIN_BIT = 8;

}  // namespace mq
