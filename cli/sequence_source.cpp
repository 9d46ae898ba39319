// One frame after the other.
#include "cli/sequence_source.h"

#include <optional>

#include "media/blank_video.h"

namespace vitrell::cli {

bool SequenceSource::Next(VideoSourceFrame& frame) {
  const std::optional<FrameJob> job = plan_.Next();
  if (!job) return false;
  frame.job.number = job->frame;
  frame.job.still = *job;
  frame.marks = media::BlankVideo::Marks(place_++);
  return true;
}

}  // namespace vitrell::cli
