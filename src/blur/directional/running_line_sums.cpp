// The running sums of 8-bit lines for a block of neighbouring pixels, one channel per vector lane.
#include "blur/directional/running_line_sums.h"

#define VITRELL_LANES_SOURCE "blur/directional/running_line_sums.inc"
#define VITRELL_LANES_AVX512 1
#include "simd/for_each_target.inc"

namespace vitrell {
namespace {

constexpr LaneEngines<RunningEngine> kEngines = VITRELL_LANE_ENGINES(kEngine);

}  // namespace

template <>
const LaneEngines<RunningEngine>& EnginesOf<RunningEngine>() {
  return kEngines;
}

}  // namespace vitrell
