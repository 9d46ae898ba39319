// Bilinear samples at many points, with a pixel's four channels in one vector.
#ifndef VITRELL_BLUR_OPTICAL_BILINEAR_SAMPLES_H_
#define VITRELL_BLUR_OPTICAL_BILINEAR_SAMPLES_H_

#include <cstdint>

#include "blur/optical/distortion_field.h"
#include "host/host_api.h"
#include "simd/lane_target.h"

namespace vitrell {

// For a source with origin (0, 0) and mirrored edges; returns the same bits as
// GetPointerFromDataDP.
template <typename Pixel>
struct BilinearEngine {
  // Samples the sources of some pixels of one row: out[pixels.x[i]] gets the sampled colours and
  // the alpha of in[pixels.x[i]].
  void (*sample)(const PF_LayerDef& src, const DistortedPixels& pixels, const Pixel* in,
                 Pixel* out);
};

template <>
const LaneEngines<BilinearEngine<PF_Pixel>>& EnginesOf<BilinearEngine<PF_Pixel>>();
template <>
const LaneEngines<BilinearEngine<PF_Pixel16>>& EnginesOf<BilinearEngine<PF_Pixel16>>();

}  // namespace vitrell

#endif  // VITRELL_BLUR_OPTICAL_BILINEAR_SAMPLES_H_
