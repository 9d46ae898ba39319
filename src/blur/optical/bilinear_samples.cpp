// Bilinear samples of many points, the four channels of each side by side in a vector.
#include "blur/optical/bilinear_samples.h"

#include <cstddef>

#include "base/numeric.h"
#include "base/pixel_access.h"
#include "simd/pixel_lanes.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#define VITRELL_LANES_NAMESPACE baseline
#define VITRELL_LANES_TARGET
#define VITRELL_LANES_AVX2 0
#include "blur/optical/bilinear_samples.inc"

#if defined(__x86_64__)
#define VITRELL_LANES_NAMESPACE avx2
#define VITRELL_LANES_TARGET __attribute__((target("avx2")))
#define VITRELL_LANES_AVX2 1
#include "blur/optical/bilinear_samples.inc"
#endif

namespace vitrell {
namespace {

template <typename Pixel>
constexpr LaneEngines<BilinearEngine<Pixel>> kEngines = {
    &baseline::kEngine<Pixel>,
#if defined(__x86_64__)
    &avx2::kEngine<Pixel>,
#endif
};

}  // namespace

template <typename Pixel>
const BilinearEngine<Pixel>* BilinearEngineFor(LaneTarget target) {
  return kEngines<Pixel>.For(target);
}

template <typename Pixel>
const BilinearEngine<Pixel>& BestBilinearEngine() {
  return kEngines<Pixel>.Best();
}

template const BilinearEngine<PF_Pixel>* BilinearEngineFor(LaneTarget target);
template const BilinearEngine<PF_Pixel16>* BilinearEngineFor(LaneTarget target);
template const BilinearEngine<PF_Pixel>& BestBilinearEngine();
template const BilinearEngine<PF_Pixel16>& BestBilinearEngine();

}  // namespace vitrell
