// The system's global atoms and hotkey table in memory: reference-counted atoms, one owner
// per combination (a second registration is refused with the system's "already registered"
// code), windows that are just numbers, and a Press that delivers WM_HOTKEY like the system.
#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "hotkeys/VBHotKey.h"

namespace mq::test {

class FakeHotkeySystem : public HotkeySystem {
 public:
  static constexpr uint32_t kAlreadyRegistered = 1409;  // ERROR_HOTKEY_ALREADY_REGISTERED
  struct Registration {
    intptr_t hwnd;
    int id;
    uint32_t modifiers, vkey;
  };

  uint16_t AddAtom(TextView name) override {
    for (auto& [atom, entry] : atoms)
      if (entry.first == name) return ++entry.second, atom;
    atoms[nextAtom] = {Text(name), 1};
    return nextAtom++;
  }
  void DeleteAtom(uint16_t atom) override {
    auto it = atoms.find(atom);
    if (it != atoms.end() && --it->second.second == 0) atoms.erase(it);
  }
  Text AtomName(uint16_t atom) override { return atoms.count(atom) ? atoms[atom].first : Text(); }
  bool RegisterHotKey(intptr_t hwnd, int id, uint32_t modifiers, uint32_t vkey,
                      uint32_t& lastError) override {
    ++registerCalls;
    // The system keys its table on the combination and on window+id.
    const bool taken = Owner(modifiers, vkey) || std::any_of(registrations.begin(), registrations.end(),
        [&](const Registration& r) { return r.hwnd == hwnd && r.id == id; });
    lastError = taken ? kAlreadyRegistered : 0;
    if (!taken) registrations.push_back({hwnd, id, modifiers, vkey});
    return !taken;
  }
  void UnregisterHotKey(intptr_t hwnd, int id) override {
    std::erase_if(registrations, [&](const Registration& r) { return r.hwnd == hwnd && r.id == id; });
  }
  Text ErrorText(uint32_t code) override {
    return code == kAlreadyRegistered ? Text(u"Hot key is already registered.")
                                      : u"Error " + ToDecimal(code);
  }
  intptr_t CreateHotkeyWindow() override {
    if (failWindows) return 0;
    nextWindow += 4;
    windows.insert(nextWindow);
    return nextWindow;
  }
  void ReleaseHotkeyWindow(intptr_t hwnd) override { released.insert(hwnd); }
  void DestroyHotkeyWindow(intptr_t hwnd) override { windows.erase(hwnd); }

  // The owner of a combination (MOD_NOREPEAT and the like aside), or null.
  const Registration* Owner(uint32_t modifiers, uint32_t vkey) const {
    for (const auto& r : registrations)
      if ((r.modifiers & 0xF) == (modifiers & 0xF) && r.vkey == vkey) return &r;
    return nullptr;
  }
  bool IsRegistered(uint32_t modifiers, uint32_t vkey) const { return Owner(modifiers, vkey); }
  // The owner receives WM_HOTKEY with lParam = key << 16 | modifiers, extraBits added to the
  // modifier word as the system may do. False when nobody owns the combination.
  bool Press(HotkeyControls& controls, uint32_t modifiers, uint32_t vkey, uint32_t extraBits = 0) {
    const Registration* owner = Owner(modifiers, vkey);
    if (!owner) return false;
    controls.DispatchHotkey(owner->hwnd, (vkey << 16) | ((modifiers | extraBits) & 0xFFFF));
    return true;
  }

  std::map<uint16_t, std::pair<Text, int>> atoms;  // name and reference count
  std::vector<Registration> registrations;
  std::set<intptr_t> windows, released;
  uint16_t nextAtom = 0xC000;  // global string atoms live above 0xC000
  intptr_t nextWindow = 0x10040;
  bool failWindows = false;
  int registerCalls = 0;
};

}  // namespace mq::test
