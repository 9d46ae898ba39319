// The measured cases of the fast blur.
#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {

std::vector<BenchCase> FastBlurCases() {
  return {
      Plain("FastBlur", "r5", Alone("fast-blur", 5)),
      AlsoHuge(Plain("FastBlur", "r20", Alone("fast-blur", 20))),
      Plain("FastBlur", "r500", Alone("fast-blur", 500), Alone("fast-blur", 5)),
      Plain("FastBlurInLens", "r20-feather50", InCircle("fast-blur", 20, 50)),
      Plain("FastBlurMapped", "r20-feather50", Mapped("fast-blur", 20, 50),
            InCircle("fast-blur", 20, 50)),
      // With amount / 100 >= twice the feather the fast blur does not follow the lens: the lens
      // mask is strengthened instead.
      Plain("FastBlurMapped", "r200-feather50", Mapped("fast-blur", 200, 50),
            Mapped("fast-blur", 20, 50)),
      Plain("FastBlurMapped", "r20-feather150", Mapped("fast-blur", 20, 150)),
      Plain("FastBlurMapped", "r200-feather150", Mapped("fast-blur", 200, 150),
            Mapped("fast-blur", 20, 150)),
  };
}

}  // namespace vitrell::bench
