// The frames of a video, one after the other.
#ifndef VITRELL_CLI_VIDEO_RUN_H_
#define VITRELL_CLI_VIDEO_RUN_H_

#include <string>

#include "cli/arguments.h"
#include "cli/effect_run.h"
#include "cli/progress_bar.h"
#include "cli/video_shot.h"
#include "cli/video_telling.h"
#include "headless/effect_host.h"
#include "headless/world_buffer.h"
#include "media/failure.h"
#include "media/video_exchange.h"
#include "media/video_writer.h"

namespace vitrell::cli {

class VideoRun {
 public:
  // All of these must outlive it; the layer may be null.
  VideoRun(const RenderArguments& arguments, headless::EffectHost& host, VideoShot& shot,
           const headless::WorldBuffer* layer, media::VideoWriter& writer, VideoTelling& telling);

  // Renders all frames and hands them to the writer. What is rendered is kept, under a name that
  // says so, when the rest cannot be read or a signal comes. Throws Failure.
  void Run();

 private:
  void RenderFrame(const AVFrame& decoded);
  void TellAlpha();
  [[noreturn]] void FailUnfinished(media::FailureKind kind, const std::string& cause);

  const RenderArguments& arguments_;
  VideoShot& shot_;
  const headless::WorldBuffer* layer_;
  media::VideoWriter& writer_;
  VideoTelling& telling_;
  // The stages of one frame are too short to be told.
  ProgressBar noBar_{false};
  EffectRun effect_;
  media::FrameExchange frames_;
  bool toldAlpha_ = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_RUN_H_
