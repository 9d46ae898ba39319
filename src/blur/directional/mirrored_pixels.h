// An 8-bit world's pixels with mirrored borders, alpha as a count.
#ifndef VITRELL_BLUR_DIRECTIONAL_MIRRORED_PIXELS_H_
#define VITRELL_BLUR_DIRECTIONAL_MIRRORED_PIXELS_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "host/host_api.h"

namespace vitrell {

inline constexpr std::ptrdiff_t kPixelBytes = sizeof(PF_Pixel);

class MirroredPixels {
 public:
  // How many columns and rows beyond the world's can be read, on either side.
  struct Reach {
    std::int64_t columns;
    std::int64_t rows;
  };

  // Copies a world that has pixels. Transparent ones become 0 in all channels; the alpha of others
  // becomes 1. False if memory is short.
  [[nodiscard]] bool Build(const PF_LayerDef& world, const Reach& reach);

  // The address of a pixel is Column(x) + Rows(y)[0]. Rows(y) may be indexed by rows relative to y.
  const std::uint8_t* Column(std::int64_t x) const { return first_ + x * kPixelBytes; }
  const std::ptrdiff_t* Rows(std::int64_t y) const { return firstRow_ + y; }

 private:
  void CopyRow(const std::uint8_t* source, std::int64_t width, std::int64_t columns,
               std::uint8_t* row) const;

  Buffer<std::uint8_t> bytes_;
  const std::uint8_t* first_ = nullptr;  // The pixel at (0, 0).
  Buffer<std::ptrdiff_t> rows_;
  const std::ptrdiff_t* firstRow_ = nullptr;
  Buffer<std::int64_t> folded_;  // For each column that can be read, the world's column it shows.
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_MIRRORED_PIXELS_H_
