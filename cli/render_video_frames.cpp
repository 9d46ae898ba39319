// A video through the effect into pictures.
#include <csignal>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "cli/custom_layer.h"
#include "cli/effect_finder.h"
#include "cli/failure.h"
#include "cli/frame_fingerprint.h"
#include "cli/interrupt.h"
#include "cli/job_count.h"
#include "cli/notes.h"
#include "cli/progress_bar.h"
#include "cli/render_checks.h"
#include "cli/render_video.h"
#include "cli/sequence_ending.h"
#include "cli/sequence_progress.h"
#include "cli/sequence_tally.h"
#include "cli/video_crew.h"
#include "cli/video_frame_plan.h"
#include "cli/video_frames_run.h"
#include "cli/video_pictures.h"
#include "cli/video_shot.h"
#include "look/preset.h"
#include "media/fingerprint.h"
#include "media/output_file.h"
#include "media/picture_writer.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

// From the first frame of all parts on, with which the keys begin.
media::VideoRange RangeOf(VideoFramePlan& plan) {
  const bool isEmpty = !plan.Next();
  plan.Rewind();
  if (isEmpty) throw Failure(kFailed, "there are no frames in this part.");
  return {plan.FirstFrame(), media::VideoRange::kEnd};
}

class VideoFramesJob {
 public:
  explicit VideoFramesJob(const RenderArguments& arguments)
      : arguments_(arguments), host_(OpenEffect(arguments.effect.effect)), plan_(arguments_) {}

  void Run() {
    CheckTargets();
    shot_.emplace(arguments_, RangeOf(plan_), plan_.LastFrame(), panel_, notes_);
    HashInput();
    effectVersion_ = EffectVersion(*host_);
    sidecar_.emplace(plan_.Output());
    WatchSignalsForWorkers();
    ReadFirst();
    StartCrew();
    RunFrames();
  }

 private:
  bool IsPiped() const { return media::IsStandardStream(arguments_.input); }

  void CheckTargets() {
    CheckVideoInput(arguments_);
    const std::string first = plan_.Output().FileOf(0).string();
    media::CheckTarget(first, true);
    media::CheckEncodingFor(first, arguments_.encoding);
    const std::string status = StatusFileOf(arguments_.frames);
    if (!status.empty() && media::IsSameFile(status, arguments_.input)) {
      throw Failure(kWrongUsage, status +
                                     ": --status is the same file as INPUT, which would be lost. "
                                     "Choose another name.");
    }
    if (!MayReplaceFrames(arguments_)) RefuseExisting(arguments_, plan_.FindExisting().Text());
  }

  // A pipe cannot be gone through twice.
  void HashInput() {
    if (!IsPiped()) hash_ = media::HashOfFile(arguments_.input);
  }

  void ReadFirst() {
    try {
      shot_->ReadFirst(notes_);
    } catch (const Failure& failure) {
      const bool terminated = failure.Kind() == kCancelled && FirstSignal() == SIGTERM;
      throw Failure(terminated ? kTerminated : failure.Kind(), failure.what());
    }
    notes_.FailIfStrict();
    for (const Note& note : notes_.All()) tally_.AddNote(note);
  }

  // After it this process may have threads.
  void StartCrew() {
    const VideoSize size{shot_->Width(), shot_->Height(), shot_->IsDeep()};
    frames_ = plan_.Size(shot_->Reader().ExpectedFrames());
    jobs_ = CountJobs(arguments_, frames_, [&] { return VideoCrew::BytesOfJob(size); });
    crew_.emplace(VideoCrew::Order{shot_->Name(), size, jobs_, arguments_.threads,
                                   arguments_.processors, true},
                  [this](const std::vector<VideoSlot>& slots, int threads) {
                    RenderArguments own = arguments_;
                    own.threads = threads;
                    own.force = MayReplaceFrames(arguments_);
                    own.report.clear();
                    own.savePreset.clear();
                    const FrameWishes wishes{!arguments_.report.empty(),
                                             arguments_.frames.existing == "skip", effectVersion_,
                                             &*sidecar_};
                    const auto pictures =
                        std::make_shared<VideoPictures>(own, *host_, *shot_, slots, wishes, hash_);
                    return [pictures](const VideoFrameJob& job) { return pictures->Render(job); };
                  });
    shot_->Reader().UseThreads(arguments_.threads);
  }

  void RunFrames() {
    SequenceProgress progress(ProgressKindOf(arguments_), frames_, StatusFileOf(arguments_.frames));
    VideoFramesRun run(arguments_, *shot_, plan_, *crew_, progress, tally_);
    run.Run();
    progress.Wipe();
    EndSequence(
        {arguments_, tally_, run.Frames(), jobs_, progress.Seconds(), run.Shortage(),
         [this] { look::SavePreset(arguments_.savePreset, shot_->Settings(), shot_->Width()); }});
  }

  RenderArguments arguments_;
  std::unique_ptr<headless::EffectHost> host_;
  look::Panel panel_ = look::MakePanel(host_->Parameters());
  VideoFramePlan plan_;
  ProgressBar noBar_{false};
  Notes notes_{arguments_.quiet, arguments_.strict, noBar_};
  std::optional<VideoShot> shot_;
  std::optional<std::string> hash_;
  std::string effectVersion_;
  std::optional<media::Sidecar> sidecar_;
  std::int64_t frames_ = 0;
  int jobs_ = 1;
  std::optional<VideoCrew> crew_;
  SequenceTally tally_{!arguments_.report.empty()};
};

}  // namespace

void RenderVideoAsSequence(const RenderArguments& arguments) {
  try {
    VideoFramesJob(arguments).Run();
  } catch (const std::bad_alloc&) {
    throw Failure(kTryLater, media::ShownSource(arguments.input) +
                                 ": there is not enough memory. Use fewer --jobs and --threads.");
  }
}

}  // namespace vitrell::cli
