// What the measured cases are to reach.
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
  std::string beside;  // What the figure is a multiple of.
  double limit = 1;
  // Nothing where it was not measured.
  std::function<std::optional<double>(const Results&, bool deep)> figure;
  double deepSlack = 1.5;  // The limit in 16 bit is this many times the one in 8 bit.
  bool atLeast = false;    // Whether the figure is to be the limit or more instead of or less.

  [[nodiscard]] double Limit(bool deep) const { return deep ? limit * deepSlack : limit; }
  [[nodiscard]] bool IsReached(double value, bool deep) const {
    return atLeast ? value >= Limit(deep) : value <= Limit(deep);
  }
};

std::vector<Target> AllTargets();

// The peers that do work like a case's, by their names in Results.
std::vector<std::string> PeersOf(const CaseName& what);

}  // namespace vitrell::report

#endif  // VITRELL_BENCH_REPORT_TARGETS_H_
