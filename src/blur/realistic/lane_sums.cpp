// The realistic blur's sums for many neighbouring pixels at once, one pixel in each vector lane.
#include "blur/realistic/lane_sums.h"

#include <cstddef>
#include <cstdint>

#include "blur/realistic/kernel_rows.h"

#define VITRELL_LANES_NAMESPACE baseline
#define VITRELL_LANES_BYTES 16
#define VITRELL_LANES_TARGET
#include "blur/realistic/lane_sums.inc"

#if defined(__x86_64__)
#define VITRELL_LANES_NAMESPACE avx2
#define VITRELL_LANES_BYTES 32
#define VITRELL_LANES_TARGET __attribute__((target("avx2")))
#include "blur/realistic/lane_sums.inc"

#define VITRELL_LANES_NAMESPACE avx512
#define VITRELL_LANES_BYTES 64
#define VITRELL_LANES_TARGET __attribute__((target("avx512f")))
#include "blur/realistic/lane_sums.inc"
#endif

namespace vitrell {
namespace {

constexpr LaneEngines<LaneEngine> kEngines = {
    &baseline::kEngine,
#if defined(__x86_64__)
    &avx2::kEngine,
    &avx512::kEngine,
#endif
};

}  // namespace

const LaneEngine* LaneEngineFor(LaneTarget target) { return kEngines.For(target); }

const LaneEngine& BestLaneEngine() { return kEngines.Best(); }

}  // namespace vitrell
