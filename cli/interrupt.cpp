// Signal handlers; everything they call is safe inside a handler.
#include "cli/interrupt.h"

#include <unistd.h>

#include <csignal>

#include "cli/failure.h"
#include "media/unfinished_file.h"

namespace vitrell::cli {
namespace {

std::atomic<unsigned> g_graceSeconds{2};
std::atomic<bool> g_interrupted{false};
std::atomic<int> g_caught{0};
std::atomic<int> g_first{0};
std::atomic<bool> g_tellsTermination{false};
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<unsigned>::is_always_lock_free,
              "the handlers must not lock");

void EndAtOnce(int) {
  media::RemoveUnfinishedFile();
  ::_exit(g_tellsTermination && g_first == SIGTERM ? kTerminated : kCancelled);
}

void AskToStop(int signal) {
  if (g_interrupted.exchange(true)) EndAtOnce(signal);
  g_first = signal;
  ::alarm(g_graceSeconds);
}

void Remember(int signal) {
  if (g_caught.fetch_add(1) == 0) g_first = signal;
  g_interrupted = true;
}

void Handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  ::sigaction(signal, &action, nullptr);
}

// A signal that the parent process made ignored, as nohup does, stays ignored.
void HandleUnlessIgnored(int signal, void (*handler)(int)) {
  struct sigaction before {};
  if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) return;
  Handle(signal, handler);
}

}  // namespace

void WatchSignals() {
  HandleUnlessIgnored(SIGINT, AskToStop);
  HandleUnlessIgnored(SIGTERM, AskToStop);
  HandleUnlessIgnored(SIGHUP, AskToStop);
  Handle(SIGALRM, EndAtOnce);
  Handle(SIGXFSZ, SIG_IGN);
  Handle(SIGPIPE, SIG_IGN);
}

void WatchSignalsForWorkers() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) HandleUnlessIgnored(signal, Remember);
}

int CaughtSignals() { return g_caught; }
int FirstSignal() { return g_first; }

void WatchSignalsAsWorker() {
  g_interrupted = false;
  Handle(SIGINT, SIG_IGN);
  Handle(SIGHUP, SIG_IGN);
  Handle(SIGTERM, AskToStop);
}

void TellTerminationApart() { g_tellsTermination = true; }

void GrantSecondsToStop(unsigned seconds) { g_graceSeconds = seconds; }

const std::atomic<bool>& InterruptFlag() { return g_interrupted; }

void ThrowIfInterrupted() {
  if (g_interrupted) throw Failure(kCancelled, "cancelled; no file was written.");
}

}  // namespace vitrell::cli
