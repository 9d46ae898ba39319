// Signal handlers; everything they call is safe inside a handler.
#include "cli/interrupt.h"

#include <unistd.h>

#include <array>
#include <climits>
#include <csignal>

#include "cli/failure.h"

namespace vitrell::cli {
namespace {

constexpr unsigned kGraceSeconds = 2;

std::atomic<bool> g_interrupted{false};
std::array<char, PATH_MAX> g_unfinishedFile{};
std::atomic<bool> g_hasUnfinishedFile{false};
static_assert(std::atomic<bool>::is_always_lock_free, "the handlers must not lock");

void EndAtOnce(int) {
  if (g_hasUnfinishedFile) ::unlink(g_unfinishedFile.data());
  ::_exit(kCancelled);
}

void AskToStop(int signal) {
  if (g_interrupted.exchange(true)) EndAtOnce(signal);
  ::alarm(kGraceSeconds);
}

void Handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  ::sigaction(signal, &action, nullptr);
}

}  // namespace

void WatchSignals() {
  Handle(SIGINT, AskToStop);
  Handle(SIGTERM, AskToStop);
  Handle(SIGHUP, AskToStop);
  Handle(SIGALRM, EndAtOnce);
  Handle(SIGXFSZ, SIG_IGN);
  Handle(SIGPIPE, SIG_IGN);
}

const std::atomic<bool>& InterruptFlag() { return g_interrupted; }

void ThrowIfInterrupted() {
  if (g_interrupted) throw Failure(kCancelled, "cancelled; no file was written.");
}

void RemoveWhenKilled(const std::string& file) {
  g_hasUnfinishedFile = false;
  if (file.empty() || file.size() >= g_unfinishedFile.size()) return;
  file.copy(g_unfinishedFile.data(), file.size());
  g_unfinishedFile[file.size()] = '\0';
  g_hasUnfinishedFile = true;
}

}  // namespace vitrell::cli
