// The look at an RTF document's groups on arbitrary bytes: it must never crash or read past
// the end, and its verdict must be consistent: a readable document stays readable under a
// higher limit and with anything appended after it, and a limit only ever turns a verdict
// into TooDeep.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "clipboard/RtfGroups.h"

// Undefined behaviour counts as a finding, not a note in the log.
extern "C" const char* __ubsan_default_options() { return "halt_on_error=1:print_stacktrace=1"; }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const int limit = 1 + data[0] % 16;
  const std::string rtf(reinterpret_cast<const char*>(data + 1), size - 1);
  using mq::RtfGroups;

  const RtfGroups low = mq::CheckRtfGroups(rtf, limit);
  const RtfGroups high = mq::CheckRtfGroups(rtf, limit + 1);
  const RtfGroups unlimited = mq::CheckRtfGroups(rtf, 1 << 30);
  if (low != high && low != RtfGroups::TooDeep) std::abort();
  if (low != RtfGroups::TooDeep && low != unlimited) std::abort();
  if (unlimited == RtfGroups::TooDeep) std::abort();
  if (low == RtfGroups::Readable && mq::CheckRtfGroups(rtf + "}{\\bin9", limit) != low)
    std::abort();
  return 0;
}
