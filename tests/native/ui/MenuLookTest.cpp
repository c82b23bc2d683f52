#include "ui/MenuLook.h"

#include <gtest/gtest.h>

namespace mq {
namespace {

using Lines = std::vector<std::string>;

std::string S(TextView t) { return ToUtf8(t); }
Lines S(const std::vector<Text>& lines) {
  Lines out;
  for (const auto& l : lines) out.push_back(ToUtf8(l));
  return out;
}

// An item as the engine draws it: kind, text, image, then its marks.
std::string Look(TextView caption) {
  const ItemLook l = ReadItemLook(caption);
  const char* kinds[] = {"command", "separator", "label", "sidebar"};
  return std::string(kinds[static_cast<int>(l.kind)]) + " " + S(l.text) + " " +
         std::to_string(l.image) + (l.isDefault ? " default" : "") + (l.bold ? " bold" : "") +
         (l.italic ? " italic" : "") + (l.underline ? " underline" : "") +
         (l.accelerator.empty() ? "" : " [" + S(l.accelerator) + "]");
}

TEST(MenuLook, TrayCaptionsReadAsTheEngineDrawsThem) {
  const std::pair<const char16_t*, const char*> cases[] = {
      {u"-{Raised}[ENABLED]", "label [ENABLED] 0"},
      {u"Enable Me{IMG:i2}", "command Enable Me 2"},
      {u"Show Clip List{IMG:I6|DEFAULT}", "command Show Clip List 6 default"},
      {u"Hide Clip List{IMG:I6|DefaultTrue}", "command Hide Clip List 6 default"},
      {u"Exit{Bold|Italic}\tAlt+F4", "command Exit 0 bold italic [Alt+F4]"},
      {u"-", "separator - 0"},
      {u" - {Bold}", "separator - 0 bold"},
      {u"-x", "command -x 0"},
      // Before start-up replaces it, the sidebar item is a plain caption.
      {u"sidebar", "command sidebar 0"},
      {u"{Sidebar|Text:Hi}", "sidebar  0"},
      {u"{sidebar}", "sidebar  0"},
      // Image tokens other than "I" and a number name no image.
      {u"x{IMG:Icon}", "command x 0"},
      {u"x{IMG:I}", "command x 0"},
      {u"x{IMG:4}", "command x 0"},
      {u"x{IMG:I4b}", "command x 0"},
  };
  for (const auto& [caption, look] : cases) EXPECT_EQ(Look(caption), look) << S(caption);
}

TEST(MenuLook, SidebarValuesAreKeptWithinTheirLimits) {
  auto none = ReadSidebarLook(u"{Sidebar}", nullptr);
  EXPECT_EQ(S(none.text) + " " + S(none.fontName), "Brasca<br>Menus Arial");
  EXPECT_TRUE(none.systemBackColour);
  EXPECT_FALSE(none.gradient);
  struct {
    const char16_t* caption;
    double size, minSize;
    int width;
    SidebarLook::Align align;
  } limits[] = {{u"{Sidebar}", 11, 5, 35, SidebarLook::Align::Centre},
                {u"{Sidebar|FSize:30|MinFSize:28|Width:20|Align:bot}", 24, 24, 35,
                 SidebarLook::Align::Bottom},
                {u"{Sidebar|FSize:3|MinFSize:1|Width:60|Align:Top}", 7, 5, 60,
                 SidebarLook::Align::Top}};
  for (const auto& c : limits) {
    auto look = ReadSidebarLook(c.caption, nullptr);
    EXPECT_EQ(look.fontSize, c.size) << S(c.caption);
    EXPECT_EQ(look.minFontSize, c.minSize) << S(c.caption);
    EXPECT_EQ(look.width, c.width) << S(c.caption);
    EXPECT_EQ(look.align, c.align) << S(c.caption);
  }
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

  // A caption the program builds reads back; a tip naming a flag does not set it.
  modMenus::SidebarOptions o;
  o.text = u"Marquill";
  o.tip = u"Bold move";
  o.italic = true;
  o.backColour = 0x7A4A1E;
  o.gradientColour = 0xD08A3C;
  o.width = 30;
  o.alignment = 2;
  const Text caption = modMenus::BuildSidebarCaption(o);
  auto look = ReadSidebarLook(caption, nullptr);
  EXPECT_EQ(S(look.text) + "|" + S(look.tip), "Marquill|Bold move");
  EXPECT_FALSE(look.bold || look.disabled);
  EXPECT_TRUE(look.italic);
  EXPECT_EQ(look.backColour, 0x7A4A1Eu);
  EXPECT_EQ(look.gradientColour, 0xD08A3Cu);
  EXPECT_EQ(look.width, 35);  // written as 30, read up to the reader's minimum
  EXPECT_EQ(look.align, SidebarLook::Align::Bottom);
  EXPECT_TRUE(IsSidebarCaption(caption));
  EXPECT_FALSE(IsSidebarCaption(u"About{IMG:I4|Sidebar}"));
}

TEST(MenuLook, SidebarLinesBreakAndSplitNearTheMiddle) {
  LineMeasure tenPerChar = [](TextView l) { return static_cast<int>(l.size()) * 10; };
  struct {
    const char16_t* text;
    bool wrap;
    int width;
    Lines lines;
  } cases[] = {
      // Not wrapped: only "<br!>" breaks; "<br>" and "<br0>" are spaces.
      {u"Brasca<br>Menus", false, 0, {"Brasca Menus"}},
      {u"A<BR!>B<br>C<br0>D", false, 0, {"A", "B C D"}},
      // Wrapped: every "<br>" breaks, "<br0>" stays a space.
      {u"A<br>B<br0>C", true, 1000, {"A", "B C"}},
      // Spaces at 3 and 7 equally far from the middle: the earlier one wins.
      {u"aaa bbb ccc", true, 80, {"aaa", "bbb ccc"}},
      // The measured width plus 6 must fit: 70 + 6 > 75, so "bbb ccc" is split again.
      {u"aaa bbb ccc", true, 75, {"aaa", "bbb", "ccc"}},
      {u"aaa bbb", true, 76, {"aaa bbb"}},
      {u"a bbbbb cc", true, 80, {"a bbbbb", "cc"}},  // nearest the middle, not the first
      {u"Marquill", true, 10, {"Marquill"}},  // no spaces: whole, however long
  };
  for (const auto& c : cases)
    EXPECT_EQ(S(SidebarLines(c.text, c.wrap, c.width, tenPerChar)), c.lines) << S(c.text) << c.width;
}

TEST(MenuLook, SidebarTextShrinksThenWraps) {
  SizedMeasure perPoint = [](TextView l, double pt) {
    return static_cast<int>(static_cast<double>(l.size()) * pt);
  };
  SidebarLook look;
  look.text = u"ab cd";  // 5 characters
  look.fontSize = 12;
  look.minFontSize = 8;
  struct {
    int width;
    double points;
    bool wrapped;
  } cases[] = {{100, 12, false},
               {5 * 10 + 6, 10, false},  // fits at 10 points
               {2 * 12 + 6, 12, true},   // "ab" fits at 12
               {2 * 9 + 6, 9, true},     // "ab" fits from 9 points
               {3, 8, true}};            // hopeless: the smallest, wrapped
  for (const auto& c : cases) {
    auto laid = LayOutSidebarText(look, c.width, perPoint);
    EXPECT_EQ(laid.pointSize, c.points) << c.width;
    EXPECT_EQ(laid.wrapped, c.wrapped) << c.width;
    EXPECT_EQ(S(laid.lines), c.wrapped ? (Lines{"ab", "cd"}) : (Lines{"ab cd"})) << c.width;
  }
}

}  // namespace
}  // namespace mq
