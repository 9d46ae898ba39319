// Chains the blur engines that are on over the two working worlds.
#ifndef VITRELL_BLUR_BLUR_DISPATCHER_H_
#define VITRELL_BLUR_BLUR_DISPATCHER_H_

#include "base/render_records.h"
#include "host/host_api.h"

namespace vitrell {

// Pass 0: the blurs that do not follow the lens, then optical distortion, trail and directional
// blur. Any other pass: the fast and the realistic blur as far as they use the lens as blur map.
//
// Reads the picture in io->src and leaves the result in the world that io->dst named on entry; the
// other one is scratch of the same size and depth. io may be left with its worlds swapped. Answers
// the host's code; a missing suite throws.
[[nodiscard]] PF_Err RenderBlurEffect(IO_Params* io, LX_Info* info, int pass);

}  // namespace vitrell

#endif  // VITRELL_BLUR_BLUR_DISPATCHER_H_
