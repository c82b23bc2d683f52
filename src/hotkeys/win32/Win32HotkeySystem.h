// The hotkey port on user32 and the global atom table. Each control gets a message-only
// window of its own with the HotkeyProcedure procedure; the windows die with this object at the
// latest. Lifetimes: HotkeyControls outlives this object, which outlives the VBHotKey
// controls that use it. Create it on the thread that pumps the program's messages.
#pragma once

#include <windows.h>

#include <vector>

#include "hotkeys/VBHotKey.h"
#include "platform/win32/MessageWindow.h"

namespace mq::win32 {

class Win32HotkeySystem final : public HotkeySystem {
 public:
  explicit Win32HotkeySystem(HotkeyControls& controls) : controls_(controls) {}
  ~Win32HotkeySystem() override;
  Win32HotkeySystem(const Win32HotkeySystem&) = delete;
  Win32HotkeySystem& operator=(const Win32HotkeySystem&) = delete;

  uint16_t AddAtom(TextView name) override;
  void DeleteAtom(uint16_t atom) override;
  Text AtomName(uint16_t atom) override;
  bool RegisterHotKey(intptr_t hwnd, int id, uint32_t modifiers, uint32_t vkey,
                      uint32_t& lastError) override;
  void UnregisterHotKey(intptr_t hwnd, int id) override;
  Text ErrorText(uint32_t code) override;
  intptr_t CreateHotkeyWindow() override;
  void ReleaseHotkeyWindow(intptr_t hwnd) override;
  void DestroyHotkeyWindow(intptr_t hwnd) override;

 private:
  HotkeyControls& controls_;
  std::vector<UniqueWindow> windows_;
};

}  // namespace mq::win32
