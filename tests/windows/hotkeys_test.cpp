// System-wide hotkeys on the real user32: registration under the named atom, presses sent
// with SendInput, refusals, stopping, and the end of the hotkey window.
#include <gtest/gtest.h>
#include <windows.h>
#include <commctrl.h>

#include <memory>
#include <string>
#include <vector>

#include "hotkeys/VBHotKey.h"
#include "hotkeys/win32/HotkeySubclass.h"
#include "hotkeys/win32/Win32HotkeySystem.h"
#include "platform/win32/MessageWindow.h"
#include "platform/win32/Strings.h"
#include "platform/win32/SystemError.h"

#include "Pump.h"

namespace mq::win32 {
namespace {

// Combinations the program itself never uses, so a running Marquill cannot interfere.
constexpr UINT kMods = MOD_CONTROL | MOD_SHIFT;

INPUT KeyInput(WORD vk, bool up) {
  INPUT in{};
  in.type = INPUT_KEYBOARD;
  in.ki.wVk = vk;
  in.ki.wScan = static_cast<WORD>(MapVirtualKeyW(vk, MAPVK_VK_TO_VSC));
  in.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  return in;
}

// Ctrl+Shift+key as a user would type it.
void Press(WORD vk) {
  std::vector<INPUT> in = {KeyInput(VK_CONTROL, false), KeyInput(VK_SHIFT, false),
                           KeyInput(vk, false),         KeyInput(vk, true),
                           KeyInput(VK_SHIFT, true),    KeyInput(VK_CONTROL, true)};
  ASSERT_EQ(SendInput(static_cast<UINT>(in.size()), in.data(), sizeof(INPUT)), in.size());
}

VBHotKey::Design CtrlShift(int32_t vkey) {
  VBHotKey::Design d;
  d.CtrlKey = true;
  d.ShiftKey = true;
  d.WinKey = false;
  d.VKey = vkey;
  return d;
}

struct Counter {
  int presses = 0;
  std::vector<std::pair<Text, Text>> errors;
  void Attach(VBHotKey& hk) {
    hk.HotkeyPressed = [this] { ++presses; };
    hk.ErrorOccured = [this](TextView m, TextView s) { errors.push_back({Text(m), Text(s)}); };
  }
};

// True when nobody holds the combination (a probe window can take it and give it back).
bool CombinationFree(UINT mods, UINT vk) {
  UniqueWindow probe(CreatePlainWindow());
  if (!RegisterHotKey(probe.Get(), 0x7001, mods, vk)) return false;
  UnregisterHotKey(probe.Get(), 0x7001);
  return true;
}

class Win32HotkeyTest : public ::testing::Test {
 protected:
  // A started control on Ctrl+Shift+vkey whose events c counts.
  std::unique_ptr<VBHotKey> Started(int32_t vkey, Counter& c) {
    auto hk = std::make_unique<VBHotKey>(sys, controls, CtrlShift(vkey));
    c.Attach(*hk);
    hk->Start();
    return hk;
  }

  HotkeyControls controls;
  Win32HotkeySystem sys{controls};
};

// The real system refuses a combination already held; the error carries its own text.
TEST_F(Win32HotkeyTest, CollisionRaisesErrorWithTheSystemsText) {
  Counter c1, c2;
  auto first = Started('8', c1), second = Started('9', c2);
  ASSERT_NE(first->hKey(), 0);
  second->SetVKey('8');
  EXPECT_EQ(second->hKey(), 0);
  ASSERT_EQ(c2.errors.size(), 1u);
  EXPECT_EQ(c2.errors[0].second, u"ApiHotkey:Register");
  // The system's own text, without the line break and blanks it ends with.
  EXPECT_EQ(c2.errors[0].first, SystemErrorText(ERROR_HOTKEY_ALREADY_REGISTERED));
  ASSERT_FALSE(c2.errors[0].first.empty());
  EXPECT_EQ(c2.errors[0].first.find_last_not_of(u"\r\n "), c2.errors[0].first.size() - 1);
  // A press reaches the holder only; stopping it frees the combination.
  Press('8');
  EXPECT_TRUE(PumpUntil([&] { return c1.presses == 1; }));
  EXPECT_EQ(c2.presses, 0);
  first->StopHotkey();
  EXPECT_TRUE(CombinationFree(kMods, '8'));
}

// Looks at a window at its very end: WM_NCDESTROY comes after WM_DESTROY has passed through
// every procedure of the window.
struct LastLook {
  LPARAM press = 0;
  bool installed = true;
  static LRESULT CALLBACK Proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id,
                               DWORD_PTR self) {
    if (msg == WM_NCDESTROY) {
      auto* look = reinterpret_cast<LastLook*>(self);
      look->installed = HotkeySubclass::IsInstalled(hwnd);
      SendMessageW(hwnd, WM_HOTKEY, 0, look->press);
      RemoveWindowSubclass(hwnd, Proc, id);
    }
    return DefSubclassProc(hwnd, msg, wp, lp);
  }
};

TEST_F(Win32HotkeyTest, TheEndOfItsWindowEndsTheControl) {
  // Closed: passed on, so the default procedure destroys the window, and the control leaves.
  Counter c;
  auto hk = Started('7', c);
  HWND window = reinterpret_cast<HWND>(hk->hwnd());
  ASSERT_EQ(controls.Count(), 1u);
  SendMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(controls.Count(), 0u);
  // Stopping afterwards still frees the combination and the atom.
  hk->StopHotkey();
  EXPECT_TRUE(CombinationFree(kMods, '7'));
  EXPECT_EQ(GlobalFindAtomW(L"SHIFT+CONTROL+055"), 0);

  // Destroyed: a press that reaches the window at its very end dispatches nothing.
  hk = Started('7', c);
  window = reinterpret_cast<HWND>(hk->hwnd());
  LastLook look;
  look.press = MAKELPARAM(kMods, '7');
  ASSERT_TRUE(SetWindowSubclass(window, LastLook::Proc, 1, reinterpret_cast<DWORD_PTR>(&look)));
  SendMessageW(window, WM_HOTKEY, hk->hAtom(), look.press);
  ASSERT_EQ(c.presses, 1) << "the press passes the probe and dispatches";
  DestroyWindow(window);
  EXPECT_FALSE(look.installed);
  EXPECT_EQ(c.presses, 1);
  EXPECT_EQ(controls.Count(), 0u);
  hk->StopHotkey();
  EXPECT_TRUE(CombinationFree(kMods, '7'));
}

}  // namespace
}  // namespace mq::win32
