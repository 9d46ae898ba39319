// The blend modes over one pixel under a mask value of 1, in fewer steps than under any.
//
// Every lane has the bits of BlendedLanes with m = 1. Without a mask the products are whole
// numbers, so that integers and single precision hold what the formulas compute in double.
#ifndef VITRELL_COLOUR_WHOLE_BLEND_LANES_H_
#define VITRELL_COLOUR_WHOLE_BLEND_LANES_H_

#include <type_traits>

#include "colour/blend_lanes.h"

namespace vitrell {

// Multiply needs an opacity of 0 or at least this.
inline constexpr float kLeastQuickOpacity = 0x1p-20F;

// The products f x b modulo 2^32.
inline I32Lanes ProductLanes(const PF_Pixel& front, const PF_Pixel& back) {
  const I32Lanes f = ToLanes(front);
  const I32Lanes b = ToLanes(back);
#if defined(__x86_64__)
  // The upper halves of the lanes are 0.
  return reinterpret_cast<I32Lanes>(
      _mm_madd_epi16(reinterpret_cast<__m128i>(f), reinterpret_cast<__m128i>(b)));
#else
  return f * b;
#endif
}

inline I32Lanes ProductLanes(const PF_Pixel16& front, const PF_Pixel16& back) {
#if defined(__x86_64__)
  const __m128i f = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&front));
  const __m128i b = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&back));
  return reinterpret_cast<I32Lanes>(
      _mm_unpacklo_epi16(_mm_mullo_epi16(f, b), _mm_mulhi_epu16(f, b)));
#else
  const auto f = reinterpret_cast<U32Lanes>(ToLanes(front));
  const auto b = reinterpret_cast<U32Lanes>(ToLanes(back));
  return reinterpret_cast<I32Lanes>(f * b);
#endif
}

// trunc((1 - (1 - b / 32768) x (1 - f / 32768)) x 32768). Every step of that is exact: the result
// is b + f - f x b / 32768, whose numerator is never negative and below 2^31.
inline I32Lanes WholeScreenLanes(const PF_Pixel16& front, const PF_Pixel16& back) {
  const auto sum = reinterpret_cast<U32Lanes>(ToLanes(front) + ToLanes(back));
  const auto product = reinterpret_cast<U32Lanes>(ProductLanes(front, back));
  return reinterpret_cast<I32Lanes>(((sum << 15) - product) >> 15);
}

// The product of Multiply, divided by white.
inline I32Lanes WholeProductLanes(const PF_Pixel& front, const PF_Pixel& back) {
  // floor(p / 255) for 0 <= p <= 65025.
  const I32Lanes next = ProductLanes(front, back) + 1;
  return (next + (next >> 8)) >> 8;
}

inline I32Lanes WholeProductLanes(const PF_Pixel16& front, const PF_Pixel16& back) {
  return ProductLanes(front, back) >> 15;
}

inline bool HasNegative(I32Lanes lanes) {
#if defined(__x86_64__)
  return _mm_movemask_ps(reinterpret_cast<__m128>(lanes)) != 0;
#else
  return (lanes[0] | lanes[1] | lanes[2] | lanes[3]) < 0;
#endif
}

// trunc(b + change), with change = (product - b) x opacity in single and the sum in double
// precision. If it is not 0, |change| is at least 2^-20, and a sum with a whole number below 2^16
// is then either exact or rounded by less than its distance from the next whole numbers. As the sum
// is not negative, it is b + floor(change). Only a 16-bit product that has wrapped is negative.
template <typename Pixel>
I32Lanes WholeMultiplyLanes(const Pixel& front, const Pixel& back, float opacity) {
  const I32Lanes product = WholeProductLanes(front, back);
  if constexpr (std::is_same_v<Pixel, PF_Pixel16>) {
    if (HasNegative(product)) [[unlikely]] {
      return BlendedLanes<kMultiply>(front, back, 1, opacity);
    }
  }
  const I32Lanes b = ToLanes(back);
  const F32Lanes change = ToFloat(product - b) * opacity;
  const I32Lanes truncated = TruncateLanes(change);
  return b + truncated + (ToFloat(truncated) > change);
}

// BlendedLanes with m = 1.
template <int kMode, typename Pixel>
I32Lanes WholeBlendedLanes(const Pixel& front, const Pixel& back, float opacity) {
  if constexpr (kMode == kMultiply) {
    return WholeMultiplyLanes(front, back, opacity);
  } else if constexpr (kMode == kScreen && std::is_same_v<Pixel, PF_Pixel16>) {
    return TowardLanes(ToLanes(back), WholeScreenLanes(front, back), opacity);
  } else {
    return BlendedLanes<kMode>(front, back, 1, opacity);
  }
}

}  // namespace vitrell

#endif  // VITRELL_COLOUR_WHOLE_BLEND_LANES_H_
