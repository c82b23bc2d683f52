#include "platform/ShortestDecimal.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace mq {
namespace {

std::string Reference(double value) {
  char buf[64];
  auto result = std::to_chars(buf, buf + sizeof buf, value);
  return std::string(buf, result.ptr);
}

TEST(ShortestDecimal, WritesWhatToCharsWrites) {
  const double table[] = {9, 10.5, 14, 0.1, 1.0 / 3, 100000, 1234567, 1e21, 1e22, 123e-7,
                          0.0001, 0.00001, 5e-324, std::numeric_limits<double>::max(),
                          std::numeric_limits<double>::min(), 2.5, -7.25, 1e15, 1e16, 1e17,
                          9007199254740993.0, 0.3, 2.0 / 3, 1e-5, 12345678901234567890.0};
  for (double v : table) {
    EXPECT_EQ(ShortestRoundTrip(v), Reference(v)) << v;
    EXPECT_EQ(ShortestRoundTrip(-v), Reference(-v)) << -v;
  }
  EXPECT_EQ(ShortestRoundTrip(0.0), "0");
  EXPECT_EQ(ShortestRoundTrip(-0.0), "-0");
  EXPECT_EQ(ShortestRoundTrip(std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(ShortestRoundTrip(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(ShortestRoundTrip(std::nan("")), Reference(std::nan("")));

  // Font sizes in steps of a quarter point, and doubles of every magnitude and bit pattern.
  for (int quarter = 1; quarter <= 4000; ++quarter) {
    const double v = quarter / 4.0;
    ASSERT_EQ(ShortestRoundTrip(v), Reference(v)) << v;
  }
  std::mt19937_64 rng(7);
  int checked = 0;
  for (int i = 0; i < 200000; ++i) {
    uint64_t bits = rng();
    double v;
    std::memcpy(&v, &bits, sizeof v);
    if (!std::isfinite(v)) continue;
    ASSERT_EQ(ShortestRoundTrip(v), Reference(v)) << bits;
    ++checked;
  }
  EXPECT_GT(checked, 190000);
}

}  // namespace
}  // namespace mq
