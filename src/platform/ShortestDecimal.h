// The shortest decimal text that reads back as the same double.
#pragma once

#include <string>

namespace mq {

// In fixed or exponent notation, whichever is shorter (fixed on a tie), as std::to_chars
// writes a double without a format; written here because the runtime's version brings 170 KB
// of tables into the program for the two font sizes that need it.
std::string ShortestRoundTrip(double value);

}  // namespace mq
