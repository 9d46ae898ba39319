// The measured cases of lightness.
#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {

std::vector<BenchCase> LightnessCases() {
  return {Pass("Lightness", "40", Alone("lightness", 40), 0, 2)};
}

}  // namespace vitrell::bench
