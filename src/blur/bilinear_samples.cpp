// Bilinear samples of many points, the four channels of each side by side in a vector.
#include "blur/bilinear_samples.h"

#include <cstddef>

#include "blur/lanes.h"
#include "render/numeric.h"
#include "render/pixel_access.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#define VITRELL_LANES_NAMESPACE baseline
#define VITRELL_LANES_TARGET
#define VITRELL_LANES_AVX2 0
#include "blur/bilinear_samples.inc"

#if defined(__x86_64__)
#define VITRELL_LANES_NAMESPACE avx2
#define VITRELL_LANES_TARGET __attribute__((target("avx2")))
#define VITRELL_LANES_AVX2 1
#include "blur/bilinear_samples.inc"
#endif

namespace vitrell {

template <typename Pixel>
const BilinearEngine<Pixel>* BilinearEngineFor(LaneTarget target) {
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
const BilinearEngine<Pixel>& BestBilinearEngine() {
  const BilinearEngine<Pixel>* const engine = BilinearEngineFor<Pixel>(LaneTarget::kAvx2);
  return engine != nullptr ? *engine : baseline::kEngine<Pixel>;
}

template const BilinearEngine<PF_Pixel>* BilinearEngineFor(LaneTarget target);
template const BilinearEngine<PF_Pixel16>* BilinearEngineFor(LaneTarget target);
template const BilinearEngine<PF_Pixel>& BestBilinearEngine();
template const BilinearEngine<PF_Pixel16>& BestBilinearEngine();

}  // namespace vitrell
