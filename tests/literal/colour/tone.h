// The tone stages: the lightness curve and the colour wash.
#ifndef VITRELL_LITERAL_COLOUR_TONE_H_
#define VITRELL_LITERAL_COLOUR_TONE_H_

#include <cstdint>

#include "literal/base/types.h"

namespace vitrell::literal {

// The exponent of the lightness curve for an amount between -1 and 1.
double LightnessExponent(float amount, const Maths& maths);

// Bends every channel, alpha included, by a power. src and dst have the same size and depth.
void LightnessPass(double exponent, const Maths& maths, const World& src, World& dst);

// Pulls every channel, alpha included, toward `color` (alpha, red, green, blue).
void ColorPass(float opacity, const std::uint8_t (&color)[4], const World& src, World& dst);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_COLOUR_TONE_H_
