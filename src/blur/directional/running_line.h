// Lines of taps whose averages follow from whole-number sums.
//
// On a row, a column or a diagonal a tap at a distance of d pixels from the middle weighs
// (length - d) / length. The average over the taps that are not transparent is T / N with the whole
// numbers
//   T = sum of (length - d) x value,  N = sum of (length - d),
// both of which can be carried from pixel to pixel: along the line the second difference of T is
//   value at length - 2 x value at 0 + value at -length.
//
// The definition adds single-precision products in the order of the taps instead. With u = 2^-24
// its sum is off by at most u times the sum of all its partial sums, and u S for the roundings of
// the products, where S = T / length (recursive summation: N. J. Higham, Accuracy and Stability of
// Numerical Algorithms, chapter 4). No partial sum exceeds the last; of those up to the middle the
// mth is also at most 255 x (1 + ... + m) / length. The partial sums up to the middle therefore
// amount to no more than length x S and 42.5 (length + 1) (length + 2), the others to
// (length - 1) x S. Divided by the weights' sum N / length, with the average q, the definition is
// off by at most
//   u (length + 5) (q + min(q, 42.5 length^2 / N)).
// Partial sums that are themselves rounded are larger by (1 + u)^(2 length) < 1.0004; a factor of
// 1.001 covers this and the roundings of the bound. Another 2^-13 covers the five roundings with
// which T / N and its limits are computed in single precision, less than 2^-14 + 2^-16 altogether,
// and weights that differ by rounding from those above. Where no integer lies between the limits,
// both averages truncate to the same channel.
#ifndef VITRELL_BLUR_DIRECTIONAL_RUNNING_LINE_H_
#define VITRELL_BLUR_DIRECTIONAL_RUNNING_LINE_H_

#include <cstdint>

#include "blur/directional/line_taps.h"

namespace vitrell {

// Shorter lines are faster tap by tap, since one average in length^2 is an integer.
inline constexpr std::int32_t kFirstRunningLength = 4;

// From this length on, T of 8-bit values could exceed 2^31 - 1.
inline constexpr std::int32_t kEndRunningLength = 2902;

// The factors of the limits of an average q = T / N, in single precision:
//   q +- ((q + min(q, toMiddle / N)) x perLevel + kRestMargin).
struct AverageLimits {
  float toMiddle;
  float perLevel;
};
inline constexpr float kRestMargin = 0x1p-13f;

struct RunningLine {
  std::int32_t length = 0;  // Distance of the two taps of weight 0; 0 if averages need all taps.
  std::int32_t columnStep = 0;  // From tap to tap: -1, 0 or 1,
  std::int32_t rowStep = 0;     // and 0 or 1; 1 unless the line is a row.

  AverageLimits Limits() const;
};

// Recognises the lines above by their taps. The order of the taps does not matter.
RunningLine FindRunningLine(const LineTaps& line);

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_RUNNING_LINE_H_
