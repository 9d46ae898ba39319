// Trail: smears the image outward from a centre along rays from its border.
#ifndef VITRELL_BLUR_TRAIL_TRAIL_H_
#define VITRELL_BLUR_TRAIL_TRAIL_H_

#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

// The callback's refcon.
struct TrailRefcon {
  std::int32_t centerX;
  std::int32_t centerY;
  const IO_Params* io;
  float trailAmount;
  std::int32_t farthestPx;  // Distance from the centre to the corner opposite its quadrant.
};

// Fills call.io.dst with transparent black and casts the rays from call.io.src into it. Returns the
// code of a failing fill, or PF_Err_OUT_OF_MEMORY; the result of the host's iteration is ignored.
[[nodiscard]] PF_Err RunTrail(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_BLUR_TRAIL_TRAIL_H_
