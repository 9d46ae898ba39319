// Means of pixels weighted by the lens mask, over windows of any length, from running sums.
#include "blur/weighted_lines.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "blur/lanes.h"
#include "render/depth_traits.h"
#include "render/numeric.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#define VITRELL_LANES_NAMESPACE baseline
#define VITRELL_LANES_TARGET
#define VITRELL_LANES_AVX2 0
#include "blur/weighted_lines.inc"

#if defined(__x86_64__)
#define VITRELL_LANES_NAMESPACE avx2
#define VITRELL_LANES_TARGET __attribute__((target("avx2")))
#define VITRELL_LANES_AVX2 1
#include "blur/weighted_lines.inc"
#endif

namespace vitrell {

template <typename Pixel>
const WeightedEngine<Pixel>* WeightedEngineFor(LaneTarget target) {
  switch (target) {
    case LaneTarget::kBaseline:
      return &baseline::kEngine<Pixel>;
#if defined(__x86_64__)
    case LaneTarget::kAvx2:
      return __builtin_cpu_supports("avx2") ? &avx2::kEngine<Pixel> : nullptr;
#endif
    default:
      return nullptr;
  }
}

template <typename Pixel>
const WeightedEngine<Pixel>& BestWeightedEngine() {
  const WeightedEngine<Pixel>* const engine = WeightedEngineFor<Pixel>(LaneTarget::kAvx2);
  return engine != nullptr ? *engine : baseline::kEngine<Pixel>;
}

template const WeightedEngine<PF_Pixel>* WeightedEngineFor(LaneTarget target);
template const WeightedEngine<PF_Pixel16>* WeightedEngineFor(LaneTarget target);
template const WeightedEngine<PF_Pixel>& BestWeightedEngine();
template const WeightedEngine<PF_Pixel16>& BestWeightedEngine();

}  // namespace vitrell
