// Hands the frames of a video to workers that make pictures of them, and collects what they say.
#ifndef VITRELL_CLI_VIDEO_FRAMES_RUN_H_
#define VITRELL_CLI_VIDEO_FRAMES_RUN_H_

#include <cstdint>
#include <optional>
#include <string>

#include "cli/arguments.h"
#include "cli/frame_job.h"
#include "cli/sequence_progress.h"
#include "cli/sequence_tally.h"
#include "cli/video_crew.h"
#include "cli/video_frame_plan.h"
#include "cli/video_shot.h"
#include "media/video_handles.h"

namespace vitrell::cli {

class VideoFramesRun {
 public:
  // All of these must outlive it.
  VideoFramesRun(const RenderArguments& arguments, VideoShot& shot, VideoFramePlan& plan,
                 VideoCrew& crew, SequenceProgress& progress, SequenceTally& tally);

  // Until all frames are done, or one failed and nobody wants to keep going, or a signal came; then
  // waits for those that are being rendered. Throws Failure.
  void Run();

  // That there were to render, as far as the video went.
  std::int64_t Frames() const { return frames_; }
  // Why there are not all, in a sentence; empty if there are.
  const std::string& Shortage() const { return shortage_; }

 private:
  // One step of the work; false when there is nothing left to do.
  bool Step();
  void LookForSignals();
  // Decodes up to the next frame that is wanted.
  void ReadFrame();
  bool DecodeNext();
  void FillMissing();
  void EndReading();
  void PutIn(const FrameJob& wanted, const AVFrame* decoded);
  void TakeAnswer();
  void Tell(const FrameJob& job, const FrameAnswer& answer);

  const RenderArguments& arguments_;
  VideoShot& shot_;
  VideoFramePlan& plan_;
  VideoCrew& crew_;
  SequenceProgress& progress_;
  SequenceTally& tally_;
  std::string layer_;
  std::optional<FrameJob> wanted_;
  VideoSourceFrame frame_;
  media::FrameHandle last_;  // of the video, where the frames behind it are to be held or black
  std::int64_t frames_ = 0;
  int signals_ = 0;
  bool ended_ = false;     // the video
  bool stopping_ = false;  // no more frames are wanted
  std::string shortage_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_FRAMES_RUN_H_
