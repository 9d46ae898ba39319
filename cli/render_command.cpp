// `vitrell render`.
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "cli/commands.h"
#include "cli/custom_layer.h"
#include "cli/effect_finder.h"
#include "cli/failure.h"
#include "cli/notes.h"
#include "cli/preset_width.h"
#include "cli/printable.h"
#include "cli/progress_bar.h"
#include "cli/render_checks.h"
#include "cli/render_video.h"
#include "cli/report.h"
#include "cli/sequence_plan.h"
#include "cli/still_render.h"
#include "cli/thread_count.h"
#include "look/preset.h"
#include "media/output_file.h"
#include "media/quiet_libraries.h"
#include "media/standard_streams.h"
#include "media/video_form.h"

namespace vitrell::cli {
namespace {

// A still: one file, with all that is told about it.
class RenderJob {
 public:
  explicit RenderJob(const RenderArguments& arguments)
      : arguments_(arguments),
        host_(OpenEffect(arguments.effect.effect)),
        panel_(look::MakePanel(host_->Parameters())),
        settings_(MakeSettings(panel_, arguments.effect)) {}

  void Run() {
    PrepareLayer(arguments_.customLayer, settings_, notes_);
    CheckFiles(arguments_, LayerPath(settings_));
    CheckFit(arguments_, settings_);
    const media::InputFile file(arguments_.input);
    notes_.NameInput(file);
    report_.dryRun = arguments_.dryRun;
    report_.threads = arguments_.threads;
    try {
      OnlyOnce([&] { RunOn(file.Path()); });
    } catch (const Failure& failure) {
      const std::string message = file.Shown(failure.what());
      ReportFailure(failure.Kind(), message);
      throw Failure(failure.Kind(), message);
    }
  }

 private:
  void RunOn(const std::filesystem::path& file) {
    StillRender still(arguments_, *host_, settings_, bar_, notes_, report_);
    still.Run(file);
    Finish(still);
  }

  static std::string Seconds(double seconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3f s", seconds);
    return text.data();
  }

  void Finish(const StillRender& still) {
    if (!arguments_.dryRun && !arguments_.savePreset.empty()) {
      for (const std::string& notice :
           look::SavePreset(arguments_.savePreset, settings_, still.Width())) {
        notes_.Advise(notice);
      }
    }
    bar_.Wipe();
    WriteReport();
    if (arguments_.quiet) return;
    const std::string size =
        report_.pages ? std::to_string(*report_.pages) + " pages"
                      : std::to_string(still.Width()) + " x " + std::to_string(still.Height());
    const std::string rest = arguments_.dryRun ? "dry run, nothing was written"
                                               : "effect " + Seconds(report_.effectSeconds);
    const bool taken =
        media::IsStandardStream(arguments_.output) || media::IsStandardStream(arguments_.report);
    std::fprintf(taken ? stderr : stdout, "%s: %s, %d bits, %s\n",
                 Printable(media::ShownTarget(arguments_.output)).c_str(), size.c_str(),
                 report_.effectBits, rest.c_str());
  }

  void WriteReport() {
    if (arguments_.report.empty()) return;
    report_.totalSeconds = clock_.Total();
    PutReport(report_, arguments_.report, notes_);
  }

  // A failure to write the report must not hide the first one.
  void ReportFailure(int exitCode, const std::string& message) {
    report_.exitCode = exitCode;
    report_.error = message;
    bar_.Wipe();
    try {
      WriteReport();
    } catch (const Failure&) {
      return;
    }
    static_cast<void>(std::fflush(stdout));
  }

  const RenderArguments& arguments_;
  std::unique_ptr<headless::EffectHost> host_;
  look::Panel panel_;
  look::Settings settings_;
  ProgressBar bar_{!arguments_.quiet && !arguments_.verbose &&
                   arguments_.frames.progress != "none" && ::isatty(STDERR_FILENO) == 1};
  Notes notes_{arguments_.quiet, arguments_.strict, bar_};
  Report report_;
  StepClock clock_;
};

// --part chooses a part of the file, or, as K/N, a share of the frames.
void ChooseParts(bool sequence, RenderArguments& arguments) {
  for (const std::string& part : arguments.parts) {
    const bool ofFrames = sequence && ParsePartOfFrames(part);
    std::string& chosen = ofFrames ? arguments.frames.part : arguments.part;
    if (!chosen.empty()) {
      std::string message = "--part: " + chosen;
      message.append(" and ").append(part).append(" cannot both be rendered. Give one of them.");
      throw Failure(kWrongUsage, message);
    }
    chosen = part;
  }
}

// Options that mean nothing for a single picture, or for a video.
void RefuseFrameOptions(const FrameArguments& arguments, bool video) {
  struct Option {
    const char* name;
    bool isGiven;
    bool isForVideos;
  };
  const std::array<Option, 7> options = {
      {{"--frames-out", !arguments.framesOut.empty(), false},
       {"--missing", arguments.missing != "fail", false},
       {"--existing", !arguments.existing.empty(), true},
       {"--keep-going", arguments.keepGoing, false},
       {"--memory", arguments.memory != 0, true},
       {"--status", !arguments.status.empty(), true},
       {"--progress", arguments.progress == "plain" || arguments.progress == "json", true}}};
  for (const Option& option : options) {
    if (!option.isGiven || (video && option.isForVideos)) continue;
    throw Failure(kWrongUsage, std::string(option.name) +
                                   ": is for sequences. Write plate.####.png as INPUT, or leave "
                                   "the option out.");
  }
}

// What a sequence takes and one video of its frames does not.
void RefuseForSequenceVideo(const FrameArguments& arguments) {
  const std::array<std::pair<const char*, bool>, 2> options = {
      {{"--frames-out", !arguments.framesOut.empty()}, {"--keep-going", arguments.keepGoing}}};
  for (const auto& [name, isGiven] : options) {
    if (!isGiven) continue;
    throw Failure(kWrongUsage,
                  std::string(name) + ": is for sequences, and OUTPUT is a video. Leave it out.");
  }
}

}  // namespace

void RunRender(const RenderArguments& arguments) {
  CheckStandardInput(arguments.input, arguments.effect);
  const int wanted = arguments.threads > 0 ? arguments.threads
                                           : static_cast<int>(std::thread::hardware_concurrency());
  RenderArguments possible = arguments;
  possible.threads = CountPossibleThreads(wanted);
  const bool videoFrames = IsVideoToSequence(possible);
  const bool video = !videoFrames && !IsSequenceName(arguments.input) && IsVideoJob(possible);
  const bool sequence = videoFrames || (!video && MeansSequence(arguments));
  ChooseParts(sequence, possible);
  if (videoFrames) return RenderVideoAsSequence(possible);
  if (sequence && media::IsVideoName(arguments.output) && !IsSequenceName(arguments.output)) {
    RefuseForSequenceVideo(possible.frames);
    RenderSequenceAsVideo(possible);
    return;
  }
  if (sequence) {
    RunSequence(possible);
    return;
  }
  RefuseFrameOptions(arguments.frames, video);
  if (video) return RenderVideo(possible);
  media::SetLibraryThreads(possible.threads);
  OnlyOnce([&] { RenderJob(possible).Run(); });
}

}  // namespace vitrell::cli
