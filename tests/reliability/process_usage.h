// The resources that this process uses. Each system has its own source file, process_usage_*.cpp.
#ifndef VITRELL_RELIABILITY_PROCESS_USAGE_H_
#define VITRELL_RELIABILITY_PROCESS_USAGE_H_

namespace vitrell::reliability {

struct ProcessUsage {
  long residentKb = 0;
  long heapKb = 0;  // Allocated memory, without the allocator's cache.
  long handles = 0;
  long threads = 0;
};

ProcessUsage MeasureUsage();

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_PROCESS_USAGE_H_
