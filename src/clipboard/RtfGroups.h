// A cheap look at the group structure of an RTF document before the rich-text box reads it.
// Wine: its rich edit control reads past its group stack and crashes the program on a
// document nested more than 32 groups deep (1 MB of "{" does it, as does a 33-deep one), and
// it loads a \bin that runs past the end as an empty document. Such content is better taken
// as the clipboard's plain text.
#pragma once

#include <string_view>

namespace mq {

// The deepest nesting (the outer group counts as 1) every rich edit control reads; word
// processors stay far below it.
inline constexpr int kMaxRtfDepth = 32;

enum class RtfGroups {
  Readable,    // starts with "{\rtf", its outer group closes, never deeper than the limit
  NotRtf,      // does not start with "{\rtf" (after white space)
  Unbalanced,  // ends inside a group, or a \bin runs past the end
  TooDeep,     // a group nested deeper than the limit
};

// One pass over the bytes. Escaped braces (\{ \}) and the data of \binN are not structure.
// Whatever follows the outer group's closing brace is ignored, as the controls do.
RtfGroups CheckRtfGroups(std::string_view rtf, int maxDepth = kMaxRtfDepth);

}  // namespace mq
