// Linux: a fork of this process runs the cases and shares a page with it.
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <new>
#include <stdexcept>

#include "reliability/guarded_cases.h"
#include "reliability/sanitizers.h"

namespace vitrell::reliability {
namespace {

constexpr int kSecondsOfProcessor = kSanitized ? 20 : 4;
// Wall-clock limit, for a case that waits forever; generous, since other programs may slow it down.
constexpr int kSecondsByTheClock = 60;
// Cases run on one thread, so that a few of them are enough under the thread sanitizer.
constexpr std::size_t kStep = kThreadSanitizer ? 8 : 1;
constexpr std::size_t kMostComplaints = 10;
constexpr std::size_t kLongestComplaint = 400;

// Written by the child, read by the parent.
struct Progress {
  std::size_t current;
  char complaint[kLongestComplaint];
};

void SetTimeBound() {
  itimerval bound = {};
  bound.it_value.tv_sec = kSecondsOfProcessor;
  setitimer(ITIMER_PROF, &bound, nullptr);
  alarm(kSecondsByTheClock);
}

// Sanitizers reserve terabytes of address space.
void SetMemoryBound() {
  if (kSanitized) return;
  constexpr rlim_t kMostBytes = rlim_t{1} << 30;
  const rlimit bound = {kMostBytes, kMostBytes};
  setrlimit(RLIMIT_AS, &bound);
}

// Runs cases until one of them complains, then exits.
[[noreturn]] void RunInChild(const std::vector<GuardedCase>& cases, std::size_t first,
                             Progress* progress) {
  SetMemoryBound();
  for (std::size_t i = first; i < cases.size(); i += kStep) {
    progress->current = i;
    SetTimeBound();
    const std::string complaint = cases[i].run();
    if (!complaint.empty()) {
      std::strncpy(progress->complaint, complaint.c_str(), kLongestComplaint - 1);
      std::exit(EXIT_SUCCESS);
    }
  }
  progress->current = cases.size();
  alarm(0);
  std::exit(EXIT_SUCCESS);
}

std::string DescribeEnd(int status) {
  if (WIFSIGNALED(status)) {
    const int signal = WTERMSIG(status);
    if (signal == SIGPROF) return "takes too long";
    if (signal == SIGALRM) return "waits for ever";
    return std::string("ends with the signal ") + strsignal(signal);
  }
  return "ends the process with " + std::to_string(WEXITSTATUS(status));
}

class SharedProgress {
 public:
  SharedProgress() {
    void* const memory =
        mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::bad_alloc();
    progress_ = static_cast<Progress*>(memory);
  }
  ~SharedProgress() { munmap(progress_, sizeof(Progress)); }
  SharedProgress(const SharedProgress&) = delete;
  SharedProgress& operator=(const SharedProgress&) = delete;
  Progress* operator->() const { return progress_; }
  Progress* get() const { return progress_; }

 private:
  Progress* progress_;
};

}  // namespace

std::vector<std::string> RunGuarded(const std::vector<GuardedCase>& cases) {
  std::vector<std::string> complaints;
  const SharedProgress progress;
  std::size_t next = 0;
  while (next < cases.size() && complaints.size() < kMostComplaints) {
    std::fflush(nullptr);
    std::cout.flush();
    *progress.get() = {};
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no process for the cases");
    if (child == 0) RunInChild(cases, next, progress.get());
    int status = 0;
    if (waitpid(child, &status, 0) != child) throw std::runtime_error("lost the cases' process");
    const bool ended = WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS;
    const std::size_t current = progress->current;
    if (ended && progress->complaint[0] == '\0') {
      if (current != cases.size()) complaints.emplace_back("the process left early");
      break;
    }
    const std::string name = current < cases.size() ? cases[current].name : "after the last case";
    complaints.push_back(name + ": " + (ended ? progress->complaint : DescribeEnd(status)));
    next = current + kStep;
  }
  return complaints;
}

}  // namespace vitrell::reliability
