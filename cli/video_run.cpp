// The loop over frames.
#include "cli/video_run.h"

#include "cli/failure.h"
#include "cli/interrupt.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

// Encoders hand over what they hold back before a file can end.
constexpr unsigned kSecondsToStop = 20;

}  // namespace

VideoRun::VideoRun(const RenderArguments& arguments, headless::EffectHost& host, VideoShot& shot,
                   const headless::WorldBuffer* layer, media::VideoWriter& writer,
                   VideoTelling& telling)
    : arguments_(arguments),
      shot_(shot),
      layer_(layer),
      writer_(writer),
      telling_(telling),
      effect_(host, arguments, noBar_, telling.GetNotes()),
      frames_(shot.Width(), shot.Height(), shot.IsDeep(), arguments.threads) {}

void VideoRun::Run() {
  GrantSecondsToStop(kSecondsToStop);
  media::VideoReader& reader = shot_.Reader();
  try {
    RenderFrame(shot_.First());
    const media::FrameHandle decoded = media::MakeFrame();
    while (reader.Next(*decoded)) RenderFrame(*decoded);
  } catch (const Failure& failure) {
    if (failure.Kind() != kCancelled || telling_.GetReport().frames == 0) throw;
    FailUnfinished(kCancelled, "cancelled");
  }
  if (!reader.Damage().empty()) {
    FailUnfinished(kFailed, reader.Name().string() + ": " + reader.Damage());
  }
}

void VideoRun::RenderFrame(const AVFrame& decoded) {
  ThrowIfInterrupted();
  Report& report = telling_.GetReport();
  StepClock& clock = telling_.Clock();
  clock.Lap();
  frames_.Give(decoded, shot_.Reader().Name());
  report.readSeconds += clock.Lap();
  const look::Settings settings = shot_.SettingsAt(report.frames, shot_.SecondsTo(decoded));
  report.effectSeconds += effect_.Render(settings, frames_.Given(), layer_, frames_.Result());
  telling_.GetNotes().FailIfStrict();
  clock.Lap();
  if (frames_.Take({.overBlack = !writer_.KeepsAlpha()}) && !writer_.KeepsAlpha()) TellAlpha();
  writer_.Write(frames_.Taken(), decoded);
  report.writeSeconds += clock.Lap();
  telling_.TellFrame(shot_.Reader().ExpectedFrames());
}

void VideoRun::TellAlpha() {
  if (toldAlpha_) return;
  toldAlpha_ = true;
  telling_.GetNotes().Tell(media::ShownTarget(arguments_.output) + ": " +
                           writer_.Form().codec->name +
                           " stores no transparency; the video is laid over black.");
  telling_.GetNotes().FailIfStrict();
}

void VideoRun::FailUnfinished(media::FailureKind kind, const std::string& cause) {
  const std::string kept = writer_.KeepUnfinished().string();
  const std::int64_t count = telling_.GetReport().frames;
  const std::string frames = count == 1 ? "frame is" : std::to_string(count) + " frames are";
  throw Failure(kind, cause + "; the first " + frames +
                          (kept.empty() ? " written." : " kept as " + kept + "."));
}

}  // namespace vitrell::cli
