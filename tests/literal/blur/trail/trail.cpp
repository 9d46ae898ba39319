// The trail, evaluated step by step from its definition.
#include "literal/blur/trail/trail.h"

#include <cstddef>
#include <vector>

#include "literal/base/pixel_access.h"
#include "literal/base/truncate.h"
#include "literal/blur/trail/trail_ray.h"

namespace vitrell::literal {
namespace {

bool AnyChannelSet(const Pixel& pixel) {
  return pixel.channel[0] != 0 || pixel.channel[1] != 0 || pixel.channel[2] != 0 ||
         pixel.channel[3] != 0;
}

// The weighted average of the source along the ray from point `first` toward the centre.
Pixel AverageAlongRay(const World& src, const std::vector<LinePoint>& ray, std::size_t first,
                      std::int32_t tapCount) {
  double sums[3] = {0, 0, 0};
  double weightSum = 0;
  for (std::int32_t j = 0; j < tapCount; ++j) {
    const std::size_t index = first + static_cast<std::size_t>(j);
    if (index >= ray.size()) break;
    const double q = static_cast<double>(tapCount - j) / tapCount;
    const double w = q * q;
    const Pixel* tap = GetPointerFromDataP(src, ray[index].y, ray[index].x, 0);
    if (tap == nullptr || tap->channel[0] == 0) continue;
    for (int i = 0; i < 3; ++i) sums[i] += w * tap->channel[i + 1];
    weightSum += w;
  }
  Pixel result;
  const Pixel* self = GetPointerFromDataP(src, ray[first].y, ray[first].x, 0);
  result.channel[0] = self == nullptr ? std::uint16_t{0} : self->channel[0];
  for (int i = 0; i < 3; ++i) {
    result.channel[i + 1] = ChannelFromReal(sums[i] / weightSum, src.deep);
  }
  return result;
}

void CastRay(const World& src, World& dst, const std::vector<LinePoint>& ray,
             std::int32_t tapCount) {
  for (std::size_t k = 0; k < ray.size(); ++k) {
    Pixel* target = GetPointerFromDataP(dst, ray[k].y, ray[k].x, 1);
    if (AnyChannelSet(*target)) continue;
    if (tapCount == 0) {
      *target = *GetPointerFromDataP(src, ray[k].y, ray[k].x, 1);
    } else {
      *target = AverageAlongRay(src, ray, k, tapCount);
    }
  }
}

}  // namespace

void TrailPass(const World& src, World& dst, std::int32_t cx, std::int32_t cy, float trailAmount,
               std::int32_t cornerDistance) {
  const float reach = static_cast<float>(cornerDistance) * trailAmount * trailAmount;
  const std::int32_t tapCount = TruncateToInt(reach);
  for (std::int32_t y = 0; y < dst.height; ++y) {
    for (std::int32_t x = 0; x < dst.width; ++x) {
      const bool border = x == dst.extent.left || x == dst.extent.right - 1 ||
                          y == dst.extent.top || y == dst.extent.bottom - 1;
      if (!border) continue;
      CastRay(src, dst, ComputeLinePoints(x, y, cx, cy), tapCount);
    }
  }
}

}  // namespace vitrell::literal
