#include "listfiles/EVBResource.h"

#include <gtest/gtest.h>

namespace mq {
namespace {

Bytes Padded(std::string_view id) {
  Bytes out(id);
  out.resize(32, ' ');
  return out;
}

Bytes Le32(int32_t v) {
  Bytes out;
  for (int k = 0; k < 4; ++k) out.push_back(static_cast<char>(static_cast<uint32_t>(v) >> (8 * k)));
  return out;
}

Bytes Header(int32_t strings, int32_t longs = 0, int32_t pictures = 0) {
  return Bytes(64, ' ') + Le32(strings) + Le32(longs) + Le32(pictures);
}

TEST(Resource, LayoutOfListFiles) {
  EVBResource empty;
  EXPECT_EQ(empty.saveToBytes(), Header(0));
  EXPECT_EQ(empty.saveToBytes().size(), 76u);

  EVBResource one;
  ASSERT_TRUE(one.addString("A", "0001"));
  EXPECT_EQ(one.saveToBytes(), Header(1) + Padded("0001") + Bytes("\x01\x00", 2) + "A");

  // Longer than 32,767 bytes: -1 in the 16-bit field, then the 32-bit length.
  EVBResource big;
  big.addString(Bytes(32767, 'x'), "0001");
  big.addString(Bytes(40000, 'y'), "0011");
  Bytes bytes = big.saveToBytes();
  EXPECT_EQ(bytes.substr(76 + 32, 2), Bytes("\xFF\x7F", 2));
  const size_t second = 76 + 34 + 32767;
  EXPECT_EQ(bytes.substr(second + 32, 6), Bytes("\xFF\xFF", 2) + Le32(40000));
  EVBResource back;
  ASSERT_TRUE(back.loadFromBytes(bytes));
  ASSERT_EQ(back.strings().size(), 2u);
  EXPECT_EQ(back.strings()[0].data, Bytes(32767, 'x'));
  EXPECT_EQ(back.strings()[1].data, Bytes(40000, 'y'));
  EXPECT_EQ(back.strings()[1].id, "0011");
}

// The program writes unique numbered IDs; a file from elsewhere may repeat one (in any case):
// the first record is kept.
TEST(Resource, ARepeatedIdIsSkippedOnReading) {
  EVBResource back;
  Bytes file = Header(3) + Padded("id1") + Bytes("\x03\x00", 2) + "one" + Padded("other") +
               Bytes("\x03\x00", 2) + "two" + Padded("ID1") + Bytes("\x05\x00", 2) + "three";
  ASSERT_TRUE(back.loadFromBytes(file));
  ASSERT_EQ(back.strings().size(), 2u);
  EXPECT_EQ(back.strings()[0].data + back.strings()[1].data, "onetwo");
  EVBResource store;
  EXPECT_TRUE(store.addString("first", "abc"));
  EXPECT_FALSE(store.addString("second", "ABC"));
}

TEST(Resource, RefusesDamagedFiles) {
  EVBResource store;
  store.addString("hello", "0001");
  store.addString(Bytes(40000, 'z'), "0011");
  store.addLong(42, "L");
  const Bytes good = store.saveToBytes();
  EVBResource back;
  ASSERT_TRUE(back.loadFromBytes(good));
  for (size_t cut = 0; cut < good.size(); ++cut)
    EXPECT_FALSE(back.loadFromBytes(std::string_view(good).substr(0, cut))) << cut;

  std::vector<std::pair<const char*, Bytes>> bad = {
      {"negative string count", Header(-1)},
      {"negative long count", Header(0, -1)},
      {"pictures", Header(0, 0, 1)},
      {"count past the end", Header(0x7FFFFFFF)},
      {"long count past the end", Header(0, 1000)},
      {"negative length", Header(1) + Padded("0001") + Bytes("\xFE\xFF", 2) + "abc"},
      {"negative long length",
       Header(1) + Padded("0001") + Bytes("\xFF\xFF", 2) + Le32(-5) + "abc"},
      {"length past the end", Header(1) + Padded("0001") + Bytes("\x10\x00", 2) + "abc"},
      {"ID past the end", Header(1) + "0001"},
  };
  for (const auto& [what, bytes] : bad) EXPECT_FALSE(back.loadFromBytes(bytes)) << what;
  // Trailing bytes after the last section are not part of any record and do no harm.
  EXPECT_TRUE(back.loadFromBytes(good + "junk"));
}

}  // namespace
}  // namespace mq
