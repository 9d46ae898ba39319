// Rendering the frames of a sequence as stills.
#include "cli/frame_worker.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <new>

#include "cli/custom_layer.h"
#include "cli/failure.h"
#include "cli/frame_fingerprint.h"
#include "cli/interrupt.h"
#include "cli/notes.h"
#include "cli/progress_bar.h"
#include "cli/render_checks.h"
#include "cli/report.h"
#include "cli/still_render.h"
#include "media/picture.h"

namespace vitrell::cli {
namespace {

namespace fs = std::filesystem;

// Both existed when the run began, so one that is missing was on a disk or share that went away.
void CheckFolders(const FrameJob& job) {
  for (const std::string& name : {job.input, job.output}) {
    const fs::path folder = fs::path(name).parent_path();
    std::error_code ignored;
    if (folder.empty() || fs::is_directory(folder, ignored)) continue;
    throw Failure(kTryLater, name + ": the folder " + folder.string() + " is gone.");
  }
}

}  // namespace

RenderArguments FrameWorker::ArgumentsFor(const FrameJob& job) const {
  RenderArguments arguments = arguments_;
  arguments.input = job.input;
  arguments.output = job.output;
  arguments.effect.at = static_cast<double>(job.frame);
  return arguments;
}

look::Settings FrameWorker::SettingsFor(const FrameJob& job) const {
  look::Settings settings = settings_;
  SetLayerPath(settings, job.layer);
  return settings;
}

std::string FrameWorker::WhyAgain(const FrameJob& job, const media::Fingerprint& wanted) const {
  try {
    media::ReadPicture(job.output, {}, {.maxPixels = arguments_.maxPixels});
  } catch (const Failure& failure) {
    if (failure.Kind() != kFailed) throw;
    return "torn";
  }
  const auto found = media::FindFingerprint(job.output, *wishes_.sidecar);
  return found && found->IsMadeOfSame(wanted) ? "" : "stale";
}

void FrameWorker::RenderStill(const FrameJob& job, const FrameSource& source,
                              look::Settings& settings,
                              const std::optional<media::Fingerprint>& fingerprint,
                              FrameAnswer& answer) {
  const RenderArguments arguments = ArgumentsFor(job);
  ProgressBar bar(false);
  Notes notes(true, arguments.strict, bar);
  Report report;
  report.dryRun = arguments.dryRun;
  report.threads = arguments.threads;
  const StepClock clock;
  StillRender still(arguments, host_, settings, bar, notes, report,
                    {job.black,
                     fingerprint ? fingerprint->Text() : "",
                     {},
                     source.read,
                     [&](const std::string& file, Notes& told) {
                       return layers_.Read(file, LayerFrameOf(job), told);
                     }});
  try {
    still.Run(job.input);
    if (fingerprint && !arguments.dryRun && !media::HoldsFingerprint(job.output)) {
      wishes_.sidecar->Put(job.output, *fingerprint);
    }
    answer.width = still.Width();
    answer.height = still.Height();
  } catch (const Failure& failure) {
    Fail(answer, failure.Kind(), failure.what());
  }
  answer.notes = notes.All();
  answer.bits = report.effectBits;
  report.exitCode = answer.exitCode;
  report.error = answer.error;
  report.totalSeconds = clock.Total();
  if (wishes_.reports) answer.report = ReportAsJson(report, notes.All());
}

void FrameWorker::AddLayer(const FrameJob& job, media::Fingerprint& fingerprint) {
  fingerprint.layer = layers_.HashOf(job.layer);
  if (!layers_.IsVideo(job.layer)) return;
  fingerprint.settings =
      media::HashOfText(fingerprint.settings + " layer " + std::to_string(LayerFrameOf(job)));
}

void FrameWorker::RenderOrThrow(const FrameJob& job, const FrameSource& source,
                                FrameAnswer& answer) {
  ThrowIfInterrupted();
  CheckFolders(job);
  look::Settings settings = source.settings();
  CheckFiles(ArgumentsFor(job), job.layer);
  std::optional<media::Fingerprint> fingerprint = source.fingerprint(settings);
  if (fingerprint) AddLayer(job, *fingerprint);
  std::error_code ignored;
  if (fingerprint && wishes_.skips && fs::exists(job.output, ignored)) {
    answer.again = WhyAgain(job, *fingerprint);
    if (answer.again.empty()) {
      answer.state = FrameState::kSkipped;
      return;
    }
  }
  RenderStill(job, source, settings, fingerprint, answer);
}

FrameAnswer FrameWorker::Render(const FrameJob& job) noexcept {
  FrameSource source;
  source.settings = [&] { return SettingsFor(job); };
  source.fingerprint = [&](const look::Settings& settings) {
    return FingerprintOf(ArgumentsFor(job), job, settings, wishes_.effect);
  };
  return Render(job, source);
}

FrameAnswer FrameWorker::Render(const FrameJob& job, const FrameSource& source) noexcept {
  const auto start = std::chrono::steady_clock::now();
  FrameAnswer answer;
  answer.frame = job.frame;
  try {
    RenderOrThrow(job, source, answer);
  } catch (const Failure& failure) {
    Fail(answer, failure.Kind(), failure.what());
  } catch (const std::bad_alloc&) {
    Fail(answer, kTryLater, job.input + ": there is not enough memory. Use fewer --jobs.");
  } catch (const std::exception& error) {
    Fail(answer, kFailed, job.input + ": an unexpected error: " + error.what());
  }
  const auto end = std::chrono::steady_clock::now();
  answer.seconds = std::chrono::duration<double>(end - start).count();
  return answer;
}

}  // namespace vitrell::cli
