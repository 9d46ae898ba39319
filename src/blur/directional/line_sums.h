// The directional blur's sums for many neighbouring pixels at once, one pixel per vector lane.
//
// Lanes never mix: each adds the same taps in the same order and with the same roundings as the
// plain sum of one pixel does.
#ifndef VITRELL_BLUR_DIRECTIONAL_LINE_SUMS_H_
#define VITRELL_BLUR_DIRECTIONAL_LINE_SUMS_H_

#include <cstddef>
#include <cstdint>

#include "simd/lane_target.h"

namespace vitrell {

inline constexpr int kMaxLineLanes = 64;

// The position and weight of one tap of the line.
struct LineSumTap {
  std::int64_t row;     // Index into LineView::rows.
  std::int64_t column;  // Index within a row, relative to LineView::column.
  double weight;        // Not negative.
  float high;           // high + low is the weight; see SplitWeight.
  float low;
};

// A plane of values as seen from the pixel of lane 0.
struct LineView {
  const float* plane;
  const std::ptrdiff_t* rows;  // Offset in the plane of each tap's row.
  std::int64_t column;
  std::int64_t count;  // Indices from here on are reduced by this.
};

// Every function works on all lanes, and every address that a lane reaches must lie in the plane.
// Sums are added to the existing values, which must not be -0.
struct LineEngine {
  int lanes;

  // Adds value x weight, a double product rounded to single precision, in single precision.
  void (*sum)(const LineView& view, const LineSumTap* begin, const LineSumTap* end, float* sums);

  // The same for integers from 0 to 255 with the taps' split weights, in half the time.
  void (*sumSplit)(const LineView& view, const LineSumTap* begin, const LineSumTap* end,
                   float* sums);

  // Adds value x weight in double precision.
  void (*sumWide)(const LineView& view, const LineSumTap* begin, const LineSumTap* end,
                  double* sums);

  // Divides in double precision and truncates; quotients must fit int32.
  void (*divide)(const float* sums, const double* divisors, std::int32_t* quotients);
};

template <>
const LaneEngines<LineEngine>& EnginesOf<LineEngine>();

// Splits tap->weight into high and low such that for each integer value from 0 to 255, value x high
// + value x low in single precision has the same bits as value x weight rounded to single. False,
// leaving high and low undefined, if none of the candidates has this property.
bool SplitWeight(LineSumTap* tap);

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_LINE_SUMS_H_
