// Threads that wait between rounds of work.
#include "headless/thread_pool.h"

#include <algorithm>
#include <system_error>

namespace vitrell::headless {
namespace {

thread_local bool g_inRound = false;

// Marks the current thread as taking part in a round.
class RoundScope {
 public:
  RoundScope() { g_inRound = true; }
  ~RoundScope() { g_inRound = false; }
  RoundScope(const RoundScope&) = delete;
  RoundScope& operator=(const RoundScope&) = delete;
};

}  // namespace

ThreadPool::~ThreadPool() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    stop_ = true;
  }
  start_.notify_all();
  for (std::thread& worker : workers_) worker.join();
}

void ThreadPool::Run(int threads, const std::function<void(int)>& job) {
  if (g_inRound) {
    for (int worker = 0; worker < threads; ++worker) job(worker);
    return;
  }
  const RoundScope scope;
  int helped = 0;
  if (threads > 1) {
    const std::lock_guard<std::mutex> lock(mutex_);
    StartWorkers(threads - 1);
    helped = std::min(threads - 1, static_cast<int>(workers_.size()));
    job_ = &job;
    wanted_ = helped + 1;
    running_ = helped;
    ++round_;
    start_.notify_all();
  }
  job(0);
  // Those for which there was no thread.
  for (int worker = helped + 1; worker < threads; ++worker) job(worker);
  if (threads > 1) {
    std::unique_lock<std::mutex> lock(mutex_);
    done_.wait(lock, [this] { return running_ == 0; });
    job_ = nullptr;
  }
}

void ThreadPool::StartWorkers(int count) {
  try {
    while (static_cast<int>(workers_.size()) < count) {
      const int worker = static_cast<int>(workers_.size()) + 1;
      workers_.emplace_back([this, worker] { Work(worker); });
    }
  } catch (const std::system_error&) {
    // The system gives no more threads now; the round goes on with those there are.
  }
}

void ThreadPool::Work(int worker) {
  std::uint64_t seen = 0;
  std::unique_lock<std::mutex> lock(mutex_);
  while (true) {
    start_.wait(lock, [&] { return stop_ || (round_ != seen && job_ != nullptr); });
    if (stop_) return;
    seen = round_;
    if (worker >= wanted_) continue;
    const std::function<void(int)>* job = job_;
    lock.unlock();
    {
      const RoundScope scope;
      (*job)(worker);
    }
    lock.lock();
    if (--running_ == 0) done_.notify_one();
  }
}

}  // namespace vitrell::headless
