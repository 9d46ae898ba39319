// How many threads the system gives.
#ifndef VITRELL_CLI_THREAD_COUNT_H_
#define VITRELL_CLI_THREAD_COUNT_H_

namespace vitrell::cli {

// At least 1 and at most `wanted`. The system may allow fewer threads than there are cores, so this
// starts them all at once to find out.
int CountPossibleThreads(int wanted);

// How many the encoder of a video gets of `budget` threads; 0: the user gave none. What some codecs
// write depends on this number, so that it follows the command and not the cores of the machine: a
// render gives the same bytes on all.
int CountEncoderThreads(int budget);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_THREAD_COUNT_H_
