// `vitrell render` over the frames of a sequence.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/custom_layer.h"
#include "cli/effect_finder.h"
#include "cli/failure.h"
#include "cli/frame_fingerprint.h"
#include "cli/frame_worker.h"
#include "cli/gathered_frames.h"
#include "cli/interrupt.h"
#include "cli/job_count.h"
#include "cli/preset_width.h"
#include "cli/printable.h"
#include "cli/render_checks.h"
#include "cli/sequence_ending.h"
#include "cli/sequence_files.h"
#include "cli/sequence_plan.h"
#include "cli/sequence_progress.h"
#include "cli/sequence_run.h"
#include "cli/sequence_tally.h"
#include "cli/worker_pool.h"
#include "look/preset.h"
#include "media/fingerprint.h"
#include "media/output_file.h"
#include "media/picture_writer.h"
#include "media/quiet_libraries.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

namespace fs = std::filesystem;

class SequenceJob {
 public:
  explicit SequenceJob(RenderArguments arguments)
      : arguments_(std::move(arguments)),
        host_(OpenEffect(arguments_.effect.effect)),
        panel_(look::MakePanel(host_->Parameters())),
        settings_(MakeSettings(panel_, arguments_.effect)) {}

  void Run() {
    // Notes about the layer come before errors in file names.
    ProgressBar noBar(false);
    Notes notes(arguments_.quiet, arguments_.strict, noBar);
    PrepareLayer(arguments_.customLayer, settings_, notes);
    CheckFit(arguments_, settings_);
    layer_ = LayerPath(settings_);
    SequencePlan plan(arguments_, layer_);
    if (arguments_.effect.length <= 0) {
      arguments_.effect.length =
          static_cast<double>(std::max<std::int64_t>(plan.LastFrame() + 1, 1));
    }
    firstFrame_ = plan.FirstFrame();
    CheckTargets(plan);
    RefuseMissing(plan);
    for (const std::string& advice : plan.Advice()) notes.Advise(advice);
    for (const Note& note : notes.All()) tally_.AddNote(note);
    ChooseJobs(plan);
    RunFrames(plan);
  }

 private:
  void CheckTargets(SequencePlan& plan) const {
    const std::string first = plan.Output().FileOf(0).string();
    media::CheckTarget(first, true);
    media::CheckEncodingFor(first, arguments_.encoding);
    CheckSequenceFiles(arguments_, StatusFileOf(arguments_.frames), plan);
    CheckPresetTarget(arguments_.savePreset, arguments_.force);
    if (!arguments_.report.empty() && !media::IsStandardStream(arguments_.report)) {
      media::CheckTarget(arguments_.report, arguments_.force);
    }
    if (MayReplaceFrames(arguments_)) return;
    GatheredFrames existing;
    while (const std::optional<FrameJob> job = plan.Next()) {
      std::error_code ignored;
      if (fs::exists(job->output, ignored)) existing.Add(job->frame);
    }
    plan.Rewind();
    RefuseExisting(arguments_, existing.Text());
  }

  void RefuseMissing(const SequencePlan& plan) {
    try {
      plan.RefuseMissing(arguments_);
    } catch (const Failure& failure) {
      if (!arguments_.frames.keepGoing) throw;
      std::fprintf(stderr, "vitrell: %s\n", Printable(failure.what()).c_str());
      media::FrameCursor cursor(plan.Missing());
      while (const std::optional<std::int64_t> frame = cursor.Next()) tally_.AddMissing(*frame);
    }
  }

  void ChooseJobs(SequencePlan& plan) {
    const std::optional<FrameJob> first = plan.Next();
    plan.Rewind();
    jobs_ = first ? CountJobs(arguments_, first->input, plan.Size()) : 1;
  }

  // In the worker's process, whose picture library starts its threads there.
  WorkerPool::Work MakeWork(int worker) {
    RenderArguments arguments = arguments_;
    arguments.threads = ThreadsOf(worker, jobs_, arguments_.threads);
    arguments.force = MayReplaceFrames(arguments_);
    arguments.report.clear();
    arguments.savePreset.clear();
    media::SetLibraryThreads(arguments.threads);
    const FrameWishes wishes{!arguments_.report.empty(), arguments_.frames.existing == "skip",
                             effectVersion_, &*sidecar_, firstFrame_};
    const auto frames = std::make_shared<FrameWorker>(arguments, *host_, settings_, wishes);
    return [frames](const std::string& job) { return Pack(frames->Render(UnpackJob(job))); };
  }

  void RunFrames(SequencePlan& plan) {
    effectVersion_ = EffectVersion(*host_);
    sidecar_.emplace(plan.Output());
    WatchSignalsForWorkers();
    SequenceProgress progress(ProgressKindOf(arguments_), plan.Size(),
                              StatusFileOf(arguments_.frames));
    WorkerPool pool([this](int worker) { return MakeWork(worker); });
    pool.SetSize(jobs_);
    SequenceRun run(arguments_, layer_, plan, pool, progress, tally_);
    run.Run();
    progress.Wipe();
    EndSequence({arguments_, tally_, plan.Size(), jobs_, progress.Seconds(), {}, [&] {
                   SavePreset(run.Width());
                 }});
  }

  void SavePreset(int width) {
    if (arguments_.fit) settings_.FitTo(width);
    look::SavePreset(arguments_.savePreset, settings_, width);
  }

  RenderArguments arguments_;
  std::unique_ptr<headless::EffectHost> host_;
  look::Panel panel_;
  look::Settings settings_;
  std::string layer_;
  std::string effectVersion_;
  std::optional<media::Sidecar> sidecar_;
  std::int64_t firstFrame_ = 0;
  int jobs_ = 1;
  SequenceTally tally_{!arguments_.report.empty()};
};

}  // namespace

void RunSequence(const RenderArguments& arguments) { SequenceJob(arguments).Run(); }

}  // namespace vitrell::cli
