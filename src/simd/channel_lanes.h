// A pixel's channels in four lanes, in the precisions of the tone stages.
#ifndef VITRELL_SIMD_CHANNEL_LANES_H_
#define VITRELL_SIMD_CHANNEL_LANES_H_

#include <cstdint>
#include <cstring>

#include "simd/pixel_lanes.h"

namespace vitrell {

// Four channels in double precision: low holds alpha and red, high holds green and blue.
struct F64Lanes {
  F64Pair low;
  F64Pair high;
};

template <typename Pixel>
I32Lanes ToLanes(const Pixel& pixel) {
  return reinterpret_cast<I32Lanes>(LoadLanes(&pixel));
}

inline F64Lanes Widen(I32Lanes lanes) {
  F64Lanes wide;
  WidenLanes(lanes, &wide.low, &wide.high);
  return wide;
}

inline I32Lanes Truncate(const F64Lanes& lanes) { return TruncateLanes(lanes.low, lanes.high); }

inline F32Lanes ToFloat(I32Lanes lanes) { return __builtin_convertvector(lanes, F32Lanes); }

// Selects per lane: `one` where the condition is -1, `other` where it is 0.
inline I32Lanes Choose(I32Lanes condition, I32Lanes one, I32Lanes other) {
  return (condition & one) | (~condition & other);
}

// Stores the low 8 or 16 bits of each lane.
inline void StoreLowBits(I32Lanes lanes, PF_Pixel* out) {
#if defined(__x86_64__)
  const auto dwords = reinterpret_cast<__m128i>(lanes & 0xFF);
  const __m128i words = _mm_packs_epi32(dwords, dwords);
  const std::int32_t bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
  std::memcpy(out, &bytes, sizeof(bytes));
#else
  *out = {static_cast<A_u_char>(lanes[0]), static_cast<A_u_char>(lanes[1]),
          static_cast<A_u_char>(lanes[2]), static_cast<A_u_char>(lanes[3])};
#endif
}

inline void StoreLowBits(I32Lanes lanes, PF_Pixel16* out) {
#if defined(__x86_64__)
  // The narrowing instruction saturates, so that the low 16 bits are first sign-extended.
  const auto dwords = reinterpret_cast<__m128i>(lanes);
  const __m128i halves = _mm_srai_epi32(_mm_slli_epi32(dwords, 16), 16);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packs_epi32(halves, halves));
#else
  *out = {static_cast<A_u_short>(lanes[0]), static_cast<A_u_short>(lanes[1]),
          static_cast<A_u_short>(lanes[2]), static_cast<A_u_short>(lanes[3])};
#endif
}

}  // namespace vitrell

#endif  // VITRELL_SIMD_CHANNEL_LANES_H_
