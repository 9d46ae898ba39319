// Trail: smears the picture outward from a centre along rays from the picture's border.
#ifndef VITRELL_BLUR_TRAIL_TRAIL_H_
#define VITRELL_BLUR_TRAIL_TRAIL_H_

#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

// Fills call.io.dst with transparent black and casts the rays from call.io.src into it. Answers the
// code of a failing fill, or PF_Err_OUT_OF_MEMORY; the result of the host's iteration itself is
// ignored.
[[nodiscard]] PF_Err RunTrail(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_BLUR_TRAIL_TRAIL_H_
