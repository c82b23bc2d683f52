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
  EXPECT_EQ(h.Rows(), (Strs{"\ta", "\tb", "\tc", "\te"}));
  EXPECT_EQ(h.list.lstClip.ListIndex(), 2);
  EXPECT_TRUE(h.store.IsFree(3));
  // Row 0 of several: no row stays selected. The Delete key is the same command.
  h.Select(0);
  h.list.lstClip_KeyDown(46);
  EXPECT_EQ(h.Rows(), (Strs{"\tb", "\tc", "\te"}));
  EXPECT_EQ(h.list.lstClip.ListIndex(), -1);
  h.list.lstClip_KeyDown(46);  // nothing selected now
  h.Select(1);
  h.list.lstClip_KeyDown(45);  // another key
  EXPECT_EQ(h.list.lstClip.ListCount(), 3);
  h.list.chkMenu_Click(3);  // the condensed view's delete button
  EXPECT_EQ(h.Rows(), (Strs{"\tb", "\te"}));
  h.Select(1);
  h.list.cmdOp_Click(0);
  h.Select(0);
  h.list.cmdOp_Click(0);  // the only row
  EXPECT_EQ(h.list.lstClip.ListCount(), 0);
  EXPECT_EQ(h.list.lstClip.ListIndex(), -1);
  for (int slot = 0; slot < kClipSlots; ++slot) ASSERT_TRUE(h.store.IsFree(slot));
}

TEST(ListCommands, DuplicateTakesTheLowestFreeSlotAndGoesBelowTheRow) {
  ListHarness h;
  for (int i = 0; i < 10; ++i) h.AddPlain(std::to_string(i).c_str());
  h.Select(7);
  h.list.cmdOp_Click(0);  // frees slot 7, in the middle
  h.Select(2);
  h.list.cmdOp_Click(1);
  ASSERT_EQ(h.list.lstClip.ListCount(), 10);
  EXPECT_EQ(h.list.lstClip.List(3), u"\t2");
  EXPECT_EQ(h.list.lstClip.ItemData(3), 7);
  EXPECT_EQ(h.store.Entry(7), h.store.Entry(2));
  EXPECT_EQ(h.list.lstClip.ListIndex(), 2) << "the selection stays on the duplicated row";
  h.AddRich("bold");  // a rich entry keeps its format and marker
  h.Select(10);
  h.list.cmdOp_Click(1);
  EXPECT_EQ(h.list.lstClip.List(11), u"+\tbold");
  EXPECT_TRUE(h.store.EntryAtRow(11).IsRich());
  EXPECT_TRUE(h.messages.shown.empty());

  // A full store: the full message, nothing changes.
  for (int i = 12; i < 100; ++i) h.AddPlain(("e" + std::to_string(i)).c_str());
  h.Select(50);
  h.list.cmdOp_Click(1);
  EXPECT_EQ(h.messages.Titles(), Strs{"Cannot write to clipboard."});
  EXPECT_EQ(h.list.lstClip.ListCount(), 100);
  EXPECT_EQ(h.list.lstClip.ListIndex(), 50);
  EXPECT_TRUE(h.store.InvariantsHold());
}

TEST(ListCommands, DeformatAndConvertKeepTheSlotAndTheSelection) {
  ListHarness h;
  h.AddPlain("plain");
  h.AddRich("Rich words");
  h.Select(0);
  h.list.cmdOp_Click(2);  // plain stays as it is
  EXPECT_EQ(h.store.EntryAtRow(0), ClipEntry::Plain(u"plain"));
  EXPECT_EQ(h.box.loads, 0);
  h.Select(1);
  h.list.cmdOp_Click(2);
  EXPECT_EQ(h.list.lstClip.List(1), u"\tRich words");
  EXPECT_EQ(h.store.EntryAtRow(1), ClipEntry::Plain(u"Rich words"));
  EXPECT_EQ(h.list.lstClip.ItemData(1), 1);
  EXPECT_EQ(h.list.lstClip.ListIndex(), 1);
  // A document without text stays rich: an entry never becomes empty.
  int empty = h.store.Append(ClipEntry::Rich("{\\rtf1 \\b }"), u"");
  h.Select(2);
  h.list.cmdOp_Click(2);
  EXPECT_TRUE(h.store.Entry(empty).IsRich());

  // Convert applies the chosen case and keeps the format.
  h.AddRich("Mixed Case");
  h.list.cbOp_Click(1);  // UPPER CASE
  EXPECT_EQ(h.port.Get(u"Cur_LO"), "1");
  h.Select(3);
  h.list.cmdOp_Click(3);
  EXPECT_EQ(h.list.lstClip.List(3), u"+\tMIXED CASE");
  EXPECT_EQ(h.store.EntryAtRow(3).rtf, "{\\rtf1 MIXED CASE}");
  EXPECT_EQ(h.list.lstClip.ListIndex(), 3);
  h.Select(1);
  for (auto [choice, text] : {std::pair{0, u"Rich Words"}, {2, u"rich words"}}) {
    h.list.cbOp_Click(choice);
    h.list.cmdOp_Click(3);
    EXPECT_EQ(h.store.EntryAtRow(1), ClipEntry::Plain(text));
    EXPECT_EQ(h.list.lstClip.List(1), u"\t" + Text(text));
  }
  EXPECT_EQ(h.port.Get(u"Cur_LO"), "2");
  EXPECT_TRUE(h.store.InvariantsHold());
}

// The question and its No are also answered end to end.
TEST(ListCommands, ClearAsksAndOnlyYesClears) {
  ListHarness h;
  h.list.cmdNoSel_Click();  // an empty list asks nothing
  EXPECT_TRUE(h.messages.shown.empty());
  h.AddPlain("one");
  h.AddRich("two");
  h.messages.answer = MsgResult::No;
  h.list.cmdNoSel_Click();
  EXPECT_EQ(h.messages.Log(), Strs{"?yn Clear List?: Are you sure that you wish to clear all "
                                   "clipboard entries from the list?"});
  EXPECT_EQ(h.list.lstClip.ListCount(), 2);
  h.messages.answer = MsgResult::Yes;
  h.list.chkMenu_Click(4);  // the condensed view's "&C"
  EXPECT_EQ(h.list.lstClip.ListCount(), 0);
  for (int slot = 0; slot < kClipSlots; ++slot) ASSERT_TRUE(h.store.IsFree(slot));
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
  EXPECT_TRUE(h.viewer.opened.empty());
  h.Select(1);
  h.list.lstClip_DblClick();
  h.Select(0);
  h.list.lstClip_DblClick();
  ASSERT_EQ(h.viewer.opened.size(), 2u);
  EXPECT_EQ(h.viewer.opened[0], h.store.Entry(1));
  EXPECT_EQ(h.viewer.opened[1], ClipEntry::Plain(u"first"));
  EXPECT_EQ(h.Rows(), (Strs{"\tfirst", "+\tsecond"}));

  h.list.cmdFile_Click(0);  // no handler yet: nothing happens
  std::vector<int> calls;
  h.list.onFileCommand = [&](int index) { calls.push_back(index); };
  for (int button : {1, 0, 2}) h.list.cmdFile_Click(button);
  EXPECT_EQ(calls, (std::vector<int>{1, 0}));
}

}  // namespace
}  // namespace mq::test
