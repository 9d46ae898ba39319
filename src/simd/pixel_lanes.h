// One pixel in four lanes.
//
// Lanes are the channels in memory order: alpha, red, green, blue. 16-byte vectors are the baseline
// of both architectures, so that each kernel exists once.
#ifndef VITRELL_SIMD_PIXEL_LANES_H_
#define VITRELL_SIMD_PIXEL_LANES_H_

#include <cstdint>
#include <cstring>

#include "host/host_api.h"

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

namespace vitrell {

using U32Lanes = std::uint32_t __attribute__((vector_size(16)));
using I32Lanes = std::int32_t __attribute__((vector_size(16)));
using F32Lanes = float __attribute__((vector_size(16)));
using F64Pair = double __attribute__((vector_size(16)));

inline U32Lanes LoadLanes(const PF_Pixel* pixel) {
#if defined(__x86_64__)
  std::int32_t bytes = 0;
  std::memcpy(&bytes, pixel, sizeof(bytes));
  const __m128i zero = _mm_setzero_si128();
  const __m128i words = _mm_unpacklo_epi8(_mm_cvtsi32_si128(bytes), zero);
  return reinterpret_cast<U32Lanes>(_mm_unpacklo_epi16(words, zero));
#else
  return U32Lanes{pixel->alpha, pixel->red, pixel->green, pixel->blue};
#endif
}

inline U32Lanes LoadLanes(const PF_Pixel16* pixel) {
#if defined(__x86_64__)
  const __m128i words = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixel));
  return reinterpret_cast<U32Lanes>(_mm_unpacklo_epi16(words, _mm_setzero_si128()));
#else
  return U32Lanes{pixel->alpha, pixel->red, pixel->green, pixel->blue};
#endif
}

// Truncates four values, which must fit int32.
inline I32Lanes TruncateLanes(F32Lanes values) { return __builtin_convertvector(values, I32Lanes); }

inline I32Lanes TruncateLanes(F64Pair low, F64Pair high) {
#if defined(__x86_64__)
  return reinterpret_cast<I32Lanes>(
      _mm_unpacklo_epi64(_mm_cvttpd_epi32(reinterpret_cast<__m128d>(low)),
                         _mm_cvttpd_epi32(reinterpret_cast<__m128d>(high))));
#else
  return I32Lanes{static_cast<std::int32_t>(low[0]), static_cast<std::int32_t>(low[1]),
                  static_cast<std::int32_t>(high[0]), static_cast<std::int32_t>(high[1])};
#endif
}

// Converts four signed lanes to double precision.
inline void WidenLanes(I32Lanes lanes, F64Pair* low, F64Pair* high) {
#if defined(__x86_64__)
  const auto words = reinterpret_cast<__m128i>(lanes);
  *low = reinterpret_cast<F64Pair>(_mm_cvtepi32_pd(words));
  *high = reinterpret_cast<F64Pair>(_mm_cvtepi32_pd(_mm_unpackhi_epi64(words, words)));
#else
  *low = F64Pair{static_cast<double>(lanes[0]), static_cast<double>(lanes[1])};
  *high = F64Pair{static_cast<double>(lanes[2]), static_cast<double>(lanes[3])};
#endif
}

// Stores three colours, which must fit the channel, with the alpha of another pixel.
template <typename Pixel>
inline void StoreColors(I32Lanes lanes, const Pixel& alphaOf, Pixel* out) {
  using Channel = decltype(out->alpha);
  *out = {alphaOf.alpha, static_cast<Channel>(lanes[1]), static_cast<Channel>(lanes[2]),
          static_cast<Channel>(lanes[3])};
}

#if defined(__x86_64__)
template <>
inline void StoreColors(I32Lanes lanes, const PF_Pixel& alphaOf, PF_Pixel* out) {
  const auto dwords = reinterpret_cast<__m128i>(lanes);
  const __m128i words = _mm_packs_epi32(dwords, dwords);
  const std::int32_t bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
  std::memcpy(out, &bytes, sizeof(bytes));
  out->alpha = alphaOf.alpha;
}
#endif

}  // namespace vitrell

#endif  // VITRELL_SIMD_PIXEL_LANES_H_
