// Optical distortion: bends the image inside the lens as a wide-angle lens would.
#ifndef VITRELL_BLUR_OPTICAL_OPTICAL_DISTORTION_H_
#define VITRELL_BLUR_OPTICAL_OPTICAL_DISTORTION_H_

#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

// Runs the stage from call.io.src into call.io.dst and returns the host's code. The focal length
// follows from the field of view (info.opticalAmount, in degrees) and the diagonal of call.io.dst.
[[nodiscard]] PF_Err RunOpticalDistortion(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_BLUR_OPTICAL_OPTICAL_DISTORTION_H_
