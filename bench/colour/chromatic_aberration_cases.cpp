// The measured cases of chromatic aberration.
#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {

std::vector<BenchCase> ChromaticAberrationCases() {
  return {Pass("ChromaticAberration", "10", AllOff(Stage("chromatic-aberration", 10, "red-cyan")),
               0, 2)};
}

}  // namespace vitrell::bench
