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
#include "simd/pixel_lanes.h"

namespace vitrell {

inline constexpr std::int32_t kMaxRadiusOfSingleMeans = 4096;

// Up to this radius, sums of 16-bit channels stay below 2^31.
inline constexpr std::int32_t kMaxRadiusOf32BitSums = 16383;

// What turns 32-bit sums into means: 8-bit ones up to kMaxRadiusOfSingleMeans in single precision,
// all others up to kMaxRadiusOf32BitSums in double precision.
struct BoxScale {
  explicit BoxScale(std::int32_t radiusPx)
      : inverseTaps(1.0 / (2.0 * radiusPx + 1.0)),
        single(1.0F / (2.0F * static_cast<float>(radiusPx) + 1.0F)),
        isSingle(radiusPx <= kMaxRadiusOfSingleMeans) {}

  double inverseTaps;
  float single;
  bool isSingle;  // Of 8-bit pixels.
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

// A pixel's four channels, in memory order.
template <typename Sums, typename Pixel>
Sums ChannelSums(const Pixel& pixel) {
  if constexpr (std::is_same_v<Sums, U32Lanes>) {
    return LoadLanes(&pixel);
  } else {
    return {{pixel.alpha, pixel.red, pixel.green, pixel.blue}};
  }
}

// A factor is a number of times in two's complement.
template <typename Sums>
Sums Times(const Sums& sums, std::uint64_t factor) {
  if constexpr (std::is_same_v<Sums, U32Lanes>) {
    return sums * static_cast<std::uint32_t>(factor);
  } else {
    return sums * factor;
  }
}

// The mean of a 64-bit sum, for both depths and any radius.
inline std::int32_t WideMean(std::uint64_t sum, double inverseTaps) {
  return TruncateToInt32(static_cast<double>(sum) * inverseTaps + 0.5);
}

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_BOX_MEANS_H_
