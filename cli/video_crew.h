// The frames of a video on their way through the effect: several at once, taken out in the order in
// which they were put in.
//
// One job alone is done in this process, which needs no other then, unless the order says so.
// Several have a process each: the effect's lock is part of what it is. The processes are forked
// when the first frame is decoded and before any codec works on several threads: size and depth of
// the shared memory are known by then, and a fork beside other threads would leave locks that
// nobody opens.
#ifndef VITRELL_CLI_VIDEO_CREW_H_
#define VITRELL_CLI_VIDEO_CREW_H_

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/processor_budget.h"
#include "cli/report.h"
#include "cli/video_frame.h"
#include "cli/worker_pool.h"

namespace vitrell::cli {

class VideoCrew {
 public:
  // Renders the frame of a job into its slot. Must not throw.
  using Render = std::function<VideoFrameAnswer(const VideoFrameJob& job)>;
  // Called once where the frames will be rendered, with so many threads. The slots live as long as
  // the crew.
  using MakeRender = std::function<Render(const std::vector<VideoSlot>& slots, int threads)>;
  struct Order {
    std::string name;  // of the input, as messages show it
    VideoSize size;
    int jobs = 1;
    int threads = 1;     // of all
    int processors = 0;  // that all together may use, codecs too; 0: no limit
    bool apart = false;  // one job has a process of its own, too
  };

  // Forks, if there are several jobs: the process may have no other thread. Throws Failure (try
  // later) when the system gives no process.
  VideoCrew(Order order, const MakeRender& makeRender);

  // What one more job takes of memory, with all that waits for it.
  static std::int64_t BytesOfJob(const VideoSize& size);

  // Copies the decoded frame, if there is one. The job's slot and form are chosen here.
  void PutIn(VideoFrameJob job, const AVFrame* decoded);

  // Whether the oldest frame can be taken out; with one job that is when it is rendered.
  bool IsOldestDone();
  // Waits for any frame, for so long.
  void Wait(int milliseconds);
  // What comes next: the workers first, then the answers, then frames ahead of them. Has waited a
  // moment where there is nothing to do yet, and where the processors are used up.
  enum class Turn { kTakeOldest, kPutIn, kWaited, kEnd };
  Turn NextTurn(bool moreFrames);
  struct Done {
    VideoFrameAnswer answer;
    media::FrameHandle rendered;  // until the next frame is put in
    VideoFrameJob job;
  };
  Done TakeOldest();

  // Asks the workers to give up their frames.
  void Stop();
  // Whether no worker will have the oldest frame any more, nor those behind it: after Stop, and
  // after a worker died. TakeBack removes it.
  bool IsOldestGivenUp() const;
  VideoFrameJob TakeBack();

 private:
  struct Place {
    VideoFrameJob job;
    std::optional<VideoFrameAnswer> answer;
  };

  // Whether another frame can be put in.
  bool HasRoom() const { return !free_.empty(); }
  // Whether a worker would find nothing to do.
  bool WantsFrames() const { return waiting_.empty(); }
  void HandOut();
  // Whether the processors that may be used leave room for more work.
  bool HasProcessors();
  VideoFrameAnswer AnswerOf(const WorkerPool::Result& result, const VideoFrameJob& job) const;

  Order order_;
  std::vector<VideoSlot> slots_;
  std::vector<Place> places_;  // of the slots
  std::deque<int> free_;       // slots
  std::deque<int> used_;       // the oldest first
  std::deque<int> waiting_;    // those that no worker has yet
  Render alone_;
  std::optional<WorkerPool> pool_;
  std::vector<int> slotOf_;  // by worker
  ProcessorBudget budget_;
  StepClock clock_;
  bool stopped_ = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_CREW_H_
