// Directional blur: averages each pixel inside the lens along a fixed straight line through it.
#ifndef VITRELL_BLUR_DIRECTIONAL_DIRECTIONAL_BLUR_H_
#define VITRELL_BLUR_DIRECTIONAL_DIRECTIONAL_BLUR_H_

#include "base/render_records.h"
#include "blur/directional/line_taps.h"
#include "host/host_api.h"
#include "host/suite_handler.h"

namespace vitrell {

// Runs the stage from io->src into io->dst and answers the host's code, or PF_Err_OUT_OF_MEMORY.
[[nodiscard]] PF_Err RunDirectionalBlur(AEGP_SuiteHandler& suites, IO_Params* io,
                                        const LineTaps& taps);

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_DIRECTIONAL_BLUR_H_
