// One picture through the effect, with all that is told about it.
#include "cli/render_still.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "cli/custom_layer.h"
#include "cli/effect_finder.h"
#include "cli/failure.h"
#include "cli/notes.h"
#include "cli/preset_width.h"
#include "cli/printable.h"
#include "cli/progress_bar.h"
#include "cli/render_checks.h"
#include "cli/report.h"
#include "cli/still_render.h"
#include "look/preset.h"
#include "media/quiet_libraries.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

ProgressForm FormOf(const RenderArguments& arguments) {
  if (arguments.frames.progress == "json") return ProgressForm::kJson;
  const bool isShown = !arguments.quiet && !arguments.verbose &&
                       arguments.frames.progress != "none" && ::isatty(STDERR_FILENO) == 1;
  return isShown ? ProgressForm::kLine : ProgressForm::kNone;
}

class StillJob {
 public:
  explicit StillJob(const RenderArguments& arguments)
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
  ProgressBar bar_{FormOf(arguments_)};
  Notes notes_{arguments_.quiet, arguments_.strict, bar_};
  Report report_;
  StepClock clock_;
};

}  // namespace

void RenderStill(const RenderArguments& arguments) {
  media::SetLibraryThreads(arguments.threads);
  OnlyOnce([&] { StillJob(arguments).Run(); });
}

}  // namespace vitrell::cli
