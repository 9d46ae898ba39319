// The thread that answers while the hand moves.
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

#include "panel/model/control_watch.h"
#include "panel/model/exact_worker.h"
#include "panel/model/frame_effect.h"
#include "panel/model/frame_store.h"
#include "panel/model/preview_budget.h"
#include "panel/model/renderer.h"

namespace vitrell::panel {

// Renders frames so small that they are there at once, and hands what remains to an ExactWorker.
class RenderWorker {
 public:
  // `answered` is called on one of the threads after each answer that Take can give.
  RenderWorker(const std::shared_ptr<const headless::EffectModule>& module,
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
  void SetCacheBudget(std::int64_t bytes) { store_.SetBudget(bytes); }
  // The next answer; nothing if there is none yet.
  std::optional<RenderAnswer> Take();

 private:
  using Clock = std::chrono::steady_clock;
  struct Job {
    std::uint64_t number = 0;
    RenderRequest request;
  };
  // A small frame that is under way.
  struct Running {
    std::uint64_t number = 0;  // of its request
    Clock::time_point start;
  };
  enum class Ending { kAnswered, kOutdated, kTooSlow };

  void Run(std::shared_ptr<const headless::EffectModule> module);
  // Nothing when the worker ends.
  std::optional<Job> WaitForJob();
  void Serve(FrameEffect& effect, const Job& job);
  bool ReadFrame(const RenderRequest& request, RenderAnswer& answer);
  bool GiveKept(const ExactWorker::Order& order);
  // Whether the exact frame is still to be rendered.
  bool GiveSmall(FrameEffect& effect, const ExactWorker::Order& order);
  Ending Render(FrameEffect& effect, ExactWorker::Order order, int divisor, bool mayBeTooSlow);
  void HandOver(ExactWorker::Order order);
  void TakeExact(const ExactWorker::Order& order);
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
  bool ends_ = false;
  std::function<void()> answered_;
  std::atomic<bool> cancel_ = false;  // what the running effect is told

  // The worker's own.
  PreviewBudget budget_;
  ControlWatch watch_;
  QString previewed_;  // key of the small frame that was given last

  FrameStore store_;
  std::shared_ptr<SmallerFrames> smaller_ = std::make_shared<SmallerFrames>();
  ExactWorker exact_;
  std::thread thread_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_RENDER_WORKER_H_
