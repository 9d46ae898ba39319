// The lightness curve.
#ifndef VITRELL_LITERAL_COLOUR_LIGHTNESS_H_
#define VITRELL_LITERAL_COLOUR_LIGHTNESS_H_

#include "literal/base/types.h"

namespace vitrell::literal {

// The exponent of the lightness curve for an amount between -1 and 1.
double LightnessExponent(float amount, const Maths& maths);

// Bends every channel, alpha included, by a power. src and dst have the same size and depth.
void LightnessPass(double exponent, const Maths& maths, const World& src, World& dst);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_COLOUR_LIGHTNESS_H_
