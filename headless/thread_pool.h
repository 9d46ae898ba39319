// A pool of threads that stay alive between passes.
#ifndef VITRELL_HEADLESS_THREAD_POOL_H_
#define VITRELL_HEADLESS_THREAD_POOL_H_

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace vitrell::headless {

class ThreadPool {
 public:
  ThreadPool() = default;
  ~ThreadPool();
  ThreadPool(const ThreadPool&) = delete;
  ThreadPool& operator=(const ThreadPool&) = delete;

  // Runs job(0) on the calling thread and job(1) to job(threads - 1) on others, all at once, and
  // returns when all have finished. If the system starts fewer threads, the calling thread runs the
  // remaining jobs one after the other. The job must not throw. A nested Run from within a job
  // executes its jobs one after the other on that thread.
  void Run(int threads, const std::function<void(int)>& job);

 private:
  void StartWorkers(int count);
  void Work(int worker);

  std::mutex mutex_;
  std::condition_variable start_;
  std::condition_variable done_;
  std::vector<std::thread> workers_;
  const std::function<void(int)>* job_ = nullptr;
  std::uint64_t round_ = 0;
  int wanted_ = 0;   // Workers with a number below this take part in the round.
  int running_ = 0;  // Workers still busy in this round.
  bool stop_ = false;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_THREAD_POOL_H_
