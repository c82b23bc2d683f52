#include "ui/Raster.h"

#include <algorithm>
#include <cmath>

namespace mq::art {
namespace {

constexpr double kPi = 3.14159265358979323846;

double Dot(Vec a, Vec b) { return a.x * b.x + a.y * b.y; }
double Cross(Vec a, Vec b) { return a.x * b.y - a.y * b.x; }
Vec Sub(Vec a, Vec b) { return {a.x - b.x, a.y - b.y}; }
double Length(Vec v) { return std::sqrt(Dot(v, v)); }

Shape Bounded(std::function<double(Vec)> sdf, double x0, double y0, double x1, double y1) {
  return Shape{std::move(sdf), x0 - 1, y0 - 1, x1 + 1, y1 + 1};
}

uint8_t ToByte(double v) {
  v = std::clamp(v, 0.0, 1.0);
  return static_cast<uint8_t>(std::floor(v * 255 + 0.5));
}

}  // namespace

Colour Rgb(uint32_t c, double alpha) {
  return {((c >> 16) & 0xFF) / 255.0, ((c >> 8) & 0xFF) / 255.0, (c & 0xFF) / 255.0, alpha};
}

Shape Circle(Vec c, double r) {
  return Bounded([=](Vec p) { return Length(Sub(p, c)) - r; }, c.x - r, c.y - r, c.x + r,
                 c.y + r);
}

Shape Segment(Vec a, Vec b, double hw) {
  return Bounded(
      [=](Vec p) {
        Vec pa = Sub(p, a), ba = Sub(b, a);
        double len2 = Dot(ba, ba);
        double t = len2 > 0 ? std::clamp(Dot(pa, ba) / len2, 0.0, 1.0) : 0.0;
        return Length({pa.x - ba.x * t, pa.y - ba.y * t}) - hw;
      },
      std::min(a.x, b.x) - hw, std::min(a.y, b.y) - hw, std::max(a.x, b.x) + hw,
      std::max(a.y, b.y) + hw);
}

Shape Arc(Vec c, double r, double startDeg, double sweepDeg, double hw) {
  const double a0 = startDeg * kPi / 180, a1 = (startDeg + sweepDeg) * kPi / 180;
  const Vec s{std::cos(a0), std::sin(a0)}, e{std::cos(a1), std::sin(a1)};
  const Vec ps{c.x + r * s.x, c.y + r * s.y}, pe{c.x + r * e.x, c.y + r * e.y};
  const bool full = sweepDeg >= 360, wide = sweepDeg > 180;
  return Bounded(
      [=](Vec p) {
        Vec d = Sub(p, c);
        // On screen (y down) a positive cross product means "clockwise from".
        bool inside = full || (wide ? !(Cross(e, d) > 0 && Cross(d, s) > 0)
                                    : (Cross(s, d) >= 0 && Cross(d, e) >= 0));
        if (inside) return std::abs(Length(d) - r) - hw;
        return std::min(Length(Sub(p, ps)), Length(Sub(p, pe))) - hw;
      },
      c.x - r - hw, c.y - r - hw, c.x + r + hw, c.y + r + hw);
}

Shape RoundRect(double x0, double y0, double x1, double y1, double radius) {
  const Vec centre{(x0 + x1) / 2, (y0 + y1) / 2}, half{(x1 - x0) / 2, (y1 - y0) / 2};
  return Bounded(
      [=](Vec p) {
        double qx = std::abs(p.x - centre.x) - half.x + radius;
        double qy = std::abs(p.y - centre.y) - half.y + radius;
        double outside = Length({std::max(qx, 0.0), std::max(qy, 0.0)});
        return outside + std::min(std::max(qx, qy), 0.0) - radius;
      },
      x0, y0, x1, y1);
}

Shape Polygon(std::vector<Vec> v) {
  double x0 = v[0].x, y0 = v[0].y, x1 = x0, y1 = y0;
  for (Vec q : v) {
    x0 = std::min(x0, q.x), y0 = std::min(y0, q.y);
    x1 = std::max(x1, q.x), y1 = std::max(y1, q.y);
  }
  return Bounded(
      [v = std::move(v)](Vec p) {
        double d = Dot(Sub(p, v[0]), Sub(p, v[0]));
        double sign = 1;
        for (size_t i = 0, j = v.size() - 1; i < v.size(); j = i++) {
          Vec e = Sub(v[j], v[i]), w = Sub(p, v[i]);
          double t = std::clamp(Dot(w, e) / Dot(e, e), 0.0, 1.0);
          Vec b{w.x - e.x * t, w.y - e.y * t};
          d = std::min(d, Dot(b, b));
          bool c1 = p.y >= v[i].y, c2 = p.y < v[j].y, c3 = e.x * w.y > e.y * w.x;
          if ((c1 && c2 && c3) || (!c1 && !c2 && !c3)) sign = -sign;
        }
        return sign * std::sqrt(d);
      },
      x0, y0, x1, y1);
}

Shape Union(Shape a, Shape b) {
  return Shape{[a = a.sdf, b = b.sdf](Vec p) { return std::min(a(p), b(p)); },
               std::min(a.x0, b.x0), std::min(a.y0, b.y0), std::max(a.x1, b.x1),
               std::max(a.y1, b.y1)};
}

Shape Intersect(Shape a, Shape b) {
  return Shape{[a = a.sdf, b = b.sdf](Vec p) { return std::max(a(p), b(p)); },
               std::max(a.x0, b.x0), std::max(a.y0, b.y0), std::min(a.x1, b.x1),
               std::min(a.y1, b.y1)};
}

Shape Subtract(Shape a, Shape b) {
  return Shape{[a = a.sdf, b = b.sdf](Vec p) { return std::max(a(p), -b(p)); }, a.x0, a.y0,
               a.x1, a.y1};
}

Shape Grow(Shape s, double d) {
  return Shape{[f = s.sdf, d](Vec p) { return f(p) - d; }, s.x0 - d, s.y0 - d, s.x1 + d,
               s.y1 + d};
}

Shape Move(Shape s, Vec o) {
  return Shape{[f = s.sdf, o](Vec p) { return f({p.x - o.x, p.y - o.y}); }, s.x0 + o.x,
               s.y0 + o.y, s.x1 + o.x, s.y1 + o.y};
}

Shape Rotate(Shape s, Vec c, double degrees) {
  const double a = degrees * kPi / 180, cs = std::cos(a), sn = std::sin(a);
  Shape out;
  out.sdf = [f = s.sdf, c, cs, sn](Vec p) {
    Vec d = Sub(p, c);  // rotate back into the shape's own frame
    return f({c.x + d.x * cs + d.y * sn, c.y - d.x * sn + d.y * cs});
  };
  out.x0 = out.y0 = 1e300;
  out.x1 = out.y1 = -1e300;
  for (Vec k : {Vec{s.x0, s.y0}, Vec{s.x1, s.y0}, Vec{s.x0, s.y1}, Vec{s.x1, s.y1}}) {
    Vec d = Sub(k, c);
    Vec r{c.x + d.x * cs - d.y * sn, c.y + d.x * sn + d.y * cs};
    out.x0 = std::min(out.x0, r.x), out.y0 = std::min(out.y0, r.y);
    out.x1 = std::max(out.x1, r.x), out.y1 = std::max(out.y1, r.y);
  }
  return out;
}

Paint Solid(Colour c) {
  return [c](Vec) { return c; };
}

Paint Linear(Vec p0, Colour c0, Vec p1, Colour c1) {
  const Vec d = Sub(p1, p0);
  const double len2 = Dot(d, d);
  return [=](Vec p) {
    double t = len2 > 0 ? std::clamp(Dot(Sub(p, p0), d) / len2, 0.0, 1.0) : 0.0;
    return Colour{c0.r + (c1.r - c0.r) * t, c0.g + (c1.g - c0.g) * t,
                  c0.b + (c1.b - c0.b) * t, c0.a + (c1.a - c0.a) * t};
  };
}

Canvas::Canvas(int width, int height)
    : width_(width), height_(height), px_(static_cast<size_t>(width) * height * 4, 0.0) {}

void Canvas::Fill(const Shape& shape, const Paint& paint, double opacity) {
  const int xa = std::max(0, static_cast<int>(std::floor(shape.x0)));
  const int ya = std::max(0, static_cast<int>(std::floor(shape.y0)));
  const int xb = std::min(width_, static_cast<int>(std::ceil(shape.x1)) + 1);
  const int yb = std::min(height_, static_cast<int>(std::ceil(shape.y1)) + 1);
  for (int y = ya; y < yb; ++y) {
    for (int x = xa; x < xb; ++x) {
      const Vec p{x + 0.5, y + 0.5};
      const double coverage = std::clamp(0.5 - shape.sdf(p), 0.0, 1.0);
      if (coverage <= 0) continue;
      const Colour c = paint(p);
      const double a = c.a * coverage * opacity;
      double* d = &px_[(static_cast<size_t>(y) * width_ + x) * 4];
      d[0] = c.r * a + d[0] * (1 - a);
      d[1] = c.g * a + d[1] * (1 - a);
      d[2] = c.b * a + d[2] * (1 - a);
      d[3] = a + d[3] * (1 - a);
    }
  }
}

Image Canvas::ToImage() const {
  Image img{width_, height_, std::vector<uint8_t>(px_.size())};
  for (size_t i = 0; i < px_.size(); i += 4) {
    const double a = px_[i + 3];
    const uint8_t a8 = ToByte(a);
    for (int k = 0; k < 3; ++k) img.rgba[i + k] = a8 ? ToByte(px_[i + k] / a) : 0;
    img.rgba[i + 3] = a8;
  }
  return img;
}

}  // namespace mq::art
