// One video through the effect.
#include "cli/render_video.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
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
#include "cli/video_facts.h"
#include "cli/video_keys.h"
#include "cli/video_progress.h"
#include "look/preset.h"
#include "media/exchange.h"
#include "media/picture.h"
#include "media/standard_streams.h"
#include "media/video_exchange.h"
#include "media/video_input.h"
#include "media/video_messages.h"
#include "media/video_reader.h"
#include "media/video_writer.h"

namespace vitrell::cli {
namespace {

// Encoders hand over what they hold back before a file can end.
constexpr unsigned kSecondsToStop = 20;

class VideoJob {
 public:
  explicit VideoJob(const RenderArguments& arguments)
      : arguments_(arguments), host_(OpenEffect(arguments.effect.effect)) {}

  void Run() {
    report_.dryRun = arguments_.dryRun;
    report_.threads = arguments_.threads;
    try {
      Open();
      Start();
      if (!arguments_.dryRun) RenderAll();
      Finish();
    } catch (const Failure& failure) {
      ReportFailure(failure);
      throw;
    }
  }

 private:
  // The input, and the settings with its rate.
  void Open() {
    CheckVideoOptions(arguments_);
    reader_.emplace(
        arguments_.input,
        media::VideoReadOptions{arguments_.threads, arguments_.maxPixels, &InterruptFlag()});
    EffectArguments& effect = arguments_.effect;
    effect.framesPerSecond = av_q2d(reader_->FrameRate());
    settings_.emplace(MakeSettings(panel_, effect));
    PrepareLayer(arguments_.customLayer, *settings_, notes_);
    CheckNames(arguments_, LayerPath(*settings_));
    CheckFit(arguments_, *settings_);
    // A pipe cannot be gone through twice.
    if (settings_->CountsFromEnd() && !media::IsStandardStream(arguments_.input)) {
      effect.length = static_cast<double>(media::CountVideoFrames(arguments_.input));
    }
    timeBase_ = TimeBaseOf(*settings_, effect);
  }

  // The first frame, and the output, whose form depends on it.
  void Start() {
    if (!reader_->Next(*decoded_)) {
      throw Failure(kFailed, reader_->Name().string() + ": has no frames" +
                                 (reader_->Damage().empty() ? "" : "; it " + reader_->Damage()) +
                                 ". Check the file.");
    }
    const auto format = static_cast<AVPixelFormat>(decoded_->format);
    deep_ = arguments_.depth == "auto" ? media::IsDeep(format) : arguments_.depth == "16";
    report_.effectBits = deep_ ? 16 : 8;
    width_ = decoded_->width;
    height_ = decoded_->height;
    report_.videoInput = InputFacts(*reader_, *decoded_);
    FitPresets(arguments_.fit, width_, *settings_, notes_);
    ReadLayer();
    notes_.FailIfStrict();
    writer_.emplace(*reader_, *decoded_, deep_,
                    media::VideoWriteOrder{arguments_.output, arguments_.dryRun,
                                           VideoEncodingOf(arguments_), arguments_.threads});
    report_.videoOutput = OutputFacts(arguments_.output, writer_->Form(), *report_.videoInput);
    TellLosses();
    notes_.FailIfStrict();
  }

  void RenderAll() {
    GrantSecondsToStop(kSecondsToStop);
    frames_.emplace(width_, height_, deep_, arguments_.threads);
    firstTime_ = decoded_->pts;
    try {
      do {
        RenderFrame();
      } while (reader_->Next(*decoded_));
    } catch (const Failure& failure) {
      if (failure.Kind() != kCancelled || report_.frames == 0) throw;
      FailUnfinished(kCancelled, "cancelled");
    }
    if (!reader_->Damage().empty()) {
      FailUnfinished(kFailed, reader_->Name().string() + ": " + reader_->Damage());
    }
  }

  void RenderFrame() {
    ThrowIfInterrupted();
    clock_.Lap();
    frames_->Give(*decoded_, reader_->Name());
    report_.readSeconds += clock_.Lap();
    const double seconds =
        static_cast<double>(decoded_->pts - firstTime_) * av_q2d(reader_->Stream().time_base);
    const auto index = static_cast<double>(report_.frames);
    report_.effectSeconds +=
        effect_.Render(SettingsOfFrame(*settings_, timeBase_, index, seconds), frames_->Given(),
                       layer_ ? &layer_->world : nullptr, frames_->Result());
    notes_.FailIfStrict();
    clock_.Lap();
    const bool transparent = frames_->Take({.overBlack = !writer_->KeepsAlpha()});
    if (transparent && !writer_->KeepsAlpha() && !toldAlpha_) {
      toldAlpha_ = true;
      notes_.Tell(media::ShownTarget(arguments_.output) + ": " + writer_->Form().codec->name +
                  " stores no transparency; the video is laid over black.");
      notes_.FailIfStrict();
    }
    writer_->Write(frames_->Taken(), *decoded_);
    report_.writeSeconds += clock_.Lap();
    ++report_.frames;
    bar_.ShowLine([this](double elapsed) {
      return FrameProgressLine(report_.frames, reader_->ExpectedFrames(), elapsed);
    });
  }

  [[noreturn]] void FailUnfinished(media::FailureKind kind, const std::string& cause) {
    const std::string kept = writer_->KeepUnfinished().string();
    const std::string frames =
        report_.frames == 1 ? "frame is" : std::to_string(report_.frames) + " frames are";
    throw Failure(kind, cause + "; the first " + frames +
                            (kept.empty() ? " written." : " kept as " + kept + "."));
  }

  void Finish() {
    if (!arguments_.dryRun) {
      writer_->Finish();
      TellLosses();
      notes_.FailIfStrict();
      writer_->Commit(arguments_.force);
      report_.writeSeconds += clock_.Lap();
    }
    writer_.reset();
    if (!arguments_.savePreset.empty() && !arguments_.dryRun) {
      for (const std::string& notice :
           look::SavePreset(arguments_.savePreset, *settings_, width_)) {
        notes_.Advise(notice);
      }
    }
    bar_.Wipe();
    WriteReport();
    TellSummary();
  }

  void TellSummary() const {
    if (arguments_.quiet) return;
    const bool taken =
        media::IsStandardStream(arguments_.output) || media::IsStandardStream(arguments_.report);
    std::array<char, 64> rest{};
    if (report_.dryRun) {
      std::snprintf(rest.data(), rest.size(), "dry run, nothing was written");
    } else {
      std::snprintf(rest.data(), rest.size(), "%lld frames, effect %.3f s",
                    static_cast<long long>(report_.frames), report_.effectSeconds);
    }
    std::fprintf(taken ? stderr : stdout, "%s: %d x %d, %d bits, %s\n",
                 Printable(media::ShownTarget(arguments_.output)).c_str(), width_, height_,
                 report_.effectBits, rest.data());
  }

  void WriteReport() {
    for (const std::string& message : media::TakeVideoMessages()) notes_.Advise(message + ".");
    if (arguments_.report.empty()) return;
    report_.totalSeconds = clock_.Total();
    PutReport(report_, arguments_.report, notes_);
  }

  // The failure itself is told in any case.
  void ReportFailure(const Failure& failure) {
    report_.exitCode = failure.Kind();
    report_.error = failure.what();
    bar_.Wipe();
    writer_.reset();
    try {
      WriteReport();
    } catch (const Failure&) {
      return;
    }
    static_cast<void>(std::fflush(stdout));
  }

  void ReadLayer() {
    const std::string path = LayerPath(*settings_);
    if (path.empty()) return;
    media::ReadChoice choice;
    choice.autoOrient = !arguments_.noAutoOrient;
    const media::Picture picture = media::ReadPicture(
        path, [](float) { return InterruptFlag().load(); }, {.maxPixels = arguments_.maxPixels},
        choice);
    notes_.TellAll(picture.notices);
    report_.layer = {path, std::string(picture.format->name), picture.spec};
    layer_.emplace(media::GiveToEffect(picture, deep_));
  }

  // Those that came since the last call.
  void TellLosses() {
    const std::vector<std::string>& losses = writer_->Losses();
    for (; toldLosses_ < losses.size(); ++toldLosses_) notes_.Tell(losses[toldLosses_]);
  }

  RenderArguments arguments_;
  std::unique_ptr<headless::EffectHost> host_;
  look::Panel panel_ = look::MakePanel(host_->Parameters());
  std::optional<look::Settings> settings_;
  look::TimeBase timeBase_;
  ProgressBar bar_{!arguments_.quiet && !arguments_.verbose && ::isatty(STDERR_FILENO) == 1};
  Notes notes_{arguments_.quiet, arguments_.strict, bar_};
  // The stages of one frame are too short to be told.
  ProgressBar noBar_{false};
  EffectRun effect_{*host_, arguments_, noBar_, notes_};
  Report report_;
  StepClock clock_;

  std::optional<media::VideoReader> reader_;
  std::optional<media::VideoWriter> writer_;
  std::size_t toldLosses_ = 0;
  bool toldAlpha_ = false;
  bool deep_ = false;
  int width_ = 0;
  int height_ = 0;
  std::int64_t firstTime_ = 0;
  media::FrameHandle decoded_ = media::MakeFrame();
  std::optional<media::FrameExchange> frames_;
  std::optional<media::Given> layer_;
};

}  // namespace

void RenderVideo(const RenderArguments& arguments) { VideoJob(arguments).Run(); }

}  // namespace vitrell::cli
