// Which frames of a video become pictures, and under which names.
#ifndef VITRELL_CLI_VIDEO_FRAME_PLAN_H_
#define VITRELL_CLI_VIDEO_FRAME_PLAN_H_

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "cli/arguments.h"
#include "cli/frame_job.h"
#include "media/frame_set.h"
#include "media/sequence.h"

namespace vitrell::cli {

class VideoFramePlan {
 public:
  // Frames of --frames, or all, under the numbers of --frames-out, or their own; of --part only its
  // share. Throws Failure over numbers that do not fit together, and what counting the frames of a
  // damaged file throws.
  explicit VideoFramePlan(const RenderArguments& arguments);

  // The next frame that is wanted, without a layer; nothing after the last one. They ascend.
  std::optional<FrameJob> Next();
  // From the first one again.
  void Rewind();
  // The first frame and the last one of all parts; the last one of a set that goes to the video's
  // end is beyond all frames.
  std::int64_t FirstFrame() const { return frames_.Smallest(); }
  std::int64_t LastFrame() const { return openFrames_ ? kOpen : frames_.Largest(); }
  // Whether the last one is the last of the video.
  bool IsOpen() const { return end_ == kOpen; }
  // How many there are of a video with so many frames; 0: nobody knows.
  std::int64_t Size(std::int64_t framesOfVideo) const;
  // Those that Next has not given yet; only if the plan is not open.
  media::FrameSet Rest();

  const media::Sequence& Output() const { return output_; }
  // The frames that exist of the output. Leaves the plan at its first frame.
  media::FrameSet FindExisting();

 private:
  static constexpr std::int64_t kOpen = std::numeric_limits<std::int64_t>::max();

  void ChoosePart(const RenderArguments& arguments);

  std::string video_;
  media::Sequence output_;
  media::FrameSet frames_;
  media::FrameSet outputFrames_;
  bool openFrames_ = false;
  std::int64_t begin_ = 0;  // of the part, among the frames
  std::int64_t end_ = kOpen;
  std::int64_t at_ = 0;
  std::optional<media::FrameCursor> cursor_;
  std::optional<media::FrameCursor> outputCursor_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_FRAME_PLAN_H_
