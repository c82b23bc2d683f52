// The clipboard adapters on the real system: clipboard reads and writes, private marks, the
// viewer chain, the rich edit box and the case mapper.
#include <gtest/gtest.h>
#include <windows.h>
#include <commctrl.h>

#include <set>
#include <memory>
#include <vector>

#include "clipboard/win32/ClipboardSession.h"
#include "clipboard/win32/RichEditBox.h"
#include "clipboard/win32/VBFormCopyPasteControl.h"
#include "clipboard/win32/Win32Clipboard.h"
#include "platform/win32/MessageWindow.h"
#include "platform/win32/Win32Ports.h"
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

TEST(Win32ClipboardTest, WritesLeaveOnlyTheirFormatAndReadsStopAtTheFirstNul) {
  Win32Clipboard clip;
  PutAll({{CF_UNICODETEXT, Utf16Bytes(u"old")}, {Win32Clipboard::RichTextFormat(), kRtf},
          {Registered(L"Marquill test format"), "x"}});
  Text text = u"Gr\u00fc\u00dfe\r\nline two \U0001F600 \u65e5\u672c";
  ASSERT_TRUE(clip.WriteText(text));
  // Only the text remains; what the system synthesises from it is allowed.
  for (UINT f : FormatsOnClipboard())
    EXPECT_TRUE(f == CF_UNICODETEXT || f == CF_TEXT || f == CF_OEMTEXT || f == CF_LOCALE) << f;
  ClipboardData data;
  ASSERT_TRUE(clip.Read(ClipRead::PreferRich, data));
  EXPECT_FALSE(data.isPrivate || data.hasRich);
  EXPECT_EQ(data.format, 1);
  EXPECT_EQ(data.text, text);

  ASSERT_TRUE(clip.WriteRich(kRtf));
  EXPECT_EQ(FormatsOnClipboard(), std::set<UINT>{Win32Clipboard::RichTextFormat()});
  ASSERT_TRUE(clip.Read(ClipRead::PlainOnly, data));
  EXPECT_TRUE(data.hasRich);
  EXPECT_EQ(data.format, 0) << "no text to take";

  // Bytes after the first NUL are not part of the content.
  PutAll({{CF_UNICODETEXT, Utf16Bytes(u"plain") + Utf16Bytes(u"junk")},
          {Win32Clipboard::RichTextFormat(), std::string(kRtf) + '\0' + "junk"}});
  ASSERT_TRUE(clip.Read(ClipRead::PreferRich, data));
  EXPECT_EQ(data.format, -16639);
  EXPECT_EQ(data.rtf, kRtf);
  ASSERT_TRUE(clip.Read(ClipRead::PlainOnly, data));
  EXPECT_EQ(data.format, 1);
  EXPECT_EQ(data.text, u"plain");

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

// ---- viewer chain ----------------------------------------------------------------------

// Another clipboard viewer that follows the chain protocol and records what reaches it.
struct OtherViewer {
  UniqueWindow window{CreatePlainWindow()};
  HWND next = nullptr;
  int draws = 0;
  std::vector<HWND> chainChanges;  // the windows said to leave

  static LRESULT CALLBACK Proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR,
                               DWORD_PTR data) {
    auto* self = reinterpret_cast<OtherViewer*>(data);
    if (msg == WM_DRAWCLIPBOARD) {
      ++self->draws;
      if (self->next) SendMessageW(self->next, msg, wp, lp);
      return 0;
    }
    if (msg == WM_CHANGECBCHAIN) {
      self->chainChanges.push_back(reinterpret_cast<HWND>(wp));
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

// How a change travels along the chain is what the end-to-end tests see; here, what only the
// chain's own messages show, and that the chain stays whole around ours.
TEST(ViewerChainTest, ChainMessagesAreFollowedAndPassedOn) {
  Win32Clipboard clip;
  OtherViewer earlier;  // joined before ours: our next viewer
  earlier.Join();
  int changes = 0;
  auto cpFlag = std::make_unique<VBFormCopyPasteControl>();
  cpFlag->ClipboardChanged = [&] { ++changes; };
  HWND ours = cpFlag->WindowHandle();
  ASSERT_TRUE(cpFlag->Attach());
  EXPECT_EQ(cpFlag->NextViewer(), earlier.window.Get());
  ASSERT_TRUE(clip.WriteText(u"one"));
  EXPECT_TRUE(PumpUntil([&] { return changes == 1 && earlier.draws == 1; })) << "raised and passed on";

  // A message about a window that is not our next viewer is passed on unchanged. (Windows:
  // a later viewer's leaving reaches ours this way; Wine tells nobody when the first viewer
  // leaves.)
  HWND stranger = reinterpret_cast<HWND>(static_cast<intptr_t>(0x4242));
  SendMessageW(ours, WM_CHANGECBCHAIN, reinterpret_cast<WPARAM>(stranger), 0);
  EXPECT_EQ(cpFlag->NextViewer(), earlier.window.Get());
  ASSERT_FALSE(earlier.chainChanges.empty());
  EXPECT_EQ(earlier.chainChanges.back(), stranger);

  // Ours ending (WM_DESTROY) closes the chain over the gap.
  cpFlag.reset();
  EXPECT_EQ(GetClipboardViewer(), earlier.window.Get());
  ASSERT_TRUE(clip.WriteText(u"after"));
  EXPECT_TRUE(PumpUntil([&] { return earlier.draws == 2; }));
  EXPECT_EQ(changes, 1);

  // Our next viewer leaving: the system tells ours, which takes the leaver's next viewer.
  VBFormCopyPasteControl again;
  again.ClipboardChanged = [&] { ++changes; };
  ASSERT_TRUE(again.Attach());
  EXPECT_EQ(again.NextViewer(), earlier.window.Get());
  HWND afterEarlier = earlier.next;
  earlier.Leave();
  EXPECT_TRUE(PumpUntil([&] { return again.NextViewer() == afterEarlier; }));
  const int draws = earlier.draws;
  ASSERT_TRUE(clip.WriteText(u"three"));
  EXPECT_TRUE(PumpUntil([&] { return changes == 2; }));
  EXPECT_EQ(earlier.draws, draws) << "the leaver gets nothing more";
}

// ---- rich edit box ---------------------------------------------------------------------

TEST(RichEditBoxTest, RtfInPlainTextOutWithCrLfLineEnds) {
  RichEditBox box;
  ASSERT_TRUE(box.IsReady());
  ASSERT_TRUE(box.LoadRtf(kRtf));
  // The control drops the paragraph mark that ends the document.
  EXPECT_EQ(box.PlainText(), u"Hello World\r\nSecond line");
  EXPECT_FALSE(box.LoadRtf("Hello, not rich text")) << "plain bytes are refused";
  // Non-ASCII text written by the RTF writer's escapes comes back as it was.
  ASSERT_TRUE(box.LoadRtf("{\\rtf1\\ansi\\ansicpg1252 caf\\'e9 \\u26085?\\u26412?}"));
  EXPECT_EQ(box.PlainText(), u"caf\u00e9 \u65e5\u672c");
  ASSERT_TRUE(box.LoadRtf("{\\rtf1 x\\par y\\line z}"));
  Text text = box.PlainText();
  EXPECT_EQ(text.find(u"x\r\ny"), 0u);
  for (size_t i = text.find(u'\r'); i != Text::npos; i = text.find(u'\r', i + 1))
    EXPECT_EQ(text.substr(i, 2), u"\r\n") << i;
  box.Clear();
  EXPECT_EQ(box.PlainText(), u"");
  // Plain text in: the control's own paragraph end comes out as CR LF too.
  for (auto [in, out] : {std::pair<Text, Text>{u"a\r\nb\r\n\r\nc\r\n", u"a\r\nb\r\n\r\nc\r\n"},
                         {u"one\rtwo", u"one\r\ntwo"}, {u"{\\rtf1 not markup}", u"{\\rtf1 not markup}"}}) {
    box.SetPlainText(in);
    EXPECT_EQ(box.PlainText(), out);
  }
}

TEST(RichEditBoxTest, ReplacedPlainTextComesBackAsRtfUpToAMegabyte) {
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

  // A case change of a long clip: nothing cut at the control's default limit.
  Text big;
  while (big.size() < (1u << 20)) big += u"The quick brown fox jumps over the lazy dog \u00e9\u00e8 0123456789.\r\n";
  box.SetPlainText(big);
  EXPECT_EQ(box.PlainText(), big);
  ASSERT_TRUE(box.LoadRtf(box.Rtf()));
  EXPECT_EQ(box.PlainText(), big);
  for (auto& c : big) c = (c >= u'a' && c <= u'z') ? c - 32 : c;
  box.SetPlainText(big);
  ASSERT_TRUE(other.LoadRtf(box.Rtf()));
  EXPECT_EQ(other.PlainText(), big);
}

TEST(LocaleCaseMapper, CaseFollowsTheLocaleBeyondAscii) {
  LocaleCaseMapper cases;
  EXPECT_EQ(cases.Upper(u"hello w\u00f6rld \u00e9t\u00e9 \u03c3\u03bf\u03c6\u03af\u03b1"),
            u"HELLO W\u00d6RLD \u00c9T\u00c9 \u03a3\u039f\u03a6\u038a\u0391");
  EXPECT_EQ(cases.Lower(u"\u00c0\u00c9\u00ce \u0416\u0418\u0417\u041d\u042c ABC"),
            u"\u00e0\u00e9\u00ee \u0436\u0438\u0437\u043d\u044c abc");
  EXPECT_EQ(cases.Upper(u""), u"");
  Text mixed(u"a\r\n\tb\u0000c", 7);
  EXPECT_EQ(cases.Upper(mixed), Text(u"A\r\n\tB\u0000C", 7)) << "control characters and NUL kept";
}

}  // namespace
}  // namespace mq::win32
