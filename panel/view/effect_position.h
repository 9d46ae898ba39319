// Which pixel the effect makes of a position, and the reverse.
#ifndef VITRELL_PANEL_VIEW_EFFECT_POSITION_H_
#define VITRELL_PANEL_VIEW_EFFECT_POSITION_H_

#include "look/control.h"

namespace vitrell::panel {

// The effect divides positions by a little more than their scale and truncates: 960 becomes pixel
// 959. `side` is the picture's width or height.
int EffectPixel(const look::Coordinate& coordinate, int side);

// A coordinate with the same unit that the effect takes to the pixel: the one with the fewest
// decimals that is nearest to 0. Pixels beyond the range of positions get its end.
look::Coordinate CoordinateFor(int pixel, bool percent, int side);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_VIEW_EFFECT_POSITION_H_
