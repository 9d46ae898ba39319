// The points of a line, from the definition.
#include "literal/blur/trail/trail_ray.h"

#include <cstdlib>

namespace vitrell::literal {

std::vector<LinePoint> ComputeLinePoints(std::int32_t x0, std::int32_t y0, std::int32_t x1,
                                         std::int32_t y1) {
  std::vector<LinePoint> points = {{x0, y0}};
  if (x0 == x1 && y0 == y1) return points;
  const std::int32_t dx = std::abs(x1 - x0);
  const std::int32_t dy = std::abs(y1 - y0);
  const std::int32_t sx = x1 > x0 ? 1 : -1;
  const std::int32_t sy = y1 > y0 ? 1 : -1;
  std::int32_t err = (dx > dy ? dx : -dy) / 2;
  std::int32_t x = x0;
  std::int32_t y = y0;
  while (x != x1 || y != y1) {
    const std::int32_t e = err;
    if (e > -dx) {
      x += sx;
      err -= dy;
    }
    if (e < dy) {
      y += sy;
      err += dx;
    }
    points.push_back({x, y});
  }
  return points;
}

}  // namespace vitrell::literal
