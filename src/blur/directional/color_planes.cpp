// A world's colours as planes of floats with mirrored borders, for summing in vector lanes.
#include "blur/directional/color_planes.h"

#include "base/pixel_access.h"
#include "host/world.h"

namespace vitrell {
namespace {

constexpr std::int64_t kLineValues = 16;  // Floats per cache line.

// Rounds a row up to an odd number of cache lines, so that the same column of many rows is spread
// over the cache's sets.
std::ptrdiff_t OddLines(std::int64_t values) {
  const std::int64_t lines = (values + kLineValues - 1) / kLineValues;
  return (lines | 1) * kLineValues;
}

// The first address from here on that begins a cache line.
float* FirstAligned(float* values) {
  constexpr std::uintptr_t kLineBytes = kLineValues * sizeof(float);
  const std::uintptr_t past = reinterpret_cast<std::uintptr_t>(values) % kLineBytes;
  return values + (past == 0 ? 0 : (kLineBytes - past) / sizeof(float));
}

template <typename Pixel>
const Pixel* RowOf(const PF_LayerDef& world, std::int64_t row) {
  return reinterpret_cast<const Pixel*>(static_cast<const char*>(world.data) +
                                        row * world.rowbytes);
}

template <typename Pixel>
bool HasTransparentPixel(const PF_LayerDef& world) {
  for (std::int64_t y = 0; y < world.height; ++y) {
    const Pixel* const row = RowOf<Pixel>(world, y);
    bool isAny = false;
    for (std::int64_t x = 0; x < world.width; ++x) {
      isAny |= row[x].alpha == 0;
    }
    if (isAny) {
      return true;
    }
  }
  return false;
}

// Splits one row into the planes, which are planeSize values apart.
template <typename Pixel>
void SplitRow(const Pixel* source, std::int64_t width, std::ptrdiff_t planeSize, float* planes) {
  float* const red = planes;
  float* const green = planes + planeSize;
  float* const blue = planes + 2 * planeSize;
  for (std::int64_t x = 0; x < width; ++x) {
    const float keep = source[x].alpha != 0 ? 1.0f : 0.0f;
    red[x] = static_cast<float>(source[x].red) * keep;
    green[x] = static_cast<float>(source[x].green) * keep;
    blue[x] = static_cast<float>(source[x].blue) * keep;
  }
}

template <typename Pixel>
void MarkOpaque(const Pixel* source, std::int64_t width, float* opacity) {
  for (std::int64_t x = 0; x < width; ++x) {
    opacity[x] = source[x].alpha != 0 ? 1.0f : 0.0f;
  }
}

}  // namespace

bool ColorPlanes::Build(const PF_LayerDef& world, std::int64_t minColumn, std::int64_t maxColumn,
                        std::int64_t lanes) {
  width_ = world.width;
  const std::int64_t reached = width_ - minColumn + maxColumn;
  const std::int64_t period = MirrorPeriod(width_);
  firstColumn_ = reached <= period ? minColumn : 0;
  count_ = reached <= period ? reached : period;
  rowStride_ = OddLines(count_ + lanes);
  planeSize_ = rowStride_ * world.height;
  return IsDeep(world) ? Fill<PF_Pixel16>(world) : Fill<PF_Pixel>(world);
}

std::int64_t ColorPlanes::IndexOf(std::int64_t column) const {
  const std::int64_t index = (column - firstColumn_) % count_;
  return index < 0 ? index + count_ : index;
}

template <typename Pixel>
bool ColorPlanes::Fill(const PF_LayerDef& world) {
  hasHoles_ = HasTransparentPixel<Pixel>(world);
  const int planes = hasHoles_ ? kColorCount + 1 : kColorCount;
  const std::size_t values =
      static_cast<std::size_t>(planeSize_) * static_cast<std::size_t>(planes) + kLineValues;
  if (!values_.Allocate(values) || !FoldBorders()) {
    return false;
  }
  planes_ = FirstAligned(values_.data());
  for (std::int64_t y = 0; y < world.height; ++y) {
    const Pixel* const source = RowOf<Pixel>(world, y);
    float* const row = planes_ + y * rowStride_;
    SplitRow(source, width_, planeSize_, row - firstColumn_);
    if (hasHoles_) {
      MarkOpaque(source, width_, row + kColorCount * planeSize_ - firstColumn_);
    }
    for (int plane = 0; plane < planes; ++plane) {
      MirrorRow(row + plane * planeSize_);
    }
  }
  return true;
}

bool ColorPlanes::FoldBorders() {
  if (!folded_.Allocate(static_cast<std::size_t>(rowStride_))) {
    return false;
  }
  for (std::int64_t i = 0; i < rowStride_; ++i) {
    folded_[static_cast<std::size_t>(i)] = FoldCoordinate(firstColumn_ + i, width_) - firstColumn_;
  }
  return true;
}

void ColorPlanes::MirrorRow(float* row) const {
  const std::int64_t* const folded = folded_.data();
  for (std::int64_t i = 0; i < -firstColumn_; ++i) {
    row[i] = row[folded[i]];
  }
  for (std::int64_t i = width_ - firstColumn_; i < rowStride_; ++i) {
    row[i] = row[folded[i]];
  }
}

}  // namespace vitrell
