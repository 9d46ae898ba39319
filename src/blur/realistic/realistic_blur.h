// Realistic blur: a lens blur with an iris-shaped kernel in which bright pixels weigh more.
#ifndef VITRELL_BLUR_REALISTIC_REALISTIC_BLUR_H_
#define VITRELL_BLUR_REALISTIC_REALISTIC_BLUR_H_

#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

// The stage: blurs call.io.src into call.io.dst, uniformly on the calling thread or, with the lens
// as blur map, per pixel through the host's iterate suite. Answers the host's code, or
// PF_Err_OUT_OF_MEMORY; a missing suite throws. Everything it allocates is released on every path.
// A radius that the slider does not offer by far (above kMaxIrisRadius, or not representable)
// counts as memory that is not to be had; worlds of differing depths answer
// PF_Err_BAD_CALLBACK_PARAM. The edges are mended also after a pass that failed.
[[nodiscard]] PF_Err RenderReleasticBlurEffect(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_REALISTIC_BLUR_H_
