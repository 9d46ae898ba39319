// How much memory the process holds, and what the host's worlds take of it.
#ifndef VITRELL_BENCH_PROCESS_MEMORY_H_
#define VITRELL_BENCH_PROCESS_MEMORY_H_

#include <vector>

#include "headless/call_log.h"

namespace vitrell::bench {

// Gives free memory back to the system, then starts a new peak. Returns the resident bytes. Throws
// std::runtime_error where the system does not tell.
double BeginPeakBytes();
// The most resident bytes since then.
double PeakBytes();

// The most bytes of worlds made by new_world that lived at a time.
double MostWorldBytes(const std::vector<headless::HostCall>& calls, bool deep);

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_PROCESS_MEMORY_H_
