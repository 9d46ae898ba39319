// Trail: smears the image outward from a centre along rays from its border.
#include "blur/trail/trail.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "base/pixel_access.h"
#include "blur/trail/trail_canvas.h"
#include "blur/trail/trail_ray.h"
#include "host/result.h"
#include "host/world.h"

namespace vitrell {
namespace {

// The longest ray; far longer than any image's side.
constexpr std::int64_t kMaxRayPoints = std::int64_t{1} << 24;

// The refcon of the callback: the record, and the tables prepared for the pass.
struct TrailPass {
  TrailRefcon record;
  std::int32_t tapCount;  // Negative: no taps; 0: rays copy the source.
  std::int64_t maxRayPoints;
  TrailWeights weights;
  TrailCanvas canvas;
  std::atomic<bool> isOutOfMemory;
};

// Paints the ray that has been cast from the border pixel (x, y). Most rays find all pixels near
// the centre painted, so that nothing needs to be read for these.
template <typename Pixel>
void PaintRay(TrailPass* pass, A_long x, A_long y, Ray<Pixel>* ray) {
  const PF_LayerDef& src = *pass->record.io->src;
  TrailCanvas::Brush<Pixel> brush(&pass->canvas, x, y);
  std::size_t end = ray->Count();
  while (end > 0 && !brush.MayPaint(ray->Point(end - 1))) {
    --end;
  }
  if (pass->tapCount != 0 && end > 0) {
    ray->Read(src, pass->weights, end);
  }
  for (std::size_t k = 0; k < end; ++k) {
    const PF_FixedPoint& point = ray->Point(k);
    brush.Paint(point, [&] {
      if (pass->tapCount != 0) {
        return ray->Average(k, pass->weights);
      }
      const auto* const source = GetPointerFromDataP<Pixel>(&src, point.y, point.x, 1);
      return source != nullptr ? *source : Pixel{};
    });
  }
}

// Does something only for border pixels of the destination: casts the ray from there to the centre
// and paints all pixels along it, rather than only *out.
template <typename Pixel>
PF_Err Trail(void* refcon, A_long x, A_long y, Pixel* /*in*/, Pixel* /*out*/) {
  auto& pass = *static_cast<TrailPass*>(refcon);
  const PF_LRect& rect = pass.record.io->dst->extent_hint;
  if (x != rect.left && x != WrappingSubtract(rect.right, 1) && y != rect.top &&
      y != WrappingSubtract(rect.bottom, 1)) {
    return PF_Err_NONE;
  }
  const TrailCenter center = {pass.record.centerX, pass.record.centerY};
  const std::int64_t pointCount = CountRayPoints(x, y, center);
  Ray<Pixel> ray;
  if (pointCount > pass.maxRayPoints || !ray.Allocate(static_cast<std::size_t>(pointCount))) {
    pass.isOutOfMemory.store(true, std::memory_order_relaxed);
    return PF_Err_OUT_OF_MEMORY;
  }
  if (pass.canvas.HasPixels()) {
    ray.Cast(x, y, center);
    PaintRay(&pass, x, y, &ray);
  }
  return PF_Err_NONE;
}

// Moves the centre inside the image: one pixel from the left and top edge, two from the others.
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

// Distance from the centre to the corner opposite its quadrant, in whole pixels. The squares wrap
// at 32 bits.
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

}  // namespace

PF_Err RunTrail(const StageCall& call) {
  const IO_Params& io = call.io;
  const float amount = call.info.trailAmount;
  PF_LayerDef* const dst = io.dst;
  const PixelPosition chosen = call.plan.trailCenter;
  const TrailCenter center = ClampCenter({chosen.x, chosen.y}, dst->extent_hint);
  const std::int32_t farthestPx =
      FarthestCornerDistance(io.in_data->utils->ansi, center, dst->extent_hint);
  const std::int32_t tapCount = TruncateToInt32(static_cast<float>(farthestPx) * amount * amount);
  const std::int64_t right = std::int64_t{dst->width} - 1;
  const std::int64_t bottom = std::int64_t{dst->height} - 1;
  const std::int64_t maxRayPoints =
      std::max(CountRayPoints(0, 0, center), CountRayPoints(right, bottom, center));
  if (maxRayPoints > kMaxRayPoints) {
    return PF_Err_OUT_OF_MEMORY;
  }
  TrailPass pass = {.record = {center.x, center.y, &io, amount, farthestPx},
                    .tapCount = tapCount,
                    .maxRayPoints = maxRayPoints,
                    .weights = {},
                    .canvas = {},
                    .isOutOfMemory = false};
  if (!pass.weights.Fill(tapCount, maxRayPoints) || !pass.canvas.Prepare(dst)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  RETURN_IF_ERROR(FillTransparent(io.in_data, dst));
  // Kept: the result of the pass is ignored; a cancelled one leaves the rays cast so far.
  static_cast<void>(call.Iterate({Trail<PF_Pixel>, Trail<PF_Pixel16>}, &pass));
  return pass.isOutOfMemory ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
}

}  // namespace vitrell
