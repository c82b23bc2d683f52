#include "platform/ShortestDecimal.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>

namespace mq {
namespace {

std::string Reference(double value) {
  char buf[64];
  auto result = std::to_chars(buf, buf + sizeof buf, value);
  return std::string(buf, result.ptr);
}

// The sidebar caption's font sizes: the fewest digits that read back exactly, as to_chars
// writes them, whatever the magnitude.
TEST(ShortestDecimal, WritesWhatToCharsWrites) {
  const double table[] = {0, 9, 10.5, 14, 0.1, 1.0 / 3, 100000, 1234567, 1e21, 1e22, 123e-7,
                          0.0001, 0.00001, 5e-324, std::numeric_limits<double>::max(),
                          std::numeric_limits<double>::min(), 2.5, -7.25, 1e15, 1e16, 1e17,
                          9007199254740993.0, 0.3, 2.0 / 3, 1e-5, 12345678901234567890.0,
                          std::numeric_limits<double>::infinity(), std::nan("")};
  for (double v : table) {
    EXPECT_EQ(ShortestRoundTrip(v), Reference(v)) << v;
    EXPECT_EQ(ShortestRoundTrip(-v), Reference(-v)) << -v;
  }
  for (int quarter = 1; quarter <= 4000; ++quarter) {  // every size in quarter points
    const double v = quarter / 4.0;
    ASSERT_EQ(ShortestRoundTrip(v), Reference(v)) << v;
  }
}

}  // namespace
}  // namespace mq
