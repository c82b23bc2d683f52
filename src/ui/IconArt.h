// The program's images, drawn by code in a paperclip theme: the tray images (icons 101-104),
// the clip list window's icon (105), the menu images I1..I7 (201..207) and the menu's check
// mark. tools/icongen writes the .ico files that the resource script embeds; the Win32 shell
// also renders from here at any size a resource lacks.
#pragma once

#include <string>
#include <vector>

#include "ui/Raster.h"

namespace mq::art {

// Icon resource numbers (as in res/resource.h); menu image "In" is kMenuImageFirst + n - 1.
constexpr int kTrayEnabledIcon = 101;
constexpr int kTrayDisabledIcon = 102;
constexpr int kTrayEnabledClassicIcon = 103;
constexpr int kTrayDisabledClassicIcon = 104;
constexpr int kListWindowIcon = 105;
constexpr int kMenuImageFirst = 201;

enum class Art {
  ClipEnabled,   // blue paperclip: capturing is on
  ClipDisabled,  // grey paperclip with a red stop mark: capturing is off
  ClipList,      // a sheet with list lines and a paperclip
  Settings,      // gear
  About,         // "i" on a blue disc
  Exit,          // power sign on a red disc
  Help,          // "?" on a green disc
};

Image Render(Art art, int size);

// The program's blue paperclip, tilted `tilt` degrees clockwise, for images drawn elsewhere.
void DrawBlueClip(Canvas& canvas, Vec centre, double length, double tilt, int size);

// Pre-XP systems draw icons with a mask only: every pixel is either opaque or not.
Image Binarize(const Image& image);

// The check mark of checked menu items, in the given 0xRRGGBB colour.
Image RenderCheckMark(int size, uint32_t rrggbb);
// The arrow of an item that opens a submenu, pointing right.
Image RenderSubmenuArrow(int size, uint32_t rrggbb);

// The art behind menu image token "In": I1..I7. False for any other number.
bool MenuImageArt(int n, Art& art);

enum class IcoDepth { Alpha32, Masked24 };
// Images with alpha of `pngFrom` pixels and more are stored as PNG streams, as the system's
// own icons store their large images: Vista and later (and Wine) read PNG at any size, and
// PNG is lossless, so they stay pixel for pixel the same at a fraction of the bytes. The
// smaller ones stay bitmaps, which the program's own reader (IconResourceImage) takes as
// they are; for a PNG entry it draws the same art instead.
// An .ico file holding the images (largest last is not required; order is kept).
std::string EncodeIco(const std::vector<Image>& images, IcoDepth depth, int pngFrom);

// Where RenderIconFiles starts storing PNG: the tray and window icons, which the system loads
// (at 16 and 32 px during start-up), from 48 px; the menu images, which only the program's own
// reader takes, from 28 px, their 175 % step: the common steps stay bitmaps it reads as they are.
constexpr int kIconPngFrom = 48;
constexpr int kMenuPngFrom = 28;

struct IconFile {
  std::string name;  // starts with the resource number, e.g. "101-tray-enabled.ico"
  int resourceId = 0;
  std::string bytes;
};
std::vector<IconFile> RenderIconFiles();

}  // namespace mq::art
