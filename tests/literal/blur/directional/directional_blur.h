// The directional blur.
//
// src and dst have the same size and depth and are never the same world.
// The pass writes every pixel of dst.
#ifndef VITRELL_LITERAL_BLUR_DIRECTIONAL_DIRECTIONAL_BLUR_H_
#define VITRELL_LITERAL_BLUR_DIRECTIONAL_DIRECTIONAL_BLUR_H_

#include <vector>

#include "literal/base/types.h"
#include "literal/blur/directional/line_taps.h"

namespace vitrell::literal {

void DirectionalPass(const World& src, World& dst, const Mask& mask,
                     const std::vector<LineTap>& taps);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BLUR_DIRECTIONAL_DIRECTIONAL_BLUR_H_
