// Means of pixels weighted by the lens mask over windows of any length, from prefix sums.
#include "blur/fast/weighted_lines.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "simd/pixel_lanes.h"

#define VITRELL_LANES_SOURCE "blur/fast/weighted_lines.inc"
#define VITRELL_LANES_AVX512 0
#include "simd/for_each_target.inc"

namespace vitrell {
namespace {

template <typename Pixel>
constexpr LaneEngines<WeightedEngine<Pixel>> kEngines = VITRELL_LANE_ENGINES(kEngine<Pixel>);

}  // namespace

template <>
const LaneEngines<WeightedEngine<PF_Pixel>>& EnginesOf<WeightedEngine<PF_Pixel>>() {
  return kEngines<PF_Pixel>;
}

template <>
const LaneEngines<WeightedEngine<PF_Pixel16>>& EnginesOf<WeightedEngine<PF_Pixel16>>() {
  return kEngines<PF_Pixel16>;
}

}  // namespace vitrell
