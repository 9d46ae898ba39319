// Sorting what came late into the rest.
#include "cli/gathered_frames.h"

#include <algorithm>
#include <optional>

namespace vitrell::cli {

void GatheredFrames::Add(std::int64_t frame) {
  ++size_;
  if (!ascending_.IsEmpty() && frame < last_) {
    late_.push_back(frame);
    return;
  }
  ascending_.Add(frame);
  last_ = frame;
}

void GatheredFrames::AddAll(const GatheredFrames& others) {
  media::FrameCursor cursor(others.ascending_);
  while (const std::optional<std::int64_t> frame = cursor.Next()) Add(*frame);
  for (const std::int64_t frame : others.late_) Add(frame);
}

std::string GatheredFrames::Text() const {
  if (late_.empty()) return ascending_.Text();
  std::vector<std::int64_t> late = late_;
  std::sort(late.begin(), late.end());
  auto next = late.begin();
  media::FrameSet all;
  media::FrameCursor cursor(ascending_);
  while (const std::optional<std::int64_t> frame = cursor.Next()) {
    for (; next != late.end() && *next < *frame; ++next) all.Add(*next);
    all.Add(*frame);
  }
  return all.Text();
}

}  // namespace vitrell::cli
