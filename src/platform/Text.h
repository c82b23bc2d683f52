// Text inside the program is UTF-16 on every platform, so the core behaves the same
// in the native build (where wchar_t is 32-bit) and in marquill.exe.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace mq {

using Text = std::u16string;
using TextView = std::u16string_view;
using Bytes = std::string;  // raw bytes (file data, RTF, ANSI text)

Text FromUtf8(std::string_view utf8);
std::string ToUtf8(TextView text);

// Byte <-> UTF-16 unit one to one. RTF is 7-bit ASCII with escapes, so it can live in a Text.
Text Widen(std::string_view bytes);
Bytes Narrow(TextView text);

bool Contains(TextView haystack, TextView needle);
bool StartsWith(TextView text, TextView prefix);
Text Trim(TextView text);                 // spaces only, as the settings and captions need
bool EqualsNoCase(TextView a, TextView b);  // ASCII letters only
Text ToUpperAscii(TextView text);

// "Numeric": optional spaces around, an optional sign, decimal digits with at most one
// decimal point; no hex, no exponent.
bool IsNumeric(TextView text);
// Leading-number parse: leading spaces skipped, optional sign, digits with at most one
// decimal point, stops at the first other character; nothing readable gives 0.
double LeadingNumber(TextView text);
// Rounds half away from zero.
long long RoundHalfAway(double value);

Text ToDecimal(long long value);
// At least three digits, zero-padded ("000" format).
Text Format000(long long value);

}  // namespace mq
