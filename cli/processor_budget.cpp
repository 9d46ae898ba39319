// The account of seconds.
#include "cli/processor_budget.h"

#include <algorithm>
#include <utility>

namespace vitrell::cli {

ProcessorBudget::ProcessorBudget(int processors)
    : processors_(processors), room_(processors * kRestSeconds) {}

void ProcessorBudget::Account(double clock, double work) {
  const double passed = std::max(clock - std::exchange(clock_, clock), 0.0);
  // The work of a process that has ended is no longer told.
  const double done = std::max(work - std::exchange(work_, work), 0.0);
  if (!std::exchange(begun_, true)) return;
  room_ = std::min(room_ + passed * processors_ - done, processors_ * kRestSeconds);
}

}  // namespace vitrell::cli
