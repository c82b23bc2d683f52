// The look at an RTF document's groups before the rich-text box is given it.
#include <gtest/gtest.h>

#include <string>

#include "clipboard/RtfGroups.h"

namespace mq {
namespace {

std::string Nested(int depth) {
  return "{\\rtf1 " + std::string(depth - 1, '{') + "x" + std::string(depth, '}');
}

TEST(RtfGroups, ReadableDocumentsPassAndHostileOnesAreRefused) {
  using enum RtfGroups;
  std::string braces = "{\\rtf1 ";
  while (braces.size() < 10'000'000) braces += std::string(20, '{') + std::string(20, '}');
  const struct {
    std::string rtf;
    RtfGroups expected;
    const char* why;
  } cases[] = {
      {"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 Hello\\par}", Readable, "an ordinary document"},
      {"\r\n {\\rtf1 x}", Readable, "white space before it"},
      {"{\\rtf1 x}\r\n}}garbage{{{", Readable, "anything after the outer group"},
      {"{\\rtf1 a \\{ b \\} c \\\\}", Readable, "escaped braces and backslash"},
      {"{\\rtf1 \\'7b\\'7d}", Readable, "hex escapes of braces"},
      {"{\\rtf1 {\\pict\\bin3 {{{}}", Readable, "\\bin data holding braces"},
      {"{\\rtf1 {\\pict\\bin0 }}", Readable, "empty \\bin"},
      {"{\\rtf1 {\\pict\\bin-3 }}", Readable, "negative \\bin skips nothing"},
      {"{\\rtf1 \\fs24{}}", Readable, "a word right before a brace"},
      {Nested(kMaxRtfDepth), Readable, "as deep as allowed"},
      {braces + "}", Readable, "10 MB of balanced braces within the limit"},
      {"", NotRtf, "empty"},
      {"hello {\\rtf1 x}", NotRtf, "text before it"},
      {"{\\rt", NotRtf, "cut inside the mark"},
      {"{\\RTF1 x}", NotRtf, "the mark in capitals"},
      {"{ \\rtf1 x}", NotRtf, "a space inside the mark"},
      {"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 Hel", Unbalanced, "truncated"},
      {"{\\rtf1 x\\}", Unbalanced, "its last brace escaped"},
      {"{\\rtf1 x\\", Unbalanced, "ends in a backslash"},
      {"{\\rtf1 {\\pict\\bin10 }}", Unbalanced, "\\bin past the end"},
      {"{\\rtf1 \\bin99999999999999999999 }", Unbalanced, "\\bin of a huge count"},
      {"{\\rtf1 {\\pict\\bin2 }}}", Unbalanced, "\\bin swallowing the closers"},
      {Nested(kMaxRtfDepth + 1), TooDeep, "one group too deep"},
      {"{\\rtf1 " + std::string(10'000'000, '{'), TooDeep, "10 MB of opening braces"},
      {"{\\rtf1 " + std::string(20, '{') + std::string(10'000'000, '\\'), Unbalanced,
       "10 MB of backslashes"},
  };
  for (const auto& c : cases) EXPECT_EQ(CheckRtfGroups(c.rtf), c.expected) << c.why;
}

}  // namespace
}  // namespace mq
