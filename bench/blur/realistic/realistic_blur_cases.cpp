// The measured cases of the realistic blur.
#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {

std::vector<BenchCase> RealisticBlurCases() {
  return {
      AlsoHuge(Plain("RealisticBlur", "r20", Alone("realistic-blur", 20))),
      Plain("RealisticBlur", "r50", Alone("realistic-blur", 50)),
      Plain("RealisticBlur", "r100", Alone("realistic-blur", 100)),
      Plain("RealisticBlurMapped", "r20", Mapped("realistic-blur", 20, 100)),
      Plain("RealisticBlurMapped", "r50", Mapped("realistic-blur", 50, 100)),
  };
}

}  // namespace vitrell::bench
