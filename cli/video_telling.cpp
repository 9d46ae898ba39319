// Telling of a video.
#include "cli/video_telling.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <new>
#include <string>
#include <vector>

#include "cli/interrupt.h"
#include "cli/printable.h"
#include "cli/video_progress.h"
#include "media/standard_streams.h"
#include "media/video_messages.h"

namespace vitrell::cli {
namespace {

ProgressKind KindOfLines(const RenderArguments& arguments) {
  const ProgressKind kind = ProgressKindOf(arguments);
  return kind == ProgressKind::kBar ? ProgressKind::kNone : kind;
}

}  // namespace

VideoTelling::VideoTelling(const RenderArguments& arguments)
    : arguments_(arguments),
      bar_(ProgressKindOf(arguments) == ProgressKind::kBar),
      lines_(KindOfLines(arguments), 0, StatusFileOf(arguments.frames)),
      notes_(arguments.quiet, arguments.strict, bar_) {
  report_.dryRun = arguments.dryRun;
  report_.threads = arguments.threads;
}

void VideoTelling::TellFrame(const FrameAnswer& frame, std::int64_t frames) {
  ++report_.frames;
  lines_.SetFrames(frames);
  lines_.Tell(frame);
  bar_.ShowLine([&](double elapsed) { return FrameProgressLine(report_.frames, frames, elapsed); });
}

void VideoTelling::TellFailedFrame(const FrameAnswer& frame, std::int64_t frames) {
  lines_.SetFrames(frames);
  lines_.Tell(frame);
}

void VideoTelling::TellLosses(const media::VideoWriter& writer) {
  const std::vector<std::string>& losses = writer.Losses();
  for (; toldLosses_ < losses.size(); ++toldLosses_) notes_.Tell(losses[toldLosses_]);
}

void VideoTelling::TellResult(int width, int height) {
  bar_.Wipe();
  WriteReport();
  TellSummary(width, height);
}

void VideoTelling::TellSkipped() {
  report_.skipped = true;
  WriteReport();
  if (arguments_.quiet) return;
  std::fprintf(Terminal(), "%s: is there already, whole and made of the same\n",
               Printable(arguments_.output).c_str());
}

void VideoTelling::TellFailure(const Failure& failure) {
  report_.exitCode = failure.Kind();
  report_.error = failure.what();
  bar_.Wipe();
  try {
    WriteReport();
  } catch (const Failure&) {
    return;
  }
  static_cast<void>(std::fflush(stdout));
}

void VideoTelling::WriteReport() {
  for (const std::string& message : media::TakeVideoMessages()) notes_.Advise(message + ".");
  if (arguments_.report.empty()) return;
  report_.totalSeconds = clock_.Total();
  PutReport(report_, arguments_.report, notes_);
}

std::FILE* VideoTelling::Terminal() const {
  const bool taken =
      media::IsStandardStream(arguments_.output) || media::IsStandardStream(arguments_.report);
  return taken ? stderr : stdout;
}

void VideoTelling::TellSummary(int width, int height) const {
  if (arguments_.quiet) return;
  std::array<char, 64> rest{};
  if (report_.dryRun) {
    std::snprintf(rest.data(), rest.size(), "dry run, nothing was written");
  } else {
    std::snprintf(rest.data(), rest.size(), "%lld frames, effect %.3f s",
                  static_cast<long long>(report_.frames), report_.effectSeconds);
  }
  std::fprintf(Terminal(), "%s: %d x %d, %d bits, %s\n",
               Printable(media::ShownTarget(arguments_.output)).c_str(), width, height,
               report_.effectBits, rest.data());
}

void RunVideoWork(const RenderArguments& arguments, VideoTelling& telling,
                  const std::function<void()>& work, const std::function<void()>& close) {
  TellTerminationApart();
  const auto fail = [&](media::FailureKind kind, const std::string& message) {
    close();
    telling.TellFailure(Failure(kind, message));
    throw Failure(kind, message);
  };
  try {
    work();
  } catch (const Failure& failure) {
    const bool terminated = failure.Kind() == kCancelled && FirstSignal() == SIGTERM;
    fail(terminated ? kTerminated : failure.Kind(), failure.what());
  } catch (const std::bad_alloc&) {
    fail(kTryLater, media::ShownSource(arguments.input) +
                        ": there is not enough memory. Use fewer --jobs and --threads.");
  }
}

}  // namespace vitrell::cli
