// The colour wash.
#ifndef VITRELL_LITERAL_COLOUR_COLOR_EFFECT_H_
#define VITRELL_LITERAL_COLOUR_COLOR_EFFECT_H_

#include <cstdint>

#include "literal/base/types.h"

namespace vitrell::literal {

// Pulls every channel, alpha included, toward `color` (alpha, red, green, blue). src and dst have
// the same size and depth.
void ColorPass(float opacity, const std::uint8_t (&color)[4], const World& src, World& dst);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_COLOUR_COLOR_EFFECT_H_
