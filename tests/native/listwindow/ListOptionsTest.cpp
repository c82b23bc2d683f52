// The clip list window's start-up options with their repairs, the toggles and the pin.
#include "ListHarness.h"

namespace mq::test {
namespace {

TEST(ListOptions, FirstRunRepairsEveryOptionAndStartsExpanded) {
  ListHarness h;
  h.list.EnsureLoaded();
  for (auto [key, value] : {std::pair{u"Set_LO", "0"}, {u"Set_Vu", "0"}, {u"Set_Pn", "0"},
                            {u"Set_Dl", "1"}, {u"Cur_LO", "0"}, {u"Cur_Vu", "0"},
                            {u"Cur_Pn", "0"}, {u"Cur_Dl", "1"}})
    EXPECT_EQ(h.port.Get(key), value) << ToUtf8(key);
  EXPECT_FALSE(h.list.Condensed());
  EXPECT_FALSE(h.list.Pinned());
  EXPECT_TRUE(h.list.DeleteOnPaste);
  EXPECT_TRUE(h.list.chkMenu[1]);
  EXPECT_EQ(h.list.chkMenuTip[1], u"On paste, move pasted item to end of queue");
  EXPECT_EQ(h.list.chkMenuTip[0], u"Condensed view");
  EXPECT_EQ(h.list.cbOpIndex, 0);
  EXPECT_EQ(h.list.Caption, u"Clip List");
  EXPECT_EQ(h.list.layout.window.width, 3735);
}

TEST(ListOptions, StoredValuesChooseTheStartingState) {
  {
    ListHarness h;  // "Set_Dl" = "2": move to end, "Cur_Dl" untouched
    h.port.Set(u"Set_Dl", u"2");
    h.port.Set(u"Cur_Dl", u"1");
    h.port.Set(u"Set_LO", u"3");
    h.port.Set(u"Cur_LO", u"7");
    h.list.EnsureLoaded();
    EXPECT_FALSE(h.list.DeleteOnPaste);
    EXPECT_FALSE(h.list.chkMenu[1]);
    EXPECT_EQ(h.list.chkMenuTip[1], u"On paste, delete pasted item from queue");
    EXPECT_EQ(h.port.Get(u"Cur_Dl"), "1");
    EXPECT_EQ(h.list.cbOpIndex, 2);
    EXPECT_EQ(h.port.Get(u"Cur_LO"), "0") << "an invalid Cur_LO is reset";
  }
  {
    ListHarness h;  // "Set_Vu" = "0" without "Cur_Vu": condensed (its default is "1")
    h.port.Set(u"Set_Vu", u"0");
    h.port.Set(u"Set_LO", u"0");
    h.port.Set(u"Cur_LO", u"1");
    h.port.Set(u"Set_Dl", u"0");
    h.port.Set(u"Cur_Dl", u"0");
    h.list.EnsureLoaded();
    EXPECT_TRUE(h.list.Condensed());
    EXPECT_EQ(h.list.chkMenuTip[0], u"Expanded view");
    EXPECT_EQ(h.port.Get(u"Cur_Vu"), "1");
    EXPECT_EQ(h.list.cbOpIndex, 1);
    EXPECT_FALSE(h.list.DeleteOnPaste);
    EXPECT_FALSE(h.port.Has(u"Cur_Wd_Lg")) << "starting condensed keeps the expanded geometry";
  }
  {
    ListHarness h;  // "Set_Pn" = "2": pinned
    h.port.Set(u"Set_Pn", u"2");
    h.port.Set(u"Set_Vu", u"1");
    h.port.Set(u"Cur_Vu", u"1");
    h.list.EnsureLoaded();
    EXPECT_TRUE(h.list.Pinned());
    EXPECT_TRUE(h.list.chkMenu[2]);
    EXPECT_EQ(h.list.Caption, u"Clip List (Top)");
    EXPECT_EQ(h.list.chkMenuTip[2], u"Allow window to be hidden by other windows");
    EXPECT_EQ(h.port.Get(u"Cur_Pn"), "1");
    EXPECT_FALSE(h.list.Condensed());
  }
  {
    ListHarness h;  // unknown values are repaired
    h.port.Set(u"Set_Pn", u"5");
    h.port.Set(u"Cur_Pn", u"1");
    h.port.Set(u"Set_Vu", u"x");
    h.port.Set(u"Cur_Vu", u"1");
    h.list.EnsureLoaded();
    EXPECT_FALSE(h.list.Pinned());
    EXPECT_FALSE(h.list.Condensed());
    EXPECT_EQ(h.port.Get(u"Set_Pn"), "0");
    EXPECT_EQ(h.port.Get(u"Cur_Pn"), "0");
    EXPECT_EQ(h.port.Get(u"Set_Vu"), "0");
    EXPECT_EQ(h.port.Get(u"Cur_Vu"), "0");
  }
}

TEST(ListOptions, TogglesSaveTheirStateAndNameTheNextClick) {
  ListHarness h;
  h.list.EnsureLoaded();
  h.list.chkMenu_Click(1);
  EXPECT_FALSE(h.list.DeleteOnPaste);
  EXPECT_EQ(h.port.Get(u"Cur_Dl"), "0");
  EXPECT_EQ(h.list.chkMenuTip[1], u"On paste, delete pasted item from queue");
  h.list.chkMenu_Click(1);
  EXPECT_TRUE(h.list.DeleteOnPaste);
  EXPECT_EQ(h.port.Get(u"Cur_Dl"), "1");

  h.list.chkMenu_Click(2);
  EXPECT_EQ(h.list.Caption, u"Clip List (Top)");
  EXPECT_TRUE(h.list.Pinned());
  EXPECT_EQ(h.port.Get(u"Cur_Pn"), "1");
  EXPECT_EQ(h.list.chkMenuTip[2], u"Allow window to be hidden by other windows");
  // The Load command drops the pin while its dialog is open; the button stays pressed.
  h.list.SetTop(false);
  EXPECT_FALSE(h.list.Pinned());
  EXPECT_TRUE(h.list.chkMenu[2]);
  EXPECT_EQ(h.list.Caption, u"Clip List");
  h.list.SetTop(true);
  h.list.chkMenu_Click(2);
  EXPECT_EQ(h.list.Caption, u"Clip List");
  EXPECT_FALSE(h.list.Pinned());
  EXPECT_EQ(h.port.Get(u"Cur_Pn"), "0");
  EXPECT_EQ(h.list.chkMenuTip[2], u"Pin window on top of all windows");

  h.list.chkMenu_Click(0);
  EXPECT_TRUE(h.list.Condensed());
  EXPECT_EQ(h.port.Get(u"Cur_Vu"), "1");
  EXPECT_EQ(h.list.chkMenuTip[0], u"Expanded view");
  h.list.chkMenu_Click(0);
  EXPECT_EQ(h.port.Get(u"Cur_Vu"), "0");
  EXPECT_EQ(h.list.chkMenuTip[0], u"Condensed view");
}

TEST(ListOptions, ProgramExitUnpinsAndSavesTheGeometryOfItsView) {
  ListHarness h;
  h.port.Set(u"Set_Pn", u"2");
  h.list.EnsureLoaded();
  h.list.chkMenu_Click(0);
  h.list.WindowMoved(3000, 1500);
  h.list.ProgramEnding(true);
  EXPECT_TRUE(h.list.Ending());
  EXPECT_FALSE(h.list.Pinned());
  EXPECT_EQ(h.list.Caption, u"Clip List");
  EXPECT_EQ(h.port.Get(u"Cur_Lt_Sm"), "3000");
  EXPECT_EQ(h.port.Get(u"Cur_Tp_Sm"), "1500");
  EXPECT_EQ(h.port.Get(u"Cur_Wd_Sm"), "1950");
  EXPECT_EQ(h.port.Get(u"Cur_Hi_Sm"), "1845");

  ListHarness never;  // a window never loaded touches no setting
  never.list.ProgramEnding(true);
  EXPECT_TRUE(never.port.writes.empty());
}

}  // namespace
}  // namespace mq::test
