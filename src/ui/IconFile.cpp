// The .ico files of the program's images, as tools/icongen writes them. Kept apart from the
// drawing so the program itself, which only draws, links none of the encoders.
#include <string>
#include <vector>

#include "ui/IconArt.h"
#include "ui/Png.h"

namespace mq::art {
namespace {

void Put16(std::string& out, unsigned v) {
  out.push_back(static_cast<char>(v & 0xFF));
  out.push_back(static_cast<char>((v >> 8) & 0xFF));
}
void Put32(std::string& out, uint32_t v) {
  Put16(out, v & 0xFFFF);
  Put16(out, v >> 16);
}

// One image as an icon resource: a BITMAPINFOHEADER of double height, the colour rows
// bottom-up, then the AND mask (1 = transparent), rows padded to 32 bits.
std::string EncodeIconImage(const Image& img, IcoDepth depth) {
  const int bits = depth == IcoDepth::Alpha32 ? 32 : 24;
  const size_t colourStride = ((static_cast<size_t>(img.width) * bits + 31) / 32) * 4;
  const size_t maskStride = ((static_cast<size_t>(img.width) + 31) / 32) * 4;
  std::string out;
  Put32(out, 40);
  Put32(out, static_cast<uint32_t>(img.width));
  Put32(out, static_cast<uint32_t>(img.height * 2));
  Put16(out, 1);
  Put16(out, static_cast<unsigned>(bits));
  Put32(out, 0);  // BI_RGB
  Put32(out, static_cast<uint32_t>((colourStride + maskStride) * img.height));
  Put32(out, 0);
  Put32(out, 0);
  Put32(out, 0);
  Put32(out, 0);
  for (int y = img.height - 1; y >= 0; --y) {
    std::string row;
    for (int x = 0; x < img.width; ++x) {
      const uint8_t* p = img.At(x, y);
      const bool shown = depth == IcoDepth::Alpha32 || p[3] >= 128;
      row.push_back(static_cast<char>(shown ? p[2] : 0));
      row.push_back(static_cast<char>(shown ? p[1] : 0));
      row.push_back(static_cast<char>(shown ? p[0] : 0));
      if (bits == 32) row.push_back(static_cast<char>(p[3]));
    }
    row.resize(colourStride, '\0');
    out += row;
  }
  for (int y = img.height - 1; y >= 0; --y) {
    std::string row(maskStride, '\0');
    for (int x = 0; x < img.width; ++x)
      if (img.At(x, y)[3] < 128) row[x / 8] = static_cast<char>(row[x / 8] | (0x80 >> (x % 8)));
    out += row;
  }
  return out;
}


}  // namespace

std::string EncodeIco(const std::vector<Image>& images, IcoDepth depth, int pngFrom) {
  std::string out;
  Put16(out, 0);
  Put16(out, 1);  // icon
  Put16(out, static_cast<unsigned>(images.size()));
  std::vector<std::string> bodies;
  for (const auto& img : images)
    bodies.push_back(img.width >= pngFrom && depth == IcoDepth::Alpha32
                         ? png::EncodePng(img)
                         : EncodeIconImage(img, depth));
  uint32_t offset = static_cast<uint32_t>(6 + 16 * images.size());
  for (size_t i = 0; i < images.size(); ++i) {
    out.push_back(static_cast<char>(images[i].width >= 256 ? 0 : images[i].width));
    out.push_back(static_cast<char>(images[i].height >= 256 ? 0 : images[i].height));
    out.push_back(0);  // no palette
    out.push_back(0);
    Put16(out, 1);
    Put16(out, depth == IcoDepth::Alpha32 ? 32 : 24);
    Put32(out, static_cast<uint32_t>(bodies[i].size()));
    Put32(out, offset);
    offset += static_cast<uint32_t>(bodies[i].size());
  }
  for (const auto& body : bodies) out += body;
  return out;
}

std::vector<IconFile> RenderIconFiles() {
  // Menu images follow the menu's DPI steps (16 px at 100 % to 32 px at 200 %) and beyond;
  // the tray and window images also serve the notice window and Explorer's large views.
  static const std::vector<int> kMenuSizes = {16, 20, 24, 28, 32, 40, 48, 64};
  static const std::vector<int> kLargeSizes = {16, 20, 24, 28, 32, 40, 48, 64, 72, 96, 128, 256};
  struct Entry {
    const char* name;
    int id;
    Art art;
    bool large;
    bool classic;
  };
  static constexpr Entry kEntries[] = {
      {"101-tray-enabled.ico", 101, Art::ClipEnabled, true, false},
      {"102-tray-disabled.ico", 102, Art::ClipDisabled, true, false},
      {"103-tray-enabled-classic.ico", 103, Art::ClipEnabled, false, true},
      {"104-tray-disabled-classic.ico", 104, Art::ClipDisabled, false, true},
      {"105-clip-list.ico", 105, Art::ClipList, true, false},
      {"201-menu-disable-me.ico", 201, Art::ClipEnabled, false, false},
      {"202-menu-enable-me.ico", 202, Art::ClipDisabled, false, false},
      {"203-menu-settings.ico", 203, Art::Settings, false, false},
      {"204-menu-about.ico", 204, Art::About, false, false},
      {"205-menu-exit.ico", 205, Art::Exit, false, false},
      {"206-menu-clip-list.ico", 206, Art::ClipList, false, false},
      {"207-menu-help.ico", 207, Art::Help, false, false},
  };
  std::vector<IconFile> files;
  for (const auto& e : kEntries) {
    std::vector<Image> images;
    for (int size : e.large ? kLargeSizes : kMenuSizes) {
      Image img = Render(e.art, size);
      images.push_back(e.classic ? Binarize(img) : img);
    }
    files.push_back({e.name, e.id,
                     EncodeIco(images, e.classic ? IcoDepth::Masked24 : IcoDepth::Alpha32,
                               e.large ? kIconPngFrom : kMenuPngFrom)});
  }
  return files;
}

}  // namespace mq::art
