// Memory use of the process, and the share of the host's worlds.
#ifndef VITRELL_BENCH_PROCESS_MEMORY_H_
#define VITRELL_BENCH_PROCESS_MEMORY_H_

#include <vector>

#include "headless/call_log.h"

namespace vitrell::bench {

// Returns free memory to the system, resets the peak and returns the resident size in bytes. Throws
// std::runtime_error if the system does not report it.
double BeginPeakBytes();
// The peak resident size since then.
double PeakBytes();

// The largest total size of worlds from new_world that existed at once.
double MostWorldBytes(const std::vector<headless::HostCall>& calls, bool deep);

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_PROCESS_MEMORY_H_
