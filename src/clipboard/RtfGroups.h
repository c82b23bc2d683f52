// A cheap look at the group structure of an RTF document before the rich-text box reads it.
// Hostile clipboard content (braces that never close, groups nested thousands deep) can keep
// a rich edit control busy for a long time or exhaust its stack; such a document is better
// taken as the clipboard's plain text.
#pragma once

#include <string_view>

namespace mq {

// Deeper than any word processor writes, shallow enough for every rich edit control to read.
inline constexpr int kMaxRtfDepth = 256;

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
