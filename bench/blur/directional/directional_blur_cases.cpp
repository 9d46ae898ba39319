// The measured cases of the directional blur.
#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {

namespace {

// Down columns at 0 and along rows at 90 degrees.
Settings Directed(double amount, double degrees) {
  return Joined(Alone("directional-blur", amount), {{"directional-blur.direction", degrees}});
}

}  // namespace

std::vector<BenchCase> DirectionalBlurCases() {
  return {
      Plain("DirectionalBlur", "20", Directed(20, 0)),
      Plain("DirectionalBlur", "200", Directed(200, 0), Directed(20, 0)),
      Plain("DirectionalBlur", "200-45deg", Directed(200, 45)),
      Plain("DirectionalBlur", "200-90deg", Directed(200, 90)),
  };
}

}  // namespace vitrell::bench
