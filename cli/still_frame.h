// The frames of a sequence on their way into a video: pictures through one loaded effect.
#ifndef VITRELL_CLI_STILL_FRAME_H_
#define VITRELL_CLI_STILL_FRAME_H_

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "cli/arguments.h"
#include "cli/layer_frames.h"
#include "cli/notes.h"
#include "cli/video_frame.h"
#include "headless/effect_host.h"
#include "look/settings.h"
#include "media/exchange.h"
#include "media/picture.h"

namespace vitrell::cli {

// What the first picture tells of all.
struct StillShape {
  VideoSize size;
  bool alpha = false;
  std::string format;  // "PNG"
};

// Reads the picture of the job in a process of its own, since readers start threads. Throws
// Failure.
StillShape LookAtStill(const RenderArguments& arguments, headless::EffectHost& host,
                       const look::Settings& settings, const FrameJob& job);

class StillFrames {
 public:
  // The arguments' names are those of the sequences. With the first frame goes that of a video as
  // layer. The others must outlive it.
  StillFrames(RenderArguments arguments, headless::EffectHost& host, const look::Settings& settings,
              std::int64_t firstFrame, const VideoSize& size, const std::vector<VideoSlot>& slots);

  // Reads the job's picture and puts what the effect makes of it into the slot. Never throws: what
  // goes wrong is in the answer.
  VideoFrameAnswer Render(const VideoFrameJob& job) noexcept;

 private:
  void RenderOrThrow(const VideoFrameJob& job, Notes& notes, VideoFrameAnswer& answer);
  // Throws Failure over a picture that is not as those before.
  void CheckShape(const media::Picture& picture, const headless::WorldBuffer& result,
                  std::int64_t frame) const;
  void Take(const media::Picture& picture, const media::Given& given,
            const headless::WorldBuffer& result, const VideoFrameJob& job,
            VideoFrameAnswer& answer) const;
  // The text with the sequences' names in place of those of the job's files.
  std::string Shown(std::string text, const FrameJob& job) const;

  RenderArguments arguments_;
  headless::EffectHost& host_;
  const look::Settings& settings_;
  VideoSize size_;
  bool followsFirst_;  // the depth is that of the first picture
  const std::vector<VideoSlot>& slots_;
  std::int64_t firstFrame_;
  LayerFrames layers_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_STILL_FRAME_H_
