// The realistic blur's sums for many neighbouring pixels at once, one pixel in each vector lane.
#include "blur/lane_sums.h"

#include <cstddef>
#include <cstdint>

#include "blur/kernel_rows.h"

#define VITRELL_LANES_NAMESPACE baseline
#define VITRELL_LANES_BYTES 16
#define VITRELL_LANES_TARGET
#include "blur/lane_sums.inc"

#if defined(__x86_64__)
#define VITRELL_LANES_NAMESPACE avx2
#define VITRELL_LANES_BYTES 32
#define VITRELL_LANES_TARGET __attribute__((target("avx2")))
#include "blur/lane_sums.inc"

#define VITRELL_LANES_NAMESPACE avx512
#define VITRELL_LANES_BYTES 64
#define VITRELL_LANES_TARGET __attribute__((target("avx512f")))
#include "blur/lane_sums.inc"
#endif

namespace vitrell {

const LaneEngine* LaneEngineFor(LaneTarget target) {
  switch (target) {
    case LaneTarget::kBaseline:
      return &baseline::kEngine;
#if defined(__x86_64__)
    case LaneTarget::kAvx2:
      return __builtin_cpu_supports("avx2") ? &avx2::kEngine : nullptr;
    case LaneTarget::kAvx512:
      return __builtin_cpu_supports("avx512f") ? &avx512::kEngine : nullptr;
#endif
    default:
      return nullptr;
  }
}

const LaneEngine& BestLaneEngine() {
  for (const LaneTarget target : {LaneTarget::kAvx512, LaneTarget::kAvx2}) {
    if (const LaneEngine* const engine = LaneEngineFor(target); engine != nullptr) {
      return *engine;
    }
  }
  return baseline::kEngine;
}

}  // namespace vitrell
