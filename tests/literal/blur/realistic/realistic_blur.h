// The iris-shaped blur.
//
// src and dst have the same size and depth and are never the same world.
#ifndef VITRELL_LITERAL_BLUR_REALISTIC_REALISTIC_BLUR_H_
#define VITRELL_LITERAL_BLUR_REALISTIC_REALISTIC_BLUR_H_

#include "literal/base/types.h"

namespace vitrell::literal {

// The whole engine: the copy when it is off, else uniform or lens-mapped blur and edge mending.
void RealisticBlur(const Settings& settings, const Maths& maths, const Mask& mask, const World& src,
                   World& dst);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BLUR_REALISTIC_REALISTIC_BLUR_H_
