#include "ui/win32/AlphaImage.h"

#include <algorithm>
#include <cstring>

namespace mq::win32 {
namespace {

uint32_t Le(const uint8_t* p, int bytes) {
  uint32_t v = 0;
  for (int i = bytes - 1; i >= 0; --i) v = (v << 8) | p[i];
  return v;
}

const uint8_t* ResourceBytes(HMODULE module, LPCWSTR name, LPCWSTR type, DWORD& size) {
  HRSRC info = FindResourceW(module, name, type);
  if (!info) return nullptr;
  HGLOBAL data = LoadResource(module, info);  // not freed: resources live with the module
  size = SizeofResource(module, info);
  return data ? static_cast<const uint8_t*>(LockResource(data)) : nullptr;
}

// One RT_ICON image: BITMAPINFOHEADER, colour rows bottom-up, then the AND mask.
bool DecodeIconImage(const uint8_t* p, DWORD size, int want, art::Image& out) {
  if (size < 40 || Le(p, 4) != 40) return false;  // PNG-compressed images are not ours
  const int width = static_cast<int>(Le(p + 4, 4));
  const int height = static_cast<int>(Le(p + 8, 4)) / 2;
  const int bits = static_cast<int>(Le(p + 14, 2));
  if (width != want || height != want || (bits != 32 && bits != 24) || Le(p + 16, 4) != 0)
    return false;
  const size_t stride = ((static_cast<size_t>(width) * bits + 31) / 32) * 4;
  const size_t maskStride = ((static_cast<size_t>(width) + 31) / 32) * 4;
  if (40 + (stride + maskStride) * height > size) return false;
  const uint8_t* colour = p + 40;
  const uint8_t* mask = colour + stride * height;
  out = art::Image{width, height, std::vector<uint8_t>(static_cast<size_t>(width) * height * 4)};
  for (int y = 0; y < height; ++y) {
    const uint8_t* row = colour + stride * (height - 1 - y);
    const uint8_t* maskRow = mask + maskStride * (height - 1 - y);
    for (int x = 0; x < width; ++x) {
      const uint8_t* s = row + x * (bits / 8);
      uint8_t* d = &out.rgba[(static_cast<size_t>(y) * width + x) * 4];
      d[0] = s[2];
      d[1] = s[1];
      d[2] = s[0];
      const bool transparent = (maskRow[x / 8] >> (7 - x % 8)) & 1;
      d[3] = bits == 32 ? s[3] : (transparent ? 0 : 255);
    }
  }
  return true;
}

}  // namespace

AlphaImage::AlphaImage(const art::Image& image) {
  if (image.width <= 0 || image.height <= 0) return;
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof(bi.bmiHeader);
  bi.bmiHeader.biWidth = image.width;
  bi.bmiHeader.biHeight = -image.height;  // top-down
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 32;
  bi.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  bitmap_.Reset(CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!bitmap_ || !bits) {
    bitmap_.Reset();
    return;
  }
  width_ = image.width;
  height_ = image.height;
  // AlphaBlend wants premultiplied BGRA.
  auto* d = static_cast<uint8_t*>(bits);
  for (size_t i = 0; i < image.rgba.size(); i += 4) {
    const unsigned a = image.rgba[i + 3];
    d[i + 0] = static_cast<uint8_t>((image.rgba[i + 2] * a + 127) / 255);
    d[i + 1] = static_cast<uint8_t>((image.rgba[i + 1] * a + 127) / 255);
    d[i + 2] = static_cast<uint8_t>((image.rgba[i + 0] * a + 127) / 255);
    d[i + 3] = static_cast<uint8_t>(a);
  }
  GdiFlush();
}

void AlphaImage::Draw(HDC dc, int x, int y, BYTE opacity) const {
  if (!bitmap_) return;
  MemoryDc source(CreateCompatibleDC(dc));
  Selection select(source.Get(), bitmap_.Get());
  BLENDFUNCTION blend{AC_SRC_OVER, 0, opacity, AC_SRC_ALPHA};
  // gdi32's own entry point: msimg32 only forwards to it, and would be one more library to load.
  GdiAlphaBlend(dc, x, y, width_, height_, source.Get(), 0, 0, width_, height_, blend);
}

bool ReadIconResource(HMODULE module, int resourceId, int size, art::Image& image) {
  DWORD groupSize = 0;
  const uint8_t* group = ResourceBytes(module, MAKEINTRESOURCEW(resourceId), RT_GROUP_ICON, groupSize);
  if (!group || groupSize < 6) return false;
  const unsigned count = Le(group + 4, 2);
  // GRPICONDIRENTRY: width, height, colours, reserved, planes, bit count, bytes, id (14 bytes).
  for (unsigned i = 0; i < count && 6 + 14 * (i + 1) <= groupSize; ++i) {
    const uint8_t* e = group + 6 + 14 * i;
    const int width = e[0] ? e[0] : 256;
    if (width != size) continue;
    DWORD bytes = 0;
    const uint8_t* icon = ResourceBytes(module, MAKEINTRESOURCEW(Le(e + 12, 2)), RT_ICON, bytes);
    if (icon && DecodeIconImage(icon, bytes, size, image)) return true;
  }
  return false;
}

art::Image IconResourceImage(HMODULE module, int resourceId, int size, art::Art fallback) {
  art::Image image;
  if (module && ReadIconResource(module, resourceId, size, image)) return image;
  return art::Render(fallback, size);
}

art::Image Greyed(const art::Image& image) {
  art::Image out = image;
  for (size_t i = 0; i < out.rgba.size(); i += 4) {
    const unsigned luma =
        (out.rgba[i] * 299u + out.rgba[i + 1] * 587u + out.rgba[i + 2] * 114u) / 1000u;
    const uint8_t grey = static_cast<uint8_t>(std::min(255u, 96 + luma * 5 / 8));
    out.rgba[i] = out.rgba[i + 1] = out.rgba[i + 2] = grey;
    out.rgba[i + 3] = static_cast<uint8_t>(out.rgba[i + 3] * 3 / 5);
  }
  return out;
}

}  // namespace mq::win32
