// The measured cases of the trail.
#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {

std::vector<BenchCase> TrailCases() {
  return {Plain("Trail", "30", Alone("trail", 30)), Plain("Trail", "100", Alone("trail", 100))};
}

}  // namespace vitrell::bench
