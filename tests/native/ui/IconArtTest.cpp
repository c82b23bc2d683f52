#include "ui/IconArt.h"
#include "ui/ButtonArt.h"
#include "ui/PngReader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace mq::art {
namespace {

namespace fs = std::filesystem;

uint32_t Le(const std::string& b, size_t at, int bytes) {
  uint32_t v = 0;
  for (int i = bytes - 1; i >= 0; --i) v = (v << 8) | static_cast<uint8_t>(b[at + i]);
  return v;
}

double AlphaSum(const Image& img) {
  double sum = 0;
  for (size_t i = 3; i < img.rgba.size(); i += 4) sum += img.rgba[i] / 255.0;
  return sum;
}

TEST(IconArt, CommittedIconsMatchAFreshRendering) {
  const fs::path folder = fs::path(MARQUILL_SOURCE_DIR) / "res" / "icons";
  std::set<std::string> expected;
  for (const auto& file : RenderIconFiles()) {
    expected.insert(file.name);
    std::ifstream in(folder / file.name, std::ios::binary);
    ASSERT_TRUE(in) << file.name << " is missing; run icongen res/icons";
    std::string committed((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_TRUE(committed == file.bytes) << file.name << " differs from its drawing; run icongen";
  }
  // Every icon in the folder becomes a resource, so a stale one would ship unnoticed.
  for (const auto& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == ".ico")
      EXPECT_TRUE(expected.count(entry.path().filename().string())) << entry.path();
}

TEST(IconArt, IcoFilesAreWellFormed) {
  std::set<int> ids;
  for (const auto& file : RenderIconFiles()) {
    SCOPED_TRACE(file.name);
    const std::string& b = file.bytes;
    EXPECT_EQ(std::stoi(file.name), file.resourceId);  // the resource script reads the number
    ids.insert(file.resourceId);
    ASSERT_GE(b.size(), 6u);
    EXPECT_EQ(Le(b, 0, 2), 0u);
    EXPECT_EQ(Le(b, 2, 2), 1u);
    const uint32_t count = Le(b, 4, 2);
    const bool classic = file.resourceId == 103 || file.resourceId == 104;
    const bool large = file.resourceId == 101 || file.resourceId == 102 || file.resourceId == 105;
    std::set<int> sizes;
    size_t end = 6 + 16 * count;
    for (uint32_t i = 0; i < count; ++i) {
      const size_t e = 6 + 16 * i;
      const int w = static_cast<uint8_t>(b[e]) ? static_cast<uint8_t>(b[e]) : 256;
      sizes.insert(w);
      const uint32_t bits = Le(b, e + 6, 2), bytes = Le(b, e + 8, 4), offset = Le(b, e + 12, 4);
      EXPECT_EQ(bits, classic ? 24u : 32u);
      EXPECT_EQ(offset, end);  // images follow each other without gaps
      end = offset + bytes;
      ASSERT_LE(end, b.size());
      if (w == 256) {
        // A PNG stream holding exactly the drawn image.
        Image decoded;
        ASSERT_TRUE(png::reader::DecodePng(b.substr(offset, bytes), decoded));
        const Art art = file.resourceId == 101 ? Art::ClipEnabled
                        : file.resourceId == 102 ? Art::ClipDisabled : Art::ClipList;
        EXPECT_TRUE(decoded.rgba == Render(art, 256).rgba);
        continue;
      }
      // BITMAPINFOHEADER: double height (colour + mask), matching bit count.
      EXPECT_EQ(Le(b, offset, 4), 40u);
      EXPECT_EQ(Le(b, offset + 4, 4), static_cast<uint32_t>(w));
      EXPECT_EQ(Le(b, offset + 8, 4), static_cast<uint32_t>(2 * w));
      EXPECT_EQ(Le(b, offset + 14, 2), bits);
      const size_t stride = ((w * bits + 31) / 32) * 4, maskStride = ((w + 31) / 32) * 4;
      EXPECT_EQ(bytes, 40 + (stride + maskStride) * w);
      // The mask marks exactly the pixels that are (mostly) transparent. Rows are bottom-up.
      if (!classic && w == 32) {
        const size_t colour = offset + 40, mask = colour + stride * w;
        int mismatches = 0;
        for (int y = 0; y < w; ++y)
          for (int x = 0; x < w; ++x) {
            const uint8_t alpha = static_cast<uint8_t>(b[colour + y * stride + x * 4 + 3]);
            const bool masked = (static_cast<uint8_t>(b[mask + y * maskStride + x / 8]) >> (7 - x % 8)) & 1;
            mismatches += masked != (alpha < 128);
          }
        EXPECT_EQ(mismatches, 0);
      }
    }
    EXPECT_EQ(end, b.size());
    for (int needed : {16, 20, 24, 32, 40, 48, 64}) EXPECT_TRUE(sizes.count(needed)) << needed;
    EXPECT_EQ(sizes.count(256) == 1, large);
  }
  EXPECT_EQ(ids, (std::set<int>{101, 102, 103, 104, 105, 201, 202, 203, 204, 205, 206, 207}));
}

TEST(IconArt, EveryImageFitsItsFrameAndTheStatesDiffer) {
  const Art arts[] = {Art::ClipEnabled, Art::ClipDisabled, Art::ClipList, Art::Settings,
                      Art::About,       Art::Exit,         Art::Help};
  for (Art art : arts) {
    for (int size : {16, 20, 24, 28, 32, 48, 64, 96, 256}) {
      SCOPED_TRACE(testing::Message() << "art " << static_cast<int>(art) << " size " << size);
      Image img = Render(art, size);
      ASSERT_EQ(img.width, size);
      ASSERT_EQ(img.height, size);
      ASSERT_EQ(img.rgba.size(), static_cast<size_t>(size) * size * 4);
      // Something is drawn, and nothing is cut off by the frame's edge.
      EXPECT_GT(AlphaSum(img), size * size * 0.12);
      int edge = 0;
      for (int i = 0; i < size; ++i)
        for (int a : {img.At(i, 0)[3], img.At(i, size - 1)[3], img.At(0, i)[3], img.At(size - 1, i)[3]})
          edge = std::max(edge, a);
      EXPECT_LT(edge, 255);
    }
  }
  // Disabled shows a red stop mark and a grey clip; enabled has no red at all.
  auto redPixels = [](const Image& img) {
    int n = 0;
    for (size_t i = 0; i < img.rgba.size(); i += 4)
      n += img.rgba[i + 3] > 200 && img.rgba[i] > 170 && img.rgba[i + 1] < 90 && img.rgba[i + 2] < 90;
    return n;
  };
  for (int size : {16, 32}) {
    EXPECT_EQ(redPixels(Render(Art::ClipEnabled, size)), 0);
    EXPECT_GT(redPixels(Render(Art::ClipDisabled, size)), size * size / 20);
  }
  // Pre-XP images: every pixel either shown or not.
  Image classic = Binarize(Render(Art::ClipEnabled, 24));
  for (size_t i = 3; i < classic.rgba.size(); i += 4)
    EXPECT_TRUE(classic.rgba[i] == 0 || classic.rgba[i] == 255);
  Art art;
  EXPECT_TRUE(MenuImageArt(7, art));
  EXPECT_EQ(art, Art::Help);
  EXPECT_FALSE(MenuImageArt(8, art));
  EXPECT_FALSE(MenuImageArt(0, art));
}

TEST(Raster, CoverageFollowsTheShapes) {
  // A disc's coverage adds up to its area; inside is opaque, the rim partial.
  Canvas canvas(40, 40);
  canvas.Fill(Circle({20, 20}, 12), Solid(Rgb(0x336699)));
  Image disc = canvas.ToImage();
  EXPECT_NEAR(AlphaSum(disc), 3.14159265 * 144, 2.0);
  EXPECT_EQ(disc.At(20, 20)[3], 255);
  EXPECT_EQ(disc.At(20, 20)[0], 0x33);
  EXPECT_EQ(disc.At(20, 20)[2], 0x99);
  EXPECT_EQ(disc.At(0, 0)[3], 0);
  int partial = 0;
  for (size_t i = 3; i < disc.rgba.size(); i += 4) partial += disc.rgba[i] > 0 && disc.rgba[i] < 255;
  EXPECT_GT(partial, 40);  // an anti-aliased rim all round

  // A ring: the hole stays empty, and a quarter-turn of an off-centre bar moves it.
  Canvas ring(40, 40);
  ring.Fill(Subtract(Circle({20, 20}, 12), Circle({20, 20}, 6)), Solid(Rgb(0)));
  EXPECT_EQ(ring.ToImage().At(20, 20)[3], 0);
  EXPECT_NEAR(AlphaSum(ring.ToImage()), 3.14159265 * (144 - 36), 2.0);
  Canvas bar(40, 40);
  bar.Fill(Rotate(RoundRect(24, 18, 36, 22, 0), {20, 20}, 90), Solid(Rgb(0)));
  Image turned = bar.ToImage();
  EXPECT_EQ(turned.At(20, 30)[3], 255);  // now below the centre
  EXPECT_EQ(turned.At(30, 20)[3], 0);
  EXPECT_NEAR(AlphaSum(turned), 48, 1.0);

  // A half arc only covers its own half; translucent paint blends.
  Canvas arc(40, 40);
  arc.Fill(Arc({20, 20}, 10, 0, 180, 1.5), Solid(Rgb(0)));  // right, down, left
  Image half = arc.ToImage();
  EXPECT_EQ(half.At(20, 30)[3], 255);
  EXPECT_EQ(half.At(20, 10)[3], 0);
  Canvas blend(4, 4);
  blend.Fill(RoundRect(0, 0, 4, 4, 0), Solid(Rgb(0xFF0000, 0.5)));
  blend.Fill(RoundRect(0, 0, 4, 4, 0), Solid(Rgb(0x0000FF, 0.5)));
  const Image blended = blend.ToImage();
  const uint8_t* p = blended.At(1, 1);
  EXPECT_EQ(p[3], 191);  // 0.5 + 0.5 * 0.5
  EXPECT_NEAR(p[0], 85, 1);
  EXPECT_NEAR(p[2], 170, 1);
}

}  // namespace
}  // namespace mq::art

TEST(ButtonArt, EveryButtonFitsItsSquareAndEachToggleShowsTwoStates) {
  using mq::art::ButtonArt;
  using mq::art::RenderButton;
  const ButtonArt arts[] = {ButtonArt::ViewExpanded, ButtonArt::ViewCondensed,
                            ButtonArt::PasteMoveToEnd, ButtonArt::PasteDelete,
                            ButtonArt::PinLoose,     ButtonArt::PinIn,
                            ButtonArt::Save,         ButtonArt::Load};
  for (int size : {13, 17, 26, 34}) {
    for (ButtonArt art : arts) {
      mq::art::Image img = RenderButton(art, size);
      ASSERT_EQ(img.width, size);
      ASSERT_EQ(img.height, size);
      int opaque = 0;
      bool cornerClear = img.At(0, 0)[3] == 0 || img.At(size - 1, 0)[3] == 0;
      for (size_t i = 3; i < img.rgba.size(); i += 4) opaque += img.rgba[i] > 128;
      EXPECT_GT(opaque, size * size / 8) << "art " << static_cast<int>(art) << " at " << size;
      EXPECT_TRUE(cornerClear) << "art " << static_cast<int>(art) << " at " << size;
    }
    for (int i = 0; i < 6; i += 2)
      EXPECT_NE(RenderButton(arts[i], size).rgba, RenderButton(arts[i + 1], size).rgba)
          << "toggle " << i / 2 << " at " << size;
  }
}
