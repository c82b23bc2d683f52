// Entries longer than a row can show: the slot keeps every character, the row its start,
// whichever way the entry came in (capture, load, duplicate).
#include <gtest/gtest.h>

#include <functional>

#include "clipboard/ClipOperations.h"
#include "fakes/FakePorts.h"
#include "fakes/FakeRichTextBox.h"
#include "fakes/MemoryDisk.h"
#include "listfiles/FileOperations.h"

namespace mq {
namespace {

// Distinct characters all the way, so a cut in the wrong place shows.
Text Numbered(size_t chars, char16_t first) {
  Text text(chars, u' ');
  for (size_t i = 0; i < chars; ++i) text[i] = static_cast<char16_t>(first + i % 26);
  return text;
}

class LongEntries : public ::testing::Test {
 protected:
  ListModel list;
  ClipStore store{list};
  test::FakeClipboard clipboard;
  test::FakeRichTextBox box;
  test::FakeClock clock;
  Latin1CaseMapper cases;
  test::FakeMessageBoxes messages;
  test::FakeKeySender keys;
  ClipOperations ops{{store, clipboard, box, clock, cases, messages, keys}};
  Windows1252 cp;
  test::MemoryDisk disk;
  ListContext context{store, box, cp, disk};

  void Capture(int16_t caseOp) {
    clock.Advance(1000);
    ops.AddClipEntry(false, caseOp);
  }
};

TEST_F(LongEntries, RowsKeepTheStartAndSlotsTheWhole) {
  const Text plain = Numbered(kRowTextChars * 3 + 5, u'a');
  const Text rich = Numbered(kRowTextChars + 1, u'A');
  const Bytes rtf = "{\\rtf1 \\b " + Narrow(rich) + "}";
  struct Case {
    const char* what;
    std::function<void()> copy;
    int16_t caseOp;
    Text row;
    ClipEntry entry;
  } cases_[] = {
      {"plain", [&] { clipboard.SetText(plain); }, kCaseNone, u"\t" + plain.substr(0, kRowTextChars),
       ClipEntry::Plain(plain)},
      {"plain, upper case", [&] { clipboard.SetText(plain); }, kCaseUpper,
       u"\t" + cases.Upper(plain).substr(0, kRowTextChars), ClipEntry::Plain(cases.Upper(plain))},
      {"rich beside its text", [&] { clipboard.SetRich(rtf, true, rich); }, kCaseNone,
       u"+\t" + rich.substr(0, kRowTextChars), ClipEntry::Rich(rtf)},
      {"rich through the box", [&] { clipboard.SetRich(rtf, false); }, kCaseNone,
       u"+\t" + rich.substr(0, kRowTextChars), ClipEntry::Rich(rtf)},
      {"a row of exactly the limit", [&] { clipboard.SetText(plain.substr(0, kRowTextChars)); },
       kCaseNone, u"\t" + plain.substr(0, kRowTextChars),
       ClipEntry::Plain(plain.substr(0, kRowTextChars))},
  };
  for (const auto& c : cases_) {
    SCOPED_TRACE(c.what);
    store.ClearAll();
    clipboard.SetPicture();  // a copy in between, so the same text twice is captured twice
    Capture(kCaseNone);
    c.copy();
    Capture(c.caseOp);
    ASSERT_EQ(list.ListCount(), 1);
    EXPECT_EQ(list.List(0), c.row);
    EXPECT_EQ(store.EntryAtRow(0), c.entry);
  }

  // A duplicated row is the same short row; its slot the same whole entry.
  ASSERT_GE(store.DuplicateRow(0), 0);
  EXPECT_EQ(list.List(1), list.List(0));
  EXPECT_EQ(store.EntryAtRow(1), store.EntryAtRow(0));
  EXPECT_TRUE(store.InvariantsHold());
}

TEST_F(LongEntries, SaveAndLoadKeepWholeEntriesBehindShortRows) {
  const Text a = Numbered(70000, u'a'), b = Numbered(kRowTextChars + 10, u'A');
  store.Append(ClipEntry::Plain(a), a);
  store.Append(ClipEntry::Rich("{\\rtf1 " + Narrow(b) + "}"), b);
  store.Append(ClipEntry::Plain(u"short"), u"short");
  const auto entries = FileOperations::CurrentEntries(store);
  const std::vector<Text> rows = {u"\t" + a.substr(0, kRowTextChars),
                                  u"+\t" + b.substr(0, kRowTextChars), u"\tshort"};
  for (bool isProtected : {false, true}) {
    SCOPED_TRACE(isProtected ? "protected" : "plain");
    ASSERT_TRUE(FileOperations::SaveListFile(context, u"C:\\l.mql", isProtected, u"pw").ok);
    // Loaded after what is there: the kept rows stay short and the loaded ones come in short.
    ASSERT_TRUE(FileOperations::LoadListFile(context, u"C:\\l.mql",
                                             FileOperations::LoadMode::AppendAfterCurrent,
                                             isProtected, u"pw")
                    .Loaded());
    std::vector<ClipEntry> twice = entries;
    twice.insert(twice.end(), entries.begin(), entries.end());
    EXPECT_EQ(FileOperations::CurrentEntries(store), twice);
    for (int r = 0; r < 6; ++r) EXPECT_EQ(list.List(r), rows[r % 3]) << r;
    // Back to one copy for the next round.
    ASSERT_TRUE(FileOperations::LoadListFile(context, u"C:\\l.mql",
                                             FileOperations::LoadMode::OpenAsNew, isProtected,
                                             u"pw")
                    .Loaded());
    EXPECT_EQ(FileOperations::CurrentEntries(store), entries);
    EXPECT_TRUE(store.InvariantsHold());
  }
}

}  // namespace
}  // namespace mq
