// The PNG writer, checked against the independent reader in PngReader.h.
#include "ui/Png.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "ui/IconArt.h"
#include "ui/PngReader.h"

namespace mq::png {
namespace {

using reader::DecodePng;
using reader::Unzlib;

std::string RandomBytes(size_t n, unsigned seed) {
  std::mt19937 rng(seed);
  std::string s(n, '\0');
  for (auto& c : s) c = static_cast<char>(rng() & 0xFF);
  return s;
}

TEST(Png, ChecksumsMatchTheirKnownValues) {
  EXPECT_EQ(Crc32("123456789"), 0xCBF43926u);
  EXPECT_EQ(Crc32(""), 0u);
  EXPECT_EQ(Crc32("IEND"), 0xAE426082u);  // every PNG ends with these bytes
  EXPECT_EQ(Adler32("Wikipedia"), 0x11E60398u);
  EXPECT_EQ(Adler32(""), 1u);
  // Long runs of 0xFF stress the deferred modulo; compare with a modulo on every byte.
  const std::string ff(200000, '\xFF');
  uint32_t a = 1, b = 0;
  for (unsigned char c : ff) a = (a + c) % 65521, b = (b + a) % 65521;
  EXPECT_EQ(Adler32(ff), (b << 16) | a);
}

TEST(Png, CompressedStreamsInflateToTheirInput) {
  std::string text;
  for (int i = 0; i < 400; ++i) text += "The quick brown fox " + std::to_string(i * 7919 % 1000) + ". ";
  const std::string random40k = RandomBytes(40000, 1);
  std::string allBytes;
  for (int i = 0; i < 256; ++i) allBytes.push_back(static_cast<char>(i));
  struct Case {
    const char* name;
    std::string data;
    double maxRatio;  // compressed size / input size at most
  };
  const Case cases[] = {
      {"empty", "", 100},
      {"one byte", "a", 100},
      {"three bytes", "abc", 100},
      {"a run (overlapping copies at distance 1)", std::string(100000, 'a'), 0.01},
      {"exactly one longest match after a literal", std::string(259, 'z'), 1},
      {"text", text, 0.35},
      {"every byte value", allBytes + allBytes + allBytes, 0.5},
      {"random bytes (stored blocks)", RandomBytes(150000, 2), 1.001},
      // The second copy lies beyond the 32 KB window: no match may reach back that far.
      {"repeat beyond the window", random40k + random40k, 1.001},
      {"repeat within the window", random40k.substr(0, 20000) + random40k.substr(0, 20000), 0.6},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string z = ZlibCompress(c.data);
    std::string back;
    ASSERT_TRUE(Unzlib(z, back));
    EXPECT_TRUE(back == c.data);
    EXPECT_LE(static_cast<double>(z.size()), c.maxRatio * static_cast<double>(c.data.size()) + 11);
  }
}

TEST(Png, IconImagesRoundTripAndShrink) {
  const art::Art arts[] = {art::Art::ClipEnabled, art::Art::ClipDisabled, art::Art::ClipList};
  for (art::Art a : arts) {
    for (int size : {1, 3, 16, 256}) {
      SCOPED_TRACE(testing::Message() << "art " << static_cast<int>(a) << " size " << size);
      const art::Image image = art::Render(a, size);
      const std::string png = EncodePng(image);
      art::Image back;
      ASSERT_TRUE(DecodePng(png, back));
      EXPECT_EQ(back.width, size);
      EXPECT_EQ(back.height, size);
      EXPECT_TRUE(back.rgba == image.rgba);
      if (size == 256) EXPECT_LT(png.size(), image.rgba.size() / 6);
    }
  }
  // Noise with alpha: every filter type gets chosen somewhere, and the pixels still survive.
  art::Image noise{37, 23, {}};
  const std::string bytes = RandomBytes(37 * 23 * 4, 3);
  noise.rgba.assign(bytes.begin(), bytes.end());
  for (size_t i = 0; i < noise.rgba.size(); i += 8) noise.rgba[i] = static_cast<uint8_t>(i / 40);
  art::Image back;
  ASSERT_TRUE(DecodePng(EncodePng(noise), back));
  EXPECT_TRUE(back.rgba == noise.rgba);
}

}  // namespace
}  // namespace mq::png
