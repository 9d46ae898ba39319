// The measured cases of the optical distortion.
#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {

std::vector<BenchCase> OpticalDistortionCases() {
  return {Plain("OpticalDistortion", "90deg", Alone("optical-distortion", 90))};
}

}  // namespace vitrell::bench
