// How far the frames of a sequence are, for people and for programs.
#ifndef VITRELL_CLI_SEQUENCE_PROGRESS_H_
#define VITRELL_CLI_SEQUENCE_PROGRESS_H_

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

#include "cli/arguments.h"
#include "cli/frame_job.h"

namespace vitrell::cli {

enum class ProgressKind { kNone, kBar, kPlain, kJson };

// As --progress tells; a bar where nothing is told and standard error is a terminal.
ProgressKind ProgressKindOf(const RenderArguments& arguments);

// The file of --status, empty for none. Parts of a run side by side have a file each:
// "status.2-of-8.json".
std::string StatusFileOf(const FrameArguments& arguments);

// "[###---------------------------]  10 %  24 of 240 frames  3.2 frames/s  about 68 s left". The
// time left is told once a second has passed and a frame was rendered.
std::string FramesLine(std::int64_t done, std::int64_t all, std::int64_t rendered,
                       double elapsedSeconds);

// Where `all` is 0 nobody knows how many there are, and nothing that follows from it is told.
// {"frame":1012,"state":"done","ms":41,"finished":12,"frames":240,"fps":3.2,"secondsLeft":71}
std::string FrameAsJson(const FrameAnswer& answer, std::int64_t done, std::int64_t all,
                        std::int64_t rendered, double elapsedSeconds);

class SequenceProgress {
 public:
  // `status`: a file that gets what kJson tells, too; empty for none. Throws Failure if it cannot
  // be written.
  SequenceProgress(ProgressKind kind, std::int64_t frames, const std::string& status);
  ~SequenceProgress();
  SequenceProgress(const SequenceProgress&) = delete;
  SequenceProgress& operator=(const SequenceProgress&) = delete;

  void Tell(const FrameAnswer& answer);
  // Where the number of frames is known later.
  void SetFrames(std::int64_t frames) { frames_ = frames; }
  // Prints a line to standard error without disturbing the bar.
  void Say(const std::string& line);
  void Wipe();

  double Seconds() const;

 private:
  using Clock = std::chrono::steady_clock;

  void Draw();

  ProgressKind kind_;
  std::int64_t frames_;
  std::int64_t done_ = 0;
  std::int64_t rendered_ = 0;  // without those that were skipped, which take no time
  std::FILE* status_ = nullptr;
  bool drawn_ = false;
  Clock::time_point start_ = Clock::now();
  Clock::time_point lastDrawn_{};
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_SEQUENCE_PROGRESS_H_
