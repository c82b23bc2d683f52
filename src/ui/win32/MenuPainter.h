// Measuring and drawing of the owner-drawn menu items at one DPI: item rows with their image
// column, check marks, default (bold) and disabled items, separators, raised labels, and the
// sidebar that runs down a menu's left edge.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/MenuItem.h"
#include "platform/win32/Gdi.h"
#include "ui/MenuLook.h"
#include "ui/win32/AlphaImage.h"

namespace mq::win32 {

struct MenuPane;

// One visible item of a menu as the engine shows it.
struct MenuNode {
  ItemLook look;
  bool enabled = true;
  bool checked = false;
  bool hasSubmenu = false;
  MenuPane* pane = nullptr;
  int offset = 0;  // from the top of the pane's first item
  SIZE size{};
};

// One popup menu (the root or a submenu).
struct MenuPane {
  std::vector<MenuNode*> nodes;
  bool hasSidebar = false;
  SidebarLook sidebar;
  SidebarTextLayout sidebarText;
  std::vector<int> lineLengths;  // measured along the text
  int lineHeight = 0;
  UniqueFont sidebarFont;        // turned to run upwards
  int sidebarWidth = 0;
  int height = 0;  // of all items together
  bool laidOut = false;
  HMENU menu = nullptr;
};

class MenuPainter {
 public:
  MenuPainter(HMODULE resources, const MenuStyle& style, UINT dpi);
  UINT Dpi() const { return dpi_; }

  // Measures every item of the pane and its sidebar (once).
  void LayOut(MenuPane& pane);
  void Draw(const DRAWITEMSTRUCT& dis, const MenuNode& node);

 private:
  int S(int value96) const { return MulDiv(value96, static_cast<int>(dpi_), 96); }
  HFONT ItemFont(bool bold, bool italic, bool underline);
  UniqueFont SidebarFont(const SidebarLook& look, double points, bool rotated) const;
  SIZE TextSize(HFONT font, const Text& text, bool prefixes);
  const AlphaImage* Image(int n, bool greyed);
  const AlphaImage& Glyph(bool arrow, COLORREF colour);

  void DrawSidebarSlice(HDC dc, const RECT& item, const MenuNode& node);
  void DrawCommand(HDC dc, const RECT& content, const MenuNode& node, UINT state);
  void DrawSeparator(HDC dc, const RECT& content);
  void DrawRaisedLabel(HDC dc, const RECT& content, const MenuNode& node);
  void FillGutter(HDC dc, const RECT& content);

  HMODULE resources_;
  MenuStyle style_;
  UINT dpi_;
  int imageSize_, gutter_, textGap_, rightPad_, accelGap_, rowHeight_, separatorHeight_,
      labelHeight_, line_;
  std::map<int, UniqueFont> itemFonts_;
  std::map<std::pair<int, bool>, AlphaImage> images_;
  std::map<std::pair<bool, COLORREF>, AlphaImage> glyphs_;
};

}  // namespace mq::win32
