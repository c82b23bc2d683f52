// Static Huffman compression into the self-describing container that list files are made
// of: "M2L" CR for coded data, "M2U" CR for data stored unchanged. The encoder's tie-breaks
// are part of the format, so the same input always gives the same bytes.
#pragma once

#include <functional>
#include <string_view>

#include "platform/Text.h"

namespace mq {

class clsHuffman {
 public:
  // A crafted table may build at most this many tree nodes (256 leaves + 255 inner nodes).
  static constexpr int kMaxNodes = 511;

  // Takes each piece of the input in order.
  using Put = std::function<void(std::string_view)>;
  // Hands the input over piece by piece. It is called twice or three times (counting, coding,
  // and copying when the data is stored) and must give the same bytes every time: the
  // input is never gathered into one buffer.
  using Pieces = std::function<void(const Put&)>;

  // The container of input; never fails.
  static Bytes Encode(std::string_view input);
  static Bytes Encode(const Pieces& pieces);
  // True with out holding the decoded data when container is a valid "M2U" or "M2L"
  // container whose checksum matches; false (out untouched) for anything else.
  static bool Decode(std::string_view container, Bytes& out);

  // In-place forms: bytes is replaced by its container / by its decoded data.
  static void EncodeByte(Bytes& bytes) { bytes = Encode(bytes); }
  static bool DecodeByte(Bytes& bytes) { return Decode(bytes, bytes); }
};

}  // namespace mq
