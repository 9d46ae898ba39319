// The thread that renders exact frames, once the hand rests.
#ifndef VITRELL_PANEL_MODEL_EXACT_WORKER_H_
#define VITRELL_PANEL_MODEL_EXACT_WORKER_H_

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "panel/model/frame_effect.h"
#include "panel/model/renderer.h"
#include "panel/model/smaller_frames.h"

namespace vitrell::panel {

// Has an effect of its own, so that a frame whose end has to be waited for delays no smaller one.
// Yields the processor to everything else of the program.
class ExactWorker {
 public:
  struct Order {
    RenderRequest request;
    RenderAnswer answer;  // holds the request's number and its frame
    QString key;          // of FrameStore
  };
  // Gets orders with whole answers, on the worker's thread.
  using Taker = std::function<void(const Order&)>;

  // Afterwards it makes smaller copies of the frame, which the next drag would need first.
  ExactWorker(std::shared_ptr<const headless::EffectModule> module,
              std::shared_ptr<SmallerFrames> smaller, Taker taker);
  // Cancels and waits for what runs.
  ~ExactWorker();
  ExactWorker(const ExactWorker&) = delete;
  ExactWorker& operator=(const ExactWorker&) = delete;

  // Instead of all orders before. During a drag it waits for a rest of the hand first.
  void Put(Order order);
  // Forgets what waits and cancels what runs.
  void Stop();

 private:
  void Run(const std::shared_ptr<const headless::EffectModule>& module);
  // Nothing when the worker ends.
  std::optional<Order> WaitForOrder();
  // False if the order was stopped meanwhile.
  bool WaitForRest();
  void Serve(FrameEffect& effect, Order& order);

  std::mutex mutex_;
  std::condition_variable wake_;
  std::optional<Order> next_;
  bool ends_ = false;
  std::atomic<bool> stop_ = false;  // written with the lock; what the running effect is told
  std::shared_ptr<SmallerFrames> smaller_;
  Taker taker_;

  std::thread thread_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_EXACT_WORKER_H_
