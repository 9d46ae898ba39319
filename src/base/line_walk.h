// Rasterises a straight line.
#ifndef VITRELL_BASE_LINE_WALK_H_
#define VITRELL_BASE_LINE_WALK_H_

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace vitrell {

// Number of points of the line from (x0, y0) to (x1, y1), both ends included.
inline std::int64_t CountLinePoints(std::int64_t x0, std::int64_t y0, std::int64_t x1,
                                    std::int64_t y1) {
  return std::max(std::abs(x1 - x0), std::abs(y1 - y0)) + 1;
}

// Calls visit(x, y) for each point of the line from (x0, y0) to (x1, y1), both ends included, in
// order (Bresenham's algorithm). Coordinates must fit 32 bits, so that the error term cannot
// overflow.
template <typename Visit>
void WalkLine(std::int64_t x0, std::int64_t y0, std::int64_t x1, std::int64_t y1,
              const Visit& visit) {
  const std::int64_t dx = std::abs(x1 - x0);
  const std::int64_t dy = std::abs(y1 - y0);
  const std::int64_t stepX = x1 > x0 ? 1 : -1;
  const std::int64_t stepY = y1 > y0 ? 1 : -1;
  std::int64_t error = (dx > dy ? dx : -dy) / 2;
  visit(x0, y0);
  while (x0 != x1 || y0 != y1) {
    const std::int64_t before = error;
    if (before > -dx) {
      x0 += stepX;
      error -= dy;
    }
    if (before < dy) {
      y0 += stepY;
      error += dx;
    }
    visit(x0, y0);
  }
}

}  // namespace vitrell

#endif  // VITRELL_BASE_LINE_WALK_H_
