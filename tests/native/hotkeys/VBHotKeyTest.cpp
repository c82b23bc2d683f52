#include <gtest/gtest.h>

#include <memory>

#include "fakes/FakeHotkeySystem.h"
#include "hotkeys/VBHotKey.h"

namespace mq {
namespace {

using test::FakeHotkeySystem;

constexpr uint32_t CTRL = MOD_CONTROL_BIT;

VBHotKey::Design Ctrl(int32_t vkey) {
  VBHotKey::Design d;
  d.CtrlKey = true;
  d.WinKey = false;
  d.VKey = vkey;
  return d;
}

// A control that counts its presses and records its errors as "message @ source".
struct Control : VBHotKey {
  Control(FakeHotkeySystem& sys, HotkeyControls& controls, int32_t vkey, bool start = true)
      : VBHotKey(sys, controls, Ctrl(vkey)) {
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

TEST_F(HotkeyTest, AtomNamesFlagsMatchingAndReadingBack) {
  ApiHotkey hk(sys, &controls);
  struct {
    bool win, shift, ctrl, alt;
    int32_t vkey;
    const char* name;
  } names[] = {{false, false, true, false, 49, "CONTROL+049"},
               {false, true, true, false, 65, "SHIFT+CONTROL+065"},
               {true, true, true, true, 5, "WIN+SHIFT+CONTROL+ALT+005"},
               {true, true, true, true, 1234, "WIN+SHIFT+CONTROL+ALT+1234"}};
  for (const auto& n : names) {
    hk.SetWinKey(n.win), hk.SetShiftKey(n.shift), hk.SetControlKey(n.ctrl), hk.SetAltKey(n.alt);
    hk.VKey = n.vkey;
    EXPECT_EQ(ToUtf8(hk.UniqueAtomName()), n.name);
  }
  // Flags touch only their own bit; other bits survive and do not show in the name.
  hk.MODIFIER = 0x4000 | MOD_WIN_BIT | MOD_ALT_BIT;
  hk.SetWinKey(false);
  hk.SetShiftKey(true);
  EXPECT_EQ(hk.MODIFIER, 0x4000 | MOD_ALT_BIT | MOD_SHIFT_BIT);
  hk.VKey = 65;
  EXPECT_EQ(hk.UniqueAtomName(), u"SHIFT+ALT+065");
  hk.hwnd = 1311026;
  EXPECT_EQ(hk.UniqueKey(), u"hwnd:1311026");

  // Matching compares the four flags and the key only.
  ApiHotkey a(sys, nullptr), b(sys, nullptr);
  a.MODIFIER = CTRL;
  b.MODIFIER = CTRL | 0x4000 | 0x100;
  a.VKey = b.VKey = 50;
  EXPECT_TRUE(a.MatchedKey(b));
  b.SetShiftKey(true);
  EXPECT_FALSE(a.MatchedKey(b));
  b.SetShiftKey(false);
  b.VKey = 51;
  EXPECT_FALSE(a.MatchedKey(b));

  // Reading a name sets flags and the key but never clears a flag.
  ApiHotkey read(sys, nullptr);
  read.SetAltKey(true);
  read.ReadFromAtom(sys.AddAtom(u"SHIFT+CONTROL+065"));
  EXPECT_EQ(read.MODIFIER, static_cast<int32_t>(MOD_SHIFT_BIT | CTRL | MOD_ALT_BIT));
  EXPECT_EQ(read.VKey, 65);
  read.ReadFromAtom(sys.AddAtom(u"WIN+7"));  // the last three characters "N+7" are no number
  EXPECT_TRUE(read.WinKey());
  EXPECT_EQ(read.VKey, 65);
  read.ReadFromAtom(sys.AddAtom(u"12"));  // a name shorter than three is read whole
  EXPECT_EQ(read.VKey, 12);
}

TEST_F(HotkeyTest, StartRegistersUnderItsAtomAndDeliversPresses) {
  Control hk(sys, controls, 49, false);
  EXPECT_EQ(hk.hAtom(), 0);
  EXPECT_FALSE(sys.IsRegistered(CTRL, 49)) << "nothing happens before the control starts";
  hk.Start();
  EXPECT_EQ(AtomOf(hk), "CONTROL+049");
  ASSERT_EQ(sys.registrations.size(), 1u);
  EXPECT_EQ(sys.registrations[0].id, hk.hAtom()) << "the atom is the hotkey identifier";
  EXPECT_EQ(sys.registrations[0].hwnd, hk.hwnd());
  EXPECT_NE(hk.hKey(), 0);
  EXPECT_EQ(controls.Find(u"hwnd:" + ToDecimal(hk.hwnd())), &hk);

  EXPECT_TRUE(sys.Press(controls, CTRL, 49));
  // Bits above the four flags in the modifier word (as the system adds for repeats) are ignored.
  EXPECT_TRUE(sys.Press(controls, CTRL, 49, 0x4000 | 0x100));
  // Another combination on the same window, or another window, raises nothing.
  controls.DispatchHotkey(hk.hwnd(), (49u << 16) | CTRL | MOD_SHIFT_BIT);
  controls.DispatchHotkey(hk.hwnd(), (50u << 16) | CTRL);
  controls.DispatchHotkey(hk.hwnd() + 1, (49u << 16) | CTRL);
  EXPECT_EQ(hk.presses, 2);
  EXPECT_TRUE(hk.errors.empty());

  VBHotKey fresh(sys, controls, VBHotKey::Design{});  // the design-time default is WIN+A
  fresh.Start();
  EXPECT_EQ(AtomOf(fresh), "WIN+065");
}

TEST_F(HotkeyTest, CollisionRaisesErrorOnlyAfterStartUp) {
  Control first(sys, controls, 50), second(sys, controls, 50);
  EXPECT_NE(first.hKey(), 0);
  EXPECT_EQ(second.hKey(), 0) << "the system refuses the second owner";
  EXPECT_EQ(second.hAtom(), first.hAtom()) << "same name, same atom, still held";
  EXPECT_TRUE(second.errors.empty()) << "at start-up the control is not yet in HotkeyControls";

  // After start-up a refused re-registration is reported with the system's text.
  Control third(sys, controls, 51);
  ASSERT_NE(third.hKey(), 0);
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

// Moving a registration to a new key, and swapping keys between two controls, are also
// driven against the real system.
TEST_F(HotkeyTest, KeyOrFlagChangeReregistersAtOnce) {
  Control hk(sys, controls, 50);
  int calls = sys.registerCalls;
  hk.SetVKey(50);  // unchanged value: nothing to do
  EXPECT_EQ(sys.registerCalls, calls);
  hk.SetVKey(65);
  EXPECT_EQ(sys.AtomCount(), 1u) << "the old atom is deleted";
  hk.SetShiftKey(true);
  EXPECT_EQ(AtomOf(hk), "SHIFT+CONTROL+065");
  EXPECT_FALSE(sys.Press(controls, CTRL, 65));
  EXPECT_TRUE(sys.Press(controls, CTRL | MOD_SHIFT_BIT, 65));
  EXPECT_EQ(hk.presses, 1);
  EXPECT_EQ(sys.registrations.size(), 1u);
}

TEST_F(HotkeyTest, IdleAndStoppedControlsOnlyStoreChanges) {
  Control idle(sys, controls, 50, false);
  idle.SetVKey(66);
  EXPECT_EQ(sys.registerCalls, 0) << "an idle control registers nothing";
  idle.Start();
  EXPECT_TRUE(sys.IsRegistered(CTRL, 66)) << "start-up takes the stored key";

  Control hk(sys, controls, 51);
  intptr_t window = hk.hwnd();
  hk.StopHotkey();
  EXPECT_TRUE(hk.Stopped());
  EXPECT_FALSE(sys.IsRegistered(CTRL, 51));
  EXPECT_EQ(sys.subclassed.count(window) + sys.windows.count(window), 0u)
      << "window procedure restored and window gone";
  EXPECT_EQ(controls.Find(u"hwnd:" + ToDecimal(window)), nullptr);
  EXPECT_EQ(sys.AtomCount(), 1u) << "only the idle control's atom is left";

  int calls = sys.registerCalls;
  hk.SetVKey(67);
  hk.SetAltKey(true);
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
  EXPECT_EQ(controls.Count(), 1u);
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
  EXPECT_EQ(sys.AtomCount(), 0u) << "destroying a control releases its atom and hotkey";
  EXPECT_TRUE(sys.windows.empty());
}

}  // namespace
}  // namespace mq
