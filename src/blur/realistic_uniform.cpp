// The realistic blur with one kernel for all pixels, as a window that slides along each row.
#include "blur/realistic_uniform.h"

#include "blur/highlight_map.h"
#include "blur/tap_sums.h"
#include "host/buffer.h"
#include "host/result.h"
#include "host/world.h"
#include "render/pixel_access.h"

namespace vitrell {
namespace {

struct UniformPass {
  const PF_LayerDef* input;
  const PF_LayerDef* output;
  HighlightMap map;
  IrisKernel kernel;
  Buffer<Weight_Pt> points;
};

// Moves the window of one pixel to the next pixel, at (row, column) of the map.
void Slide(const UniformPass& pass, std::int64_t row, std::int64_t column, TapSums* sums) {
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

template <typename Pixel>
bool IsAllZero(const Pixel& pixel) {
  return (pixel.alpha | pixel.red | pixel.green | pixel.blue) == 0;
}

// Kept: the sums are carried from pixel to pixel in single precision and start afresh only after a
// pixel of zeros. What rounding leaves in them shows on black beside bright areas.
template <typename Pixel>
void BlurRow(const UniformPass& pass, std::int32_t y) {
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
    StoreColours(sums, pixel);
    startAfresh = IsAllZero(*pixel);
  }
}

}  // namespace

PF_Err BlurUniformly(const IO_Params& io, const IrisShape& shape, std::int32_t radius) {
  UniformPass pass;
  pass.input = io.src;
  pass.output = io.dst;
  IrisKernelBuilder builder(shape, ReachBetween(*io.src, *io.dst));
  if (!builder.Build(radius, TapChoice::kNonZero, &pass.kernel, &pass.points) ||
      !pass.map.Build(io.in_data, *io.src, PlaneOrder::kRowsContiguous, false)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  RETURN_IF_ERROR(FillTransparent(io.in_data, io.dst));
  for (std::int32_t y = 0; io.dst->data != nullptr && y < io.dst->height; ++y) {
    if (IsDeep(*io.dst)) {
      BlurRow<PF_Pixel16>(pass, y);
    } else {
      BlurRow<PF_Pixel>(pass, y);
    }
  }
  return PF_Err_NONE;
}

}  // namespace vitrell
