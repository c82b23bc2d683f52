#include "ui/modMenus.h"

#include <gtest/gtest.h>

#include <vector>

namespace mq::modMenus {
namespace {

std::string S(TextView t) { return ToUtf8(t); }

TEST(modMenus, SplitCaptionSeparatesTextAcceleratorAndBlock) {
  auto about = SplitCaption(u"About{IMG:I4}");
  EXPECT_EQ(S(about.text), "About");
  EXPECT_EQ(S(about.properties), "{IMG:I4|");
  EXPECT_EQ(S(about.accelerator), "");

  auto raised = SplitCaption(u"-{Raised}[DISABLED]");
  EXPECT_EQ(S(raised.text), "-[DISABLED]");
  EXPECT_EQ(S(raised.properties), "{Raised|");

  // Everything after the first tab is the accelerator, braces and further tabs included.
  auto accel = SplitCaption(u"Copy\tCtrl+C{IMG:I1}\tx");
  EXPECT_EQ(S(accel.text), "Copy");
  EXPECT_EQ(S(accel.accelerator), "Ctrl+C{IMG:I1}\tx");
  EXPECT_EQ(S(accel.properties), "");
  auto leadingTab = SplitCaption(u"\tF1");
  EXPECT_EQ(S(leadingTab.text), "");
  EXPECT_EQ(S(leadingTab.accelerator), "F1");

  // Every copy of the block goes, in any case; spaces around the rest are trimmed.
  auto twice = SplitCaption(u"  A{Bold}B{BOLD} ");
  EXPECT_EQ(S(twice.text), "AB");
  EXPECT_EQ(S(twice.properties), "{Bold|");

  // Only the first "{" and the first "}" after it make the block.
  auto nested = SplitCaption(u"x{a|{b}c}");
  EXPECT_EQ(S(nested.text), "xc}");
  EXPECT_EQ(S(nested.properties), "{a|{b|");

  // No block without a closing brace after the opening one.
  for (auto caption : {u"open{IMG:I1", u"a}b{c", u"plain"}) {
    auto parts = SplitCaption(caption);
    EXPECT_EQ(parts.text, Trim(caption));
    EXPECT_EQ(S(parts.properties), "");
  }
}

TEST(modMenus, ReadPropertyFindsItemsByPrefix) {
  EXPECT_EQ(S(ReadProperty(u"{IMG:I4|", u"IMG:")), "I4");
  EXPECT_EQ(S(ReadProperty(u"{IMG:I4|", u"Default")), "");
  EXPECT_EQ(S(ReadProperty(u"{Raised|", u"Raised")), "True");
  // Names in any case; flags written in capitals (as "|DEFAULT" is).
  EXPECT_EQ(S(ReadProperty(u"{IMG:I6|DEFAULT|", u"Default")), "True");
  EXPECT_EQ(S(ReadProperty(u"{img:i6|", u"IMG:")), "i6");
  EXPECT_EQ(S(ReadProperty(u"{IMGBKG|", u"ImgBkg")), "True");
  // Prefix matching: the rest of the item is the value.
  EXPECT_EQ(S(ReadProperty(u"{IMG:I1|DefaultTrue|", u"Default")), "True");
  EXPECT_EQ(S(ReadProperty(u"{BoldFace|", u"Bold")), "Face");
  // "IMG:" is not found inside "IMGBKG", and vice versa the flag is found on its own.
  EXPECT_EQ(S(ReadProperty(u"{IMGBKG|", u"IMG:")), "");
  // A valued item without a value reads "0"; a flag reads "True".
  EXPECT_EQ(S(ReadProperty(u"{IMG:|", u"IMG:")), "0");
  EXPECT_EQ(S(ReadProperty(u"{HotKey:|", u"HotKey:")), "0");
  // An item may also follow a colon, so a value can be taken for a flag.
  EXPECT_EQ(S(ReadProperty(u"{IMG:Default|", u"Default")), "True");
  // Too short a list, an empty name, or no end to the item: nothing.
  EXPECT_EQ(S(ReadProperty(u"{|", u"Raised")), "");
  EXPECT_EQ(S(ReadProperty(u"{Raised", u"Raised")), "");
  EXPECT_EQ(S(ReadProperty(u"{IMG:I1|", u"")), "");
  // A raw block still ending in "}" reads up to the brace.
  EXPECT_EQ(S(ReadProperty(u"{IMG:I4}", u"IMG:")), "I4");
}

TEST(modMenus, ReadPropertyShieldsTheTip) {
  const TextView withTip = u"{Tip:Make it Bold Default|IMG:I1|";
  EXPECT_EQ(S(ReadProperty(withTip, u"Bold")), "");
  EXPECT_EQ(S(ReadProperty(withTip, u"Default")), "");
  EXPECT_EQ(S(ReadProperty(withTip, u"IMG:")), "I1");
  EXPECT_EQ(S(ReadProperty(withTip, u"Tip:")), "Make it Bold Default");
  EXPECT_EQ(S(ReadProperty(withTip, u"tip:")), "Make it Bold Default");

  // The tip's removal leaves the items after it readable.
  const TextView middle = u"{IMG:I1|Tip:see IMG:I9|Default|";
  EXPECT_EQ(S(ReadProperty(middle, u"IMG:")), "I1");
  EXPECT_EQ(S(ReadProperty(middle, u"Default")), "True");
  EXPECT_EQ(S(ReadProperty(u"{Tip:IMG:I9|", u"IMG:")), "");
  // A real flag beside a tip naming it.
  EXPECT_EQ(S(ReadProperty(u"{Tip:Bold|Bold|", u"Bold")), "True");
  // A tip closed by a brace, and no tip at all.
  EXPECT_EQ(S(ReadProperty(u"{Tip:hello}", u"Tip:")), "hello");
  EXPECT_EQ(S(ReadProperty(u"{IMG:I1|", u"Tip:")), "");
  EXPECT_EQ(S(ReadProperty(u"{Tip:|", u"Tip:")), "0");
}

TEST(modMenus, SetItemPropertyRebuildsTheBlockInOrder) {
  // The enable command's caption changes as the tray menu does it.
  Text caption = SetItemProperty(u"Disable Me{IMG:I1}", kImage, u"i2");
  EXPECT_EQ(S(caption), "Disable Me{IMG:i2}");
  EXPECT_EQ(S(SetItemProperty(caption, kText, u"Enable Me")), "Enable Me{IMG:i2}");

  // A flag present is carried as DefaultTrue and still reads as the default item.
  Text hide = SetItemProperty(u"Show Clip List{IMG:I6|DEFAULT}", kText, u"Hide Clip List");
  EXPECT_EQ(S(hide), "Hide Clip List{IMG:I6|DefaultTrue}");
  EXPECT_EQ(S(ReadProperty(SplitCaption(hide).properties, u"Default")), "True");
  EXPECT_EQ(S(SetItemProperty(hide, kText, u"Show Clip List")),
            "Show Clip List{IMG:I6|DefaultTrue}");

  // Fixed order regardless of how the caption was written.
  EXPECT_EQ(S(SetItemProperty(u"x{Files:f|HotKey:h|ImgBkg|CB:c|Tip:t|Default|IMG:I1}", kText,
                              u"y")),
            "y{IMG:I1|DefaultTrue|Tip:t|CB:c|IMGBKGTrue|HotKey:h|Files:f}");

  // Items outside the eight, and the accelerator, are not carried over.
  EXPECT_EQ(S(SetItemProperty(u"-{Raised|IMG:I1}[ON]", kText, u"z")), "z{IMG:I1}");
  EXPECT_EQ(S(SetItemProperty(u"Copy\tCtrl+C", kImage, u"I2")), "Copy{IMG:I2}");

  // An item present without a value is carried with the reader's "0".
  EXPECT_EQ(S(SetItemProperty(u"x{IMG:}", kTip, u"hi")), "x{IMG:0|Tip:hi}");
  // A tip naming another item does not create that item.
  EXPECT_EQ(S(SetItemProperty(u"x{Tip:see IMG:I9}", kText, u"y")), "y{Tip:see IMG:I9}");
  // No block left: no braces.
  EXPECT_EQ(S(SetItemProperty(u"About{IMG:I4}", kImage)), "About");
  // Out of range: unchanged.
  EXPECT_EQ(S(SetItemProperty(u"About{IMG:I4}", 9, u"q")), "About{IMG:I4}");
}

TEST(modMenus, SetItemPropertyFlagsAndExclusiveItems) {
  EXPECT_EQ(S(SetItemProperty(u"Exit", kDefault, u"True")), "Exit{Default}");
  EXPECT_EQ(S(SetItemProperty(u"Exit", kDefault, u"1")), "Exit{Default}");
  EXPECT_EQ(S(SetItemProperty(u"Exit{Default}", kDefault, u"False")), "Exit");
  EXPECT_EQ(S(SetItemProperty(u"Exit{Default}", kDefault)), "Exit");  // empty is False
  EXPECT_EQ(S(SetItemProperty(u"Exit{Default}", kDefault, u"0")), "Exit");
  EXPECT_EQ(S(SetItemProperty(u"Exit{IMG:I5}", kImageBackground, u"true")),
            "Exit{IMG:I5|ImgBkg}");

  EXPECT_EQ(S(SetItemProperty(u"x{CB:combo}", kListBox, u"list")), "x{LB:list}");
  EXPECT_EQ(S(SetItemProperty(u"x{LB:list|IMG:I1}", kComboBox, u"c")), "x{IMG:I1|CB:c}");
  EXPECT_EQ(S(SetItemProperty(u"x{LB:l|CB:c}", kListBox)), "x");
  EXPECT_EQ(S(SetItemProperty(u"x{Files:a;b}", kFiles)), "x");
  EXPECT_EQ(S(SetItemProperty(u"x", kFiles, u"a;b")), "x{Files:a;b}");
  EXPECT_EQ(S(SetItemProperty(u"x", kHotKey, u"F5")), "x{HotKey:F5}");
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
  top.text = u"T";
  top.alignment = 1;
  top.minFontSize = -3;
  EXPECT_NE(S(BuildSidebarCaption(top)).find("|FSize:11|FColor:0|BColor:1|Width:35|Align:Top}"),
            std::string::npos);
  top.alignment = 7;
  EXPECT_NE(S(BuildSidebarCaption(top)).find("|Align:Ctr}"), std::string::npos);
}

TEST(modMenus, ParseColourNumbersNamesAndHex) {
  std::vector<int> asked;
  SystemColourFn sys = [&](int index) {
    asked.push_back(index);
    return 0x010000u + static_cast<uint32_t>(index);
  };
  const uint32_t dflt = 0xABCDEF;

  // Pure red three ways, any case.
  EXPECT_EQ(ParseColour(u"&HFF", dflt, sys), 0x0000FFu);
  EXPECT_EQ(ParseColour(u"&hff&", dflt, sys), 0x0000FFu);
  EXPECT_EQ(ParseColour(u"vbred", dflt, sys), 0x0000FFu);
  EXPECT_EQ(ParseColour(u"VBRED", dflt, sys), 0x0000FFu);
  EXPECT_EQ(ParseColour(u"255", dflt, sys), 0x0000FFu);
  EXPECT_EQ(ParseColour(u" vbBlue ", dflt, sys), 0xFF0000u);
  EXPECT_EQ(ParseColour(u"vbViolet", dflt, sys), 0x9020D0u);
  EXPECT_EQ(ParseColour(u"vbBrown", dflt, sys), 0x004466u);
  EXPECT_EQ(ParseColour(u"vbTurquoise", dflt, sys), 0xD1CE00u);
  EXPECT_EQ(ParseColour(u"12.6", dflt, sys), 13u);
  EXPECT_TRUE(asked.empty());

  // System colours: negative numbers, high-bit hex and the named ones.
  EXPECT_EQ(ParseColour(u"-2147483633", dflt, sys), 0x01000Fu);
  EXPECT_EQ(ParseColour(u"&H8000000F", dflt, sys), 0x01000Fu);
  EXPECT_EQ(ParseColour(u"2147483661", dflt, sys), 0x01000Du);  // 0x8000000D unsigned
  EXPECT_EQ(ParseColour(u"-1", dflt, sys), 0x0100FFu);
  EXPECT_EQ(ParseColour(u"vbHighlight", dflt, sys), 0x01000Du);
  EXPECT_EQ(ParseColour(u"vb3DFace", dflt, sys), 0x01000Fu);
  EXPECT_EQ(ParseColour(u"VB3DSHADOW", dflt, sys), 0x010010u);
  EXPECT_EQ(ParseColour(u"vbInfoBackground", dflt, sys), 0x010018u);
  EXPECT_EQ(ParseColour(u"vbScrollBars", dflt, sys), 0x010000u);
  EXPECT_EQ(asked, (std::vector<int>{15, 15, 13, 255, 13, 15, 16, 24, 0}));

  // Anything else is the caller's default.
  for (auto v : {u"", u"banana", u"&H", u"&HXYZ", u"&H123456789", u"4294967296",
                 u"-2147483649", u"vbRedish", u"1e3", u"0x10"})
    EXPECT_EQ(ParseColour(v, dflt, sys), dflt) << S(v);
  // No source of system colours: the default too.
  EXPECT_EQ(ParseColour(u"vbHighlight", dflt, nullptr), dflt);
  EXPECT_EQ(ParseColour(u"-1", dflt, nullptr), dflt);
}

}  // namespace
}  // namespace mq::modMenus
