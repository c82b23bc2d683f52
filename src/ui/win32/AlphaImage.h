// Images with an alpha channel on Win32: the program's icon resources read at an exact pixel
// size, and a premultiplied DIB section that AlphaBlend draws.
#pragma once

#include <windows.h>

#include "platform/win32/Gdi.h"
#include "ui/IconArt.h"

namespace mq::win32 {

class AlphaImage {
 public:
  AlphaImage() = default;
  explicit AlphaImage(const art::Image& image);
  bool Empty() const { return !bitmap_; }
  int Width() const { return width_; }
  int Height() const { return height_; }
  void Draw(HDC dc, int x, int y, BYTE opacity = 255) const;

 private:
  UniqueBitmap bitmap_;
  int width_ = 0, height_ = 0;
};

// The icon resource's own image of exactly `size` pixels (32-bit with alpha, or 24-bit with a
// mask) when the module has one. Sizes the resource lacks are drawn from `fallback`, so an
// image never gets blurred by scaling at an unusual DPI.
art::Image IconResourceImage(HMODULE module, int resourceId, int size, art::Art fallback);

// Reads the image of `size` pixels from an icon resource; false when there is none.
bool ReadIconResource(HMODULE module, int resourceId, int size, art::Image& image);

// Disabled look: grey, lighter and partly transparent.
art::Image Greyed(const art::Image& image);

}  // namespace mq::win32
