// Sums along the rows or columns of a world.
#include "blur/box_sums.h"

#include <cstddef>
#include <limits>

#include "render/pixel_access.h"

namespace vitrell {
namespace {

constexpr std::int64_t kChannels = 3;

// Up to this radius a window of 16-bit channels sums to at most 65537 x 65535 = 2^32 - 1, so that
// 32-bit sums, which may themselves wrap, give every window exactly.
constexpr std::int32_t kMaxRadiusOf32BitSums = 32768;

}  // namespace

template <typename Pixel>
bool BoxSums::Build(BoxAxis axis, const PF_LayerDef& src, const PF_LayerDef& dst,
                    std::int32_t radiusPx) {
  axis_ = axis;
  noTaps_ = radiusPx < 0;
  lineCount_ = 0;
  if (noTaps_ || src.width <= 0 || src.height <= 0 || src.data == nullptr) {
    return true;
  }
  const bool rows = axis == BoxAxis::kRows;
  size_ = rows ? src.width : src.height;
  lineCount_ = rows ? src.height : src.width;
  lineOrigin_ = rows ? src.extent_hint.top : src.extent_hint.left;
  lineStride_ = rows ? size_ + 1 : 1;
  positionStride_ = rows ? 1 : lineCount_;
  inverseTaps_ = 1.0 / (2.0 * radiusPx + 1.0);
  const std::int32_t origin = rows ? src.extent_hint.left : src.extent_hint.top;
  if (!windows_.Build(size_, origin, radiusPx, rows ? dst.width : dst.height)) {
    return false;
  }
  const auto count = static_cast<std::size_t>((size_ + 1) * lineCount_ * kChannels);
  if (radiusPx <= kMaxRadiusOf32BitSums) {
    if (!sums32_.Allocate(count)) {
      return false;
    }
    Accumulate<std::uint32_t, Pixel>(src, sums32_.data());
    return true;
  }
  if (!sums64_.Allocate(count)) {
    return false;
  }
  Accumulate<std::uint64_t, Pixel>(src, sums64_.data());
  return true;
}

template <typename Sum, typename Pixel>
void BoxSums::Accumulate(const PF_LayerDef& src, Sum* sums) const {
  const std::int64_t lineStep = lineStride_ * kChannels;
  const std::int64_t positionStep = positionStride_ * kChannels;
  for (std::int64_t line = 0; line < lineCount_; ++line) {
    Sum* const first = sums + line * lineStep;
    first[0] = first[1] = first[2] = 0;
  }
  const bool rows = axis_ == BoxAxis::kRows;
  for (std::int64_t row = 0; row < src.height; ++row) {
    const Pixel* const pixels = StoredPixel<Pixel>(&src, row, 0);
    Sum* before = sums + row * (rows ? lineStep : positionStep);
    for (std::int64_t column = 0; column < src.width; ++column) {
      Sum* const after = before + positionStep;
      after[0] = before[0] + pixels[column].red;
      after[1] = before[1] + pixels[column].green;
      after[2] = before[2] + pixels[column].blue;
      before += rows ? positionStep : lineStep;
    }
  }
}

ColourMeans BoxSums::At(std::int32_t x, std::int32_t y) const {
  if (noTaps_) {
    constexpr double kNoMean = std::numeric_limits<double>::quiet_NaN();
    return {kNoMean, kNoMean, kNoMean};
  }
  if (lineCount_ == 0) {
    return {0, 0, 0};
  }
  const bool rows = axis_ == BoxAxis::kRows;
  const BoxWindow window = windows_.At(rows ? x : y);
  const std::int64_t line = FoldCoordinate((rows ? y : x) - lineOrigin_, lineCount_);
  return sums32_.size() != 0 ? Means(sums32_.data(), window, line)
                             : Means(sums64_.data(), window, line);
}

template <typename Sum>
ColourMeans BoxSums::Means(const Sum* sums, const BoxWindow& window, std::int64_t line) const {
  const Sum* const start = sums + line * lineStride_ * kChannels;
  const auto stored = [&](std::int64_t index) {
    return start + index * positionStride_ * kChannels;
  };
  const Sum* const high = stored(window.high);
  const Sum* const low = stored(window.low);
  Sum sum[kChannels];
  if (window.inside) {
    for (int c = 0; c < kChannels; ++c) {
      sum[c] = high[c] - low[c];
    }
  } else {
    const Sum* const whole = stored(size_);
    const Sum* const first = stored(1);
    for (int c = 0; c < kChannels; ++c) {
      sum[c] = static_cast<Sum>(window.wholeFactor) * whole[c] +
               static_cast<Sum>(window.firstFactor) * first[c] +
               static_cast<Sum>(window.highSign) * high[c] +
               static_cast<Sum>(window.lowSign) * low[c];
    }
  }
  return {static_cast<double>(sum[0]) * inverseTaps_, static_cast<double>(sum[1]) * inverseTaps_,
          static_cast<double>(sum[2]) * inverseTaps_};
}

template bool BoxSums::Build<PF_Pixel>(BoxAxis, const PF_LayerDef&, const PF_LayerDef&,
                                       std::int32_t);
template bool BoxSums::Build<PF_Pixel16>(BoxAxis, const PF_LayerDef&, const PF_LayerDef&,
                                         std::int32_t);

}  // namespace vitrell
