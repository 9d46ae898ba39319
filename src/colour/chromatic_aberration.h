// Chromatic aberration: fetches red, green and blue from points scaled about the lens position.
#ifndef VITRELL_COLOUR_CHROMATIC_ABERRATION_H_
#define VITRELL_COLOUR_CHROMATIC_ABERRATION_H_

#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

// Runs the stage from call.io.src into call.io.dst. Answers the host's code, or
// PF_Err_OUT_OF_MEMORY.
[[nodiscard]] PF_Err RunChromaticAberration(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_COLOUR_CHROMATIC_ABERRATION_H_
