// Sums of box windows around neighbouring pixels, and their rounded means, with wide vectors.
#include "blur/fast/box_lines.h"

#include <cstring>
#include <type_traits>

#include "simd/channel_lanes.h"

#define VITRELL_LANES_SOURCE "blur/fast/box_lines.inc"
#define VITRELL_LANES_AVX512 1
#include "simd/for_each_target.inc"

namespace vitrell {
namespace {

template <typename Pixel>
constexpr LaneEngines<BoxEngine<Pixel>> kEngines = VITRELL_LANE_ENGINES(kEngine<Pixel>);

}  // namespace

template <>
const LaneEngines<BoxEngine<PF_Pixel>>& EnginesOf<BoxEngine<PF_Pixel>>() {
  return kEngines<PF_Pixel>;
}

template <>
const LaneEngines<BoxEngine<PF_Pixel16>>& EnginesOf<BoxEngine<PF_Pixel16>>() {
  return kEngines<PF_Pixel16>;
}

}  // namespace vitrell
