// Realistic blur: a lens blur with an iris-shaped kernel in which bright pixels weigh more.
#include "blur/realistic/realistic_blur.h"

#include <cstdint>

#include "base/pixel_access.h"
#include "blur/realistic/iris_kernel.h"
#include "blur/realistic/lane_sums.h"
#include "blur/realistic/realistic_mapped.h"
#include "blur/realistic/realistic_uniform.h"
#include "host/world.h"

namespace vitrell {
namespace {

// Kept: the last row and column are overwritten with their neighbours, whatever the blur computed.
// A world with a single row or column has no neighbour in that direction and stays as it is.
template <typename Pixel>
void MendEdges(const PF_LayerDef& world) {
  const std::int64_t lastRow = std::int64_t{world.height} - 1;
  const std::int64_t lastColumn = std::int64_t{world.width} - 1;
  if (world.data == nullptr) {
    return;
  }
  for (std::int64_t column = 0; lastRow >= 1 && column <= lastColumn; ++column) {
    *StoredPixel<Pixel>(&world, lastRow, column) = *StoredPixel<Pixel>(&world, lastRow - 1, column);
  }
  for (std::int64_t row = 0; lastColumn >= 1 && row <= lastRow; ++row) {
    *StoredPixel<Pixel>(&world, row, lastColumn) = *StoredPixel<Pixel>(&world, row, lastColumn - 1);
  }
}

}  // namespace

PF_Err RenderReleasticBlurEffect(const StageCall& call) {
  const RealisticBlurPlan& plan = call.plan.realisticBlur;
  const IO_Params& io = call.io;
  if (plan.isCopy) {
    // Kept: the failure of this copy is ignored.
    static_cast<void>(call.Copy());
    return PF_Err_NONE;
  }
  if (IsDeep(*io.src) != IsDeep(*io.dst)) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  const std::int32_t maxRadius = MaxIrisRadius(call.info);
  if (maxRadius < 0 || maxRadius > kMaxIrisRadius) {
    return PF_Err_OUT_OF_MEMORY;
  }
  const IrisShape shape = MakeIrisShape(call.info, io.in_data->utils->ansi);
  const PF_Err err = plan.isByMask ? BlurByMask(io, shape, maxRadius, BestEngine<IrisEngine>())
                                   : BlurUniformly(io, shape, maxRadius, BestEngine<IrisEngine>());
  // The edges are mended even if the pass failed.
  if (IsDeep(*io.dst)) {
    MendEdges<PF_Pixel16>(*io.dst);
  } else {
    MendEdges<PF_Pixel>(*io.dst);
  }
  return err;
}

}  // namespace vitrell
