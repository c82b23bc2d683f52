#include "clipboard/ClipOperations.h"

#include <gtest/gtest.h>

#include <functional>
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
  // A user copy: new content, a notification well after the previous one.
  void Copy(TextView text) {
    clock.Advance(300);
    clipboard.SetText(text);
    ops.AddClipEntry(purge, caseOp);
  }
  void CopyRich(std::string_view rtf, TextView plain) {
    clock.Advance(300);
    clipboard.SetRich(rtf, true, plain);
    ops.AddClipEntry(purge, caseOp);
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
  Copy(u"A");
  Copy(u"A");  // the same text twice in a row: stored once
  Copy(u"B");
  Copy(u"A");  // A, B, A: the check is against the last content only
  EXPECT_EQ(RowTexts(list), (Rows{"\tA", "\tB", "\tA"}));

  clipboard.SetPicture();  // no text: nothing stored, but the check is reset
  clock.Advance(300);
  ops.AddClipEntry(purge, caseOp);
  Copy(u"A");
  EXPECT_EQ(list.ListCount(), 4);

  // Two notifications 100 ms apart: the second is not considered...
  clock.Advance(300);
  clipboard.SetText(u"C");
  ops.AddClipEntry(purge, caseOp);
  clock.Advance(100);
  clipboard.SetText(u"D");
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(RowTexts(list).back(), "\tC");
  // ...and the debounce runs from the last attempt that passed it, not from the skipped one.
  clock.Advance(150);
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(RowTexts(list).back(), "\tD");
  EXPECT_TRUE(store.InvariantsHold());
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(Capture, LongSilencesNeverHoldCaptureOrTheEchoRuleBack) {
  constexpr uint64_t kDay = 24ull * 60 * 60 * 1000;
  int expected = 0;
  for (uint64_t silence : {25 * kDay, 50 * kDay}) {
    // Capture switched off for weeks, then five copies a minute apart: all five are stored.
    clock.Advance(silence);
    for (int i = 0; i < 5; ++i) {
      clock.Advance(60 * 1000);
      clipboard.SetText(u"after " + ToDecimal(static_cast<long long>(silence / kDay)) + u" days " +
                        ToDecimal(i));
      ops.AddClipEntry(purge, caseOp);
    }
    expected += 5;
    ASSERT_EQ(list.ListCount(), expected) << silence / kDay << " days";
  }

  // Copying exactly the last pasted text a month after the paste is a copy, not an echo.
  Copy(u"pasted");
  Copy(u"other");
  ASSERT_TRUE(ops.PasteFirstEntry(true));
  clock.Advance(30 * kDay);
  clipboard.SetText(u"after 25 days 0");
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(RowTexts(list).back(), "\tafter 25 days 0");

  // Across 2^32 ms of uptime, where a 32-bit tick counter wraps: 0x110 ms is past the
  // debounce, 100 ms more is not.
  clock.now = 0xFFFFFF00u - 300;
  Copy(u"A");  // at 0xFFFFFF00
  clock.now = 0x100000010ull;
  clipboard.SetText(u"B");
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(RowTexts(list).back(), "\tB");
  clock.Advance(100);
  clipboard.SetText(u"C");
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(RowTexts(list).back(), "\tB");
  EXPECT_TRUE(store.InvariantsHold());
}

TEST_F(Capture, PurgeDecidesBetweenRichAndPlain) {
  CopyRich("{\\rtf1 \\b Hello\\b0  world}", u"Hello world");
  ASSERT_EQ(list.ListCount(), 1);
  EXPECT_EQ(ToUtf8(list.List(0)), "+\tHello world");
  EXPECT_EQ(store.ClipFormat(0), kFormatRich);
  // No case change: the document is kept as loaded, formatting and all.
  EXPECT_EQ(store.Entry(0).rtf, "{\\rtf1 \\b Hello\\b0  world}");
  EXPECT_TRUE(box.Document().empty()) << "the conversion box is emptied after use";

  purge = true;
  CopyRich("{\\rtf1 \\i Other}", u"Other");
  EXPECT_EQ(ToUtf8(list.List(1)), "\tOther");
  EXPECT_EQ(store.ClipFormat(1), kFormatPlain);
  EXPECT_EQ(ToUtf8(store.Entry(1).text), "Other");
}

TEST_F(Capture, CaseOperationsApplyToPlainAndRichEntries) {
  caseOp = kCaseUpper;
  Copy(u"hello World");
  EXPECT_EQ(ToUtf8(list.List(0)), "\tHELLO WORLD");
  EXPECT_EQ(ToUtf8(store.Entry(0).text), "HELLO WORLD");

  caseOp = kCaseStandardize;
  CopyRich("{\\rtf1 \\b mIXED\\b0  case}", u"mIXED case");
  EXPECT_EQ(ToUtf8(list.List(1)), "+\tMixed Case");
  EXPECT_EQ(store.Entry(1).rtf, "{\\rtf1 Mixed Case}");

  // The identical-content check compares the content as read, before the case change.
  Copy(u"hello World");
  Copy(u"hello World");
  EXPECT_EQ(list.ListCount(), 3);
}

TEST_F(Capture, UnreadableRichTextFallsBackToThePlainText) {
  CopyRich("not rtf at all", u"fallback");
  ASSERT_EQ(list.ListCount(), 1);
  EXPECT_EQ(ToUtf8(list.List(0)), "\tfallback");
  EXPECT_EQ(store.ClipFormat(0), kFormatPlain);
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(Capture, PrivateContentIsNeverCaptured) {
  clock.Advance(300);
  clipboard.SetText(u"secret");
  clipboard.isPrivate = true;
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(list.ListCount(), 0);
  EXPECT_TRUE(ops.LastCaptured().Empty());
}

TEST_F(Capture, FullListShowsTheMessageAndKeepsTheLastContent) {
  for (int i = 0; i < 100; ++i) Copy(u"entry " + ToDecimal(i));
  ASSERT_EQ(list.ListCount(), 100);
  Copy(u"one too many");
  ASSERT_EQ(messages.shown.size(), 1u);
  EXPECT_EQ(messages.shown[0].title, "Cannot write to clipboard.");
  EXPECT_EQ(messages.shown[0].text,
            "Extended Clipboard is Full. You can add no more than 100 entries in the clip list.");
  EXPECT_EQ(messages.shown[0].icon, MsgIcon::Exclamation);
  Copy(u"one too many");  // the same content is not offered again
  EXPECT_EQ(messages.shown.size(), 1u);
  Copy(u"and another");  // each new content offered while full shows it
  EXPECT_EQ(messages.shown.size(), 2u);

  store.DeleteRow(41);  // frees slot 41
  Copy(u"fits now");
  EXPECT_EQ(list.ListCount(), 100);
  EXPECT_EQ(ToUtf8(list.List(99)), "\tfits now");
  EXPECT_EQ(list.ItemData(99), 41);
  EXPECT_TRUE(store.InvariantsHold());
}

TEST_F(Capture, OneRetryThenTheAccessMessage) {
  clipboard.SetText(u"A");
  clipboard.failReads = 1;  // the first attempt fails, the retry succeeds
  clock.Advance(300);
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(list.ListCount(), 1);
  EXPECT_TRUE(messages.shown.empty());
  EXPECT_TRUE(ops.CaptureRetry()) << "cleared only when the message is shown";

  // While the retry flag stays set, the debounce lets every change through and the next
  // failure shows the message without a further retry.
  clock.Advance(10);
  clipboard.SetText(u"B");
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(list.ListCount(), 2);
  clipboard.failReads = 1;
  int readsBefore = clipboard.readCalls;
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(clipboard.readCalls - readsBefore, 1);
  ASSERT_EQ(messages.shown.size(), 1u);
  EXPECT_EQ(messages.shown[0].title, "Error: Cannot access clipboard.");
  EXPECT_EQ(messages.shown[0].icon, MsgIcon::Critical);
  EXPECT_EQ(messages.shown[0].text,
            "Marquill is unable to access the clipboard. Either another program was attempting "
            "to simultaneously access the clipboard, or another program has locked access to "
            "the clipboard. You may try to copy the desired text again if you wish.");
  EXPECT_FALSE(ops.CaptureRetry());

  // From a clean state, two failures in a row: one retry, then the message.
  clipboard.failReads = 2;
  clock.Advance(300);
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(messages.shown.size(), 2u);
  EXPECT_EQ(list.ListCount(), 2);
}

TEST_F(Capture, NoReentryWhileItsMessageBoxIsOpen) {
  for (int i = 0; i < 100; ++i) Copy(u"x" + ToDecimal(i));
  int nested = 0;
  messages.onShow = [&] {
    // A change notified while the box is open is not captured.
    clock.Advance(300);
    clipboard.SetText(u"during the box");
    ops.AddClipEntry(purge, caseOp);
    ++nested;
  };
  Copy(u"full");
  EXPECT_EQ(nested, 1);
  EXPECT_EQ(messages.shown.size(), 1u);
}

TEST_F(Capture, PasteRotatesOrConsumesAndIgnoresItsEcho) {
  Copy(u"A");
  Copy(u"B");
  Copy(u"C");
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

  // The clipboard change that the paste caused, 100 ms later: no new entry.
  clock.Advance(100);
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(list.ListCount(), 3);

  ops.PasteFirstEntry(false);
  ops.PasteFirstEntry(false);
  EXPECT_EQ(RowTexts(list), (Rows{"\tA", "\tB", "\tC"})) << "N pastes bring the queue back";

  ops.PasteFirstEntry(true);
  EXPECT_EQ(RowTexts(list), (Rows{"\tB", "\tC"}));
  EXPECT_TRUE(store.IsFree(0));
  EXPECT_TRUE(store.InvariantsHold());
}

TEST_F(Capture, EchoAfterTheWindowIsCapturedAndEchoNeverReportsFull) {
  Copy(u"A");
  ops.PasteFirstEntry(false);
  clock.Advance(600);  // too late to be our own echo
  clipboard.SetText(u"B");
  ops.AddClipEntry(purge, caseOp);
  clipboard.SetText(u"A");
  clock.Advance(300);
  ops.AddClipEntry(purge, caseOp);
  EXPECT_EQ(list.ListCount(), 3);

  for (int i = list.ListCount(); i < 100; ++i) Copy(u"fill " + ToDecimal(i));
  clock.Advance(300);
  ops.PasteFirstEntry(false);
  clock.Advance(50);
  ops.AddClipEntry(purge, caseOp);  // echo of the paste while the list is full
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(Capture, PasteOfRichTextPutsOnlyRichTextAndFailedWritesChangeNothing) {
  CopyRich("{\\rtf1 \\b bold}", u"bold");
  ops.PasteFirstEntry(true);
  EXPECT_TRUE(clipboard.hasRich);
  EXPECT_FALSE(clipboard.hasText);
  EXPECT_EQ(clipboard.rtf, "{\\rtf1 \\b bold}");

  Copy(u"kept");
  clipboard.failWrites = true;
  EXPECT_FALSE(ops.PasteFirstEntry(true));
  EXPECT_FALSE(ops.SelfWrite());
  EXPECT_EQ(RowTexts(list), (Rows{"\tkept"}));
  EXPECT_EQ(keys.pastes, 1);
}

TEST_F(Capture, InvariantsHoldAcrossMixedOperations) {
  std::mt19937 random(20261122);
  for (int step = 0; step < 3000; ++step) {
    switch (random() % 5) {
      case 0:
      case 1:
        Copy(u"t" + ToDecimal(random() % 150));
        break;
      case 2:
        if (list.ListCount()) ops.PasteFirstEntry(random() % 2);
        break;
      case 3:
        if (list.ListCount()) store.DeleteRow(random() % list.ListCount());
        break;
      case 4:
        if (list.ListCount() > 1)
          list.MoveItem(random() % list.ListCount(), random() % list.ListCount());
        break;
    }
    ASSERT_TRUE(store.InvariantsHold()) << "after step " << step;
  }
}

class SingleMode : public Capture {};

TEST_F(SingleMode, RewritesInPlace) {
  clipboard.SetText(u"Hello");
  bool selfWrite = false;
  clipboard.onWrite = [&] { selfWrite = ops.SelfWrite(); };
  ops.RewriteInPlace(true, kCaseLower);
  EXPECT_EQ(ToUtf8(clipboard.text), "hello");
  EXPECT_TRUE(selfWrite);
  EXPECT_FALSE(ops.SelfWrite());

  // Preserved formatting with rich text: only the transformed rich text remains.
  clipboard.SetRich("{\\rtf1 \\b abc}", true, u"abc");
  ops.RewriteInPlace(false, kCaseUpper);
  EXPECT_TRUE(clipboard.hasRich);
  EXPECT_FALSE(clipboard.hasText);
  EXPECT_EQ(clipboard.rtf, "{\\rtf1 ABC}");

  // Purged formatting with rich text: the plain text, as plain text.
  clipboard.SetRich("{\\rtf1 \\b abc}", true, u"abc");
  ops.RewriteInPlace(true, kCaseUpper);
  EXPECT_FALSE(clipboard.hasRich);
  EXPECT_EQ(ToUtf8(clipboard.text), "ABC");

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

  // The case commands rewrite as plain text even when rich text is there.
  clipboard.SetRich("{\\rtf1 \\b xyz}", true, u"xyz");
  ops.RewritePlainText(kCaseUpper);
  EXPECT_FALSE(clipboard.hasRich);
  EXPECT_EQ(ToUtf8(clipboard.text), "XYZ");
  EXPECT_EQ(list.ListCount(), 0);
}

// Another clipboard viewer that joined after us is notified first and hands each notice on
// only after our own write has returned, so it reaches us with SelfWrite already clear. The
// harness queues every notice a write causes and delivers it afterwards, as that viewer does.
class SingleModeBehindAnotherViewer : public SingleMode {
 protected:
  // One user copy (already on the fake clipboard) and every echo that follows it; returns
  // the number of writes. Stops at 50 notices: a rewrite loop never settles.
  int Settle(const std::function<void()>& first) {
    int pending = 0;
    clipboard.onWrite = [&] { ++pending; };
    int before = clipboard.writes;
    first();
    for (int notices = 0; pending > 0 && notices < 50; ++notices) {
      --pending;
      EXPECT_FALSE(ops.SelfWrite());
      ops.RewriteInPlace(purge, caseOp);
    }
    EXPECT_EQ(pending, 0) << "the rewrites never settled";
    clipboard.onWrite = nullptr;
    return clipboard.writes - before;
  }
  int Copied() { return Settle([&] { ops.RewriteInPlace(purge, caseOp); }); }
};

TEST_F(SingleModeBehindAnotherViewer, EachCopyIsRewrittenAtMostOnce) {
  caseOp = kCaseUpper;
  clipboard.SetText(u"make me loud");
  EXPECT_EQ(Copied(), 1);
  EXPECT_EQ(ToUtf8(clipboard.text), "MAKE ME LOUD");

  // Rich text with its plain text beside it: rewritten once to the rich text alone.
  clipboard.SetRich("{\\rtf1 \\b quiet}", true, u"quiet");
  EXPECT_EQ(Copied(), 1);
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

TEST_F(SingleModeBehindAnotherViewer, ACaseCommandRewritesOnceAndItsEchoIsIgnored) {
  caseOp = kCaseLower;
  clipboard.SetText(u"Some Text");
  int loadsBefore = box.loads;
  EXPECT_EQ(Settle([&] { ops.RewritePlainText(kCaseLower); }), 1);
  EXPECT_EQ(ToUtf8(clipboard.text), "some text");
  EXPECT_EQ(box.loads, loadsBefore);

  // The echo of a rich rewrite is recognised before the box is loaded again.
  purge = false;
  caseOp = kCaseUpper;
  clipboard.SetRich("{\\rtf1 \\i soft}", true, u"soft");
  loadsBefore = box.loads;
  EXPECT_EQ(Copied(), 1);
  EXPECT_EQ(box.loads - loadsBefore, 1);
}

TEST(ApplyCaseOp, WordStartsOnlyAfterTheListedSeparators) {
  Latin1CaseMapper cases;
  auto st = [&](TextView t) { return ToUtf8(ApplyCaseOp(kCaseStandardize, t, cases)); };
  EXPECT_EQ(st(u"hELLO wORLD. it's"), "Hello World. It's");
  EXPECT_EQ(st(u"mary-jane o'neil"), "Mary-jane O'neil");
  EXPECT_EQ(st(u"ABC DEF"), "Abc Def");
  EXPECT_EQ(st(u"\r\nx"), "\r\nX");
  EXPECT_EQ(st(u""), "");
  EXPECT_EQ(st(u"a\tb\vc\fd\re\nf"), "A\tB\vC\fD\rE\nF");
  EXPECT_EQ(st(TextView(u"a\0b", 3)), std::string("A\0B", 3));
  EXPECT_EQ(st(u"(paren) \u00e9T\u00c9"), "(paren) \xC3\x89t\xC3\xA9");
  EXPECT_EQ(st(u"  two  spaces"), "  Two  Spaces");
  EXPECT_EQ(ToUtf8(ApplyCaseOp(kCaseUpper, u"\u00e9t\u00e9 ok", cases)), "\xC3\x89T\xC3\x89 OK");
  EXPECT_EQ(ToUtf8(ApplyCaseOp(kCaseLower, u"MiXeD", cases)), "mixed");
  EXPECT_EQ(ToUtf8(ApplyCaseOp(kCaseNone, u"MiXeD", cases)), "MiXeD");
  EXPECT_EQ(ToUtf8(ApplyCaseOp(9, u"MiXeD", cases)), "MiXeD");
}

}  // namespace
}  // namespace mq
