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
    uint32_t modifiers;
    uint32_t vkey;
  };

  uint16_t AddAtom(TextView name) override {
    for (auto& [atom, entry] : atoms) {
      if (entry.name == name) {
        ++entry.refs;
        return atom;
      }
    }
    uint16_t atom = nextAtom++;
    atoms[atom] = {Text(name), 1};
    return atom;
  }
  void DeleteAtom(uint16_t atom) override {
    auto it = atoms.find(atom);
    if (it != atoms.end() && --it->second.refs == 0) atoms.erase(it);
  }
  Text AtomName(uint16_t atom) override {
    auto it = atoms.find(atom);
    return it == atoms.end() ? Text() : it->second.name;
  }
  bool RegisterHotKey(intptr_t hwnd, int id, uint32_t modifiers, uint32_t vkey,
                      uint32_t& lastError) override {
    ++registerCalls;
    for (const auto& r : registrations) {
      // The system keys its table on the combination (MOD_NOREPEAT aside) and on window+id.
      bool sameCombination = (r.modifiers & 0xF) == (modifiers & 0xF) && r.vkey == vkey;
      if (sameCombination || (r.hwnd == hwnd && r.id == id)) {
        lastError = kAlreadyRegistered;
        return false;
      }
    }
    registrations.push_back({hwnd, id, modifiers, vkey});
    lastError = 0;
    return true;
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
    intptr_t hwnd = nextWindow;
    nextWindow += 4;
    windows.insert(hwnd);
    subclassed.insert(hwnd);
    return hwnd;
  }
  void ReleaseHotkeyWindow(intptr_t hwnd) override { subclassed.erase(hwnd); }
  void DestroyHotkeyWindow(intptr_t hwnd) override { windows.erase(hwnd); }

  // The owner of a combination receives WM_HOTKEY with lParam = key << 16 | modifiers;
  // extraBits are added to the modifier word as the system may do. Returns false when no
  // window owns the combination (the system then delivers nothing).
  bool Press(HotkeyControls& controls, uint32_t modifiers, uint32_t vkey, uint32_t extraBits = 0) {
    for (const auto& r : registrations) {
      if ((r.modifiers & 0xF) == (modifiers & 0xF) && r.vkey == vkey) {
        if (subclassed.count(r.hwnd) == 0) return true;  // delivered, but nobody listens
        controls.DispatchHotkey(r.hwnd, (vkey << 16) | ((modifiers | extraBits) & 0xFFFF));
        return true;
      }
    }
    return false;
  }
  bool IsRegistered(uint32_t modifiers, uint32_t vkey) const {
    return std::any_of(registrations.begin(), registrations.end(), [&](const Registration& r) {
      return r.modifiers == modifiers && r.vkey == vkey;
    });
  }
  size_t AtomCount() const { return atoms.size(); }

  struct Atom {
    Text name;
    int refs;
  };
  std::map<uint16_t, Atom> atoms;
  std::vector<Registration> registrations;
  std::set<intptr_t> windows, subclassed;
  uint16_t nextAtom = 0xC000;  // global string atoms live above 0xC000
  intptr_t nextWindow = 0x10040;
  bool failWindows = false;
  int registerCalls = 0;
};

}  // namespace mq::test
