// Window sums of a mirrored line in constant time: the arithmetic behind the box blur.
//
// A line of n pixels, mirrored at its ends as RecomputePosition folds positions, is the periodic
// sequence 0, 1, ..., n-1, n-1, ..., 1 with the period P = 2n - 1. With S[j] the sum of the first j
// stored pixels, the sum of the first k pixels of one period is S[k] up to k = n and
// 2 S[n] - S[2n - k] beyond, so that the sum of any window is a combination of four stored sums:
// those at its two ends, S[n] and S[1]. All of it is integer arithmetic modulo the width of the sum
// type, exact whenever the window's own sum fits.
#ifndef VITRELL_BLUR_BOX_WINDOW_H_
#define VITRELL_BLUR_BOX_WINDOW_H_

#include <cstddef>
#include <cstdint>

#include "host/buffer.h"

namespace vitrell {

// sum = S[high] - S[low], or with folds
// sum = wholeFactor x S[n] + firstFactor x S[1] + highSign x S[high] + lowSign x S[low].
// Factors and signs are two's complement: they multiply modulo the sum's width.
struct BoxWindow {
  std::uint64_t wholeFactor;
  std::uint64_t firstFactor;
  std::uint64_t highSign;
  std::uint64_t lowSign;
  std::uint32_t high;
  std::uint32_t low;
  bool inside;  // The window does not reach over either end of the line.
};

// The window from center - radius to center + radius of a line of n > 0 pixels; radius >= 0.
BoxWindow MakeBoxWindow(std::int64_t n, std::int64_t center, std::int64_t radius);

// The windows of every position of a line, worked out once per pass and then only read.
class BoxWindows {
 public:
  // Positions 0 to count - 1 stand for centers -origin to count - 1 - origin. False when there is
  // no memory.
  [[nodiscard]] bool Build(std::int64_t n, std::int64_t origin, std::int64_t radius,
                           std::int32_t count);

  // The window of any position; positions outside the table are worked out anew.
  BoxWindow At(std::int32_t position) const {
    return static_cast<std::uint32_t>(position) < static_cast<std::uint32_t>(count_)
               ? windows_[static_cast<std::size_t>(position)]
               : MakeBoxWindow(n_, std::int64_t{position} - origin_, radius_);
  }

 private:
  std::int64_t n_ = 1;
  std::int64_t origin_ = 0;
  std::int64_t radius_ = 0;
  std::int32_t count_ = 0;
  Buffer<BoxWindow> windows_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_BOX_WINDOW_H_
