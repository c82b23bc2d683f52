#include "ui/ButtonArt.h"

#include <algorithm>
#include <cmath>

#include "ui/IconArt.h"

namespace mq::art {
namespace {

// Outlines on whole pixels so that small buttons stay sharp.
double Px(double v) { return std::round(v); }

// A window: grey frame, white list with rows on the left, a column of buttons on the right.
void DrawWindow(Canvas& c, double s, double l, double r, int buttons, double buttonWidth) {
  const double t = Px(s * 0.14), b = Px(s * 0.86), edge = std::max(1.0, Px(s / 20));
  c.Fill(RoundRect(Px(l), t, Px(r), b, s * 0.05), Solid(Rgb(0x56657A)));
  c.Fill(RoundRect(Px(l) + edge, t + edge, Px(r) - edge, b - edge, s * 0.03),
         Linear({0, t}, Rgb(0xF3F6FA), {0, b}, Rgb(0xD9E0EA)));
  const double listR = Px(r - edge - s * 0.06 - buttonWidth - s * 0.05);
  const double inL = Px(l) + edge + Px(s * 0.06), inT = t + edge + Px(s * 0.06);
  const double inB = b - edge - Px(s * 0.06);
  c.Fill(RoundRect(inL, inT, listR, inB, 0), Solid(Rgb(0xFFFFFF)));
  const double line = std::max(1.0, Px(s / 16));
  for (int i = 0; i < 4; ++i) {
    const double y = Px(inT + (inB - inT) * (i + 0.7) / 4.4);
    c.Fill(RoundRect(inL + line, y, listR - line * (i == 3 ? 3 : 1), y + line, 0),
           Solid(Rgb(0x5F8FCF)));
  }
  const double bl = listR + Px(s * 0.05), br = bl + Px(buttonWidth);
  const double step = (inB - inT) / buttons;
  for (int i = 0; i < buttons; ++i) {
    const double y0 = Px(inT + step * i), y1 = Px(inT + step * (i + 1)) - std::max(1.0, Px(s / 24));
    c.Fill(RoundRect(bl, y0, br, y1, s * 0.02), Solid(Rgb(0x8C99AD)));
  }
}

Image View(int size, bool condensed) {
  const double s = size;
  Canvas c(size, size);
  if (condensed)
    DrawWindow(c, s, s * 0.22, s * 0.78, 5, s * 0.12);
  else
    DrawWindow(c, s, s * 0.04, s * 0.96, 3, s * 0.30);
  return c.ToImage();
}

// A round badge at the lower right, with a white rim that parts it from the clip.
void Badge(Canvas& c, double s, uint32_t light, uint32_t dark) {
  const Vec centre{s * 0.70, s * 0.70};
  const double r = s * 0.25;
  c.Fill(Circle(centre, r + std::max(0.8, s * 0.05)), Solid(Rgb(0xFFFFFF)));
  c.Fill(Circle(centre, r), Linear({centre.x, centre.y - r}, Rgb(light), {centre.x, centre.y + r},
                                   Rgb(dark)));
}

Image Paste(int size, bool deleteIt) {
  const double s = size;
  Canvas c(size, size);
  DrawBlueClip(c, {s * 0.36, s * 0.42}, s * 0.78, 0, size);
  Badge(c, s, deleteIt ? 0xF05252 : 0x4ADE80, deleteIt ? 0xB91C1C : 0x15803D);
  const Vec m{s * 0.70, s * 0.70};
  const double hw = std::max(0.8, s * 0.05), k = s * 0.11;
  const Paint white = Solid(Rgb(0xFFFFFF));
  if (deleteIt) {
    c.Fill(Union(Segment({m.x - k, m.y - k}, {m.x + k, m.y + k}, hw),
                 Segment({m.x - k, m.y + k}, {m.x + k, m.y - k}, hw)),
           white);
  } else {
    // Down to the end of the queue: an arrow onto a bar.
    c.Fill(Segment({m.x, m.y - k * 1.2}, {m.x, m.y + k * 0.2}, hw), white);
    c.Fill(Polygon({{m.x - k, m.y - k * 0.1}, {m.x + k, m.y - k * 0.1}, {m.x, m.y + k * 0.9}}),
           white);
    c.Fill(Segment({m.x - k, m.y + k * 1.25}, {m.x + k, m.y + k * 1.25}, hw * 0.8), white);
  }
  return c.ToImage();
}

Image Pin(int size, bool in) {
  const double s = size;
  Canvas c(size, size);
  const Paint steel = Linear({0, 0}, Rgb(0xC8CDD5), {s, s}, Rgb(0x6B717C));
  const double hw = std::max(0.6, s * 0.04);
  Vec head, tip;
  if (in) {
    // Pushed into a board: the needle ends at the board's edge.
    const double board = Px(s * 0.72);
    c.Fill(RoundRect(s * 0.12, board, s * 0.88, board + std::max(2.0, Px(s * 0.12)), s * 0.03),
           Solid(Rgb(0x8B5E34)));
    head = {s * 0.5, s * 0.30};
    tip = {s * 0.5, board};
  } else {
    head = {s * 0.64, s * 0.34};
    tip = {s * 0.20, s * 0.84};
  }
  c.Fill(Segment(head, tip, hw), steel);
  const double r = s * 0.21;
  c.Fill(Circle(head, r + std::max(0.6, s * 0.03)), Solid(Rgb(0x7F1D1D)));
  c.Fill(Circle(head, r), Linear({head.x, head.y - r}, Rgb(0xF87171), {head.x, head.y + r},
                                 Rgb(0xB91C1C)));
  if (size >= 20)
    c.Fill(Circle({head.x - r * 0.35, head.y - r * 0.35}, r * 0.28), Solid(Rgb(0xFFFFFF, 0.55)));
  return c.ToImage();
}

Image Save(int size) {
  const double s = size;
  Canvas c(size, size);
  const double l = Px(s * 0.16), t = Px(s * 0.12), r = Px(s * 0.88), b = Px(s * 0.90);
  c.Fill(RoundRect(l, t, r, b, s * 0.07), Linear({l, t}, Rgb(0x3B6FD1), {r, b}, Rgb(0x1E3A8A)));
  // The label and the shutter.
  c.Fill(RoundRect(Px(l + s * 0.12), t, Px(r - s * 0.12), Px(t + s * 0.36), s * 0.02),
         Solid(Rgb(0xF3F6FA)));
  c.Fill(RoundRect(Px(l + s * 0.18), Px(b - s * 0.28), Px(r - s * 0.18), b, 0),
         Solid(Rgb(0xAEB6C2)));
  c.Fill(RoundRect(Px(l + s * 0.42), Px(b - s * 0.24), Px(l + s * 0.52), Px(b - s * 0.04), 0),
         Solid(Rgb(0x1E3A8A)));
  DrawBlueClip(c, {l + s * 0.06, s * 0.30}, s * 0.46, 0, size);
  return c.ToImage();
}

Image Load(int size) {
  const double s = size;
  Canvas c(size, size);
  const double l = Px(s * 0.08), r = Px(s * 0.92), t = Px(s * 0.26), b = Px(s * 0.86);
  // The folder's back with its tab, a sheet with the clip, the front.
  c.Fill(Polygon({{l, t}, {l + s * 0.30, t}, {l + s * 0.36, t + s * 0.07}, {r, t + s * 0.07},
                  {r, b}, {l, b}}),
         Solid(Rgb(0xC98A12)));
  c.Fill(RoundRect(Px(s * 0.24), Px(s * 0.20), Px(s * 0.80), Px(s * 0.70), 0), Solid(Rgb(0xFFFFFF)));
  DrawBlueClip(c, {s * 0.30, s * 0.30}, s * 0.42, 0, size);
  c.Fill(Polygon({{l, t + s * 0.22}, {r, t + s * 0.22}, {r - s * 0.04, b}, {l + s * 0.04, b}}),
         Linear({0, t}, Rgb(0xFCD34D), {0, b}, Rgb(0xE0A526)));
  return c.ToImage();
}

}  // namespace

Image RenderButton(ButtonArt art, int size) {
  switch (art) {
    case ButtonArt::ViewExpanded: return View(size, false);
    case ButtonArt::ViewCondensed: return View(size, true);
    case ButtonArt::PasteMoveToEnd: return Paste(size, false);
    case ButtonArt::PasteDelete: return Paste(size, true);
    case ButtonArt::PinLoose: return Pin(size, false);
    case ButtonArt::PinIn: return Pin(size, true);
    case ButtonArt::Save: return Save(size);
    case ButtonArt::Load: return Load(size);
  }
  return Image{};
}

}  // namespace mq::art
