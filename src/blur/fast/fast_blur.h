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

// Memory that the rounds of one blur share, and whether any was ever not to be had.
template <typename Pixel>
struct BoxBlurScratch {
  BoxRows<Pixel> rows;
  StripMemory<Pixel> blurredRows;
  WeightedMemory<Pixel> weighted;
  bool outOfMemory = false;
};

// The stage: blurs call.io.src into call.io.dst; call.io.src serves as scratch. Copies where the
// plan says so: the lens has no extent, the stage is off or the radius is 0. Answers the last
// round's code: earlier rounds' failures are ignored, except for memory of the effect's own
// (PF_Err_OUT_OF_MEMORY). A missing suite throws.
[[nodiscard]] PF_Err RenderFastBlurEffect(const StageCall& call);

// Three rounds of FastBlurA.
template <typename Pixel, typename Channel = ChannelOf<Pixel>>
[[nodiscard]] PF_Err FastBlur(const IO_Params& io, std::int32_t radiusPx, std::uint8_t lensMap);

// One horizontal and one vertical box pass; the result is in both of the worlds. The last
// byte is not used. Own shortage of memory is told in scratch as well as in the result.
template <typename Pixel, typename Channel = ChannelOf<Pixel>>
[[nodiscard]] PF_Err FastBlurA(const IO_Params& io, std::int32_t horizontalRadiusPx,
                               std::int32_t verticalRadiusPx, std::uint8_t lensMap,
                               std::uint8_t unused, BoxBlurScratch<Pixel>* scratch);

// Iterate callbacks of the two passes; refcon begins with a BoxBlurRefcon, behind which stand the
// tables of the pass. Always return 0. Alpha is never blurred.
template <typename Pixel, typename Channel = ChannelOf<Pixel>>
PF_Err FastBlurH(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out);
template <typename Pixel, typename Channel = ChannelOf<Pixel>>
PF_Err FastBlurV(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out);

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_FAST_BLUR_H_
