#include "platform/Text.h"

#include <gtest/gtest.h>

#include "platform/CodePage.h"

namespace mq {
namespace {

TEST(Text, NumericFollowsTheProgramsRule) {
  for (auto s : {u"0", u" 12 ", u"+5", u"-5", u"5.", u".5", u"3.25"})
    EXPECT_TRUE(IsNumeric(s)) << ToUtf8(s);
  for (auto s : {u"", u" ", u".", u"1.2.3", u"&H10", u"1e3", u"12a", u"- 1", u"+"})
    EXPECT_FALSE(IsNumeric(s)) << ToUtf8(s);
}

TEST(Text, LeadingNumberStopsAtTheFirstOtherCharacter) {
  EXPECT_EQ(LeadingNumber(u"abc"), 0);
  EXPECT_EQ(LeadingNumber(u"  42xyz"), 42);
  EXPECT_EQ(LeadingNumber(u"-7"), -7);
  EXPECT_EQ(LeadingNumber(u"2.5.1"), 2.5);
  EXPECT_EQ(LeadingNumber(u""), 0);
  EXPECT_EQ(RoundHalfAway(74.5), 75);
  EXPECT_EQ(RoundHalfAway(-2.5), -3);
  EXPECT_EQ(RoundHalfAway(75.49), 75);
}

TEST(Text, FormattingAndConversions) {
  EXPECT_EQ(ToUtf8(Format000(7)), "007");
  EXPECT_EQ(ToUtf8(Format000(1234)), "1234");
  EXPECT_EQ(ToUtf8(ToDecimal(-16639)), "-16639");
  const std::string mixed = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\x8E";  // a é € 📎
  EXPECT_EQ(FromUtf8(mixed).size(), 5u);
  EXPECT_EQ(ToUtf8(FromUtf8(mixed)), mixed);
  EXPECT_EQ(ToUtf8(Trim(u"  x y  ")), "x y");
  EXPECT_TRUE(EqualsNoCase(u"vbRed", u"VBRED"));
}

TEST(CodePage, Windows1252RoundTripsAndReportsLoss) {
  Windows1252 cp;
  Bytes bytes;
  EXPECT_TRUE(cp.ToAnsi(u"caf\u00e9 \u20ac\u2122", bytes));
  EXPECT_EQ(bytes, "caf\xE9 \x80\x99");
  EXPECT_EQ(cp.FromAnsi(bytes), u"caf\u00e9 \u20ac\u2122");
  EXPECT_FALSE(cp.ToAnsi(u"\u0416x", bytes));  // Cyrillic has no 1252 byte
  EXPECT_EQ(bytes, "?x");
  std::string all;
  for (int b = 0; b < 256; ++b) all.push_back(static_cast<char>(b));
  EXPECT_TRUE(cp.ToAnsi(cp.FromAnsi(all), bytes));
  EXPECT_EQ(bytes, all);
}

}  // namespace
}  // namespace mq
