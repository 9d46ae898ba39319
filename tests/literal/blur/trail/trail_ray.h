// The points of a line, as the rays of the trail visit them.
#ifndef VITRELL_LITERAL_BLUR_TRAIL_TRAIL_RAY_H_
#define VITRELL_LITERAL_BLUR_TRAIL_TRAIL_RAY_H_

#include <cstdint>
#include <vector>

namespace vitrell::literal {

struct LinePoint {
  std::int32_t x, y;
};

// The pixels of the line from (x0, y0) to (x1, y1), both ends included.
std::vector<LinePoint> ComputeLinePoints(std::int32_t x0, std::int32_t y0, std::int32_t x1,
                                         std::int32_t y1);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BLUR_TRAIL_TRAIL_RAY_H_
