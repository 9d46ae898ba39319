// Drawing the progress line, or telling its stages.
#include "cli/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

namespace vitrell::cli {
namespace {

constexpr int kBarWidth = 30;
constexpr std::chrono::milliseconds kInterval{100};
// Estimates before this are too unstable to show.
constexpr double kMinFraction = 0.1;
constexpr double kMinSeconds = 1.0;

}  // namespace

std::string ProgressLine(int stage, int stages, double fraction, double elapsedSeconds) {
  const double done = std::clamp(fraction, 0.0, 1.0);
  const int marks = static_cast<int>(done * kBarWidth);
  std::string line = "[" + std::string(static_cast<std::size_t>(marks), '#') +
                     std::string(static_cast<std::size_t>(kBarWidth - marks), '-') + "] ";
  const std::string percent = std::to_string(static_cast<int>(done * 100));
  line += std::string(3 - std::min<std::size_t>(percent.size(), 3), ' ');
  line += percent + " %  stage " + std::to_string(stage) + " of " + std::to_string(stages);
  if (done >= kMinFraction && elapsedSeconds >= kMinSeconds) {
    const double left = elapsedSeconds * (1 - done) / done;
    line += "  about " + std::to_string(static_cast<long>(std::ceil(left))) + " s left";
  }
  return line;
}

std::string StageAsJson(int stage, int stages, double fraction) {
  const double done = std::round(std::clamp(fraction, 0.0, 1.0) * 1000) / 1000;
  return nlohmann::ordered_json({{"stage", stage}, {"stages", stages}, {"done", done}}).dump();
}

ProgressBar::ProgressBar(ProgressForm form) : form_(form) {
  const int terminal = form != ProgressForm::kNone ? ::dup(STDERR_FILENO) : -1;
  if (terminal >= 0) terminal_ = ::fdopen(terminal, "w");
}

ProgressBar::~ProgressBar() {
  Wipe();
  if (terminal_ != nullptr) std::fclose(terminal_);
}

void ProgressCourse::Reach(int stage, double done) {
  stage_ = std::max(stage_, stage);
  stages_ = std::max(stages_, stage_);
  fraction_ = std::max(fraction_, (stage - 1 + done) / stages_);
}

void ProgressBar::SetStages(int stages) {
  stages_ = stages;
  course_.SetStages(parts_ * stages_);
}

void ProgressBar::SetPart(int part, int parts) {
  part_ = part;
  parts_ = parts;
  SetStages(stages_);
}

void ProgressBar::Show(int stage, double done) {
  course_.Reach(part_ * stages_ + stage, done);
  if (form_ == ProgressForm::kJson) {
    if (!IsDue()) return;
    const std::string line =
        StageAsJson(course_.Stage(), course_.Stages(), course_.Fraction()) + "\n";
    std::fputs(line.c_str(), terminal_);
    std::fflush(terminal_);
    return;
  }
  ShowLine([this](double elapsed) {
    return ProgressLine(course_.Stage(), course_.Stages(), course_.Fraction(), elapsed);
  });
}

bool ProgressBar::IsDue() {
  const Clock::time_point now = Clock::now();
  if (!IsOn() || now - lastTold_ < kInterval) return false;
  lastTold_ = now;
  return true;
}

void ProgressBar::ShowLine(const std::function<std::string(double)>& line) {
  if (!IsDue()) return;
  drawn_ = true;
  const double elapsed = std::chrono::duration<double>(lastTold_ - start_).count();
  std::fprintf(terminal_, "\r%s\033[K", line(elapsed).c_str());
  std::fflush(terminal_);
}

void ProgressBar::Wipe() {
  if (!drawn_) return;
  std::fputs("\r\033[K", terminal_);
  std::fflush(terminal_);
  drawn_ = false;
}

}  // namespace vitrell::cli
