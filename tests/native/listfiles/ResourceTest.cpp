#include "listfiles/EVBResource.h"

#include <gtest/gtest.h>

namespace mq {
namespace {

using Strs = std::vector<std::string>;

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

// The string records ("id=data") as both readers see them: the list load's view of the
// records and the whole store (which the mqlist tool reads); "refused" for damaged data.
Strs Read(std::string_view bytes) {
  Strs fromViews, fromStore;
  EVBResource store;
  const bool ok = EVBResource::readStrings(bytes, [&](const auto& v) {
    fromViews.push_back(Bytes(v.id) + "=" + Bytes(v.data));
  });
  EXPECT_EQ(store.loadFromBytes(bytes), ok);
  if (!ok) return {"refused"};
  for (const auto& s : store.strings()) fromStore.push_back(s.id + "=" + s.data);
  EXPECT_EQ(fromViews, fromStore);
  return fromViews;
}

TEST(Resource, LayoutOfListFiles) {
  Bytes bytes;
  const EVBResource::Writer::Put gather = [&](std::string_view piece) { bytes += piece; };
  EVBResource::Writer(0, gather);
  EXPECT_EQ(bytes, Header(0));
  // Longer than 32,767 bytes: -1 in the 16-bit field, then the 32-bit length.
  const Bytes x(32767, 'x'), y(40000, 'y');
  bytes.clear();
  EVBResource::Writer writer(3, gather);
  EVBResource store;
  for (auto [data, id] : {std::pair<Bytes, const char*>{"A", "0001"}, {x, "0011"}, {y, "0021"}}) {
    writer.addString(data, id);
    store.addString(data, id);
  }
  EXPECT_EQ(bytes, Header(3) + Padded("0001") + Bytes("\x01\x00", 2) + "A" + Padded("0011") +
                       "\xFF\x7F" + x + Padded("0021") + "\xFF\xFF" + Le32(40000) + y);
  EXPECT_EQ(store.saveToBytes(), bytes);
  EXPECT_EQ(Read(bytes), (Strs{"0001=A", "0011=" + x, "0021=" + y}));
}

// The program writes unique numbered IDs; a file from elsewhere may repeat one (in any case):
// the first record is kept.
TEST(Resource, ARepeatedIdIsSkippedOnReading) {
  EXPECT_EQ(Read(Header(3) + Padded("id1") + Bytes("\x03\x00", 2) + "one" + Padded("other") +
                 Bytes("\x03\x00", 2) + "two" + Padded("ID1") + Bytes("\x05\x00", 2) + "three"),
            (Strs{"id1=one", "other=two"}));
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
  ASSERT_EQ(Read(good).size(), 2u);
  for (size_t cut = 0; cut < good.size(); ++cut)
    ASSERT_EQ(Read(std::string_view(good).substr(0, cut)), Strs{"refused"}) << cut;

  const std::pair<const char*, Bytes> bad[] = {
      {"negative string count", Header(-1)},
      {"negative long count", Header(0, -1)},
      {"pictures", Header(0, 0, 1)},
      {"count past the end", Header(0x7FFFFFFF)},  // refused before any room is made
      {"negative length", Header(1) + Padded("0001") + Bytes("\xFE\xFF", 2) + "abc"},
      {"negative long length",
       Header(1) + Padded("0001") + Bytes("\xFF\xFF", 2) + Le32(-5) + "abc"},
  };
  for (const auto& [what, bytes] : bad) EXPECT_EQ(Read(bytes), Strs{"refused"}) << what;
  // Trailing bytes after the last section are not part of any record and do no harm.
  EXPECT_EQ(Read(good + "junk").size(), 2u);
}

}  // namespace
}  // namespace mq
