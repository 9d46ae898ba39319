// What this process takes of the system. One source file for each system, process_usage_*.cpp.
#ifndef VITRELL_RELIABILITY_PROCESS_USAGE_H_
#define VITRELL_RELIABILITY_PROCESS_USAGE_H_

namespace vitrell::reliability {

struct ProcessUsage {
  long residentKb = 0;
  long heapKb = 0;  // What is allocated, without what the allocator keeps.
  long handles = 0;
  long threads = 0;
};

ProcessUsage MeasureUsage();

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_PROCESS_USAGE_H_
