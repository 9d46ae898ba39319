// `vitrell render`.
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "cli/commands.h"
#include "cli/custom_layer.h"
#include "cli/effect_finder.h"
#include "cli/effect_run.h"
#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/notes.h"
#include "cli/preset_width.h"
#include "cli/printable.h"
#include "cli/progress_bar.h"
#include "cli/render_checks.h"
#include "cli/report.h"
#include "cli/thread_count.h"
#include "look/preset.h"
#include "media/exchange.h"
#include "media/original_rows.h"
#include "media/output_file.h"
#include "media/pages.h"
#include "media/picture.h"
#include "media/picture_writer.h"
#include "media/quiet_libraries.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

// The steps of one render, in the order of the functions.
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
      RunOn(file.Path());
    } catch (const Failure& failure) {
      const std::string message = file.Shown(failure.what());
      ReportFailure(failure.Kind(), message);
      throw Failure(failure.Kind(), message);
    }
  }

 private:
  void RunOn(const std::filesystem::path& file) {
    if (!arguments_.dryRun) effect_.Foresee(settings_, !LayerPath(settings_).empty());
    media::PictureReader reader(file, Limits());
    if (arguments_.pages.empty()) {
      RenderPicture(reader, Choice(),
                    [this](const auto& input, const auto& given, const auto& result) {
                      Write(input, given, result);
                    });
    } else {
      RenderPages(reader, file);
    }
    Finish();
  }

  using Taker = std::function<void(const media::Picture& input, const media::Given& given,
                                   const headless::WorldBuffer& result)>;

  void RenderPicture(media::PictureReader& reader, const media::ReadChoice& choice,
                     const Taker& take) {
    media::Picture input = reader.Read(FileStage(1), choice);
    notes_.TellAll(input.notices);
    if (!report_.input) {
      report_.input = FactsOf(input, media::ShownSource(arguments_.input));
      size_ = {input.Width(), input.Height()};
      FitPresets(arguments_.fit, input.Width(), settings_, notes_);
    }
    const bool deep = arguments_.depth == "auto" ? input.IsDeep() : arguments_.depth == "16";
    const media::Given given = media::GiveToEffect(input, deep);
    media::ReleaseSamples(input, given.world);
    ReadLayer(deep);
    report_.effectBits = deep ? 16 : 8;
    report_.readSeconds += clock_.Lap();
    notes_.FailIfStrict();
    if (arguments_.dryRun) {
      // What the format cannot hold shows with the picture as it is, too.
      take(input, given, given.world);
      return;
    }
    // The effect writes all of it, at its very end, and until then it takes no memory.
    headless::WorldBuffer result(input.Width(), input.Height(), deep,
                                 {.fresh = headless::FreshPixels::kUnset});
    const double processorBefore = ProcessorSeconds();
    report_.effectSeconds += effect_.Render(SettingsAt(settings_, arguments_.effect), given.world,
                                            layer_ ? &layer_->world : nullptr, result);
    report_.effectProcessorSeconds += ProcessorSeconds() - processorBefore;
    clock_.Lap();
    notes_.FailIfStrict();
    take(input, given, result);
  }

  void RenderPages(media::PictureReader& reader, const std::filesystem::path& file) {
    const std::vector<int> pages = media::FindPages(file, arguments_.pages);
    const media::WriteOrder order = Order();
    media::PageWriter writer(order, file);
    media::ReadChoice choice = Choice();
    for (std::size_t i = 0; i < pages.size(); ++i) {
      bar_.SetPart(static_cast<int>(i), static_cast<int>(pages.size()));
      choice.page = pages[i];
      RenderPicture(reader, choice, [&](const auto& input, const auto& given, const auto& result) {
        writer.Add(input, given.world, result, given.clippedPixels, FileStage(effect_.Stages()));
        report_.writeSeconds += clock_.Lap();
      });
    }
    report_.pages = static_cast<int>(pages.size());
    TellWritten(writer.Finish());
  }

  static PictureFacts FactsOf(const media::Picture& picture, const std::string& name) {
    return {name, std::string(picture.format->name), picture.spec};
  }

  static std::string Seconds(double seconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3f s", seconds);
    return text.data();
  }

  void Finish() {
    if (!arguments_.dryRun && !arguments_.savePreset.empty()) {
      for (const std::string& notice :
           look::SavePreset(arguments_.savePreset, settings_, size_.width)) {
        notes_.Advise(notice);
      }
    }
    bar_.Wipe();
    WriteReport();
    if (arguments_.quiet) return;
    const std::string size =
        report_.pages ? std::to_string(*report_.pages) + " pages"
                      : std::to_string(size_.width) + " x " + std::to_string(size_.height);
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
    const std::string text = ReportAsJson(report_, notes_.All());
    if (media::IsStandardStream(arguments_.report)) {
      std::fputs(text.c_str(), stdout);
    } else {
      for (const std::string& notice : media::WriteTextFile(arguments_.report, text)) {
        notes_.Advise(notice);
      }
    }
  }

  // The failure itself is told in any case.
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

  media::FileProgress FileStage(int stage) {
    return [this, stage](float done) {
      bar_.Show(stage, static_cast<double>(done));
      return InterruptFlag().load();
    };
  }

  void TellClipping(const media::Picture& picture, const media::Given& given) {
    if (given.clippedPixels == 0) return;
    notes_.Tell(picture.file.string() + ": " + std::to_string(given.clippedPixels) +
                " pixels had values outside black to white and were clipped.");
  }

  media::PictureLimits Limits() const { return {.maxPixels = arguments_.maxPixels}; }

  media::ReadChoice LayerChoice() const {
    media::ReadChoice choice;
    choice.autoOrient = !arguments_.noAutoOrient;
    return choice;
  }

  media::ReadChoice Choice() const {
    media::ReadChoice choice = LayerChoice();
    choice.channels = arguments_.channels;
    choice.part = arguments_.part;
    return choice;
  }

  // Once for all pages of one depth.
  void ReadLayer(bool deep) {
    const std::string path = LayerPath(settings_);
    if (path.empty() || (layer_ && layer_->world.Deep() == deep)) return;
    const media::Picture picture = media::ReadPicture(path, FileStage(1), Limits(), LayerChoice());
    report_.layer = FactsOf(picture, path);
    notes_.TellAll(picture.notices);
    layer_ = media::GiveToEffect(picture, deep);
    TellClipping(picture, *layer_);
  }

  media::WriteOrder Order() {
    media::WriteOrder order;
    order.target = arguments_.output;
    order.force = arguments_.force;
    order.onlyTry = arguments_.dryRun;
    order.encoding = arguments_.encoding;
    order.depth = arguments_.depth == "8"    ? media::Depth::k8
                  : arguments_.depth == "16" ? media::Depth::k16
                                             : media::Depth::kAuto;
    order.agree = [this](const OIIO::ImageSpec& written, const media::Format& format,
                         const std::vector<std::string>& notices) {
      report_.output = {media::ShownTarget(arguments_.output), std::string(format.name), written};
      if (!arguments_.strict) return;
      notes_.TellAll(notices);
      notes_.FailIfStrict();
    };
    return order;
  }

  void Write(const media::Picture& input, const media::Given& given,
             const headless::WorldBuffer& result) {
    media::WriteOrder order = Order();
    order.clippedPixels = given.clippedPixels;
    TellWritten(
        media::WritePicture(input, given.world, result, order, FileStage(effect_.Stages())));
  }

  void TellWritten(const std::vector<std::string>& notices) {
    // Not while the file is written, when standard error leads nowhere.
    if (!arguments_.strict) notes_.TellAll(notices);
    report_.writeSeconds += clock_.Lap();
  }

  struct Size {
    int width = 0;
    int height = 0;
  };

  const RenderArguments& arguments_;
  std::unique_ptr<headless::EffectHost> host_;
  look::Panel panel_;
  look::Settings settings_;
  ProgressBar bar_{!arguments_.quiet && !arguments_.verbose && ::isatty(STDERR_FILENO) == 1};
  Notes notes_{arguments_.quiet, arguments_.strict, bar_};
  Report report_;
  StepClock clock_;
  EffectRun effect_{*host_, arguments_, bar_, notes_};
  Size size_;  // of the first picture
  std::optional<media::Given> layer_;
};

}  // namespace

void RunRender(const RenderArguments& arguments) {
  CheckStandardInput(arguments.input, arguments.effect);
  const int wanted = arguments.threads > 0 ? arguments.threads
                                           : static_cast<int>(std::thread::hardware_concurrency());
  RenderArguments possible = arguments;
  possible.threads = CountPossibleThreads(wanted);
  media::SetLibraryThreads(possible.threads);
  RenderJob(possible).Run();
}

}  // namespace vitrell::cli
