#include "clipboard/CaseOps.h"

namespace mq {

namespace {
bool StartsWord(char16_t previous) {
  switch (previous) {
    case 0: case 9: case 10: case 11: case 12: case 13: case 32:
      return true;
    default:
      return false;
  }
}

bool IsHighSurrogate(char16_t c) { return c >= 0xD800 && c < 0xDC00; }

Text Standardize(TextView text, const CaseMapper& cases) {
  Text out = cases.Lower(text);
  if (out.size() != text.size()) return out;  // a mapping that changed the length: keep it
  for (size_t i = 0; i < out.size(); ++i) {
    if (i != 0 && !StartsWord(text[i - 1])) continue;
    size_t len = IsHighSurrogate(out[i]) && i + 1 < out.size() ? 2 : 1;
    Text upper = cases.Upper(TextView(out).substr(i, len));
    if (upper.size() == len) out.replace(i, len, upper);
  }
  return out;
}
}  // namespace

Text ApplyCaseOp(int16_t code, TextView text, const CaseMapper& cases) {
  switch (code) {
    case kCaseStandardize:
      return Standardize(text, cases);
    case kCaseUpper:
      return cases.Upper(text);
    case kCaseLower:
      return cases.Lower(text);
    default:
      return Text(text);
  }
}

bool RichCaseChange(RichTextBox& box, int16_t code, const CaseMapper& cases, Bytes& rtf,
                    Text* plainOut) {
  if (!box.LoadRtf(rtf)) return false;
  Text plain = box.PlainText();
  Text changed = ApplyCaseOp(code, plain, cases);
  // Unchanged text keeps the document exactly as it came, formatting and all, and saves
  // writing it out again.
  if (changed != plain) {
    box.SetPlainText(changed);
    rtf = box.Rtf();
  }
  if (plainOut) *plainOut = std::move(changed);
  return true;
}

}  // namespace mq
