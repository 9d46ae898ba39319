// Random pictures: their sizes, layouts in memory, extent hints and pixels.
#ifndef VITRELL_WHOLE_RANDOM_PICTURES_H_
#define VITRELL_WHOLE_RANDOM_PICTURES_H_

#include <cstdint>

#include "headless/world_buffer.h"
#include "whole/dice.h"

namespace vitrell::whole {

struct PictureSize {
  std::int32_t width, height;
};

// 1x1 to 97x61, small ones more often.
PictureSize RandomSize(Dice& dice);

// Padded rows, odd beginnings and guard pages, legal for both depths.
headless::WorldLayout RandomLayout(Dice& dice);

// The extent hint as hosts give it: mostly whole, else a part, now and then larger than the world.
PF_LRect RandomExtent(Dice& dice, PictureSize size);

// Noise, blocks, near black, transparent areas; this share of the 16-bit images exceeds white.
void Paint(Dice& dice, std::int32_t aboveWhitePercent, headless::WorldBuffer& world);

// Of any size; mostly of the render's depth.
headless::WorldBuffer RandomCustomLayer(Dice& dice, PictureSize size, bool deep);

}  // namespace vitrell::whole

#endif  // VITRELL_WHOLE_RANDOM_PICTURES_H_
