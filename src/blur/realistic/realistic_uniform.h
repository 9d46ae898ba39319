// The realistic blur with one kernel for all pixels: a window that slides along each row.
#ifndef VITRELL_BLUR_REALISTIC_REALISTIC_UNIFORM_H_
#define VITRELL_BLUR_REALISTIC_REALISTIC_UNIFORM_H_

#include <cstdint>

#include "base/render_records.h"
#include "blur/realistic/iris_kernel.h"
#include "blur/realistic/lane_sums.h"
#include "host/host_api.h"

namespace vitrell {

// Clears io.dst through the host and blurs io.src into it on the calling thread. Both worlds must
// have the same depth; radius is 0 to kMaxIrisRadius. If the fill fails, nothing is blurred and its
// code is returned; if memory is short, nothing is written and the result is PF_Err_OUT_OF_MEMORY.
[[nodiscard]] PF_Err BlurUniformly(const IO_Params& io, const IrisShape& shape, std::int32_t radius,
                                   const IrisEngine& engine);

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_REALISTIC_UNIFORM_H_
