// The measured cases of the directional blur.
#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {

std::vector<BenchCase> DirectionalBlurCases() {
  return {
      Plain("DirectionalBlur", "20", Alone("directional-blur", 20)),
      Plain("DirectionalBlur", "200", Alone("directional-blur", 200),
            Alone("directional-blur", 20)),
  };
}

}  // namespace vitrell::bench
