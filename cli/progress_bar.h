// How far a render is: one line on a terminal, or lines for a program.
#ifndef VITRELL_CLI_PROGRESS_BAR_H_
#define VITRELL_CLI_PROGRESS_BAR_H_

#include <chrono>
#include <cstdio>
#include <functional>
#include <string>

namespace vitrell::cli {

// "[#######-----------------]  30 %  stage 4 of 13  about 6 s left": what ProgressBar shows.
// `fraction` is 0 to 1. Time left is told once a tenth is done and a second has passed.
std::string ProgressLine(int stage, int stages, double fraction, double elapsedSeconds);

// {"stage":4,"stages":13,"done":0.3}: the same for a program.
std::string StageAsJson(int stage, int stages, double fraction);

// How far the whole work is, 0 to 1. It never goes back, whatever is told of stages and their
// number: files may be read twice, and the effect may run more passes than were foreseen.
class ProgressCourse {
 public:
  void SetStages(int stages) { stages_ = stages; }
  // stage counts from 1; `done` is the part of this stage, 0 to 1.
  void Reach(int stage, double done);

  int Stage() const { return stage_; }
  int Stages() const { return stages_; }
  double Fraction() const { return fraction_; }

 private:
  int stage_ = 1;
  int stages_ = 1;
  double fraction_ = 0;
};

enum class ProgressForm {
  kNone,
  kLine,  // that is drawn over and over
  kJson,  // of stages, each on a line of its own
};

// Tells at most ten times a second. Does nothing when it is off. Used by one thread at a time.
class ProgressBar {
 public:
  explicit ProgressBar(bool on) : ProgressBar(on ? ProgressForm::kLine : ProgressForm::kNone) {}
  explicit ProgressBar(ProgressForm form);
  // Wipes the line.
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  bool IsOn() const { return terminal_ != nullptr; }
  void SetStages(int stages);
  // Of several pictures with the same stages this one is shown, counted from 0.
  void SetPart(int part, int parts);
  // stage counts from 1; `done` is the part of this stage, 0 to 1.
  void Show(int stage, double done);
  // Shows another line in its place, or nothing if it would come too soon after the one before.
  void ShowLine(const std::function<std::string(double elapsedSeconds)>& line);
  void Wipe();

 private:
  using Clock = std::chrono::steady_clock;

  // Whether it may tell something again; then the next time is counted from now.
  bool IsDue();

  // A duplicate of standard error, since QuietLibraries redirects the original.
  std::FILE* terminal_ = nullptr;
  bool drawn_ = false;
  ProgressForm form_;
  ProgressCourse course_;
  int stages_ = 1;
  int part_ = 0;
  int parts_ = 1;
  Clock::time_point start_ = Clock::now();
  Clock::time_point lastTold_{};
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_PROGRESS_BAR_H_
