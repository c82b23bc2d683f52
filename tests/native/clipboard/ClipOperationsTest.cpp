#include "clipboard/ClipOperations.h"

#include <gtest/gtest.h>

#include <random>

#include "fakes/FakePorts.h"
#include "fakes/FakeRichTextBox.h"

namespace mq {
namespace {

using test::FakeClipboard;
using test::FakeClock;
using test::FakeKeySender;
using test::FakeMessageBoxes;
using test::FakeRichTextBox;
using test::RowTexts;
using Rows = std::vector<std::string>;

class Capture : public ::testing::Test {
 protected:
  // A user copy: new content, a notification ms after the previous one.
  void Copy(TextView text, uint64_t ms = 300) {
    clock.Advance(ms);
    clipboard.SetText(text);
    ops.AddClipEntry(purge, caseOp);
  }
  void CopyRich(std::string_view rtf, TextView plain) {
    clock.Advance(300);
    clipboard.SetRich(rtf, true, plain);
    ops.AddClipEntry(purge, caseOp);
  }
  // A change notice for whatever the clipboard holds, after ms of quiet.
  void Notice(uint64_t ms = 300) {
    clock.Advance(ms);
    ops.AddClipEntry(purge, caseOp);
  }
  // The last row, its format ('R' or 'p') and what it holds.
  std::string Last() {
    const int slot = list.ItemData(list.ListCount() - 1);
    const ClipEntry& e = store.Entry(slot);
    return ToUtf8(list.List(list.ListCount() - 1)) + " " +
           (store.ClipFormat(slot) == kFormatRich ? "R " + e.rtf : "p " + ToUtf8(e.text));
  }

  ListModel list;
  ClipStore store{list};
  FakeClipboard clipboard;
  FakeRichTextBox box;
  FakeClock clock;
  Latin1CaseMapper cases;
  FakeMessageBoxes messages;
  FakeKeySender keys;
  ClipOperations ops{{store, clipboard, box, clock, cases, messages, keys}};
  bool purge = false;
  int16_t caseOp = kCaseNone;
};

TEST_F(Capture, IdenticalContentDebounceAndPictures) {
  for (const char16_t* text : {u"A", u"A", u"B", u"A"}) Copy(text);
  // The same text twice in a row is stored once; the check is against the last content only.
  EXPECT_EQ(RowTexts(list), (Rows{"\tA", "\tB", "\tA"}));
  clipboard.SetPicture();  // no text: nothing stored, but the check is reset
  Notice();
  Copy(u"A");
  EXPECT_EQ(list.ListCount(), 4);
  // Two notifications 100 ms apart: the second is not considered...
  Copy(u"C");
  Copy(u"D", 100);
  EXPECT_EQ(RowTexts(list).back(), "\tC");
  // ...and the debounce runs from the last attempt that passed it, not from the skipped one.
  Notice(150);
  EXPECT_EQ(RowTexts(list).back(), "\tD");
  EXPECT_TRUE(store.InvariantsHold());
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(Capture, LongSilencesNeverHoldCaptureOrTheEchoRuleBack) {
  constexpr uint64_t kDay = 24ull * 60 * 60 * 1000;
  // Capture switched off for weeks (past 2^31 ms), then copies a minute apart: all stored.
  clock.Advance(25 * kDay);
  for (const char16_t* text : {u"after", u"silence"}) Copy(text, 60 * 1000);
  EXPECT_EQ(RowTexts(list), (Rows{"\tafter", "\tsilence"}));
  // Copying exactly the last pasted text a month after the paste is a copy, not an echo.
  ASSERT_TRUE(ops.PasteFirstEntry(true));
  Notice(30 * kDay);
  EXPECT_EQ(RowTexts(list), (Rows{"\tsilence", "\tafter"}));
  // Across 2^32 ms of uptime, where a 32-bit tick counter wraps: 0x110 ms is past the
  // debounce, 100 ms more is not.
  clock.now = 0xFFFFFF00u - 300;
  Copy(u"A");  // at 0xFFFFFF00
  Copy(u"B", 0x110);
  EXPECT_EQ(RowTexts(list).back(), "\tB");
  Copy(u"C", 100);
  EXPECT_EQ(RowTexts(list).back(), "\tB");
}

// What a copy stores: the row, then the entry's format and content. A document's own text
// beside it stands in for the box's reading of it unless the case operation changes the
// text; with or without that text the stored entry is the same.
TEST_F(Capture, FormattingAndCaseDecideWhatIsStored) {
  clipboard.SetText(u"secret");  // private content is never captured
  clipboard.isPrivate = true;
  Notice();
  EXPECT_EQ(list.ListCount(), 0);
  EXPECT_TRUE(ops.LastCaptured().Empty());
  clipboard.isPrivate = false;
  struct {
    const char* rtf;  // nullptr: plain text only
    const char16_t* plain;
    bool purge;
    int16_t caseOp;
    bool boxUsed;  // with the text beside the document
    const char* stored;
  } cases[] = {
      {"{\\rtf1 \\b Hello\\b0  world}", u"Hello world", false, kCaseNone, false,
       "+\tHello world R {\\rtf1 \\b Hello\\b0  world}"},
      {"{\\rtf1 \\b LOUD 42}", u"LOUD 42", false, kCaseUpper, false, "+\tLOUD 42 R {\\rtf1 \\b LOUD 42}"},
      {"{\\rtf1 \\i quiet}", u"quiet", false, kCaseLower, false, "+\tquiet R {\\rtf1 \\i quiet}"},
      {"{\\rtf1 Title Case}", u"Title Case", false, kCaseStandardize, false,
       "+\tTitle Case R {\\rtf1 Title Case}"},
      {"{\\rtf1 \\b mIXED}", u"mIXED", false, kCaseUpper, true, "+\tMIXED R {\\rtf1 MIXED}"},
      {"{\\rtf1 \\b mIXED\\b0  case}", u"mIXED case", false, kCaseStandardize, true,
       "+\tMixed Case R {\\rtf1 Mixed Case}"},
      // An empty text beside the document says nothing about it: the box reads the document.
      {"{\\rtf1 \\b kept}", u"", false, kCaseNone, true, "+\tkept R {\\rtf1 \\b kept}"},
      // A document that starts after blank space is still rich text.
      {"\r\n {\\rtf1 pad}", u"pad", false, kCaseNone, false, "+\tpad R \r\n {\\rtf1 pad}"},
      {"{\\rtf1 \\i Other}", u"Other", true, kCaseNone, false, "\tOther p Other"},
      {"not rtf at all", u"fallback", false, kCaseNone, true, "\tfallback p fallback"},
      {nullptr, u"hello World", false, kCaseUpper, false, "\tHELLO WORLD p HELLO WORLD"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.stored);
    purge = c.purge;
    caseOp = c.caseOp;
    // Returns whether the box was loaded.
    auto copy = [&](bool withText) {
      clipboard.SetPicture();  // a copy in between, so the same content is captured again
      Notice();
      const int loads = box.loads;
      if (c.rtf) clipboard.SetRich(c.rtf, withText, withText ? TextView(c.plain) : TextView());
      else clipboard.SetText(c.plain);
      Notice();
      EXPECT_EQ(Last(), c.stored);
      EXPECT_TRUE(box.Rtf().empty()) << "the conversion box is emptied after use";
      return box.loads > loads;
    };
    EXPECT_EQ(copy(true), c.boxUsed);
    if (c.stored[0] == '+') EXPECT_TRUE(copy(false)) << "nothing beside it: the box reads it";
  }
  // The identical-content check compares the content as read, before the case change.
  const int rows = list.ListCount();
  Copy(u"hello World");
  EXPECT_EQ(list.ListCount(), rows);
  EXPECT_TRUE(messages.shown.empty());
}

// Entries longer than a row can show: the slot keeps every character, the row its start,
// whichever way the entry came in.
TEST_F(Capture, LongEntriesKeepTheirWholeTextBehindAShortRow) {
  Text plain(kRowTextChars * 3 + 5, u' ');
  for (size_t i = 0; i < plain.size(); ++i) plain[i] = static_cast<char16_t>(u'a' + i % 26);
  const Text loud = cases.Upper(plain), exact = plain.substr(0, kRowTextChars);
  const Text rich = loud.substr(0, kRowTextChars + 1);
  const Bytes rtf = "{\\rtf1 \\b " + Narrow(rich) + "}";
  Copy(plain);
  Copy(exact);
  CopyRich(rtf, rich);
  Copy(u"between");
  clipboard.SetRich(rtf, false);  // through the box
  Notice();
  caseOp = kCaseUpper;
  Copy(plain);
  ASSERT_GE(store.DuplicateRow(5), 0);
  const std::pair<Text, ClipEntry> expected[] = {
      {u"\t" + exact, ClipEntry::Plain(plain)},
      {u"\t" + exact, ClipEntry::Plain(exact)},
      {u"+\t" + loud.substr(0, kRowTextChars), ClipEntry::Rich(rtf)},
      {u"\tbetween", ClipEntry::Plain(u"between")},
      {u"+\t" + loud.substr(0, kRowTextChars), ClipEntry::Rich(rtf)},
      {u"\t" + loud.substr(0, kRowTextChars), ClipEntry::Plain(loud)},
      {u"\t" + loud.substr(0, kRowTextChars), ClipEntry::Plain(loud)},
  };
  ASSERT_EQ(list.ListCount(), 7);
  for (int r = 0; r < 7; ++r) {
    EXPECT_EQ(list.List(r), expected[r].first) << r;
    EXPECT_EQ(store.EntryAtRow(r), expected[r].second) << r;
  }
  EXPECT_TRUE(store.InvariantsHold());
  // An entry replaced, deleted or cleared gives its memory back.
  auto holds = [&](int slot) {
    return store.Entry(slot).text.capacity() > 16 || store.Entry(slot).rtf.capacity() > 16;
  };
  const int first = list.ItemData(0), sixth = list.ItemData(5);
  store.SetRowEntry(0, ClipEntry::Rich("{\\rtf1 x}"), u"x");
  EXPECT_FALSE(holds(first));
  store.DeleteRow(5);
  EXPECT_FALSE(holds(sixth));
  store.ClearAll();
  for (int slot = 0; slot < kClipSlots; ++slot) EXPECT_FALSE(holds(slot)) << slot;
}

TEST_F(Capture, FullListShowsTheMessageOncePerContentAndNeverReenters) {
  for (int i = 0; i < 100; ++i) Copy(u"entry " + ToDecimal(i));
  int nested = 0;
  messages.onShow = [&] {
    // A change notified while the box is open is not captured.
    clipboard.SetText(u"during the box");
    Notice();
    ++nested;
  };
  Copy(u"one too many");
  EXPECT_EQ(messages.Log(), Rows{"! Cannot write to clipboard.: Extended Clipboard is Full. You "
                                 "can add no more than 100 entries in the clip list."});
  EXPECT_EQ(nested, 1);
  messages.onShow = nullptr;
  Copy(u"one too many");  // the same content is not offered again
  EXPECT_EQ(messages.shown.size(), 1u);
  Copy(u"and another");  // each new content offered while full shows it
  EXPECT_EQ(messages.shown.size(), 2u);
  store.DeleteRow(41);  // frees slot 41
  Copy(u"fits now");
  EXPECT_EQ(ToUtf8(list.List(99)), "\tfits now");
  EXPECT_EQ(list.ItemData(99), 41);
  EXPECT_TRUE(store.InvariantsHold());
}

TEST_F(Capture, OneRetryThenTheAccessMessage) {
  clipboard.SetText(u"A");
  clipboard.failReads = 1;  // the first attempt fails, the retry succeeds
  Notice();
  EXPECT_EQ(list.ListCount(), 1);
  EXPECT_TRUE(messages.shown.empty());
  EXPECT_TRUE(ops.CaptureRetry()) << "cleared only when the message is shown";
  // While the retry flag stays set, the debounce lets every change through and the next
  // failure shows the message without a further retry.
  Copy(u"B", 10);
  EXPECT_EQ(list.ListCount(), 2);
  clipboard.failReads = 1;
  int readsBefore = clipboard.readCalls;
  Notice(0);
  EXPECT_EQ(clipboard.readCalls - readsBefore, 1);
  EXPECT_EQ(messages.Log(),
            Rows{"x Error: Cannot access clipboard.: Marquill is unable to access the clipboard. "
                 "Either another program was attempting to simultaneously access the clipboard, "
                 "or another program has locked access to the clipboard. You may try to copy the "
                 "desired text again if you wish."});
  EXPECT_FALSE(ops.CaptureRetry());
  // From a clean state, two failures in a row: one retry, then the message.
  clipboard.failReads = 2;
  Notice();
  EXPECT_EQ(messages.shown.size(), 2u);
  EXPECT_EQ(list.ListCount(), 2);
}

TEST_F(Capture, PasteRotatesOrConsumesAndIgnoresItsEcho) {
  for (const char16_t* text : {u"A", u"B", u"C"}) Copy(text);
  bool selfWriteDuringWrite = false;
  clipboard.onWrite = [&] { selfWriteDuringWrite = ops.SelfWrite(); };
  clock.Advance(300);
  ASSERT_TRUE(ops.PasteFirstEntry(false));
  EXPECT_TRUE(selfWriteDuringWrite);
  EXPECT_FALSE(ops.SelfWrite());
  EXPECT_EQ(ToUtf8(clipboard.text), "A");
  EXPECT_EQ(RowTexts(list), (Rows{"\tB", "\tC", "\tA"}));
  EXPECT_EQ(list.ItemData(2), 0) << "moving to the end keeps the slot";
  EXPECT_EQ(keys.pastes, 1);
  Notice(100);  // the clipboard change that the paste caused: no new entry
  EXPECT_EQ(list.ListCount(), 3);
  ops.PasteFirstEntry(false);
  ops.PasteFirstEntry(false);
  EXPECT_EQ(RowTexts(list), (Rows{"\tA", "\tB", "\tC"})) << "N pastes bring the queue back";
  ops.PasteFirstEntry(true);
  EXPECT_EQ(RowTexts(list), (Rows{"\tB", "\tC"}));
  EXPECT_TRUE(store.IsFree(0));

  // Too late to be our own echo: the pasted text is a copy again.
  ops.PasteFirstEntry(false);
  Copy(u"X", 600);
  Copy(u"B");
  EXPECT_EQ(RowTexts(list), (Rows{"\tC", "\tB", "\tX", "\tB"}));
  // The echo of a paste while the list is full reports nothing.
  for (int i = list.ListCount(); i < 100; ++i) Copy(u"fill " + ToDecimal(i));
  clock.Advance(300);
  ops.PasteFirstEntry(false);
  Notice(50);
  EXPECT_TRUE(messages.shown.empty());
  EXPECT_TRUE(store.InvariantsHold());
}

TEST_F(Capture, PasteOfRichTextPutsOnlyRichTextAndFailedWritesChangeNothing) {
  CopyRich("{\\rtf1 \\b bold}", u"bold");
  Copy(u"kept");
  ASSERT_TRUE(ops.PasteFirstEntry(true));
  EXPECT_TRUE(clipboard.hasRich && !clipboard.hasText);
  EXPECT_EQ(clipboard.rtf, "{\\rtf1 \\b bold}");
  clipboard.failWrites = true;
  EXPECT_FALSE(ops.PasteFirstEntry(true));
  EXPECT_FALSE(ops.SelfWrite());
  EXPECT_EQ(RowTexts(list), (Rows{"\tkept"}));
  EXPECT_EQ(keys.pastes, 1);
}

TEST_F(Capture, InvariantsHoldAcrossMixedOperations) {
  std::mt19937 random(20261122);
  for (int step = 0; step < 3000; ++step) {
    const int count = list.ListCount(), pick = static_cast<int>(random() % 5);
    if (pick < 2) Copy(u"t" + ToDecimal(random() % 150));
    else if (pick == 2 && count) ops.PasteFirstEntry(random() % 2);
    else if (pick == 3 && count) store.DeleteRow(random() % count);
    else if (pick == 4 && count > 1) list.MoveItem(random() % count, random() % count);
    ASSERT_TRUE(store.InvariantsHold()) << "after step " << step;
  }
}

TEST_F(Capture, SingleModeRewritesInPlace) {
  clipboard.SetText(u"Hello");
  bool selfWrite = false;
  clipboard.onWrite = [&] { selfWrite = ops.SelfWrite(); };
  ops.RewriteInPlace(true, kCaseLower);
  EXPECT_EQ(ToUtf8(clipboard.text), "hello");
  EXPECT_TRUE(selfWrite);
  EXPECT_FALSE(ops.SelfWrite());
  // The case commands always rewrite as plain text (each copy's rewrite: below).
  clipboard.SetRich("{\\rtf1 \\b xyz}", true, u"xyz");
  ops.RewritePlainText(kCaseUpper);
  EXPECT_FALSE(clipboard.hasRich);
  EXPECT_EQ(ToUtf8(clipboard.text), "XYZ");
  // No text, private content, or a clipboard that cannot be opened: left alone.
  clipboard.SetPicture();
  int writes = clipboard.writes;
  ops.RewriteInPlace(false, kCaseUpper);
  clipboard.SetText(u"pw");
  clipboard.isPrivate = true;
  ops.RewriteInPlace(false, kCaseUpper);
  clipboard.isPrivate = false;
  clipboard.failReads = 1;
  ops.RewriteInPlace(false, kCaseUpper);
  EXPECT_EQ(clipboard.writes, writes);
  EXPECT_FALSE(ops.SelfWrite());
  EXPECT_EQ(list.ListCount(), 0);
}

// Another clipboard viewer that joined after us is notified first and hands each notice on
// only after our own write has returned, so it reaches us with SelfWrite already clear. The
// harness queues every notice a write causes and delivers it afterwards, as that viewer does.
class SingleModeBehindAnotherViewer : public Capture {
 protected:
  // One user copy (already on the fake clipboard) and every echo that follows it; returns
  // the number of writes. Stops at 50 notices: a rewrite loop never settles.
  int Copied() {
    int pending = 0;
    clipboard.onWrite = [&] { ++pending; };
    int before = clipboard.writes;
    ops.RewriteInPlace(purge, caseOp);
    for (int notices = 0; pending > 0 && notices < 50; ++notices) {
      --pending;
      EXPECT_FALSE(ops.SelfWrite());
      ops.RewriteInPlace(purge, caseOp);
    }
    EXPECT_EQ(pending, 0) << "the rewrites never settled";
    clipboard.onWrite = nullptr;
    return clipboard.writes - before;
  }
};

TEST_F(SingleModeBehindAnotherViewer, EachCopyIsRewrittenAtMostOnce) {
  caseOp = kCaseUpper;
  clipboard.SetText(u"make me loud");
  EXPECT_EQ(Copied(), 1);
  EXPECT_EQ(ToUtf8(clipboard.text), "MAKE ME LOUD");

  // Rich text with its plain text beside it: rewritten once to the rich text alone, and its
  // echo known for what it is without loading the box again.
  clipboard.SetRich("{\\rtf1 \\b quiet}", true, u"quiet");
  const int loads = box.loads;
  EXPECT_EQ(Copied(), 1);
  EXPECT_EQ(box.loads - loads, 1);
  EXPECT_EQ(clipboard.rtf, "{\\rtf1 QUIET}");
  EXPECT_FALSE(clipboard.hasText);

  // Content that already is what the rewrite gives: the clipboard is left untouched.
  clipboard.SetText(u"ALREADY LOUD");
  EXPECT_EQ(Copied(), 0);
  clipboard.SetRich("{\\rtf1 \\b LOUD}", false);
  EXPECT_EQ(Copied(), 0);
  EXPECT_EQ(clipboard.rtf, "{\\rtf1 \\b LOUD}") << "unchanged rich text keeps its formatting";
  // ...unless other formats (a picture, HTML) sit beside the text: they go, once.
  clipboard.SetText(u"LOUD WITH A PICTURE");
  clipboard.hasOther = true;
  EXPECT_EQ(Copied(), 1);
  EXPECT_FALSE(clipboard.hasOther);

  // Purged formatting turns rich text into plain text, once.
  purge = true;
  clipboard.SetRich("{\\rtf1 \\b mixed}", true, u"mixed");
  EXPECT_EQ(Copied(), 1);
  EXPECT_FALSE(clipboard.hasRich);
  EXPECT_EQ(ToUtf8(clipboard.text), "MIXED");
}

TEST(ApplyCaseOp, WordStartsOnlyAfterTheListedSeparators) {
  Latin1CaseMapper cases;
  const std::tuple<int16_t, TextView, std::string> table[] = {
      {kCaseStandardize, u"hELLO wORLD. it's", "Hello World. It's"},
      {kCaseStandardize, u"mary-jane o'neil", "Mary-jane O'neil"},
      {kCaseStandardize, u"a\tb\vc\fd\re\nf", "A\tB\vC\fD\rE\nF"},
      {kCaseStandardize, TextView(u"a\0b", 3), std::string("A\0B", 3)},
      {kCaseStandardize, u"(paren) \u00e9T\u00c9", "(paren) \xC3\x89t\xC3\xA9"},
      {kCaseStandardize, u"  two  spaces", "  Two  Spaces"},
      {kCaseStandardize, u"", ""},
      {kCaseUpper, u"\u00e9t\u00e9 ok", "\xC3\x89T\xC3\x89 OK"},
      {kCaseLower, u"MiXeD", "mixed"},
      {kCaseNone, u"MiXeD", "MiXeD"},
      {9, u"MiXeD", "MiXeD"},
  };
  for (const auto& [op, text, expected] : table)
    EXPECT_EQ(ToUtf8(ApplyCaseOp(op, text, cases)), expected) << op << " " << ToUtf8(text);
}

}  // namespace
}  // namespace mq
