// Chromatic aberration: samples red, green and blue at positions scaled about the lens position.
#ifndef VITRELL_COLOUR_CHROMATIC_ABERRATION_H_
#define VITRELL_COLOUR_CHROMATIC_ABERRATION_H_

#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

struct ChromaticRefcon {
  float redScale;
  float greenScale;
  float blueScale;
  std::int32_t centerX;
  std::int32_t centerY;
  const IO_Params* io;
};

// Runs the stage from call.io.src into call.io.dst. Returns the host's code, or
// PF_Err_OUT_OF_MEMORY.
[[nodiscard]] PF_Err RunChromaticAberration(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_COLOUR_CHROMATIC_ABERRATION_H_
