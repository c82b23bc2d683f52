#include "platform/ShortestDecimal.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace mq {

std::string ShortestRoundTrip(double value) {
  if (std::isnan(value)) return std::signbit(value) ? "-nan" : "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  if (value == 0) return std::signbit(value) ? "-0" : "0";
  // The fewest significant digits that read back exactly; 17 always do.
  char buf[48];
  for (int digits = 1; digits <= 17; ++digits) {
    std::snprintf(buf, sizeof buf, "%.*e", digits - 1, value);
    if (std::strtod(buf, nullptr) == value) break;
  }
  std::string_view text(buf);  // [-]d[.ddd]e(+|-)xx
  const bool negative = text.front() == '-';
  if (negative) text.remove_prefix(1);
  const size_t e = text.find('e');
  std::string digits;
  for (char c : text.substr(0, e))
    if (c != '.') digits += c;
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
  const int exponent = std::atoi(std::string(text.substr(e + 1)).c_str());
  const int n = static_cast<int>(digits.size());

  std::string scientific = digits.substr(0, 1);
  if (n > 1) scientific.append(".").append(digits, 1);
  scientific += exponent < 0 ? "e-" : "e+";
  if (std::abs(exponent) < 10) scientific += '0';
  scientific += std::to_string(std::abs(exponent));

  std::string fixed;
  if (exponent < 0)
    fixed.append("0.").append(static_cast<size_t>(-exponent - 1), '0').append(digits);
  else if (n <= exponent + 1)
    // A whole number is written with its exact digits, as printf's %f would (same length).
    fixed = (std::snprintf(buf, sizeof buf, "%.0f", std::fabs(value)) < static_cast<int>(sizeof buf))
                ? std::string(buf)
                : digits + std::string(static_cast<size_t>(exponent + 1 - n), '0');
  else
    fixed.append(digits, 0, static_cast<size_t>(exponent) + 1)
        .append(".")
        .append(digits, static_cast<size_t>(exponent) + 1);
  std::string out = negative ? "-" : "";
  return out.append(fixed.size() <= scientific.size() ? fixed : scientific);
}

}  // namespace mq
