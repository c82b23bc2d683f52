// An independent PNG reader for the tests: a plain inflate (stored, fixed and dynamic blocks)
// and the PNG row unfilter, written from the formats' rules rather than from the writer's code.
#pragma once

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "ui/Png.h"

namespace mq::png::reader {

class Inflater {
 public:
  explicit Inflater(std::string_view in) : in_(in) {}

  // False on any malformed input; `out` then holds what was decoded so far.
  bool Run(std::string& out) {
    for (bool last = false; !last && ok_;) {
      last = Bits(1);
      const uint32_t type = Bits(2);
      if (type == 0) {
        bit_ = (bit_ + 7) / 8 * 8;
        const uint32_t len = Bits(16), nlen = Bits(16);
        if (len != (~nlen & 0xFFFF) || bit_ / 8 + len > in_.size()) return false;
        out.append(in_.substr(bit_ / 8, len));
        bit_ += len * 8;
      } else if (type == 1) {
        std::vector<uint8_t> lit(288), dist(30, 5);
        for (int s = 0; s < 288; ++s) lit[s] = s < 144 ? 8 : s < 256 ? 9 : s < 280 ? 7 : 8;
        if (!Codes(Build(lit), Build(dist), out)) return false;
      } else if (type == 2) {
        if (!Dynamic(out)) return false;
      } else {
        return false;
      }
    }
    consumedBytes = (bit_ + 7) / 8;
    return ok_;
  }
  size_t consumedBytes = 0;

 private:
  struct Huffman {
    std::array<int, 16> count{};
    std::vector<int> symbols;
    bool valid = true;
  };

  uint32_t Bits(int n) {
    uint32_t v = 0;
    for (int i = 0; i < n; ++i, ++bit_) {
      if (bit_ / 8 >= in_.size()) {
        ok_ = false;
        return 0;
      }
      v |= ((static_cast<uint8_t>(in_[bit_ / 8]) >> (bit_ % 8)) & 1u) << i;
    }
    return v;
  }

  static Huffman Build(const std::vector<uint8_t>& lengths) {
    Huffman h;
    for (uint8_t l : lengths) ++h.count[l];
    h.count[0] = 0;
    int left = 1;  // over-subscribed codes are malformed
    for (int len = 1; len < 16; ++len) {
      left = left * 2 - h.count[len];
      if (left < 0) h.valid = false;
    }
    std::array<int, 16> offset{};
    for (int len = 1; len < 15; ++len) offset[len + 1] = offset[len] + h.count[len];
    h.symbols.resize(lengths.size());
    for (size_t s = 0; s < lengths.size(); ++s)
      if (lengths[s]) h.symbols[offset[lengths[s]]++] = static_cast<int>(s);
    return h;
  }

  int Decode(const Huffman& h) {
    int code = 0, first = 0, index = 0;
    for (int len = 1; len < 16; ++len) {
      code |= static_cast<int>(Bits(1));
      const int count = h.count[len];
      if (code - count < first) return h.symbols[index + (code - first)];
      index += count;
      first = (first + count) << 1;
      code <<= 1;
    }
    ok_ = false;
    return -1;
  }

  bool Dynamic(std::string& out) {
    static constexpr int kOrder[19] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
    const int nlit = static_cast<int>(Bits(5)) + 257, ndist = static_cast<int>(Bits(5)) + 1;
    const int ncode = static_cast<int>(Bits(4)) + 4;
    if (nlit > 286 || ndist > 30) return false;
    std::vector<uint8_t> cl(19, 0);
    for (int i = 0; i < ncode; ++i) cl[kOrder[i]] = static_cast<uint8_t>(Bits(3));
    const Huffman clCode = Build(cl);
    if (!clCode.valid) return false;
    std::vector<uint8_t> lengths;
    while (ok_ && static_cast<int>(lengths.size()) < nlit + ndist) {
      const int sym = Decode(clCode);
      if (sym < 16) {
        lengths.push_back(static_cast<uint8_t>(sym));
        continue;
      }
      if (sym == 16 && lengths.empty()) return false;
      const uint8_t value = sym == 16 ? lengths.back() : 0;
      const uint32_t repeat = sym == 16 ? 3 + Bits(2) : sym == 17 ? 3 + Bits(3) : 11 + Bits(7);
      lengths.insert(lengths.end(), repeat, value);
    }
    if (static_cast<int>(lengths.size()) != nlit + ndist || !lengths[256]) return false;
    return Codes(Build({lengths.begin(), lengths.begin() + nlit}),
                 Build({lengths.begin() + nlit, lengths.end()}), out);
  }

  bool Codes(const Huffman& lit, const Huffman& dist, std::string& out) {
    static constexpr int kLenBase[29] = {3,  4,  5,  6,  7,  8,  9,  10, 11,  13,  15,  17,  19,  23, 27,
                                         31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
    static constexpr int kLenExtra[29] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                          2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
    static constexpr int kDistBase[30] = {1,   2,   3,   4,    5,    7,    9,    13,   17,    25,
                                          33,  49,  65,  97,   129,  193,  257,  385,  513,   769,
                                          1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
    if (!lit.valid || !dist.valid) return false;
    for (;;) {
      const int sym = Decode(lit);
      if (!ok_ || sym < 0 || sym > 285) return false;
      if (sym < 256) {
        out.push_back(static_cast<char>(sym));
        continue;
      }
      if (sym == 256) return true;
      const int length = kLenBase[sym - 257] + static_cast<int>(Bits(kLenExtra[sym - 257]));
      const int d = Decode(dist);
      if (d < 0 || d > 29) return false;
      const size_t distance = kDistBase[d] + Bits(d < 4 ? 0 : (d - 2) / 2);
      if (distance > out.size() || distance > 32768) return false;
      for (int i = 0; i < length; ++i) out.push_back(out[out.size() - distance]);
    }
  }

  std::string_view in_;
  size_t bit_ = 0;
  bool ok_ = true;
};

inline uint32_t BigEndian32(const std::string& b, size_t at) {
  uint32_t v = 0;
  for (int i = 0; i < 4; ++i) v = (v << 8) | static_cast<uint8_t>(b[at + i]);
  return v;
}

// The zlib stream's contents, with its header and Adler-32 checked.
inline bool Unzlib(const std::string& z, std::string& out) {
  if (z.size() < 6 || (static_cast<uint8_t>(z[0]) & 0x0F) != 8) return false;
  if ((static_cast<uint8_t>(z[0]) * 256 + static_cast<uint8_t>(z[1])) % 31 != 0) return false;
  Inflater inflater(std::string_view(z).substr(2));
  if (!inflater.Run(out)) return false;
  if (2 + inflater.consumedBytes + 4 != z.size()) return false;
  return BigEndian32(z, z.size() - 4) == Adler32(out);
}

// Reads an 8-bit RGBA PNG back into an image, checking every chunk's CRC.
inline bool DecodePng(const std::string& png, art::Image& image) {
  if (png.compare(0, 8, "\x89PNG\r\n\x1a\n") != 0) return false;
  std::string idat;
  bool ended = false;
  for (size_t at = 8; at + 12 <= png.size() && !ended;) {
    const uint32_t length = BigEndian32(png, at);
    const std::string type = png.substr(at + 4, 4);
    if (at + 12 + length > png.size()) return false;
    if (Crc32(std::string_view(png).substr(at + 4, 4 + length)) != BigEndian32(png, at + 8 + length))
      return false;
    const std::string data = png.substr(at + 8, length);
    if (type == "IHDR") {
      if (length != 13 || data.substr(8) != std::string("\x08\x06\x00\x00\x00", 5)) return false;
      image.width = static_cast<int>(BigEndian32(data, 0));
      image.height = static_cast<int>(BigEndian32(data, 4));
    } else if (type == "IDAT") {
      idat += data;
    } else if (type == "IEND") {
      ended = at + 12 == png.size();
    }
    at += 12 + length;
  }
  std::string raw;
  if (!ended || !Unzlib(idat, raw)) return false;
  const size_t stride = static_cast<size_t>(image.width) * 4;
  if (raw.size() != (stride + 1) * image.height) return false;
  image.rgba.assign(stride * image.height, 0);
  for (int y = 0; y < image.height; ++y) {
    const int filter = raw[y * (stride + 1)];
    uint8_t* row = image.rgba.data() + y * stride;
    const uint8_t* above = y ? row - stride : nullptr;
    for (size_t i = 0; i < stride; ++i) {
      const int a = i >= 4 ? row[i - 4] : 0, b = above ? above[i] : 0;
      const int c = i >= 4 && above ? above[i - 4] : 0;
      int predicted = 0;
      if (filter == 1) predicted = a;
      if (filter == 2) predicted = b;
      if (filter == 3) predicted = (a + b) >> 1;
      if (filter == 4) {
        const int p = a + b - c;
        const int pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
        predicted = pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
      }
      if (filter > 4) return false;
      row[i] = static_cast<uint8_t>(raw[y * (stride + 1) + 1 + i] + predicted);
    }
  }
  return true;
}

}  // namespace mq::png::reader
