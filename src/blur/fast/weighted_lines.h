// Means of pixels weighted by the lens mask over windows of any length, from prefix sums.
//
// A weight w in [0, 1] is stored as the integer q = round(2^32 w), so that the prefix sums of
// weighted pixels along a line are exact integers, and the sum over any window is the difference of
// two of them. With n taps of colours c within a range R, the quotient of the sums over q is close
// to that over w:
//   |sum(q c) / sum(q) - sum(w c) / sum(w)| = |sum(e (c - mean))| / sum(q) <= n R / (2 sum(q)),
// where e = q - 2^32 w, at most 1/2, and mean = sum(w c) / sum(w). The defining loop over the taps
// rounds each product and each addition by at most 2^-53 of its final sum, so that its quotient is
// off by less than (2 n + 3) R 2^-53. Conversions, the reciprocal and the blend add a dozen such
// roundings on either side. Where a mean lies nearer than all of that to an integer, only the loop
// itself decides to which integer it truncates.
#ifndef VITRELL_BLUR_FAST_WEIGHTED_LINES_H_
#define VITRELL_BLUR_FAST_WEIGHTED_LINES_H_

#include <cstddef>
#include <cstdint>

#include "host/host_api.h"
#include "simd/lane_target.h"

namespace vitrell {

// The sums of the weights, of red, of green and of blue, all below 2^64.
struct WeightedSums {
  std::uint64_t lane[4];
};

// Keeps these sums below 2^64: weights are at most 2^32 and colours below 2^16.
inline constexpr std::int32_t kMaxWeightedTaps = 65535;

// Neighbouring lines that are summed together. A position counts along the lines; the lines' pixels
// and weights at one position are contiguous.
struct WeightedLines {
  std::int32_t count;
  std::int32_t length;  // At most kMaxWeightedTaps.
  std::int32_t radiusPx;
  const double* weights;
  const char* pixels;
  const char* unblurred;         // Blended in where the mask is faint; null for none.
  std::ptrdiff_t step;           // Distance between positions: of weights and results,
  std::ptrdiff_t pixelStep;      // in bytes of the source
  std::ptrdiff_t unblurredStep;  // and in bytes of the unblurred world.
};

template <typename Pixel>
struct WeightedEngine {
  // Computes the prefix sums before each position, (length + 1) x count of them, all lines of a
  // position together. Returns false, leaving sums undefined, if a weight is not in [0, 1]. sums
  // must be aligned to 32 bytes.
  bool (*sumLines)(const WeightedLines& lines, WeightedSums* sums);

  // Stores the blurred pixels whose weight lies strictly between 0 and 1, from index `first` on,
  // where index = position x count + line; their alpha is undefined. Returns the index of the first
  // pixel that needs the defining loop, or length x count.
  std::int64_t (*storeMeans)(const WeightedLines& lines, const WeightedSums* sums,
                             std::int64_t first, Pixel* out);
};

template <>
const LaneEngines<WeightedEngine<PF_Pixel>>& EnginesOf<WeightedEngine<PF_Pixel>>();
template <>
const LaneEngines<WeightedEngine<PF_Pixel16>>& EnginesOf<WeightedEngine<PF_Pixel16>>();

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_WEIGHTED_LINES_H_
