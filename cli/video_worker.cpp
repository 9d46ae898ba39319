// Rendering the frames of a video.
#include "cli/video_worker.h"

#include <exception>
#include <new>

#include "cli/effect_run.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/progress_bar.h"
#include "cli/report.h"
#include "cli/still_render.h"
#include "headless/host_error.h"

namespace vitrell::cli {

void VideoWorker::Prepare() {
  if (frames_) return;
  try {
    frames_.emplace(shot_.Width(), shot_.Height(), shot_.IsDeep(), arguments_.threads,
                    AlphaOf(arguments_.alpha));
  } catch (const headless::HostError&) {
    // The reader refuses sizes that no world has; what is left is memory.
    throw std::bad_alloc();
  }
}

// What is to be told of a picture was told before the first frame.
void VideoWorker::ReadLayerOf(const VideoFrameJob& job, Notes& notes) {
  const std::string& file = job.still.layer;
  if (file.empty() || (file == layerFile_ && !layers_.IsVideo(file))) return;
  layer_ = media::GiveToEffect(layers_.Read(file, job.number, notes), shot_.IsDeep());
  layerFile_ = file;
}

void VideoWorker::RenderOrThrow(const VideoFrameJob& job, Notes& notes, VideoFrameAnswer& answer) {
  ThrowIfInterrupted();
  Prepare();
  ReadLayerOf(job, notes);
  const VideoSlot& slot = slots_.at(static_cast<std::size_t>(job.slot));
  StepClock clock;
  frames_->Give(*slot.decoded.As(job.form), shot_.Reader().Name());
  answer.readSeconds = clock.Lap();
  // The stages of one frame are too short to be told.
  ProgressBar noBar(false);
  EffectRun effect(host_, arguments_, noBar, notes);
  effect.CheckThoroughly(shot_.IsFirst(job.number));
  answer.effectSeconds = effect.Render(shot_.SettingsAt(job.number, job.seconds), frames_->Given(),
                                       layer_ ? &layer_->world : nullptr, frames_->Result());
  clock.Lap();
  const media::FrameHandle rendered = slot.rendered.As(media::RgbForm(shot_.IsDeep()));
  answer.transparent = frames_->Take({.overBlack = job.overBlack}, *rendered);
  answer.writeSeconds = clock.Lap();
}

VideoFrameAnswer VideoWorker::Render(const VideoFrameJob& job) noexcept {
  const StepClock clock;
  VideoFrameAnswer answer;
  answer.frame.frame = job.number;
  ProgressBar noBar(false);
  Notes notes(true, arguments_.strict, noBar);
  try {
    RenderOrThrow(job, notes, answer);
  } catch (const Failure& failure) {
    Fail(answer.frame, failure.Kind(), failure.what());
  } catch (const std::bad_alloc&) {
    Fail(answer.frame, kTryLater,
         shot_.Reader().Name().string() + ": there is not enough memory. Use fewer --jobs.");
  } catch (const std::exception& error) {
    Fail(answer.frame, kFailed,
         shot_.Reader().Name().string() + ": an unexpected error: " + error.what());
  }
  answer.frame.notes = notes.All();
  answer.frame.seconds = clock.Total();
  return answer;
}

}  // namespace vitrell::cli
