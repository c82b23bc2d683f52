#include "ui/win32/MenuPainter.h"

#include <algorithm>
#include <cmath>

#include "platform/win32/Strings.h"

namespace mq::win32 {
namespace {

COLORREF Blend(COLORREF a, COLORREF b, double t) {
  auto mix = [t](int x, int y) { return static_cast<BYTE>(std::lround(x + (y - x) * t)); };
  return RGB(mix(GetRValue(a), GetRValue(b)), mix(GetGValue(a), GetGValue(b)),
             mix(GetBValue(a), GetBValue(b)));
}

void FillSolid(HDC dc, const RECT& rc, COLORREF colour) {
  // ExtTextOut with ETO_OPAQUE fills without a brush to create and free.
  COLORREF old = SetBkColor(dc, colour);
  ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &rc, nullptr, 0, nullptr);
  SetBkColor(dc, old);
}

void FrameSolid(HDC dc, const RECT& rc, COLORREF colour, int t) {
  FillSolid(dc, {rc.left, rc.top, rc.right, rc.top + t}, colour);
  FillSolid(dc, {rc.left, rc.bottom - t, rc.right, rc.bottom}, colour);
  FillSolid(dc, {rc.left, rc.top, rc.left + t, rc.bottom}, colour);
  FillSolid(dc, {rc.right - t, rc.top, rc.right, rc.bottom}, colour);
}

uint32_t ToArtColour(COLORREF c) {
  return (static_cast<uint32_t>(GetRValue(c)) << 16) | (GetGValue(c) << 8) | GetBValue(c);
}

int FontHeightForPoints(double points, UINT dpi) {
  return -static_cast<int>(std::lround(points * dpi / 72.0));
}

}  // namespace

MenuPainter::MenuPainter(HMODULE resources, const MenuStyle& style, UINT dpi)
    : resources_(resources), style_(style), dpi_(dpi ? dpi : 96) {
  imageSize_ = S(16);
  gutter_ = imageSize_ + S(12);
  textGap_ = S(8);
  rightPad_ = S(20);  // room for a submenu's arrow, which the system draws
  accelGap_ = S(24);
  line_ = std::max(1, S(1));
  const int textHeight = TextSize(ItemFont(false, false, false), u"Ag", false).cy;
  rowHeight_ = std::max(textHeight + S(9), imageSize_ + S(8));
  separatorHeight_ = S(9);
  labelHeight_ = TextSize(ItemFont(true, false, false), u"Ag", false).cy + S(12);
}

HFONT MenuPainter::ItemFont(bool bold, bool italic, bool underline) {
  const int key = (bold ? 1 : 0) | (italic ? 2 : 0) | (underline ? 4 : 0);
  auto& font = itemFonts_[key];
  if (!font) {
    const Text face = style_.fontName.empty() ? Text(u"Tahoma") : style_.fontName;
    font.Reset(CreateFontW(FontHeightForPoints(9, dpi_), 0, 0, 0, bold ? FW_BOLD : FW_NORMAL,
                           italic, underline, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                           CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH, W(face)));
  }
  return font.Get();
}

UniqueFont MenuPainter::SidebarFont(const SidebarLook& look, double points, bool rotated) const {
  const int angle = rotated ? 900 : 0;  // tenths of a degree: the text runs upwards
  return UniqueFont(CreateFontW(FontHeightForPoints(points, dpi_), 0, angle, angle,
                                look.bold ? 800 : 400, look.italic, look.underline, FALSE,
                                DEFAULT_CHARSET, OUT_TT_PRECIS, CLIP_DEFAULT_PRECIS,
                                CLEARTYPE_QUALITY, DEFAULT_PITCH, W(look.fontName)));
}

SIZE MenuPainter::TextSize(HFONT font, const Text& text, bool prefixes) {
  WindowDc screen;
  Selection select(screen.Get(), font);
  RECT rc{0, 0, 0, 0};
  DrawTextW(screen.Get(), W(text), static_cast<int>(text.size()), &rc,
            DT_CALCRECT | DT_SINGLELINE | (prefixes ? 0 : DT_NOPREFIX));
  return {rc.right - rc.left, rc.bottom - rc.top};
}

const AlphaImage* MenuPainter::Image(int n, bool greyed) {
  art::Art art;
  if (!art::MenuImageArt(n, art)) return nullptr;
  auto key = std::make_pair(n, greyed);
  auto it = images_.find(key);
  if (it == images_.end()) {
    art::Image image = IconResourceImage(resources_, art::kMenuImageFirst + n - 1, imageSize_, art);
    it = images_.emplace(key, AlphaImage(greyed ? Greyed(image) : image)).first;
  }
  return &it->second;
}

const AlphaImage& MenuPainter::Glyph(bool arrow, COLORREF colour) {
  const auto key = std::make_pair(arrow, colour);
  auto it = glyphs_.find(key);
  if (it == glyphs_.end()) {
    const int size = arrow ? S(16) : imageSize_;
    const uint32_t c = ToArtColour(colour);
    it = glyphs_.emplace(key, AlphaImage(arrow ? art::RenderSubmenuArrow(size, c)
                                               : art::RenderCheckMark(size, c))).first;
  }
  return it->second;
}

void MenuPainter::LayOut(MenuPane& pane) {
  if (pane.laidOut) return;
  pane.laidOut = true;
  int offset = 0;
  for (MenuNode* node : pane.nodes) {
    const ItemLook& look = node->look;
    SIZE size{};
    switch (look.kind) {
      case ItemLook::Kind::Separator:
        size = {gutter_ + S(24), separatorHeight_};
        break;
      case ItemLook::Kind::RaisedLabel:
        size = {TextSize(ItemFont(true, false, false), look.text, false).cx + S(40), labelHeight_};
        break;
      default: {
        HFONT font = ItemFont(look.bold || look.isDefault, look.italic, look.underline);
        size.cx = gutter_ + textGap_ + TextSize(font, look.text, true).cx + rightPad_;
        if (!look.accelerator.empty())
          size.cx += accelGap_ + TextSize(font, look.accelerator, false).cx;
        size.cy = rowHeight_;
      }
    }
    node->size = size;
    node->offset = offset;
    offset += size.cy;
  }
  pane.height = offset;

  if (pane.hasSidebar) {
    const int margin = S(8);
    std::map<double, std::pair<UniqueFont, int>> fonts;  // size -> font, line height
    auto fontAt = [&](double points) -> std::pair<UniqueFont, int>& {
      auto& entry = fonts[points];
      if (!entry.first) {
        entry.first = SidebarFont(pane.sidebar, points, false);
        WindowDc screen;
        Selection select(screen.Get(), entry.first.Get());
        TEXTMETRICW tm{};
        GetTextMetricsW(screen.Get(), &tm);
        entry.second = tm.tmHeight;
      }
      return entry;
    };
    SizedMeasure measure = [&](TextView line, double points) {
      Text text(line);
      return static_cast<int>(TextSize(fontAt(points).first.Get(), text, false).cx);
    };
    pane.sidebarText = LayOutSidebarText(pane.sidebar, pane.height - 2 * margin, measure);
    pane.lineLengths.clear();
    for (const Text& line : pane.sidebarText.lines)
      pane.lineLengths.push_back(measure(line, pane.sidebarText.pointSize));
    pane.lineHeight = fontAt(pane.sidebarText.pointSize).second;
    pane.sidebarFont = SidebarFont(pane.sidebar, pane.sidebarText.pointSize, true);
    const int lines = static_cast<int>(pane.sidebarText.lines.size());
    pane.sidebarWidth = std::max(S(pane.sidebar.width), lines * pane.lineHeight + S(8));
    for (MenuNode* node : pane.nodes) node->size.cx += pane.sidebarWidth;
  }
}

void MenuPainter::Draw(const DRAWITEMSTRUCT& dis, const MenuNode& node) {
  HDC dc = dis.hDC;
  {
    SavedDc saved(dc);
    SetBkMode(dc, TRANSPARENT);
    const MenuPane& pane = *node.pane;
    if (pane.hasSidebar) DrawSidebarSlice(dc, dis.rcItem, node);
    RECT content = dis.rcItem;
    content.left += pane.sidebarWidth;
    FillSolid(dc, content, GetSysColor(COLOR_MENU));
    switch (node.look.kind) {
      case ItemLook::Kind::Separator: DrawSeparator(dc, content); break;
      case ItemLook::Kind::RaisedLabel: DrawRaisedLabel(dc, content, node); break;
      default: DrawCommand(dc, content, node, dis.itemState); break;
    }
  }
  // Windows (and Wine) draw their own submenu arrow on this DC afterwards, unscaled at high
  // DPI: leaving the item out of the clip region keeps ours alone.
  if (node.hasSubmenu)
    ExcludeClipRect(dc, dis.rcItem.left, dis.rcItem.top, dis.rcItem.right, dis.rcItem.bottom);
}

void MenuPainter::FillGutter(HDC dc, const RECT& content) {
  const COLORREF menu = GetSysColor(COLOR_MENU);
  FillSolid(dc, {content.left, content.top, content.left + gutter_, content.bottom},
            Blend(menu, GetSysColor(COLOR_3DSHADOW), 0.12));
}

void MenuPainter::DrawCommand(HDC dc, const RECT& content, const MenuNode& node, UINT state) {
  const ItemLook& look = node.look;
  const COLORREF menu = GetSysColor(COLOR_MENU), highlight = GetSysColor(COLOR_HIGHLIGHT);
  FillGutter(dc, content);
  const bool selected = (state & ODS_SELECTED) && node.enabled;
  if (selected) {
    // A light fill with a frame keeps the item's image and text colours readable.
    RECT sel{content.left + S(2), content.top + S(1), content.right - S(2), content.bottom - S(1)};
    FillSolid(dc, sel, Blend(menu, highlight, 0.22));
    FrameSolid(dc, sel, highlight, line_);
  }

  const int imageX = content.left + (gutter_ - imageSize_) / 2;
  const int imageY = content.top + (content.bottom - content.top - imageSize_) / 2;
  const AlphaImage* image = Image(look.image, !node.enabled);
  if (node.checked) {
    RECT box{imageX - S(2), imageY - S(2), imageX + imageSize_ + S(2), imageY + imageSize_ + S(2)};
    FillSolid(dc, box, Blend(menu, highlight, selected ? 0.40 : 0.18));
    FrameSolid(dc, box, node.enabled ? highlight : GetSysColor(COLOR_GRAYTEXT), line_);
  }
  if (image) {
    image->Draw(dc, imageX, imageY);
  } else if (node.checked) {
    Glyph(false, GetSysColor(node.enabled ? COLOR_MENUTEXT : COLOR_GRAYTEXT)).Draw(dc, imageX, imageY);
  }

  HFONT font = ItemFont(look.bold || look.isDefault, look.italic, look.underline);
  Selection select(dc, font);
  SetTextColor(dc, GetSysColor(node.enabled ? COLOR_MENUTEXT : COLOR_GRAYTEXT));
  const UINT flags = DT_SINGLELINE | DT_VCENTER | DT_NOCLIP | ((state & ODS_NOACCEL) ? DT_HIDEPREFIX : 0);
  RECT text{content.left + gutter_ + textGap_, content.top, content.right - rightPad_, content.bottom};
  DrawTextW(dc, W(look.text), static_cast<int>(look.text.size()), &text, flags | DT_LEFT);
  if (!look.accelerator.empty())
    DrawTextW(dc, W(look.accelerator), static_cast<int>(look.accelerator.size()), &text,
              flags | DT_RIGHT | DT_NOPREFIX);
  if (node.hasSubmenu) {
    const AlphaImage& arrow = Glyph(true, GetSysColor(node.enabled ? COLOR_MENUTEXT : COLOR_GRAYTEXT));
    arrow.Draw(dc, content.right - rightPad_ + (rightPad_ - arrow.Width()) / 2,
               (content.top + content.bottom - arrow.Height()) / 2);
  }
}

void MenuPainter::DrawSeparator(HDC dc, const RECT& content) {
  FillGutter(dc, content);
  const int y = (content.top + content.bottom) / 2 - line_;
  const int left = content.left + gutter_ + textGap_, right = content.right - S(6);
  FillSolid(dc, {left, y, right, y + line_}, GetSysColor(COLOR_3DSHADOW));
  FillSolid(dc, {left, y + line_, right, y + 2 * line_}, GetSysColor(COLOR_3DHIGHLIGHT));
}

void MenuPainter::DrawRaisedLabel(HDC dc, const RECT& content, const MenuNode& node) {
  // A raised panel: light edges top and left, shadow bottom and right.
  RECT panel{content.left + S(4), content.top + S(3), content.right - S(4), content.bottom - S(3)};
  const COLORREF face = GetSysColor(COLOR_3DFACE);
  FillSolid(dc, panel, Blend(face, GetSysColor(COLOR_3DHIGHLIGHT), 0.35));
  const int t = line_;
  FillSolid(dc, {panel.left, panel.top, panel.right, panel.top + t}, GetSysColor(COLOR_3DHIGHLIGHT));
  FillSolid(dc, {panel.left, panel.top, panel.left + t, panel.bottom}, GetSysColor(COLOR_3DHIGHLIGHT));
  FillSolid(dc, {panel.left, panel.bottom - t, panel.right, panel.bottom}, GetSysColor(COLOR_3DSHADOW));
  FillSolid(dc, {panel.right - t, panel.top, panel.right, panel.bottom}, GetSysColor(COLOR_3DSHADOW));
  Selection select(dc, ItemFont(true, false, false));
  SetTextColor(dc, static_cast<COLORREF>(style_.raisedLabelColor & 0xFFFFFF));
  DrawTextW(dc, W(node.look.text), static_cast<int>(node.look.text.size()), &panel,
            DT_SINGLELINE | DT_VCENTER | DT_CENTER | DT_NOPREFIX | DT_NOCLIP);
}

void MenuPainter::DrawSidebarSlice(HDC dc, const RECT& item, const MenuNode& node) {
  const MenuPane& pane = *node.pane;
  const SidebarLook& look = pane.sidebar;
  const LONG top = item.top - node.offset, bottom = top + pane.height;
  RECT slice{item.left, item.top, item.left + pane.sidebarWidth, item.bottom};
  // The first and last slices reach over the menu's inner padding, so the bar runs from
  // edge to edge.
  RECT client{};
  if (HWND menuWindow = WindowFromDC(dc); menuWindow && GetClientRect(menuWindow, &client)) {
    if (&node == pane.nodes.front()) slice.top = std::min(slice.top, client.top);
    if (&node == pane.nodes.back()) slice.bottom = std::max(slice.bottom, client.bottom);
  }
  SavedDc saved(dc);
  IntersectClipRect(dc, slice.left, slice.top, slice.right, slice.bottom);
  const RECT bar{slice.left, std::min(top, slice.top), slice.right, std::max(bottom, slice.bottom)};
  const COLORREF back = look.systemBackColour ? GetSysColor(COLOR_MENU) : look.backColour & 0xFFFFFF;
  if (look.gradient)
    FillVerticalGradient(dc, bar, back, look.gradientColour & 0xFFFFFF);
  else
    FillSolid(dc, bar, back);

  Selection select(dc, pane.sidebarFont.Get());
  SetTextColor(dc, look.textColour & 0xFFFFFF);
  SetTextAlign(dc, TA_LEFT | TA_TOP | TA_NOUPDATECP);
  // With the text turned upwards, its glyphs' tops face left: line i starts at x and runs up
  // from y. The lines sit side by side, centred across the bar.
  const int margin = S(8);
  const int lines = static_cast<int>(pane.sidebarText.lines.size());
  int x = slice.left + (pane.sidebarWidth - lines * pane.lineHeight) / 2;
  for (int i = 0; i < lines; ++i, x += pane.lineHeight) {
    const Text& line = pane.sidebarText.lines[i];
    const int length = pane.lineLengths[i];
    int y = (top + bottom + length) / 2;
    if (look.align == SidebarLook::Align::Bottom) y = bottom - margin;
    if (look.align == SidebarLook::Align::Top) y = top + margin + length;
    ExtTextOutW(dc, x, y, 0, nullptr, W(line), static_cast<UINT>(line.size()), nullptr);
  }
}

}  // namespace mq::win32
