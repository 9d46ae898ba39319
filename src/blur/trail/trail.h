// Trail: smears the picture outward from a centre along rays from the picture's border.
#ifndef VITRELL_BLUR_TRAIL_TRAIL_H_
#define VITRELL_BLUR_TRAIL_TRAIL_H_

#include "base/render_records.h"
#include "host/host_api.h"
#include "host/suite_handler.h"

namespace vitrell {

// Fills io->dst with transparent black and casts the rays from io->src into it. Answers the code of
// a failing fill, or PF_Err_OUT_OF_MEMORY; the result of the host's iteration itself is ignored.
[[nodiscard]] PF_Err RunTrail(AEGP_SuiteHandler& suites, IO_Params* io, const LX_Info& info);

}  // namespace vitrell

#endif  // VITRELL_BLUR_TRAIL_TRAIL_H_
