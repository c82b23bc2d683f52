// The clip list window's commands on rows and slots.
#include "ListHarness.h"

namespace mq::test {
namespace {

using Strs = std::vector<std::string>;

TEST(ListCommands, DeleteMovesTheSelectionUpAndFreesTheSlot) {
  ListHarness h;
  for (const char* t : {"a", "b", "c", "d", "e"}) h.AddPlain(t);
  h.list.cmdOp_Click(0);  // nothing selected: nothing happens
  h.Select(3);
  h.list.cmdOp_Click(0);
  EXPECT_EQ(h.list.lstClip.ListIndex(), 2);
  EXPECT_TRUE(h.store.IsFree(3));
  // Row 0: no row stays selected. The Delete key and the condensed view's delete button are
  // the same command; another key does nothing.
  h.Select(0);
  h.list.lstClip_KeyDown(46);
  EXPECT_EQ(h.list.lstClip.ListIndex(), -1);
  h.Select(1);
  h.list.lstClip_KeyDown(45);
  h.list.chkMenu_Click(3);
  EXPECT_EQ(h.Rows(), (Strs{"\tb", "\te"}));
  EXPECT_EQ(h.list.lstClip.ListIndex(), 0);
  EXPECT_TRUE(h.store.InvariantsHold());
}

TEST(ListCommands, DuplicateTakesTheLowestFreeSlotAndGoesBelowTheRow) {
  ListHarness h;
  for (int i = 0; i < 10; ++i) h.AddPlain(std::to_string(i).c_str());
  h.AddRich("bold");
  h.Select(7);
  h.list.cmdOp_Click(0);  // frees slot 7, in the middle
  h.Select(9);
  h.list.cmdOp_Click(1);
  EXPECT_EQ(h.list.lstClip.List(10), u"+\tbold");  // a rich entry keeps its format and marker
  EXPECT_EQ(h.list.lstClip.ItemData(10), 7);
  EXPECT_EQ(h.store.Entry(7), h.store.Entry(10));
  EXPECT_EQ(h.list.lstClip.ListIndex(), 9) << "the selection stays on the duplicated row";
  EXPECT_TRUE(h.messages.shown.empty());

  // A full store: the full message, nothing changes.
  for (int i = 11; i < 100; ++i) h.AddPlain(("e" + std::to_string(i)).c_str());
  h.Select(50);
  h.list.cmdOp_Click(1);
  EXPECT_EQ(h.messages.Titles(), Strs{"Cannot write to clipboard."});
  EXPECT_EQ(h.list.lstClip.ListCount(), 100);
  EXPECT_EQ(h.list.lstClip.ListIndex(), 50);
}

TEST(ListCommands, DeformatAndConvertKeepTheSlotAndTheSelection) {
  ListHarness h;
  h.AddPlain("plain");
  h.AddRich("Rich words");
  h.store.Append(ClipEntry::Rich("{\\rtf1 \\b }"), u"");
  h.Select(0);
  h.list.cmdOp_Click(2);  // plain stays as it is
  EXPECT_EQ(h.box.loads, 0);
  h.Select(2);
  h.list.cmdOp_Click(2);  // a document without text stays rich: an entry never becomes empty
  EXPECT_TRUE(h.store.EntryAtRow(2).IsRich());
  h.Select(1);
  h.list.cmdOp_Click(2);
  EXPECT_EQ(h.list.lstClip.List(1), u"\tRich words");
  EXPECT_EQ(h.store.EntryAtRow(1), ClipEntry::Plain(u"Rich words"));
  EXPECT_EQ(h.list.lstClip.ItemData(1), 1);
  EXPECT_EQ(h.list.lstClip.ListIndex(), 1);

  // Convert applies the chosen case and keeps the format.
  h.AddRich("Mixed Case");
  h.list.cbOp_Click(1);  // UPPER CASE
  h.Select(3);
  h.list.cmdOp_Click(3);
  EXPECT_EQ(h.list.lstClip.List(3), u"+\tMIXED CASE");
  EXPECT_EQ(h.store.EntryAtRow(3).rtf, "{\\rtf1 MIXED CASE}");
  EXPECT_EQ(h.list.lstClip.ListIndex(), 3);
  h.Select(1);
  for (auto [choice, text, stored] : {std::tuple{0, u"Rich Words", "0"}, {2, u"rich words", "2"}}) {
    h.list.cbOp_Click(choice);
    EXPECT_EQ(h.port.Get(u"Cur_LO"), stored);
    h.list.cmdOp_Click(3);
    EXPECT_EQ(h.store.EntryAtRow(1), ClipEntry::Plain(text));
    EXPECT_EQ(h.list.lstClip.List(1), u"\t" + Text(text));
  }
  EXPECT_TRUE(h.store.InvariantsHold());
}

TEST(ListCommands, ClearAsksAndOnlyYesClears) {
  ListHarness h;
  h.list.cmdNoSel_Click();  // an empty list asks nothing
  EXPECT_TRUE(h.messages.shown.empty());
  h.AddPlain("one");
  h.AddRich("two");
  h.messages.answer = MsgResult::No;
  h.list.cmdNoSel_Click();
  EXPECT_EQ(h.list.lstClip.ListCount(), 2);
  h.messages.answer = MsgResult::Yes;
  h.list.chkMenu_Click(4);  // the condensed view's "&C"
  const std::string question =
      "?yn Clear List?: Are you sure that you wish to clear all clipboard entries from the list?";
  EXPECT_EQ(h.messages.Log(), (Strs{question, question}));
  EXPECT_EQ(h.list.lstClip.ListCount(), 0);
  EXPECT_TRUE(h.store.InvariantsHold());
}

TEST(ListCommands, DroppingARowReordersTheQueueOnly) {
  ListHarness h;
  for (const char* t : {"r0", "r1", "r2", "r3", "r4"}) h.AddPlain(t);
  struct {
    int from, to;
    std::vector<int> slots;
    int selected;
  } drops[] = {{4, 0, {4, 0, 1, 2, 3}, 0},
               {0, 5, {0, 1, 2, 3, 4}, 4},  // to the end
               {1, 3, {0, 2, 1, 3, 4}, 2},  // down: lands above the row it was dropped on
               {2, 2, {0, 2, 1, 3, 4}, 2},
               {9, 0, {0, 2, 1, 3, 4}, 2}};
  for (const auto& d : drops) {
    h.list.lstClip_Dropped(d.from, d.to);
    EXPECT_EQ(h.Slots(), d.slots) << d.from << " to " << d.to;
    EXPECT_EQ(h.list.lstClip.ListIndex(), d.selected) << d.from << " to " << d.to;
  }
  EXPECT_EQ(h.Rows(), (Strs{"\tr0", "\tr2", "\tr1", "\tr3", "\tr4"}));
}

TEST(ListCommands, DoubleClickOpensTheViewerAndFileButtonsGoToTheirHandler) {
  ListHarness h;
  h.AddPlain("first");
  h.AddRich("second");
  h.list.lstClip_DblClick();  // nothing selected
  h.list.lstClip_Dropped(1, 0);  // selects the moved row, whose slot is 1
  h.list.lstClip_DblClick();
  EXPECT_EQ(h.viewer.opened, std::vector<ClipEntry>{h.store.Entry(1)});

  h.list.cmdFile_Click(0);  // no handler yet: nothing happens
  std::vector<int> calls;
  h.list.onFileCommand = [&](int index) { calls.push_back(index); };
  for (int button : {1, 0, 2}) h.list.cmdFile_Click(button);
  EXPECT_EQ(calls, (std::vector<int>{1, 0}));
}

}  // namespace
}  // namespace mq::test
