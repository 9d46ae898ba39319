// Medians of the measured times over the renders of one case.
#ifndef VITRELL_BENCH_FIGURES_H_
#define VITRELL_BENCH_FIGURES_H_

#include <cstddef>
#include <vector>

#include "bench/bench_frame.h"
#include "bench/cases.h"

namespace vitrell::bench {

class Median {
 public:
  void Add(double value) { values_.push_back(value); }
  [[nodiscard]] std::size_t Count() const { return values_.size(); }
  // The median, or the upper of the two middle values; 0 if there is none.
  [[nodiscard]] double Get() const;
  // The smallest value; 0 if there is none.
  [[nodiscard]] double Best() const;

 private:
  std::vector<double> values_;
};

// Number of passes that the host ran.
int CountPasses(const Timing& timing);

// All in seconds: wall-clock time for whole renders on several threads, processor time otherwise.
class Figures {
 public:
  explicit Figures(int threads) : wall_(threads > 1) {}

  // Adds one render of the case and one of its floor.
  void Add(const BenchCase& benchCase, const Timing& own, const Timing& ofFloor);
  void AddOther(double seconds) { other.Add(seconds); }
  [[nodiscard]] double SecondsOf(const Timing& timing) const;

  Median whole;
  Median floor;
  Median other;      // The settings that the case is compared with.
  Median part;       // The stage's own pass, or the lens mask.
  Median floorPass;  // One pass of the floor.

 private:
  bool wall_;
};

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_FIGURES_H_
