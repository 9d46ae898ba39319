// Rows of a pass's result, each worked out once by the first thread that asks for it.
#ifndef VITRELL_PASS_LAZY_ROWS_H_
#define VITRELL_PASS_LAZY_ROWS_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"

namespace vitrell {

// A per-pixel callback that needs its neighbours' work as well asks for its whole row: a row costs
// less than its pixels one by one. Works for any order of pixels and any number of threads; nothing
// is private to a thread. One object serves one pass at a time.
template <typename Pixel>
class LazyRows {
 public:
  // Forgets all rows. Keeps the memory when it is large enough. False when there is none.
  [[nodiscard]] bool Reset(std::int32_t width, std::int32_t height) {
    width_ = static_cast<std::uint32_t>(width > 0 ? width : 0);
    height_ = static_cast<std::uint32_t>(height > 0 ? height : 0);
    const std::size_t rows = height_;
    const std::size_t pixels = rows * width_;
    if ((pixels_.size() < pixels && !pixels_.Allocate(pixels)) ||
        (finished_.size() < rows && !finished_.Allocate(rows)) ||
        (claimed_.size() < rows && !claimed_.Allocate(rows))) {
      return false;
    }
    for (std::size_t row = 0; row < rows; ++row) {
      finished_[row] = nullptr;
      claimed_[row] = 0;
    }
    return true;
  }

  // The pixel at (column, row) when its row has been worked out already; null otherwise.
  const Pixel* ReadyPixel(std::int32_t column, std::int32_t row) const {
    if (!Contains(column, row)) {
      return nullptr;
    }
    const Pixel* const pixels = __atomic_load_n(finished_.data() + row, __ATOMIC_ACQUIRE);
    return pixels != nullptr ? pixels + column : nullptr;
  }

  // The pixel at (column, row), after fill(row, pixels) has worked its row out if nobody had; null
  // while another thread is at it, and outside the picture.
  template <typename FillRow>
  const Pixel* PixelOrFill(std::int32_t column, std::int32_t row, const FillRow& fill) {
    if (!Contains(column, row)) {
      return nullptr;
    }
    if (__atomic_exchange_n(claimed_.data() + row, std::uint8_t{1}, __ATOMIC_RELAXED) != 0) {
      return ReadyPixel(column, row);
    }
    Pixel* const pixels = pixels_.data() + static_cast<std::size_t>(row) * width_;
    fill(row, pixels);
    __atomic_store_n(finished_.data() + row, pixels, __ATOMIC_RELEASE);
    return pixels + column;
  }

 private:
  bool Contains(std::int32_t column, std::int32_t row) const {
    return static_cast<std::uint32_t>(row) < height_ && static_cast<std::uint32_t>(column) < width_;
  }

  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
  Buffer<Pixel> pixels_;
  // Per row: its pixels once they are worked out, and whether a thread has taken it on. The
  // compilers' atomic builtins stand in for std::atomic_ref, which older standard libraries of
  // macOS do not have.
  Buffer<const Pixel*> finished_;
  Buffer<std::uint8_t> claimed_;
};

}  // namespace vitrell

#endif  // VITRELL_PASS_LAZY_ROWS_H_
