// The performance targets of the measured cases.
#ifndef VITRELL_BENCH_REPORT_TARGETS_H_
#define VITRELL_BENCH_REPORT_TARGETS_H_

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "bench/report/results.h"

namespace vitrell::report {

struct Target {
  std::string what;
  std::string beside;  // The reference that the figure is a multiple of.
  double limit = 1;
  // Empty if it was not measured.
  std::function<std::optional<double>(const Results&, bool deep)> figure;
  double deepSlack = 1.5;  // The 16-bit limit is this multiple of the 8-bit one.
  bool atLeast = false;    // The limit is a minimum, not a maximum.

  [[nodiscard]] double Limit(bool deep) const { return deep ? limit * deepSlack : limit; }
  [[nodiscard]] bool IsReached(double value, bool deep) const {
    return atLeast ? value >= Limit(deep) : value <= Limit(deep);
  }
};

std::vector<Target> AllTargets();

// The peers that do the nearest equivalent of a case, by their names in Results.
std::vector<std::string> PeersOf(const CaseName& what);

}  // namespace vitrell::report

#endif  // VITRELL_BENCH_REPORT_TARGETS_H_
