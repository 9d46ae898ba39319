// One video through the effect.
#include "cli/render_video.h"

#include <csignal>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <system_error>

#include "cli/custom_layer.h"
#include "cli/effect_finder.h"
#include "cli/failure.h"
#include "cli/frame_fingerprint.h"
#include "cli/interrupt.h"
#include "cli/job_count.h"
#include "cli/video_crew.h"
#include "cli/video_facts.h"
#include "cli/video_run.h"
#include "cli/video_shot.h"
#include "cli/video_telling.h"
#include "look/preset.h"
#include "media/fingerprint.h"
#include "media/picture.h"
#include "media/quiet_libraries.h"
#include "media/standard_streams.h"
#include "media/video_writer.h"

namespace vitrell::cli {
namespace {

class VideoJob {
 public:
  explicit VideoJob(const RenderArguments& arguments)
      : arguments_(arguments), host_(OpenEffect(arguments.effect.effect)) {
    const std::string& existing = arguments.frames.existing;
    if (!existing.empty()) arguments_.force = existing != "fail";
  }

  void Run() {
    TellTerminationApart();
    try {
      shot_.emplace(arguments_, panel_, telling_.GetNotes());
      if (IsThereAlready()) {
        telling_.TellSkipped();
        return;
      }
      Open();
      if (!arguments_.dryRun) RenderFrames();
      Finish();
    } catch (const Failure& failure) {
      const bool terminated = failure.Kind() == kCancelled && FirstSignal() == SIGTERM;
      Fail(terminated ? kTerminated : failure.Kind(), failure.what());
    } catch (const std::bad_alloc&) {
      Fail(kTryLater, media::ShownSource(arguments_.input) +
                          ": there is not enough memory. Use fewer --jobs and --threads.");
    }
  }

 private:
  [[noreturn]] void Fail(media::FailureKind kind, const std::string& message) {
    const Failure failure(kind, message);
    writer_.reset();
    telling_.TellFailure(failure);
    throw failure;
  }

  // With --existing what a video is made of is kept beside it, and asked before it is made again.
  bool IsThereAlready() {
    const std::string& existing = arguments_.frames.existing;
    if (existing.empty() || existing == "fail" || arguments_.dryRun) return false;
    madeOf_ = VideoFingerprintOf(arguments_, shot_->Settings(), EffectVersion(*host_));
    std::error_code ignored;
    if (existing != "skip" || !std::filesystem::exists(arguments_.output, ignored)) return false;
    const auto found = media::Sidecar(arguments_.output).Find(arguments_.output);
    if (found && found->IsMadeOfSame(*madeOf_)) return true;
    telling_.GetNotes().Advise(arguments_.output +
                               (found ? ": is made of something else"
                                      : ": is not whole, or nobody knows what "
                                        "it is made of") +
                               "; it is rendered again.");
    return false;
  }

  // The first frame of the input, and the output, whose form depends on it.
  void Open() {
    Notes& notes = telling_.GetNotes();
    Report& report = telling_.GetReport();
    shot_->ReadFirst(notes);
    report.effectBits = shot_->IsDeep() ? 16 : 8;
    report.videoInput = InputFacts(shot_->Reader(), shot_->First());
    StartCrew();
    TellLayer();
    notes.FailIfStrict();
    writer_.emplace(
        shot_->Reader(), shot_->First(), shot_->IsDeep(),
        media::VideoWriteOrder{arguments_.output, arguments_.dryRun, VideoEncodingOf(arguments_),
                               arguments_.threads, shot_->Span()});
    report.videoOutput = OutputFacts(arguments_.output, writer_->Form(), *report.videoInput);
    telling_.TellLosses(*writer_);
    notes.FailIfStrict();
  }

  // After it this process may have threads.
  void StartCrew() {
    if (!arguments_.dryRun) {
      const int jobs = CountJobs(arguments_, shot_->ExpectedFrames(),
                                 [this] { return VideoCrew::BytesOfJob(*shot_); });
      telling_.GetReport().jobs = jobs;
      crew_.emplace(arguments_, *host_, *shot_, jobs);
    }
    shot_->Reader().UseThreads(arguments_.threads);
    media::SetLibraryThreads(arguments_.threads);
  }

  // The workers read it for themselves.
  void TellLayer() {
    const std::string path = LayerPath(shot_->Settings());
    if (path.empty()) return;
    const media::Picture picture = ReadLayer(arguments_, path);
    telling_.GetNotes().TellAll(picture.notices);
    telling_.GetReport().layer = {path, std::string(picture.format->name), picture.spec};
  }

  void RenderFrames() {
    VideoRun(arguments_, *shot_, *crew_, *writer_, telling_).Run();
    writer_->Finish();
    telling_.TellLosses(*writer_);
    telling_.GetNotes().FailIfStrict();
    writer_->Commit(arguments_.force);
    if (madeOf_) media::Sidecar(arguments_.output).Put(arguments_.output, *madeOf_);
    telling_.GetReport().writeSeconds += telling_.Clock().Lap();
  }

  void Finish() {
    writer_.reset();
    if (!arguments_.savePreset.empty() && !arguments_.dryRun) {
      for (const std::string& notice :
           look::SavePreset(arguments_.savePreset, shot_->Settings(), shot_->Width())) {
        telling_.GetNotes().Advise(notice);
      }
    }
    telling_.TellResult(shot_->Width(), shot_->Height());
  }

  RenderArguments arguments_;
  std::unique_ptr<headless::EffectHost> host_;
  look::Panel panel_ = look::MakePanel(host_->Parameters());
  VideoTelling telling_{arguments_};
  std::optional<VideoShot> shot_;
  std::optional<media::Fingerprint> madeOf_;  // to be kept beside the output
  std::optional<VideoCrew> crew_;
  std::optional<media::VideoWriter> writer_;
};

}  // namespace

void RenderVideo(const RenderArguments& arguments) { VideoJob(arguments).Run(); }

}  // namespace vitrell::cli
