// The blur chain: the five engines in their fixed order, in two passes.
#ifndef VITRELL_LITERAL_BLUR_BLUR_DISPATCHER_H_
#define VITRELL_LITERAL_BLUR_BLUR_DISPATCHER_H_

#include <cstdint>

#include "literal/base/types.h"

namespace vitrell::literal {

// Where the trail's rays meet, and how far the farthest corner of the rectangle is from there.
struct TrailGeometry {
  std::int32_t cx, cy;
  std::int32_t cornerDistance;
};

// `extent` is the extent hint of the world that the trail writes.
TrailGeometry MakeTrailGeometry(const Settings& settings, const Maths& maths, const Rect& extent);

// Pass 0 runs the engines that do not follow the lens, any other pass those that do. w1 holds the
// picture, the result is in w2. Both worlds have the same size and depth.
void BlurChain(const Settings& settings, const Maths& maths, const Mask& mask, std::int32_t pass,
               World& w1, World& w2);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BLUR_BLUR_DISPATCHER_H_
