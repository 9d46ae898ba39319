// A few threads that stay alive between passes.
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

  // Runs job(0) on the calling thread and job(1) to job(threads - 1) on others, all at the same
  // time, and returns when all are done. The job must not throw. A job that calls Run itself does
  // that round alone, one number after the other.
  void Run(int threads, const std::function<void(int)>& job);

 private:
  void Work(int worker);

  std::mutex mutex_;
  std::condition_variable start_;
  std::condition_variable done_;
  std::vector<std::thread> workers_;
  const std::function<void(int)>* job_ = nullptr;
  std::uint64_t round_ = 0;
  int wanted_ = 0;   // Workers with a lower number than this take part in the round.
  int running_ = 0;  // Workers of this round that are not done yet.
  bool stop_ = false;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_THREAD_POOL_H_
