// The look at an RTF document's groups before the rich-text box is given it.
#include <gtest/gtest.h>

#include <string>

#include "clipboard/RtfGroups.h"

namespace mq {
namespace {

std::string Nested(int depth) {
  return "{\\rtf1 " + std::string(depth - 1, '{') + "x" + std::string(depth, '}');
}

TEST(RtfGroups, ReadableDocumentsPass) {
  const struct {
    const char* rtf;
    const char* why;
  } cases[] = {
      {"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 Hello\\par}", "an ordinary document"},
      {"\r\n {\\rtf1 x}", "white space before it"},
      {"{\\rtf1 x}\r\n}}garbage{{{", "anything after the outer group"},
      {"{\\rtf1 a \\{ b \\} c \\\\}", "escaped braces and backslash"},
      {"{\\rtf1 \\'7b\\'7d}", "hex escapes of braces"},
      {"{\\rtf1 {\\pict\\bin3 {{{}}", "\\bin data holding braces"},
      {"{\\rtf1 {\\pict\\bin0 }}", "empty \\bin"},
      {"{\\rtf1 {\\pict\\bin-3 }}", "negative \\bin skips nothing"},
      {"{\\rtf1 \\fs24{}}", "a word right before a brace"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CheckRtfGroups(c.rtf), RtfGroups::Readable) << c.why;
  }
  EXPECT_EQ(CheckRtfGroups(Nested(kMaxRtfDepth)), RtfGroups::Readable);
}

TEST(RtfGroups, HostileDocumentsAreRefused) {
  const struct {
    std::string rtf;
    RtfGroups expected;
    const char* why;
  } cases[] = {
      {"", RtfGroups::NotRtf, "empty"},
      {"hello {\\rtf1 x}", RtfGroups::NotRtf, "text before it"},
      {"{\\rt", RtfGroups::NotRtf, "cut inside the mark"},
      {"{\\RTF1 x}", RtfGroups::NotRtf, "the mark in capitals"},
      {"{ \\rtf1 x}", RtfGroups::NotRtf, "a space inside the mark"},
      {"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 Hel", RtfGroups::Unbalanced, "truncated"},
      {"{\\rtf1 x\\}", RtfGroups::Unbalanced, "its last brace escaped"},
      {"{\\rtf1 x\\", RtfGroups::Unbalanced, "ends in a backslash"},
      {"{\\rtf1 {\\pict\\bin10 }}", RtfGroups::Unbalanced, "\\bin past the end"},
      {"{\\rtf1 \\bin99999999999999999999 }", RtfGroups::Unbalanced, "\\bin of a huge count"},
      {"{\\rtf1 {\\pict\\bin2 }}}", RtfGroups::Unbalanced, "\\bin swallowing the closers"},
      {Nested(kMaxRtfDepth + 1), RtfGroups::TooDeep, "one group too deep"},
      {"{\\rtf1 " + std::string(10'000'000, '{'), RtfGroups::TooDeep, "10 MB of opening braces"},
      {"{\\rtf1 " + std::string(20, '{') + std::string(10'000'000, '\\'), RtfGroups::Unbalanced,
       "10 MB of backslashes"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CheckRtfGroups(c.rtf), c.expected) << c.why;
  }
  // 10 MB of balanced braces within the limit is a readable (if empty) document.
  std::string braces = "{\\rtf1 ";
  while (braces.size() < 10'000'000) braces += std::string(20, '{') + std::string(20, '}');
  braces += "}";
  EXPECT_EQ(CheckRtfGroups(braces), RtfGroups::Readable);
}

}  // namespace
}  // namespace mq
