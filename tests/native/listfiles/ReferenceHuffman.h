// A plain bit-by-bit tree decoder of the Huffman container that follows the format's steps
// literally: the table-driven decoder must agree with it on every input.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mq::test {

// Builds the tree from the codes and walks it bit by bit. Refuses what the program must
// refuse (prefix violations, missing children, more than 511 nodes, short data, wrong
// checksum, anything past the end).
inline bool ReferenceDecode(std::string_view c, std::string& out) {
  auto byte = [&](size_t i) { return static_cast<uint8_t>(c[i]); };
  if (c.size() < 4 || c[0] != 'M' || c[1] != '2' || c[3] != '\r') return false;
  if (c[2] == 'U') { out = std::string(c.substr(4)); return true; }
  if (c[2] != 'L' || c.size() < 11) return false;
  int32_t length = static_cast<int32_t>(byte(5) | byte(6) << 8 | byte(7) << 16 |
                                        static_cast<uint32_t>(byte(8)) << 24);
  int16_t used = static_cast<int16_t>(byte(9) | byte(10) << 8);
  if (length <= 0 || used < 1 || used > 256) return false;
  size_t pos = 11;
  if (c.size() < pos + 2 * size_t(used)) return false;
  std::vector<std::pair<int, int>> table;
  size_t codeBits = 0;
  for (int k = 0; k < used; ++k, pos += 2) {
    if (byte(pos + 1) == 0) return false;
    if (k > 0 && byte(pos) <= table.back().first) return false;
    table.push_back({byte(pos), byte(pos + 1)});
    codeBits += byte(pos + 1);
  }
  if (c.size() < pos + (codeBits + 7) / 8) return false;
  std::vector<int> left{-1}, right{-1}, value{-1};
  size_t bit = pos * 8;
  auto readBit = [&](size_t b) { return (byte(b / 8) >> (b % 8)) & 1; };
  for (auto [v, len] : table) {
    int node = 0;
    for (int s = 0; s < len; ++s) {
      if (value[node] >= 0) return false;
      std::vector<int>& side = readBit(bit++) ? right : left;
      if (side[node] < 0) {
        if (value.size() == 511) return false;
        side[node] = static_cast<int>(value.size());
        left.push_back(-1); right.push_back(-1); value.push_back(-1);
      }
      node = side[node];
    }
    if (value[node] >= 0 || left[node] >= 0 || right[node] >= 0) return false;
    value[node] = v;
  }
  bit = (pos + (codeBits + 7) / 8) * 8;
  const size_t totalBits = c.size() * 8;
  std::string result;
  int node = 0;
  uint8_t x = 0;
  while (result.size() < static_cast<size_t>(length)) {
    if (bit >= totalBits) return false;
    node = readBit(bit++) ? right[node] : left[node];
    if (node < 0) return false;
    if (value[node] >= 0) {
      result.push_back(static_cast<char>(value[node]));
      x ^= static_cast<uint8_t>(value[node]);
      node = 0;
    }
  }
  if (x != byte(4)) return false;
  out = result;
  return true;
}

}  // namespace mq::test
