// Ctrl-C and termination requests.
//
// The first signal asks the work to stop, which it does between rows or stages. A second one, or
// two seconds without a stop (a long stage that cannot be interrupted), ends the process at once
// with exit code 130. Either way no half-written file stays.
#ifndef VITRELL_CLI_INTERRUPT_H_
#define VITRELL_CLI_INTERRUPT_H_

#include <atomic>

namespace vitrell::cli {

// From now on handles SIGINT, SIGTERM and SIGHUP, except those that are already ignored, and
// ignores SIGXFSZ and SIGPIPE, so that the writes that cause them fail with an error instead.
void WatchSignals();

// The alternative for a process with workers: signals are only recorded, and the caller polls them
// and stops the workers.
void WatchSignalsForWorkers();
// How many came until now.
int CaughtSignals();

// The signal that came first, however they are watched; 0 for none.
int FirstSignal();

// The alternative for a worker: it stops on SIGTERM only. Signals that a terminal sends to the
// whole process group are left to the parent.
void WatchSignalsAsWorker();

// From now on a process that SIGTERM ends at once does so with 143.
void TellTerminationApart();

// How long a stop may take before the process is ended; 2 until then.
void GrantSecondsToStop(unsigned seconds);

// True once a signal came.
const std::atomic<bool>& InterruptFlag();

// Throws Failure (cancelled) once a signal came.
void ThrowIfInterrupted();

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_INTERRUPT_H_
