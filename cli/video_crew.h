// The frames of a video on their way through the effect: several at once, taken out in the order in
// which they were put in.
//
// One job alone is done in this process, which needs no other then. Several have a process each:
// the effect's lock is part of what it is. The processes are forked when the first frame is decoded
// and before any codec works on several threads: size and depth of the shared memory are known by
// then, and a fork beside other threads would leave locks that nobody opens.
#ifndef VITRELL_CLI_VIDEO_CREW_H_
#define VITRELL_CLI_VIDEO_CREW_H_

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "cli/arguments.h"
#include "cli/video_frame.h"
#include "cli/video_shot.h"
#include "cli/video_worker.h"
#include "cli/worker_pool.h"
#include "headless/effect_host.h"

namespace vitrell::cli {

class VideoCrew {
 public:
  // Forks, if there are several jobs: the process may have no other thread. The three must outlive
  // it. Throws Failure (try later) when the system gives no process.
  VideoCrew(const RenderArguments& arguments, headless::EffectHost& host, const VideoShot& shot,
            int jobs);

  // What one more job takes of memory, with all that waits for it.
  static std::int64_t BytesOfJob(const VideoShot& shot);

  // Whether another frame can be put in.
  bool HasRoom() const { return !free_.empty(); }
  bool IsEmpty() const { return order_.empty(); }
  // Whether a worker would find nothing to do.
  bool WantsFrames() const { return waiting_.empty(); }
  // Copies the decoded frame. The job's slot and form are chosen here.
  void PutIn(VideoFrameJob job, const AVFrame& decoded);

  // Whether the oldest frame can be taken out; with one job that is when it is rendered.
  bool IsOldestDone();
  // Waits for any frame, for so long.
  void Wait(int milliseconds);
  struct Done {
    VideoFrameAnswer answer;
    media::FrameHandle rendered;  // until the next frame is put in
  };
  Done TakeOldest();

  // Asks the workers to give up their frames.
  void Stop();

 private:
  struct Place {
    VideoFrameJob job;
    std::optional<VideoFrameAnswer> answer;
  };

  void HandOut();
  VideoFrameAnswer AnswerOf(const WorkerPool::Result& result, const VideoFrameJob& job) const;

  const VideoShot& shot_;
  std::vector<VideoSlot> slots_;
  std::vector<Place> places_;  // of the slots
  std::deque<int> free_;       // slots
  std::deque<int> order_;      // those in use, the oldest first
  std::deque<int> waiting_;    // those that no worker has yet
  std::optional<VideoWorker> alone_;
  std::optional<WorkerPool> pool_;
  std::vector<int> slotOf_;  // by worker
  bool stopped_ = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_CREW_H_
