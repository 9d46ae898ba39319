// The trail: colours drawn out along rays toward a centre.
//
// src and dst have the same size and depth and are never the same world.
// The pixels that no ray reaches keep what dst holds.
#ifndef VITRELL_LITERAL_BLUR_TRAIL_TRAIL_H_
#define VITRELL_LITERAL_BLUR_TRAIL_TRAIL_H_

#include <cstdint>

#include "literal/base/types.h"

namespace vitrell::literal {

// Casts a ray from every border pixel, row by row, left to right, to the centre, which the caller
// has clamped. dst is already filled with transparent black.
void TrailPass(const World& src, World& dst, std::int32_t cx, std::int32_t cy, float trailAmount,
               std::int32_t cornerDistance);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BLUR_TRAIL_TRAIL_H_
