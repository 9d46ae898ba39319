// The blend modes over one pixel, its four channels in the lanes of a vector.
//
// Opacities and mask values must lie in [0, 1]: every intermediate value then fits 32 bits, beyond
// which processors differ. Each lane takes the steps of the scalar formula in the same order and
// precision, so that the bits are the same.
#ifndef VITRELL_COLOUR_BLEND_LANES_H_
#define VITRELL_COLOUR_BLEND_LANES_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "base/render_records.h"
#include "simd/channel_lanes.h"

namespace vitrell {

// base + (target - base) x opacity.
inline I32Lanes TowardLanes(I32Lanes base, I32Lanes target, float opacity) {
  return TruncateLanes(ToFloat(base) + ToFloat(target - base) * opacity);
}

inline constexpr std::array<double, 256> kShareBelowWhite8 = [] {
  std::array<double, 256> shares{};
  for (std::size_t i = 0; i < shares.size(); ++i) {
    shares[i] = 1 - static_cast<double>(i) / 255.0;
  }
  return shares;
}();

// 1 - v / 255 for every channel, by look-up table: a division takes longer.
inline F64Lanes ShareBelowWhite(const PF_Pixel& v) {
  const auto& shares = kShareBelowWhite8;
  return {F64Pair{shares[v.alpha], shares[v.red]}, F64Pair{shares[v.green], shares[v.blue]}};
}

inline F64Lanes ShareBelowWhite(const PF_Pixel16& v) {
  constexpr double kInverseWhite = 3.0517578125e-05;  // 1 / 32768.
  const F64Lanes wide = Widen(ToLanes(v));
  return {1 - wide.low * kInverseWhite, 1 - wide.high * kInverseWhite};
}

// 1 - f x m / white.
template <typename Pixel>
F64Lanes MaskedShareBelowWhite(const Pixel& front, double m) {
  if (m == 1) {
    return ShareBelowWhite(front);
  }
  const F64Lanes f = Widen(ToLanes(front));
  if constexpr (sizeof(Pixel) == sizeof(PF_Pixel)) {
    return {1 - f.low * m / 255.0, 1 - f.high * m / 255.0};
  } else {
    constexpr double kInverseWhite = 3.0517578125e-05;
    return {1 - f.low * m * kInverseWhite, 1 - f.high * m * kInverseWhite};
  }
}

template <typename Pixel>
I32Lanes ScreenLanes(const Pixel& front, const Pixel& back, double m) {
  constexpr bool kDeep = sizeof(Pixel) == sizeof(PF_Pixel16);
  constexpr double kWhite = kDeep ? 32768.0 : 255.0;
  const F64Lanes f = MaskedShareBelowWhite(front, m);
  const F64Lanes b = ShareBelowWhite(back);
  const I32Lanes screened =
      Truncate({(1 - b.low * f.low) * kWhite, (1 - b.high * f.high) * kWhite});
  return kDeep ? screened : screened & 0xFF;
}

// trunc(f x m + b).
inline I32Lanes MaskedSumLanes(I32Lanes f, I32Lanes b, double m) {
  if (m == 1) {
    return f + b;
  }
  const F64Lanes front = Widen(f);
  const F64Lanes back = Widen(b);
  return Truncate({front.low * m + back.low, front.high * m + back.high});
}

inline I32Lanes MultiplyLanes(const PF_Pixel& /*depth*/, I32Lanes f, I32Lanes b) {
  // The product is exact in single precision, and a quotient that is not whole lies farther from
  // the next whole number than single precision rounds.
  return TruncateLanes(ToFloat(f) * ToFloat(b) / 255.0F);
}

inline I32Lanes MultiplyLanes(const PF_Pixel16& /*depth*/, I32Lanes f, I32Lanes b) {
  const U32Lanes product = reinterpret_cast<U32Lanes>(f) * reinterpret_cast<U32Lanes>(b);
  return reinterpret_cast<I32Lanes>(product) >> 15;
}

// All channels of front blended over back under a mask value m; in 16 bits, FeatherLanes still has
// to follow. The steps and oddities are those of the formulas in blend_modes.cpp. kMode 0 returns
// the front unchanged.
template <int kMode, typename Pixel>
I32Lanes BlendedLanes(const Pixel& front, const Pixel& back, double m, float opacity) {
  const I32Lanes f = ToLanes(front);
  const I32Lanes b = ToLanes(back);
  if constexpr (kMode == 0) {
    return f;
  } else if constexpr (kMode == kNormal) {
    return TruncateLanes(ToFloat(f) * opacity + ToFloat(b) * (1.0F - opacity));
  } else if constexpr (kMode == kAdd) {
    const I32Lanes masked = MaskedSumLanes(f, b, m);
    if constexpr (std::is_same_v<Pixel, PF_Pixel>) {
      return TowardLanes(b, Choose(masked > 255, I32Lanes{} + 255, masked), opacity);
    } else {
      return TowardLanes(b, Choose(masked > PF_MAX_CHAN16, I32Lanes{} + PF_MAX_CHAN16, f + b),
                         opacity);
    }
  } else if constexpr (kMode == kScreen) {
    return TowardLanes(b, ScreenLanes(front, back, m), opacity);
  } else {
    const F32Lanes change = ToFloat(MultiplyLanes(front, f, b) - b) * opacity;
    const auto low = F64Pair{change[0], change[1]} * m;
    const auto high = F64Pair{change[2], change[3]} * m;
    const F64Lanes back64 = Widen(b);
    return Truncate({back64.low + low, back64.high + high});
  }
}

// The feather of 16 bits: b x (1 - m) + v x m.
inline I32Lanes FeatherLanes(I32Lanes b, I32Lanes v, double m) {
  const F64Lanes back = Widen(b);
  const F64Lanes blended = Widen(v);
  return Truncate({back.low * (1 - m) + blended.low * m, back.high * (1 - m) + blended.high * m});
}

}  // namespace vitrell

#endif  // VITRELL_COLOUR_BLEND_LANES_H_
