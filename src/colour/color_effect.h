// Colour: moves every channel, alpha included, toward a target colour by an opacity.
#ifndef VITRELL_COLOUR_COLOR_EFFECT_H_
#define VITRELL_COLOUR_COLOR_EFFECT_H_

#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

struct ColorRefcon {
  float opacity;
  PF_Pixel color;
};

PF_Err ColorEffect8(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out);
PF_Err ColorEffect16(void* refcon, A_long x, A_long y, PF_Pixel16* in, PF_Pixel16* out);

// Runs the stage from call.io.src into call.io.dst and returns the host's code, or
// PF_Err_OUT_OF_MEMORY if the table cannot be allocated.
[[nodiscard]] PF_Err RunColorEffect(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_COLOUR_COLOR_EFFECT_H_
