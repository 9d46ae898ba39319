// Reads in a child process.
#include "media/trial_reading.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "media/quiet_libraries.h"

namespace vitrell::media {
namespace {

// For readers that hang on damaged files.
constexpr unsigned kMostSeconds = 120;

[[noreturn]] void TryAndEnd(const std::function<void()>& read) {
  constexpr rlimit kNoCore{0, 0};
  ::setrlimit(RLIMIT_CORE, &kNoCore);
  // The handlers of this program remove the output's file, which belongs to the original.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGALRM, SIGABRT}) {
    if (::signal(signal, SIG_DFL) == SIG_IGN && signal != SIGALRM) ::signal(signal, SIG_IGN);
  }
  ::alarm(kMostSeconds);
  try {
    // The library's threads do not exist in the child.
    SetLibraryThreads(1);
    read();
  } catch (...) {
    // The parent will meet the same error and report it.
  }
  ::_exit(0);
}

}  // namespace

bool SurvivesReading(const std::function<void()>& read) {
  const pid_t process = ::fork();
  if (process < 0) return true;
  if (process == 0) TryAndEnd(read);
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status);
}

}  // namespace vitrell::media
