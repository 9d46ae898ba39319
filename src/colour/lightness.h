// Lightness: bends every channel, alpha included, with a power curve.
#ifndef VITRELL_COLOUR_LIGHTNESS_H_
#define VITRELL_COLOUR_LIGHTNESS_H_

#include "base/render_records.h"
#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

struct LightnessRefcon {
  double gain;  // The exponent.
  const IO_Params* io;
};

// Runs the stage from call.io.src into call.io.dst with the exponent 10^-lightnessAmount. Returns
// the host's code, or PF_Err_OUT_OF_MEMORY.
[[nodiscard]] PF_Err RunLightness(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_COLOUR_LIGHTNESS_H_
