#include "listwindow/ListLayout.h"

#include <algorithm>

namespace mq {

namespace {
constexpr int kExpandedMargin = 120, kCondensedMargin = 45, kGap = 45;
constexpr int kCondensedListWidth = 1500;
}  // namespace

ListLayout::ListLayout() {
  auto& c = *this;
  c[Ctl::lstClip].rect = {120, 120, 2415, 3015};
  for (int i = 0; i < 3; ++i) c[chkMenu(i)].rect = {2640 + 360 * i, 120, 315, 315};
  c[cmdFile(1)].rect = {2640, 480, 495, 375};
  c[cmdFile(0)].rect = {3120, 480, 495, 375};
  c[cmdOp(2)].rect = {2640, 915, 975, 375};
  c[cmdOp(3)].rect = {2640, 1290, 975, 375};
  c[Ctl::cbOp].rect = {2640, 1665, 975, 315};
  c[cmdOp(1)].rect = {2640, 2040, 975, 375};
  c[cmdOp(0)].rect = {2640, 2400, 975, 375};
  c[Ctl::cmdNoSel].rect = {2640, 2760, 975, 375};
  c[chkMenu(3)] = {{2520, 720, 315, 315}, false};
  c[chkMenu(4)] = {{3480, 720, 315, 315}, false};
  c[Ctl::rtbFormat] = {{3480, 3000, 375, 375}, false};
  window = {0, 0, kDesignSize.width, kDesignSize.height};
  listDesign_ = {c[Ctl::lstClip].rect.width, c[Ctl::lstClip].rect.height};
}

void ListLayout::SetTwipsPerPixel(double x, double y) {
  twipsPerPixelX_ = x;
  twipsPerPixelY_ = y;
}

void ListLayout::Condense() {
  switching_ = true;
  auto& c = *this;
  Rect& list = c[Ctl::lstClip].rect;
  tabs = {0, 6};
  list.width = kCondensedListWidth;
  list.left = kCondensedMargin;
  list.top = kCondensedMargin;
  // The five toggles in one column to the list's right.
  int top = list.top;
  for (int i = 0; i < 5; ++i) {
    Rect& button = c[chkMenu(i)].rect;
    button.left = list.width + 90;
    button.top = top;
    top = button.top + button.height + kGap;
  }
  list.height = c[chkMenu(4)].rect.Bottom() - kCondensedMargin;
  c[chkMenu(3)].visible = c[chkMenu(4)].visible = true;
  for (Ctl hidden : {cmdOp(0), cmdOp(1), cmdOp(2), cmdOp(3), cmdFile(0), cmdFile(1), Ctl::cmdNoSel,
                     Ctl::cbOp})
    c[hidden].visible = false;
  window.width = c[chkMenu(0)].rect.width + list.width + 135;
  window.height = list.height + 90;
  lastSize_ = {window.width, window.height};
  if (!condensedMinKnown_) {
    condensedMin_ = lastSize_;
    condensedMinKnown_ = true;
  }
  condensed = true;
  switching_ = false;
}

void ListLayout::Expand() {
  switching_ = true;
  auto& c = *this;
  c[chkMenu(3)].visible = c[chkMenu(4)].visible = false;
  tabs = {0, 10};
  Rect& list = c[Ctl::lstClip].rect;
  list = {kExpandedMargin, kExpandedMargin, listDesign_.width, listDesign_.height};
  // The toggles in a row at the list's top, where the design has them.
  c[chkMenu(0)].rect.top = list.top;
  c[chkMenu(0)].rect.left = list.Right() + 105;
  for (int i = 1; i < 3; ++i) {
    const Rect& previous = c[chkMenu(i - 1)].rect;
    c[chkMenu(i)].rect.top = list.top;
    c[chkMenu(i)].rect.left = previous.Right() + kGap;
  }
  int column = c[chkMenu(0)].rect.left;
  for (Ctl shown : {cmdOp(0), cmdOp(1), cmdOp(2), cmdOp(3), cmdFile(1), Ctl::cmdNoSel, Ctl::cbOp}) {
    c[shown].rect.left = column;
    c[shown].visible = true;
  }
  c[cmdFile(0)].rect.left = c[cmdFile(1)].rect.Right() - 15;
  c[cmdFile(0)].visible = true;
  window.width = c[Ctl::cmdNoSel].rect.Right() + kExpandedMargin;
  window.height = list.Bottom() + kExpandedMargin;
  lastSize_ = {window.width, window.height};
  condensed = false;
  switching_ = false;
}

void ListLayout::Resized(bool minimized) {
  if (minimized || switching_) return;
  Size minimum = MinimumSize();
  int margin = condensed ? kCondensedMargin : kExpandedMargin;
  window.width = std::max(window.width, minimum.width);
  window.height = std::max(window.height, minimum.height);
  int dw = window.width - lastSize_.width, dh = window.height - lastSize_.height;
  auto& c = *this;
  Rect& list = c[Ctl::lstClip].rect;
  list.left = margin;
  list.top = margin;
  list.width += dw;
  list.height += dh;
  for (int i = 0; i < kControlCount; ++i)
    if (static_cast<Ctl>(i) != Ctl::lstClip) controls_[i].rect.left += dw;
  lastSize_ = {window.width, window.height};
}

Grab HitTest(int x, int y, Size window, int bandX, int bandY) {
  if (x < 0 || y < 0 || x >= window.width || y >= window.height) return Grab::None;
  bool left = x < bandX, right = x >= window.width - bandX;
  bool top = y < bandY, bottom = y >= window.height - bandY;
  if (top && left) return Grab::TopLeft;
  if (top && right) return Grab::TopRight;
  if (bottom && left) return Grab::BottomLeft;
  if (bottom && right) return Grab::BottomRight;
  if (left) return Grab::Left;
  if (right) return Grab::Right;
  if (top) return Grab::Top;
  if (bottom) return Grab::Bottom;
  return Grab::None;
}

namespace {
bool GrabsLeft(Grab g) { return g == Grab::Left || g == Grab::TopLeft || g == Grab::BottomLeft; }
bool GrabsRight(Grab g) { return g == Grab::Right || g == Grab::TopRight || g == Grab::BottomRight; }
bool GrabsTop(Grab g) { return g == Grab::Top || g == Grab::TopLeft || g == Grab::TopRight; }
bool GrabsBottom(Grab g) {
  return g == Grab::Bottom || g == Grab::BottomLeft || g == Grab::BottomRight;
}
}  // namespace

void GrabPoint(Grab grab, const Rect& window, int& x, int& y) {
  if (GrabsLeft(grab)) x = window.left;
  if (GrabsRight(grab)) x = window.Right();
  if (GrabsTop(grab)) y = window.top;
  if (GrabsBottom(grab)) y = window.Bottom();
}

Rect DragRect(Grab grab, const Rect& start, int cursorX, int cursorY, Size minimum) {
  Rect r = start;
  if (GrabsLeft(grab)) {
    r.width = std::max(start.Right() - cursorX, minimum.width);
    r.left = start.Right() - r.width;
  } else if (GrabsRight(grab)) {
    r.width = std::max(cursorX - start.left, minimum.width);
  }
  if (GrabsTop(grab)) {
    r.height = std::max(start.Bottom() - cursorY, minimum.height);
    r.top = start.Bottom() - r.height;
  } else if (GrabsBottom(grab)) {
    r.height = std::max(cursorY - start.top, minimum.height);
  }
  return r;
}

}  // namespace mq
