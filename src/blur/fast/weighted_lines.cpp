// Means of pixels weighted by the lens mask, over windows of any length, from running sums.
#include "blur/fast/weighted_lines.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "simd/pixel_lanes.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#define VITRELL_LANES_NAMESPACE baseline
#define VITRELL_LANES_TARGET
#define VITRELL_LANES_AVX2 0
#include "blur/fast/weighted_lines.inc"

#if defined(__x86_64__)
#define VITRELL_LANES_NAMESPACE avx2
#define VITRELL_LANES_TARGET __attribute__((target("avx2")))
#define VITRELL_LANES_AVX2 1
#include "blur/fast/weighted_lines.inc"
#endif

namespace vitrell {
namespace {

template <typename Pixel>
constexpr LaneEngines<WeightedEngine<Pixel>> kEngines = {
    &baseline::kEngine<Pixel>,
#if defined(__x86_64__)
    &avx2::kEngine<Pixel>,
#endif
};

}  // namespace

template <typename Pixel>
const WeightedEngine<Pixel>* WeightedEngineFor(LaneTarget target) {
  return kEngines<Pixel>.For(target);
}

template <typename Pixel>
const WeightedEngine<Pixel>& BestWeightedEngine() {
  return kEngines<Pixel>.Best();
}

template const WeightedEngine<PF_Pixel>* WeightedEngineFor(LaneTarget target);
template const WeightedEngine<PF_Pixel16>* WeightedEngineFor(LaneTarget target);
template const WeightedEngine<PF_Pixel>& BestWeightedEngine();
template const WeightedEngine<PF_Pixel16>& BestWeightedEngine();

}  // namespace vitrell
