// The drawn icons and buttons: the committed .ico files are the drawing's output, each file
// holds the sizes Windows asks for, and the states a user tells apart look different.
#include "ui/IconArt.h"
#include "ui/ButtonArt.h"

#include <gtest/gtest.h>

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

TEST(IconArt, CommittedIconsAreTheDrawingsOutputWithEverySize) {
  const fs::path folder = fs::path(MARQUILL_SOURCE_DIR) / "res" / "icons";
  std::set<std::string> names;
  std::set<int> ids;
  for (const auto& file : RenderIconFiles()) {
    SCOPED_TRACE(file.name);
    names.insert(file.name);
    ids.insert(file.resourceId);
    EXPECT_EQ(std::stoi(file.name), file.resourceId);  // the resource script reads the number
    std::ifstream in(folder / file.name, std::ios::binary);
    ASSERT_TRUE(in) << "missing; run icongen res/icons";
    std::string committed((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    // Byte for byte: the encoders are checked through the committed files, which the Windows
    // tests load with the system's own icon and PNG readers.
    EXPECT_TRUE(committed == file.bytes) << "differs from its drawing; run icongen";
    // Every size Windows asks for, 256 for the large ones only, 24-bit for the pre-XP icons.
    const std::string& b = file.bytes;
    const int id = file.resourceId;
    std::set<int> sizes;
    for (uint32_t e = 6; e < 6 + 16 * Le(b, 4, 2); e += 16) {
      sizes.insert(static_cast<uint8_t>(b[e]) ? static_cast<uint8_t>(b[e]) : 256);
      EXPECT_EQ(Le(b, e + 6, 2), id == 103 || id == 104 ? 24u : 32u);
    }
    for (int needed : {16, 20, 24, 32, 40, 48, 64}) EXPECT_TRUE(sizes.count(needed)) << needed;
    EXPECT_EQ(sizes.count(256) == 1, id == 101 || id == 102 || id == 105);
  }
  EXPECT_EQ(ids, (std::set<int>{101, 102, 103, 104, 105, 201, 202, 203, 204, 205, 206, 207}));
  // Every icon in the folder becomes a resource, so a stale one would ship unnoticed.
  for (const auto& entry : fs::directory_iterator(folder))
    if (entry.path().extension() == ".ico")
      EXPECT_TRUE(names.count(entry.path().filename().string())) << entry.path();
}

TEST(IconArt, ImagesFitTheirFrameAndStatesLookDifferent) {
  for (Art art : {Art::ClipEnabled, Art::ClipDisabled, Art::ClipList, Art::Settings, Art::About,
                  Art::Exit, Art::Help}) {
    for (int size : {16, 32, 256}) {
      // Something is drawn, and nothing is cut off by the frame's edge.
      const Image img = Render(art, size);
      int drawn = 0, edge = 0;
      for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
          drawn += img.At(x, y)[3] > 128;
          if (x % (size - 1) == 0 || y % (size - 1) == 0) edge = std::max<int>(edge, img.At(x, y)[3]);
        }
      EXPECT_GT(drawn, size * size / 10) << "art " << static_cast<int>(art) << " size " << size;
      EXPECT_LT(edge, 255) << "art " << static_cast<int>(art) << " size " << size;
    }
  }
  // Disabled shows a red stop mark; enabled has no red at all.
  auto redPixels = [](const Image& img) {
    int n = 0;
    for (size_t i = 0; i < img.rgba.size(); i += 4)
      n += img.rgba[i + 3] > 200 && img.rgba[i] > 170 && img.rgba[i + 1] < 90 && img.rgba[i + 2] < 90;
    return n;
  };
  EXPECT_EQ(redPixels(Render(Art::ClipEnabled, 32)), 0);
  EXPECT_GT(redPixels(Render(Art::ClipDisabled, 32)), 32 * 32 / 20);
  const Image classic = Binarize(Render(Art::ClipEnabled, 24));  // pre-XP: shown or not
  for (size_t i = 3; i < classic.rgba.size(); i += 4)
    EXPECT_TRUE(classic.rgba[i] == 0 || classic.rgba[i] == 255);
  Art art;
  EXPECT_TRUE(MenuImageArt(7, art) && art == Art::Help);
  EXPECT_FALSE(MenuImageArt(8, art) || MenuImageArt(0, art));

  // Each toggle button shows its two states differently at every size the window uses.
  const ButtonArt toggles[][2] = {{ButtonArt::ViewExpanded, ButtonArt::ViewCondensed},
                                  {ButtonArt::PasteMoveToEnd, ButtonArt::PasteDelete},
                                  {ButtonArt::PinLoose, ButtonArt::PinIn},
                                  {ButtonArt::Save, ButtonArt::Load}};
  for (int size : {13, 26})
    for (const auto& pair : toggles) {
      const Image a = RenderButton(pair[0], size), b = RenderButton(pair[1], size);
      EXPECT_EQ(a.width, size);
      EXPECT_NE(a.rgba, b.rgba) << "art " << static_cast<int>(pair[0]) << " at " << size;
    }
}

}  // namespace
}  // namespace mq::art
