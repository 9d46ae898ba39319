// Means of pixels weighted by the lens mask, over windows of any length, from running sums.
//
// A weight w between 0 and 1 is held as q = round(2^32 w), so that the sums of weighted pixels
// before each position of a line are whole numbers and any window is the difference of two of them.
// With n taps of colours c within a range of R, the quotients of the sums over q and over w are
// close:
//   |sum(q c) / sum(q) - sum(w c) / sum(w)| = |sum(e (c - mean))| / sum(q) <= n R / (2 sum(q)),
// where e = q - 2^32 w, at most 1/2, and mean = sum(w c) / sum(w). The defining loop over the taps
// rounds each product and each addition by at most 2^-53 of its final sum, so that its quotient is
// off by less than (2 n + 3) R 2^-53. Conversions, the reciprocal and the blend add a dozen such
// roundings on either side. Where a mean's fraction is nearer than all of that to a whole number,
// only the loop can tell what it truncates to.
#ifndef VITRELL_BLUR_FAST_WEIGHTED_LINES_H_
#define VITRELL_BLUR_FAST_WEIGHTED_LINES_H_

#include <cstddef>
#include <cstdint>

#include "host/host_api.h"
#include "simd/lane_target.h"

namespace vitrell {

// Sums below 2^64 of the weights, of red, of green and of blue.
struct WeightedSums {
  std::uint64_t lane[4];
};

// Weights are at most 2^32 and colours below 2^16.
inline constexpr std::int32_t kMaxWeightedTaps = 65535;

// Neighbouring lines whose sums are formed side by side. A position counts along the lines. Pixels
// and weights of the lines lie next to each other.
struct WeightedLines {
  std::int32_t count;
  std::int32_t length;  // At most kMaxWeightedTaps.
  std::int32_t radiusPx;
  const double* weights;
  const char* pixels;
  const char* unblurred;         // Faint weights blend with it; null where nothing is blended.
  std::ptrdiff_t step;           // From one position to the next: of weights and results,
  std::ptrdiff_t pixelStep;      // in bytes of the source
  std::ptrdiff_t unblurredStep;  // and in bytes of the unblurred world.
};

template <typename Pixel>
struct WeightedEngine {
  // The sums before each position: (length + 1) x count of them, position by position. False when a
  // weight is not between 0 and 1; the sums then mean nothing. sums are aligned to 32 bytes.
  bool (*sumLines)(const WeightedLines& lines, WeightedSums* sums);

  // Stores the blurred pixels from index first on, counted position by position, where the weight
  // is between 0 and 1; their alpha means nothing. Stops at the first that only the defining loop
  // can tell and answers its index, or length x count.
  std::int64_t (*storeMeans)(const WeightedLines& lines, const WeightedSums* sums,
                             std::int64_t first, Pixel* out);
};

template <>
const LaneEngines<WeightedEngine<PF_Pixel>>& EnginesOf<WeightedEngine<PF_Pixel>>();
template <>
const LaneEngines<WeightedEngine<PF_Pixel16>>& EnginesOf<WeightedEngine<PF_Pixel16>>();

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_WEIGHTED_LINES_H_
