// The fast blur: a box blur of the colours, across and down, three times over.
#ifndef VITRELL_LITERAL_BLUR_FAST_FAST_BLUR_H_
#define VITRELL_LITERAL_BLUR_FAST_FAST_BLUR_H_

#include <cstdint>

#include "literal/base/types.h"

namespace vitrell::literal {

// Whether the settings make the engine a plain copy.
bool FastBlurIsCopy(const Settings& settings);

// Whether the taps are weighed by the lens mask.
bool FastBlurFollowsLens(const Settings& settings);

// One pass across and one down; the result is left in both worlds.
void FastBlurRound(std::int32_t horizontalRadius, std::int32_t verticalRadius, bool lensMap,
                   const Mask& mask, World& src, World& dst);

// The whole engine. The result is in dst; when it is not a copy, in src as well.
void FastBlur(const Settings& settings, const Mask& mask, World& src, World& dst);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BLUR_FAST_FAST_BLUR_H_
