// Ctrl-C and termination requests.
//
// The first signal asks the work to stop, which it does between rows or stages. A second one, or
// two seconds without a stop (a long stage that cannot be interrupted), ends the process at once
// with exit code 130. Either way no half-written file stays.
#ifndef VITRELL_CLI_INTERRUPT_H_
#define VITRELL_CLI_INTERRUPT_H_

#include <atomic>

namespace vitrell::cli {

// Handles SIGINT, SIGTERM and SIGHUP from now on, but for those that are ignored, and ignores
// SIGXFSZ and SIGPIPE so that failing writes are told as errors.
void WatchSignals();

// Instead, for a process whose workers do the work: signals are only remembered, and the work is
// stopped by whoever asks for them.
void WatchSignalsForWorkers();
// How many came, and which was the first; 0 for none.
int CaughtSignals();
int FirstSignal();

// Instead, in a worker: it stops when it is told so by SIGTERM. What a terminal sends to all of its
// processes is left to the one that started it.
void WatchSignalsAsWorker();

// How long a stop may take before the process is ended; 2 until then.
void GrantSecondsToStop(unsigned seconds);

// True once a signal came.
const std::atomic<bool>& InterruptFlag();

// Throws Failure (cancelled) once a signal came.
void ThrowIfInterrupted();

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_INTERRUPT_H_
