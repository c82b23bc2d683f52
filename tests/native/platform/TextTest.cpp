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

// Decimal and UTF-8 conversions are exercised by every test; the ANSI code page by the list
// files and the password key.
TEST(CodePage, Windows1252RoundTripsEveryByte) {
  Windows1252 cp;
  Bytes bytes;
  std::string all;
  for (int b = 0; b < 256; ++b) all.push_back(static_cast<char>(b));
  EXPECT_TRUE(cp.ToAnsi(cp.FromAnsi(all), bytes));
  EXPECT_EQ(bytes, all);
  EXPECT_FALSE(cp.ToAnsi(u"\u0416x", bytes));  // Cyrillic has no 1252 byte
  EXPECT_EQ(bytes, "?x");
}

}  // namespace
}  // namespace mq
