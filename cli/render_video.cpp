// One video through the effect.
#include "cli/render_video.h"

#include <memory>
#include <optional>
#include <string>

#include "cli/effect_finder.h"
#include "cli/frame_fingerprint.h"
#include "cli/job_count.h"
#include "cli/layer_frames.h"
#include "cli/video_crew.h"
#include "cli/video_facts.h"
#include "cli/video_output.h"
#include "cli/video_range.h"
#include "cli/video_record.h"
#include "cli/video_shot.h"
#include "cli/video_telling.h"
#include "cli/video_worker.h"
#include "look/preset.h"
#include "media/fingerprint.h"
#include "media/picture.h"
#include "media/quiet_libraries.h"

namespace vitrell::cli {
namespace {

class VideoJob {
 public:
  VideoJob(const RenderArguments& arguments, int encoderThreads)
      : arguments_(arguments),
        host_(OpenEffect(arguments.effect.effect)),
        output_(arguments_, encoderThreads, telling_) {
    const std::string& existing = arguments.frames.existing;
    if (!existing.empty()) arguments_.force = existing != "fail";
  }

  void Run() {
    RunVideoWork(
        arguments_, telling_, [this] { RunOrThrow(); }, [this] { output_.Close(); });
  }

 private:
  void RunOrThrow() {
    CheckVideoOptions(arguments_);
    const media::VideoRange range = ParseVideoRange(arguments_.frames.frames);
    shot_.emplace(arguments_, range, range.last, panel_, telling_.GetNotes());
    const auto madeOf = [this] {
      return VideoFingerprintOf(arguments_, shot_->Settings(),
                                {media::HashOfFile(arguments_.input), shot_->HashOfLayer()},
                                EffectVersion(*host_));
    };
    if (record_.IsThereAlready(madeOf, telling_.GetNotes())) {
      telling_.TellSkipped();
      return;
    }
    Open();
    if (!arguments_.dryRun) {
      output_.Render(*shot_, *crew_);
      record_.Keep();
    }
    Finish();
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
    output_.Open(media::OriginOf(shot_->Reader()), shot_->First(), shot_->IsDeep(), shot_->Span(),
                 *report.videoInput);
  }

  // After it this process may have threads.
  void StartCrew() {
    if (!arguments_.dryRun) {
      const VideoSize size{shot_->Width(), shot_->Height(), shot_->IsDeep()};
      const int jobs = CountJobs(arguments_, shot_->ExpectedFrames(),
                                 [&] { return VideoCrew::BytesOfJob(size); });
      telling_.GetReport().jobs = jobs;
      crew_.emplace(
          VideoCrew::Order{shot_->Name(), size, jobs, arguments_.threads, arguments_.processors},
          [this](const std::vector<VideoSlot>& slots, int threads) {
            RenderArguments own = arguments_;
            own.threads = threads;
            const auto worker = std::make_shared<VideoWorker>(own, *host_, *shot_, slots);
            return [worker](const VideoFrameJob& job) { return worker->Render(job); };
          });
    }
    shot_->Reader().UseThreads(arguments_.threads);
    media::SetLibraryThreads(arguments_.threads);
  }

  // The workers read it for themselves.
  void TellLayer() {
    const std::string path = shot_->LayerOf(0);
    if (path.empty()) return;
    const media::Picture picture = LayerFrames(arguments_).Read(path, 0, telling_.GetNotes());
    telling_.GetNotes().TellAll(picture.notices);
    telling_.GetReport().layer = {path, std::string(picture.format->name), picture.spec};
  }

  void Finish() {
    output_.Close();
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
  VideoRecord record_{arguments_};
  std::optional<VideoShot> shot_;
  std::optional<VideoCrew> crew_;
  VideoOutput output_;
};

}  // namespace

void RenderVideo(const RenderArguments& arguments, int encoderThreads) {
  VideoJob(arguments, encoderThreads).Run();
}

}  // namespace vitrell::cli
