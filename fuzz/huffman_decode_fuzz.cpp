// The Huffman decoder on arbitrary bytes: it must never crash or hang, must accept exactly
// what the literal tree walk accepts with the same result, also when read in steps, and
// whatever it decodes (and the raw input itself) must survive an encode/decode round trip.
#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "../tests/native/listfiles/ReferenceHuffman.h"
#include "listfiles/clsHuffman.h"

// Undefined behaviour counts as a finding, not a note in the log.
extern "C" const char* __ubsan_default_options() { return "halt_on_error=1:print_stacktrace=1"; }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  mq::Bytes fast, slow;
  const bool fastOk = mq::clsHuffman::Decode(input, fast);
  const bool slowOk = mq::test::ReferenceDecode(input, slow);
  if (fastOk != slowOk || fast != slow) std::abort();

  // In steps whose size the input picks: the same bytes and the same verdict.
  mq::clsHuffman::Reader reader;
  if (reader.Open(input)) {
    const size_t step = 1 + size % 61;
    mq::Bytes stepped;
    bool read = true;
    while (read && reader.Left() > 0) {
      const size_t n = std::min(step, reader.Left()), at = stepped.size();
      stepped.resize(at + n);
      read = reader.Read(stepped.data() + at, n);
    }
    if ((read && reader.Finish()) != fastOk || (fastOk && stepped != fast)) std::abort();
  } else if (fastOk) {
    std::abort();
  }

  mq::Bytes again;
  if (fastOk && (!mq::clsHuffman::Decode(mq::clsHuffman::Encode(fast), again) || again != fast))
    std::abort();
  if (!mq::clsHuffman::Decode(mq::clsHuffman::Encode(input), again) || again != input)
    std::abort();
  return 0;
}
