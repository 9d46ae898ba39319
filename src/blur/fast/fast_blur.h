// Fast blur: a box blur of the colour channels, repeated three times, uniform or by the lens mask.
#ifndef VITRELL_BLUR_FAST_FAST_BLUR_H_
#define VITRELL_BLUR_FAST_FAST_BLUR_H_

#include <cstdint>

#include "base/depth_traits.h"
#include "base/render_records.h"
#include "blur/fast/box_rows.h"
#include "blur/fast/weighted_strips.h"
#include "host/host_api.h"
#include "pass/lazy_strips.h"
#include "pass/stage.h"

namespace vitrell {

// Memory that the rounds of one blur share, and whether an allocation of it has failed.
template <typename Pixel>
struct BoxBlurScratch {
  BoxRows<Pixel> rows;
  StripMemory<Pixel> blurredRows;
  WeightedMemory<Pixel> weighted;
  bool outOfMemory = false;
};

// The stage: blurs call.io.src into call.io.dst; call.io.src serves as scratch. Copies if the plan
// says so (the lens has no area, the stage is off, or the radius is 0). Returns the last round's
// code; failures of earlier rounds are ignored, except PF_Err_OUT_OF_MEMORY from the effect's own
// allocations. A missing suite throws.
[[nodiscard]] PF_Err RenderFastBlurEffect(const StageCall& call);

// Three rounds of FastBlurA.
template <typename Pixel>
[[nodiscard]] PF_Err FastBlur(const IO_Params& io, std::int32_t radiusPx, std::uint8_t lensMap);

// One horizontal and one vertical box pass; both worlds end up with the result. Without the lens
// map the pixels of the round's temporary world hold strips of the result. The effect's own lack of
// memory is recorded in scratch and returned.
template <typename Pixel>
[[nodiscard]] PF_Err FastBlurA(const IO_Params& io, std::int32_t horizontalRadiusPx,
                               std::int32_t verticalRadiusPx, std::uint8_t lensMap,
                               BoxBlurScratch<Pixel>* scratch);

// Iterate callbacks of the two passes. The refcon begins with a BoxBlurRefcon, followed by the
// tables of the pass. Always return 0. Alpha is not blurred.
template <typename Pixel>
PF_Err FastBlurH(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out);
template <typename Pixel>
PF_Err FastBlurV(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out);

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_FAST_BLUR_H_
