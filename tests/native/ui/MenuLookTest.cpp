#include "ui/MenuLook.h"

#include <gtest/gtest.h>

namespace mq {
namespace {

std::string S(TextView t) { return ToUtf8(t); }

std::vector<std::string> S(const std::vector<Text>& lines) {
  std::vector<std::string> out;
  for (const auto& l : lines) out.push_back(ToUtf8(l));
  return out;
}

using Lines = std::vector<std::string>;

TEST(MenuLook, TrayCaptionsReadAsTheEngineDrawsThem) {
  auto label = ReadItemLook(u"-{Raised}[ENABLED]");
  EXPECT_EQ(label.kind, ItemLook::Kind::RaisedLabel);
  EXPECT_EQ(S(label.text), "[ENABLED]");

  auto enable = ReadItemLook(u"Enable Me{IMG:i2}");
  EXPECT_EQ(enable.kind, ItemLook::Kind::Command);
  EXPECT_EQ(S(enable.text), "Enable Me");
  EXPECT_EQ(enable.image, 2);

  auto list = ReadItemLook(u"Show Clip List{IMG:I6|DEFAULT}");
  EXPECT_TRUE(list.isDefault);
  EXPECT_EQ(list.image, 6);
  auto carried = ReadItemLook(u"Hide Clip List{IMG:I6|DefaultTrue}");
  EXPECT_TRUE(carried.isDefault);

  EXPECT_EQ(ReadItemLook(u"-").kind, ItemLook::Kind::Separator);
  EXPECT_EQ(ReadItemLook(u" - {Bold}").kind, ItemLook::Kind::Separator);
  EXPECT_EQ(ReadItemLook(u"-x").kind, ItemLook::Kind::Command);
  // Before start-up replaces it, the sidebar item is a plain caption.
  EXPECT_EQ(ReadItemLook(u"sidebar").kind, ItemLook::Kind::Command);
  EXPECT_EQ(ReadItemLook(u"{Sidebar|Text:Hi}").kind, ItemLook::Kind::Sidebar);
  EXPECT_EQ(ReadItemLook(u"{sidebar}").kind, ItemLook::Kind::Sidebar);

  auto plain = ReadItemLook(u"Exit{Bold|Italic}\tAlt+F4");
  EXPECT_EQ(plain.image, 0);
  EXPECT_FALSE(plain.isDefault);
  EXPECT_TRUE(plain.bold);
  EXPECT_TRUE(plain.italic);
  EXPECT_FALSE(plain.underline);
  EXPECT_EQ(S(plain.accelerator), "Alt+F4");
  // Image tokens other than "I" and a number name no image.
  for (auto c : {u"x{IMG:Icon}", u"x{IMG:I}", u"x{IMG:4}", u"x{IMG:I4b}"})
    EXPECT_EQ(ReadItemLook(c).image, 0) << S(c);
}

TEST(MenuLook, SidebarDefaultsAndLimits) {
  auto none = ReadSidebarLook(u"{Sidebar}", nullptr);
  EXPECT_EQ(S(none.text), "Brasca<br>Menus");
  EXPECT_EQ(S(none.fontName), "Arial");
  EXPECT_EQ(none.fontSize, 11);
  EXPECT_EQ(none.minFontSize, 5);
  EXPECT_FALSE(none.bold);
  EXPECT_EQ(none.textColour, 0u);
  EXPECT_TRUE(none.systemBackColour);
  EXPECT_FALSE(none.gradient);
  EXPECT_EQ(none.width, 35);
  EXPECT_EQ(none.align, SidebarLook::Align::Centre);

  auto big = ReadSidebarLook(u"{Sidebar|FSize:30|MinFSize:28|Width:20|Align:bot}", nullptr);
  EXPECT_EQ(big.fontSize, 24);
  EXPECT_EQ(big.minFontSize, 24);
  EXPECT_EQ(big.width, 35);
  EXPECT_EQ(big.align, SidebarLook::Align::Bottom);
  auto small = ReadSidebarLook(u"{Sidebar|FSize:3|MinFSize:1|Width:60|Align:Top}", nullptr);
  EXPECT_EQ(small.fontSize, 7);
  EXPECT_EQ(small.minFontSize, 5);
  EXPECT_EQ(small.width, 60);
  EXPECT_EQ(small.align, SidebarLook::Align::Top);

  auto colours = ReadSidebarLook(u"{Sidebar|FColor:vbWhite|BColor:junk|GColor:1}", nullptr);
  EXPECT_EQ(colours.textColour, 0xFFFFFFu);
  EXPECT_TRUE(colours.systemBackColour);
  EXPECT_FALSE(colours.gradient);
  auto sys = ReadSidebarLook(u"{Sidebar|BColor:vbHighlight|GColor:&H800000}",
                             [](int i) { return 0x100u + static_cast<uint32_t>(i); });
  EXPECT_FALSE(sys.systemBackColour);
  EXPECT_EQ(sys.backColour, 0x10Du);
  EXPECT_TRUE(sys.gradient);
  EXPECT_EQ(sys.gradientColour, 0x800000u);
}

TEST(MenuLook, BuiltSidebarReadsBack) {
  modMenus::SidebarOptions o;
  o.text = u"Marquill";
  o.faceName = u"Tahoma";
  o.tip = u"Bold move";  // a tip naming a flag must not set it
  o.fontSize = 14;
  o.minFontSize = 8;
  o.italic = true;
  o.textColour = 0xFFFFFF;
  o.backColour = 0x7A4A1E;
  o.gradientColour = 0xD08A3C;
  o.width = 30;
  o.alignment = 2;
  auto look = ReadSidebarLook(modMenus::BuildSidebarCaption(o), nullptr);
  EXPECT_EQ(S(look.text), "Marquill");
  EXPECT_EQ(S(look.fontName), "Tahoma");
  EXPECT_EQ(S(look.tip), "Bold move");
  EXPECT_EQ(look.fontSize, 14);
  EXPECT_EQ(look.minFontSize, 8);
  EXPECT_FALSE(look.bold);
  EXPECT_TRUE(look.italic);
  EXPECT_FALSE(look.disabled);
  EXPECT_EQ(look.textColour, 0xFFFFFFu);
  EXPECT_EQ(look.backColour, 0x7A4A1Eu);
  EXPECT_EQ(look.gradientColour, 0xD08A3Cu);
  EXPECT_EQ(look.width, 35);  // written as 30, read up to the reader's minimum
  EXPECT_EQ(look.align, SidebarLook::Align::Bottom);
  EXPECT_TRUE(IsSidebarCaption(modMenus::BuildSidebarCaption(o)));
  EXPECT_FALSE(IsSidebarCaption(u"About{IMG:I4|Sidebar}"));
}

TEST(MenuLook, SidebarLinesBreakAndSplitNearTheMiddle) {
  LineMeasure tenPerChar = [](TextView l) { return static_cast<int>(l.size()) * 10; };

  // Not wrapped: only "<br!>" breaks; "<br>" and "<br0>" are spaces.
  EXPECT_EQ(S(SidebarLines(u"Brasca<br>Menus", false, 0, tenPerChar)), (Lines{"Brasca Menus"}));
  EXPECT_EQ(S(SidebarLines(u"A<BR!>B<br>C<br0>D", false, 0, tenPerChar)),
            (Lines{"A", "B C D"}));

  // Wrapped: every "<br>" breaks, "<br0>" stays a space.
  EXPECT_EQ(S(SidebarLines(u"A<br>B<br0>C", true, 1000, tenPerChar)), (Lines{"A", "B C"}));

  // 11 characters, spaces at 3 and 7 equally far from the middle: the earlier one wins.
  EXPECT_EQ(S(SidebarLines(u"aaa bbb ccc", true, 80, tenPerChar)), (Lines{"aaa", "bbb ccc"}));
  // The measured width plus 6 must fit: 70 + 6 > 75, so "bbb ccc" is split again.
  EXPECT_EQ(S(SidebarLines(u"aaa bbb ccc", true, 75, tenPerChar)),
            (Lines{"aaa", "bbb", "ccc"}));
  // Exactly at the limit it fits.
  EXPECT_EQ(S(SidebarLines(u"aaa bbb", true, 76, tenPerChar)), (Lines{"aaa bbb"}));
  // Nearest the middle, not the first space.
  EXPECT_EQ(S(SidebarLines(u"a bbbbb cc", true, 80, tenPerChar)), (Lines{"a bbbbb", "cc"}));
  // A line without spaces stays whole, however long.
  EXPECT_EQ(S(SidebarLines(u"Marquill", true, 10, tenPerChar)), (Lines{"Marquill"}));
}

TEST(MenuLook, SidebarTextShrinksThenWraps) {
  SizedMeasure perPoint = [](TextView l, double pt) {
    return static_cast<int>(static_cast<double>(l.size()) * pt);
  };
  SidebarLook look;
  look.text = u"ab cd";  // 5 characters
  look.fontSize = 12;
  look.minFontSize = 8;

  auto roomy = LayOutSidebarText(look, 100, perPoint);
  EXPECT_EQ(roomy.pointSize, 12);
  EXPECT_FALSE(roomy.wrapped);
  EXPECT_EQ(S(roomy.lines), (Lines{"ab cd"}));

  auto shrunk = LayOutSidebarText(look, 5 * 10 + 6, perPoint);  // fits at 10 points
  EXPECT_EQ(shrunk.pointSize, 10);
  EXPECT_FALSE(shrunk.wrapped);

  auto wrapped = LayOutSidebarText(look, 2 * 12 + 6, perPoint);  // "ab" fits at 12
  EXPECT_TRUE(wrapped.wrapped);
  EXPECT_EQ(wrapped.pointSize, 12);
  EXPECT_EQ(S(wrapped.lines), (Lines{"ab", "cd"}));

  auto tight = LayOutSidebarText(look, 2 * 9 + 6, perPoint);  // "ab" fits from 9 points
  EXPECT_TRUE(tight.wrapped);
  EXPECT_EQ(tight.pointSize, 9);

  auto hopeless = LayOutSidebarText(look, 3, perPoint);
  EXPECT_TRUE(hopeless.wrapped);
  EXPECT_EQ(hopeless.pointSize, 8);
  EXPECT_EQ(S(hopeless.lines), (Lines{"ab", "cd"}));
}

}  // namespace
}  // namespace mq
