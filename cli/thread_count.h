// How many threads the system gives.
#ifndef VITRELL_CLI_THREAD_COUNT_H_
#define VITRELL_CLI_THREAD_COUNT_H_

namespace vitrell::cli {

// At least 1 and at most `wanted`. The system may allow fewer threads than there are cores, so this
// starts them all at once to find out.
int CountPossibleThreads(int wanted);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_THREAD_COUNT_H_
