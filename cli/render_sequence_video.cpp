// A sequence through the effect into a video.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/custom_layer.h"
#include "cli/effect_finder.h"
#include "cli/failure.h"
#include "cli/frame_fingerprint.h"
#include "cli/job_count.h"
#include "cli/layer_frames.h"
#include "cli/preset_width.h"
#include "cli/render_checks.h"
#include "cli/render_video.h"
#include "cli/sequence_plan.h"
#include "cli/sequence_source.h"
#include "cli/still_frame.h"
#include "cli/video_checks.h"
#include "cli/video_crew.h"
#include "cli/video_output.h"
#include "cli/video_record.h"
#include "cli/video_telling.h"
#include "look/preset.h"
#include "look/value_text.h"
#include "media/blank_video.h"
#include "media/fingerprint.h"
#include "media/quiet_libraries.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vitrell::cli {
namespace {

class SequenceVideoJob {
 public:
  SequenceVideoJob(const RenderArguments& arguments, int encoderThreads)
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
    Plan();
    const auto madeOf = [this] {
      return VideoFingerprintOf(arguments_, settings_, {HashOfFrames(), {}}, EffectVersion(*host_));
    };
    if (record_.IsThereAlready(madeOf, telling_.GetNotes())) {
      telling_.TellSkipped();
      return;
    }
    Open();
    if (!arguments_.dryRun) {
      SequenceSource source(arguments_.input, *plan_);
      output_.Render(source, *crew_);
      record_.Keep();
    }
    Finish();
  }

  void Plan() {
    Notes& notes = telling_.GetNotes();
    media::CheckVideoEncoding(arguments_.output, VideoEncodingOf(arguments_));
    PrepareLayer(arguments_.customLayer, settings_, notes);
    const std::string layer = LayerPath(settings_);
    CheckNames(arguments_, layer);
    CheckFit(arguments_, settings_);
    plan_.emplace(arguments_, layer);
    if (arguments_.effect.length <= 0) {
      arguments_.effect.length =
          static_cast<double>(std::max<std::int64_t>(plan_->LastFrame() + 1, 1));
    }
    plan_->RefuseMissing(arguments_);
    for (const std::string& advice : plan_->Advice()) notes.Advise(advice);
    if (!arguments_.isRateGiven) {
      notes.Advise(arguments_.output + ": shows " +
                   look::FormatNumber(arguments_.effect.framesPerSecond) +
                   " frames per second; --fps gives another rate.");
    }
  }

  // And which values they have, for that is told by their numbers.
  std::string HashOfFrames() {
    std::string text = "rate " + look::FormatNumber(arguments_.effect.framesPerSecond) + "\nfrom " +
                       std::to_string(plan_->FirstFrame()) + "\n";
    LayerFrames layers(arguments_);
    while (const std::optional<FrameJob> job = plan_->Next()) {
      text += std::to_string(job->frame) + " " + media::HashOfFile(job->input) +
              (job->black ? " black " : " ") + layers.HashOf(job->layer) + "\n";
    }
    plan_->Rewind();
    return media::HashOfText(text);
  }

  void Open() {
    const std::optional<FrameJob> first = plan_->Next();
    plan_->Rewind();
    if (!first) throw Failure(kFailed, arguments_.input + ": there are no frames to render.");
    shape_ = LookAtStill(arguments_, *host_, settings_, *first);
    StartCrew(*first);
    const AVPixelFormat format = media::RgbFormat(shape_.size.deep, shape_.alpha);
    const media::FrameHandle marks = media::BlankVideo::Marks(0);
    marks->width = shape_.size.width;
    marks->height = shape_.size.height;
    marks->format = format;
    Report& report = telling_.GetReport();
    report.effectBits = shape_.size.deep ? 16 : 8;
    const AVRational rate = blank_.Origin().rate;
    report.videoInput = {arguments_.input,
                         "sequence",
                         shape_.format,
                         av_get_pix_fmt_name(format),
                         shape_.size.width,
                         shape_.size.height,
                         std::to_string(rate.num) + "/" + std::to_string(rate.den)};
    output_.Open(blank_.Origin(), *marks, shape_.size.deep, std::nullopt, *report.videoInput);
  }

  // After it this process may have threads.
  void StartCrew(const FrameJob& first) {
    if (!arguments_.dryRun) {
      const int jobs = CountJobs(arguments_, first.input, plan_->Size());
      telling_.GetReport().jobs = jobs;
      crew_.emplace(VideoCrew::Order{arguments_.input, shape_.size, jobs, arguments_.threads,
                                     arguments_.processors},
                    [this](const std::vector<VideoSlot>& slots, int threads) {
                      RenderArguments own = arguments_;
                      own.threads = threads;
                      const auto frames = std::make_shared<StillFrames>(
                          own, *host_, settings_, plan_->FirstFrame(), shape_.size, slots);
                      return [frames](const VideoFrameJob& job) { return frames->Render(job); };
                    });
    }
    media::SetLibraryThreads(arguments_.threads);
  }

  void Finish() {
    output_.Close();
    if (!arguments_.savePreset.empty() && !arguments_.dryRun) {
      if (arguments_.fit) settings_.FitTo(shape_.size.width);
      look::SavePreset(arguments_.savePreset, settings_, shape_.size.width);
    }
    telling_.TellResult(shape_.size.width, shape_.size.height);
  }

  RenderArguments arguments_;
  std::unique_ptr<headless::EffectHost> host_;
  look::Panel panel_ = look::MakePanel(host_->Parameters());
  look::Settings settings_ = MakeSettings(panel_, arguments_.effect);
  VideoTelling telling_{arguments_};
  VideoRecord record_{arguments_};
  std::optional<SequencePlan> plan_;
  media::BlankVideo blank_{media::ExactRate(arguments_.effect.framesPerSecond)};
  StillShape shape_;
  std::optional<VideoCrew> crew_;
  VideoOutput output_;
};

}  // namespace

void RenderSequenceAsVideo(const RenderArguments& arguments, int encoderThreads) {
  SequenceVideoJob(arguments, encoderThreads).Run();
}

}  // namespace vitrell::cli
