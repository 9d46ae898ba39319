// Lines about frames.
#include "cli/sequence_progress.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>

#include "cli/failure.h"
#include "cli/printable.h"
#include "cli/sequence_plan.h"
#include "media/output_file.h"

namespace vitrell::cli {
namespace {

constexpr int kBarWidth = 30;
constexpr std::chrono::milliseconds kInterval{100};
// Estimates before this are too unstable to show.
constexpr double kMinSeconds = 1.0;

double RateOf(std::int64_t rendered, double seconds) {
  return seconds > 0 ? static_cast<double>(rendered) / seconds : 0;
}

// Below zero: not known yet.
double SecondsLeft(std::int64_t done, std::int64_t all, std::int64_t rendered, double seconds) {
  if (rendered < 1 || seconds < kMinSeconds || all < done) return -1;
  return static_cast<double>(all - done) / RateOf(rendered, seconds);
}

std::string CountsOf(std::int64_t done, std::int64_t all, std::int64_t rendered, double seconds) {
  std::array<char, 32> rate{};
  std::snprintf(rate.data(), rate.size(), " frames  %.3g frames/s", RateOf(rendered, seconds));
  std::string counts = std::to_string(done);
  // Headers of videos may tell fewer than there are.
  if (all >= done) counts += " of " + std::to_string(all);
  counts += rate.data();
  const double left = SecondsLeft(done, all, rendered, seconds);
  if (left >= 0) {
    counts += "  about " + std::to_string(static_cast<long>(std::ceil(left))) + " s left";
  }
  return counts;
}

std::int64_t Milliseconds(const FrameAnswer& answer) {
  return static_cast<std::int64_t>(std::llround(answer.seconds * 1000));
}

}  // namespace

ProgressKind ProgressKindOf(const RenderArguments& arguments) {
  const std::string& name = arguments.frames.progress;
  if (name == "plain") return ProgressKind::kPlain;
  if (name == "json") return ProgressKind::kJson;
  const bool usual =
      name.empty() && !arguments.quiet && !arguments.verbose && ::isatty(STDERR_FILENO) == 1;
  return name == "bar" || usual ? ProgressKind::kBar : ProgressKind::kNone;
}

std::string StatusFileOf(const FrameArguments& arguments) {
  const std::optional<PartOfFrames> part = ParsePartOfFrames(arguments.part);
  if (!part || arguments.status.empty()) return arguments.status;
  const std::filesystem::path file = arguments.status;
  const std::string name = file.stem().string() + "." + std::to_string(part->number) + "-of-" +
                           std::to_string(part->count) + file.extension().string();
  return file.parent_path() / name;
}

std::string FramesLine(std::int64_t done, std::int64_t all, std::int64_t rendered,
                       double elapsedSeconds) {
  const double fraction =
      static_cast<double>(done) / static_cast<double>(std::max<std::int64_t>(all, 1));
  const int marks = static_cast<int>(fraction * kBarWidth);
  const std::string percent = std::to_string(static_cast<int>(fraction * 100));
  return "[" + std::string(static_cast<std::size_t>(marks), '#') +
         std::string(static_cast<std::size_t>(kBarWidth - marks), '-') + "] " +
         std::string(3 - std::min<std::size_t>(percent.size(), 3), ' ') + percent + " %  " +
         CountsOf(done, all, rendered, elapsedSeconds);
}

std::string FrameAsJson(const FrameAnswer& answer, std::int64_t done, std::int64_t all,
                        std::int64_t rendered, double elapsedSeconds) {
  nlohmann::ordered_json json = {{"frame", answer.frame},
                                 {"state", NameOf(answer.state)},
                                 {"ms", Milliseconds(answer)},
                                 {"finished", done}};
  if (all >= done) json["frames"] = all;
  json["fps"] = RateOf(rendered, elapsedSeconds);
  const double left = SecondsLeft(done, all, rendered, elapsedSeconds);
  if (left >= 0) json["secondsLeft"] = left;
  if (!answer.again.empty()) json["again"] = answer.again;
  if (!answer.error.empty()) json["error"] = answer.error;
  // File names need not be UTF-8.
  return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

SequenceProgress::SequenceProgress(ProgressKind kind, std::int64_t frames,
                                   const std::string& status)
    : kind_(kind), frames_(frames) {
  if (status.empty()) return;
  status_ = std::fopen(status.c_str(), "we");
  if (status_ == nullptr) {
    throw Failure(kFailed, status + ": cannot be written (" + media::LastSystemError() +
                               "). Choose another name for --status.");
  }
}

SequenceProgress::~SequenceProgress() {
  Wipe();
  if (status_ != nullptr) std::fclose(status_);
}

double SequenceProgress::Seconds() const {
  return std::chrono::duration<double>(Clock::now() - start_).count();
}

void SequenceProgress::Tell(const FrameAnswer& answer) {
  ++done_;
  if (answer.state == FrameState::kRendered) ++rendered_;
  const double seconds = Seconds();
  const bool json = kind_ == ProgressKind::kJson;
  if (json || status_ != nullptr) {
    const std::string line = FrameAsJson(answer, done_, frames_, rendered_, seconds) + "\n";
    if (json) std::fputs(line.c_str(), stderr);
    if (status_ != nullptr) {
      std::fputs(line.c_str(), status_);
      std::fflush(status_);
    }
  }
  if (kind_ == ProgressKind::kPlain) {
    std::fprintf(stderr, "frame %lld: %s, %lld ms (%s)\n", static_cast<long long>(answer.frame),
                 NameOf(answer.state), static_cast<long long>(Milliseconds(answer)),
                 CountsOf(done_, frames_, rendered_, seconds).c_str());
  }
  if (kind_ == ProgressKind::kBar) Draw();
}

void SequenceProgress::Draw() {
  const Clock::time_point now = Clock::now();
  if (now - lastDrawn_ < kInterval) return;
  lastDrawn_ = now;
  drawn_ = true;
  std::fprintf(stderr, "\r%s\033[K", FramesLine(done_, frames_, rendered_, Seconds()).c_str());
  std::fflush(stderr);
}

void SequenceProgress::Say(const std::string& line) {
  Wipe();
  std::fprintf(stderr, "vitrell: %s\n", Printable(line).c_str());
}

void SequenceProgress::Wipe() {
  if (!drawn_) return;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
  drawn_ = false;
}

}  // namespace vitrell::cli
