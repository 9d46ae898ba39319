// What renders the frames of a video into pictures: one after the other through one loaded effect.
#ifndef VITRELL_CLI_VIDEO_PICTURES_H_
#define VITRELL_CLI_VIDEO_PICTURES_H_

#include <optional>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/frame_fingerprint.h"
#include "cli/frame_worker.h"
#include "cli/video_frame.h"
#include "cli/video_shot.h"
#include "headless/effect_host.h"
#include "media/video_picture.h"

namespace vitrell::cli {

class VideoPictures {
 public:
  // The arguments are those of a still but for the names, with the threads of this worker.
  // `video` is its hash; nothing for a pipe. The others must outlive it.
  VideoPictures(const RenderArguments& arguments, headless::EffectHost& host, const VideoShot& shot,
                const std::vector<VideoSlot>& slots, const FrameWishes& wishes,
                std::optional<std::string> video);

  // From the slot's decoded frame to the file that the job names. Never throws: what goes wrong is
  // in the answer.
  VideoFrameAnswer Render(const VideoFrameJob& job) noexcept;

 private:
  look::Settings SettingsOf(const VideoFrameJob& job) const;
  media::Picture Read(const VideoFrameJob& job);

  const RenderArguments arguments_;
  const VideoShot& shot_;
  const std::vector<VideoSlot>& slots_;
  std::string effect_;
  std::optional<std::string> video_;
  FrameWorker frames_;
  media::FramePictures pictures_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_PICTURES_H_
