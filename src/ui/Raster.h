// A small anti-aliased rasterizer for the program's own icons and menu glyphs. Shapes are
// signed distance functions in pixel units, so one drawing renders crisply at any size; the
// coverage of a pixel is its centre's distance to the edge, clamped to one pixel.
//
// Only +, -, *, / and sqrt are used on the pixel path (sin and cos only once per shape), so
// the same drawing gives the same bytes on every IEEE machine: the committed .ico files are
// checked against a fresh rendering.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace mq::art {

struct Vec {
  double x = 0, y = 0;
};

struct Colour {
  double r = 0, g = 0, b = 0, a = 1;  // straight (not premultiplied), 0..1
};

// 0xRRGGBB, as art is usually written down (not the 0xBBGGRR of Windows colours).
Colour Rgb(uint32_t rrggbb, double alpha = 1);

// Straight-alpha RGBA, 8 bits a channel, rows top-down.
struct Image {
  int width = 0, height = 0;
  std::vector<uint8_t> rgba;
  const uint8_t* At(int x, int y) const { return &rgba[(static_cast<size_t>(y) * width + x) * 4]; }
};

// A distance field (negative inside) and a box outside of which it is at least 1 pixel.
struct Shape {
  std::function<double(Vec)> sdf;
  double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
};

Shape Circle(Vec centre, double radius);
// A line of the given half width with round ends.
Shape Segment(Vec a, Vec b, double halfWidth);
// A circular line with round ends, from `startDeg` turning `sweepDeg` (0..360) clockwise on
// screen (angle 0 points right, 90 down).
Shape Arc(Vec centre, double radius, double startDeg, double sweepDeg, double halfWidth);
Shape RoundRect(double x0, double y0, double x1, double y1, double radius);
Shape Polygon(std::vector<Vec> points);

Shape Union(Shape a, Shape b);
Shape Intersect(Shape a, Shape b);
Shape Subtract(Shape a, Shape b);
// Grows (positive) or shrinks (negative) the shape by `distance` pixels.
Shape Grow(Shape s, double distance);
Shape Move(Shape s, Vec offset);
Shape Rotate(Shape s, Vec centre, double degrees);

using Paint = std::function<Colour(Vec)>;
Paint Solid(Colour c);
// Linear gradient from c0 at p0 to c1 at p1, constant beyond the ends.
Paint Linear(Vec p0, Colour c0, Vec p1, Colour c1);

class Canvas {
 public:
  Canvas(int width, int height);
  int Width() const { return width_; }
  int Height() const { return height_; }
  // Source-over with the shape's coverage.
  void Fill(const Shape& shape, const Paint& paint, double opacity = 1);
  Image ToImage() const;

 private:
  int width_, height_;
  std::vector<double> px_;  // premultiplied RGBA
};

}  // namespace mq::art
