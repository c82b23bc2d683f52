// System-wide hotkeys on the real user32: registration under the named atom, presses sent
// with SendInput, refusals, re-registration, and the window procedure's life cycle.
#include <gtest/gtest.h>
#include <windows.h>
#include <commctrl.h>

#include <functional>
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

Text AtomText(int32_t atom) {
  wchar_t name[256];
  UINT n = GlobalGetAtomNameW(static_cast<ATOM>(atom), name, 256);
  return FromW(std::wstring_view(name, n));
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

TEST_F(Win32HotkeyTest, RegistersUnderItsAtomAndFiresOnAPress) {
  Counter c;
  auto started = Started('7', c);
  VBHotKey& hk = *started;
  ASSERT_NE(hk.hKey(), 0);
  ASSERT_NE(hk.hAtom(), 0);
  EXPECT_EQ(AtomText(hk.hAtom()), u"SHIFT+CONTROL+055");
  HWND window = reinterpret_cast<HWND>(hk.hwnd());
  EXPECT_TRUE(IsWindow(window));
  EXPECT_TRUE(HotkeySubclass::IsInstalled(window));
  EXPECT_FALSE(CombinationFree(kMods, '7'));

  Press('7');
  EXPECT_TRUE(PumpUntil([&] { return c.presses == 1; }));

  // Messages built by hand: extra bits in the modifier word are ignored, a different
  // combination is not this control's.
  SendMessageW(window, WM_HOTKEY, hk.hAtom(), MAKELPARAM(kMods | 0x4000, '7'));
  EXPECT_EQ(c.presses, 2);
  SendMessageW(window, WM_HOTKEY, hk.hAtom(), MAKELPARAM(MOD_CONTROL, '7'));
  EXPECT_EQ(c.presses, 2);
  EXPECT_TRUE(c.errors.empty());

  hk.StopHotkey();
  EXPECT_TRUE(CombinationFree(kMods, '7'));
  EXPECT_EQ(GlobalFindAtomW(L"SHIFT+CONTROL+055"), 0) << "the atom is deleted";
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(controls.Count(), 0u);
}

TEST_F(Win32HotkeyTest, CollisionRaisesErrorWithTheSystemsText) {
  VBHotKey first(sys, controls, CtrlShift('8'));
  VBHotKey second(sys, controls, CtrlShift('8'));
  VBHotKey third(sys, controls, CtrlShift('9'));
  Counter c1, c2, c3;
  c1.Attach(first);
  c2.Attach(second);
  c3.Attach(third);
  first.Start();
  second.Start();
  third.Start();
  ASSERT_NE(first.hKey(), 0);
  EXPECT_EQ(second.hKey(), 0);
  EXPECT_EQ(second.hAtom(), first.hAtom());
  EXPECT_TRUE(c2.errors.empty()) << "refusals at start-up stay silent";

  third.SetVKey('8');
  EXPECT_EQ(third.hKey(), 0);
  ASSERT_EQ(c3.errors.size(), 1u);
  EXPECT_EQ(c3.errors[0].second, u"ApiHotkey:Register");
  EXPECT_EQ(c3.errors[0].first, SystemErrorText(ERROR_HOTKEY_ALREADY_REGISTERED));
  EXPECT_FALSE(c3.errors[0].first.empty());
  EXPECT_NE(c3.errors[0].first.back(), u'\n');

  // The owner still gets its presses; the refused controls get none.
  Press('8');
  EXPECT_TRUE(PumpUntil([&] { return c1.presses == 1; }));
  EXPECT_EQ(c2.presses + c3.presses, 0);
}

TEST_F(Win32HotkeyTest, KeyChangeMovesTheRegistration) {
  Counter c;
  auto started = Started('7', c);
  VBHotKey& hk = *started;
  ASSERT_NE(hk.hKey(), 0);

  hk.SetVKey('6');
  EXPECT_NE(hk.hKey(), 0);
  EXPECT_EQ(AtomText(hk.hAtom()), u"SHIFT+CONTROL+054");
  EXPECT_TRUE(CombinationFree(kMods, '7'));
  EXPECT_FALSE(CombinationFree(kMods, '6'));

  // The old combination first, then the new one: input is handled in order, so exactly one
  // press shows that the old one no longer fires.
  Press('7');
  Press('6');
  EXPECT_TRUE(PumpUntil([&] { return c.presses >= 1; }));
  PumpUntil([] { return false; }, 100);
  EXPECT_EQ(c.presses, 1);
  EXPECT_TRUE(c.errors.empty());
}

TEST_F(Win32HotkeyTest, SwappedKeysBothRegister) {
  VBHotKey a(sys, controls, CtrlShift('8')), b(sys, controls, CtrlShift('9'));
  Counter ca, cb;
  ca.Attach(a);
  cb.Attach(b);
  a.Start();
  b.Start();
  VBHotKey::SetVKeys({{&a, '9'}, {&b, '8'}});
  EXPECT_TRUE(ca.errors.empty());
  EXPECT_TRUE(cb.errors.empty());
  Press('8');
  EXPECT_TRUE(PumpUntil([&] { return cb.presses == 1; }));
  EXPECT_EQ(ca.presses, 0);
}

TEST_F(Win32HotkeyTest, ClosingTheWindowEndsItsControl) {
  Counter c;
  auto started = Started('7', c);
  VBHotKey& hk = *started;
  HWND window = reinterpret_cast<HWND>(hk.hwnd());
  ASSERT_EQ(controls.Count(), 1u);

  SendMessageW(window, WM_CLOSE, 0, 0);  // passed on: the default procedure destroys it
  EXPECT_FALSE(IsWindow(window));
  EXPECT_EQ(controls.Count(), 0u) << "the window's control leaves HotkeyControls";

  // Stopping afterwards still frees the combination and the atom.
  hk.StopHotkey();
  EXPECT_TRUE(CombinationFree(kMods, '7'));
  EXPECT_EQ(GlobalFindAtomW(L"SHIFT+CONTROL+055"), 0);
}

// A window of a class whose procedure records what reaches it and keeps WM_CLOSE, so the
// window outlives the close and what the hotkey procedure left behind can be read back.
struct Recorded {
  static constexpr wchar_t kClass[] = L"MarquillTestRecorded";
  static std::vector<UINT>& Messages() {
    static std::vector<UINT> m;
    return m;
  }
  // Set while WM_DESTROY reaches the class's procedure.
  static std::function<void(HWND)>& OnDestroy() {
    static std::function<void(HWND)> f;
    return f;
  }
  static LRESULT CALLBACK Proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    Messages().push_back(msg);
    if (msg == WM_CLOSE) return 0;
    if (msg == WM_DESTROY && OnDestroy()) OnDestroy()(hwnd);
    return DefWindowProcW(hwnd, msg, wp, lp);
  }
  static UniqueWindow Create() {
    WNDCLASSEXW wc{};
    wc.cbSize = sizeof(wc);
    wc.lpfnWndProc = Proc;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = kClass;
    RegisterClassExW(&wc);  // fails harmlessly once the class exists
    return UniqueWindow(CreateWindowExW(0, kClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                        wc.hInstance, nullptr));
  }
};

WNDPROC ProcedureOf(HWND hwnd) {
  return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(hwnd, GWLP_WNDPROC));
}

TEST_F(Win32HotkeyTest, SubclassingAnyWindowAndRemovingItOnCloseAndDestroy) {
  UniqueWindow w = Recorded::Create();
  ASSERT_TRUE(w);
  ASSERT_EQ(ProcedureOf(w.Get()), Recorded::Proc);

  ASSERT_TRUE(HotkeySubclass::Install(w.Get(), controls));
  EXPECT_TRUE(HotkeySubclass::IsInstalled(w.Get()));
  EXPECT_NE(ProcedureOf(w.Get()), Recorded::Proc);
  EXPECT_FALSE(HotkeySubclass::Install(w.Get(), controls)) << "already subclassed: no change";

  Recorded::Messages().clear();
  SendMessageW(w.Get(), WM_HOTKEY, 1, MAKELPARAM(MOD_CONTROL, 'A'));
  SendMessageW(w.Get(), WM_CLOSE, 0, 0);
  EXPECT_EQ(Recorded::Messages(), (std::vector<UINT>{WM_HOTKEY, WM_CLOSE}))
      << "every message, WM_HOTKEY too, reaches the window's own procedure";
  EXPECT_TRUE(IsWindow(w.Get()));
  EXPECT_FALSE(HotkeySubclass::IsInstalled(w.Get()));
  EXPECT_EQ(ProcedureOf(w.Get()), Recorded::Proc) << "the last subclass gone, the class's is back";

  ASSERT_TRUE(HotkeySubclass::Install(w.Get(), controls));
  bool installedAtDestroy = true;
  Recorded::OnDestroy() = [&](HWND hwnd) { installedAtDestroy = HotkeySubclass::IsInstalled(hwnd); };
  w.Reset();  // DestroyWindow: WM_DESTROY removes it before the window's own procedure runs
  Recorded::OnDestroy() = nullptr;
  EXPECT_FALSE(installedAtDestroy);
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

TEST_F(Win32HotkeyTest, DestroyingTheWindowRemovesItsProcedure) {
  Counter c;
  auto started = Started('7', c);
  VBHotKey& hk = *started;
  HWND window = reinterpret_cast<HWND>(hk.hwnd());
  LastLook look;
  look.press = MAKELPARAM(kMods, '7');
  ASSERT_TRUE(SetWindowSubclass(window, LastLook::Proc, 1, reinterpret_cast<DWORD_PTR>(&look)));
  SendMessageW(window, WM_HOTKEY, hk.hAtom(), look.press);
  ASSERT_EQ(c.presses, 1) << "the press passes the probe and dispatches";

  DestroyWindow(window);
  EXPECT_FALSE(look.installed);
  EXPECT_EQ(c.presses, 1) << "a press at the window's end dispatches nothing";
  EXPECT_EQ(controls.Count(), 0u);

  hk.StopHotkey();
  EXPECT_TRUE(CombinationFree(kMods, '7'));
}

TEST(Win32HotkeyErrors, MessageTextsAreTrimmed) {
  Text text = SystemErrorText(ERROR_HOTKEY_ALREADY_REGISTERED);
  ASSERT_FALSE(text.empty());
  EXPECT_NE(text.back(), u'\n');
  EXPECT_NE(text.back(), u' ');
  SetLastError(ERROR_ACCESS_DENIED);
  EXPECT_EQ(LastErrorText(), SystemErrorText(ERROR_ACCESS_DENIED));
}

}  // namespace
}  // namespace mq::win32
