// Making and keeping copies.
#include "panel/model/smaller_frames.h"

#include <algorithm>

#include "panel/model/world_image.h"

namespace vitrell::panel {

QSize DividedSize(int width, int height, int divisor) {
  return {std::max(1, width / divisor), std::max(1, height / divisor)};
}

std::shared_ptr<const headless::WorldBuffer> SmallerFrames::Of(
    const std::shared_ptr<const SourceFrame>& frame, int divisor) {
  {
    const std::lock_guard lock(mutex_);
    if (frame_ != frame) copies_.clear();
    frame_ = frame;
    const auto found = copies_.find(divisor);
    if (found != copies_.end()) return found->second;
  }
  const QSize size = DividedSize(frame->Width(), frame->Height(), divisor);
  auto copy = std::make_shared<const headless::WorldBuffer>(ScaledWorld(frame->world, size));
  const std::lock_guard lock(mutex_);
  if (frame_ == frame) copies_.emplace(divisor, copy);
  return copy;
}

}  // namespace vitrell::panel
