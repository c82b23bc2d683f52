// System-wide hotkeys: ApiHotkey registers one combination under a global atom; VBHotKey is
// the invisible control that owns one ApiHotkey and its own window; HotkeyControls is the
// collection through which the hotkey window procedure finds the controls.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

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
  // window procedure installed (HotkeySubclass); 0 when none could be made.
  virtual intptr_t CreateHotkeyWindow() = 0;
  // Takes the hotkey window procedure off the window again.
  virtual void ReleaseHotkeyWindow(intptr_t hwnd) = 0;
  // Destroys a window made by CreateHotkeyWindow once its hotkey is unregistered.
  virtual void DestroyHotkeyWindow(intptr_t /*hwnd*/) {}
};

constexpr uint32_t MOD_ALT_BIT = 1, MOD_CONTROL_BIT = 2, MOD_SHIFT_BIT = 4, MOD_WIN_BIT = 8;

class HotkeyControls;

class ApiHotkey {
 public:
  ApiHotkey(HotkeySystem& system, HotkeyControls* controls)
      : system_(system), controls_(controls) {}
  ~ApiHotkey();
  ApiHotkey(const ApiHotkey&) = delete;
  ApiHotkey& operator=(const ApiHotkey&) = delete;

  int32_t MODIFIER = 0;
  int32_t VKey = 0;
  intptr_t hwnd = 0;
  int32_t hAtom = 0;
  int32_t hKey = 0;

  bool AltKey() const { return MODIFIER & MOD_ALT_BIT; }
  bool ControlKey() const { return MODIFIER & MOD_CONTROL_BIT; }
  bool ShiftKey() const { return MODIFIER & MOD_SHIFT_BIT; }
  bool WinKey() const { return MODIFIER & MOD_WIN_BIT; }
  void SetAltKey(bool on) { SetBit(MOD_ALT_BIT, on); }
  void SetControlKey(bool on) { SetBit(MOD_CONTROL_BIT, on); }
  void SetShiftKey(bool on) { SetBit(MOD_SHIFT_BIT, on); }
  void SetWinKey(bool on) { SetBit(MOD_WIN_BIT, on); }

  Text UniqueAtomName() const;  // e.g. "CONTROL+049", "SHIFT+CONTROL+065"
  Text UniqueKey() const;       // "hwnd:" + decimal handle

  // Registers under a fresh atom; a refusal keeps the atom and raises ErrorOccured on the
  // control under UniqueKey when there is one.
  void Register();
  // Unregisters and deletes the atom (hAtom and hKey become 0).
  void Unregister();
  bool MatchedKey(const ApiHotkey& other) const;
  void ReadFromAtom(uint16_t atom);

 private:
  void SetBit(uint32_t bit, bool on) { MODIFIER = on ? (MODIFIER | bit) : (MODIFIER & ~bit); }
  HotkeySystem& system_;
  HotkeyControls* controls_;
};

class VBHotKey {
 public:
  struct Design {  // the persisted design-time properties
    bool AltKey = false;
    bool ShiftKey = false;
    bool CtrlKey = false;
    int32_t VKey = 65;
    bool WinKey = true;
  };

  VBHotKey(HotkeySystem& system, HotkeyControls& controls, Design design);
  ~VBHotKey();  // StopHotkey
  VBHotKey(const VBHotKey&) = delete;
  VBHotKey& operator=(const VBHotKey&) = delete;

  // Reads the properties at run time: takes its window, registers, joins HotkeyControls.
  void Start();
  void StopHotkey();

  // A changed value re-registers at once while an atom is held; otherwise it is only stored.
  void SetAltKey(bool on);
  void SetShiftKey(bool on);
  void SetCtrlKey(bool on);
  void SetWinKey(bool on);
  void SetVKey(int32_t vkey);
  int32_t VKey() const { return design_.VKey; }

  intptr_t hwnd() const;
  int32_t hAtom() const;
  int32_t hKey() const;
  Text UniqueKey() const;
  bool Stopped() const { return stopped_; }

  // Changes the keys of several controls at once: every affected control is unregistered
  // first and then registered, so two controls can swap their keys.
  static void SetVKeys(const std::vector<std::pair<VBHotKey*, int32_t>>& changes);

  void RaiseKeyPressEvent(int32_t vkey, int32_t modifiers);
  void RaiseError(TextView message, TextView source);

  std::function<void()> HotkeyPressed;
  std::function<void(TextView message, TextView source)> ErrorOccured;

 private:
  void CopyToApi();
  bool HoldsAtom() const;
  void Changed();  // re-registers when an atom is held
  HotkeySystem& system_;
  HotkeyControls& controls_;
  Design design_;
  std::unique_ptr<ApiHotkey> hotkey_;
  intptr_t window_ = 0;
  bool stopped_ = false;
};

// The live controls, in the order they joined, found by their UniqueKey.
class HotkeyControls {
 public:
  void Add(VBHotKey* control);
  VBHotKey* Find(TextView uniqueKey) const;
  // Removes every control whose UniqueKey is "hwnd:" + this handle.
  void RemoveWindow(intptr_t hwnd);
  void Remove(VBHotKey* control);
  // WM_HOTKEY for hwnd: key in the high word of lParam, modifiers in the low word.
  void DispatchHotkey(intptr_t hwnd, uint32_t lParam);
  size_t Count() const { return controls_.size(); }

 private:
  std::vector<VBHotKey*> controls_;
};

}  // namespace mq
