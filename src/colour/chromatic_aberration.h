// Chromatic aberration: fetches red, green and blue from points scaled about the lens position.
#ifndef VITRELL_COLOUR_CHROMATIC_ABERRATION_H_
#define VITRELL_COLOUR_CHROMATIC_ABERRATION_H_

#include "base/render_records.h"
#include "host/host_api.h"
#include "host/suite_handler.h"

namespace vitrell {

// True when the stage changes anything: visible, and at least one of the three fractions above 0.
bool IsChromaticAberrationOn(const LX_Info& info);

// Runs the stage from io->src into io->dst. Answers the host's code, or PF_Err_OUT_OF_MEMORY.
[[nodiscard]] PF_Err RunChromaticAberration(AEGP_SuiteHandler& suites, IO_Params* io,
                                            const LX_Info& info);

}  // namespace vitrell

#endif  // VITRELL_COLOUR_CHROMATIC_ABERRATION_H_
