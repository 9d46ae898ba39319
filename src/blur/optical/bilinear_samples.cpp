// Bilinear samples at many points, with a pixel's four channels in one vector.
#include "blur/optical/bilinear_samples.h"

#include <cstddef>

#include "base/numeric.h"
#include "base/pixel_access.h"
#include "simd/pixel_lanes.h"

#define VITRELL_LANES_SOURCE "blur/optical/bilinear_samples.inc"
#define VITRELL_LANES_AVX512 0
#include "simd/for_each_target.inc"

namespace vitrell {
namespace {

template <typename Pixel>
constexpr LaneEngines<BilinearEngine<Pixel>> kEngines = VITRELL_LANE_ENGINES(kEngine<Pixel>);

}  // namespace

template <>
const LaneEngines<BilinearEngine<PF_Pixel>>& EnginesOf<BilinearEngine<PF_Pixel>>() {
  return kEngines<PF_Pixel>;
}

template <>
const LaneEngines<BilinearEngine<PF_Pixel16>>& EnginesOf<BilinearEngine<PF_Pixel16>>() {
  return kEngines<PF_Pixel16>;
}

}  // namespace vitrell
