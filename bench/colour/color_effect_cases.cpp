// The measured cases of the colour wash.
#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {

std::vector<BenchCase> ColorEffectCases() {
  return {Pass("Color", "50", AllOff(Stage("color", 50, "opacity")), 0, 2)};
}

}  // namespace vitrell::bench
