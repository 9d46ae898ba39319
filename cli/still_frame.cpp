// Rendering pictures into slots.
#include "cli/still_frame.h"

#include <exception>
#include <new>
#include <nlohmann/json.hpp>

#include "cli/custom_layer.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/progress_bar.h"
#include "cli/report.h"
#include "cli/still_render.h"
#include "cli/worker_pool.h"
#include "media/still_exchange.h"

namespace vitrell::cli {
namespace {

using Json = nlohmann::json;

std::string SizeText(int width, int height) {
  return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

RenderArguments ArgumentsFor(RenderArguments arguments, const FrameJob& job) {
  arguments.input = job.input;
  arguments.effect.at = static_cast<double>(job.frame);
  return arguments;
}

// Without the effect, which has not to do with the shape.
Json Look(const RenderArguments& sequence, headless::EffectHost& host,
          const look::Settings& settings, const FrameJob& job) {
  RenderArguments arguments = ArgumentsFor(sequence, job);
  arguments.dryRun = true;
  look::Settings own = settings;
  SetLayerPath(own, job.layer);
  ProgressBar noBar(false);
  Notes notes(true, false, noBar);
  Report report;
  Json shape;
  const auto take = [&](const media::Picture& picture, const media::Given& given,
                        const headless::WorldBuffer&) {
    shape = {{"width", given.world.Width()},
             {"height", given.world.Height()},
             {"deep", given.world.Deep()},
             {"alpha", picture.layout.HasAlpha()},
             {"format", std::string(picture.format->name)}};
  };
  try {
    StillRender(arguments, host, own, noBar, notes, report, {job.black, {}, take}).Run(job.input);
    return shape;
  } catch (const Failure& failure) {
    return {{"kind", static_cast<int>(failure.Kind())}, {"error", failure.what()}};
  } catch (const std::exception& error) {
    return {{"kind", static_cast<int>(kFailed)}, {"error", job.input + ": " + error.what()}};
  }
}

}  // namespace

StillShape LookAtStill(const RenderArguments& arguments, headless::EffectHost& host,
                       const look::Settings& settings, const FrameJob& job) {
  WorkerPool pool([&](int) -> WorkerPool::Work {
    return [&](const std::string&) { return Look(arguments, host, settings, job).dump(); };
  });
  pool.SetSize(1);
  pool.Give(0, "");
  std::vector<WorkerPool::Result> results;
  while (results.empty()) {
    results = pool.Wait(-1);
    if (results.empty()) ThrowIfInterrupted();
  }
  if (!results.front().answer) {
    throw Failure(kFailed, job.input + ": the process that read it ended early. Check the file.");
  }
  const Json shape = Json::parse(*results.front().answer);
  if (shape.contains("error")) {
    throw Failure(static_cast<media::FailureKind>(shape["kind"].get<int>()),
                  shape["error"].get<std::string>());
  }
  return {{shape["width"], shape["height"], shape["deep"]}, shape["alpha"], shape["format"]};
}

StillFrames::StillFrames(RenderArguments arguments, headless::EffectHost& host,
                         const look::Settings& settings, std::int64_t firstFrame,
                         const VideoSize& size, const std::vector<VideoSlot>& slots)
    : arguments_(std::move(arguments)),
      host_(host),
      settings_(settings),
      size_(size),
      followsFirst_(arguments_.depth == "auto"),
      slots_(slots),
      firstFrame_(firstFrame),
      layers_(arguments_) {
  arguments_.depth = size.deep ? "16" : "8";
}

std::string StillFrames::Shown(std::string text, const FrameJob& job) const {
  const std::size_t at = text.find(job.input);
  if (at != std::string::npos) text.replace(at, job.input.size(), arguments_.input);
  return text;
}

void StillFrames::CheckShape(const media::Picture& picture, const headless::WorldBuffer& result,
                             std::int64_t frame) const {
  const std::string has = arguments_.input + ": frame " + std::to_string(frame) + " has ";
  if (result.Width() != size_.width || result.Height() != size_.height) {
    throw Failure(kFailed, has + SizeText(result.Width(), result.Height()) +
                               ", those before have " + SizeText(size_.width, size_.height) +
                               "; a video has one size. Make them equal, or render a sequence.");
  }
  if (followsFirst_ && picture.IsDeep() != size_.deep) {
    const std::string more = "more than 8";
    throw Failure(kFailed, has + (size_.deep ? "8" : more) +
                               " bits in a channel, those before have " +
                               (size_.deep ? more : "8") +
                               "; a video has one depth. Choose it with --depth 8 or 16.");
  }
}

void StillFrames::Take(const media::Picture& picture, const media::Given& given,
                       const headless::WorldBuffer& result, const VideoFrameJob& job,
                       VideoFrameAnswer& answer) const {
  CheckShape(picture, result, job.still.frame);
  const VideoSlot& slot = slots_.at(static_cast<std::size_t>(job.slot));
  const media::FrameHandle rendered = slot.rendered.As(media::RgbForm(size_.deep));
  answer.transparent = media::TakeStill(picture, given.world, result, job.overBlack, *rendered);
}

// The notes decide over --strict only when all frames before are written.
void StillFrames::RenderOrThrow(const VideoFrameJob& job, Notes& notes, VideoFrameAnswer& answer) {
  ThrowIfInterrupted();
  const RenderArguments arguments = ArgumentsFor(arguments_, job.still);
  look::Settings settings = settings_;
  SetLayerPath(settings, job.still.layer);
  ProgressBar noBar(false);
  Report report;
  const auto take = [&](const media::Picture& picture, const media::Given& given,
                        const headless::WorldBuffer& result) {
    if (given.clippedPixels > 0) {
      notes.Tell(job.still.input + ": pixels had values outside black to white and were clipped.");
    }
    Take(picture, given, result, job, answer);
  };
  const auto layer = [&](const std::string& file, Notes& told) {
    return layers_.Read(file, job.still.frame - firstFrame_, told);
  };
  StillRender(arguments, host_, settings, noBar, notes, report,
              {job.still.black, {}, take, {}, layer})
      .Run(job.still.input);
  answer.readSeconds = report.readSeconds;
  answer.effectSeconds = report.effectSeconds;
}

VideoFrameAnswer StillFrames::Render(const VideoFrameJob& job) noexcept {
  const StepClock clock;
  VideoFrameAnswer answer;
  answer.frame.frame = job.number;
  ProgressBar noBar(false);
  Notes notes(true, false, noBar);
  try {
    RenderOrThrow(job, notes, answer);
  } catch (const Failure& failure) {
    Fail(answer.frame, failure.Kind(), failure.what());
  } catch (const std::bad_alloc&) {
    Fail(answer.frame, kTryLater, job.still.input + ": there is not enough memory.");
  } catch (const std::exception& error) {
    Fail(answer.frame, kFailed, job.still.input + ": an unexpected error: " + error.what());
  }
  // A picture that cannot be read is to a sequence what damage is to a video.
  answer.endsVideo = answer.frame.state == FrameState::kFailed;
  answer.frame.notes = notes.All();
  for (Note& note : answer.frame.notes) note.text = Shown(note.text, job.still);
  answer.frame.seconds = clock.Total();
  return answer;
}

}  // namespace vitrell::cli
