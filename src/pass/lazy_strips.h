// Strips of adjacent lines of a pass's result, each computed once by the first thread that needs
// it.
#ifndef VITRELL_PASS_LAZY_STRIPS_H_
#define VITRELL_PASS_LAZY_STRIPS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/buffer.h"

namespace vitrell {

enum class StripLines { kRows, kColumns };

// Where rows of pixels lie that somebody else owns.
template <typename Pixel>
struct StripRows {
  Pixel* first = nullptr;
  std::ptrdiff_t pitch = 0;  // From row to row, in pixels; may be negative.
};

// The memory of a pass's strips. A later pass may reuse it.
template <typename Pixel>
struct StripMemory {
  Buffer<Pixel> pixels;
  Buffer<const Pixel*> finished;
  Buffer<std::uint8_t> claimed;
};

// For stages whose pixels are cheaper to compute many at a time than one by one: the callback asks
// for a pixel, and the strip of rows or columns that contains it is computed as a whole. A thread
// that needs a strip on which another thread is working computes one of the next strips meanwhile,
// so that threads share the work even where the host gives neighbouring rows to different threads.
// Works for any order of pixels and without thread-local state. One object serves one pass.
template <typename Pixel, std::int32_t kStripSize, StripLines kLines = StripLines::kRows>
class LazyStrips {
 public:
  // Discards all strips. False if memory is short. An image without pixels has no strips. The
  // memory must outlive the use of this object; it is reused if it is large enough.
  [[nodiscard]] bool Reset(std::int32_t width, std::int32_t height, StripMemory<Pixel>* memory) {
    const auto columns = static_cast<std::size_t>(std::max(width, 0));
    const std::size_t pixels = columns * static_cast<std::size_t>(std::max(height, 0));
    if (memory->pixels.size() < pixels && !memory->pixels.Allocate(pixels)) {
      width_ = 0;
      return false;
    }
    return ResetStates(width, height, {memory->pixels.data(), width}, memory);
  }

  // The same with the pixels in rows of the caller's, at least `width` long; of memory only the
  // strips' states are used.
  [[nodiscard]] bool Reset(std::int32_t width, std::int32_t height, const StripRows<Pixel>& rows,
                           StripMemory<Pixel>* memory) requires(kLines == StripLines::kRows) {
    return ResetStates(width, height, rows, memory);
  }

  // The same with this object's own memory.
  [[nodiscard]] bool Reset(std::int32_t width, std::int32_t height) {
    return Reset(width, height, &ownMemory_);
  }

  // The pixel at (column, row) if its strip is finished, otherwise null. The acquire load pairs
  // with the release store that publishes a finished strip.
  const Pixel* ReadyPixel(std::int32_t column, std::int32_t row) const {
    if (!Contains(column, row)) {
      return nullptr;
    }
    const Pixel* const strip = __atomic_load_n(finished_ + StripOf(column, row), __ATOMIC_ACQUIRE);
    return strip != nullptr ? strip + PlaceInStrip(column, row) : nullptr;
  }

  // The pixel at (column, row); if no thread has claimed its strip, the strip is computed first by
  // fill(firstLine, endLine, address of the first pixel of firstLine), with rows one image width
  // apart, or as far as the caller's own. Null outside the image and while another thread is
  // computing the strip. If fill returns false, the strip stays unclaimed and a later pixel tries
  // again.
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
  // Number of strips, from the pixel's own on, among which a thread looks for an unclaimed one.
  static constexpr std::size_t kLookAhead = 8;
  static constexpr bool kIsRows = kLines == StripLines::kRows;

  [[nodiscard]] bool ResetStates(std::int32_t width, std::int32_t height,
                                 const StripRows<Pixel>& rows, StripMemory<Pixel>* memory) {
    width_ = static_cast<std::uint32_t>(std::max(width, 0));
    height_ = static_cast<std::uint32_t>(std::max(height, 0));
    stripCount_ = (std::size_t{LineCount()} + kStripSize - 1) / kStripSize;
    if ((memory->finished.size() < stripCount_ && !memory->finished.Allocate(stripCount_)) ||
        (memory->claimed.size() < stripCount_ && !memory->claimed.Allocate(stripCount_))) {
      width_ = 0;
      return false;
    }
    rows_ = rows;
    finished_ = memory->finished.data();
    claimed_ = memory->claimed.data();
    std::fill_n(finished_, stripCount_, nullptr);
    std::fill_n(claimed_, stripCount_, std::uint8_t{0});
    return true;
  }

  template <typename FillStrip>
  void Fill(std::size_t strip, const FillStrip& fill) {
    const auto firstLine = static_cast<std::int32_t>(strip) * kStripSize;
    const auto lineCount = static_cast<std::int32_t>(LineCount());
    Pixel* const pixels = rows_.first + (kIsRows ? firstLine * rows_.pitch : firstLine);
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
  // column and row must lie within the image.
  static std::size_t StripOf(std::int32_t column, std::int32_t row) {
    return static_cast<std::uint32_t>(kIsRows ? row : column) / kStripSize;
  }
  std::ptrdiff_t PlaceInStrip(std::int32_t column, std::int32_t row) const {
    const auto x = static_cast<std::uint32_t>(column);
    const auto y = static_cast<std::uint32_t>(row);
    return kIsRows ? std::ptrdiff_t{y % kStripSize} * rows_.pitch + x
                   : std::ptrdiff_t{y} * rows_.pitch + x % kStripSize;
  }

  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
  std::size_t stripCount_ = 0;
  StripRows<Pixel> rows_;
  // Per strip: the address of its first pixel once it is finished, and whether a thread has claimed
  // it. Atomic builtins of the compilers replace std::atomic_ref, which older standard libraries of
  // macOS lack.
  const Pixel** finished_ = nullptr;
  std::uint8_t* claimed_ = nullptr;
  StripMemory<Pixel> ownMemory_;
};

}  // namespace vitrell

#endif  // VITRELL_PASS_LAZY_STRIPS_H_
