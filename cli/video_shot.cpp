// Opening a video, and what its frames are rendered with.
#include "cli/video_shot.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

#include "cli/commands.h"
#include "cli/custom_layer.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/preset_width.h"
#include "cli/render_checks.h"
#include "cli/video_keys.h"
#include "cli/video_range.h"
#include "media/pixel_formats.h"
#include "media/standard_streams.h"
#include "media/video_input.h"

extern "C" {
#include <libavutil/mathematics.h>
}

namespace vitrell::cli {
namespace {

media::VideoReader OpenReader(const RenderArguments& arguments) {
  return media::VideoReader(arguments.input,
                            media::VideoReadOptions{arguments.maxPixels, &InterruptFlag()});
}

look::Settings SettingsFor(const media::VideoReader& reader, const look::Panel& panel,
                           EffectArguments& effect) {
  effect.framesPerSecond = av_q2d(reader.FrameRate());
  return MakeSettings(panel, effect);
}

}  // namespace

VideoShot::VideoShot(RenderArguments& arguments, const media::VideoRange& range, std::int64_t last,
                     const look::Panel& panel, Notes& notes)
    : arguments_(arguments),
      reader_(OpenReader(arguments)),
      frames_(reader_, range),
      settings_(SettingsFor(reader_, panel, arguments.effect)) {
  PrepareLayer(arguments.customLayer, settings_, notes);
  layers_ = LayerFiles(LayerPath(settings_));
  CheckNames(arguments, LayerPath(settings_));
  CheckFit(arguments, settings_);
  // A pipe cannot be gone through twice.
  if (settings_.CountsFromEnd() && !media::IsStandardStream(arguments.input)) {
    const std::int64_t end = std::min(last, media::CountVideoFrames(arguments.input) - 1) + 1;
    // A range behind the end is told when its first frame is read.
    arguments.effect.length = static_cast<double>(std::max<std::int64_t>(end - range.first, 1));
  }
  timeBase_ = TimeBaseOf(settings_, arguments.effect);
}

void VideoShot::ReadFirst(Notes& notes) {
  if (!frames_.Next(*first_)) ThrowNoFrame();
  deep_ = arguments_.depth == "auto" ? media::IsDeep(static_cast<AVPixelFormat>(first_->format))
                                     : arguments_.depth == "16";
  FitPresets(arguments_.fit, Width(), settings_, notes);
  const std::string advice = layers_.AdviceFor(LastExpected() + 1);
  if (!advice.empty()) notes.Advise(advice);
}

void VideoShot::ThrowNoFrame() const {
  const std::int64_t count = frames_.Number() + 1;
  std::string message = reader_.Name().string() + ": has ";
  message += count == 0 ? "no frames" : "only " + std::to_string(count) + " frames";
  if (!reader_.Damage().empty()) message += "; it " + reader_.Damage();
  throw Failure(kFailed, message + (count == 0 ? ". Check the file." : ". Give other --frames."));
}

std::int64_t VideoShot::LastExpected() const {
  const std::int64_t last = frames_.Range().last;
  return last == media::VideoRange::kEnd ? reader_.ExpectedFrames() - 1 : last;
}

std::int64_t VideoShot::ExpectedFrames() const {
  const media::VideoRange& range = frames_.Range();
  const std::int64_t all = reader_.ExpectedFrames();
  if (range.last != media::VideoRange::kEnd) return range.last - range.first + 1;
  return std::max<std::int64_t>(all - range.first, 0);
}

std::optional<media::CarriedSpan> VideoShot::Span() const {
  const media::VideoRange& range = frames_.Range();
  if (range.IsWhole()) return std::nullopt;
  const AVRational rate = reader_.FrameRate();
  const std::int64_t frames =
      range.last == media::VideoRange::kEnd ? kMostVideoFrames : range.last - range.first + 1;
  const std::int64_t length =
      av_rescale_q(frames, {rate.den, rate.num}, reader_.Stream().time_base);
  return media::CarriedSpan{range.first, frames_.Begin(), frames_.Begin() + length};
}

bool VideoShot::Next(VideoSourceFrame& frame) {
  const bool isFirst = !std::exchange(begun_, true);
  if (!isFirst && !frames_.Next(*next_)) return false;
  frame.decoded = isFirst ? first_.get() : next_.get();
  frame.job.number = frames_.Number();
  frame.job.seconds = static_cast<double>(frame.decoded->pts - frames_.Begin()) *
                      av_q2d(reader_.Stream().time_base);
  frame.job.still.layer = LayerOf(frame.job.number);
  frame.marks = media::MakeFrame();
  if (av_frame_copy_props(frame.marks.get(), frame.decoded) < 0) throw std::bad_alloc();
  frame.packets = frames_.TakePackets();
  return true;
}

double VideoShot::SecondsOf(std::int64_t number) const {
  return static_cast<double>(number - frames_.Range().first) / timeBase_.framesPerSecond;
}

look::Settings VideoShot::SettingsAt(std::int64_t number, double seconds) const {
  const std::int64_t index = number - frames_.Range().first;
  return SettingsOfFrame(settings_, timeBase_, static_cast<double>(index), seconds);
}

}  // namespace vitrell::cli
