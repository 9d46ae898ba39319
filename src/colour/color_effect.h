// Colour: pulls every channel, alpha included, toward a chosen colour by an opacity.
#ifndef VITRELL_COLOUR_COLOR_EFFECT_H_
#define VITRELL_COLOUR_COLOR_EFFECT_H_

#include "base/render_records.h"
#include "host/host_api.h"
#include "host/suite_handler.h"

namespace vitrell {

struct ColorRefcon {
  float opacity;
  PF_Pixel color;
};

PF_Err ColorEffect8(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out);
PF_Err ColorEffect16(void* refcon, A_long x, A_long y, PF_Pixel16* in, PF_Pixel16* out);

// Runs the stage from io->src into io->dst and answers the host's code.
[[nodiscard]] PF_Err RunColorEffect(AEGP_SuiteHandler& suites, IO_Params* io, const LX_Info& info);

}  // namespace vitrell

#endif  // VITRELL_COLOUR_COLOR_EFFECT_H_
