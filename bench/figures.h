// Medians of what a case is asked for, out of the renders of one case.
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
  // The middle value, the upper one of two; 0 without any.
  [[nodiscard]] double Get() const;
  // The smallest value; 0 without any.
  [[nodiscard]] double Best() const;

 private:
  std::vector<double> values_;
};

// How many passes the host was asked for.
int CountPasses(const Timing& timing);

// Seconds. Whole renders on more than one thread are time on the wall, everything else is processor
// time.
class Figures {
 public:
  explicit Figures(int threads) : wall_(threads > 1) {}

  // One render of the case and one of its floor.
  void Add(const BenchCase& benchCase, const Timing& own, const Timing& ofFloor);
  void AddOther(double seconds) { other.Add(seconds); }
  [[nodiscard]] double SecondsOf(const Timing& timing) const;

  Median whole;
  Median floor;
  Median other;      // What the case is measured beside.
  Median part;       // The stage's own pass, or the lens mask.
  Median floorPass;  // One pass of the floor.

 private:
  bool wall_;
};

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_FIGURES_H_
