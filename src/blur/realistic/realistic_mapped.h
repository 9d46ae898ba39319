// The realistic blur with the lens mask as blur map: each pixel has its own kernel.
#ifndef VITRELL_BLUR_REALISTIC_REALISTIC_MAPPED_H_
#define VITRELL_BLUR_REALISTIC_REALISTIC_MAPPED_H_

#include <cstdint>

#include "base/render_records.h"
#include "blur/realistic/iris_kernel.h"
#include "blur/realistic/lane_sums.h"
#include "host/host_api.h"

namespace vitrell {

// Blurs io.src into io.dst through the host's iterate suite. The lens mask sets each pixel's kernel
// radius: 0 where it is 0, maxRadius (0 to kMaxIrisRadius) where it is 1 or more. Both worlds must
// have the same depth. Returns the host's code, or PF_Err_OUT_OF_MEMORY before the host has been
// called; a missing suite throws.
[[nodiscard]] PF_Err BlurByMask(const IO_Params& io, const IrisShape& shape, std::int32_t maxRadius,
                                const IrisEngine& engine);

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_REALISTIC_MAPPED_H_
