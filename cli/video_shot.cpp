// Opening a video, and what its frames are rendered with.
#include "cli/video_shot.h"

#include <string>

#include "cli/commands.h"
#include "cli/custom_layer.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/preset_width.h"
#include "cli/render_checks.h"
#include "cli/video_checks.h"
#include "cli/video_keys.h"
#include "media/standard_streams.h"
#include "media/video_colours.h"
#include "media/video_input.h"

namespace vitrell::cli {
namespace {

media::VideoReader OpenReader(const RenderArguments& arguments) {
  CheckVideoOptions(arguments);
  return media::VideoReader(arguments.input,
                            media::VideoReadOptions{arguments.maxPixels, &InterruptFlag()});
}

look::Settings SettingsFor(const media::VideoReader& reader, const look::Panel& panel,
                           EffectArguments& effect) {
  effect.framesPerSecond = av_q2d(reader.FrameRate());
  return MakeSettings(panel, effect);
}

}  // namespace

VideoShot::VideoShot(RenderArguments& arguments, const look::Panel& panel, Notes& notes)
    : arguments_(arguments),
      reader_(OpenReader(arguments)),
      settings_(SettingsFor(reader_, panel, arguments.effect)) {
  PrepareLayer(arguments.customLayer, settings_, notes);
  CheckNames(arguments, LayerPath(settings_));
  CheckFit(arguments, settings_);
  // A pipe cannot be gone through twice.
  if (settings_.CountsFromEnd() && !media::IsStandardStream(arguments.input)) {
    arguments.effect.length = static_cast<double>(media::CountVideoFrames(arguments.input));
  }
  timeBase_ = TimeBaseOf(settings_, arguments.effect);
}

void VideoShot::ReadFirst(Notes& notes) {
  if (!reader_.Next(*first_)) {
    throw Failure(kFailed, reader_.Name().string() + ": has no frames" +
                               (reader_.Damage().empty() ? "" : "; it " + reader_.Damage()) +
                               ". Check the file.");
  }
  deep_ = arguments_.depth == "auto" ? media::IsDeep(static_cast<AVPixelFormat>(first_->format))
                                     : arguments_.depth == "16";
  FitPresets(arguments_.fit, Width(), settings_, notes);
}

double VideoShot::SecondsTo(const AVFrame& frame) const {
  return static_cast<double>(frame.pts - first_->pts) * av_q2d(reader_.Stream().time_base);
}

look::Settings VideoShot::SettingsAt(std::int64_t index, double seconds) const {
  return SettingsOfFrame(settings_, timeBase_, static_cast<double>(index), seconds);
}

}  // namespace vitrell::cli
