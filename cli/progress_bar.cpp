// Drawing the progress line.
#include "cli/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>

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

ProgressBar::ProgressBar(bool on) {
  const int terminal = on ? ::dup(STDERR_FILENO) : -1;
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
  ShowLine([this](double elapsed) {
    return ProgressLine(course_.Stage(), course_.Stages(), course_.Fraction(), elapsed);
  });
}

void ProgressBar::ShowLine(const std::function<std::string(double)>& line) {
  const Clock::time_point now = Clock::now();
  if (!IsOn() || now - lastDrawn_ < kInterval) return;
  lastDrawn_ = now;
  drawn_ = true;
  const double elapsed = std::chrono::duration<double>(now - start_).count();
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
