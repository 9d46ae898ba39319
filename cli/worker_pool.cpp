// Starting workers, and talking to them.
#include "cli/worker_pool.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "cli/failure.h"
#include "cli/interrupt.h"
#include "media/output_file.h"

namespace vitrell::cli {
namespace {

// A message is its length and then its bytes.
using Length = std::uint32_t;

bool Send(int socket, std::string_view message) {
  const auto length = static_cast<Length>(message.size());
  std::string bytes(sizeof length, '\0');
  std::memcpy(bytes.data(), &length, sizeof length);
  bytes.append(message);
  return media::WriteAll(socket, bytes);
}

bool ReadAll(int socket, char* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t count = ::read(socket, bytes, size);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

std::optional<std::string> Receive(int socket) {
  Length length = 0;
  if (!ReadAll(socket, reinterpret_cast<char*>(&length), sizeof length)) return std::nullopt;
  std::string message(length, '\0');
  if (!ReadAll(socket, message.data(), message.size())) return std::nullopt;
  return message;
}

// 0 for a process that has ended.
double SecondsOf(clockid_t clock) {
  timespec time{};
  if (::clock_gettime(clock, &time) != 0) return 0;
  constexpr double kNanosecond = 1e-9;
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * kNanosecond;
}

bool HasOtherThreads() {
  std::error_code error;
  const std::filesystem::directory_iterator threads("/proc/self/task", error);
  return !error && std::distance(threads, {}) > 1;
}

}  // namespace

WorkerPool::~WorkerPool() {
  for (Worker& worker : workers_) End(worker);
}

void WorkerPool::SetSize(int workers) {
  workers_.resize(std::max(workers_.size(), static_cast<std::size_t>(std::max(workers, 1))));
}

void WorkerPool::StartAll() {
  for (int i = 0; i < Size(); ++i) {
    if (workers_.at(static_cast<std::size_t>(i)).process < 0) Start(i);
  }
}

int WorkerPool::Busy() const {
  return static_cast<int>(std::count_if(workers_.begin(), workers_.end(),
                                        [](const Worker& worker) { return worker.busy; }));
}

double WorkerPool::ProcessorSeconds() const {
  double seconds = 0;
  for (const Worker& worker : workers_) {
    clockid_t clock{};
    if (worker.process < 0 || ::clock_getcpuclockid(worker.process, &clock) != 0) continue;
    seconds += SecondsOf(clock);
  }
  return seconds;
}

std::optional<int> WorkerPool::FindIdle() const {
  const auto idle = std::find_if(workers_.begin(), workers_.end(),
                                 [](const Worker& worker) { return !worker.busy; });
  if (idle == workers_.end()) return std::nullopt;
  return static_cast<int>(idle - workers_.begin());
}

void WorkerPool::Give(int worker, std::string_view job) {
  Worker& chosen = workers_.at(static_cast<std::size_t>(worker));
  if (chosen.process < 0) Start(worker);
  // One that just died is noticed when its answer is waited for.
  static_cast<void>(Send(chosen.socket, job));
  chosen.busy = true;
}

void WorkerPool::Start(int worker) {
  if (HasOtherThreads()) throw std::logic_error("a process with threads cannot start workers");
  std::array<int, 2> ends{};
  const auto fail = [](const std::string& cause) {
    throw Failure(kTryLater, "no process can be started (" + cause + "). Use fewer --jobs.");
  };
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    fail(media::LastSystemError());
  }
  std::fflush(nullptr);
  const pid_t process = ::fork();
  if (process == 0) {
    ::close(ends[0]);
    Serve(worker, ends[1]);
  }
  const std::string cause = media::LastSystemError();
  ::close(ends[1]);
  if (process < 0) {
    ::close(ends[0]);
    fail(cause);
  }
  workers_.at(static_cast<std::size_t>(worker)) = {process, ends[0], false};
}

void WorkerPool::Serve(int worker, int socket) const {
  WatchSignalsAsWorker();
  // Another worker would otherwise never see the end of its jobs.
  for (const Worker& other : workers_) {
    if (other.socket >= 0) ::close(other.socket);
  }
  {
    const Work work = makeWork_(worker);
    while (const std::optional<std::string> job = Receive(socket)) {
      if (!Send(socket, work(*job))) break;
    }
  }
  std::fflush(nullptr);
  ::_exit(0);
}

int WorkerPool::End(Worker& worker) {
  int status = 0;
  if (worker.process < 0) return status;
  ::close(worker.socket);
  while (::waitpid(worker.process, &status, 0) < 0 && errno == EINTR) {
  }
  worker = {};
  return status;
}

WorkerPool::Result WorkerPool::Take(int worker) {
  Worker& done = workers_.at(static_cast<std::size_t>(worker));
  Result result;
  result.worker = worker;
  result.answer = Receive(done.socket);
  done.busy = false;
  if (!result.answer) result.waitStatus = End(done);
  return result;
}

std::vector<WorkerPool::Result> WorkerPool::Wait(int milliseconds) {
  std::vector<pollfd> sockets;
  std::vector<int> numbers;
  for (int i = 0; i < Size(); ++i) {
    const Worker& worker = workers_.at(static_cast<std::size_t>(i));
    if (!worker.busy) continue;
    sockets.push_back({worker.socket, POLLIN, 0});
    numbers.push_back(i);
  }
  std::vector<Result> results;
  if (::poll(sockets.data(), sockets.size(), milliseconds) <= 0) return results;
  for (std::size_t i = 0; i < sockets.size(); ++i) {
    if (sockets[i].revents != 0) results.push_back(Take(numbers[i]));
  }
  return results;
}

void WorkerPool::StopAll() const {
  for (const Worker& worker : workers_) {
    if (worker.busy) ::kill(worker.process, SIGTERM);
  }
}

}  // namespace vitrell::cli
