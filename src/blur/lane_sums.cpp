// The realistic blur's sums for many neighbouring pixels at once, one pixel in each vector lane.
#include "blur/lane_sums.h"

#include <cstddef>

#define VITRELL_LANES_NAMESPACE baseline
#define VITRELL_LANES_BYTES 16
#define VITRELL_LANES_TARGET
#include "blur/lane_sums-inl.h"

#if defined(__x86_64__)
#define VITRELL_LANES_NAMESPACE avx2
#define VITRELL_LANES_BYTES 32
#define VITRELL_LANES_TARGET __attribute__((target("avx2")))
#include "blur/lane_sums-inl.h"

#define VITRELL_LANES_NAMESPACE avx512
#define VITRELL_LANES_BYTES 64
#define VITRELL_LANES_TARGET __attribute__((target("avx512f")))
#include "blur/lane_sums-inl.h"
#endif

namespace vitrell {

const LaneEngines* LaneEnginesFor(LaneTarget target) {
  switch (target) {
    case LaneTarget::kBaseline:
      return &baseline::kEngines;
#if defined(__x86_64__)
    case LaneTarget::kAvx2:
      return __builtin_cpu_supports("avx2") ? &avx2::kEngines : nullptr;
    case LaneTarget::kAvx512:
      return __builtin_cpu_supports("avx512f") ? &avx512::kEngines : nullptr;
#endif
    default:
      return nullptr;
  }
}

const LaneEngines& BestLaneEngines() {
  for (const LaneTarget target : {LaneTarget::kAvx512, LaneTarget::kAvx2}) {
    if (const LaneEngines* const engines = LaneEnginesFor(target); engines != nullptr) {
      return *engines;
    }
  }
  return baseline::kEngines;
}

}  // namespace vitrell
