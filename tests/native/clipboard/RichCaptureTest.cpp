// Rich text captured beside its plain text: the row takes the clipboard's own text and the
// rich-text box is left alone unless the case operation changes the text.
#include <gtest/gtest.h>

#include "clipboard/ClipOperations.h"
#include "fakes/FakePorts.h"
#include "fakes/FakeRichTextBox.h"

namespace mq {
namespace {

// Counts every call into the box, whatever it is.
class WatchedBox : public RichTextBox {
 public:
  bool LoadRtf(std::string_view rtf) override { return ++calls, inner.LoadRtf(rtf); }
  Text PlainText() override { return ++calls, inner.PlainText(); }
  void SetPlainText(TextView text) override { ++calls, inner.SetPlainText(text); }
  Bytes Rtf() override { return ++calls, inner.Rtf(); }
  void Clear() override { ++calls, inner.Clear(); }
  test::FakeRichTextBox inner;
  int calls = 0;
};

struct Captured {
  std::vector<std::string> rows;
  std::vector<ClipEntry> slots;
  int boxCalls = 0;
};

// One capture into an empty list; withText puts `plain` on the clipboard beside the document.
Captured Capture(std::string_view rtf, TextView plain, bool withText, int16_t caseOp) {
  ListModel list;
  ClipStore store(list);
  test::FakeClipboard clipboard;
  WatchedBox box;
  test::FakeClock clock;
  Latin1CaseMapper cases;
  test::FakeMessageBoxes messages;
  test::FakeKeySender keys;
  ClipOperations ops({store, clipboard, box, clock, cases, messages, keys});
  clipboard.SetRich(rtf, withText, withText ? plain : TextView());
  ops.AddClipEntry(false, caseOp);
  Captured out{test::RowTexts(list), {}, box.calls};
  for (int slot = 0; slot < kClipSlots; ++slot)
    if (!store.IsFree(slot)) out.slots.push_back(store.Entry(slot));
  EXPECT_TRUE(store.InvariantsHold());
  EXPECT_TRUE(messages.shown.empty());
  return out;
}

TEST(RichCapture, TheClipboardsTextStandsInForTheBoxWhenTheCaseLeavesItAlone) {
  struct Case {
    const char* what;
    std::string_view rtf;
    TextView plain;  // what the clipboard offers beside the document (the box reads the same)
    int16_t caseOp;
    bool boxUsed;
  } cases[] = {
      {"no case operation", "{\\rtf1 \\b Hello\\b0  world}", u"Hello world", kCaseNone, false},
      {"upper case of upper-case text", "{\\rtf1 \\b LOUD 42}", u"LOUD 42", kCaseUpper, false},
      {"lower case of lower-case text", "{\\rtf1 \\i quiet}", u"quiet", kCaseLower, false},
      {"proper case of proper-case text", "{\\rtf1 Title Case}", u"Title Case", kCaseStandardize,
       false},
      {"upper case that changes the text", "{\\rtf1 \\b mIXED}", u"mIXED", kCaseUpper, true},
      {"proper case that changes the text", "{\\rtf1 two words}", u"two words", kCaseStandardize,
       true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const Captured fast = Capture(c.rtf, c.plain, true, c.caseOp);
    // The same document without text beside it goes through the box: the result must match.
    const Captured boxed = Capture(c.rtf, c.plain, false, c.caseOp);
    EXPECT_EQ(fast.rows, boxed.rows);
    EXPECT_EQ(fast.slots, boxed.slots);
    ASSERT_EQ(fast.slots.size(), 1u);
    EXPECT_TRUE(fast.slots[0].IsRich());
    if (c.boxUsed) {
      EXPECT_GT(fast.boxCalls, 0);
    } else {
      EXPECT_EQ(fast.boxCalls, 0);
      EXPECT_EQ(fast.slots[0].rtf, c.rtf) << "the document is kept byte for byte";
    }
    EXPECT_GT(boxed.boxCalls, 0);
  }
}

TEST(RichCapture, TheBoxDecidesWhenTheClipboardsTextCannotStandIn) {
  // An empty text beside the document says nothing about it: the box reads the document.
  Captured empty = Capture("{\\rtf1 \\b kept}", u"", true, kCaseNone);
  EXPECT_GT(empty.boxCalls, 0);
  EXPECT_EQ(empty.rows, (std::vector<std::string>{"+\tkept"}));

  // Bytes that are no rich text fall back to the plain text; the text beside them does not
  // make them a rich entry.
  Captured foreign = Capture("not rtf at all", u"fallback", true, kCaseNone);
  EXPECT_EQ(foreign.rows, (std::vector<std::string>{"\tfallback"}));
  ASSERT_EQ(foreign.slots.size(), 1u);
  EXPECT_FALSE(foreign.slots[0].IsRich());

  // A document that starts after blank space is still rich text.
  Captured padded = Capture("\r\n {\\rtf1 pad}", u"pad", true, kCaseNone);
  EXPECT_EQ(padded.boxCalls, 0);
  EXPECT_EQ(padded.rows, (std::vector<std::string>{"+\tpad"}));
}

}  // namespace
}  // namespace mq
