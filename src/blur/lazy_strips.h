// Strips of rows of a pass's result, each worked out once by the first thread that needs it.
#ifndef VITRELL_BLUR_LAZY_STRIPS_H_
#define VITRELL_BLUR_LAZY_STRIPS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "host/buffer.h"

namespace vitrell {

// A per-pixel callback whose work costs less for many pixels at once asks for a strip of rows. A
// thread that finds its strip in another one's hands works out one of the next strips meanwhile, so
// that threads share the work even where the host deals out neighbouring rows in turn. Works for
// any order of pixels; nothing is private to a thread. One object serves one pass.
template <typename Pixel, std::int32_t kStripRows>
class LazyStrips {
 public:
  // False when there is no memory. A picture without pixels has no strips.
  [[nodiscard]] bool Allocate(std::int32_t width, std::int32_t height) {
    width_ = std::max(width, 0);
    height_ = std::max(height, 0);
    const auto rows = static_cast<std::size_t>(height_);
    const std::size_t strips = (rows + kStripRows - 1) / kStripRows;
    return pixels_.Allocate(rows * static_cast<std::size_t>(width_)) &&
           states_.AllocateZeroed(strips);
  }

  // The pixel at (column, row) when its strip has been worked out already; null otherwise.
  const Pixel* ReadyPixel(std::int32_t column, std::int32_t row) const {
    if (column < 0 || column >= width_ || row < 0 || row >= height_ ||
        __atomic_load_n(&states_[StripOf(row)], __ATOMIC_ACQUIRE) != kFinished) {
      return nullptr;
    }
    return pixels_.data() + OffsetOf(row) + column;
  }

  // The pixel at (column, row), after fill(firstRow, endRow, pixels of firstRow) has worked its
  // strip out if nobody had; null while another thread is at it, and outside the picture.
  template <typename FillStrip>
  const Pixel* PixelOrFill(std::int32_t column, std::int32_t row, const FillStrip& fill) {
    if (column < 0 || column >= width_ || row < 0 || row >= height_) {
      return nullptr;
    }
    const std::size_t strip = StripOf(row);
    const std::size_t end = std::min(strip + kLookAhead, states_.size());
    for (std::size_t next = strip; next < end; ++next) {
      if (Claim(next)) {
        const auto firstRow = static_cast<std::int32_t>(next) * kStripRows;
        fill(firstRow, std::min(firstRow + kStripRows, height_),
             pixels_.data() + OffsetOf(firstRow));
        __atomic_store_n(&states_[next], kFinished, __ATOMIC_RELEASE);
        break;
      }
    }
    return ReadyPixel(column, row);
  }

 private:
  static constexpr std::uint8_t kUntouched = 0;
  static constexpr std::uint8_t kClaimed = 1;
  static constexpr std::uint8_t kFinished = 2;

  // Strips that a thread looks at for work, its own among them.
  static constexpr std::size_t kLookAhead = 8;

  static std::size_t StripOf(std::int32_t row) {
    return static_cast<std::size_t>(row / kStripRows);
  }
  std::ptrdiff_t OffsetOf(std::int32_t row) const { return std::ptrdiff_t{row} * width_; }

  bool Claim(std::size_t strip) {
    std::uint8_t expected = kUntouched;
    return __atomic_compare_exchange_n(&states_[strip], &expected, kClaimed, false,
                                       __ATOMIC_RELAXED, __ATOMIC_RELAXED);
  }

  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  Buffer<Pixel> pixels_;
  // The compilers' atomic builtins stand in for std::atomic_ref, which older standard libraries of
  // macOS do not have.
  Buffer<std::uint8_t> states_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_LAZY_STRIPS_H_
