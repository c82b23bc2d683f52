// The clip list window's commands on rows and slots.
#include "ListHarness.h"

namespace mq::test {
namespace {

TEST(ListCommands, DeleteMovesTheSelectionUpAndFreesTheSlot) {
  ListHarness h;
  for (const char* t : {"a", "b", "c", "d", "e"}) h.AddPlain(t);
  h.list.cmdOp_Click(0);  // nothing selected: nothing happens
  EXPECT_EQ(h.list.lstClip.ListCount(), 5);

  h.list.lstClip.SetListIndex(3);
  h.list.cmdOp_Click(0);
  EXPECT_EQ(RowTexts(h.list.lstClip), (std::vector<std::string>{"\ta", "\tb", "\tc", "\te"}));
  EXPECT_EQ(h.list.lstClip.ListIndex(), 2);
  EXPECT_TRUE(h.store.IsFree(3));

  // Row 0 of several: no row stays selected. The Delete key is the same command.
  h.list.lstClip.SetListIndex(0);
  h.list.lstClip_KeyDown(46);
  EXPECT_EQ(RowTexts(h.list.lstClip), (std::vector<std::string>{"\tb", "\tc", "\te"}));
  EXPECT_EQ(h.list.lstClip.ListIndex(), -1);
  h.list.lstClip_KeyDown(46);  // nothing selected now
  EXPECT_EQ(h.list.lstClip.ListCount(), 3);
  h.list.lstClip.SetListIndex(1);
  h.list.lstClip_KeyDown(45);  // another key
  EXPECT_EQ(h.list.lstClip.ListCount(), 3);
  // chkMenu(3) of the condensed view deletes as well.
  h.list.chkMenu_Click(3);
  EXPECT_EQ(RowTexts(h.list.lstClip), (std::vector<std::string>{"\tb", "\te"}));
  EXPECT_TRUE(h.store.InvariantsHold());
}

TEST(ListCommands, DeletingTheOnlyRowLeavesAnEmptyList) {
  ListHarness h;
  int slot = h.AddRich("only");
  h.list.lstClip.SetListIndex(0);
  h.list.cmdOp_Click(0);
  EXPECT_EQ(h.list.lstClip.ListCount(), 0);
  EXPECT_EQ(h.list.lstClip.ListIndex(), -1);
  EXPECT_TRUE(h.store.IsFree(slot));
}

TEST(ListCommands, DuplicateTakesTheLowestFreeSlotAndGoesBelowTheRow) {
  ListHarness h;
  for (int i = 0; i < 10; ++i) h.AddPlain(std::to_string(i).c_str());
  h.list.lstClip.SetListIndex(7);
  h.list.cmdOp_Click(0);  // frees slot 7, in the middle
  h.list.lstClip.SetListIndex(2);
  h.list.cmdOp_Click(1);
  ASSERT_EQ(h.list.lstClip.ListCount(), 10);
  EXPECT_EQ(h.list.lstClip.List(3), u"\t2");
  EXPECT_EQ(h.list.lstClip.ItemData(3), 7);
  EXPECT_EQ(h.store.Entry(7), h.store.Entry(2));
  EXPECT_EQ(h.list.lstClip.ListIndex(), 2) << "the selection stays on the duplicated row";

  // A rich entry keeps its format and marker.
  h.AddRich("bold");
  h.list.lstClip.SetListIndex(10);
  h.list.cmdOp_Click(1);
  EXPECT_EQ(h.list.lstClip.List(11), u"+\tbold");
  EXPECT_TRUE(h.store.EntryAtRow(11).IsRich());
  EXPECT_TRUE(h.store.InvariantsHold());
  EXPECT_TRUE(h.messages.shown.empty());
}

TEST(ListCommands, DuplicateWithAFullStoreShowsTheFullMessage) {
  ListHarness h;
  for (int i = 0; i < 100; ++i) h.AddPlain(("e" + std::to_string(i)).c_str());
  h.list.lstClip.SetListIndex(50);
  h.list.cmdOp_Click(1);
  ASSERT_EQ(h.messages.shown.size(), 1u);
  EXPECT_EQ(h.messages.shown[0].title, "Cannot write to clipboard.");
  EXPECT_EQ(h.messages.shown[0].text,
            "Extended Clipboard is Full. You can add no more than 100 entries in the clip list.");
  EXPECT_EQ(h.messages.shown[0].icon, MsgIcon::Exclamation);
  EXPECT_EQ(h.list.lstClip.ListCount(), 100);
  EXPECT_EQ(h.list.lstClip.ListIndex(), 50);
}

TEST(ListCommands, DeformatTurnsRichIntoPlainAndLeavesPlainAlone) {
  ListHarness h;
  h.AddPlain("plain");
  h.AddRich("Rich words");
  h.list.lstClip.SetListIndex(0);
  h.list.cmdOp_Click(2);
  EXPECT_EQ(h.store.EntryAtRow(0), ClipEntry::Plain(u"plain"));
  EXPECT_EQ(h.box.loads, 0);

  h.list.lstClip.SetListIndex(1);
  h.list.cmdOp_Click(2);
  EXPECT_EQ(h.list.lstClip.List(1), u"\tRich words");
  EXPECT_EQ(h.store.EntryAtRow(1), ClipEntry::Plain(u"Rich words"));
  EXPECT_EQ(h.list.lstClip.ItemData(1), 1) << "the entry keeps its slot";
  EXPECT_EQ(h.list.lstClip.ListIndex(), 1);

  // A document without text stays rich: an entry never becomes empty.
  ListHarness e;
  e.store.Append(ClipEntry::Rich("{\\rtf1 \\b }"), u"");
  e.list.lstClip.SetListIndex(0);
  e.list.cmdOp_Click(2);
  EXPECT_TRUE(e.store.EntryAtRow(0).IsRich());
  EXPECT_TRUE(e.store.InvariantsHold());
}

TEST(ListCommands, ConvertAppliesTheChosenCaseAndKeepsTheFormat) {
  ListHarness h;
  h.AddPlain("hello world");
  h.AddRich("Mixed Case");
  h.list.cbOp_Click(1);  // UPPER CASE
  EXPECT_EQ(h.port.Get(u"Cur_LO"), "1");
  h.list.lstClip.SetListIndex(1);
  h.list.cmdOp_Click(3);
  EXPECT_EQ(h.list.lstClip.List(1), u"+\tMIXED CASE");
  ASSERT_TRUE(h.store.EntryAtRow(1).IsRich());
  EXPECT_EQ(h.store.EntryAtRow(1).rtf, "{\\rtf1 MIXED CASE}");
  EXPECT_EQ(h.list.lstClip.ListIndex(), 1);

  h.list.cbOp_Click(0);  // Standardize
  h.list.lstClip.SetListIndex(0);
  h.list.cmdOp_Click(3);
  EXPECT_EQ(h.list.lstClip.List(0), u"\tHello World");
  EXPECT_EQ(h.store.EntryAtRow(0), ClipEntry::Plain(u"Hello World"));
  h.list.cbOp_Click(2);
  h.list.cmdOp_Click(3);
  EXPECT_EQ(h.store.EntryAtRow(0), ClipEntry::Plain(u"hello world"));
  EXPECT_EQ(h.port.Get(u"Cur_LO"), "2");
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
  ASSERT_EQ(h.messages.shown.size(), 1u);
  EXPECT_EQ(h.messages.shown[0].title, "Clear List?");
  EXPECT_EQ(h.messages.shown[0].text,
            "Are you sure that you wish to clear all clipboard entries from the list?");
  EXPECT_EQ(h.messages.shown[0].icon, MsgIcon::Question);
  EXPECT_EQ(h.messages.shown[0].buttons, MsgButtons::YesNo);
  EXPECT_EQ(RowTexts(h.list.lstClip), (std::vector<std::string>{"\tone", "+\ttwo"}));
  EXPECT_FALSE(h.store.IsFree(1));

  h.messages.answer = MsgResult::Yes;
  h.list.chkMenu_Click(4);  // the condensed view's "&C"
  EXPECT_EQ(h.list.lstClip.ListCount(), 0);
  for (int slot = 0; slot < kClipSlots; ++slot) ASSERT_TRUE(h.store.IsFree(slot));
}

TEST(ListCommands, DroppingARowReordersTheQueueOnly) {
  ListHarness h;
  for (const char* t : {"r0", "r1", "r2", "r3", "r4"}) h.AddPlain(t);
  h.list.lstClip_Dropped(4, 0);  // row 4 to the top
  EXPECT_EQ(RowTexts(h.list.lstClip),
            (std::vector<std::string>{"\tr4", "\tr0", "\tr1", "\tr2", "\tr3"}));
  EXPECT_EQ(h.Slots(), (std::vector<int>{4, 0, 1, 2, 3}));
  EXPECT_EQ(h.list.lstClip.ListIndex(), 0);
  h.list.lstClip_Dropped(0, 5);  // to the end
  EXPECT_EQ(h.Slots(), (std::vector<int>{0, 1, 2, 3, 4}));
  h.list.lstClip_Dropped(1, 3);  // down: lands above the row it was dropped on
  EXPECT_EQ(h.Slots(), (std::vector<int>{0, 2, 1, 3, 4}));
  EXPECT_EQ(h.list.lstClip.ListIndex(), 2);
  h.list.lstClip_Dropped(2, 2);
  h.list.lstClip_Dropped(9, 0);
  EXPECT_EQ(h.Slots(), (std::vector<int>{0, 2, 1, 3, 4}));
  EXPECT_TRUE(h.store.InvariantsHold());
}

TEST(ListCommands, DoubleClickOpensTheViewerWithTheEntryUnchanged) {
  ListHarness h;
  h.AddPlain("first");
  h.AddRich("second");
  h.list.lstClip_DblClick();  // nothing selected
  EXPECT_TRUE(h.viewer.opened.empty());
  h.list.lstClip.SetListIndex(1);
  h.list.lstClip_DblClick();
  h.list.lstClip.SetListIndex(0);
  h.list.lstClip_DblClick();
  ASSERT_EQ(h.viewer.opened.size(), 2u);
  EXPECT_EQ(h.viewer.opened[0], h.store.Entry(1));
  EXPECT_EQ(h.viewer.opened[1], ClipEntry::Plain(u"first"));
  EXPECT_EQ(RowTexts(h.list.lstClip), (std::vector<std::string>{"\tfirst", "+\tsecond"}));
}

TEST(ListCommands, FileButtonsGoToTheirHandler) {
  ListHarness h;
  h.list.cmdFile_Click(0);  // no handler yet: nothing happens
  std::vector<int> calls;
  h.list.onFileCommand = [&](int index) { calls.push_back(index); };
  h.list.cmdFile_Click(1);
  h.list.cmdFile_Click(0);
  h.list.cmdFile_Click(2);
  EXPECT_EQ(calls, (std::vector<int>{1, 0}));
}

}  // namespace
}  // namespace mq::test
