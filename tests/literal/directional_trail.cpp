// The trail and the directional blur, evaluated step by step from their definitions.
#include <cstddef>
#include <cstdlib>

#include "literal/base/pixel_access.h"
#include "literal/base/truncate.h"
#include "literal/engines.h"
#include "literal/lens/lens_mask.h"

namespace vitrell::literal {
namespace {

constexpr double kHalfPi = 1.5707963267948966;
constexpr double kMaskThreshold = 0.0001;

// The root of a sum of squares; the sum is formed in 32-bit integers.
double LengthOf(std::int32_t x, std::int32_t y, double (*root)(double)) {
  return root(WrapAdd(WrapMultiply(x, x), WrapMultiply(y, y)));
}

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

std::vector<LinePoint> ComputeLinePoints(std::int32_t x0, std::int32_t y0, std::int32_t x1,
                                         std::int32_t y1) {
  std::vector<LinePoint> points = {{x0, y0}};
  if (x0 == x1 && y0 == y1) return points;
  const std::int32_t dx = std::abs(x1 - x0);
  const std::int32_t dy = std::abs(y1 - y0);
  const std::int32_t sx = x1 > x0 ? 1 : -1;
  const std::int32_t sy = y1 > y0 ? 1 : -1;
  std::int32_t err = (dx > dy ? dx : -dy) / 2;
  std::int32_t x = x0;
  std::int32_t y = y0;
  while (x != x1 || y != y1) {
    const std::int32_t e = err;
    if (e > -dx) {
      x += sx;
      err -= dy;
    }
    if (e < dy) {
      y += sy;
      err += dx;
    }
    points.push_back({x, y});
  }
  return points;
}

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

std::vector<LineTap> DirectionalTaps(float amount, double angleRad, const Maths& maths) {
  const double length = TruncateToInt(amount);
  const double angle = angleRad + kHalfPi;
  const std::int32_t dx = TruncateToInt(length * maths.cos(angle));
  const std::int32_t dy = TruncateToInt(length * maths.sin(angle));
  const double total = LengthOf(dx, dy, maths.sqrt);

  const std::int32_t sx = dx > 0 ? 1 : -1;
  const std::int32_t sy = dy > 0 ? 1 : -1;
  const std::int32_t ax = std::abs(WrapMultiply(2, dx));
  const std::int32_t ay = std::abs(WrapMultiply(2, dy));
  std::int32_t err = (ay < ax ? ax : -ay) >> 1;
  std::int32_t x = -dx;
  std::int32_t y = -dy;
  std::vector<LineTap> taps;
  while (true) {
    taps.push_back({x, y, 1 - LengthOf(x, y, maths.sqrt) / total});
    if (x == dx && y == dy) break;
    const std::int32_t e = err;
    if (e > -ax) {
      err -= ay;
      x += sx;
    }
    if (e < ay) {
      err += ax;
      y += sy;
    }
  }
  return taps;
}

void DirectionalPass(const World& src, World& dst, const Mask& mask,
                     const std::vector<LineTap>& taps) {
  for (std::int32_t y = 0; y < dst.height; ++y) {
    for (std::int32_t x = 0; x < dst.width; ++x) {
      const Pixel& in = src.At(y, x);
      Pixel& out = dst.At(y, x);
      out = in;
      if (!(GetLensMask(mask, x, y, dst) > kMaskThreshold) || taps.empty()) continue;
      float sums[3] = {0, 0, 0};
      double weightSum = 0;
      for (const LineTap& tap : taps) {
        const Pixel* pixel = GetPointerFromDataP(src, y + tap.y, x + tap.x, 1);
        if (pixel->channel[0] == 0) continue;
        for (int i = 0; i < 3; ++i) {
          sums[i] += static_cast<float>(pixel->channel[i + 1] * tap.weight);
        }
        weightSum += tap.weight;
      }
      if (weightSum == 0.0) continue;
      for (int i = 0; i < 3; ++i) {
        out.channel[i + 1] = ChannelFromReal(sums[i] / weightSum, dst.deep);
      }
    }
  }
}

}  // namespace vitrell::literal
