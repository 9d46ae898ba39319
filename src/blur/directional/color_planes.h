// A world's colours as planes of floats with mirrored borders, for sums in vector lanes.
#ifndef VITRELL_BLUR_DIRECTIONAL_COLOR_PLANES_H_
#define VITRELL_BLUR_DIRECTIONAL_COLOR_PLANES_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "host/host_api.h"

namespace vitrell {

inline constexpr int kColorCount = 3;  // Red, green, blue.

// Each row holds the columns of one mirrored stretch: from firstColumn on, count columns, at most
// one period of the mirroring, after which index count stands for index 0 again; then so many more
// that lanes may start at any index below count. Transparent pixels count as black.
class ColorPlanes {
 public:
  // Copies a world with pixels, reached from minColumn to width - 1 + maxColumn, where minColumn
  // must not be positive and maxColumn not negative. False when there is no memory.
  [[nodiscard]] bool Build(const PF_LayerDef& world, std::int64_t minColumn, std::int64_t maxColumn,
                           std::int64_t lanes);

  // First value of a colour's plane; of the plane that is 1 where the world is not transparent.
  const float* Color(int color) const { return planes_ + planeSize_ * color; }
  const float* Opacity() const { return Color(kColorCount); }

  // Whether any pixel is transparent. There is an opacity plane only then.
  bool HasHoles() const { return hasHoles_; }

  std::ptrdiff_t rowStride() const { return rowStride_; }
  std::int64_t count() const { return count_; }

  // Index of a column relative to that of column 0, from 0 to count - 1; the sum of the two may
  // pass count once.
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
  float* planes_ = nullptr;      // In values_, where a cache line begins.
  Buffer<std::int64_t> folded_;  // Index within the picture of every index of a row.
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_COLOR_PLANES_H_
