// The clipboard adapters on the real system: clipboard reads and writes, private marks, the
// viewer chain, the rich edit box and the case mapper; malformed rich text through the capture
// path, which is taken as its plain text, or not at all, and never reaches the control (Wine's
// crashes on some of it).
#include <gtest/gtest.h>
#include <windows.h>
#include <richedit.h>

#include <cstring>
#include <memory>
#include <set>
#include <tuple>

#include "../native/fakes/FakePorts.h"
#include "clipboard/ClipOperations.h"
#include "clipboard/RtfGroups.h"
#include "clipboard/win32/RichEditBox.h"
#include "clipboard/win32/VBFormCopyPasteControl.h"
#include "clipboard/win32/Win32Clipboard.h"
#include "platform/win32/Win32Ports.h"
#include "Support.h"

namespace mq::win32 {
namespace {

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
  ASSERT_TRUE(PutOnClipboard({{CF_UNICODETEXT, Utf16Bytes(u"old")},
                              {Win32Clipboard::RichTextFormat(), kRtf},
                              {RegisterClipboardFormatW(L"Marquill test format"), "x"}}));
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
  ASSERT_TRUE(PutOnClipboard({{CF_UNICODETEXT, Utf16Bytes(u"plain") + Utf16Bytes(u"junk")},
                              {Win32Clipboard::RichTextFormat(), std::string(kRtf) + '\0' + "junk"}}));
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
  const std::tuple<const wchar_t*, std::string, bool> cases[] = {
      {L"ExcludeClipboardContentFromMonitorProcessing", "", true},
      {L"Clipboard Viewer Ignore", "x", true},
      {L"CanIncludeInClipboardHistory", Dword(0), true},
      {L"CanUploadToCloudClipboard", Dword(0), true},
      {L"CanIncludeInClipboardHistory", Dword(1), false},
      {L"CanUploadToCloudClipboard", Dword(1), false},
  };
  for (const auto& [mark, value, isPrivate] : cases) {
    SCOPED_TRACE(testing::Message() << ToUtf8(FromW(mark)) << " " << isPrivate);
    ASSERT_TRUE(PutOnClipboard({{CF_UNICODETEXT, Utf16Bytes(u"secret")}, {RegisterClipboardFormatW(mark), value}}));
    ClipboardData data;
    ASSERT_TRUE(clip.Read(ClipRead::PreferRich, data));
    EXPECT_EQ(data.isPrivate, isPrivate);
    EXPECT_EQ(data.text, isPrivate ? u"" : u"secret");
  }
}

// ---- viewer chain ----------------------------------------------------------------------

// How a change travels to the program is what the end-to-end tests see; here, what only the
// chain's own messages show, and that the chain stays whole around each control.
TEST(ViewerChainTest, ChangesAndChainMessagesArePassedOn) {
  Win32Clipboard clip;
  int changes[3] = {};
  std::unique_ptr<VBFormCopyPasteControl> cp[3];  // joined in turn: cp[2] heads the chain
  for (int i = 0; i < 3; ++i) {
    cp[i] = std::make_unique<VBFormCopyPasteControl>();
    cp[i]->ClipboardChanged = [&changes, i] { ++changes[i]; };
    ASSERT_TRUE(cp[i]->Attach());
  }
  EXPECT_EQ(cp[1]->NextViewer(), cp[0]->WindowHandle());
  const HWND beyond = cp[0]->NextViewer();
  PumpFor(50);  // the greetings on joining
  const int before[3] = {changes[0], changes[1], changes[2]};
  ASSERT_TRUE(clip.WriteText(u"one"));
  EXPECT_TRUE(PumpUntil([&] {
    return changes[0] == before[0] + 1 && changes[1] == before[1] + 1 && changes[2] == before[2] + 1;
  })) << "raised and passed on";

  // The last in the chain leaving: the system tells the head, which passes the message on to
  // the control whose next viewer it was; that one takes the leaver's next viewer.
  cp[0].reset();
  EXPECT_TRUE(PumpUntil([&] { return cp[1]->NextViewer() == beyond; }));
  EXPECT_EQ(cp[2]->NextViewer(), cp[1]->WindowHandle());
  // One ending in the middle (WM_DESTROY) closes the chain over the gap.
  cp[1].reset();
  EXPECT_TRUE(PumpUntil([&] { return cp[2]->NextViewer() == beyond; }));
  EXPECT_EQ(GetClipboardViewer(), cp[2]->WindowHandle());
  ASSERT_TRUE(clip.WriteText(u"two"));
  EXPECT_TRUE(PumpUntil([&] { return changes[2] == before[2] + 2; }));
}

// ---- rich edit box ---------------------------------------------------------------------

// The box makes its control, and loads its library, on first use, whichever call that is.
TEST(RichEditBoxTest, RtfInPlainTextOutAndBack) {
  RichEditBox box;
  EXPECT_EQ(box.PlainText(), u"");
  EXPECT_FALSE(box.Rtf().empty()) << "even an empty box writes a document";
  ASSERT_TRUE(box.LoadRtf(kRtf));
  // The control drops the paragraph mark that ends the document.
  EXPECT_EQ(box.PlainText(), u"Hello World\r\nSecond line");
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
  // Plain text in, the first time into no control at all: the control's own paragraph end
  // comes out as CR LF too.
  for (auto [in, out] : {std::pair<Text, Text>{u"a\r\nb\r\n\r\nc\r\n", u"a\r\nb\r\n\r\nc\r\n"},
                         {u"one\rtwo", u"one\r\ntwo"}, {u"{\\rtf1 not markup}", u"{\\rtf1 not markup}"}}) {
    box.SetPlainText(in);
    EXPECT_EQ(box.PlainText(), out);
  }

  // Replaced plain text comes back as rich text, up to a megabyte of it.
  RichEditBox other;
  other.SetPlainText(u"first words");  // its first use: the control's own formatting
  ASSERT_TRUE(box.LoadRtf(other.Rtf()));
  EXPECT_EQ(box.PlainText(), u"first words");

  ASSERT_TRUE(box.LoadRtf(kRtf));
  Text upper = u"HELLO WORLD\r\nSECOND LINE \u00c9\u00c0";
  box.SetPlainText(upper);
  EXPECT_EQ(box.PlainText(), upper);
  Bytes rtf = box.Rtf();
  // The whole text takes the formatting at the start: the bold of "Hello", in Arial.
  EXPECT_NE(rtf.find("\\b"), Bytes::npos) << rtf;
  EXPECT_NE(rtf.find("Arial"), Bytes::npos) << rtf;
  ASSERT_TRUE(other.LoadRtf(rtf));
  EXPECT_EQ(other.PlainText(), upper);

  // A case change of a long clip: nothing cut at the control's default limit.
  Text big;
  while (big.size() < (1u << 20)) big += u"THE QUICK BROWN FOX JUMPS OVER THE LAZY DOG \u00c9\u00c8 0123456789.\r\n";
  box.SetPlainText(big);
  EXPECT_EQ(box.PlainText(), big);
  ASSERT_TRUE(other.LoadRtf(box.Rtf()));
  EXPECT_EQ(other.PlainText(), big);
}

// ---- malformed rich text ---------------------------------------------------------------

TEST(HostileRtfCapture, TakenAsPlainTextOrNotAtAll) {
  const struct {
    const char* name;
    std::string rtf;
  } hostile[] = {
      {"33 nested groups", "{\\rtf1 " + std::string(32, '{') + "x" + std::string(33, '}')},
      {"truncated", "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs20 {\\b Hel"},
      {"100,000 nested groups", "{\\rtf1 " + std::string(100'000, '{') + "x"},
      {"\\bin past the end", "{\\rtf1 {\\pict\\bin999999 abc}}"},
  };

  ListModel rows;
  ClipStore store(rows);
  Win32Clipboard clipboard;
  RichEditBox box;
  test::FakeClock clock;
  LocaleCaseMapper cases;
  test::FakeMessageBoxes messages;
  test::FakeKeySender keys;
  ClipOperations ops{{store, clipboard, box, clock, cases, messages, keys}};
  // A copy of the document, with its plain text beside it when there is one, well after the last.
  // (Under UPPER CASE the document goes through the box.)
  auto copy = [&](const std::string& rtf, const Text* plain, int16_t caseOp) {
    std::vector<ClipFormat> formats{{Win32Clipboard::RichTextFormat(), rtf + '\0'}};
    if (plain) formats.push_back({CF_UNICODETEXT, Utf16Bytes(*plain)});
    ASSERT_TRUE(PutOnClipboard(formats));
    clock.Advance(1000);
    ops.AddClipEntry(false, caseOp);
  };

  int expectedRows = 0;
  for (const auto& c : hostile) {
    // With a plain text beside it: that text, case-changed or not, as a plain entry (an
    // unchanged case would otherwise keep the document as it came, without the box).
    for (int16_t caseOp : {kCaseUpper, kCaseNone}) {
      SCOPED_TRACE(testing::Message() << c.name << ", case " << caseOp);
      Text plain = caseOp == kCaseUpper ? u"copied " : u"kept ";
      plain.append(c.name, c.name + std::strlen(c.name));
      copy(c.rtf + (caseOp == kCaseUpper ? "" : " "), &plain, caseOp);  // a new copy each time
      ASSERT_EQ(rows.ListCount(), ++expectedRows);
      const ClipEntry& entry = store.EntryAtRow(expectedRows - 1);
      EXPECT_EQ(entry.text, caseOp == kCaseUpper ? cases.Upper(plain) : plain);
      EXPECT_EQ(rows.List(expectedRows - 1), u"\t" + entry.text);
    }
    // The document alone: nothing is taken.
    copy(c.rtf, nullptr, kCaseUpper);
    EXPECT_EQ(rows.ListCount(), expectedRows);
  }
  EXPECT_TRUE(messages.shown.empty());

  // The box still reads a good document afterwards, nested as deep as it may be.
  copy("{\\rtf1 " + std::string(kMaxRtfDepth - 1, '{') + "fine" + std::string(kMaxRtfDepth, '}'),
       nullptr, kCaseUpper);
  ASSERT_EQ(rows.ListCount(), expectedRows + 1);
  EXPECT_TRUE(store.EntryAtRow(expectedRows).IsRich());
  EXPECT_EQ(rows.List(expectedRows), u"+\tFINE");

  // The viewer streams stored entries straight into its own control: refused there too.
  UniqueWindow viewer(CreateWindowExW(0, RichEditWindowClass(), L"", WS_CHILD, 0, 0, 10, 10,
                                      HWND_MESSAGE, nullptr, nullptr, nullptr));
  EXPECT_FALSE(StreamInto(viewer.Get(), SF_RTF, hostile[0].rtf.data(), hostile[0].rtf.size()));
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
