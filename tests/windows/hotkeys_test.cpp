// System-wide hotkeys on the real user32: registration under the named atom, presses sent
// with SendInput, refusals, stopping, and the end of the hotkey window.
#include <gtest/gtest.h>
#include <windows.h>

#include <memory>

#include "hotkeys/VBHotKey.h"
#include "hotkeys/win32/Win32HotkeySystem.h"
#include "platform/win32/SystemError.h"
#include "Support.h"

namespace mq::win32 {
namespace {

// Ctrl+Shift combinations, which the program itself never uses, so a running Marquill cannot
// interfere.

// True when nobody holds Ctrl+Shift+vk (a probe window can take it and give it back).
bool CombinationFree(UINT vk) {
  UniqueWindow probe(CreatePlainWindow());
  if (!RegisterHotKey(probe.Get(), 0x7001, MOD_CONTROL | MOD_SHIFT, vk)) return false;
  UnregisterHotKey(probe.Get(), 0x7001);
  return true;
}

TEST(Win32Hotkeys, RefusalPressesStoppingAndTheEndOfTheWindow) {
  HotkeyControls controls;
  Win32HotkeySystem sys{controls};
  int presses[2] = {};
  std::vector<std::pair<Text, Text>> errors;
  std::unique_ptr<VBHotKey> hk[2];
  for (int i = 0; i < 2; ++i) {
    // Ctrl+Shift+8 and Ctrl+Shift+9: alt, shift, ctrl, key, win.
    hk[i] = std::make_unique<VBHotKey>(sys, controls, VBHotKey::Design{false, true, true, '8' + i, false});
    hk[i]->HotkeyPressed = [&presses, i] { ++presses[i]; };
    hk[i]->ErrorOccured = [&](TextView m, TextView s) { errors.push_back({Text(m), Text(s)}); };
    hk[i]->Start();
  }
  // The real system refuses a combination already held; the error carries the system's own
  // text, without the line break and blanks it ends with.
  ASSERT_NE(hk[0]->hKey(), 0);
  hk[1]->SetVKey('8');
  EXPECT_EQ(hk[1]->hKey(), 0);
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].second, u"ApiHotkey:Register");
  EXPECT_EQ(errors[0].first, SystemErrorText(ERROR_HOTKEY_ALREADY_REGISTERED));
  ASSERT_FALSE(errors[0].first.empty());
  EXPECT_EQ(errors[0].first.find_last_not_of(u"\r\n "), errors[0].first.size() - 1);
  // Typed as a user would, the combination reaches its holder only; stopping frees it.
  for (WORD down : {WORD{VK_CONTROL}, WORD{VK_SHIFT}, WORD{'8'}}) SendKey(down, false);
  for (WORD up : {WORD{'8'}, WORD{VK_SHIFT}, WORD{VK_CONTROL}}) SendKey(up, true);
  EXPECT_TRUE(PumpUntil([&] { return presses[0] == 1; }));
  EXPECT_EQ(presses[1], 0);
  hk[0]->StopHotkey();
  EXPECT_TRUE(CombinationFree('8'));

  // Closed: passed on, so the default procedure destroys the window, and the control leaves.
  hk[1]->SetVKey('7');
  ASSERT_NE(hk[1]->hKey(), 0);
  HWND window = reinterpret_cast<HWND>(hk[1]->hwnd());
  const size_t count = controls.Count();
  SendMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(controls.Count(), count - 1);
  // Stopping afterwards still frees the combination and the atom.
  hk[1]->StopHotkey();
  EXPECT_TRUE(CombinationFree('7'));
  EXPECT_EQ(GlobalFindAtomW(L"SHIFT+CONTROL+055"), 0);
}

}  // namespace
}  // namespace mq::win32
