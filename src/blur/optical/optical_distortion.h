// Optical distortion: bends the picture inside the lens as a wide-angle lens would.
#ifndef VITRELL_BLUR_OPTICAL_OPTICAL_DISTORTION_H_
#define VITRELL_BLUR_OPTICAL_OPTICAL_DISTORTION_H_

#include "base/render_records.h"
#include "host/host_api.h"
#include "host/suite_handler.h"

namespace vitrell {

// Runs the stage from io->src into io->dst and answers the host's code. The focal length follows
// from the field of view (info.opticalAmount) and the diagonal of io->dst.
[[nodiscard]] PF_Err RunOpticalDistortion(AEGP_SuiteHandler& suites, IO_Params* io,
                                          const LX_Info& info);

}  // namespace vitrell

#endif  // VITRELL_BLUR_OPTICAL_OPTICAL_DISTORTION_H_
