// What the render of a video tells: notes, progress, the report and the last line.
#ifndef VITRELL_CLI_VIDEO_TELLING_H_
#define VITRELL_CLI_VIDEO_TELLING_H_

#include <cstdint>
#include <cstdio>
#include <functional>

#include "cli/arguments.h"
#include "cli/failure.h"
#include "cli/notes.h"
#include "cli/progress_bar.h"
#include "cli/report.h"
#include "cli/sequence_progress.h"
#include "media/video_writer.h"

namespace vitrell::cli {

class VideoTelling {
 public:
  // The arguments must outlive it.
  explicit VideoTelling(const RenderArguments& arguments);

  Notes& GetNotes() { return notes_; }
  // Facts and times are put in by those who know them.
  Report& GetReport() { return report_; }
  StepClock& Clock() { return clock_; }

  // One more frame is written, of so many; 0: nobody knows.
  void TellFrame(const FrameAnswer& frame, std::int64_t frames);
  // One cannot be.
  void TellFailedFrame(const FrameAnswer& frame, std::int64_t frames);
  // What the writer lost since the last call.
  void TellLosses(const media::VideoWriter& writer);
  // At the end, in one of these ways.
  void TellResult(int width, int height);
  void TellSkipped();
  // The failure itself is told by whoever catches it.
  void TellFailure(const Failure& failure);

 private:
  void WriteReport();
  // Where the last line goes.
  std::FILE* Terminal() const;
  void TellSummary(int width, int height) const;

  const RenderArguments& arguments_;
  ProgressBar bar_;
  SequenceProgress lines_;  // all kinds of progress but the bar
  Notes notes_;
  Report report_;
  StepClock clock_;
  std::size_t toldLosses_ = 0;
};

// Runs the work of a video. What goes wrong becomes a Failure with the exit codes of videos (75 for
// too little memory, 143 for SIGTERM), of which the report tells, too; before that `close` is
// called.
void RunVideoWork(const RenderArguments& arguments, VideoTelling& telling,
                  const std::function<void()>& work, const std::function<void()>& close);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_TELLING_H_
