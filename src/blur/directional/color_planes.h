// A world's colours as planes of floats with mirrored borders, for summing in vector lanes.
#ifndef VITRELL_BLUR_DIRECTIONAL_COLOR_PLANES_H_
#define VITRELL_BLUR_DIRECTIONAL_COLOR_PLANES_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "host/host_api.h"

namespace vitrell {

inline constexpr int kColorCount = 3;  // Red, green, blue.

// Each row of a plane holds `count` consecutive columns of the mirrored image from firstColumn on,
// at most one mirror period, after which index count is index 0 again. The first values are
// repeated behind them, so that a vector may start at any index below count. Transparent pixels are
// stored as black.
class ColorPlanes {
 public:
  // Copies a world that has pixels. Columns from minColumn <= 0 to width - 1 + maxColumn, with
  // maxColumn >= 0, can then be reached. False if memory is short.
  [[nodiscard]] bool Build(const PF_LayerDef& world, std::int64_t minColumn, std::int64_t maxColumn,
                           std::int64_t lanes);

  // First value of the plane of a colour, and of the plane that is 1 where a pixel is not
  // transparent.
  const float* Color(int color) const { return planes_ + planeSize_ * color; }
  const float* Opacity() const { return Color(kColorCount); }

  // Whether any pixel is transparent. Only then does the opacity plane exist.
  bool HasHoles() const { return hasHoles_; }

  std::ptrdiff_t rowStride() const { return rowStride_; }
  std::int64_t count() const { return count_; }

  // Index of a column relative to that of column 0, modulo count. Added to another index, the
  // result may exceed count - 1 and must then be reduced by count once.
  std::int64_t IndexOf(std::int64_t column) const;

 private:
  template <typename Pixel>
  [[nodiscard]] bool Fill(const PF_LayerDef& world);
  [[nodiscard]] bool FoldBorders();
  void MirrorRow(float* row) const;

  std::int64_t width_ = 0;
  std::int64_t firstColumn_ = 0;
  std::int64_t count_ = 0;
  std::ptrdiff_t rowStride_ = 0;
  std::ptrdiff_t planeSize_ = 0;
  bool hasHoles_ = false;
  Buffer<float> values_;
  float* planes_ = nullptr;      // The first cache line boundary in values_.
  Buffer<std::int64_t> folded_;  // For each index of a row, the image column it shows.
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_COLOR_PLANES_H_
