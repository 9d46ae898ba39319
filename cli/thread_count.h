// How many threads the system gives.
#ifndef VITRELL_CLI_THREAD_COUNT_H_
#define VITRELL_CLI_THREAD_COUNT_H_

namespace vitrell::cli {

// At most `wanted`, at least 1. The system may allow fewer threads than there are cores; they are
// tried all at once.
int CountPossibleThreads(int wanted);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_THREAD_COUNT_H_
