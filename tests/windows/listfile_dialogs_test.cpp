// The save and load commands' windows in process: frmPass and frmOpenContext driven with real
// keystrokes, and the classic common dialogs driven from a second thread as a user would.
#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "../native/fakes/FakePorts.h"
#include "../native/fakes/FakeRichTextBox.h"
#include "../native/fakes/FakeSettings.h"
#include "listfiles/win32/ListFileShell.h"
#include "platform/win32/MessageWindow.h"
#include "platform/win32/Strings.h"
#include "platform/win32/SystemCodePage.h"
#include "platform/win32/Win32FileSystem.h"
#include "settings/KeyTable.h"
#include "Pump.h"

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

void Key(WORD vk, bool up) {
  INPUT in{};
  in.type = INPUT_KEYBOARD;
  in.ki.wVk = vk;
  in.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  SendInput(1, &in, sizeof(INPUT));
}
// Keys as a user presses them, with Shift or Alt held when asked; pumped until handled.
void Press(WORD vk, WORD modifier = 0) {
  if (modifier) Key(modifier, false);
  Key(vk, false);
  Key(vk, true);
  if (modifier) Key(modifier, true);
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
    return password == u"right" || answerDone ? PassVerdict::Done : PassVerdict::WrongPassword;
  }
  std::vector<Text> passwords;
  bool answerDone = false;
};

TEST(PasswordWindow, SaveModeKeyboardAndMismatch) {
  UniqueWindow owner = MakeOwner();
  test::FakeMessageBoxes messages;
  frmPass model(messages);
  PasswordWindow window(model, [&] { return owner.Get(); });
  model.SetView(&window);
  Consumer consumer;
  consumer.answerDone = true;

  model.Show(PassMode::Save, consumer);
  HWND dialog = window.hwnd();
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(PumpUntil([&] { return GetFocus() == window.Box(0); }));
  EXPECT_EQ(TextOf(dialog), L"Input Password");
  EXPECT_EQ(GetWindow(dialog, GW_OWNER), owner.Get());
  EXPECT_TRUE(IsWindowVisible(window.Box(1)));
  EXPECT_TRUE(IsWindowVisible(window.Label(1)));
  EXPECT_EQ(TextOf(window.Label(0)), L"Please enter your password:");
  EXPECT_EQ(TextOf(window.Label(1)), L"Please verify your password:");
  EXPECT_EQ(TextOf(window.Button(0)), L"&OK");
  EXPECT_EQ(TextOf(window.Button(1)), L"&Cancel");
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(GetWindowLongW(window.Box(i), GWL_STYLE) & ES_PASSWORD);
    EXPECT_EQ(SendMessageW(window.Box(i), EM_GETPASSWORDCHAR, 0, 0), 0x25CF);
  }
  // Buttons 2160 twips from the top, 495 high, in a client area wider than tall.
  const UINT dpi = DpiOfWindow(dialog);
  RECT ok = ClientRectIn(dialog, window.Button(0));
  EXPECT_EQ(ok.top, PixelsFromTwips(2160, dpi));
  EXPECT_EQ(ok.bottom - ok.top, PixelsFromTwips(495, dpi));

  // Tab order: first box, second box, OK, Cancel, and round again.
  for (HWND expected : {window.Box(1), window.Button(0), window.Button(1), window.Box(0)}) {
    Press(VK_TAB);
    EXPECT_EQ(GetFocus(), expected);
  }
  Press(VK_TAB, VK_SHIFT);
  EXPECT_EQ(GetFocus(), window.Button(1));
  Press(VK_TAB);

  Type("abc");
  Press(VK_RETURN);  // moves on without confirming
  EXPECT_EQ(GetFocus(), window.Box(1));
  Type("ABC");
  Press(VK_RETURN);
  ASSERT_EQ(messages.shown.size(), 1u);
  EXPECT_EQ(messages.shown[0].text, "Passwords do not match");
  EXPECT_EQ(TextOf(window.Box(0)), L"abc");
  EXPECT_EQ(TextOf(window.Box(1)), L"");
  EXPECT_EQ(GetFocus(), window.Box(1));
  EXPECT_TRUE(consumer.passwords.empty());

  // Back in the first box its whole content is selected: typing replaces it.
  SetFocus(window.Box(0));
  DWORD from = 0, to = 0;
  SendMessageW(window.Box(0), EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
  EXPECT_EQ(from, 0u);
  EXPECT_EQ(to, 3u);
  Type("xy");
  Press(VK_TAB);
  Type("xy");
  Press('O', VK_MENU);  // "&OK" by its letter
  ASSERT_EQ(consumer.passwords.size(), 1u);
  EXPECT_EQ(consumer.passwords[0], u"xy");
  EXPECT_FALSE(IsWindow(dialog));
  EXPECT_FALSE(model.Loaded());
}

TEST(PasswordWindow, LoadModeRetriesAndCancels) {
  UniqueWindow owner = MakeOwner();
  test::FakeMessageBoxes messages;
  frmPass model(messages);
  PasswordWindow window(model, [&] { return owner.Get(); });
  model.SetView(&window);
  Consumer consumer;

  model.Show(PassMode::Load, consumer);
  HWND dialog = window.hwnd();
  ASSERT_TRUE(PumpUntil([&] { return GetFocus() == window.Box(0); }));
  EXPECT_FALSE(IsWindowVisible(window.Box(1)));
  EXPECT_FALSE(IsWindowVisible(window.Label(1)));
  const UINT dpi = DpiOfWindow(dialog);
  RECT ok = ClientRectIn(dialog, window.Button(0)), label = ClientRectIn(dialog, window.Label(1));
  EXPECT_EQ(ok.top, label.top);
  EXPECT_EQ(ok.bottom - ok.top, PixelsFromTwips(375, dpi));
  RECT client{};
  GetClientRect(dialog, &client);
  EXPECT_GT(client.bottom, ok.bottom);

  Press(VK_RETURN);  // an empty box: ignored
  EXPECT_TRUE(messages.shown.empty());
  EXPECT_TRUE(consumer.passwords.empty());
  for (const char* wrong : {"one", "two"}) {
    Type(wrong);
    Press(VK_RETURN);
    EXPECT_TRUE(IsWindow(dialog));
    EXPECT_EQ(TextOf(window.Box(0)), L"");
    EXPECT_EQ(GetFocus(), window.Box(0));
  }
  EXPECT_EQ(messages.shown.size(), 2u);
  Type("right");
  Press(VK_RETURN);
  EXPECT_FALSE(IsWindow(dialog));
  EXPECT_EQ(consumer.passwords, (std::vector<Text>{u"one", u"two", u"right"}));

  // Esc in the box, and "&Cancel" by its letter: closed, nothing used.
  for (WORD modifier : {WORD{0}, WORD{VK_MENU}}) {
    model.Show(PassMode::Load, consumer);
    ASSERT_TRUE(PumpUntil([&] { return GetFocus() == window.Box(0); }));
    Type("zz");
    Press(modifier ? 'C' : VK_ESCAPE, modifier);
    EXPECT_FALSE(window.hwnd());
  }
  EXPECT_EQ(consumer.passwords.size(), 3u);
}

TEST(OpenContextWindow, PlacedTopmostAndKeyboard) {
  UniqueWindow owner = MakeOwner();
  std::vector<int> clicks;
  OpenContextWindow popup([&] { return owner.Get(); }, [&](int i) { clicks.push_back(i); });
  const UINT dpi = DpiOfWindow(owner.Get());
  const int width = PixelsFromTwips(1695, dpi), height = PixelsFromTwips(1470, dpi);

  popup.Show({100, 120, 124, 144});
  HWND hwnd = popup.hwnd();
  ASSERT_TRUE(hwnd);
  RECT r{};
  GetWindowRect(hwnd, &r);
  EXPECT_EQ(r.left, 100);
  EXPECT_EQ(r.top, 144);
  EXPECT_GE(r.right - r.left, width);  // wider only when a caption needs it
  EXPECT_EQ(r.bottom - r.top, height);
  EXPECT_TRUE(GetWindowLongW(hwnd, GWL_EXSTYLE) & WS_EX_TOPMOST);
  EXPECT_FALSE(GetWindowLongW(hwnd, GWL_STYLE) & (WS_CAPTION | WS_THICKFRAME));
  EXPECT_EQ(GetWindow(hwnd, GW_OWNER), owner.Get());
  const wchar_t* captions[] = {L"&Open as New", L"&Insert before Current", L"&Append after Current",
                               L"&Cancel"};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(TextOf(popup.Button(i)), captions[i]);
    RECT b = ClientRectIn(hwnd, popup.Button(i));
    EXPECT_EQ(b.top, PixelsFromTwips(360 * i, dpi));
    EXPECT_EQ(b.right - b.left, r.right - r.left);
  }

  // A Load button at the screen's bottom-right corner: the popup stays on the screen.
  const int sw = GetSystemMetrics(SM_CXSCREEN), sh = GetSystemMetrics(SM_CYSCREEN);
  popup.Show({sw - 20, sh - 30, sw - 4, sh - 6});
  GetWindowRect(hwnd, &r);
  EXPECT_EQ(r.right, sw);
  EXPECT_EQ(r.bottom, sh);

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

// ---- The common dialogs, driven from a second thread ------------------------------------------

// Waits for a dialog of this process with the title, types the path into its file-name box
// and presses its OK button (or Cancel when the path is empty).
class DialogDriver {
 public:
  DialogDriver(std::wstring title, std::wstring path)
      : thread_([this, title = std::move(title), path = std::move(path)] { Run(title, path); }) {}
  ~DialogDriver() { thread_.join(); }
  // The window that owned the dialog while it was open.
  HWND Owner() const { return owner_; }

 private:
  void Run(const std::wstring& title, const std::wstring& path) {
    HWND name = nullptr;
    // A first dialog in a fresh prefix takes a while on a busy machine.
    for (int i = 0; i < 3000 && !name; ++i) {
      Sleep(20);
      dialog_ = FindWindowW(L"#32770", title.c_str());
      if (dialog_) name = FileNameBox(dialog_);
    }
    if (!name) return;
    owner_ = GetWindow(dialog_, GW_OWNER);
    Sleep(200);  // let it finish its initialisation
    if (path.empty()) {
      PostMessageW(dialog_, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
      return;
    }
    SendMessageW(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    PostMessageW(dialog_, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog_, IDOK)));
  }
  // The edit box of the file-name combo (cmb13, inside a ComboBoxEx on Wine), or edt1.
  static HWND FileNameBox(HWND dialog) {
    HWND combo = GetDlgItem(dialog, 0x47C);
    if (!combo) return GetDlgItem(dialog, 0x480);
    HWND edit = nullptr;
    EnumChildWindows(
        combo,
        [](HWND child, LPARAM found) {
          wchar_t cls[16] = {};
          GetClassNameW(child, cls, 16);
          if (lstrcmpiW(cls, L"Edit") != 0) return TRUE;
          *reinterpret_cast<HWND*>(found) = child;
          return FALSE;
        },
        reinterpret_cast<LPARAM>(&edit));
    return edit;
  }
  std::atomic<HWND> dialog_{nullptr}, owner_{nullptr};
  std::thread thread_;
};

std::wstring NewFolder(const wchar_t* name) {
  wchar_t base[MAX_PATH];
  GetTempPathW(MAX_PATH, base);
  std::wstring folder = std::wstring(base) + name + std::to_wstring(GetCurrentProcessId());
  CreateDirectoryW(folder.c_str(), nullptr);
  return folder;
}

TEST(Win32FileDialogs, OwnedTitledAndReportingTheFilter) {
  UniqueWindow owner = MakeOwner();
  Win32FileDialogs dialogs([&] { return owner.Get(); });
  const std::wstring folder = NewFolder(L"Z\u00FCrich \u03A9 lists ");
  FileDialogRequest save{FileDialogKind::Save, u"Save Marquill File",
                         Text(u"Marquill List (*.MQL)|*.MQL|Marquill Protected List (*.MQP)|*.MQP"),
                         2, FromW(folder), u"", true};
  {
    DialogDriver driver(L"Save Marquill File", folder + L"\\notes");
    auto choice = dialogs.Show(save);
    ASSERT_TRUE(choice);
    EXPECT_EQ(choice->path, FromW(folder + L"\\notes"));
    EXPECT_EQ(choice->filterIndex, 2);
    EXPECT_EQ(driver.Owner(), owner.Get());
  }
  {
    DialogDriver driver(L"Save Marquill File", L"");
    EXPECT_FALSE(dialogs.Show(save));
  }
  FileDialogRequest open = save;
  open.kind = FileDialogKind::Open;
  open.title = u"Load Marquill File";
  open.overwritePrompt = false;
  {
    // A name that does not exist comes back as typed: the caller tries its extensions.
    DialogDriver driver(L"Load Marquill File", folder + L"\\notes");
    auto choice = dialogs.Show(open);
    ASSERT_TRUE(choice);
    EXPECT_EQ(choice->path, FromW(folder + L"\\notes"));
  }
  RemoveDirectoryW(folder.c_str());
}

// The whole protected round trip through the shell: the real save dialog, frmPass in save
// mode, the real open dialog, frmPass in load mode with a wrong password first.
class Host : public ListFileHost {
 public:
  explicit Host(HWND hwnd) : hwnd_(hwnd) {}
  bool Pinned() override { return pinned; }
  void SetTop(bool top) override { topCalls.push_back(top); }
  ScreenRect LoadButtonRect() override { return {100, 100, 124, 124}; }
  std::uintptr_t NativeWindow() override { return reinterpret_cast<std::uintptr_t>(hwnd_); }
  bool pinned = true;
  std::vector<bool> topCalls;

 private:
  HWND hwnd_;
};

TEST(ListFileShell, ProtectedRoundTripThroughTheRealDialogs) {
  UniqueWindow owner = MakeOwner();
  Host host(owner.Get());
  ListModel rows;
  ClipStore store(rows);
  test::FakeRichTextBox rtb;
  SystemCodePage cp;
  Win32FileSystem files;
  test::FakeSettings port;
  Settings settings(port);
  const std::wstring folder = NewFolder(L"mq shell \u00E9\u6587 ");
  ListFileShell shell({store, rtb, cp, files}, settings, host, FromW(folder));
  store.Append(ClipEntry::Plain(u"first \u00E9"), u"first \u00E9");
  store.Append(ClipEntry::Plain(u"second"), u"second");

  {
    DialogDriver driver(L"Save Marquill File", folder + L"\\secret");
    port.Set(settings::key::Cur_FF_S.name, u"2");
    shell.commands.cmdFile_Click(0);
  }
  ASSERT_TRUE(PumpUntil([&] { return shell.passWindow.hwnd() && GetFocus() == shell.passWindow.Box(0); }));
  Type("pw");
  Press(VK_RETURN);
  Type("pw");
  Press(VK_RETURN);
  EXPECT_FALSE(shell.passWindow.hwnd());
  const std::wstring saved = folder + L"\\secret.mqp";
  Bytes bytes;
  Text error;
  ASSERT_TRUE(files.ReadAll(FromW(saved), bytes, error));
  EXPECT_EQ(bytes.substr(0, 4), "M2P\r");

  store.ClearAll();
  host.topCalls.clear();
  {
    DialogDriver driver(L"Load Marquill File", folder + L"\\secret");
    shell.commands.cmdFile_Click(1);  // an empty list: no popup
  }
  EXPECT_EQ(host.topCalls, (std::vector<bool>{false, true}));
  ASSERT_TRUE(PumpUntil([&] { return shell.passWindow.hwnd() && GetFocus() == shell.passWindow.Box(0); }));
  EXPECT_FALSE(IsWindowVisible(shell.passWindow.Box(1)));
  // A wrong password: the box owns its message box, which the user closes with Enter.
  std::thread closer([&] {
    for (int i = 0; i < 300; ++i) {
      Sleep(20);
      if (HWND box = FindWindowW(L"#32770", L"Error: Wrong Password")) {
        PostMessageW(box, WM_COMMAND, IDOK, 0);
        return;
      }
    }
  });
  Type("no");
  Press(VK_RETURN);
  closer.join();
  EXPECT_TRUE(shell.passWindow.hwnd());
  EXPECT_EQ(rows.ListCount(), 0);
  ASSERT_TRUE(PumpUntil([&] { return GetFocus() == shell.passWindow.Box(0); }));
  Type("pw");
  Press(VK_RETURN);
  EXPECT_FALSE(shell.passWindow.hwnd());
  ASSERT_EQ(rows.ListCount(), 2);
  EXPECT_EQ(store.EntryAtRow(0).text, u"first \u00E9");
  EXPECT_EQ(store.EntryAtRow(1).text, u"second");

  DeleteFileW(saved.c_str());
  RemoveDirectoryW(folder.c_str());
}

}  // namespace
}  // namespace mq::win32
