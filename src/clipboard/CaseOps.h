// Letter-case operations applied to text on its way in.
#pragma once

#include <cstdint>

#include "platform/Ports.h"
#include "platform/RichTextBox.h"
#include "platform/Text.h"

namespace mq {

// CaseOp codes.
constexpr int16_t kCaseNone = 0, kCaseStandardize = 1, kCaseUpper = 2, kCaseLower = 3;

// 0 unchanged, 1 proper case (a word starts only after NUL, TAB, LF, VT, FF, CR or space),
// 2 upper case, 3 lower case; letters beyond ASCII follow the mapper's locale.
Text ApplyCaseOp(int16_t code, TextView text, const CaseMapper& cases);

// The rich-text case change through the rich-text box: load, take the plain text, write its
// case-changed form back over the whole content, read the rich text. When the case operation
// leaves the text as it is, the document is kept exactly as it came, so its formatting survives.
// Returns false (and leaves rtf alone) when the box cannot load the document.
bool RichCaseChange(RichTextBox& box, int16_t code, const CaseMapper& cases, Bytes& rtf,
                    Text* plainOut = nullptr);

}  // namespace mq
