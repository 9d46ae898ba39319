// The measured cases of the lens stage.
#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {

std::vector<BenchCase> LensStageCases() {
  const Settings litInCircle = AllOff(Joined(Lens(kCircle, 50), Stage("lightness", 40)));
  return {Pass("Lens", "feather50", litInCircle, 2, 3)};
}

}  // namespace vitrell::bench
