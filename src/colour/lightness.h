// Lightness: bends every channel, alpha included, with a power curve.
#ifndef VITRELL_COLOUR_LIGHTNESS_H_
#define VITRELL_COLOUR_LIGHTNESS_H_

#include "base/render_records.h"
#include "host/host_api.h"
#include "host/suite_handler.h"

namespace vitrell {

// Runs the stage from io->src into io->dst with the exponent 10 to the power -lightnessAmount.
// Answers the host's code, or PF_Err_OUT_OF_MEMORY.
[[nodiscard]] PF_Err RunLightness(AEGP_SuiteHandler& suites, IO_Params* io, const LX_Info& info);

}  // namespace vitrell

#endif  // VITRELL_COLOUR_LIGHTNESS_H_
