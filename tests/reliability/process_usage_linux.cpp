// Linux: reads /proc/self.
#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "reliability/process_usage.h"

namespace vitrell::reliability {
namespace {

long EntriesIn(const char* folder) {
  return static_cast<long>(std::distance(std::filesystem::directory_iterator(folder),
                                         std::filesystem::directory_iterator()));
}

}  // namespace

ProcessUsage MeasureUsage() {
  malloc_trim(0);  // Memory cached by the allocator is not a leak.
  ProcessUsage usage;
  std::ifstream statm("/proc/self/statm");
  long total = 0;
  long resident = 0;
  statm >> total >> resident;
  usage.residentKb = resident * (sysconf(_SC_PAGESIZE) / 1024);
  const struct mallinfo2 heap = mallinfo2();
  usage.heapKb = static_cast<long>((heap.uordblks + heap.hblkhd) / 1024);
  usage.handles = EntriesIn("/proc/self/fd");
  usage.threads = EntriesIn("/proc/self/task");
  return usage;
}

}  // namespace vitrell::reliability
