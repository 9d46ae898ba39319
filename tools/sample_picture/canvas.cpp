// Shapes, glow and bloom on the sample picture's canvas.
#include "canvas.h"

namespace vitrell::sample {
namespace {

// Replaces a row or column of `count` values, `step` apart, by its moving average.
void BlurLine(Rgb* line, std::size_t count, std::size_t step, std::size_t radius,
              std::vector<Rgb>& copy) {
  copy.resize(count);
  for (std::size_t i = 0; i < count; ++i) copy[i] = line[i * step];
  const auto at = [&](std::ptrdiff_t i) {
    const auto last = static_cast<std::ptrdiff_t>(count) - 1;
    return copy[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(i, 0, last))];
  };
  const auto reach = static_cast<std::ptrdiff_t>(radius);
  Rgb sum;
  for (std::ptrdiff_t i = -reach; i <= reach; ++i) sum = sum + at(i);
  const double share = 1.0 / static_cast<double>(2 * radius + 1);
  for (std::size_t i = 0; i < count; ++i) {
    line[i * step] = sum * share;
    const auto here = static_cast<std::ptrdiff_t>(i);
    sum = sum + at(here + reach + 1) + at(here - reach) * -1.0;
  }
}

}  // namespace

double BoxDistance(Box box, double x, double y) {
  const double dx = std::max(box.x0 - x, x - box.x1);
  const double dy = std::max(box.y0 - y, y - box.y1);
  if (dx <= 0 || dy <= 0) return std::max(dx, dy);
  return std::sqrt(dx * dx + dy * dy);
}

double RoundBoxDistance(Box box, double radius, double x, double y) {
  return BoxDistance(Grow(box, -radius), x, y) - radius;
}

double CapsuleDistance(double ax, double ay, double bx, double by, double radius, double x,
                       double y) {
  const double ex = bx - ax;
  const double ey = by - ay;
  const double length2 = ex * ex + ey * ey;
  const double t = length2 > 0 ? Clamp01(((x - ax) * ex + (y - ay) * ey) / length2) : 0;
  const double dx = x - ax - t * ex;
  const double dy = y - ay - t * ey;
  return std::sqrt(dx * dx + dy * dy) - radius;
}

Canvas::Canvas(int width, int height)
    : width_(width),
      height_(height),
      unit_(std::min(1920.0 / width, 1080.0 / height)),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

CanvasPixel& Canvas::At(int column, int row) {
  return pixels_[static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) +
                 static_cast<std::size_t>(column)];
}

int Canvas::ColumnOf(double x) const {
  return static_cast<int>(std::floor((x - 960) / unit_ + width_ * 0.5));
}

int Canvas::RowOf(double y) const {
  return static_cast<int>(std::floor((y - 540) / unit_ + height_ * 0.5));
}

Rgb Canvas::LightAt(double x, double y) const {
  const int column = std::clamp(ColumnOf(x), 0, width_ - 1);
  const int row = std::clamp(RowOf(y), 0, height_ - 1);
  return const_cast<Canvas*>(this)->At(column, row).light;
}

void Canvas::FillBox(Box box, Rgb colour) {
  Fill(
      box, [&](double x, double y) { return BoxDistance(box, x, y); },
      [&](double, double) { return colour; });
}

void Canvas::FillRound(Box box, double radius, Rgb colour) {
  Fill(
      box, [&](double x, double y) { return RoundBoxDistance(box, radius, x, y); },
      [&](double, double) { return colour; });
}

void Canvas::FillDisc(double x, double y, double radius, Rgb colour) {
  Line(x, y, x, y, radius, colour);
}

void Canvas::Line(double ax, double ay, double bx, double by, double radius, Rgb colour) {
  const Box box{std::min(ax, bx), std::min(ay, by), std::max(ax, bx), std::max(ay, by)};
  const double strength = std::min(1.0, 2 * radius / unit_);
  const double drawn = std::max(radius, 0.5 * unit_);
  ForEach(Grow(box, drawn + unit_), [&](double x, double y, CanvasPixel& pixel) {
    const double distance = CapsuleDistance(ax, ay, bx, by, drawn, x, y);
    const double cover = Clamp01(0.5 - distance / unit_) * strength;
    pixel.light = Mix(pixel.light, colour, cover);
    pixel.alpha = Mix(pixel.alpha, 1, cover);
  });
}

void Canvas::Glow(double x, double y, double radius, Rgb colour) {
  const Box box{x - radius, y - radius, x + radius, y + radius};
  ForEach(box, [&](double px, double py, CanvasPixel& pixel) {
    const double d2 = ((px - x) * (px - x) + (py - y) * (py - y)) / (radius * radius);
    if (d2 >= 1) return;
    const double fall = (1 - d2) * (1 - d2) / (1 + 24 * d2);
    pixel.light = pixel.light + colour * fall;
    pixel.alpha = Mix(pixel.alpha, 1, Clamp01((colour.r + colour.g + colour.b) * fall));
  });
}

void Canvas::Bloom(double radius, double threshold, double strength) {
  std::vector<Rgb> bright(pixels_.size());
  for (std::size_t i = 0; i < pixels_.size(); ++i) {
    const Rgb light = pixels_[i].light;
    const double peak = std::max({light.r, light.g, light.b});
    bright[i] = light * (peak > threshold ? (peak - threshold) / peak : 0);
  }
  const auto reach = static_cast<std::size_t>(std::max(1.0, radius / unit_));
  const auto width = static_cast<std::size_t>(width_);
  const auto height = static_cast<std::size_t>(height_);
  std::vector<Rgb> scratch;
  for (int round = 0; round < 3; ++round) {
    for (std::size_t y = 0; y < height; ++y) BlurLine(&bright[y * width], width, 1, reach, scratch);
    for (std::size_t x = 0; x < width; ++x) BlurLine(&bright[x], height, width, reach, scratch);
  }
  for (std::size_t i = 0; i < pixels_.size(); ++i) {
    pixels_[i].light = pixels_[i].light + bright[i] * strength;
  }
}

}  // namespace vitrell::sample
