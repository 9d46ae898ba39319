// Directional blur: averages each pixel inside the lens along a straight line through it.
#ifndef VITRELL_BLUR_DIRECTIONAL_DIRECTIONAL_BLUR_H_
#define VITRELL_BLUR_DIRECTIONAL_DIRECTIONAL_BLUR_H_

#include <cstdint>

#include "base/render_records.h"
#include "blur/directional/line_taps.h"
#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

struct DirBlurRefcon {
  const IO_Params* io;
  const LineTap* taps;
  std::int32_t tapCount;
  double weightSum;
};

// The stage: blurs call.io.src into call.io.dst, or copies if it is off or its line is a single
// point. The line is rasterised either way. Returns the host's code, or PF_Err_OUT_OF_MEMORY.
// Acquires its suites through its own handler; a missing one throws.
[[nodiscard]] PF_Err RunDirectionalBlur(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_DIRECTIONAL_BLUR_H_
