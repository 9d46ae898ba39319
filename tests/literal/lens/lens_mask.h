// The lens mask: how much each pixel of the output's rectangle lies inside the lens.
#ifndef VITRELL_LITERAL_LENS_LENS_MASK_H_
#define VITRELL_LITERAL_LENS_LENS_MASK_H_

#include <cstdint>

#include "literal/base/types.h"

namespace vitrell::literal {

// Distance of P from the segment AB. A segment that goes neither right nor down is the point A.
double GetDistanceFromPtToSegLine(double px, double py, double ax, double ay, double bx, double by,
                                  const Maths& maths);

// Normalised distance, 0 to 1 or NaN, of (u, v) from a rectangle of half-width b and half-height a
// with an edge band of relative width k.
double GetDistanceKWithRectMode(double u, double v, double k, double a, double b,
                                const Maths& maths);

// One value per pixel of `outputExtent`. `outputWidth` and `outputHeight` are the output world's
// own size; `inputExtent` is the input's extent hint as the host gave it.
Mask BuildLensMask(const Settings& settings, const Maths& maths, const Rect& outputExtent,
                   std::int32_t outputWidth, std::int32_t outputHeight, const Rect& inputExtent);

// The value at layer position (x, y). `world` is the one that the caller writes: outside its extent
// hint the value is 0, and so it is where that rectangle leads beyond the mask's memory.
double GetLensMask(const Mask& mask, std::int32_t x, std::int32_t y, const World& world);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_LENS_LENS_MASK_H_
