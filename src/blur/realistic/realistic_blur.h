// Realistic blur: a lens blur with an iris-shaped kernel in which bright pixels weigh more.
#ifndef VITRELL_BLUR_REALISTIC_REALISTIC_BLUR_H_
#define VITRELL_BLUR_REALISTIC_REALISTIC_BLUR_H_

#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

// The stage: blurs call.io.src into call.io.dst, either uniformly on the calling thread or, with
// the lens as blur map, per pixel through the host's iterate suite. Returns the host's code; a
// missing suite throws. A lack of memory gives PF_Err_OUT_OF_MEMORY, and so does a radius far
// beyond the slider's range (above kMaxIrisRadius or not representable). Worlds of different depths
// give PF_Err_BAD_CALLBACK_PARAM. The edges are mended even if the pass failed. All allocations are
// released on every path.
[[nodiscard]] PF_Err RenderReleasticBlurEffect(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_REALISTIC_BLUR_H_
