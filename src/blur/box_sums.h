// Sums along the rows or columns of a world, from which the mean of any box window follows in
// constant time, however large its radius.
#ifndef VITRELL_BLUR_BOX_SUMS_H_
#define VITRELL_BLUR_BOX_SUMS_H_

#include <cstdint>

#include "blur/box_window.h"
#include "host/buffer.h"
#include "host/host_api.h"

namespace vitrell {

enum class BoxAxis { kRows, kColumns };

// Unrounded colour means.
struct ColourMeans {
  double red;
  double green;
  double blue;
};

// Formed once per pass on the render thread; afterwards only read, by any number of host threads.
// Holds three sums a pixel: 12 bytes, or 24 for radii beyond every slider.
class BoxSums {
 public:
  // Sums the world src for windows of the given radius around the positions of dst. A negative
  // radius stands for windows without taps, whose means are NaN. False when there is no memory.
  template <typename Pixel>
  [[nodiscard]] bool Build(BoxAxis axis, const PF_LayerDef& src, const PF_LayerDef& dst,
                           std::int32_t radiusPx);

  // Means of the window around layer position (x, y). Each is off the quotient of the window's sum
  // by its number of taps by less than 2 to the power -35, which after the addition of 0.5 leaves
  // the truncated value the same: with an odd number of taps (at most 2 to the power 32) no
  // quotient comes nearer to a half than 2 to the power -33.
  ColourMeans At(std::int32_t x, std::int32_t y) const;

 private:
  template <typename Sum, typename Pixel>
  void Accumulate(const PF_LayerDef& src, Sum* sums) const;
  template <typename Sum>
  ColourMeans Means(const Sum* sums, const BoxWindow& window, std::int64_t line) const;

  BoxAxis axis_ = BoxAxis::kRows;
  std::int64_t size_ = 0;       // Pixels along a line.
  std::int64_t lineCount_ = 0;  // 0 for a world without pixels.
  std::int64_t lineOrigin_ = 0;
  std::int64_t lineStride_ = 0;  // In triples of sums.
  std::int64_t positionStride_ = 0;
  double inverseTaps_ = 0;
  bool noTaps_ = false;
  BoxWindows windows_;
  Buffer<std::uint32_t> sums32_;  // Either this or the next holds the sums.
  Buffer<std::uint64_t> sums64_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_BOX_SUMS_H_
