// The mutex that lets only one thread render at a time.
#include "base/global_mutex.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace vitrell {
namespace {

TEST(GlobalMutexTest, OtherThreadsWaitForTheLastUnlock) {
  GlobalMutex mutex;
  mutex.lock();
  mutex.lock();
  std::atomic<bool> entered = false;
  std::thread other([&] {
    GlobalMutex same;  // Another object, the same mutex.
    const std::lock_guard<GlobalMutex> lock(same);
    entered = true;
  });
  mutex.unlock();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(entered);
  mutex.unlock();
  other.join();
  EXPECT_TRUE(entered);
}

TEST(GlobalMutexTest, LosesNoIncrement) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 500;  // Under Wine a thread may wait milliseconds for its turn.
  int count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&count] {
      GlobalMutex mutex;
      for (int round = 0; round < kRounds; ++round) {
        const std::lock_guard<GlobalMutex> outer(mutex);
        const std::lock_guard<GlobalMutex> inner(mutex);
        ++count;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(count, kThreads * kRounds);
}

}  // namespace
}  // namespace vitrell
