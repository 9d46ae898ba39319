// The realistic blur's sums for many neighbouring pixels at once, one pixel per vector lane.
#include "blur/realistic/lane_sums.h"

#include <cstddef>
#include <cstdint>

#include "blur/realistic/kernel_rows.h"

#define VITRELL_LANES_SOURCE "blur/realistic/lane_sums.inc"
#define VITRELL_LANES_AVX512 1
#include "simd/for_each_target.inc"

namespace vitrell {
namespace {

constexpr LaneEngines<IrisEngine> kEngines = VITRELL_LANE_ENGINES(kEngine);

}  // namespace

template <>
const LaneEngines<IrisEngine>& EnginesOf<IrisEngine>() {
  return kEngines;
}

}  // namespace vitrell
