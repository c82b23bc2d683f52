// The clipboard adapters on the real system: clipboard reads and writes, private marks, a
// clipboard held open elsewhere, the viewer chain, the rich edit box and the small ports.
#include <gtest/gtest.h>
#include <windows.h>
#include <commctrl.h>

#include <set>
#include <thread>
#include <vector>

#include "clipboard/win32/ClipboardSession.h"
#include "clipboard/win32/RichEditBox.h"
#include "clipboard/win32/VBFormCopyPasteControl.h"
#include "clipboard/win32/Win32Clipboard.h"
#include "platform/win32/Win32Ports.h"
#include "platform/win32/MessageWindow.h"
#include "platform/win32/Strings.h"

#include "Pump.h"

namespace mq::win32 {
namespace {


UINT Registered(const wchar_t* name) { return RegisterClipboardFormatW(name); }

// Puts several formats at once, as a copying application does.
struct Put {
  UINT format;
  std::string bytes;
};
void PutAll(const std::vector<Put>& items) {
  UniqueWindow owner(CreatePlainWindow());
  ClipboardSession session(owner.Get());
  ASSERT_TRUE(session.IsOpen());
  ASSERT_TRUE(session.Empty());
  for (const auto& item : items) {
    auto memory = CopyToGlobal(item.bytes.data(), item.bytes.size(), 0);
    ASSERT_TRUE(session.Put(item.format, memory));
  }
}
std::string Utf16Bytes(const Text& t) {
  return std::string(reinterpret_cast<const char*>(t.data()), t.size() * 2) + std::string(2, '\0');
}
std::string Dword(DWORD v) { return std::string(reinterpret_cast<const char*>(&v), 4); }

std::set<UINT> FormatsOnClipboard() {
  std::set<UINT> formats;
  ClipboardSession session(nullptr);
  for (UINT f = EnumClipboardFormats(0); f; f = EnumClipboardFormats(f)) formats.insert(f);
  return formats;
}

const char kRtf[] =
    "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\f0\\fs20 {\\b Hello} World\\par Second "
    "line\\par}";

TEST(Win32ClipboardTest, TextWriteLeavesOnlyThatFormat) {
  Win32Clipboard clip;
  UINT custom = Registered(L"Marquill test format");
  PutAll({{CF_UNICODETEXT, Utf16Bytes(u"old")}, {Win32Clipboard::RichTextFormat(), kRtf},
          {custom, "x"}});

  Text text = u"Gr\u00fc\u00dfe\r\nline two \U0001F600 \u65e5\u672c";
  ASSERT_TRUE(clip.WriteText(text));
  std::set<UINT> formats = FormatsOnClipboard();
  EXPECT_TRUE(formats.count(CF_UNICODETEXT));
  // Only the text remains; what the system synthesises from it is allowed.
  for (UINT f : formats)
    EXPECT_TRUE(f == CF_UNICODETEXT || f == CF_TEXT || f == CF_OEMTEXT || f == CF_LOCALE)
        << "unexpected format " << f;

  ClipboardData data;
  ASSERT_TRUE(clip.Read(ClipRead::PreferRich, data));
  EXPECT_FALSE(data.isPrivate);
  EXPECT_TRUE(data.hasText);
  EXPECT_FALSE(data.hasRich);
  EXPECT_EQ(data.format, 1);
  EXPECT_EQ(data.text, text);
  EXPECT_EQ(clip.LastOpenAttempts(), 1);
}

TEST(Win32ClipboardTest, RichTextAndTheChoiceBetweenFormats) {
  Win32Clipboard clip;
  ASSERT_TRUE(clip.WriteRich(kRtf));
  std::set<UINT> formats = FormatsOnClipboard();
  EXPECT_EQ(formats, std::set<UINT>{Win32Clipboard::RichTextFormat()});

  ClipboardData data;
  ASSERT_TRUE(clip.Read(ClipRead::PreferRich, data));
  EXPECT_EQ(data.format, -16639);
  EXPECT_EQ(data.rtf, kRtf);
  EXPECT_TRUE(data.text.empty());
  ASSERT_TRUE(clip.Read(ClipRead::PlainOnly, data));
  EXPECT_TRUE(data.hasRich);
  EXPECT_FALSE(data.hasText);
  EXPECT_EQ(data.format, 0) << "no text to take";

  // Both formats: the mode decides. Bytes after the first NUL are not part of the content.
  PutAll({{CF_UNICODETEXT, Utf16Bytes(u"plain") + Utf16Bytes(u"junk")},
          {Win32Clipboard::RichTextFormat(), std::string(kRtf) + '\0' + "junk"}});
  ASSERT_TRUE(clip.Read(ClipRead::PreferRich, data));
  EXPECT_EQ(data.format, -16639);
  EXPECT_EQ(data.rtf, kRtf);
  ASSERT_TRUE(clip.Read(ClipRead::PlainOnly, data));
  EXPECT_EQ(data.format, 1);
  EXPECT_EQ(data.text, u"plain");
  EXPECT_TRUE(data.hasRich);

  ASSERT_TRUE(clip.WriteText(u""));  // an empty text is still a text
  ASSERT_TRUE(clip.Read(ClipRead::PreferRich, data));
  EXPECT_EQ(data.format, 1);
  EXPECT_TRUE(data.text.empty());
}

TEST(Win32ClipboardTest, PrivateMarksHideTheContent) {
  Win32Clipboard clip;
  struct Case {
    const wchar_t* mark;
    std::string value;
    bool isPrivate;
  } cases[] = {
      {L"ExcludeClipboardContentFromMonitorProcessing", "", true},
      {L"Clipboard Viewer Ignore", "x", true},
      {L"CanIncludeInClipboardHistory", Dword(0), true},
      {L"CanUploadToCloudClipboard", Dword(0), true},
      {L"CanIncludeInClipboardHistory", Dword(1), false},
      {L"CanUploadToCloudClipboard", Dword(1), false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << ToUtf8(FromW(c.mark)) << " " << c.isPrivate);
    PutAll({{CF_UNICODETEXT, Utf16Bytes(u"secret")}, {Registered(c.mark), c.value}});
    ClipboardData data;
    ASSERT_TRUE(clip.Read(ClipRead::PreferRich, data));
    EXPECT_EQ(data.isPrivate, c.isPrivate);
    EXPECT_EQ(data.text, c.isPrivate ? u"" : u"secret");
  }
}

TEST(Win32ClipboardTest, HeldOpenElsewhereFailsAfterRetriesThenRecovers) {
  Win32Clipboard clip;
  ASSERT_TRUE(clip.WriteText(u"before"));
  UniqueKernelObject opened(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  UniqueKernelObject release(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  std::thread holder([&] {
    // Its own window, as another program would have.
    UniqueWindow window(CreatePlainWindow());
    if (OpenClipboard(window.Get())) {
      SetEvent(opened.Get());
      WaitForSingleObject(release.Get(), 10000);
      CloseClipboard();
    }
  });
  ASSERT_EQ(WaitForSingleObject(opened.Get(), 5000), WAIT_OBJECT_0);

  ClipboardData data;
  EXPECT_FALSE(clip.Read(ClipRead::PlainOnly, data));
  EXPECT_EQ(clip.LastOpenAttempts(), ClipboardSession::kAttempts);
  EXPECT_FALSE(clip.WriteText(u"during"));

  SetEvent(release.Get());
  holder.join();
  ASSERT_TRUE(clip.Read(ClipRead::PlainOnly, data));
  EXPECT_EQ(data.text, u"before") << "the failed write changed nothing";
}

// ---- viewer chain ----------------------------------------------------------------------

// Another clipboard viewer that follows the chain protocol and records what reaches it.
struct OtherViewer {
  UniqueWindow window{CreatePlainWindow()};
  HWND next = nullptr;
  int draws = 0;
  std::vector<std::pair<HWND, HWND>> chainChanges;

  static LRESULT CALLBACK Proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR,
                               DWORD_PTR data) {
    auto* self = reinterpret_cast<OtherViewer*>(data);
    if (msg == WM_DRAWCLIPBOARD) {
      ++self->draws;
      if (self->next) SendMessageW(self->next, msg, wp, lp);
      return 0;
    }
    if (msg == WM_CHANGECBCHAIN) {
      self->chainChanges.push_back({reinterpret_cast<HWND>(wp), reinterpret_cast<HWND>(lp)});
      if (reinterpret_cast<HWND>(wp) == self->next) self->next = reinterpret_cast<HWND>(lp);
      else if (self->next) SendMessageW(self->next, msg, wp, lp);
      return 0;
    }
    return DefSubclassProc(hwnd, msg, wp, lp);
  }
  void Join() {
    SetWindowSubclass(window.Get(), Proc, 1, reinterpret_cast<DWORD_PTR>(this));
    next = SetClipboardViewer(window.Get());
    PumpFor(50);
    draws = 0;  // the greeting on joining
  }
  void Leave() { ChangeClipboardChain(window.Get(), next); }
};

TEST(ViewerChainTest, ChangesAreRaisedOnceAndPassedOn) {
  Win32Clipboard clip;
  ASSERT_TRUE(clip.WriteText(u"already there"));
  OtherViewer earlier;  // joined before the program: the program's next viewer
  earlier.Join();

  VBFormCopyPasteControl cpFlag;
  int changes = 0;
  cpFlag.ClipboardChanged = [&] { ++changes; };
  HWND ours = cpFlag.WindowHandle();
  ASSERT_NE(ours, nullptr);
  ASSERT_TRUE(cpFlag.Attach());
  EXPECT_EQ(cpFlag.NextViewer(), earlier.window.Get());
  EXPECT_EQ(VBFormCopyPasteControl::Find(ours), &cpFlag);
  PumpFor(100);
  EXPECT_EQ(changes, 0) << "content present when joining is no copy";

  ASSERT_TRUE(clip.WriteText(u"one"));
  EXPECT_TRUE(PumpUntil([&] { return changes == 1 && earlier.draws == 1; }));
  ASSERT_TRUE(clip.WriteRich(kRtf));
  EXPECT_TRUE(PumpUntil([&] { return changes == 2 && earlier.draws == 2; }));
  PumpFor(100);
  EXPECT_EQ(changes, 2) << "one event per change";
  EXPECT_EQ(earlier.draws, 2) << "every change passed on once";

  // A viewer that joins after ours and leaves again: ours stays in the chain, still first
  // for the system once the later one is gone, and keeps passing changes on.
  {
    OtherViewer later;
    later.Join();
    EXPECT_EQ(later.next, ours);
    ASSERT_TRUE(clip.WriteText(u"two"));
    EXPECT_TRUE(PumpUntil([&] { return later.draws == 1 && changes == 3 && earlier.draws == 3; }));
    later.Leave();
  }
  EXPECT_EQ(cpFlag.NextViewer(), earlier.window.Get());

  // A message about a window that is not our next viewer is passed on unchanged.
  // (Windows: the later viewer's leaving already reached ours this way; Wine tells nobody
  // when the first viewer leaves.)
  size_t seen = earlier.chainChanges.size();
  HWND stranger = reinterpret_cast<HWND>(static_cast<intptr_t>(0x4242));
  SendMessageW(ours, WM_CHANGECBCHAIN, reinterpret_cast<WPARAM>(stranger), 0);
  EXPECT_EQ(cpFlag.NextViewer(), earlier.window.Get());
  ASSERT_EQ(earlier.chainChanges.size(), seen + 1);
  EXPECT_EQ(earlier.chainChanges.back().first, stranger);

  // Our next viewer leaves: the system tells ours, which takes the leaver's next viewer and
  // still passes the message on (to that new next viewer, when there is one).
  HWND afterEarlier = earlier.next;
  earlier.Leave();
  EXPECT_TRUE(PumpUntil([&] { return cpFlag.NextViewer() == afterEarlier; }));
  ASSERT_TRUE(clip.WriteText(u"three"));
  EXPECT_TRUE(PumpUntil([&] { return changes == 4; }));
  EXPECT_EQ(earlier.draws, 3) << "the leaver gets nothing more";
}

TEST(ViewerChainTest, DestroyingTheWindowLeavesTheChain) {
  Win32Clipboard clip;
  OtherViewer earlier;
  earlier.Join();
  HWND ours;
  int changes = 0;
  {
    VBFormCopyPasteControl cpFlag;
    cpFlag.ClipboardChanged = [&] { ++changes; };
    ASSERT_TRUE(cpFlag.Attach());
    ours = cpFlag.WindowHandle();
    EXPECT_EQ(GetClipboardViewer(), ours);
  }  // WM_DESTROY
  EXPECT_EQ(VBFormCopyPasteControl::Find(ours), nullptr);
  EXPECT_EQ(GetClipboardViewer(), earlier.window.Get()) << "the chain closes over the gap";
  ASSERT_TRUE(clip.WriteText(u"after"));
  EXPECT_TRUE(PumpUntil([&] { return earlier.draws == 1; }));
  EXPECT_EQ(changes, 0);
  earlier.Leave();
}

TEST(ViewerChainTest, AChildOfAGivenParentWorksToo) {
  UniqueWindow parent(CreateWindowExW(0, L"Static", L"parent", WS_OVERLAPPED, 0, 0, 10, 10,
                                      nullptr, nullptr, nullptr, nullptr));
  ASSERT_TRUE(parent);
  Win32Clipboard clip;
  VBFormCopyPasteControl cpFlag(parent.Get());
  EXPECT_EQ(GetParent(cpFlag.WindowHandle()), parent.Get());
  int changes = 0;
  cpFlag.ClipboardChanged = [&] { ++changes; };
  ASSERT_TRUE(cpFlag.Attach());
  ASSERT_TRUE(clip.WriteText(u"child"));
  EXPECT_TRUE(PumpUntil([&] { return changes == 1; }));
}

// ---- rich edit box ---------------------------------------------------------------------

TEST(RichEditBoxTest, RtfInPlainTextOut) {
  RichEditBox box;
  ASSERT_TRUE(box.IsReady());
  ASSERT_TRUE(box.LoadRtf(kRtf));
  // The control drops the paragraph mark that ends the document.
  EXPECT_EQ(box.PlainText(), u"Hello World\r\nSecond line");
  EXPECT_FALSE(box.LoadRtf("Hello, not rich text")) << "plain bytes are refused";

  // Non-ASCII text written by the RTF writer's escapes comes back as it was.
  ASSERT_TRUE(box.LoadRtf("{\\rtf1\\ansi\\ansicpg1252 caf\\'e9 \\u26085?\\u26412?}"));
  EXPECT_EQ(box.PlainText(), u"caf\u00e9 \u65e5\u672c");

  box.Clear();
  EXPECT_EQ(box.PlainText(), u"");
}

TEST(RichEditBoxTest, ReplacedPlainTextComesBackAsRtf) {
  RichEditBox box;
  ASSERT_TRUE(box.LoadRtf(kRtf));
  Text upper = u"HELLO WORLD\r\nSECOND LINE \u00c9\u00c0";
  box.SetPlainText(upper);
  EXPECT_EQ(box.PlainText(), upper);
  Bytes rtf = box.Rtf();
  ASSERT_EQ(rtf.rfind("{\\rtf", 0), 0u) << rtf;
  // The whole text takes the formatting at the start: the bold of "Hello", in Arial.
  EXPECT_NE(rtf.find("\\b"), Bytes::npos) << rtf;
  EXPECT_NE(rtf.find("Arial"), Bytes::npos) << rtf;

  RichEditBox other;
  ASSERT_TRUE(other.LoadRtf(rtf));
  EXPECT_EQ(other.PlainText(), upper);

  // A plain text that looks like RTF stays text.
  box.SetPlainText(u"{\\rtf1 not markup}");
  EXPECT_EQ(box.PlainText(), u"{\\rtf1 not markup}");
}

TEST(RichEditBoxTest, LineEndsAreCrLf) {
  RichEditBox box;
  box.SetPlainText(u"a\r\nb\r\n\r\nc\r\n");
  EXPECT_EQ(box.PlainText(), u"a\r\nb\r\n\r\nc\r\n");
  box.SetPlainText(u"one\rtwo");  // the control's own paragraph end
  EXPECT_EQ(box.PlainText(), u"one\r\ntwo");
  ASSERT_TRUE(box.LoadRtf("{\\rtf1 x\\par y\\line z}"));
  Text text = box.PlainText();
  EXPECT_EQ(text.find(u"x\r\ny"), 0u);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\r') {
      EXPECT_TRUE(i + 1 < text.size() && text[i + 1] == u'\n') << i;
    }
  }
}

TEST(RichEditBoxTest, AMegabyteOfText) {
  Text big;
  const Text line = u"The quick brown fox jumps over the lazy dog \u00e9\u00e8 0123456789.\r\n";
  while (big.size() < (1u << 20)) big += line;
  RichEditBox box;
  box.SetPlainText(big);
  EXPECT_EQ(box.PlainText(), big) << "nothing cut at the default limit";
  Bytes rtf = box.Rtf();
  EXPECT_GT(rtf.size(), big.size());
  // Replacing a long content with another long one, as a case change of a long clip does.
  ASSERT_TRUE(box.LoadRtf(rtf));
  EXPECT_EQ(box.PlainText(), big);
  Text upper = big;
  for (auto& c : upper) c = (c >= u'a' && c <= u'z') ? c - 32 : c;
  box.SetPlainText(upper);
  EXPECT_EQ(box.PlainText(), upper);
  RichEditBox other;
  ASSERT_TRUE(other.LoadRtf(box.Rtf()));
  EXPECT_EQ(other.PlainText(), upper);
}

TEST(RichEditBoxTest, LivesInsideAParentWindow) {
  UniqueWindow parent(CreateWindowExW(0, L"Static", L"Clip List", WS_OVERLAPPED, 0, 0, 100, 100,
                                      nullptr, nullptr, nullptr, nullptr));
  ASSERT_TRUE(parent);
  RichEditBox box(parent.Get());
  ASSERT_TRUE(box.IsReady());
  EXPECT_EQ(GetParent(box.Handle()), parent.Get());
  EXPECT_FALSE(IsWindowVisible(box.Handle()));
  ASSERT_TRUE(box.LoadRtf(kRtf));
  EXPECT_EQ(box.PlainText().substr(0, 11), u"Hello World");
  box.SetPlainText(u"HELLO");  // a fresh control, still inside the same parent
  EXPECT_EQ(GetParent(box.Handle()), parent.Get());
  EXPECT_EQ(box.PlainText(), u"HELLO");
}

// ---- small ports -----------------------------------------------------------------------

TEST(Win32PortsTest, CaseFollowsTheLocaleBeyondAscii) {
  LocaleCaseMapper cases;
  EXPECT_EQ(cases.Upper(u"hello w\u00f6rld \u00e9t\u00e9 \u03c3\u03bf\u03c6\u03af\u03b1"),
            u"HELLO W\u00d6RLD \u00c9T\u00c9 \u03a3\u039f\u03a6\u038a\u0391");
  EXPECT_EQ(cases.Lower(u"\u00c0\u00c9\u00ce \u0416\u0418\u0417\u041d\u042c ABC"),
            u"\u00e0\u00e9\u00ee \u0436\u0438\u0437\u043d\u044c abc");
  EXPECT_EQ(cases.Upper(u""), u"");
  Text mixed(u"a\r\n\tb\u0000c", 7);
  EXPECT_EQ(cases.Upper(mixed), Text(u"A\r\n\tB\u0000C", 7)) << "control characters and NUL kept";
}

bool CtrlDown() { return (GetAsyncKeyState(VK_CONTROL) & 0x8000) != 0; }

void SendKey(WORD vk, bool up) {
  INPUT in{};
  in.type = INPUT_KEYBOARD;
  in.ki.wVk = vk;
  in.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  SendInput(1, &in, sizeof(INPUT));
}

Text EditText(HWND edit) {
  wchar_t buffer[256];
  int n = GetWindowTextW(edit, buffer, 256);
  return FromW(std::wstring_view(buffer, static_cast<size_t>(n)));
}

TEST(Win32PortsTest, PasteKeystrokeRespectsAHeldCtrl) {
  UniqueWindow frame(CreateWindowExW(0, L"Static", L"paste target", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                     50, 50, 300, 120, nullptr, nullptr, nullptr, nullptr));
  ASSERT_TRUE(frame);
  HWND edit = CreateWindowExW(0, L"Edit", L"", WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL, 5, 5, 280,
                              24, frame.Get(), nullptr, nullptr, nullptr);
  ASSERT_NE(edit, nullptr);
  SetForegroundWindow(frame.Get());
  SetFocus(edit);
  ASSERT_TRUE(PumpUntil([&] { return GetFocus() == edit; }));
  Win32Clipboard clip;
  ASSERT_TRUE(clip.WriteText(u"abc"));
  SendInputKeySender keys;

  ASSERT_FALSE(CtrlDown());
  keys.SendPaste();
  EXPECT_TRUE(PumpUntil([&] { return EditText(edit) == u"abc"; })) << ToUtf8(EditText(edit));
  EXPECT_FALSE(CtrlDown()) << "the Ctrl it pressed is released";

  // The user still holds Ctrl (from CTRL+1): only V goes out, and Ctrl stays down.
  SendKey(VK_CONTROL, false);
  ASSERT_TRUE(PumpUntil([] { return CtrlDown(); }));
  keys.SendPaste();
  keys.SendPaste();
  EXPECT_TRUE(PumpUntil([&] { return EditText(edit) == u"abcabcabc"; })) << ToUtf8(EditText(edit));
  EXPECT_TRUE(CtrlDown()) << "a paste must not release the user's Ctrl";
  SendKey(VK_CONTROL, true);
  EXPECT_TRUE(PumpUntil([] { return !CtrlDown(); }));
}

}  // namespace
}  // namespace mq::win32
