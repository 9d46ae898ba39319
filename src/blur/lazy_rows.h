// Rows of a pass's result, each worked out once by the first thread that asks for it.
#ifndef VITRELL_BLUR_LAZY_ROWS_H_
#define VITRELL_BLUR_LAZY_ROWS_H_

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "host/buffer.h"

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
        (states_.size() < rows && !states_.Allocate(rows))) {
      return false;
    }
    for (std::size_t row = 0; row < rows; ++row) {
      states_[row] = kEmpty;
    }
    return true;
  }

  // The pixel at (column, row) when its row has been worked out already; null otherwise.
  const Pixel* ReadyPixel(std::int32_t column, std::int32_t row) const {
    if (static_cast<std::uint32_t>(row) >= height_ ||
        static_cast<std::uint32_t>(column) >= width_ ||
        State(row).load(std::memory_order_acquire) != kReady) {
      return nullptr;
    }
    return pixels_.data() + static_cast<std::size_t>(row) * width_ + column;
  }

  // The pixel at (column, row), after fill(row, pixels) has worked its row out if nobody had; null
  // while another thread is at it, and outside the picture.
  template <typename FillRow>
  const Pixel* PixelOrFill(std::int32_t column, std::int32_t row, const FillRow& fill) {
    if (static_cast<std::uint32_t>(row) >= height_ ||
        static_cast<std::uint32_t>(column) >= width_) {
      return nullptr;
    }
    std::uint8_t expected = kEmpty;
    if (State(row).compare_exchange_strong(expected, kBusy, std::memory_order_acquire)) {
      fill(row, RowPixels(row));
      State(row).store(kReady, std::memory_order_release);
    } else if (expected != kReady) {
      return nullptr;
    }
    return RowPixels(row) + column;
  }

 private:
  static constexpr std::uint8_t kEmpty = 0;
  static constexpr std::uint8_t kBusy = 1;
  static constexpr std::uint8_t kReady = 2;

  std::atomic_ref<std::uint8_t> State(std::int32_t row) const {
    return std::atomic_ref<std::uint8_t>(
        const_cast<std::uint8_t&>(states_[static_cast<std::size_t>(row)]));
  }
  Pixel* RowPixels(std::int32_t row) {
    return pixels_.data() + static_cast<std::size_t>(row) * width_;
  }

  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
  Buffer<Pixel> pixels_;
  Buffer<std::uint8_t> states_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_LAZY_ROWS_H_
