#include "ui/modMenus.h"

#include <gtest/gtest.h>

#include <vector>

namespace mq::modMenus {
namespace {

std::string S(TextView t) { return ToUtf8(t); }

TEST(modMenus, SplitCaptionSeparatesTextAcceleratorAndBlock) {
  struct {
    const char16_t* caption;
    const char* text;
    const char* properties;
    const char* accelerator;
  } cases[] = {
      {u"About{IMG:I4}", "About", "{IMG:I4|", ""},
      {u"-{Raised}[DISABLED]", "-[DISABLED]", "{Raised|", ""},
      // Everything after the first tab is the accelerator, braces and further tabs included.
      {u"Copy\tCtrl+C{IMG:I1}\tx", "Copy", "", "Ctrl+C{IMG:I1}\tx"},
      {u"\tF1", "", "", "F1"},
      // Every copy of the block goes, in any case; spaces around the rest are trimmed.
      {u"  A{Bold}B{BOLD} ", "AB", "{Bold|", ""},
      // Only the first "{" and the first "}" after it make the block.
      {u"x{a|{b}c}", "xc}", "{a|{b|", ""},
      // No block without a closing brace after the opening one.
      {u"open{IMG:I1", "open{IMG:I1", "", ""},
      {u" a}b{c", "a}b{c", "", ""},
  };
  for (const auto& c : cases) {
    auto parts = SplitCaption(c.caption);
    EXPECT_EQ(S(parts.text) + "|" + S(parts.properties) + "|" + S(parts.accelerator),
              std::string(c.text) + "|" + c.properties + "|" + c.accelerator)
        << S(c.caption);
  }
}

TEST(modMenus, ReadPropertyFindsItemsByPrefixAndShieldsTheTip) {
  struct {
    const char16_t* properties;
    const char16_t* name;
    const char* value;
  } cases[] = {
      {u"{IMG:I4|", u"IMG:", "I4"},
      {u"{IMG:I4|", u"Default", ""},
      {u"{Raised|", u"Raised", "True"},
      // Names in any case; flags written in capitals (as "|DEFAULT" is).
      {u"{IMG:I6|DEFAULT|", u"Default", "True"},
      {u"{img:i6|", u"IMG:", "i6"},
      // Prefix matching: the rest of the item is the value.
      {u"{IMG:I1|DefaultTrue|", u"Default", "True"},
      {u"{BoldFace|", u"Bold", "Face"},
      {u"{IMGBKG|", u"IMG:", ""},
      {u"{IMGBKG|", u"ImgBkg", "True"},
      // A valued item without a value reads "0"; an item may also follow a colon.
      {u"{IMG:|", u"IMG:", "0"},
      {u"{IMG:Default|", u"Default", "True"},
      // Too short a list, no end to the item, an empty name: nothing.
      {u"{|", u"Raised", ""},
      {u"{Raised", u"Raised", ""},
      {u"{IMG:I1|", u"", ""},
      {u"{IMG:I4}", u"IMG:", "I4"},  // a raw block still ending in "}"
      // The tip's words are no items, and the items around it stay readable.
      {u"{Tip:Make it Bold Default|IMG:I1|", u"Bold", ""},
      {u"{Tip:Make it Bold Default|IMG:I1|", u"Default", ""},
      {u"{Tip:Make it Bold Default|IMG:I1|", u"IMG:", "I1"},
      {u"{Tip:Make it Bold Default|IMG:I1|", u"tip:", "Make it Bold Default"},
      {u"{IMG:I1|Tip:see IMG:I9|Default|", u"IMG:", "I1"},
      {u"{IMG:I1|Tip:see IMG:I9|Default|", u"Default", "True"},
      {u"{Tip:IMG:I9|", u"IMG:", ""},
      {u"{Tip:Bold|Bold|", u"Bold", "True"},
      {u"{Tip:hello}", u"Tip:", "hello"},
      {u"{Tip:|", u"Tip:", "0"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(S(ReadProperty(c.properties, c.name)), c.value) << S(c.properties) << " " << S(c.name);
}

TEST(modMenus, SetItemPropertyRebuildsTheBlockInOrder) {
  struct {
    const char16_t* caption;
    int index;
    const char16_t* value;
    const char* result;
  } cases[] = {
      // The tray menu's own changes.
      {u"Disable Me{IMG:I1}", kImage, u"i2", "Disable Me{IMG:i2}"},
      {u"Disable Me{IMG:i2}", kText, u"Enable Me", "Enable Me{IMG:i2}"},
      // A flag present is carried as DefaultTrue (which still reads as the default).
      {u"Show Clip List{IMG:I6|DEFAULT}", kText, u"Hide Clip List",
       "Hide Clip List{IMG:I6|DefaultTrue}"},
      // Fixed order regardless of how the caption was written.
      {u"x{Files:f|HotKey:h|ImgBkg|CB:c|Tip:t|Default|IMG:I1}", kText, u"y",
       "y{IMG:I1|DefaultTrue|Tip:t|CB:c|IMGBKGTrue|HotKey:h|Files:f}"},
      // Items outside the eight, and the accelerator, are not carried over.
      {u"-{Raised|IMG:I1}[ON]", kText, u"z", "z{IMG:I1}"},
      {u"Copy\tCtrl+C", kImage, u"I2", "Copy{IMG:I2}"},
      {u"x{IMG:}", kTip, u"hi", "x{IMG:0|Tip:hi}"},
      {u"x{Tip:see IMG:I9}", kText, u"y", "y{Tip:see IMG:I9}"},
      {u"About{IMG:I4}", kImage, u"", "About"},  // no block left: no braces
      {u"About{IMG:I4}", 9, u"q", "About{IMG:I4}"},  // out of range
      // Flags, and the list and combo boxes that exclude each other.
      {u"Exit", kDefault, u"True", "Exit{Default}"},
      {u"Exit", kDefault, u"1", "Exit{Default}"},
      {u"Exit{Default}", kDefault, u"False", "Exit"},
      {u"Exit{Default}", kDefault, u"", "Exit"},
      {u"Exit{IMG:I5}", kImageBackground, u"true", "Exit{IMG:I5|ImgBkg}"},
      {u"x{CB:combo}", kListBox, u"list", "x{LB:list}"},
      {u"x{LB:list|IMG:I1}", kComboBox, u"c", "x{IMG:I1|CB:c}"},
      {u"x{LB:l|CB:c}", kListBox, u"", "x"},
      {u"x", kFiles, u"a;b", "x{Files:a;b}"},
      {u"x", kHotKey, u"F5", "x{HotKey:F5}"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(S(SetItemProperty(c.caption, c.index, c.value)), c.result) << S(c.caption);
  EXPECT_EQ(S(ReadProperty(SplitCaption(u"H{IMG:I6|DefaultTrue}").properties, u"Default")), "True");
}

TEST(modMenus, BuildSidebarCaptionWritesItemsInOrder) {
  SidebarOptions small;
  small.fontSize = 8;
  small.width = 10;
  EXPECT_EQ(S(BuildSidebarCaption(small)),
            "{Sidebar|Text: |Font:Arial|FSize:9|FColor:0|BColor:1|Width:16|Align:Ctr}");
  SidebarOptions full;
  full.text = u"Marquill<br>2";
  full.faceName = u"Tahoma";
  full.tip = u"Clipboard";
  full.fontSize = 10.5;
  full.minFontSize = 6;
  full.bold = full.underline = full.italic = full.sidebarDisabled = full.noScroll = true;
  full.textColour = 0xFFFFFF;
  full.backColour = -2147483633;  // the button-face system colour
  full.gradientColour = 0x800000;
  full.width = 40;
  full.alignment = 2;
  EXPECT_EQ(S(BuildSidebarCaption(full)),
            "{Sidebar|Text:Marquill<br>2|Font:Tahoma|Tip:Clipboard|FSize:10.5|MinFSize:6|Bold"
            "|Underline|Italic|SBDisabled|FColor:16777215|BColor:-2147483633|GColor:8388608"
            "|Width:40|Align:Bot|NoScroll}");
  SidebarOptions top;
  top.alignment = 1;
  top.minFontSize = -3;
  EXPECT_NE(S(BuildSidebarCaption(top)).find("|FSize:11|FColor:0|BColor:1|Width:35|Align:Top}"),
            std::string::npos);
}

TEST(modMenus, ParseColourNumbersNamesAndHex) {
  std::vector<int> asked;
  SystemColourFn sys = [&](int index) {
    asked.push_back(index);
    return 0x010000u + static_cast<uint32_t>(index);
  };
  const uint32_t dflt = 0xABCDEF;
  struct {
    const char16_t* text;
    uint32_t colour;
  } cases[] = {
      {u"&HFF", 0x0000FF}, {u"&hff&", 0x0000FF}, {u"vbred", 0x0000FF}, {u"VBRED", 0x0000FF},
      {u"255", 0x0000FF},  {u" vbBlue ", 0xFF0000}, {u"vbViolet", 0x9020D0}, {u"12.6", 13},
      // System colours: negative numbers, high-bit hex and the named ones.
      {u"-2147483633", 0x01000F}, {u"&H8000000F", 0x01000F},
      {u"2147483661", 0x01000D},  // 0x8000000D unsigned
      {u"-1", 0x0100FF}, {u"vbHighlight", 0x01000D}, {u"VB3DSHADOW", 0x010010},
      // Anything else is the caller's default.
      {u"", dflt}, {u"banana", dflt}, {u"&H", dflt}, {u"&HXYZ", dflt}, {u"&H123456789", dflt},
      {u"4294967296", dflt}, {u"-2147483649", dflt}, {u"vbRedish", dflt}, {u"1e3", dflt},
      {u"0x10", dflt},
  };
  for (const auto& c : cases) EXPECT_EQ(ParseColour(c.text, dflt, sys), c.colour) << S(c.text);
  EXPECT_EQ(asked, (std::vector<int>{15, 15, 13, 255, 13, 16}));
  // No source of system colours: the default too.
  EXPECT_EQ(ParseColour(u"vbHighlight", dflt, nullptr), dflt);
  EXPECT_EQ(ParseColour(u"-1", dflt, nullptr), dflt);
}

}  // namespace
}  // namespace mq::modMenus
