// Strips of lines of a pass's result, each worked out once by the first thread that needs it.
#ifndef VITRELL_PASS_LAZY_STRIPS_H_
#define VITRELL_PASS_LAZY_STRIPS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/buffer.h"

namespace vitrell {

enum class StripLines { kRows, kColumns };

// A per-pixel callback whose work costs less for many pixels at once asks for a strip of rows, or
// of columns. A thread that finds its strip in another one's hands works out one of the next strips
// meanwhile, so that threads share the work even where the host deals out neighbouring rows in
// turn. Works for any order of pixels; nothing is private to a thread. One object serves one pass.
template <typename Pixel, std::int32_t kStripSize>
class LazyStrips {
 public:
  // Forgets all strips. Keeps the memory when it is large enough; false when there is none. A
  // picture without pixels has no strips.
  [[nodiscard]] bool Reset(std::int32_t width, std::int32_t height,
                           StripLines lines = StripLines::kRows) {
    width_ = std::max(width, 0);
    height_ = std::max(height, 0);
    isRows_ = lines == StripLines::kRows;
    const auto strips = (static_cast<std::size_t>(Lines()) + kStripSize - 1) / kStripSize;
    const std::size_t pixels = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    return (pixels_.size() >= pixels || pixels_.Allocate(pixels)) && states_.AllocateZeroed(strips);
  }

  // The pixel at (column, row) when its strip has been worked out already; null otherwise.
  const Pixel* ReadyPixel(std::int32_t column, std::int32_t row) const {
    if (column < 0 || column >= width_ || row < 0 || row >= height_ ||
        __atomic_load_n(&states_[StripOf(column, row)], __ATOMIC_ACQUIRE) != kFinished) {
      return nullptr;
    }
    return pixels_.data() + std::ptrdiff_t{row} * width_ + column;
  }

  // The pixel at (column, row), after fill(firstLine, endLine, first pixel of firstLine) has worked
  // its strip out if nobody had; null while another thread is at it, and outside the picture. The
  // rows of what is filled are as far apart as the picture is wide.
  template <typename FillStrip>
  const Pixel* PixelOrFill(std::int32_t column, std::int32_t row, const FillStrip& fill) {
    if (column < 0 || column >= width_ || row < 0 || row >= height_) {
      return nullptr;
    }
    const std::size_t strip = StripOf(column, row);
    const std::size_t end = std::min(strip + kLookAhead, states_.size());
    for (std::size_t next = strip; next < end; ++next) {
      if (Claim(next)) {
        const auto firstLine = static_cast<std::int32_t>(next) * kStripSize;
        const std::ptrdiff_t offset = isRows_ ? std::ptrdiff_t{firstLine} * width_ : firstLine;
        fill(firstLine, std::min(firstLine + kStripSize, Lines()), pixels_.data() + offset);
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

  std::size_t StripOf(std::int32_t column, std::int32_t row) const {
    return static_cast<std::size_t>(isRows_ ? row : column) / kStripSize;
  }
  std::int32_t Lines() const { return isRows_ ? height_ : width_; }

  bool Claim(std::size_t strip) {
    std::uint8_t expected = kUntouched;
    return __atomic_compare_exchange_n(&states_[strip], &expected, kClaimed, false,
                                       __ATOMIC_RELAXED, __ATOMIC_RELAXED);
  }

  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  bool isRows_ = true;
  Buffer<Pixel> pixels_;
  // The compilers' atomic builtins stand in for std::atomic_ref, which older standard libraries of
  // macOS do not have.
  Buffer<std::uint8_t> states_;
};

}  // namespace vitrell

#endif  // VITRELL_PASS_LAZY_STRIPS_H_
