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

struct Recorder {
  int presses = 0;
  std::vector<std::pair<std::string, std::string>> errors;
  void Attach(VBHotKey& hk) {
    hk.HotkeyPressed = [this] { ++presses; };
    hk.ErrorOccured = [this](TextView m, TextView s) { errors.push_back({ToUtf8(m), ToUtf8(s)}); };
  }
};

class HotkeyTest : public ::testing::Test {
 protected:
  FakeHotkeySystem sys;
  HotkeyControls controls;
};

TEST_F(HotkeyTest, AtomNamesKeysAndModifierFlags) {
  ApiHotkey hk(sys, &controls);
  hk.SetControlKey(true);
  hk.VKey = 49;
  EXPECT_EQ(hk.UniqueAtomName(), u"CONTROL+049");
  hk.SetShiftKey(true);
  hk.VKey = 65;
  EXPECT_EQ(hk.UniqueAtomName(), u"SHIFT+CONTROL+065");
  hk.SetWinKey(true);
  hk.SetAltKey(true);
  hk.VKey = 5;
  EXPECT_EQ(hk.UniqueAtomName(), u"WIN+SHIFT+CONTROL+ALT+005");
  hk.VKey = 1234;
  EXPECT_EQ(hk.UniqueAtomName(), u"WIN+SHIFT+CONTROL+ALT+1234");

  // Flags touch only their own bit; other bits of MODIFIER survive and do not show in the name.
  hk.MODIFIER = 0x4000 | MOD_WIN_BIT | MOD_ALT_BIT;
  hk.SetWinKey(false);
  hk.SetShiftKey(true);
  EXPECT_EQ(hk.MODIFIER, 0x4000 | MOD_ALT_BIT | MOD_SHIFT_BIT);
  EXPECT_TRUE(hk.AltKey());
  EXPECT_FALSE(hk.ControlKey());
  hk.VKey = 65;
  EXPECT_EQ(hk.UniqueAtomName(), u"SHIFT+ALT+065");

  hk.hwnd = 1311026;
  EXPECT_EQ(hk.UniqueKey(), u"hwnd:1311026");
}

TEST_F(HotkeyTest, MatchingUsesTheFourFlagsAndTheKeyOnly) {
  ApiHotkey a(sys, nullptr), b(sys, nullptr);
  a.MODIFIER = MOD_CONTROL_BIT;
  a.VKey = 50;
  b.MODIFIER = MOD_CONTROL_BIT | 0x4000 | 0x100;
  b.VKey = 50;
  EXPECT_TRUE(a.MatchedKey(b));
  b.SetShiftKey(true);
  EXPECT_FALSE(a.MatchedKey(b));
  b.SetShiftKey(false);
  b.VKey = 51;
  EXPECT_FALSE(a.MatchedKey(b));
}

TEST_F(HotkeyTest, ReadFromAtomSetsFlagsAndKeyButNeverClears) {
  ApiHotkey hk(sys, nullptr);
  hk.SetAltKey(true);
  hk.VKey = 1;
  hk.ReadFromAtom(sys.AddAtom(u"SHIFT+CONTROL+065"));
  EXPECT_TRUE(hk.ShiftKey());
  EXPECT_TRUE(hk.ControlKey());
  EXPECT_TRUE(hk.AltKey());  // not in the name, kept
  EXPECT_FALSE(hk.WinKey());
  EXPECT_EQ(hk.VKey, 65);

  hk.ReadFromAtom(sys.AddAtom(u"WIN+7"));  // the last three characters "N+7" are no number
  EXPECT_TRUE(hk.WinKey());
  EXPECT_EQ(hk.VKey, 65);

  hk.ReadFromAtom(sys.AddAtom(u"12"));  // a name shorter than three is read whole
  EXPECT_EQ(hk.VKey, 12);
}

TEST_F(HotkeyTest, StartRegistersUnderItsAtomAndDeliversPresses) {
  VBHotKey hk(sys, controls, Ctrl(49));
  Recorder rec;
  rec.Attach(hk);
  EXPECT_EQ(hk.hAtom(), 0);
  EXPECT_FALSE(sys.IsRegistered(CTRL, 49)) << "nothing happens before the control starts";

  hk.Start();
  ASSERT_NE(hk.hAtom(), 0);
  EXPECT_NE(hk.hKey(), 0);
  EXPECT_EQ(sys.AtomName(static_cast<uint16_t>(hk.hAtom())), u"CONTROL+049");
  ASSERT_EQ(sys.registrations.size(), 1u);
  EXPECT_EQ(sys.registrations[0].id, hk.hAtom()) << "the atom is the hotkey identifier";
  EXPECT_EQ(sys.registrations[0].hwnd, hk.hwnd());
  EXPECT_EQ(controls.Find(hk.UniqueKey()), &hk);
  EXPECT_EQ(hk.UniqueKey(), u"hwnd:" + ToDecimal(hk.hwnd()));

  EXPECT_TRUE(sys.Press(controls, CTRL, 49));
  EXPECT_EQ(rec.presses, 1);
  // Bits above the four flags in the modifier word (as the system adds for repeats) are ignored.
  EXPECT_TRUE(sys.Press(controls, CTRL, 49, 0x4000 | 0x100));
  EXPECT_EQ(rec.presses, 2);
  // A message naming another combination on the same window raises nothing.
  controls.DispatchHotkey(hk.hwnd(), (49u << 16) | CTRL | MOD_SHIFT_BIT);
  controls.DispatchHotkey(hk.hwnd(), (50u << 16) | CTRL);
  // Nor does one for another window.
  controls.DispatchHotkey(hk.hwnd() + 1, (49u << 16) | CTRL);
  EXPECT_EQ(rec.presses, 2);
  EXPECT_TRUE(rec.errors.empty());

  // The design-time default is WIN+A.
  VBHotKey fresh(sys, controls, VBHotKey::Design{});
  fresh.Start();
  EXPECT_EQ(sys.AtomName(static_cast<uint16_t>(fresh.hAtom())), u"WIN+065");
}

TEST_F(HotkeyTest, CollisionRaisesErrorOnlyAfterStartUp) {
  VBHotKey first(sys, controls, Ctrl(50)), second(sys, controls, Ctrl(50));
  Recorder r1, r2;
  r1.Attach(first);
  r2.Attach(second);
  first.Start();
  second.Start();
  EXPECT_NE(first.hKey(), 0);
  EXPECT_EQ(second.hKey(), 0) << "the system refuses the second owner";
  EXPECT_EQ(second.hAtom(), first.hAtom()) << "same combination, same atom name";
  EXPECT_NE(second.hAtom(), 0) << "a refused control still holds its atom";
  EXPECT_TRUE(r2.errors.empty()) << "at start-up the control is not yet in HotkeyControls";

  // After start-up a refused re-registration is reported with the system's text.
  VBHotKey third(sys, controls, Ctrl(51));
  Recorder r3;
  r3.Attach(third);
  third.Start();
  ASSERT_NE(third.hKey(), 0);
  third.SetVKey(50);
  EXPECT_EQ(third.hKey(), 0);
  ASSERT_EQ(r3.errors.size(), 1u);
  EXPECT_EQ(r3.errors[0].first, "Hot key is already registered.");
  EXPECT_EQ(r3.errors[0].second, "ApiHotkey:Register");
  EXPECT_TRUE(r1.errors.empty());

  // The refused control still re-registers when its key changes to a free one.
  second.SetVKey(52);
  EXPECT_NE(second.hKey(), 0);
  EXPECT_TRUE(sys.Press(controls, CTRL, 52));
  EXPECT_EQ(r2.presses, 1);
  EXPECT_TRUE(sys.Press(controls, CTRL, 50));
  EXPECT_EQ(r1.presses, 1) << "the first owner keeps its combination";
  EXPECT_EQ(r3.presses, 0);

  // Atoms are reference counted: releasing one holder keeps the shared atom alive.
  auto shared = static_cast<uint16_t>(first.hAtom());
  third.StopHotkey();
  EXPECT_EQ(sys.AtomName(shared), u"CONTROL+050");
  first.StopHotkey();
  EXPECT_EQ(sys.AtomName(shared), u"");
}

TEST_F(HotkeyTest, KeyChangeReregistersAtOnce) {
  VBHotKey hk(sys, controls, Ctrl(50));
  Recorder rec;
  rec.Attach(hk);
  hk.Start();
  int calls = sys.registerCalls;

  hk.SetVKey(50);  // unchanged value: nothing to do
  EXPECT_EQ(sys.registerCalls, calls);

  hk.SetVKey(65);
  EXPECT_FALSE(sys.IsRegistered(CTRL, 50));
  EXPECT_TRUE(sys.IsRegistered(CTRL, 65));
  EXPECT_EQ(sys.AtomName(static_cast<uint16_t>(hk.hAtom())), u"CONTROL+065");
  EXPECT_EQ(sys.AtomCount(), 1u) << "the old atom is deleted";
  EXPECT_FALSE(sys.Press(controls, CTRL, 50)) << "the old combination is free";
  EXPECT_TRUE(sys.Press(controls, CTRL, 65));
  EXPECT_EQ(rec.presses, 1);

  hk.SetShiftKey(true);
  EXPECT_TRUE(sys.IsRegistered(CTRL | MOD_SHIFT_BIT, 65));
  EXPECT_EQ(sys.AtomName(static_cast<uint16_t>(hk.hAtom())), u"SHIFT+CONTROL+065");
  EXPECT_FALSE(sys.Press(controls, CTRL, 65));
  EXPECT_TRUE(sys.Press(controls, CTRL | MOD_SHIFT_BIT, 65));
  EXPECT_EQ(rec.presses, 2);
  EXPECT_EQ(sys.registrations.size(), 1u);
  EXPECT_TRUE(rec.errors.empty());
}

TEST_F(HotkeyTest, IdleAndStoppedControlsOnlyStoreChanges) {
  VBHotKey idle(sys, controls, Ctrl(50));
  idle.SetVKey(66);
  EXPECT_EQ(idle.VKey(), 66);
  EXPECT_EQ(sys.registerCalls, 0) << "an idle control registers nothing";
  idle.Start();
  EXPECT_TRUE(sys.IsRegistered(CTRL, 66)) << "start-up takes the stored key";

  VBHotKey hk(sys, controls, Ctrl(51));
  Recorder rec;
  rec.Attach(hk);
  hk.Start();
  intptr_t window = hk.hwnd();
  hk.StopHotkey();
  EXPECT_TRUE(hk.Stopped());
  EXPECT_FALSE(sys.IsRegistered(CTRL, 51));
  EXPECT_EQ(sys.subclassed.count(window), 0u) << "window procedure restored";
  EXPECT_EQ(sys.windows.count(window), 0u);
  EXPECT_EQ(controls.Find(u"hwnd:" + ToDecimal(window)), nullptr);
  EXPECT_EQ(hk.hAtom(), 0);
  EXPECT_EQ(sys.AtomCount(), 1u) << "only the idle control's atom is left";

  int calls = sys.registerCalls;
  hk.SetVKey(67);
  hk.SetAltKey(true);
  VBHotKey::SetVKeys({{&hk, 68}});
  EXPECT_EQ(hk.VKey(), 68) << "the stored value still changes";
  EXPECT_EQ(sys.registerCalls, calls) << "but nothing is registered until restart";
  hk.Start();  // a stopped control cannot come back during the run
  EXPECT_EQ(sys.registerCalls, calls);
  EXPECT_EQ(rec.presses, 0);
  hk.StopHotkey();  // a second stop is harmless
}

TEST_F(HotkeyTest, SwappingKeysUnregistersAllFirst) {
  VBHotKey a(sys, controls, Ctrl(50)), b(sys, controls, Ctrl(51));
  Recorder ra, rb;
  ra.Attach(a);
  rb.Attach(b);
  a.Start();
  b.Start();

  VBHotKey::SetVKeys({{&a, 51}, {&b, 50}});
  EXPECT_TRUE(ra.errors.empty());
  EXPECT_TRUE(rb.errors.empty());
  EXPECT_NE(a.hKey(), 0);
  EXPECT_NE(b.hKey(), 0);
  sys.Press(controls, CTRL, 50);
  EXPECT_EQ(rb.presses, 1);
  EXPECT_EQ(ra.presses, 0);
  sys.Press(controls, CTRL, 51);
  EXPECT_EQ(ra.presses, 1);

  // Done one control at a time, the same swap collides: that is why SetVKeys exists.
  a.SetVKey(50);
  EXPECT_EQ(ra.errors.size(), 1u);
  EXPECT_EQ(a.hKey(), 0);
}

TEST_F(HotkeyTest, HandlersMayDestroyControlsDuringDispatch) {
  auto a = std::make_unique<VBHotKey>(sys, controls, Ctrl(50));
  auto b = std::make_unique<VBHotKey>(sys, controls, Ctrl(51));
  a->Start();
  b->Start();
  int bPresses = 0;
  b->HotkeyPressed = [&] { ++bPresses; };
  a->HotkeyPressed = [&] {  // like Exit: tears down every control from inside a press
    b.reset();
    a.reset();  // last: this destroys the running handler itself
  };
  EXPECT_TRUE(sys.Press(controls, CTRL, 50));
  EXPECT_EQ(a, nullptr);
  EXPECT_EQ(bPresses, 0);
  EXPECT_EQ(controls.Count(), 0u);
  EXPECT_TRUE(sys.registrations.empty());
  EXPECT_EQ(sys.AtomCount(), 0u) << "destroying a control releases its atom and hotkey";
  EXPECT_TRUE(sys.windows.empty());
}

TEST_F(HotkeyTest, NoWindowMeansNothingRegistered) {
  sys.failWindows = true;
  VBHotKey hk(sys, controls, Ctrl(50));
  hk.Start();
  EXPECT_EQ(hk.hAtom(), 0);
  EXPECT_EQ(sys.registerCalls, 0);
  EXPECT_EQ(controls.Count(), 0u);
  hk.SetVKey(51);
  EXPECT_EQ(sys.registerCalls, 0);
}

}  // namespace
}  // namespace mq
