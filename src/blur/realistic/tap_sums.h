// The realistic blur's sums for one pixel, tap by tap.
#ifndef VITRELL_BLUR_REALISTIC_TAP_SUMS_H_
#define VITRELL_BLUR_REALISTIC_TAP_SUMS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "blur/realistic/highlight_map.h"
#include "blur/realistic/iris_kernel.h"

namespace vitrell {

// Weighted colours and their total weight, in single precision.
struct TapSums {
  float red = 0.0f;
  float green = 0.0f;
  float blue = 0.0f;
  float weight = 0.0f;

  // source is the address of a tap's highlight weight. The order of the two products matters.
  void Add(const float* source, std::int64_t planeStride, float tapWeight) {
    const float product = source[0] * tapWeight;
    red += product * source[planeStride];
    green += product * source[2 * planeStride];
    blue += product * source[3 * planeStride];
    weight += product;
  }
};

// The sums of a whole kernel at (row, column) of the map, in grid order. Taps outside the map are
// skipped.
inline TapSums SumKernel(const HighlightMap& map, const IrisKernel& kernel, std::int64_t row,
                         std::int64_t column) {
  TapSums sums;
  for (std::int64_t i = 0; i < kernel.rowCount; ++i) {
    const std::int64_t tapRow = row + kernel.firstDy + i;
    if (tapRow < 0 || tapRow >= map.height()) {
      continue;
    }
    const auto line = static_cast<std::size_t>(i);
    for (std::size_t s = kernel.rowStart[line]; s < kernel.rowStart[line + 1]; ++s) {
      const KernelSpan& span = kernel.spans[s];
      const std::int64_t first = std::max<std::int64_t>(column + span.dx, 0);
      const std::int64_t end = std::min(column + span.dx + span.count, map.width());
      for (std::int64_t tapColumn = first; tapColumn < end; ++tapColumn) {
        sums.Add(map.origin() + tapRow * map.rowStride() + tapColumn * map.columnStride(),
                 map.planeStride(), span.weight);
      }
    }
  }
  return sums;
}

// Stores the average colours, truncated without clamping; 0 if the total weight is 0. Does not
// write alpha.
template <typename Pixel>
inline void StoreColors(const TapSums& sums, Pixel* pixel) {
  using Channel = ChannelOf<Pixel>;
  const bool nothing = sums.weight == 0.0f;
  pixel->red = nothing ? Channel{0} : TruncateToChannel<Channel>(sums.red / sums.weight);
  pixel->green = nothing ? Channel{0} : TruncateToChannel<Channel>(sums.green / sums.weight);
  pixel->blue = nothing ? Channel{0} : TruncateToChannel<Channel>(sums.blue / sums.weight);
}

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_TAP_SUMS_H_
