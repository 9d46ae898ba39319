// What renders the frames of a video: one after the other through one loaded effect.
#ifndef VITRELL_CLI_VIDEO_WORKER_H_
#define VITRELL_CLI_VIDEO_WORKER_H_

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/arguments.h"
#include "cli/layer_frames.h"
#include "cli/notes.h"
#include "cli/video_frame.h"
#include "cli/video_shot.h"
#include "headless/effect_host.h"
#include "media/exchange.h"
#include "media/video_exchange.h"

namespace vitrell::cli {

class VideoWorker {
 public:
  // The threads of the arguments are those of this worker. All others must outlive it. Takes its
  // memory with the first frame.
  VideoWorker(RenderArguments arguments, headless::EffectHost& host, const VideoShot& shot,
              const std::vector<VideoSlot>& slots)
      : arguments_(std::move(arguments)),
        host_(host),
        shot_(shot),
        slots_(slots),
        layers_(arguments_) {}

  // From the slot's decoded frame to its rendered one. Never throws: what goes wrong is in the
  // answer.
  VideoFrameAnswer Render(const VideoFrameJob& job) noexcept;

 private:
  void Prepare();
  void ReadLayerOf(const VideoFrameJob& job, Notes& notes);
  void RenderOrThrow(const VideoFrameJob& job, Notes& notes, VideoFrameAnswer& answer);

  const RenderArguments arguments_;
  headless::EffectHost& host_;
  const VideoShot& shot_;
  const std::vector<VideoSlot>& slots_;
  std::optional<media::FrameExchange> frames_;
  LayerFrames layers_;
  std::optional<media::Given> layer_;
  std::string layerFile_;  // of layer_
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_WORKER_H_
