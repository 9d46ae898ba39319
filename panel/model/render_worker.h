// The thread that renders, and what it does next.
#ifndef VITRELL_PANEL_MODEL_RENDER_WORKER_H_
#define VITRELL_PANEL_MODEL_RENDER_WORKER_H_

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "panel/model/frame_effect.h"
#include "panel/model/frame_store.h"
#include "panel/model/preview_budget.h"
#include "panel/model/renderer.h"

namespace vitrell::panel {

class RenderWorker {
 public:
  // `answered` is called on the worker's thread after each answer that Take can give.
  RenderWorker(std::shared_ptr<const headless::EffectModule> module,
               std::function<void()> answered);
  ~RenderWorker();
  RenderWorker(const RenderWorker&) = delete;
  RenderWorker& operator=(const RenderWorker&) = delete;

  // What is expected to be quick and takes longer than this gives way to a newer request.
  static constexpr std::chrono::milliseconds kPatience{100};

  std::uint64_t Put(RenderRequest request);
  void Cancel();
  // Stops what runs for an older request, as Put does. True if it may go on for a moment: then this
  // is to be called again.
  bool StopOutdated();
  void SetCacheBudget(std::int64_t bytes);
  // The next answer; nothing if there is none yet.
  std::optional<RenderAnswer> Take();

 private:
  using Clock = std::chrono::steady_clock;
  struct Job {
    std::uint64_t number = 0;
    RenderRequest request;
  };
  // A render that is under way.
  struct Running {
    std::uint64_t number = 0;
    bool quick = false;
    Clock::time_point start;
  };

  void Run(std::shared_ptr<const headless::EffectModule> module);
  // Nothing when the worker ends.
  std::optional<Job> WaitForJob();
  void Serve(FrameEffect& effect, const Job& job);
  // While the hand rests: what the next drag would have to make first.
  void Prepare(FrameEffect& effect, const Job& job, const RenderAnswer& answer);
  // Whether a newer request came, at the latest after this time.
  bool IsOutdated(const Job& job, Clock::duration wait);
  bool ReadFrame(const Job& job, RenderAnswer& answer);
  bool GiveCached(const Job& job, RenderAnswer answer);
  // True when the answer was given; false when a newer request came first, for which a quick
  // render does not stop at once.
  bool Render(FrameEffect& effect, const Job& job, int divisor, bool quick, RenderAnswer answer);
  void Give(RenderAnswer answer);
  // StopOutdated, with the lock.
  bool StopIfOutdated();

  // Shared between the threads, under the lock.
  std::mutex mutex_;
  std::condition_variable wake_;
  std::optional<Job> next_;
  std::deque<RenderAnswer> answers_;
  std::uint64_t newest_ = 0;  // number of a request
  std::optional<Running> running_;
  std::int64_t cacheBytes_ = kUsualCacheBytes;
  bool ends_ = false;
  std::function<void()> answered_;
  std::atomic<bool> cancel_ = false;  // what the running effect is told

  // The worker's own.
  PreviewBudget budget_;
  FrameStore store_;

  std::thread thread_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_RENDER_WORKER_H_
