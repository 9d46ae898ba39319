// Sharing threads and memory among frames.
#include "cli/job_count.h"

#include <algorithm>

#include "cli/worker_pool.h"
#include "media/picture_limits.h"

namespace vitrell::cli {
namespace {

// What a process takes beside its pictures.
constexpr std::int64_t kProcessBytes = std::int64_t{64} << 20;

// Runs in a child process, because readers start threads. 0 for a file that cannot be read.
std::int64_t CostOf(const std::string& file) {
  WorkerPool pool([](int) -> WorkerPool::Work {
    return [](const std::string& name) { return std::to_string(media::EstimateBytesOf(name)); };
  });
  pool.SetSize(1);
  pool.Give(0, file);
  for (;;) {
    for (const WorkerPool::Result& result : pool.Wait(-1)) {
      return result.answer ? std::stoll(*result.answer) : 0;
    }
  }
}

}  // namespace

int CountJobs(const RenderArguments& arguments, const std::string& file, std::int64_t frames) {
  return CountJobs(arguments, frames, [&] { return CostOf(file); });
}

int CountJobs(const RenderArguments& arguments, std::int64_t frames,
              const std::function<std::int64_t()>& bytesOfJob) {
  const int wanted = arguments.frames.jobs > 0 ? arguments.frames.jobs : arguments.threads;
  const std::int64_t most = frames > 0 ? std::min<std::int64_t>(wanted, frames) : wanted;
  if (most < 2) return 1;
  const std::int64_t memory =
      arguments.frames.memory > 0 ? arguments.frames.memory : media::AvailableMemory() / 2;
  const std::int64_t fit = memory / (bytesOfJob() + kProcessBytes);
  return static_cast<int>(std::clamp<std::int64_t>(fit, 1, most));
}

int ThreadsOf(int job, int jobs, int threads) {
  return std::max(1, threads / jobs + (job < threads % jobs ? 1 : 0));
}

}  // namespace vitrell::cli
