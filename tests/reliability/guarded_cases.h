// Cases that may crash or hang without taking the test with them.
#ifndef VITRELL_RELIABILITY_GUARDED_CASES_H_
#define VITRELL_RELIABILITY_GUARDED_CASES_H_

#include <functional>
#include <string>
#include <vector>

namespace vitrell::reliability {

struct GuardedCase {
  std::string name;
  std::function<std::string()> run;  // A complaint, or an empty text when all is well.
};

// Runs the cases in a process of their own, each with a bound on its time: on Linux four seconds of
// processor time, twenty with a sanitizer, and all with a gigabyte of addresses; on Windows a
// minute by the clock. After a case that crashes or hangs the next ones go on in a fresh process.
// Under the thread sanitizer only every eighth case runs. What went wrong, each with the name of
// its case; at most ten of them.
std::vector<std::string> RunGuarded(const std::vector<GuardedCase>& cases);

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_GUARDED_CASES_H_
