#include "ui/IconArt.h"


#include <algorithm>
#include <cmath>

namespace mq::art {
namespace {

// A gem paperclip standing upright: four legs x0 < x1 < x2 < x3 spaced `gap` apart, a wide
// bend at the bottom (x0-x3), one at the top (x1-x3) and a narrow inner one (x1-x2). Tiny
// clips have three legs (no inner bend), which stay readable where four would merge.
struct ClipGeometry {
  double x0, gap, top, bottom;
  double layoutHalfWidth;
  int legs;
};

Shape ClipWire(const ClipGeometry& c, double hw) {
  const double g = c.gap, x0 = c.x0, x1 = x0 + g, x2 = x1 + g, x3 = x2 + g;
  if (c.legs == 3) {
    const double yT = c.top + c.layoutHalfWidth + g / 2;
    const double yB = c.bottom - c.layoutHalfWidth - g;
    Shape s = Arc({x1, yB}, g, 0, 180, hw);
    s = Union(s, Arc({(x1 + x2) / 2, yT}, g / 2, 180, 180, hw));
    s = Union(s, Segment({x0, yB}, {x0, yT + 0.2 * (yB - yT)}, hw));
    s = Union(s, Segment({x2, yB}, {x2, yT}, hw));
    s = Union(s, Segment({x1, yT}, {x1, yT + 0.7 * (yB - yT)}, hw));
    return s;
  }
  const double r1 = 1.5 * g, r2 = g, r3 = 0.5 * g;
  const double yT = c.top + c.layoutHalfWidth + r2;
  const double yB = c.bottom - c.layoutHalfWidth - r1;
  const double yI = yT + 0.58 * (yB - yT);
  const double yEnd0 = yT + 0.35 * (yB - yT);  // outer leg's free end
  const double yEnd2 = yT + 0.12 * (yB - yT);  // inner leg's free end
  Shape s = Arc({(x0 + x3) / 2, yB}, r1, 0, 180, hw);
  s = Union(s, Arc({(x1 + x3) / 2, yT}, r2, 180, 180, hw));
  s = Union(s, Arc({(x1 + x2) / 2, yI}, r3, 0, 180, hw));
  s = Union(s, Segment({x0, yB}, {x0, yEnd0}, hw));
  s = Union(s, Segment({x3, yB}, {x3, yT}, hw));
  s = Union(s, Segment({x1, yT}, {x1, yI}, hw));
  s = Union(s, Segment({x2, yI}, {x2, yEnd2}, hw));
  return s;
}

struct ClipColours {
  uint32_t light, dark, outline;
};

constexpr ClipColours kBlueClip{0x5AA2FF, 0x1C4FC9, 0x15337F};
constexpr ClipColours kGreyClip{0xB4BAC4, 0x6B717C, 0x434852};

// The clip's long axis is tilted `tilt` degrees clockwise from upright, centred on `centre`;
// `length` is its extent along that axis.
// A dark outline keeps the wire apart from what lies under it; small sizes go without.
void DrawClip(Canvas& canvas, Vec centre, double length, double tilt, const ClipColours& colours,
              int size, bool outline, int legs = 4) {
  const double hw = std::max(0.7, length * 0.045);
  double gap = std::max(2.6, length * 0.14);
  if (size < 48 && tilt == 0) gap = std::round(gap);  // every leg on the same pixel phase
  const double width = (legs - 1) * gap + 2 * hw;
  double x0 = centre.x - width / 2 + hw;
  if (size < 48 && tilt == 0) {
    // Legs on pixel centres for odd wire widths, on pixel edges for even ones.
    const long w = std::lround(2 * hw);
    x0 = (w % 2) ? std::floor(x0) + 0.5 : std::round(x0);
  }
  const ClipGeometry geo{x0, gap, centre.y - length / 2, centre.y + length / 2, hw, legs};
  auto place = [&](Shape s) { return tilt == 0 ? s : Rotate(std::move(s), centre, tilt); };

  const Shape wire = place(ClipWire(geo, hw));
  if (outline) {
    canvas.Fill(Grow(wire, std::max(0.55, hw * 0.28)), Solid(Rgb(colours.outline)));
  }
  const Vec a{centre.x - length / 2, centre.y - length / 2};
  const Vec b{centre.x + length / 2, centre.y + length / 2};
  // Small sizes get the darker half of the gradient only: a pale wire would fade away.
  const Colour light = size >= 24 ? Rgb(colours.light) : Rgb(colours.dark);
  canvas.Fill(wire, Linear(a, light, b, Rgb(colours.outline)));
  if (size >= 32) {
    // A thin light line along the wire, shifted up and left, reads as a round wire.
    const Shape shine = place(Move(ClipWire(geo, hw * 0.32), {-hw * 0.3, -hw * 0.3}));
    canvas.Fill(Intersect(shine, wire), Solid(Rgb(0xFFFFFF, 0.55)));
  }
}

// A round badge or button: a disc with a vertical gradient and a darker rim.
void DrawDisc(Canvas& canvas, Vec c, double r, uint32_t light, uint32_t dark, uint32_t rim,
              int size) {
  canvas.Fill(Circle(c, r), Solid(Rgb(rim)));
  const double inset = size >= 20 ? std::max(0.8, r * 0.09) : 0.6;
  canvas.Fill(Circle(c, r - inset),
              Linear({c.x, c.y - r}, Rgb(light), {c.x, c.y + r}, Rgb(dark)));
  if (size >= 24) {
    // Soft gloss on the upper half.
    canvas.Fill(Intersect(Circle(c, r - inset), Circle({c.x, c.y - r * 0.9}, r * 0.95)),
                Solid(Rgb(0xFFFFFF, 0.18)));
  }
}

void DrawStopBadge(Canvas& canvas, double s, int size) {
  const Vec c{s * 0.675, s * 0.675};
  const double r = s * 0.27;
  canvas.Fill(Circle(c, r + std::max(0.8, s * 0.045)), Solid(Rgb(0xFFFFFF)));
  DrawDisc(canvas, c, r, 0xF05252, 0xB91C1C, 0x8E1515, size);
  const double bar = std::max(0.75, s * 0.045);
  canvas.Fill(Segment({c.x - r * 0.55, c.y}, {c.x + r * 0.55, c.y}, bar), Solid(Rgb(0xFFFFFF)));
}

Image ClipImage(int size, bool enabled) {
  const double s = size;
  Canvas canvas(size, size);
  DrawClip(canvas, {s * 0.5, s * 0.5}, s * 0.92, 40, enabled ? kBlueClip : kGreyClip, size,
           size >= 24);
  if (!enabled) DrawStopBadge(canvas, s, size);
  return canvas.ToImage();
}

Image ClipListImage(int size) {
  const double s = size;
  Canvas canvas(size, size);
  // The sheet, with a folded-paper feel from a faint gradient.
  // Small sizes leave the clip room to the left of the sheet.
  const double l = std::round(s * (size < 32 ? 0.30 : 0.16)), t = std::round(s * 0.10);
  const double r = std::round(s * 0.90), b = std::round(s * 0.95);
  const double edge = std::max(1.0, std::round(s / 24));
  canvas.Fill(RoundRect(l, t, r, b, s * 0.06), Solid(Rgb(0x7C8696)));
  canvas.Fill(RoundRect(l + edge, t + edge, r - edge, b - edge, s * 0.04),
              Linear({l, t}, Rgb(0xFFFFFF), {r, b}, Rgb(0xE4E9F0)));
  // List lines: one per row, on whole pixels so they stay sharp.
  const double lineHalf = std::max(0.5, std::round(s / 16) / 2);
  const double step = (b - t) / 5.2;
  for (int i = 0; i < 4; ++i) {
    const double y = std::round(t + step * (1.3 + i)) + (std::lround(2 * lineHalf) % 2 ? 0.5 : 0);
    const double x1 = (i == 3 ? l + (r - l) * 0.62 : r - (r - l) * 0.18);
    canvas.Fill(RoundRect(l + (r - l) * 0.40, y - lineHalf, x1, y + lineHalf, lineHalf),
                Solid(Rgb(0x5F8FCF)));
  }
  // The clip holds the sheet's left edge.
  if (size < 32)
    DrawClip(canvas, {l, s * 0.41}, s * 0.70, 0, kBlueClip, size, size >= 24, 3);
  else
    DrawClip(canvas, {l + s * 0.04, s * 0.37}, s * 0.62, 0, kBlueClip, size, true);
  return canvas.ToImage();
}

Image GearImage(int size) {
  const double s = size;
  const Vec c{s * 0.5, s * 0.5};
  const double body = s * 0.31, tip = s * 0.47, toothHalf = s * 0.085;
  Shape gear = Circle(c, body);
  for (int i = 0; i < 8; ++i) {
    Shape tooth = RoundRect(c.x - toothHalf, c.y - tip, c.x + toothHalf, c.y, s * 0.03);
    gear = Union(gear, Rotate(tooth, c, 45.0 * i + 22.5));
  }
  gear = Subtract(gear, Circle(c, s * 0.13));
  Canvas canvas(size, size);
  canvas.Fill(gear, Solid(Rgb(0x3B4656)));
  canvas.Fill(Grow(gear, -std::max(0.75, s * 0.04)),
              Linear({0, 0}, Rgb(0xA9B6C8), {s, s}, Rgb(0x5B6A80)));
  return canvas.ToImage();
}

Image InfoImage(int size) {
  const double s = size;
  Canvas canvas(size, size);
  const Vec c{s * 0.5, s * 0.5};
  DrawDisc(canvas, c, s * 0.47, 0x6AAEFF, 0x1D4ED8, 0x173C9E, size);
  const Colour white = Rgb(0xFFFFFF);
  canvas.Fill(Circle({c.x, s * 0.28}, s * 0.075), Solid(white));
  canvas.Fill(Segment({c.x, s * 0.45}, {c.x, s * 0.73}, s * 0.07), Solid(white));
  return canvas.ToImage();
}

Image ExitImage(int size) {
  const double s = size;
  Canvas canvas(size, size);
  const Vec c{s * 0.5, s * 0.5};
  DrawDisc(canvas, c, s * 0.47, 0xFF7A6B, 0xD12A1F, 0x9A1A12, size);
  const Colour white = Rgb(0xFFFFFF);
  const double hw = std::max(0.75, s * 0.055);
  canvas.Fill(Arc({c.x, s * 0.53}, s * 0.21, 300, 300, hw), Solid(white));
  canvas.Fill(Segment({c.x, s * 0.24}, {c.x, s * 0.50}, hw), Solid(white));
  return canvas.ToImage();
}

Image HelpImage(int size) {
  const double s = size;
  Canvas canvas(size, size);
  const Vec c{s * 0.5, s * 0.5};
  DrawDisc(canvas, c, s * 0.47, 0x4FD69C, 0x0E8A5A, 0x0B6B46, size);
  const Colour white = Rgb(0xFFFFFF);
  const double hw = std::max(0.75, s * 0.065);
  const Vec hook{c.x, s * 0.38};
  const double r = s * 0.15;
  canvas.Fill(Arc(hook, r, 190, 250, hw), Solid(white));
  // From the hook's end (80 degrees) down to the stem.
  const Vec end{hook.x + r * 0.17365, hook.y + r * 0.98481};
  canvas.Fill(Segment(end, {c.x, s * 0.60}, hw), Solid(white));
  canvas.Fill(Circle({c.x, s * 0.76}, hw * 1.15), Solid(white));
  return canvas.ToImage();
}

}  // namespace

Image Render(Art art, int size) {
  switch (art) {
    case Art::ClipEnabled: return ClipImage(size, true);
    case Art::ClipDisabled: return ClipImage(size, false);
    case Art::ClipList: return ClipListImage(size);
    case Art::Settings: return GearImage(size);
    case Art::About: return InfoImage(size);
    case Art::Exit: return ExitImage(size);
    case Art::Help: return HelpImage(size);
  }
  return Image{};
}

void DrawBlueClip(Canvas& canvas, Vec centre, double length, double tilt, int size) {
  DrawClip(canvas, centre, length, tilt, kBlueClip, size, size >= 24, size < 24 ? 3 : 4);
}

Image Binarize(const Image& image) {
  Image out = image;
  for (size_t i = 3; i < out.rgba.size(); i += 4) out.rgba[i] = out.rgba[i] >= 128 ? 255 : 0;
  return out;
}

Image RenderCheckMark(int size, uint32_t rrggbb) {
  const double s = size;
  Canvas canvas(size, size);
  const double hw = std::max(0.7, s * 0.075);
  const Vec a{s * 0.22, s * 0.53}, b{s * 0.42, s * 0.72}, c{s * 0.80, s * 0.30};
  canvas.Fill(Union(Segment(a, b, hw), Segment(b, c, hw)), Solid(Rgb(rrggbb)));
  return canvas.ToImage();
}

Image RenderSubmenuArrow(int size, uint32_t rrggbb) {
  const double s = size;
  Canvas canvas(size, size);
  canvas.Fill(Polygon({{s * 0.38, s * 0.24}, {s * 0.68, s * 0.5}, {s * 0.38, s * 0.76}}),
              Solid(Rgb(rrggbb)));
  return canvas.ToImage();
}

bool MenuImageArt(int n, Art& art) {
  static constexpr Art kArts[] = {Art::ClipEnabled, Art::ClipDisabled, Art::Settings, Art::About,
                                  Art::Exit,        Art::ClipList,     Art::Help};
  if (n < 1 || n > 7) return false;
  art = kArts[n - 1];
  return true;
}

}  // namespace mq::art
