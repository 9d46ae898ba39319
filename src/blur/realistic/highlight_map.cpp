// The realistic blur's source: the highlight weight of each input pixel and its colours, as planes
// of floats from which neighbouring output pixels can be summed in vector lanes.
#include "blur/realistic/highlight_map.h"

#include <algorithm>

#include "base/depth_traits.h"
#include "base/pixel_access.h"
#include "host/world.h"

namespace vitrell {
namespace {

constexpr std::int64_t kFloatsPerCacheLine = 16;

// Luminance times alpha, relative to white in both.
double Brightness(const PF_Pixel& pixel) {
  return (0.299 * pixel.red + 0.587 * pixel.green + 0.114 * pixel.blue) * pixel.alpha / 65025.0;
}

double Brightness(const PF_Pixel16& pixel) {
  constexpr double kOneByWhiteSquared = 9.313225746154785e-10;
  return (0.299 * pixel.red + 0.587 * pixel.green + 0.114 * pixel.blue) * pixel.alpha *
         kOneByWhiteSquared;
}

// Rounds up to an odd number of cache lines, so that neighbouring lines never map to the same cache
// set.
std::int64_t PaddedLength(std::int64_t length) {
  const std::int64_t padded = length + 2 * HighlightMap::kLinePadding;
  const std::int64_t cacheLines = (padded + kFloatsPerCacheLine - 1) / kFloatsPerCacheLine;
  return (cacheLines | 1) * kFloatsPerCacheLine;
}

}  // namespace

template <typename Pixel>
void HighlightMap::Fill(const PF_InData* inData, const PF_LayerDef& input, std::int64_t rowsAtATime,
                        MapUse use) {
  // The weight of layer position (row, column) is stored at row x width + column, whatever the
  // world's origin.
  // Kept: in a world whose extent hint does not start at (0, 0) a pixel therefore gets another
  // pixel's weight, or 0 where there is none.
  const std::int64_t shift = input.extent_hint.top * width_ + input.extent_hint.left;
  const auto weightOf = [&](const Pixel& own, std::int64_t row, std::int64_t column) {
    const Pixel* pixel = &own;
    if (shift != 0) {
      const std::int64_t index = row * width_ + column + shift;
      if (index < 0 || index >= width_ * height_) {
        return 0.0f;
      }
      pixel = StoredPixel<Pixel>(&input, index / width_, index % width_);
    }
    return static_cast<float>(inData->utils->ansi.sqrt(Brightness(*pixel)));
  };
  for (std::int64_t firstRow = 0; firstRow < height_; firstRow += rowsAtATime) {
    const std::int64_t endRow = std::min(firstRow + rowsAtATime, height_);
    for (std::int64_t column = 0; column < width_; ++column) {
      for (std::int64_t row = firstRow; row < endRow; ++row) {
        const Pixel& pixel = *StoredPixel<Pixel>(&input, row, column);
        float* const value = origin_ + row * rowStride_ + column * columnStride_;
        const float weight =
            use == MapUse::kByMask && pixel.alpha == 0 ? 0.0f : weightOf(pixel, row, column);
        value[0] = weight;
        value[planeStride_] = pixel.red;
        value[2 * planeStride_] = pixel.green;
        value[3 * planeStride_] = pixel.blue;
        if (use == MapUse::kByMask) {
          value[4 * planeStride_] = weight * value[planeStride_];
          value[5 * planeStride_] = weight * value[2 * planeStride_];
          value[6 * planeStride_] = weight * value[3 * planeStride_];
        }
      }
    }
  }
}

bool HighlightMap::Build(const PF_InData* inData, const PF_LayerDef& input, PlaneOrder order,
                         MapUse use) {
  if (input.data == nullptr || input.width <= 0 || input.height <= 0) {
    return true;
  }
  const bool byColumns = order == PlaneOrder::kRowMajor;
  const std::int64_t lineCount = byColumns ? input.height : input.width;
  planeStride_ = PaddedLength(byColumns ? input.width : input.height);
  const std::int64_t lineStride = (use == MapUse::kByMask ? 7 : 4) * planeStride_;
  if (!values_.AllocateZeroed(static_cast<std::size_t>(lineStride * lineCount))) {
    return false;
  }
  width_ = input.width;
  height_ = input.height;
  origin_ = values_.data() + kLinePadding;
  rowStride_ = byColumns ? lineStride : 1;
  columnStride_ = byColumns ? 1 : lineStride;
  // Chosen so that whole cache lines are written in either order.
  const std::int64_t rowsAtATime = byColumns ? 1 : kFloatsPerCacheLine;
  if (IsDeep(input)) {
    Fill<PF_Pixel16>(inData, input, rowsAtATime, use);
  } else {
    Fill<PF_Pixel>(inData, input, rowsAtATime, use);
  }
  return true;
}

}  // namespace vitrell
