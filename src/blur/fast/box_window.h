// Window sums of a mirrored line in constant time: the arithmetic of the box blur.
//
// A line of n pixels, mirrored at its ends as RecomputePosition does, is the periodic sequence of
// pixels 0, 1, ..., n-1, n-1, ..., 1 with period P = 2n - 1. Let the prefix sum S[j] be the sum of
// the first j stored pixels. The sum of the first k pixels of a period is then S[k] up to k = n and
// 2 S[n] - S[2n - k] beyond, so that the sum of any window is a combination of four prefix sums:
// those at its two ends, S[n] and S[1]. All of this is integer arithmetic modulo the width of the
// sum type, exact if the window's own sum fits.
#ifndef VITRELL_BLUR_FAST_BOX_WINDOW_H_
#define VITRELL_BLUR_FAST_BOX_WINDOW_H_

#include <cstdint>

namespace vitrell {

// sum = S[high] - S[low], or, with reflections, sum = wholeFactor x S[n] + firstFactor x S[1] +
// highSign x S[high] + lowSign x S[low]. Factors and signs are two's complement and multiply modulo
// the sum's width.
struct BoxWindow {
  std::uint64_t wholeFactor;
  std::uint64_t firstFactor;
  std::uint64_t highSign;
  std::uint64_t lowSign;
  std::uint32_t high;
  std::uint32_t low;
  bool inside;  // Not reflected: the sum is S[high] - S[low].
};

// The window [center - radius, center + radius] of a line of n > 0 pixels; radius >= 0.
BoxWindow MakeBoxWindow(std::int64_t n, std::int64_t center, std::int64_t radius);

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_BOX_WINDOW_H_
