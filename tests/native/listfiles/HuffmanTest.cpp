#include "listfiles/clsHuffman.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace mq {
namespace {

Bytes Hex(std::initializer_list<int> bytes) {
  Bytes out;
  for (int b : bytes) out.push_back(static_cast<char>(b));
  return out;
}
// The low size bytes of value, least significant first.
Bytes Le(uint32_t value, int size) {
  Bytes out;
  for (int k = 0; k < size; ++k) out.push_back(static_cast<char>(value >> (8 * k)));
  return out;
}

using Codes = std::vector<std::pair<int, std::string>>;  // value, code ("0110": root bit first)

// An "M2L" container with these codes in table order, holding these values; dataBits, when
// given, replaces their coded bits.
Bytes Craft(const Codes& codes, const std::vector<int>& values, std::string dataBits = "") {
  auto pack = [](const std::string& bits) {
    Bytes bytes((bits.size() + 7) / 8, '\0');
    for (size_t i = 0; i < bits.size(); ++i)
      bytes[i / 8] |= static_cast<char>((bits[i] - '0') << (i % 8));
    return bytes;
  };
  uint8_t checksum = 0;
  Bytes table, codeBits;
  for (const auto& [value, code] : codes) {
    table += {static_cast<char>(value), static_cast<char>(code.size())};
    codeBits += code;
  }
  for (int v : values) checksum ^= static_cast<uint8_t>(v);
  if (dataBits.empty())
    for (int v : values)
      for (const auto& [value, code] : codes)
        if (value == v) dataBits += code;
  return "M2L\r" + Bytes(1, static_cast<char>(checksum)) + Le(uint32_t(values.size()), 4) +
         Le(uint32_t(codes.size()), 2) + table + pack(codeBits) + pack(dataBits);
}
Bytes Patched(Bytes container, size_t at, const Bytes& with) {
  return container.replace(at, with.size(), with);
}

TEST(Huffman, GoldenContainersAndTieBreaks) {
  Bytes as(1000, 'A'), spaces(64, ' ');
  spaces.append(12, '\0');  // the empty resource file
  const std::pair<Bytes, Bytes> cases[] = {
      {"", "M2U\r"},
      {as, "M2U\r" + as},  // one used value has an empty code: stored unchanged
      // Two leaves: A left (code 0), B right (code 1).
      {"AB", Hex({'M', '2', 'L', 13, 0x03, 2, 0, 0, 0, 2, 0, 0x41, 1, 0x42, 1, 0x02, 0x02})},
      {spaces, Hex({'M', '2', 'L', 13, 0x00, 76, 0, 0, 0, 2, 0, 0x00, 1, 0x20, 1, 0x02}) +
                   Bytes(8, '\xFF') + Bytes(2, '\0')},
      // Equal counts: the first two parentless nodes in index order are combined first.
      {"ABCD", Hex({'M', '2', 'L', 13, 0x04, 4, 0, 0, 0, 4, 0, 0x41, 2, 0x42, 2, 0x43, 2, 0x44, 2,
                    0xD8, 0xD8})},
      // Weights 5, 3, 1: the new minimum replaces candidate a (the larger), so C becomes the
      // left child: A = 0, B = 11, C = 10.
      {"AAAAABBBC", Hex({'M', '2', 'L', 13, 0x40, 9, 0, 0, 0, 3, 0, 0x41, 1, 0x42, 2, 0x43, 2,
                         0x0E, 0xE0, 0x0F})},
  };
  for (const auto& [input, container] : cases)
    EXPECT_EQ(clsHuffman::Encode(input), container) << input;
}

// Coding from pieces gives the bytes of coding them joined, wherever the cuts fall: within
// a code, at byte borders, empty pieces; coded, stored and single-value inputs alike.
TEST(Huffman, PiecesCodeLikeTheWhole) {
  Bytes skewed, all;
  for (int v = 0; v < 40; ++v) skewed.append(static_cast<size_t>(1) << (v % 16), char('a' + v));
  for (int v = 0; v < 256; ++v) all.push_back(static_cast<char>(v));  // stored: no gain
  const Bytes inputs[] = {"", "x", "xxxxxxxx", "AAAAABBBC", "the quick brown fox jumps over",
                          skewed, all};
  for (const Bytes& input : inputs) {
    const Bytes whole = clsHuffman::Encode(input);
    for (size_t step : {size_t{1}, size_t{3}, size_t{8}, size_t{1000}}) {
      int calls = 0;
      const Bytes pieces = clsHuffman::Encode([&](const clsHuffman::Put& put) {
        ++calls;
        put({});
        for (size_t at = 0; at < input.size(); at += step)
          put(std::string_view(input).substr(at, step));
      });
      EXPECT_EQ(pieces, whole) << input.size() << " in pieces of " << step;
      EXPECT_LE(calls, 3);
    }
  }
}

// Round trips of arbitrary data are the fuzzer's; here the deepest trees and every value.
TEST(Huffman, LongCodesAndEveryByteValue) {
  // Fibonacci counts give the deepest tree for their total: codes well past the lookup
  // table's width.
  Bytes data;
  uint32_t a = 1, b = 1;
  for (int v = 0; v < 26; ++v) {
    data.append(a, static_cast<char>('a' + v));
    uint32_t next = a + b;
    a = b;
    b = next;
  }
  std::shuffle(data.begin(), data.end(), std::mt19937(7));
  Bytes all;  // 256 values: the value count needs both of its bytes
  for (int v = 0; v < 256; ++v) all.append(static_cast<size_t>(v + 1), static_cast<char>(v));
  for (const Bytes& input : {data, all}) {
    const Bytes container = clsHuffman::Encode(input);
    Bytes decoded;
    ASSERT_TRUE(clsHuffman::Decode(container, decoded));
    EXPECT_EQ(decoded, input);
  }
  int longest = 0;
  const Bytes container = clsHuffman::Encode(data);
  for (size_t k = 0; k < 26; ++k) longest = std::max(longest, int(uint8_t(container[12 + 2 * k])));
  EXPECT_GE(longest, 24);

  // Crafted: a comb of codes 1..255 bits long, 256 values and exactly 511 nodes.
  Codes comb;
  for (int v = 0; v < 255; ++v) comb.push_back({v, std::string(v, '1') + "0"});
  comb.push_back({255, std::string(255, '1')});
  std::vector<int> values = {255, 0, 254, 128, 1, 255, 3, 200, 0, 0, 17};
  for (int k = 0; k < 300; ++k) values.push_back((k * 37) % 256);
  Bytes decoded;
  ASSERT_TRUE(clsHuffman::Decode(Craft(comb, values), decoded));
  EXPECT_EQ(decoded, Bytes(values.begin(), values.end()));
}

// Decoding in steps of any size gives what decoding at once gives, and refuses what it
// refuses, also when the caller stops early and Finish decodes the rest.
TEST(Huffman, ReadsInAnySteps) {
  Bytes prose, fib;
  std::mt19937 rng(3);
  const char* words[] = {"the ", "list ", "of ", "clips ", "Quietly, ", "\r\n", "zebra "};
  while (prose.size() < 70000) prose += words[std::min<size_t>(rng() % 9, 6)];
  uint32_t a = 1, b = 1;
  for (int v = 0; v < 20; ++v) {  // long codes, many past the lookup table
    fib.append(a, static_cast<char>('a' + v));
    b += a;
    a = b - a;
  }
  std::shuffle(fib.begin(), fib.end(), rng);
  const Bytes proseCoded = clsHuffman::Encode(prose);
  const Bytes containers[] = {
      proseCoded,
      clsHuffman::Encode(fib),
      clsHuffman::Encode("stored"),
      Patched(proseCoded, 4, Bytes(1, static_cast<char>(proseCoded[4] ^ 1))),  // checksum
      proseCoded.substr(0, proseCoded.size() - 3),  // data cut short
  };
  for (const Bytes& container : containers) {
    Bytes whole;
    const bool ok = clsHuffman::Decode(container, whole);
    for (size_t step : {size_t{1}, size_t{5}, size_t{17}, size_t{4096}, size_t{1} << 20}) {
      for (bool stopEarly : {false, true}) {
        clsHuffman::Reader reader;
        ASSERT_TRUE(reader.Open(container));
        Bytes out;
        bool read = true;
        while (read && reader.Left() > (stopEarly ? 1000 : 0)) {
          const size_t n = std::min(step, reader.Left());
          const size_t at = out.size();
          out.resize(at + n);
          read = reader.Read(out.data() + at, n);
        }
        const bool stepped = read && reader.Finish();
        EXPECT_EQ(stepped, ok) << container.size() << " in steps of " << step;
        if (ok) EXPECT_EQ(out, whole.substr(0, out.size())) << step;
        if (ok && !stopEarly) EXPECT_EQ(out.size(), whole.size()) << step;
      }
    }
  }
}

TEST(Huffman, RefusesDamagedContainers) {
  const Bytes good = Craft({{'A', "0"}, {'B', "10"}, {'C', "11"}}, {'A', 'B', 'C', 'A'});
  Bytes out = "untouched";
  ASSERT_TRUE(clsHuffman::Decode(good, out));
  EXPECT_EQ(out, "ABCA");

  // A long code (past the lookup table) whose last bit would lie beyond the data.
  const Codes longB = {{'A', "0"}, {'B', std::string(11, '1') + "0"}, {'C', std::string(12, '1')}};
  std::vector<int> thirteenAsAndB(13, 'A');
  thirteenAsAndB.push_back('B');
  std::vector<std::pair<const char*, Bytes>> bad = {
      {"length 0", Patched(good, 5, Le(0, 4))},
      {"negative length", Patched(good, 5, Le(0x80000000, 4))},
      {"checksum", Patched(good, 4, "A")},
      {"code length 0", Patched(good, 12, Bytes(1, '\0'))},
      {"no values", Patched(good, 9, Le(0, 2))},
      {"257 values", Patched(good, 9, Le(257, 2))},
      {"value count past the end", Patched(good, 9, Le(200, 2))},
      {"values out of order", Craft({{'B', "0"}, {'A', "10"}, {'C', "11"}}, {'A'})},
      {"not a prefix code", Craft({{'A', "0"}, {'B', "01"}}, {'A'})},
      {"a prefix of an earlier code", Craft({{'A', "01"}, {'B', "0"}, {'C', "1"}}, {'B'})},
      {"the same code twice", Craft({{'A', "0"}, {'B', "0"}}, {'A'})},
      {"path to a missing child", Craft({{'A', "0"}, {'B', "10"}}, {'A', 'B', 'A', 'A'}, "010110")},
      {"more than 511 nodes",
       Craft({{1, std::string(255, '0')}, {2, "01"}, {3, std::string(255, '1')}}, {1, 2, 3})},
      {"a long code past the end", Craft(longB, thirteenAsAndB, "0000000000000" "11111111111")},
  };
  for (Bytes mark : {"M2l\r", "M2X\r", "M2L\n"}) bad.push_back({"mark", mark + good.substr(4)});
  // Every truncation of a real container: its header, table, code bits and data cut short.
  Bytes real = clsHuffman::Encode("the quick brown fox jumps over the lazy dog, twice over.");
  for (size_t cut = 0; cut < real.size(); ++cut) bad.push_back({"truncated", real.substr(0, cut)});

  for (const auto& [what, container] : bad) {
    Bytes result = "untouched";
    EXPECT_FALSE(clsHuffman::Decode(container, result)) << what;
    EXPECT_EQ(result, "untouched") << what;
  }
}

// That the table-driven decoder accepts exactly what the literal tree walk accepts, with the
// same bytes, is the Huffman fuzzer's check on arbitrary input.

}  // namespace
}  // namespace mq
