// The curves of eased keys.
#include "look/easing.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace vitrell::look {
namespace {

constexpr int kHalvings = 60;
constexpr std::size_t kPieces = 512;

// A cubic Bezier curve in Bernstein form.
double Bezier(double a, double b, double c, double d, double t) {
  const double s = 1 - t;
  return s * s * s * a + 3 * (s * s * t) * b + 3 * (s * t * t) * c + t * t * t * d;
}

}  // namespace

double Ease(const CubicEasing& easing, double time) {
  if (time <= 0) return 0;
  if (time >= 1) return 1;
  if (easing.x1 == easing.y1 && easing.x2 == easing.y2) return time;
  double low = 0;
  double high = 1;
  for (int i = 0; i < kHalvings; ++i) {
    const double middle = (low + high) / 2;
    (Bezier(0, easing.x1, easing.x2, 1, middle) < time ? low : high) = middle;
  }
  return Bezier(0, easing.y1, easing.y2, 1, (low + high) / 2);
}

PathPosition AlongPath(const PathPosition& from, const PathPosition& to,
                       const PathTangents& tangents, double share) {
  const PathPosition second = {from.x + tangents.leaving.x, from.y + tangents.leaving.y};
  const PathPosition third = {to.x + tangents.arriving.x, to.y + tangents.arriving.y};
  std::array<PathPosition, kPieces + 1> points;
  std::array<double, kPieces + 1> lengths;
  points[0] = from;
  lengths[0] = 0;
  for (std::size_t i = 1; i <= kPieces; ++i) {
    const double t = static_cast<double>(i) / static_cast<double>(kPieces);
    points[i] = {Bezier(from.x, second.x, third.x, to.x, t),
                 Bezier(from.y, second.y, third.y, to.y, t)};
    const double dx = points[i].x - points[i - 1].x;
    const double dy = points[i].y - points[i - 1].y;
    lengths[i] = lengths[i - 1] + std::sqrt(dx * dx + dy * dy);
  }
  // An easing may overshoot: then the first or last piece is prolonged.
  const double wanted = share * lengths[kPieces];
  std::size_t piece = 1;
  while (piece < kPieces && lengths[piece] < wanted) ++piece;
  const double length = lengths[piece] - lengths[piece - 1];
  const double rest = length > 0 ? (wanted - lengths[piece - 1]) / length : 0;
  const PathPosition& begin = points[piece - 1];
  const PathPosition& end = points[piece];
  return {begin.x + (end.x - begin.x) * rest, begin.y + (end.y - begin.y) * rest};
}

}  // namespace vitrell::look
