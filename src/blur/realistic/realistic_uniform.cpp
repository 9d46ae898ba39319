// The realistic blur with one kernel for all pixels: a window that slides along each row.
#include "blur/realistic/realistic_uniform.h"

#include <algorithm>
#include <cmath>

#include "base/pixel_access.h"
#include "blur/realistic/highlight_map.h"
#include "blur/realistic/tap_sums.h"
#include "blur/realistic/uniform_strips.h"
#include "host/result.h"
#include "host/world.h"

namespace vitrell {
namespace {

// Turns the window sums of the pixel before into those of the pixel at (row, column) of the map.
void Slide(const UniformTables& pass, std::int64_t row, std::int64_t column, TapSums* sums) {
  const HighlightMap& map = pass.map;
  for (const Weight_Pt& point : pass.points) {
    const std::int64_t tapRow = row + point.y;
    const std::int64_t tapColumn = column + point.x;
    if (tapRow < 0 || tapRow >= map.height() || tapColumn < 0 || tapColumn >= map.width()) {
      continue;
    }
    sums->Add(map.origin() + tapRow * map.rowStride() + tapColumn * map.columnStride(),
              map.planeStride(), point.weight);
  }
}

// Kept: the sums are carried from pixel to pixel in single precision and restart only after a pixel
// of zeros. The rounding errors left in them are visible on black beside bright areas.
//
// This is the definition. It also handles kernels with NaN weights, which an extreme squeeze
// produces: in vector lanes such a weight would spoil pixels that have no tap there.
template <typename Pixel>
void BlurRow(const UniformTables& pass, std::int32_t y) {
  const std::int64_t row = std::int64_t{y} - pass.input->extent_hint.top;
  TapSums sums;
  bool startAfresh = true;
  for (std::int32_t x = 0; x < pass.output->width; ++x) {
    const std::int64_t column = std::int64_t{x} - pass.input->extent_hint.left;
    if (startAfresh) {
      sums = SumKernel(pass.map, pass.kernel, row, column);
    } else {
      Slide(pass, row, column, &sums);
    }
    auto* const pixel = StoredPixel<Pixel>(pass.output, y, x);
    pixel->alpha = GetPointerFromData<Pixel>(pass.input, y, x, 0).alpha;
    StoreColors(sums, pixel);
    startAfresh = IsTransparentBlack(*pixel);
  }
}

void BlurRows(const UniformTables& pass) {
  for (std::int32_t y = 0; y < pass.output->height; ++y) {
    if (IsDeep(*pass.output)) {
      BlurRow<PF_Pixel16>(pass, y);
    } else {
      BlurRow<PF_Pixel>(pass, y);
    }
  }
}

bool HasFiniteWeights(const UniformTables& pass) {
  const auto isFinite = [](const auto& tap) { return std::isfinite(tap.weight); };
  return std::all_of(pass.kernel.spans.begin(), pass.kernel.spans.end(), isFinite) &&
         std::all_of(pass.points.begin(), pass.points.end(), isFinite);
}

}  // namespace

PF_Err BlurUniformly(const IO_Params& io, const IrisShape& shape, std::int32_t radius,
                     const IrisEngine& engine) {
  UniformTables pass;
  pass.input = io.src;
  pass.output = io.dst;
  pass.radius = radius;
  IrisKernelBuilder builder(shape, ReachBetween(*io.src, *io.dst));
  if (!builder.Build(radius, TapChoice::kNonZero, &pass.kernel, &pass.points) ||
      !pass.map.Build(io.in_data, *io.src, PlaneOrder::kColumnMajor, MapUse::kUniform)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  RETURN_IF_ERROR(FillTransparent(io.in_data, io.dst));
  if (io.dst->data == nullptr) {
    return PF_Err_NONE;
  }
  if (HasFiniteWeights(pass)) {
    return BlurStrips(pass, engine);
  }
  BlurRows(pass);
  return PF_Err_NONE;
}

}  // namespace vitrell
