// The final blend: the processed picture over the unprocessed layer, by mode and intensity.
#ifndef VITRELL_LITERAL_COLOUR_BLEND_MODES_H_
#define VITRELL_LITERAL_COLOUR_BLEND_MODES_H_

#include "literal/base/types.h"

namespace vitrell::literal {

// One channel of the 8-bit blend inside the lens; `present` is what the destination holds.
std::uint8_t BlendChannel8(std::int32_t f, std::int32_t b, double m, float opacity,
                           std::int32_t mode, std::uint8_t present);

// One channel of the 16-bit blend inside the lens.
std::uint16_t BlendChannel16(std::int32_t f, std::int32_t b, double m, float opacity,
                             std::int32_t mode, std::uint16_t present);

// Blends src over `background` into dst. src and dst have the same size and depth; the background
// may have the other depth.
void BlendPass(const World& background, float opacity, std::int32_t mode, const Mask& mask,
               const World& src, World& dst);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_COLOUR_BLEND_MODES_H_
