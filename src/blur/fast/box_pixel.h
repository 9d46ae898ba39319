// The definition of the fast blur: one pass along one axis computes one pixel, tap by tap.
#ifndef VITRELL_BLUR_FAST_BOX_PIXEL_H_
#define VITRELL_BLUR_FAST_BOX_PIXEL_H_

#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"
#include "lens/lens_mask.h"

namespace vitrell {

// The lines along which a pass blurs.
enum class BoxAxis { kRows, kColumns };

// The settings of one pass.
struct BoxBlurRefcon {
  const IO_Params* io;
  std::int32_t radiusPx;
  std::uint8_t lensMap;   // 1: the lens mask weights the taps.
  PF_LayerDef unblurred;  // The source as it was before both passes.
};

// Combines the blurred colours with the alpha of the pass's input.
template <typename Pixel>
inline void PublishColors(const Pixel& blurred, const Pixel& in, Pixel* out) {
  const auto alpha = in.alpha;  // in may be *out.
  *out = blurred;               // One store of the whole pixel, then one of a channel.
  out->alpha = alpha;
}

// The unweighted mean of the taps around layer position (x, y); alpha is that of in.
template <BoxAxis kAxis, typename Pixel>
void StorePlainBox(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y, const Pixel& in,
                   Pixel* out);

// The mean weighted by the lens mask, whose value m at (x, y) must be above 0 and sets the reach,
// radius x m; alpha is that of in.
template <BoxAxis kAxis, typename Pixel>
void StoreWeightedBox(const BoxBlurRefcon& box, const LensMaskView& mask, std::int32_t x,
                      std::int32_t y, const Pixel& in, Pixel* out);

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_BOX_PIXEL_H_
