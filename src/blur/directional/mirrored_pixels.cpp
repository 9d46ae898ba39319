// An 8-bit world's pixels with mirrored borders, alpha as a count.
#include "blur/directional/mirrored_pixels.h"

#include "base/pixel_access.h"

namespace vitrell {
namespace {

constexpr std::int64_t kCacheLine = 64;

// Rounds a row up to an odd number of cache lines, so that the same column of many rows is spread
// over the cache's sets.
std::int64_t OddCacheLines(std::int64_t bytes) {
  return (((bytes + kCacheLine - 1) / kCacheLine) | 1) * kCacheLine;
}

}  // namespace

bool MirroredPixels::Build(const PF_LayerDef& world, const Reach& reach) {
  const std::int64_t columns = world.width + 2 * reach.columns;
  const std::int64_t rows = world.height + 2 * reach.rows;
  const std::int64_t stride = OddCacheLines(columns * kPixelBytes);
  if (!bytes_.Allocate(static_cast<std::size_t>(stride * world.height)) ||
      !rows_.Allocate(static_cast<std::size_t>(rows)) ||
      !folded_.Allocate(static_cast<std::size_t>(columns))) {
    return false;
  }
  for (std::int64_t i = 0; i < columns; ++i) {
    folded_[static_cast<std::size_t>(i)] = FoldCoordinate(i - reach.columns, world.width);
  }
  for (std::int64_t i = 0; i < rows; ++i) {
    rows_[static_cast<std::size_t>(i)] = FoldCoordinate(i - reach.rows, world.height) * stride;
  }
  first_ = bytes_.data() + reach.columns * kPixelBytes;
  firstRow_ = rows_.data() + reach.rows;
  for (std::int64_t y = 0; y < world.height; ++y) {
    CopyRow(static_cast<const std::uint8_t*>(world.data) + y * world.rowbytes, world.width,
            reach.columns, bytes_.data() + y * stride);
  }
  return true;
}

void MirroredPixels::CopyRow(const std::uint8_t* source, std::int64_t width, std::int64_t columns,
                             std::uint8_t* row) const {
  const auto* const in = reinterpret_cast<const PF_Pixel*>(source);
  auto* const out = reinterpret_cast<PF_Pixel*>(row);
  for (std::int64_t x = 0; x < width; ++x) {
    out[columns + x] =
        in[x].alpha != 0 ? PF_Pixel{1, in[x].red, in[x].green, in[x].blue} : PF_Pixel{0, 0, 0, 0};
  }
  const std::int64_t* const folded = folded_.data();
  for (std::int64_t i = 0; i < columns; ++i) {
    out[i] = out[columns + folded[i]];
    out[columns + width + i] = out[columns + folded[columns + width + i]];
  }
}

}  // namespace vitrell
