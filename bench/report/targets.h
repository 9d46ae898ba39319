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
  std::string beside;               // The reference that the figure is a multiple of.
  std::optional<double> limit;      // In 8 bits; without one the figure is only told.
  std::optional<double> deepLimit;  // In 16 bits.
  // Empty if it was not measured.
  std::function<std::optional<double>(const Results&, bool deep)> figure;
  bool atLeast = false;  // The limits are minima, not maxima.

  [[nodiscard]] std::optional<double> Limit(bool deep) const { return deep ? deepLimit : limit; }
};

std::vector<Target> AllTargets();

// The peers that do the nearest equivalent of a case, by their names in Results.
std::vector<std::string> PeersOf(const CaseName& what);

}  // namespace vitrell::report

#endif  // VITRELL_BENCH_REPORT_TARGETS_H_
