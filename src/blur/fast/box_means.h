// Rounded means from the sums of box windows, in three widths.
//
// The definition is truncate(sum / taps + 0.5) in double precision. With an odd number of taps the
// quotient is never nearer than 1 / (2 x taps) to a half, so that any computation whose error stays
// below that distance truncates to the same integer:
//   single precision, 8-bit: 255 x 2^-23 + 2^-17 < 1 / 16386, so up to 8193 taps (radius 4096);
//   double precision: 65535 x 2^-52 + 2^-37 < 2^-33, for any number of taps up to 2^32.
#ifndef VITRELL_BLUR_FAST_BOX_MEANS_H_
#define VITRELL_BLUR_FAST_BOX_MEANS_H_

#include <cstdint>
#include <type_traits>

#include "base/numeric.h"
#include "host/host_api.h"
#include "simd/pixel_lanes.h"

namespace vitrell {

inline constexpr std::int32_t kMaxRadiusOfSingleMeans = 4096;

// Up to this radius, sums of 16-bit channels stay below 2^31.
inline constexpr std::int32_t kMaxRadiusOf32BitSums = 16383;

// For 8-bit pixels and a radius up to kMaxRadiusOfSingleMeans.
class SingleMeans {
 public:
  using Sums = U32Lanes;
  explicit SingleMeans(std::int32_t radiusPx)
      : inverseTaps_(1.0F / (2.0F * static_cast<float>(radiusPx) + 1.0F)) {}

  template <typename Pixel>
  void Store(const Sums& sums, const Pixel& alphaOf, Pixel* out) const {
    const F32Lanes values =
        __builtin_convertvector(reinterpret_cast<I32Lanes>(sums), F32Lanes) * inverseTaps_ + 0.5F;
    StoreColors(TruncateLanes(values), alphaOf, out);
  }

 private:
  float inverseTaps_;
};

// For both depths and a radius up to kMaxRadiusOf32BitSums.
class DoubleMeans {
 public:
  using Sums = U32Lanes;
  explicit DoubleMeans(std::int32_t radiusPx) : inverseTaps_(1.0 / (2.0 * radiusPx + 1.0)) {}

  template <typename Pixel>
  void Store(const Sums& sums, const Pixel& alphaOf, Pixel* out) const {
    F64Pair low;
    F64Pair high;
    WidenLanes(sums, &low, &high);
    StoreColors(TruncateLanes(low * inverseTaps_ + 0.5, high * inverseTaps_ + 0.5), alphaOf, out);
  }

 private:
  double inverseTaps_;
};

// Four 64-bit sums, for radii beyond the range of every slider.
struct WideSums {
  std::uint64_t lane[4];

  VITRELL_UNSIGNED_WRAPS friend WideSums operator+(WideSums a, const WideSums& b) {
    for (int i = 0; i < 4; ++i) {
      a.lane[i] += b.lane[i];
    }
    return a;
  }
  VITRELL_UNSIGNED_WRAPS friend WideSums operator-(WideSums a, const WideSums& b) {
    for (int i = 0; i < 4; ++i) {
      a.lane[i] -= b.lane[i];
    }
    return a;
  }
  VITRELL_UNSIGNED_WRAPS friend WideSums operator*(WideSums a, std::uint64_t factor) {
    for (std::uint64_t& sum : a.lane) {
      sum *= factor;
    }
    return a;
  }
};

// For both depths and any radius.
class WideMeans {
 public:
  using Sums = WideSums;
  explicit WideMeans(std::int32_t radiusPx) : inverseTaps_(1.0 / (2.0 * radiusPx + 1.0)) {}

  template <typename Pixel>
  void Store(const Sums& sums, const Pixel& alphaOf, Pixel* out) const {
    const auto mean = [&](int i) {
      return TruncateToInt32(static_cast<double>(sums.lane[i]) * inverseTaps_ + 0.5);
    };
    StoreColors(I32Lanes{0, mean(1), mean(2), mean(3)}, alphaOf, out);
  }

 private:
  double inverseTaps_;
};

template <typename Sums, typename Pixel>
inline Sums LoadSums(const Pixel* pixel) {
  if constexpr (std::is_same_v<Sums, U32Lanes>) {
    return LoadLanes(pixel);
  } else {
    return {{pixel->alpha, pixel->red, pixel->green, pixel->blue}};
  }
}

template <typename Sums>
inline Sums ScaleSums(const Sums& sums, std::uint64_t factor) {
  if constexpr (std::is_same_v<Sums, U32Lanes>) {
    return sums * static_cast<std::uint32_t>(factor);
  } else {
    return sums * factor;
  }
}

// sums, negated if sign is the two's complement of -1.
template <typename Sums>
inline Sums SignSums(const Sums& sums, std::uint64_t sign) {
  if constexpr (std::is_same_v<Sums, U32Lanes>) {
    const auto mask = static_cast<std::uint32_t>(sign == 1 ? 0 : -1);
    return (sums ^ mask) - mask;
  } else {
    return sums * sign;
  }
}

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_BOX_MEANS_H_
