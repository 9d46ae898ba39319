// Runs those blurs that are on, one after another, over the two working worlds.
#ifndef VITRELL_BLUR_BLUR_DISPATCHER_H_
#define VITRELL_BLUR_BLUR_DISPATCHER_H_

#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

// The uniform pass runs the blurs that do not follow the lens, then optical distortion, trail and
// directional blur. The lens-mapped pass runs the fast and the realistic blur if they use the lens
// as their blur map.
//
// Reads call.io.src and leaves the result in call.io.dst; the source serves as scratch and must
// have the same size and depth. Each blur has its own suites, so that nothing is acquired through
// call.suites. Returns the host's code; a missing suite throws.
[[nodiscard]] PF_Err RenderBlurEffect(const StageCall& call, BlurPass pass);

}  // namespace vitrell

#endif  // VITRELL_BLUR_BLUR_DISPATCHER_H_
