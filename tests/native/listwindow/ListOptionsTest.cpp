// The clip list window's start-up options with their repairs, the toggles and the pin.
#include "ListHarness.h"

namespace mq::test {
namespace {

constexpr const char* kTips[] = {" | Condensed view", " | Expanded view",
                                 " | On paste, move pasted item to end of queue",
                                 " | On paste, delete pasted item from queue",
                                 " | Pin window on top of all windows",
                                 " | Allow window to be hidden by other windows"};
std::string Tips(int view, int paste, int pin) {
  return std::string(kTips[view]) + kTips[2 + paste] + kTips[4 + pin];
}

TEST(ListOptions, StoredValuesChooseTheStartingStateAndInvalidOnesAreRepaired) {
  struct {
    std::vector<std::pair<const char16_t*, const char16_t*>> stored;
    std::string options;
    std::vector<std::pair<const char16_t*, const char*>> after;
  } cases[] = {
      {{},
       "expanded delete buttons 010 case0 \"Clip List\"" + Tips(0, 0, 0),
       {}},  // the repairs written on a fresh installation: the start-up test
      // "Set_Dl" = "2": move to end, "Cur_Dl" untouched; an invalid "Cur_LO" is reset.
      {{{u"Set_Dl", u"2"}, {u"Cur_Dl", u"1"}, {u"Set_LO", u"3"}, {u"Cur_LO", u"7"}},
       "expanded move buttons 000 case2 \"Clip List\"" + Tips(0, 1, 0),
       {{u"Cur_Dl", "1"}, {u"Cur_LO", "0"}}},
      // "Set_Vu" = "0" without "Cur_Vu": condensed (its default is "1"), and the expanded
      // geometry is kept.
      {{{u"Set_Vu", u"0"}, {u"Set_LO", u"0"}, {u"Cur_LO", u"1"}, {u"Set_Dl", u"0"}, {u"Cur_Dl", u"0"}},
       "condensed move buttons 100 case1 \"Clip List\"" + Tips(1, 1, 0),
       {{u"Cur_Vu", "1"}, {u"Cur_Wd_Lg", "<absent>"}}},
      {{{u"Set_Pn", u"2"}, {u"Set_Vu", u"1"}, {u"Cur_Vu", u"1"}},
       "expanded delete pinned buttons 011 case0 \"Clip List (Top)\"" + Tips(0, 0, 1),
       {{u"Cur_Pn", "1"}}},
      {{{u"Set_Pn", u"5"}, {u"Cur_Pn", u"1"}, {u"Set_Vu", u"x"}, {u"Cur_Vu", u"1"}},
       "expanded delete buttons 010 case0 \"Clip List\"" + Tips(0, 0, 0),
       {{u"Set_Pn", "0"}, {u"Cur_Pn", "0"}, {u"Set_Vu", "0"}, {u"Cur_Vu", "0"}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.options);
    ListHarness h;
    for (auto [key, value] : c.stored) h.port.Set(key, value);
    h.list.EnsureLoaded();
    EXPECT_EQ(h.Options(), c.options);
    for (auto [key, value] : c.after) EXPECT_EQ(h.port.Get(key), value) << ToUtf8(key);
  }
}

TEST(ListOptions, TogglesSaveTheirStateAndNameTheNextClick) {
  ListHarness h;
  h.list.EnsureLoaded();
  h.list.chkMenu_Click(1);
  EXPECT_EQ(h.Options(), "expanded move buttons 000 case0 \"Clip List\"" + Tips(0, 1, 0));
  EXPECT_EQ(h.port.Get(u"Cur_Dl"), "0");
  h.list.chkMenu_Click(1);
  EXPECT_EQ(h.port.Get(u"Cur_Dl"), "1");

  h.list.chkMenu_Click(2);
  EXPECT_EQ(h.Options(), "expanded delete pinned buttons 011 case0 \"Clip List (Top)\"" + Tips(0, 0, 1));
  EXPECT_EQ(h.port.Get(u"Cur_Pn"), "1");
  // The Load command drops the pin while its dialog is open; the button stays pressed.
  h.list.SetTop(false);
  EXPECT_EQ(h.Options(), "expanded delete buttons 011 case0 \"Clip List\"" + Tips(0, 0, 1));
  h.list.SetTop(true);
  h.list.chkMenu_Click(2);
  EXPECT_EQ(h.Options(), "expanded delete buttons 010 case0 \"Clip List\"" + Tips(0, 0, 0));
  EXPECT_EQ(h.port.Get(u"Cur_Pn"), "0");

  h.list.chkMenu_Click(0);
  EXPECT_EQ(h.Options(), "condensed delete buttons 110 case0 \"Clip List\"" + Tips(1, 0, 0));
  EXPECT_EQ(h.port.Get(u"Cur_Vu"), "1");
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
  for (auto [key, value] : {std::pair{u"Cur_Lt_Sm", "3000"}, {u"Cur_Tp_Sm", "1500"},
                            {u"Cur_Wd_Sm", "1950"}, {u"Cur_Hi_Sm", "1845"}})
    EXPECT_EQ(h.port.Get(key), value) << ToUtf8(key);

  ListHarness never;  // a window never loaded touches no setting
  never.list.ProgramEnding(true);
  EXPECT_TRUE(never.port.writes.empty());
}

}  // namespace
}  // namespace mq::test
