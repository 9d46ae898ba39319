// `vitrell render`.
#include <unistd.h>

#include <cstdio>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "cli/call_report.h"
#include "cli/commands.h"
#include "cli/effect_finder.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/printable.h"
#include "cli/progress_bar.h"
#include "look/preset.h"
#include "look/value_text.h"
#include "media/exchange.h"
#include "media/output_file.h"
#include "media/picture.h"
#include "media/picture_writer.h"
#include "media/quiet_libraries.h"

namespace vitrell::cli {
namespace {

// The lens type that shows a layer, as its choice reads.
constexpr const char* kLensType = "lens.type";
constexpr const char* kCustomChoice = "Custom";

// The steps of one render, in the order of the functions.
class RenderJob {
 public:
  explicit RenderJob(const RenderArguments& arguments)
      : arguments_(arguments),
        host_(OpenEffect(arguments.effect.effect)),
        panel_(look::MakePanel(host_->Parameters())),
        settings_(MakeSettings(panel_, arguments.effect)),
        bar_(!arguments.quiet && !arguments.verbose && ::isatty(STDERR_FILENO) == 1) {}

  void Run() {
    PrepareLayer();
    CheckTargets();
    const media::Picture input = media::ReadPicture(arguments_.input, FileStage(1), Limits());
    TellAll(input.notices);
    const bool deep = arguments_.depth == "auto" ? input.IsDeep() : arguments_.depth == "16";
    const media::Given given = media::GiveToEffect(input, deep);
    TellClipping(input, given);
    const std::optional<media::Given> layer = ReadLayer(deep);
    headless::WorldBuffer result(input.Width(), input.Height(), deep);
    const double seconds = RenderEffect(given, layer ? &layer->world : nullptr, result);
    Write(input, given, result);
    bar_.Wipe();
    if (!arguments_.savePreset.empty()) look::SavePreset(arguments_.savePreset, settings_);
    if (arguments_.quiet) return;
    std::printf("%s: %d x %d, %d bits, effect %.3f s\n", Printable(arguments_.output).c_str(),
                input.Width(), input.Height(), deep ? 16 : 8, seconds);
  }

 private:
  void Tell(const std::string& note) {
    if (arguments_.quiet) return;
    bar_.Wipe();
    std::fprintf(stderr, "vitrell: note: %s\n", Printable(note).c_str());
  }

  void TellAll(const std::vector<std::string>& notes) {
    for (const std::string& note : notes) Tell(note);
  }

  const look::Control* LayerControl() const {
    for (const look::Control& control : panel_.controls) {
      if (control.kind == look::ControlKind::kLayer) return &control;
    }
    return nullptr;
  }

  std::string LayerPath() const {
    const look::Control* control = LayerControl();
    return control == nullptr ? "" : std::get<look::LayerValue>(settings_.ValueOf(*control)).path;
  }

  // --custom-layer is a short form of the layer control's --set, and stronger.
  void PrepareLayer() {
    const look::Control* layer = LayerControl();
    if (!arguments_.customLayer.empty()) {
      if (layer == nullptr) {
        throw Failure(kWrongUsage,
                      "--custom-layer: this effect takes no layer. Leave the option out.");
      }
      settings_.SetValue(*layer, look::LayerValue{arguments_.customLayer});
    }
    const look::Control* type = panel_.Find(kLensType);
    if (layer == nullptr || type == nullptr) return;
    const bool custom = look::FormatValue(*type, settings_.ValueOf(*type)) == kCustomChoice;
    if (custom && LayerPath().empty()) {
      Tell(
          "lens.type is custom, but there is no custom layer, so the lens is empty. Give the "
          "layer with --custom-layer IMAGE.");
    }
    if (!custom && !LayerPath().empty()) {
      Tell(LayerPath() + ": the custom layer is not used. It shows with --set lens.type=custom.");
    }
  }

  // What is written must be none of the other files. A preset may be updated in place.
  void RefuseSameFiles() const {
    const std::string& output = arguments_.output;
    const std::string& saved = arguments_.savePreset;
    RefuseSame("OUTPUT", output, "INPUT", arguments_.input);
    RefuseSame("OUTPUT", output, "the custom layer", LayerPath());
    RefuseSame("OUTPUT", output, "--preset", arguments_.effect.preset);
    RefuseSame("--save-preset", saved, "OUTPUT", output);
    RefuseSame("--save-preset", saved, "INPUT", arguments_.input);
    RefuseSame("--save-preset", saved, "the custom layer", LayerPath());
  }

  static void RefuseSame(const std::string& role, const std::string& file,
                         const std::string& otherRole, const std::string& other) {
    if (file.empty() || other.empty() || !media::IsSameFile(file, other)) return;
    throw Failure(kWrongUsage, file + ": " + role + " is the same file as " + otherRole +
                                   ", which would be lost. Choose another name.");
  }

  // Before any long work.
  void CheckTargets() {
    RefuseSameFiles();
    media::CheckTarget(arguments_.output, arguments_.force);
    media::CheckWritable(arguments_.output);
    if (!arguments_.savePreset.empty()) media::CheckTarget(arguments_.savePreset, arguments_.force);
  }

  media::FileProgress FileStage(int stage) {
    return [this, stage](float done) {
      bar_.Show(stage, static_cast<double>(done));
      return InterruptFlag().load();
    };
  }

  void TellClipping(const media::Picture& picture, const media::Given& given) {
    if (given.clippedPixels == 0) return;
    Tell(picture.file.string() + ": " + std::to_string(given.clippedPixels) +
         " pixels had values outside black to white and were clipped.");
  }

  media::PictureLimits Limits() const { return {.maxPixels = arguments_.maxPixels}; }

  std::optional<media::Given> ReadLayer(bool deep) {
    const std::string path = LayerPath();
    if (path.empty()) return std::nullopt;
    const media::Picture picture = media::ReadPicture(path, FileStage(1), Limits());
    TellAll(picture.notices);
    media::Given given = media::GiveToEffect(picture, deep);
    TellClipping(picture, given);
    return given;
  }

  // A picture of one pixel goes through the same passes in no time.
  int ForeseePasses(const headless::WorldBuffer* layer, bool deep) {
    headless::WorldBuffer pixel(1, 1, deep);
    pixel.FillBytes(0);
    headless::WorldBuffer result(1, 1, deep);
    headless::RenderOptions options;
    options.cancel = &InterruptFlag();
    return CountPasses(host_->Render(pixel, result, layer, options));
  }

  double RenderEffect(const media::Given& given, const headless::WorldBuffer* layer,
                      headless::WorldBuffer& result) {
    settings_.Apply(*host_, given.world.Width(), given.world.Height());
    headless::RenderOptions options;
    options.threads = arguments_.threads;
    options.cancel = &InterruptFlag();
    if (bar_.IsOn()) {
      // Reading is the first stage and writing the last.
      stages_ = ForeseePasses(layer, given.world.Deep()) + 2;
      bar_.SetStages(stages_);
      options.progress = [this](const headless::RenderProgress& progress) {
        bar_.Show(progress.pass + 1,
                  progress.rowsTotal > 0
                      ? static_cast<double>(progress.rowsDone) / progress.rowsTotal
                      : 0.0);
      };
    }
    const headless::RenderResult rendered = host_->Render(given.world, result, layer, options);
    // The effect does not pass every interruption on.
    ThrowIfInterrupted();
    if (arguments_.verbose) std::fputs(ReportCalls(rendered).c_str(), stderr);
    if (!rendered.Ok()) ThrowEffectFailure(rendered);
    for (const std::string& complaint : rendered.complaints) {
      Tell("the effect misbehaved: " + complaint);
    }
    return rendered.seconds;
  }

  [[noreturn]] void ThrowEffectFailure(const headless::RenderResult& rendered) const {
    std::string message =
        arguments_.input + ": the effect could not render it: " + rendered.description + ". ";
    if (!rendered.message.empty()) message += "It says: " + rendered.message + " ";
    message += rendered.error == PF_Err_OUT_OF_MEMORY ? "Use a smaller picture or smaller amounts."
                                                      : "--verbose shows how far it came.";
    throw Failure(kFailed, message);
  }

  void Write(const media::Picture& input, const media::Given& given,
             const headless::WorldBuffer& result) {
    media::WriteOrder order;
    order.target = arguments_.output;
    order.force = arguments_.force;
    order.depth = arguments_.depth == "8"    ? media::Depth::k8
                  : arguments_.depth == "16" ? media::Depth::k16
                                             : media::Depth::kAuto;
    TellAll(media::WritePicture(input, given.world, result, order, FileStage(stages_)));
  }

  const RenderArguments& arguments_;
  std::unique_ptr<headless::EffectHost> host_;
  look::Panel panel_;
  look::Settings settings_;
  ProgressBar bar_;
  int stages_ = 2;
};

// The system may allow fewer threads than there are cores. They are tried all at once.
int CountPossibleThreads(int wanted) {
  std::promise<void> end;
  const std::shared_future<void> ended = end.get_future().share();
  std::vector<std::thread> threads;
  try {
    while (static_cast<int>(threads.size()) + 1 < wanted) {
      threads.emplace_back([ended] { ended.wait(); });
    }
  } catch (const std::system_error&) {
    // As many as there are now.
  }
  end.set_value();
  for (std::thread& thread : threads) thread.join();
  return static_cast<int>(threads.size()) + 1;
}

}  // namespace

void RunRender(const RenderArguments& arguments) {
  const int wanted = arguments.threads > 0 ? arguments.threads
                                           : static_cast<int>(std::thread::hardware_concurrency());
  RenderArguments possible = arguments;
  possible.threads = CountPossibleThreads(wanted);
  media::SetLibraryThreads(possible.threads);
  RenderJob(possible).Run();
}

}  // namespace vitrell::cli
