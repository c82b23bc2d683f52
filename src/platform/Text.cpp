#include "platform/Text.h"

#include <cmath>

namespace mq {

Text FromUtf8(std::string_view s) {
  Text out;
  out.reserve(s.size());
  for (size_t i = 0; i < s.size();) {
    auto b = static_cast<unsigned char>(s[i]);
    char32_t cp = 0xFFFD;
    size_t len = 1;
    if (b < 0x80) {
      cp = b;
    } else if ((b >> 5) == 0x6 && i + 1 < s.size()) {
      cp = ((b & 0x1F) << 6) | (s[i + 1] & 0x3F);
      len = 2;
    } else if ((b >> 4) == 0xE && i + 2 < s.size()) {
      cp = ((b & 0x0F) << 12) | ((s[i + 1] & 0x3F) << 6) | (s[i + 2] & 0x3F);
      len = 3;
    } else if ((b >> 3) == 0x1E && i + 3 < s.size()) {
      cp = ((b & 0x07) << 18) | ((s[i + 1] & 0x3F) << 12) | ((s[i + 2] & 0x3F) << 6) |
           (s[i + 3] & 0x3F);
      len = 4;
    }
    i += len;
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(cp));
    }
  }
  return out;
}

std::string ToUtf8(TextView t) {
  std::string out;
  out.reserve(t.size());
  for (size_t i = 0; i < t.size(); ++i) {
    char32_t cp = t[i];
    if (cp >= 0xD800 && cp < 0xDC00 && i + 1 < t.size() && t[i + 1] >= 0xDC00 &&
        t[i + 1] < 0xE000) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (t[i + 1] - 0xDC00);
      ++i;
    }
    if (cp < 0x80) {
      out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
  }
  return out;
}

Text Widen(std::string_view bytes) {
  Text out(bytes.size(), u'\0');
  for (size_t i = 0; i < bytes.size(); ++i) out[i] = static_cast<unsigned char>(bytes[i]);
  return out;
}

Bytes Narrow(TextView text) {
  Bytes out(text.size(), '\0');
  for (size_t i = 0; i < text.size(); ++i) out[i] = static_cast<char>(text[i] & 0xFF);
  return out;
}

bool Contains(TextView haystack, TextView needle) {
  return haystack.find(needle) != TextView::npos;
}

bool StartsWith(TextView text, TextView prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

Text Trim(TextView text) {
  size_t b = 0, e = text.size();
  while (b < e && text[b] == u' ') ++b;
  while (e > b && text[e - 1] == u' ') --e;
  return Text(text.substr(b, e - b));
}

static char16_t UpperAscii(char16_t c) { return (c >= u'a' && c <= u'z') ? c - 32 : c; }

bool EqualsNoCase(TextView a, TextView b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (UpperAscii(a[i]) != UpperAscii(b[i])) return false;
  return true;
}

Text ToUpperAscii(TextView text) {
  Text out(text);
  for (auto& c : out) c = UpperAscii(c);
  return out;
}

static bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

bool IsNumeric(TextView text) {
  size_t i = 0, n = text.size();
  while (i < n && text[i] == u' ') ++i;
  if (i < n && (text[i] == u'+' || text[i] == u'-')) ++i;
  bool digits = false, point = false;
  for (; i < n; ++i) {
    if (IsDigit(text[i])) {
      digits = true;
    } else if (text[i] == u'.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  while (i < n && text[i] == u' ') ++i;
  return digits && i == n;
}

double LeadingNumber(TextView text) {
  size_t i = 0, n = text.size();
  while (i < n && text[i] == u' ') ++i;
  double sign = 1;
  if (i < n && (text[i] == u'+' || text[i] == u'-')) sign = text[i++] == u'-' ? -1 : 1;
  double value = 0, scale = 0;
  for (; i < n; ++i) {
    if (IsDigit(text[i])) {
      if (scale == 0) {
        value = value * 10 + (text[i] - u'0');
      } else {
        value += (text[i] - u'0') * scale;
        scale /= 10;
      }
    } else if (text[i] == u'.' && scale == 0) {
      scale = 0.1;
    } else {
      break;
    }
  }
  return sign * value;
}

long long RoundHalfAway(double value) {
  return static_cast<long long>(value < 0 ? std::ceil(value - 0.5) : std::floor(value + 0.5));
}

Text ToDecimal(long long value) {
  auto s = std::to_string(value);
  return Text(s.begin(), s.end());
}

Text Format000(long long value) {
  Text digits = ToDecimal(value < 0 ? -value : value);
  while (digits.size() < 3) digits.insert(digits.begin(), u'0');
  return value < 0 ? u"-" + digits : digits;
}

}  // namespace mq
