// The clip list window's geometry in twips: where each control sits in the expanded and the
// condensed view, the view switch's arithmetic and the resize handling. The window renders
// it at its own DPI.
#pragma once

#include <array>

namespace mq {

// A rectangle by its left, top, width and height (twips in the layout, pixels elsewhere).
struct Rect {
  int left = 0, top = 0, width = 0, height = 0;
  int Right() const { return left + width; }
  int Bottom() const { return top + height; }
  bool operator==(const Rect&) const = default;
};

// The window's controls; the arrays keep their indices (chkMenu(0) .. chkMenu(4), ...).
enum class Ctl {
  lstClip,
  chkMenu0, chkMenu1, chkMenu2, chkMenu3, chkMenu4,
  cmdFile0, cmdFile1,
  cmdOp0, cmdOp1, cmdOp2, cmdOp3,
  cbOp,
  cmdNoSel,
  rtbFormat,
  Count
};
constexpr int kControlCount = static_cast<int>(Ctl::Count);
constexpr Ctl chkMenu(int i) { return static_cast<Ctl>(static_cast<int>(Ctl::chkMenu0) + i); }
constexpr Ctl cmdFile(int i) { return static_cast<Ctl>(static_cast<int>(Ctl::cmdFile0) + i); }
constexpr Ctl cmdOp(int i) { return static_cast<Ctl>(static_cast<int>(Ctl::cmdOp0) + i); }

struct ControlPlace {
  Rect rect;
  bool visible = true;
};

struct Size {
  int width = 0, height = 0;
  bool operator==(const Size&) const = default;
};

class ListLayout {
 public:
  // The design layout: expanded, the window at its design size at (0, 0).
  ListLayout();

  static constexpr Size kDesignSize{3735, 3255};

  ControlPlace& operator[](Ctl c) { return controls_[static_cast<int>(c)]; }
  const ControlPlace& operator[](Ctl c) const { return controls_[static_cast<int>(c)]; }

  // The window: left and top on the screen, width and height, all in twips.
  Rect window;
  // shpBorder: always the whole window.
  Rect Border() const { return {0, 0, window.width, window.height}; }
  // The list's tab positions.
  std::array<int, 2> tabs{0, 10};
  bool condensed = false;

  // The screen's twips per pixel; the grab band (5 px expanded, 3 px condensed) in twips.
  void SetTwipsPerPixel(double x, double y);
  double TwipsPerPixelX() const { return twipsPerPixelX_; }
  double TwipsPerPixelY() const { return twipsPerPixelY_; }
  int GrabBandPixels() const { return condensed ? 3 : 5; }
  double GrabBandX() const { return GrabBandPixels() * twipsPerPixelX_; }
  double GrabBandY() const { return GrabBandPixels() * twipsPerPixelY_; }

  // The view switch's layout steps; the caller saves and restores the geometry around them.
  void Condense();
  void Expand();
  bool Switching() const { return switching_; }

  // The resize handling for the window's current size: minimum size, the list following the
  // size change, every other control keeping its distance from the right edge.
  void Resized(bool minimized);

  Size MinimumSize() const { return condensed ? condensedMin_ : expandedMin_; }
  Size LastSize() const { return lastSize_; }

 private:
  std::array<ControlPlace, kControlCount> controls_{};
  double twipsPerPixelX_ = 15, twipsPerPixelY_ = 15;
  Size expandedMin_ = kDesignSize;
  Size condensedMin_{};
  bool condensedMinKnown_ = false;
  Size lastSize_ = kDesignSize;
  Size listDesign_{};
  bool switching_ = false;
};

// ---- Moving and resizing with the mouse (pixels) -------------------------------------------
// What the mouse holds: an edge, a corner, or (None) the background, which moves the window.
enum class Grab { None, Left, Right, Top, Bottom, TopLeft, TopRight, BottomLeft, BottomRight };

// The grab band under a point of the window (client coordinates); corners before edges.
Grab HitTest(int x, int y, Size window, int bandX, int bandY);
// Where the cursor is put when an edge or corner is grabbed: exactly on it (screen pixels; the
// right and bottom edges lie at left + width and top + height).
void GrabPoint(Grab grab, const Rect& window, int& x, int& y);
// The window while the grabbed edges follow the cursor. The opposite edge stays; a size
// below `minimum` is not applied (the edge stops there).
Rect DragRect(Grab grab, const Rect& start, int cursorX, int cursorY, Size minimum);

}  // namespace mq
