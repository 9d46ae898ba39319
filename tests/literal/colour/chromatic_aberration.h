// Chromatic aberration: each colour channel is fetched from its own distance to the lens centre.
#ifndef VITRELL_LITERAL_COLOUR_CHROMATIC_ABERRATION_H_
#define VITRELL_LITERAL_COLOUR_CHROMATIC_ABERRATION_H_

#include <cstdint>

#include "literal/base/types.h"

namespace vitrell::literal {

// scales: red, green, blue. A channel whose scale is 0.0001 or less is not written inside the lens.
void ChromaticPass(const float (&scales)[3], std::int32_t cx, std::int32_t cy, const Mask& mask,
                   const World& src, World& dst);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_COLOUR_CHROMATIC_ABERRATION_H_
