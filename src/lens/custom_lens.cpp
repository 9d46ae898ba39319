// The custom lens: luminance times alpha of another layer's image.
#include "lens/custom_lens.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

#include "base/pixel_access.h"
#include "host/world.h"
#include "simd/channel_lanes.h"

namespace vitrell {
namespace {

constexpr double kLeastScale = 0.0001;

// Number of columns whose sample positions are computed together.
constexpr std::uint32_t kBlock = 256;

struct Block {
  double rows[kBlock];
  double columns[kBlock];
};

// Luminance times alpha of a sample, not yet normalised.
double LumaTimesAlpha(double alpha, double red, double green, double blue) {
  return (0.299 * red + 0.587 * green + 0.114 * blue) * alpha;
}

template <typename Pixel>
double ScaledLuminance(double lumaTimesAlpha) {
  constexpr double kShallowScale = 65025;               // 255 x 255.
  constexpr double kDeepScale = 9.313225746154785e-10;  // 2 to the power -30.
  if constexpr (std::is_same_v<Pixel, PF_Pixel16>) {
    return lumaTimesAlpha * kDeepScale;
  } else {
    return lumaTimesAlpha / kShallowScale;
  }
}

}  // namespace

CustomLens::CustomLens(const LensMaskInput& input, const LX_Info& info)
    : info_(info), image_(info.customLayer) {
  const PF_ANSICallbacks& maths = input.inData->utils->ansi;
  sin_ = maths.sin(-info.rotation);
  cos_ = maths.cos(-info.rotation);
  const double ratioX = static_cast<double>(image_->width) / input.output->width;
  const double ratioY = static_cast<double>(image_->height) / input.output->height;
  if (info.placement == kStretchMapToFit) {
    factorX_ = ratioX;
    factorY_ = ratioY;
  }
  const bool center = info.placement == kCenterMap;
  const PF_LRect& extent = input.inputExtent;
  middleX_ =
      (center ? ratioX : 1) * static_cast<double>(std::int64_t{extent.left} + extent.right) * 0.5;
  middleY_ =
      (center ? ratioY : 1) * static_cast<double>(std::int64_t{extent.top} + extent.bottom) * 0.5;
  if (image_->extent_hint.left == 0 && image_->extent_hint.top == 0) {
    endRow_ = std::max(image_->height, 1) - 1;
    endColumn_ = std::max(image_->width, 1) - 1;
  }
}

// The same sample as GetPointerFromDataDP's, where all four neighbours exist.
template <typename Pixel>
inline double CustomLens::SampleInside(std::int32_t i, std::int32_t j, double fy, double fx) const {
  const char* const upper =
      static_cast<const char*>(image_->data) + std::ptrdiff_t{i} * image_->rowbytes;
  const Pixel* const nw = reinterpret_cast<const Pixel*>(upper) + j;
  const Pixel* const sw = reinterpret_cast<const Pixel*>(upper + image_->rowbytes) + j;
  if (fy == 0 && fx == 0) {  // The other weights are 0.
    return LumaTimesAlpha(nw->alpha, nw->red, nw->green, nw->blue);
  }
  F64Lanes sum = {};
  const auto add = [&sum](const Pixel& pixel, double weight) {
    const F64Lanes channels = Widen(ToLanes(pixel));
    sum.low += weight * channels.low;
    sum.high += weight * channels.high;
  };
  add(nw[0], (1 - fy) * (1 - fx));
  add(nw[1], (1 - fy) * fx);
  add(sw[0], fy * (1 - fx));
  add(sw[1], fy * fx);
  const F64Lanes sample = Widen(Truncate(sum));
  return LumaTimesAlpha(sample.low[0], sample.low[1], sample.high[0], sample.high[1]);
}

template <typename Pixel>
[[gnu::noinline]] double CustomLens::SampleAnywhere(double row, double column) const {
  Pixel sample = {};
  GetPointerFromDataDP(image_, row, column, &sample, 0);
  return LumaTimesAlpha(sample.alpha, sample.red, sample.green, sample.blue);
}

template <typename Pixel>
inline double CustomLens::Sample(double row, double column) const {
  const std::int32_t i = TruncateToInt32(row);
  const std::int32_t j = TruncateToInt32(column);
  return i >= 1 && i < endRow_ && j >= 1 && j < endColumn_
             ? SampleInside<Pixel>(i, j, row - i, column - j)
             : SampleAnywhere<Pixel>(row, column);
}

template <typename Pixel>
void CustomLens::FillFromImage(std::int32_t y, std::int32_t left, std::uint32_t count,
                               double* values) const {
  const double q = info_.scaleHeight > kLeastScale
                       ? static_cast<double>(std::int64_t{info_.positionY} - y) / info_.scaleHeight
                       : 0;
  // Members are copied to locals because a store through values may alias them: the compiler would
  // reload them for every column.
  const double scaleWidth = info_.scaleWidth;
  const bool isWide = scaleWidth > kLeastScale;
  const double sine = sin_, cosine = cos_;
  const double factorX = factorX_, factorY = factorY_;
  const double columnStart = middleX_ + sine * q;
  const double rowStart = middleY_, rowTurn = cosine * q;
  const auto first = static_cast<double>(std::int64_t{left} - info_.positionX);
  Block block;
  for (std::uint32_t begin = 0; begin < count; begin += kBlock) {
    const std::uint32_t size = std::min(count - begin, kBlock);
    for (std::uint32_t i = 0; i < size; ++i) {
      const double dx = first + static_cast<double>(static_cast<std::int32_t>(begin + i));
      const double p = isWide ? dx / scaleWidth : 0;
      // Kept: samples are taken one pixel up and to the left of where the lens's geometry puts
      // them.
      block.columns[i] = factorX * (columnStart + cosine * p) - 1.0;
      block.rows[i] = factorY * (rowStart + sine * p - rowTurn) - 1.0;
    }
    for (std::uint32_t i = 0; i < size; ++i) {
      values[begin + i] = Sample<Pixel>(block.rows[i], block.columns[i]);
    }
  }
  for (std::uint32_t i = 0; i < count; ++i) {
    const double m = 1 - ScaledLuminance<Pixel>(values[i]);
    values[i] = 1 - m;
  }
}

void CustomLens::FillRow(std::int32_t y, std::int32_t left, std::uint32_t count,
                         double* values) const {
  if (image_->data == nullptr) {
    std::fill(values, values + count, 0.0);
  } else if (IsDeep(*image_)) {
    FillFromImage<PF_Pixel16>(y, left, count, values);
  } else {
    FillFromImage<PF_Pixel>(y, left, count, values);
  }
}

}  // namespace vitrell
