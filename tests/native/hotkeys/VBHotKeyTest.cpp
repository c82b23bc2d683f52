#include <gtest/gtest.h>

#include <memory>

#include "fakes/FakeHotkeySystem.h"
#include "hotkeys/VBHotKey.h"

namespace mq {
namespace {

using test::FakeHotkeySystem;

constexpr uint32_t CTRL = MOD_CONTROL_BIT;

// A CTRL control that counts its presses and records its errors as "message @ source".
struct Control : VBHotKey {
  Control(FakeHotkeySystem& sys, HotkeyControls& controls, int32_t vkey, bool start = true)
      : VBHotKey(sys, controls, {.AltKey = false, .ShiftKey = false, .CtrlKey = true, .VKey = vkey,
                                 .WinKey = false}) {
    HotkeyPressed = [this] { ++presses; };
    ErrorOccured = [this](TextView m, TextView s) { errors.push_back(ToUtf8(m) + " @ " + ToUtf8(s)); };
    if (start) Start();
  }
  int presses = 0;
  std::vector<std::string> errors;
};

class HotkeyTest : public ::testing::Test {
 protected:
  std::string AtomOf(const VBHotKey& hk) { return ToUtf8(sys.AtomName(static_cast<uint16_t>(hk.hAtom()))); }
  FakeHotkeySystem sys;
  HotkeyControls controls;
};

// The atom's name is global: other programs see it. The program registers CTRL combinations
// only; extra bits in the modifier word show in no name.
TEST_F(HotkeyTest, AtomNamesListTheFlagsAndThreeDigitKeys) {
  ApiHotkey hk(sys, &controls);
  const std::tuple<int32_t, int32_t, const char*> names[] = {
      {CTRL, 49, "CONTROL+049"},
      {CTRL | MOD_SHIFT_BIT | 0x4000, 65, "SHIFT+CONTROL+065"},
      {MOD_WIN_BIT | MOD_SHIFT_BIT | CTRL | MOD_ALT_BIT, 5, "WIN+SHIFT+CONTROL+ALT+005"},
      {CTRL, 1234, "CONTROL+1234"}};
  for (const auto& [modifiers, vkey, name] : names) {
    hk.MODIFIER = modifiers;
    hk.VKey = vkey;
    EXPECT_EQ(ToUtf8(hk.UniqueAtomName()), name);
  }
}

TEST_F(HotkeyTest, StartRegistersUnderItsAtomDeliversPressesAndFollowsKeyChanges) {
  Control hk(sys, controls, 49, false);
  hk.SetVKey(50);
  EXPECT_EQ(sys.registerCalls, 0) << "nothing happens before the control starts";
  hk.Start();
  EXPECT_EQ(AtomOf(hk), "CONTROL+050");
  ASSERT_EQ(sys.registrations.size(), 1u);
  EXPECT_EQ(sys.registrations[0].id, hk.hAtom()) << "the atom is the hotkey identifier";
  EXPECT_EQ(sys.registrations[0].hwnd, hk.hwnd());

  EXPECT_TRUE(sys.Press(controls, CTRL, 50));
  // Bits above the four flags in the modifier word (as the system adds for repeats) are ignored.
  EXPECT_TRUE(sys.Press(controls, CTRL, 50, 0x4000 | 0x100));
  // Another combination on the same window, or another window, raises nothing.
  controls.DispatchHotkey(hk.hwnd(), (50u << 16) | CTRL | MOD_SHIFT_BIT);
  controls.DispatchHotkey(hk.hwnd(), (51u << 16) | CTRL);
  controls.DispatchHotkey(hk.hwnd() + 1, (50u << 16) | CTRL);
  EXPECT_EQ(hk.presses, 2);

  // A running control moves at once: the old combination and atom are free.
  const int calls = sys.registerCalls;
  hk.SetVKey(50);  // unchanged value: nothing to do
  EXPECT_EQ(sys.registerCalls, calls);
  hk.SetVKey(65);
  EXPECT_EQ(AtomOf(hk), "CONTROL+065");
  EXPECT_EQ(sys.atoms.size(), 1u);
  EXPECT_FALSE(sys.Press(controls, CTRL, 50));
  EXPECT_TRUE(sys.Press(controls, CTRL, 65));
  EXPECT_EQ(hk.presses, 3);
  EXPECT_TRUE(hk.errors.empty());
}

TEST_F(HotkeyTest, CollisionRaisesErrorOnlyAfterStartUp) {
  Control first(sys, controls, 50), second(sys, controls, 50);
  EXPECT_NE(first.hKey(), 0);
  EXPECT_EQ(second.hKey(), 0) << "the system refuses the second owner";
  EXPECT_EQ(second.hAtom(), first.hAtom()) << "same name, same atom, still held";
  EXPECT_TRUE(second.errors.empty()) << "at start-up the control is not yet in HotkeyControls";

  // After start-up a refused re-registration is reported with the system's text.
  Control third(sys, controls, 51);
  third.SetVKey(50);
  EXPECT_EQ(third.hKey(), 0);
  EXPECT_EQ(third.errors, std::vector<std::string>{"Hot key is already registered. @ ApiHotkey:Register"});

  // The refused control still re-registers when its key changes to a free one.
  second.SetVKey(52);
  EXPECT_TRUE(sys.Press(controls, CTRL, 52));
  EXPECT_TRUE(sys.Press(controls, CTRL, 50));
  EXPECT_EQ(second.presses, 1);
  EXPECT_EQ(first.presses, 1) << "the first owner keeps its combination";
  EXPECT_EQ(third.presses, 0);

  // Atoms are reference counted: releasing one holder keeps the shared atom alive.
  auto shared = static_cast<uint16_t>(first.hAtom());
  third.StopHotkey();
  EXPECT_EQ(sys.AtomName(shared), u"CONTROL+050");
  first.StopHotkey();
  EXPECT_EQ(sys.AtomName(shared), u"");
}

TEST_F(HotkeyTest, StoppedControlsOnlyStoreChanges) {
  Control hk(sys, controls, 51);
  intptr_t window = hk.hwnd();
  hk.StopHotkey();
  EXPECT_TRUE(hk.Stopped());
  EXPECT_TRUE(sys.registrations.empty());
  EXPECT_TRUE(sys.atoms.empty());
  EXPECT_TRUE(sys.released.count(window) && !sys.windows.count(window))
      << "window procedure restored and window gone";
  EXPECT_EQ(controls.Find(u"hwnd:" + ToDecimal(window)), nullptr);

  int calls = sys.registerCalls;
  hk.SetVKey(67);
  VBHotKey::SetVKeys({{&hk, 68}});
  EXPECT_EQ(hk.VKey(), 68) << "the stored value still changes";
  hk.Start();  // a stopped control cannot come back during the run
  EXPECT_EQ(sys.registerCalls, calls);
  hk.StopHotkey();  // a second stop is harmless

  sys.failWindows = true;  // no window: nothing is ever registered
  Control windowless(sys, controls, 52);
  windowless.SetVKey(53);
  EXPECT_EQ(windowless.hAtom(), 0);
  EXPECT_EQ(sys.registerCalls, calls);
  EXPECT_EQ(controls.Count(), 0u);
}

TEST_F(HotkeyTest, HandlersMayDestroyControlsDuringDispatch) {
  auto a = std::make_unique<Control>(sys, controls, 50);
  auto b = std::make_unique<Control>(sys, controls, 51);
  a->HotkeyPressed = [&] {  // like Exit: tears down every control from inside a press
    b.reset();
    a.reset();  // last: this destroys the running handler itself
  };
  EXPECT_TRUE(sys.Press(controls, CTRL, 50));
  EXPECT_EQ(a, nullptr);
  EXPECT_EQ(controls.Count(), 0u);
  EXPECT_TRUE(sys.registrations.empty());
  EXPECT_TRUE(sys.atoms.empty()) << "destroying a control releases its atom and hotkey";
  EXPECT_TRUE(sys.windows.empty());
}

}  // namespace
}  // namespace mq
