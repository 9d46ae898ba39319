// Medians of the measured times over the renders of one case.
#include "bench/figures.h"

#include <algorithm>

namespace vitrell::bench {
namespace {

// Counted from the end of the previous pass or copy, so as to include the effect's preparation.
// What the effect cleans up after a pass counts towards the next one.
double PassSeconds(const Timing& timing, int pass) {
  double begin = 0;
  for (const FrameCall& call : timing.process.calls) {
    if (call.isPass && pass-- == 0) return call.endSeconds - begin;
    begin = call.endSeconds;
  }
  return 0;
}

// Everything that a render does before it copies the layer is the lens mask.
double BeforeLayerCopySeconds(const Timing& timing) {
  for (const FrameCall& call : timing.process.calls) {
    if (call.readsLayer) return call.beginSeconds;
  }
  return 0;
}

}  // namespace

double Median::Get() const {
  if (values_.empty()) return 0;
  std::vector<double> sorted = values_;
  std::sort(sorted.begin(), sorted.end());
  return sorted[sorted.size() / 2];
}

double Median::Best() const {
  return values_.empty() ? 0 : *std::min_element(values_.begin(), values_.end());
}

int CountPasses(const Timing& timing) {
  const auto& calls = timing.process.calls;
  return static_cast<int>(
      std::count_if(calls.begin(), calls.end(), [](const FrameCall& call) { return call.isPass; }));
}

double Figures::SecondsOf(const Timing& timing) const {
  return wall_ ? timing.wallSeconds : timing.process.seconds;
}

void Figures::Add(const BenchCase& benchCase, const Timing& own, const Timing& ofFloor) {
  whole.Add(SecondsOf(own));
  floor.Add(SecondsOf(ofFloor));
  const int pass = benchCase.pass >= 0 ? benchCase.pass : CountPasses(ofFloor) - 1;
  floorPass.Add(PassSeconds(ofFloor, pass));
  if (benchCase.pass >= 0) part.Add(PassSeconds(own, pass));
  if (benchCase.mask) part.Add(BeforeLayerCopySeconds(own) - BeforeLayerCopySeconds(ofFloor));
}

}  // namespace vitrell::bench
