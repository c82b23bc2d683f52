// The tray menu's mark-up: the captions the program writes, the changes its commands make to
// them, and how the menu engine reads them back to draw. Captions never come from outside
// the program, so these are the ones that matter; the drawing itself is tested on Windows.
#include "ui/MenuLook.h"

#include <gtest/gtest.h>

#include <array>

#include "app/MenuCaptions.h"
#include "platform/MenuItem.h"
#include "ui/modMenus.h"

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
         (l.accelerator.empty() ? "" : " [" + S(l.accelerator) + "]");
}

TEST(MenuLook, TrayCaptionsAndTheirChangesReadAsTheEngineDrawsThem) {
  // The enable item and the list item as the tray commands rewrite them: a flag present is
  // carried as "DefaultTrue", which still reads as the default item.
  const Text disable = u"Disable Me{IMG:I1}", show = u"Show Clip List{IMG:I6|DEFAULT}";
  const Text enable = CaptionWithText(CaptionWithImage(disable, u"i2"), u"Enable Me");
  const Text hide = CaptionWithText(show, u"Hide Clip List");
  const std::pair<Text, const char*> cases[] = {
      {disable, "command Disable Me 1"},
      {enable, "command Enable Me 2"},
      {show, "command Show Clip List 6 default"},
      {hide, "command Hide Clip List 6 default"},
      {CaptionWithText(hide, u"Show Clip List"), "command Show Clip List 6 default"},
      {u"-{Raised}[ENABLED]", "label [ENABLED] 0"},
      {u"-", "separator - 0"},
      {u"Exit{IMG:I5}", "command Exit 5"},
      {u"Copy\tCtrl+C{IMG:I1}", "command Copy 0 [Ctrl+C{IMG:I1}]"},  // all after the tab
      {u"x{IMG:Icon}", "command x 0"},  // only "I" and a number name an image
      {u"sidebar", "command sidebar 0"},  // before start-up replaces it
      {SidebarCaption(), "sidebar  0"},
  };
  for (const auto& [caption, look] : cases) EXPECT_EQ(Look(caption), look) << S(caption);
  EXPECT_FALSE(IsSidebarCaption(u"About{IMG:I4|Sidebar}"));
  // Reading a property: by prefix and in any case, "True" for a flag, "0" for no value.
  const std::tuple<const char16_t*, const char16_t*, const char*> properties[] = {
      {u"{IMG:I4|", u"img:", "I4"},        {u"{IMG:I6|DEFAULT|", u"Default", "True"},
      {u"{Raised|", u"Raised", "True"},    {u"{IMG:I4|", u"Default", ""},
      {u"{IMG:|", u"IMG:", "0"},           {u"{IMGBKG|", u"IMG:", ""},
      {u"{Tip:Bold|IMG:I1|", u"Bold", ""}, {u"{Tip:Bold|IMG:I1|", u"IMG:", "I1"}};
  for (const auto& [block, name, value] : properties)
    EXPECT_EQ(S(modMenus::ReadProperty(block, name)), value) << S(block) << " " << S(name);
}

TEST(MenuLook, TheSidebarReadsBackAsWritten) {
  const SidebarLook look = ReadSidebarLook(SidebarCaption(), nullptr);
  EXPECT_EQ(S(look.text) + "|" + S(look.fontName), "Marquill|Tahoma");
  EXPECT_EQ(look.fontSize, 14);
  EXPECT_TRUE(look.bold && look.gradient);
  EXPECT_FALSE(look.italic || look.underline || look.disabled || look.systemBackColour);
  EXPECT_EQ((std::array{look.textColour, look.backColour, look.gradientColour}),
            (std::array{Rgb(255, 255, 255), Rgb(24, 64, 128), Rgb(92, 150, 214)}));
  EXPECT_EQ(look.width, 35) << "written as 24, read up to the reader's minimum";
  EXPECT_EQ(look.align, SidebarLook::Align::Bottom);
  // Font sizes are kept within their limits on both sides.
  modMenus::SidebarOptions small;
  small.fontSize = 8;
  small.width = 10;
  EXPECT_EQ(S(modMenus::BuildSidebarCaption(small)),
            "{Sidebar|Text: |Font:Arial|FSize:9|FColor:0|BColor:1|Width:16|Align:Ctr}");
  auto big = ReadSidebarLook(u"{Sidebar|FSize:30|MinFSize:28|BColor:junk}", nullptr);
  EXPECT_EQ(big.fontSize + big.minFontSize, 48);
  EXPECT_TRUE(big.systemBackColour) << "a colour that cannot be read is the menu's own";
  // System colours are asked for by index.
  auto sys = ReadSidebarLook(u"{Sidebar|BColor:vbHighlight|GColor:&H800000}",
                             [](int i) { return 0x100u + static_cast<uint32_t>(i); });
  EXPECT_EQ(sys.backColour, 0x10Du);
  EXPECT_EQ(sys.gradientColour, 0x800000u);
  EXPECT_EQ(modMenus::ParseColour(u"-2147483633", 7, [](int i) { return uint32_t(i); }), 15u);
  EXPECT_EQ(modMenus::ParseColour(u"vbHighlight", 7, nullptr), 7u);
}

TEST(MenuLook, SidebarTextBreaksThenShrinksThenWraps) {
  LineMeasure tenPerChar = [](TextView l) { return static_cast<int>(l.size()) * 10; };
  // Not wrapped: only "<br!>" breaks; wrapped, every "<br>" does and a long line is split at
  // the space nearest its middle while measured width plus 6 does not fit.
  EXPECT_EQ(S(SidebarLines(u"A<BR!>B<br>C<br0>D", false, 0, tenPerChar)), (Lines{"A", "B C D"}));
  EXPECT_EQ(S(SidebarLines(u"A<br>B<br0>C", true, 1000, tenPerChar)), (Lines{"A", "B C"}));
  EXPECT_EQ(S(SidebarLines(u"aaa bbb ccc", true, 75, tenPerChar)), (Lines{"aaa", "bbb", "ccc"}));
  EXPECT_EQ(S(SidebarLines(u"a bbbbb cc", true, 80, tenPerChar)), (Lines{"a bbbbb", "cc"}));
  EXPECT_EQ(S(SidebarLines(u"Marquill", true, 10, tenPerChar)), (Lines{"Marquill"}));

  SizedMeasure perPoint = [](TextView l, double pt) {
    return static_cast<int>(static_cast<double>(l.size()) * pt);
  };
  SidebarLook look;
  look.text = u"ab cd";  // 5 characters
  look.fontSize = 12;
  look.minFontSize = 8;
  const std::tuple<int, double, bool> cases[] = {
      {100, 12, false}, {5 * 10 + 6, 10, false},  // fits at 10 points
      {2 * 12 + 6, 12, true},                    // "ab" fits at 12
      {2 * 9 + 6, 9, true},                      // "ab" fits from 9 points
      {3, 8, true}};                             // hopeless: the smallest, wrapped
  for (const auto& [width, points, wrapped] : cases) {
    auto laid = LayOutSidebarText(look, width, perPoint);
    EXPECT_EQ(laid.pointSize, points) << width;
    EXPECT_EQ(S(laid.lines), wrapped ? (Lines{"ab", "cd"}) : (Lines{"ab cd"})) << width;
    EXPECT_EQ(laid.wrapped, wrapped) << width;
  }
}

}  // namespace
}  // namespace mq
