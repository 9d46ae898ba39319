// Trail: smears the picture outward from a centre along rays from the picture's border.
#include "blur/trail.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "blur/shared_pixel.h"
#include "host/buffer.h"
#include "host/pixel_pass.h"
#include "host/result.h"
#include "host/world.h"
#include "render/depth_traits.h"
#include "render/numeric.h"
#include "render/pixel_access.h"

namespace vitrell {
namespace {

// Longest ray that is cast; far beyond any picture's side.
constexpr std::int64_t kMaxRayPoints = std::int64_t{1} << 24;

struct TrailCenter {
  std::int32_t x;
  std::int32_t y;
};

// Points of the ray from (x, y) to the centre.
std::int64_t CountRayPoints(std::int64_t x, std::int64_t y, TrailCenter center) {
  return std::max(std::abs(center.x - x), std::abs(center.y - y)) + 1;
}

struct TrailRefcon {
  TrailCenter center;
  const IO_Params* io;
  std::int32_t tapCount;  // Negative: no taps at all; 0: the rays copy the source.
  const double* weights;  // Of the taps 0 to min(tapCount, maxRayPoints) - 1.
  std::int64_t maxRayPoints;
  std::atomic<bool> isOutOfMemory;
};

// A source pixel as the sums take it. Its last component is 1, so that the sum of weights is a
// fourth lane of the sums of colours; a transparent or missing pixel is 0 in all four.
struct RayTap {
  double components[4];  // Red, green, blue, 1.
};

// The points of one ray, from the border to the centre, and the source's pixels under them.
template <typename Pixel>
class Ray {
 public:
  [[nodiscard]] bool Allocate(std::size_t maxPoints) {
    return points_.Allocate(maxPoints) && taps_.Allocate(maxPoints) && alphas_.Allocate(maxPoints);
  }

  void Cast(const PF_LayerDef* src, A_long x, A_long y, TrailCenter center) {
    count_ = static_cast<std::size_t>(ComputeLinePTs(x, y, center.x, center.y, points_.data()));
    firstOpaque_ = count_;
    opaqueEnd_ = 0;
    for (std::size_t k = 0; k < count_; ++k) {
      const Pixel* const pixel = GetPointerFromDataP<Pixel>(src, points_[k].y, points_[k].x, 0);
      alphas_[k] = pixel != nullptr ? pixel->alpha : ChannelOf<Pixel>{0};
      if (alphas_[k] == 0) {
        taps_[k] = {};
        continue;
      }
      taps_[k] = {{static_cast<double>(pixel->red), static_cast<double>(pixel->green),
                   static_cast<double>(pixel->blue), 1.0}};
      firstOpaque_ = std::min(firstOpaque_, k);
      opaqueEnd_ = k + 1;
    }
  }

  std::size_t Count() const { return count_; }
  const PF_FixedPoint& Point(std::size_t k) const { return points_[k]; }

  // Weighted average of the opaque pixels from point k on toward the centre, under the alpha of
  // point k. Black where there are none. Leading and trailing transparent pixels would only add
  // +0 and are passed over.
  Pixel Average(std::size_t k, const double* weights, std::size_t tapCount) const {
    const std::size_t begin = std::max(k, firstOpaque_);
    const std::size_t end = std::min(k + tapCount, opaqueEnd_);
    double sums[4] = {};
    for (std::size_t i = begin; i < end; ++i) {
      const double weight = weights[i - k];
      for (int c = 0; c < 4; ++c) {
        sums[c] += weight * taps_[i].components[c];
      }
    }
    Pixel average = {alphas_[k], 0, 0, 0};
    if (sums[3] != 0.0) {
      using Channel = ChannelOf<Pixel>;
      average.red = TruncateToChannel<Channel>(sums[0] / sums[3]);
      average.green = TruncateToChannel<Channel>(sums[1] / sums[3]);
      average.blue = TruncateToChannel<Channel>(sums[2] / sums[3]);
    }
    return average;
  }

 private:
  Buffer<PF_FixedPoint> points_;
  Buffer<RayTap> taps_;
  Buffer<ChannelOf<Pixel>> alphas_;
  std::size_t count_ = 0;
  std::size_t firstOpaque_ = 0;
  std::size_t opaqueEnd_ = 0;
};

template <typename Pixel>
bool IsAllZero(const Pixel& pixel) {
  return (pixel.alpha | pixel.red | pixel.green | pixel.blue) == 0;
}

// Gives every pixel under the ray that is still all zero its colour: the first ray to reach a pixel
// sets it.
template <typename Pixel>
void PaintRay(const TrailRefcon& refcon, const Ray<Pixel>& ray) {
  const auto tapCount = static_cast<std::size_t>(std::max(refcon.tapCount, 0));
  for (std::size_t k = 0; k < ray.Count(); ++k) {
    const PF_FixedPoint& point = ray.Point(k);
    auto* const painted = GetPointerFromDataP<Pixel>(refcon.io->dst, point.y, point.x, 1);
    if (painted == nullptr || !IsAllZero(LoadShared(painted))) {
      continue;
    }
    if (refcon.tapCount == 0) {
      const Pixel* const source = GetPointerFromDataP<Pixel>(refcon.io->src, point.y, point.x, 1);
      StoreShared(painted, source != nullptr ? *source : Pixel{});
    } else {
      StoreShared(painted, ray.Average(k, refcon.weights, tapCount));
    }
  }
}

// Works on the destination's border pixels only, and writes along the ray from there to the centre,
// never its own output pixel as such.
template <typename Pixel>
PF_Err Trail(void* refconPtr, A_long x, A_long y, Pixel* /*in*/, Pixel* /*out*/) {
  auto& refcon = *static_cast<TrailRefcon*>(refconPtr);
  const PF_LRect& rect = refcon.io->dst->extent_hint;
  if (x != rect.left && x != WrappingSubtract(rect.right, 1) && y != rect.top &&
      y != WrappingSubtract(rect.bottom, 1)) {
    return PF_Err_NONE;
  }
  const std::int64_t pointCount = CountRayPoints(x, y, refcon.center);
  Ray<Pixel> ray;
  if (pointCount > refcon.maxRayPoints || !ray.Allocate(static_cast<std::size_t>(pointCount))) {
    refcon.isOutOfMemory.store(true, std::memory_order_relaxed);
    return PF_Err_OUT_OF_MEMORY;
  }
  ray.Cast(refcon.io->src, x, y, refcon.center);
  PaintRay(refcon, ray);
  return PF_Err_NONE;
}

// Pulls the centre inside the picture: one pixel from the left and top, two from the other sides.
TrailCenter ClampCenter(TrailCenter center, const PF_LRect& rect) {
  if (center.x <= rect.left) {
    center.x = WrappingAdd(rect.left, 1);
  }
  if (center.y <= rect.top) {
    center.y = WrappingAdd(rect.top, 1);
  }
  if (center.x >= WrappingSubtract(rect.right, 1)) {
    center.x = WrappingSubtract(rect.right, 2);
  }
  if (center.y >= WrappingSubtract(rect.bottom, 1)) {
    center.y = WrappingSubtract(rect.bottom, 2);
  }
  return center;
}

// Whole pixels from the centre to the corner opposite its quadrant. The squares wrap in 32 bits.
std::int32_t FarthestCornerDistance(const PF_ANSICallbacks& maths, TrailCenter center,
                                    const PF_LRect& rect) {
  const auto middle = [](std::int32_t from, std::int32_t to) {
    const std::int32_t half = WrappingAdd(from, to) / 2;
    return TruncateToInt32(half - 0.5);
  };
  const bool isLeft = center.x < middle(rect.left, rect.right);
  const bool isUpper = center.y < middle(rect.top, rect.bottom);
  const std::int32_t dx = WrappingSubtract(isLeft ? rect.right : rect.left, center.x);
  const std::int32_t dy = WrappingSubtract(isUpper ? rect.bottom : rect.top, center.y);
  return TruncateToInt32(
      maths.sqrt(WrappingAdd(WrappingMultiply(dy, dy), WrappingMultiply(dx, dx))));
}

// The weights of the taps toward the centre: 1 for the pixel itself, falling quadratically.
[[nodiscard]] PF_Err FillWeights(std::int32_t tapCount, std::int64_t maxRayPoints,
                                 Buffer<double>* weights) {
  const std::int64_t count = std::clamp<std::int64_t>(tapCount, 0, maxRayPoints);
  if (!weights->Allocate(static_cast<std::size_t>(count))) {
    return PF_Err_OUT_OF_MEMORY;
  }
  for (std::int32_t j = 0; j < count; ++j) {
    const double ratio = static_cast<double>(tapCount - j) / tapCount;
    (*weights)[static_cast<std::size_t>(j)] = ratio * ratio;
  }
  return PF_Err_NONE;
}

}  // namespace

int ComputeLinePTs(int x0, int y0, int x1, int y1, PF_FixedPoint* points) {
  const std::int64_t dx = std::abs(std::int64_t{x1} - x0);
  const std::int64_t dy = std::abs(std::int64_t{y1} - y0);
  const int stepX = x1 > x0 ? 1 : -1;
  const int stepY = y1 > y0 ? 1 : -1;
  std::int64_t error = (dx > dy ? dx : -dy) / 2;
  int count = 0;
  points[count++] = {x0, y0};
  while (x0 != x1 || y0 != y1) {
    const std::int64_t before = error;
    if (before > -dx) {
      x0 += stepX;
      error -= dy;
    }
    if (before < dy) {
      y0 += stepY;
      error += dx;
    }
    points[count++] = {x0, y0};
  }
  return count;
}

PF_Err RunTrail(AEGP_SuiteHandler& suites, IO_Params* io, const LX_Info& info) {
  PF_LayerDef* const dst = io->dst;
  const TrailCenter chosen = info.trailCenterOfLens == 1
                                 ? TrailCenter{info.positionX, info.positionY}
                                 : TrailCenter{info.trailCenterX, info.trailCenterY};
  const TrailCenter center = ClampCenter(chosen, dst->extent_hint);
  const std::int32_t farthestPx =
      FarthestCornerDistance(io->in_data->utils->ansi, center, dst->extent_hint);
  const std::int32_t tapCount =
      TruncateToInt32(static_cast<float>(farthestPx) * info.trailAmount * info.trailAmount);
  const std::int64_t right = std::int64_t{dst->width} - 1;
  const std::int64_t bottom = std::int64_t{dst->height} - 1;
  const std::int64_t maxRayPoints =
      std::max(CountRayPoints(0, 0, center), CountRayPoints(right, bottom, center));
  if (maxRayPoints > kMaxRayPoints) {
    return PF_Err_OUT_OF_MEMORY;
  }
  Buffer<double> weights;
  RETURN_IF_ERROR(FillWeights(tapCount, maxRayPoints, &weights));
  RETURN_IF_ERROR(FillTransparent(io->in_data, dst));
  TrailRefcon refcon = {center, io, tapCount, weights.data(), maxRayPoints, false};
  // Kept: the result of the pass is ignored, so that a cancelled one leaves the rays cast so far.
  static_cast<void>(RunPixelPass(suites, io->in_data, io->src, dst, ExtentLines(*dst),
                                 {Trail<PF_Pixel>, Trail<PF_Pixel16>}, &refcon));
  return refcon.isOutOfMemory ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
}

}  // namespace vitrell
