// Chains the blur engines that are on over the two working worlds.
#ifndef VITRELL_BLUR_BLUR_DISPATCHER_H_
#define VITRELL_BLUR_BLUR_DISPATCHER_H_

#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

// The uniform pass: the blurs that do not follow the lens, then optical distortion, trail and
// directional blur. The lens-mapped pass: the fast and the realistic blur as far as they use the
// lens as blur map.
//
// Reads the picture in call.io.src and leaves the result in call.io.dst; the source is scratch of
// the same size and depth. Each blur has suites of its own, so that call.suites acquires nothing.
// Answers the host's code; a missing suite throws.
[[nodiscard]] PF_Err RenderBlurEffect(const StageCall& call, BlurPass pass);

}  // namespace vitrell

#endif  // VITRELL_BLUR_BLUR_DISPATCHER_H_
