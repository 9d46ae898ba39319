// The image that the trail's rays paint. The result is the same in whatever order and on however
// many threads the rays are cast.
#include "blur/trail/trail_canvas.h"

#include <algorithm>

namespace vitrell {

bool TrailCanvas::Prepare(PF_LayerDef* world) {
  world_ = world;
  if (world->data == nullptr || world->width <= 0 || world->height <= 0) {
    return true;
  }
  const std::int64_t pixels = std::int64_t{world->width} * world->height;
  if (pixels >= std::int64_t{kFilledBefore}) {
    return false;
  }
  const auto tiles = [](std::int64_t size) { return ((size - 1) >> kTileShift) + 1; };
  tilesAcross_ = tiles(world->width);
  const std::int64_t lockBytes = tilesAcross_ * tiles(world->height) * kLockBytes;
  return painters_.AllocateZeroed(static_cast<std::size_t>(pixels)) &&
         locks_.AllocateZeroed(static_cast<std::size_t>(lockBytes));
}

std::uint32_t TrailCanvas::PrecedenceOf(A_long x, A_long y) const {
  // The host visits no pixels outside the world; clamping keeps precedences in range regardless.
  const std::int64_t row = std::clamp(y, 0, world_->height - 1);
  const std::int64_t column = std::clamp(x, 0, world_->width - 1);
  const std::int64_t rank = row * world_->width + column;
  return static_cast<std::uint32_t>(std::int64_t{world_->width} * world_->height - rank);
}

}  // namespace vitrell
