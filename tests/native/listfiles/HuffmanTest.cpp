#include "listfiles/clsHuffman.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "listfiles/ReferenceHuffman.h"

namespace mq {
namespace {

using test::ContainerRecipe;
using test::WriteContainer;

Bytes Hex(std::initializer_list<int> bytes) {
  Bytes out;
  for (int b : bytes) out.push_back(static_cast<char>(b));
  return out;
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
  for (const auto& [input, container] : cases) EXPECT_EQ(clsHuffman::Encode(input), container) << input;
}

// Round trips of arbitrary data are the fuzzer's; here every byte value, in place.
TEST(Huffman, EveryByteValueInPlace) {
  Bytes all;
  for (int v = 0; v < 256; ++v) all.append(static_cast<size_t>(v + 1), static_cast<char>(v));
  Bytes inPlace = all;
  clsHuffman::EncodeByte(inPlace);
  EXPECT_EQ(inPlace.substr(0, 3), "M2L");
  EXPECT_TRUE(clsHuffman::DecodeByte(inPlace));
  EXPECT_EQ(inPlace, all);
}

TEST(Huffman, DeepTreesUseLongCodesExactly) {
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
  const Bytes container = clsHuffman::Encode(data);
  int longest = 0;
  for (size_t k = 0; k < 26; ++k) longest = std::max(longest, int(uint8_t(container[12 + 2 * k])));
  EXPECT_GE(longest, 24);
  Bytes decoded;
  ASSERT_TRUE(clsHuffman::Decode(container, decoded));
  EXPECT_EQ(decoded, data);

  // Crafted: a comb of codes 1..255 bits long, 256 values and exactly 511 nodes.
  ContainerRecipe comb;
  for (int v = 0; v < 255; ++v) comb.codes.push_back({v, std::string(v, '1') + "0"});
  comb.codes.push_back({255, std::string(255, '1')});
  comb.symbols = {255, 0, 254, 128, 1, 255, 3, 200, 0, 0, 17};
  for (int k = 0; k < 300; ++k) comb.symbols.push_back((k * 37) % 256);
  ASSERT_TRUE(clsHuffman::Decode(WriteContainer(comb), decoded));
  ASSERT_EQ(decoded.size(), comb.symbols.size());
  for (size_t k = 0; k < decoded.size(); ++k)
    ASSERT_EQ(uint8_t(decoded[k]), comb.symbols[k]) << k;
}

TEST(Huffman, RefusesDamagedContainers) {
  ContainerRecipe good;
  good.codes = {{'A', "0"}, {'B', "10"}, {'C', "11"}};
  good.symbols = {'A', 'B', 'C', 'A'};
  Bytes out = "untouched";
  ASSERT_TRUE(clsHuffman::Decode(WriteContainer(good), out));
  EXPECT_EQ(out, "ABCA");

  std::vector<std::pair<const char*, Bytes>> bad;
  auto with = [&](const char* what, auto change) {
    ContainerRecipe s = good;
    change(s);
    bad.push_back({what, WriteContainer(s)});
  };
  with("length 0", [](ContainerRecipe& s) { s.lengthOverride = 0; });
  with("negative length", [](ContainerRecipe& s) { s.lengthOverride = 0x80000000; });
  with("checksum", [](ContainerRecipe& s) { s.checksumOverride = 0x41; });
  with("code length 0", [](ContainerRecipe& s) { s.lengthFieldOverride = 0; });
  with("not a prefix code", [](ContainerRecipe& s) { s.codes = {{'A', "0"}, {'B', "01"}}; });
  with("a code that is a prefix of an earlier one", [](ContainerRecipe& s) {
    s.codes = {{'A', "01"}, {'B', "0"}, {'C', "1"}};
  });
  with("the same code twice", [](ContainerRecipe& s) { s.codes = {{'A', "0"}, {'B', "0"}}; });
  with("path to a missing child", [](ContainerRecipe& s) {
    s.codes = {{'A', "0"}, {'B', "10"}};
    s.dataBits = "0" "10" "11" "0";  // "11" leads nowhere
    s.lengthOverride = 4;
  });
  with("data ends before the length", [](ContainerRecipe& s) { s.lengthOverride = 40; });
  for (int used : {0, 257, 200}) with("value count", [used](ContainerRecipe& s) { s.usedOverride = used; });
  with("values out of order", [](ContainerRecipe& s) {
    s.codes = {{'B', "0"}, {'A', "10"}, {'C', "11"}};
  });
  with("more than 511 nodes", [](ContainerRecipe& s) {
    s.codes = {{1, std::string(255, '0')}, {2, "01"}, {3, std::string(255, '1')}};
    s.symbols = {1, 2, 3};
  });
  Bytes valid = WriteContainer(good);
  ContainerRecipe longCodes;
  longCodes.codes = {{'A', std::string(200, '0')}, {'B', "1"}};
  longCodes.symbols = {'B'};
  bad.push_back({"code bits past the end", WriteContainer(longCodes).substr(0, 11 + 4 + 10)});
  for (Bytes mark : {"M2l\r", "M2X\r", "M2L\n"}) bad.push_back({"mark", mark + valid.substr(4)});
  bad.push_back({"three bytes", "M2U"});
  // Every truncation of a real container.
  Bytes real = clsHuffman::Encode("the quick brown fox jumps over the lazy dog, twice over.");
  for (size_t cut = 0; cut < real.size(); ++cut) bad.push_back({"truncated", real.substr(0, cut)});

  for (const auto& [what, container] : bad) {
    Bytes result = "untouched";
    EXPECT_FALSE(clsHuffman::Decode(container, result)) << what;
    EXPECT_EQ(result, "untouched") << what;
  }
  // The third code of a full comb would need a 512th node.
  ContainerRecipe full;
  full.codes = {{1, std::string(255, '0')}, {2, std::string(255, '1')}};
  full.symbols = {1, 2};
  EXPECT_TRUE(clsHuffman::Decode(WriteContainer(full), out));
}

// That the table-driven decoder accepts exactly what the literal tree walk accepts, with the
// same bytes, is the Huffman fuzzer's check on arbitrary input.

}  // namespace
}  // namespace mq
