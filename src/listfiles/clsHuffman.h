// Static Huffman compression into the self-describing container that list files are made
// of: "M2L" CR for coded data, "M2U" CR for data stored unchanged. The encoder's tie-breaks
// are part of the format, so the same input always gives the same bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
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

  // Decodes a container in order, as many bytes at a time as the caller asks for, so that
  // its data need never be held whole: Open, Read until Left() is 0 or the caller needs no
  // more, then Finish. The container must outlive the reader.
  class Reader {
   public:
    Reader();
    ~Reader();
    // False for anything but a "M2U" container or a "M2L" one with a valid code table and
    // a length its data can hold.
    bool Open(std::string_view container);
    // Decoded bytes not read yet.
    size_t Left() const { return left_; }
    // The next n decoded bytes into out; false when n exceeds Left() or the data is damaged
    // (the reader is then of no further use).
    bool Read(char* out, size_t n);
    // Decodes what was not read and checks the checksum: true only when the whole container
    // is valid, which is what Decode requires.
    bool Finish();

   private:
    struct Coded;  // code tree and lookup tables; none for stored data
    std::unique_ptr<Coded> coded_;
    std::string_view data_;  // after the marks and the code table
    uint64_t pos_ = 0;       // bits read (bytes for stored data)
    size_t left_ = 0;
    uint8_t xor_ = 0;        // of the bytes decoded so far
  };

  // In-place forms: bytes is replaced by its container / by its decoded data.
  static void EncodeByte(Bytes& bytes) { bytes = Encode(bytes); }
  static bool DecodeByte(Bytes& bytes) { return Decode(bytes, bytes); }
};

}  // namespace mq
