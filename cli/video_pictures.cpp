// A slot as the source of a picture.
#include "cli/video_pictures.h"

#include <utility>

#include "cli/custom_layer.h"
#include "cli/still_render.h"

namespace vitrell::cli {

VideoPictures::VideoPictures(const RenderArguments& arguments, headless::EffectHost& host,
                             const VideoShot& shot, const std::vector<VideoSlot>& slots,
                             const FrameWishes& wishes, std::optional<std::string> video)
    : arguments_(arguments),
      shot_(shot),
      slots_(slots),
      effect_(wishes.effect),
      video_(std::move(video)),
      frames_(arguments, host, shot.Settings(), wishes),
      pictures_(arguments.input, arguments.threads) {}

look::Settings VideoPictures::SettingsOf(const VideoFrameJob& job) const {
  look::Settings settings = shot_.SettingsAt(job.number, job.seconds);
  SetLayerPath(settings, job.still.layer);
  return settings;
}

media::Picture VideoPictures::Read(const VideoFrameJob& job) {
  const VideoSlot& slot = slots_.at(static_cast<std::size_t>(job.slot));
  return pictures_.Make(*slot.decoded.As(job.form), shot_.IsDeep(), AlphaOf(arguments_.alpha));
}

VideoFrameAnswer VideoPictures::Render(const VideoFrameJob& job) noexcept {
  FrameSource source;
  source.read = [&] { return Read(job); };
  source.settings = [&] { return SettingsOf(job); };
  source.fingerprint = [&](const look::Settings& settings) -> std::optional<media::Fingerprint> {
    if (!video_) return std::nullopt;
    return VideoFrameFingerprintOf(arguments_, job.still, settings, *video_, effect_);
  };
  VideoFrameAnswer answer;
  answer.frame = frames_.Render(job.still, source);
  return answer;
}

}  // namespace vitrell::cli
