// System-wide hotkeys on the real user32: registration under the named atom, presses sent
// with SendInput, refusals, stopping, and the end of the hotkey window.
#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "hotkeys/VBHotKey.h"
#include "hotkeys/win32/Win32HotkeySystem.h"
#include "platform/win32/MessageWindow.h"
#include "platform/win32/Strings.h"
#include "platform/win32/SystemError.h"

#include "Pump.h"

namespace mq::win32 {
namespace {

// Combinations the program itself never uses, so a running Marquill cannot interfere.
constexpr UINT kMods = MOD_CONTROL | MOD_SHIFT;

// Ctrl+Shift+key as a user would type it.
void Press(WORD vk) {
  for (WORD down : {VK_CONTROL, VK_SHIFT}) SendKey(down, false);
  SendKey(vk, false);
  SendKey(vk, true);
  for (WORD up : {VK_SHIFT, VK_CONTROL}) SendKey(up, true);
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

// Closed: passed on, so the default procedure destroys the window, and the control leaves.
TEST_F(Win32HotkeyTest, TheEndOfItsWindowEndsTheControl) {
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
}

}  // namespace
}  // namespace mq::win32
