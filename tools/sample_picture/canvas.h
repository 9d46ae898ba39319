// A canvas in linear light on which shapes are painted by their signed distance functions.
//
// Coordinates are those of a 1920 x 1080 scene; a canvas of any size shows its middle, scaled to
// cover the canvas. Only + - * / and square roots are used, whose results are exactly defined, so
// that the image has the same bits everywhere.
#ifndef VITRELL_TOOLS_SAMPLE_PICTURE_CANVAS_H_
#define VITRELL_TOOLS_SAMPLE_PICTURE_CANVAS_H_

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vitrell::sample {

struct Rgb {
  double r = 0;
  double g = 0;
  double b = 0;
};

constexpr Rgb operator+(Rgb a, Rgb b) { return {a.r + b.r, a.g + b.g, a.b + b.b}; }
constexpr Rgb operator*(Rgb a, double k) { return {a.r * k, a.g * k, a.b * k}; }
constexpr Rgb operator*(Rgb a, Rgb b) { return {a.r * b.r, a.g * b.g, a.b * b.b}; }

constexpr double Clamp01(double v) { return v < 0 ? 0 : (v > 1 ? 1 : v); }
constexpr double Mix(double a, double b, double t) { return a + (b - a) * t; }
constexpr Rgb Mix(Rgb a, Rgb b, double t) { return a * (1 - t) + b * t; }

// A smoothstep: 0 below `low`, 1 above `high`, an S-shaped curve between.
constexpr double Smooth(double low, double high, double v) {
  const double t = Clamp01((v - low) / (high - low));
  return t * t * (3 - 2 * t);
}

struct Box {
  double x0 = 0;
  double y0 = 0;
  double x1 = 0;
  double y1 = 0;
};

constexpr Box Grow(Box box, double by) {
  return {box.x0 - by, box.y0 - by, box.x1 + by, box.y1 + by};
}

// Signed distances in scene units, negative inside.
double BoxDistance(Box box, double x, double y);
double RoundBoxDistance(Box box, double radius, double x, double y);
double CapsuleDistance(double ax, double ay, double bx, double by, double radius, double x,
                       double y);

struct CanvasPixel {
  Rgb light;
  double alpha = 0;
};

class Canvas {
 public:
  Canvas(int width, int height);

  [[nodiscard]] int Width() const { return width_; }
  [[nodiscard]] int Height() const { return height_; }
  // Scene units per pixel.
  [[nodiscard]] double Unit() const { return unit_; }
  [[nodiscard]] double SceneX(int column) const {
    return (column + 0.5 - width_ * 0.5) * unit_ + 960;
  }
  [[nodiscard]] double SceneY(int row) const { return (row + 0.5 - height_ * 0.5) * unit_ + 540; }
  [[nodiscard]] CanvasPixel& At(int column, int row);
  // The light at a scene position, clamped to the canvas's border.
  [[nodiscard]] Rgb LightAt(double x, double y) const;

  // Visits every pixel whose centre lies in `box`: visit(x, y, pixel).
  template <typename Visit>
  void ForEach(Box box, Visit visit);
  // Paints paint(x, y) where distance(x, y) <= 0, with an anti-aliased edge.
  template <typename Distance, typename Paint>
  void Fill(Box box, Distance distance, Paint paint);

  void FillBox(Box box, Rgb colour);
  void FillRound(Box box, double radius, Rgb colour);
  void FillDisc(double x, double y, double radius, Rgb colour);
  // A line with round caps; one thinner than a pixel is drawn fainter instead of wider.
  void Line(double ax, double ay, double bx, double by, double radius, Rgb colour);
  // Adds light that fades to zero at `radius`.
  void Glow(double x, double y, double radius, Rgb colour);
  // Adds the light that bright areas scatter.
  void Bloom(double radius, double threshold, double strength);

 private:
  [[nodiscard]] int ColumnOf(double x) const;
  [[nodiscard]] int RowOf(double y) const;

  int width_;
  int height_;
  double unit_;
  std::vector<CanvasPixel> pixels_;
};

template <typename Visit>
void Canvas::ForEach(Box box, Visit visit) {
  const int left = std::max(0, ColumnOf(box.x0));
  const int right = std::min(width_ - 1, ColumnOf(box.x1));
  const int top = std::max(0, RowOf(box.y0));
  const int bottom = std::min(height_ - 1, RowOf(box.y1));
  for (int row = top; row <= bottom; ++row) {
    for (int column = left; column <= right; ++column) {
      visit(SceneX(column), SceneY(row), At(column, row));
    }
  }
}

template <typename Distance, typename Paint>
void Canvas::Fill(Box box, Distance distance, Paint paint) {
  ForEach(Grow(box, unit_), [&](double x, double y, CanvasPixel& pixel) {
    const double cover = Clamp01(0.5 - distance(x, y) / unit_);
    if (cover <= 0) return;
    pixel.light = Mix(pixel.light, paint(x, y), cover);
    pixel.alpha = Mix(pixel.alpha, 1, cover);
  });
}

}  // namespace vitrell::sample

#endif  // VITRELL_TOOLS_SAMPLE_PICTURE_CANVAS_H_
