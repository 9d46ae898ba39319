// Counting threads that can be started.
#include "cli/thread_count.h"

#include <algorithm>
#include <future>
#include <system_error>
#include <thread>
#include <vector>

namespace vitrell::cli {

int CountPossibleThreads(int wanted) {
  std::promise<void> end;
  const std::shared_future<void> ended = end.get_future().share();
  std::vector<std::thread> threads;
  try {
    while (static_cast<int>(threads.size()) + 1 < wanted) {
      threads.emplace_back([ended] { ended.wait(); });
    }
  } catch (const std::system_error&) {
    // No more threads; those that have started count.
  }
  end.set_value();
  for (std::thread& thread : threads) thread.join();
  return static_cast<int>(threads.size()) + 1;
}

int CountEncoderThreads(int budget) {
  // More cost quality, since each works on its own part of a frame, or on a frame without knowing
  // all of those before it.
  constexpr int kUsual = 4;
  return CountPossibleThreads(budget > 0 ? std::min(budget, kUsual) : kUsual);
}

}  // namespace vitrell::cli
