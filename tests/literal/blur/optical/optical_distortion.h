// The optical distortion.
//
// src and dst have the same size and depth and are never the same world.
// The pass writes every pixel of dst.
#ifndef VITRELL_LITERAL_BLUR_OPTICAL_OPTICAL_DISTORTION_H_
#define VITRELL_LITERAL_BLUR_OPTICAL_OPTICAL_DISTORTION_H_

#include <cstdint>

#include "literal/base/types.h"

namespace vitrell::literal {

void OpticalPass(const World& src, World& dst, const Mask& mask, const Maths& maths,
                 std::int32_t cx, std::int32_t cy, double focalLength);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BLUR_OPTICAL_OPTICAL_DISTORTION_H_
