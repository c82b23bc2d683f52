// The save and load commands' own windows in process: frmPass and frmOpenContext driven with
// real keystrokes.
#include <windows.h>

#include <gtest/gtest.h>

#include "../native/fakes/FakePorts.h"
#include "listfiles/win32/ListFileShell.h"
#include "Support.h"

namespace mq::win32 {
namespace {

// A plain top-level window standing in for the clip list window.
UniqueWindow MakeOwner() {
  UniqueWindow owner(CreateWindowExW(0, L"Static", L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                     100, 100, 300, 200, nullptr, nullptr, nullptr, nullptr));
  SetForegroundWindow(owner.Get());
  PumpFor(50);
  return owner;
}

// Keys as a user presses them, with Shift or Alt held when asked; pumped until handled.
void Press(WORD vk, WORD modifier = 0) {
  if (modifier) SendKey(modifier, false);
  SendKey(vk, false);
  SendKey(vk, true);
  if (modifier) SendKey(modifier, true);
  PumpFor(60);
}
void Type(const char* text) {
  for (const char* p = text; *p; ++p) {
    const SHORT scan = VkKeyScanW(static_cast<wchar_t>(*p));
    Press(LOBYTE(scan), HIBYTE(scan) & 1 ? VK_SHIFT : 0);
  }
}

std::wstring TextOf(HWND hwnd) {
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(hwnd)) + 1, L'\0');
  text.resize(static_cast<size_t>(GetWindowTextW(hwnd, text.data(), static_cast<int>(text.size()))));
  return text;
}

RECT ClientRectIn(HWND parent, HWND child) {
  RECT r{};
  GetWindowRect(child, &r);
  MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&r), 2);
  return r;
}

class Consumer : public PasswordConsumer {
 public:
  PassVerdict UsePassword(PassMode, TextView password) override {
    passwords.push_back(Text(password));
    return password == u"right" ? PassVerdict::Done : PassVerdict::WrongPassword;
  }
  std::vector<Text> passwords;
};

class PasswordWindowTest : public ::testing::Test {
 protected:
  void SetUp() override { model.SetView(&window); }
  UniqueWindow owner = MakeOwner();
  test::FakeMessageBoxes messages;
  frmPass model{messages};
  PasswordWindow window{model, [this] { return owner.Get(); }};
  Consumer consumer;
};

TEST_F(PasswordWindowTest, SaveModeLayoutAndKeyboard) {
  model.Show(PassMode::Save, consumer);
  HWND dialog = window.hwnd();
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(PumpUntil([&] { return GetFocus() == window.Box(0); }));
  EXPECT_TRUE(IsWindowVisible(window.Label(1)));
  EXPECT_EQ(TextOf(window.Label(0)), L"Please enter your password:");
  EXPECT_EQ(TextOf(window.Label(1)), L"Please verify your password:");
  EXPECT_EQ(TextOf(window.Button(0)), L"&OK");
  EXPECT_EQ(TextOf(window.Button(1)), L"&Cancel");
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(GetWindowLongW(window.Box(i), GWL_STYLE) & ES_PASSWORD);
    EXPECT_EQ(SendMessageW(window.Box(i), EM_GETPASSWORDCHAR, 0, 0), 0x25CF);
  }
  // Below the second box in save mode.
  EXPECT_GT(ClientRectIn(dialog, window.Button(0)).top, ClientRectIn(dialog, window.Box(1)).bottom);

  // Tab order: first box, second box, OK, Cancel, and round again.
  for (HWND expected : {window.Box(1), window.Button(0), window.Button(1), window.Box(0)}) {
    Press(VK_TAB);
    EXPECT_EQ(GetFocus(), expected);
  }
  Press(VK_TAB, VK_SHIFT);
  EXPECT_EQ(GetFocus(), window.Button(1));
  Press(VK_TAB);

  // (A mismatch is the unit tests' and the end-to-end tests' to see.)
  Type("abc");
  Press(VK_RETURN);  // moves on without confirming
  EXPECT_EQ(GetFocus(), window.Box(1));
  EXPECT_TRUE(consumer.passwords.empty());

  // Back in the first box its whole content is selected: typing replaces it.
  SetFocus(window.Box(0));
  DWORD from = 0, to = 0;
  SendMessageW(window.Box(0), EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
  EXPECT_EQ(from, 0u);
  EXPECT_EQ(to, 3u);
  Type("right");
  Press(VK_TAB);
  Type("right");
  Press('O', VK_MENU);  // "&OK" by its letter
  EXPECT_EQ(consumer.passwords, std::vector<Text>{u"right"});
  EXPECT_FALSE(IsWindow(dialog));
}

TEST_F(PasswordWindowTest, LoadModeRetriesAndCancels) {
  model.Show(PassMode::Load, consumer);
  HWND dialog = window.hwnd();
  ASSERT_TRUE(PumpUntil([&] { return GetFocus() == window.Box(0); }));
  EXPECT_FALSE(IsWindowVisible(window.Box(1)));
  EXPECT_FALSE(IsWindowVisible(window.Label(1)));
  // The buttons move up into the hidden label's place, inside the smaller window.
  RECT ok = ClientRectIn(dialog, window.Button(0)), client{};
  EXPECT_EQ(ok.top, ClientRectIn(dialog, window.Label(1)).top);
  GetClientRect(dialog, &client);
  EXPECT_GT(client.bottom, ok.bottom);

  Type("wrong");
  Press(VK_RETURN);
  EXPECT_TRUE(IsWindow(dialog));
  EXPECT_EQ(TextOf(window.Box(0)), L"");
  EXPECT_EQ(GetFocus(), window.Box(0));
  EXPECT_EQ(messages.shown.size(), 1u);
  Type("right");
  Press(VK_RETURN);
  EXPECT_FALSE(IsWindow(dialog));
  EXPECT_EQ(consumer.passwords, (std::vector<Text>{u"wrong", u"right"}));

  // Esc in the box, and "&Cancel" by its letter: closed, nothing used.
  for (WORD modifier : {WORD{0}, WORD{VK_MENU}}) {
    model.Show(PassMode::Load, consumer);
    ASSERT_TRUE(PumpUntil([&] { return GetFocus() == window.Box(0); }));
    Type("zz");
    Press(modifier ? 'C' : VK_ESCAPE, modifier);
    EXPECT_FALSE(window.hwnd());
  }
  EXPECT_EQ(consumer.passwords.size(), 2u);
}

TEST(OpenContextWindow, PlacedTopmostAndKeyboard) {
  UniqueWindow owner = MakeOwner();
  std::vector<int> clicks;
  OpenContextWindow popup([&] { return owner.Get(); }, [&](int i) { clicks.push_back(i); });
  const UINT dpi = DpiOfWindow(owner.Get());

  popup.Show({100, 120, 124, 144});
  HWND hwnd = popup.hwnd();
  ASSERT_TRUE(hwnd);
  RECT r{};
  GetWindowRect(hwnd, &r);
  EXPECT_EQ(r.left, 100);
  EXPECT_EQ(r.top, 144);
  EXPECT_GE(r.right - r.left, PixelsFromTwips(1695, dpi));  // wider only when a caption needs it
  EXPECT_EQ(r.bottom - r.top, PixelsFromTwips(1470, dpi));
  EXPECT_TRUE(GetWindowLongW(hwnd, GWL_EXSTYLE) & WS_EX_TOPMOST);
  EXPECT_FALSE(GetWindowLongW(hwnd, GWL_STYLE) & (WS_CAPTION | WS_THICKFRAME));
  EXPECT_EQ(GetWindow(hwnd, GW_OWNER), owner.Get());
  for (int i = 0; i < 4; ++i) {  // a column of buttons as wide as the popup
    RECT b = ClientRectIn(hwnd, popup.Button(i));
    EXPECT_EQ(b.right - b.left, r.right - r.left);
  }

  ASSERT_TRUE(PumpUntil([&] { return GetFocus() == popup.Button(0); }));
  Press(VK_DOWN);
  EXPECT_EQ(GetFocus(), popup.Button(1));
  Press(VK_RETURN);
  Press('A', VK_MENU);
  Press(VK_ESCAPE);
  EXPECT_EQ(clicks, (std::vector<int>{1, 2, 3}));

  // Out of the topmost band, or (Wine) out of sight: it covers no dialog either way.
  popup.LeaveTopmost();
  EXPECT_TRUE(!(GetWindowLongW(hwnd, GWL_EXSTYLE) & WS_EX_TOPMOST) || !IsWindowVisible(hwnd));
  popup.Unload();
  EXPECT_FALSE(IsWindow(hwnd));
}

}  // namespace
}  // namespace mq::win32
