// Processes that work side by side, each on one job at a time.
//
// They are forked from the prepared program, so that each has the loaded effect, with its lock and
// its data, for itself. One that dies takes its job with it and nothing else; it is replaced. The
// process that owns the pool may have no other thread whenever it may start a worker: a forked
// process would find locks that nobody opens.
#ifndef VITRELL_CLI_WORKER_POOL_H_
#define VITRELL_CLI_WORKER_POOL_H_

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vitrell::cli {

class WorkerPool {
 public:
  // What a worker makes of a job. Both are any bytes, and small: pictures go through files or
  // through memory that was shared before. Must not throw.
  using Work = std::function<std::string(const std::string& job)>;
  // Called in the worker's process, once.
  using MakeWork = std::function<Work(int worker)>;

  // What a worker has done with its job.
  struct Result {
    int worker = 0;
    // Nothing when the worker died over it.
    std::optional<std::string> answer;
    int waitStatus = 0;  // as waitpid tells it, of one that died
  };

  // No process yet.
  explicit WorkerPool(MakeWork makeWork) : makeWork_(std::move(makeWork)) {}
  // Lets the workers end, and waits for them.
  ~WorkerPool();
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  // From now on so many workers may run; never fewer than before. They start with their first job.
  void SetSize(int workers);
  // Starts all of them now, for a process that is about to get other threads. Throws as Give.
  void StartAll();
  int Size() const { return static_cast<int>(workers_.size()); }
  int Busy() const;
  // What the workers that run now have used of all processors.
  double ProcessorSeconds() const;
  // A worker without a job; nothing if all have one.
  std::optional<int> FindIdle() const;
  // Starts the worker if need be. Throws Failure (try later) when the system gives no process.
  void Give(int worker, std::string_view job);
  // Waits until a worker is done with its job, for so long, or until a signal comes.
  std::vector<Result> Wait(int milliseconds);
  // Asks all workers to give up their jobs. They still answer, or die.
  void StopAll() const;

 private:
  struct Worker {
    pid_t process = -1;  // -1: not started
    int socket = -1;     // the end of this process
    bool busy = false;
  };

  void Start(int worker);
  [[noreturn]] void Serve(int worker, int socket) const;
  Result Take(int worker);
  static int End(Worker& worker);

  MakeWork makeWork_;
  std::vector<Worker> workers_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_WORKER_POOL_H_
