// Strips of lines of a pass's result, each worked out once by the first thread that needs it.
#ifndef VITRELL_PASS_LAZY_STRIPS_H_
#define VITRELL_PASS_LAZY_STRIPS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/buffer.h"

namespace vitrell {

enum class StripLines { kRows, kColumns };

// What strips take up. A later pass may take over the memory of an earlier one.
template <typename Pixel>
struct StripMemory {
  Buffer<Pixel> pixels;
  Buffer<const Pixel*> finished;
  Buffer<std::uint8_t> claimed;
};

// A per-pixel callback whose work costs less for many pixels at once asks for a strip of rows, or
// of columns; a strip of one row is a row. A thread that finds its strip in another one's hands
// works out one of the next strips meanwhile, so that threads share the work even where the host
// deals out neighbouring rows in turn. Works for any order of pixels; nothing is private to a
// thread. One object serves one pass.
template <typename Pixel, std::int32_t kStripSize, StripLines kLines = StripLines::kRows>
class LazyStrips {
 public:
  // Forgets all strips; false when there is no memory. A picture without pixels has no strips. The
  // memory must outlive this object's use and is kept where it is large enough.
  [[nodiscard]] bool Reset(std::int32_t width, std::int32_t height, StripMemory<Pixel>* memory) {
    width_ = static_cast<std::uint32_t>(std::max(width, 0));
    height_ = static_cast<std::uint32_t>(std::max(height, 0));
    stripCount_ = (std::size_t{LineCount()} + kStripSize - 1) / kStripSize;
    const std::size_t pixels = std::size_t{width_} * height_;
    if ((memory->pixels.size() < pixels && !memory->pixels.Allocate(pixels)) ||
        (memory->finished.size() < stripCount_ && !memory->finished.Allocate(stripCount_)) ||
        (memory->claimed.size() < stripCount_ && !memory->claimed.Allocate(stripCount_))) {
      width_ = 0;
      return false;
    }
    pixels_ = memory->pixels.data();
    finished_ = memory->finished.data();
    claimed_ = memory->claimed.data();
    std::fill_n(finished_, stripCount_, nullptr);
    std::fill_n(claimed_, stripCount_, std::uint8_t{0});
    return true;
  }

  // The same with memory of its own.
  [[nodiscard]] bool Reset(std::int32_t width, std::int32_t height) {
    return Reset(width, height, &ownMemory_);
  }

  // The pixel at (column, row) when its strip has been worked out already; null otherwise.
  const Pixel* ReadyPixel(std::int32_t column, std::int32_t row) const {
    if (!Contains(column, row)) {
      return nullptr;
    }
    const Pixel* const strip = __atomic_load_n(finished_ + StripOf(column, row), __ATOMIC_ACQUIRE);
    return strip != nullptr ? strip + PlaceInStrip(column, row) : nullptr;
  }

  // The pixel at (column, row), after fill(firstLine, endLine, first pixel of firstLine) has worked
  // its strip out if nobody had; null while another thread is at it, and outside the picture. The
  // rows of what is filled are as far apart as the picture is wide. A fill that answers false has
  // not done its work; it is asked again by a later pixel.
  template <typename FillStrip>
  const Pixel* PixelOrFill(std::int32_t column, std::int32_t row, const FillStrip& fill) {
    if (!Contains(column, row)) {
      return nullptr;
    }
    const std::size_t strip = StripOf(column, row);
    const std::size_t end = std::min(strip + kLookAhead, stripCount_);
    for (std::size_t next = strip; next < end; ++next) {
      if (__atomic_exchange_n(claimed_ + next, std::uint8_t{1}, __ATOMIC_RELAXED) == 0) {
        Fill(next, fill);
        break;
      }
    }
    return ReadyPixel(column, row);
  }

 private:
  // Strips that a thread looks at for work, its own among them.
  static constexpr std::size_t kLookAhead = 8;
  static constexpr bool kIsRows = kLines == StripLines::kRows;

  template <typename FillStrip>
  void Fill(std::size_t strip, const FillStrip& fill) {
    const auto firstLine = static_cast<std::int32_t>(strip) * kStripSize;
    const auto lineCount = static_cast<std::int32_t>(LineCount());
    Pixel* const pixels = pixels_ + (kIsRows ? std::ptrdiff_t{firstLine} * width_ : firstLine);
    if (fill(firstLine, std::min(firstLine + kStripSize, lineCount), pixels)) {
      __atomic_store_n(finished_ + strip, pixels, __ATOMIC_RELEASE);
    } else {
      __atomic_store_n(claimed_ + strip, std::uint8_t{0}, __ATOMIC_RELAXED);
    }
  }

  std::uint32_t LineCount() const { return kIsRows ? height_ : width_; }

  bool Contains(std::int32_t column, std::int32_t row) const {
    return static_cast<std::uint32_t>(row) < height_ && static_cast<std::uint32_t>(column) < width_;
  }
  // Both are those of a pixel of the picture.
  static std::size_t StripOf(std::int32_t column, std::int32_t row) {
    return static_cast<std::uint32_t>(kIsRows ? row : column) / kStripSize;
  }
  std::size_t PlaceInStrip(std::int32_t column, std::int32_t row) const {
    const auto x = static_cast<std::uint32_t>(column);
    const auto y = static_cast<std::uint32_t>(row);
    return kIsRows ? std::size_t{y % kStripSize} * width_ + x
                   : std::size_t{y} * width_ + x % kStripSize;
  }

  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
  std::size_t stripCount_ = 0;
  Pixel* pixels_ = nullptr;
  // Per strip: its first pixel once it is worked out, and whether a thread has taken it on. The
  // compilers' atomic builtins stand in for std::atomic_ref, which older standard libraries of
  // macOS do not have.
  const Pixel** finished_ = nullptr;
  std::uint8_t* claimed_ = nullptr;
  StripMemory<Pixel> ownMemory_;
};

}  // namespace vitrell

#endif  // VITRELL_PASS_LAZY_STRIPS_H_
