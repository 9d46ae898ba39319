// The directional blur's sums for many neighbouring pixels at once, one pixel in each vector lane.
//
// Lanes never mix: each one adds the same taps in the same order and with the same roundings as
// one pixel's plain sum does.
#ifndef VITRELL_BLUR_DIRECTIONAL_LINE_SUMS_H_
#define VITRELL_BLUR_DIRECTIONAL_LINE_SUMS_H_

#include <cstddef>
#include <cstdint>

#include "simd/lane_target.h"

namespace vitrell {

inline constexpr int kMaxLineLanes = 64;

// A tap of the line: where it lies and how much it weighs.
struct LineSumTap {
  std::int64_t row;     // Index into LineView::rows.
  std::int64_t column;  // Index within a row, relative to LineView::column.
  double weight;        // Not negative.
  float high;           // The weight as the sum of two floats; see SplitWeight.
  float low;
};

// A plane of values seen from the pixel of lane 0.
struct LineView {
  const float* plane;
  const std::ptrdiff_t* rows;  // Where the row of each tap begins in the plane.
  std::int64_t column;
  std::int64_t count;  // An index that reaches this is lowered by it.
};

// Every function works on all lanes; every address that a lane reaches must lie in the plane. Sums
// go on from what they hold, which must not be -0.
struct LineEngine {
  int lanes;

  // Adds up single(value x weight) in single precision, by the taps' double weights.
  void (*sum)(const LineView& view, const LineSumTap* begin, const LineSumTap* end, float* sums);

  // The same for whole values from 0 to 255 by the taps' split weights, at half the cost.
  void (*sumSplit)(const LineView& view, const LineSumTap* begin, const LineSumTap* end,
                   float* sums);

  // Adds up value x weight in double precision.
  void (*sumWide)(const LineView& view, const LineSumTap* begin, const LineSumTap* end,
                  double* sums);

  // Truncated quotients in double precision, which must lie within int32.
  void (*divide)(const float* sums, const double* divisors, std::int32_t* quotients);
};

template <>
const LaneEngines<LineEngine>& EnginesOf<LineEngine>();

// Splits tap->weight so that for each value from 0 to 255 single(value x high + value x low), every
// step in single precision, has the bits of single(value x weight). False when there is no such
// pair among those tried; high and low then mean nothing.
bool SplitWeight(LineSumTap* tap);

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_LINE_SUMS_H_
