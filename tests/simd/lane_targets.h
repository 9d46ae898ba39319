// Tests that run once for each vector width that an engine is compiled for.
#ifndef VITRELL_TESTS_SIMD_LANE_TARGETS_H_
#define VITRELL_TESTS_SIMD_LANE_TARGETS_H_

#include <gtest/gtest.h>

#include <string>

#include "simd/lane_target.h"

namespace vitrell {

inline std::string LaneTargetName(LaneTarget target) {
  switch (target) {
    case LaneTarget::kBaseline:
      return "Baseline";
    case LaneTarget::kAvx2:
      return "Avx2";
    case LaneTarget::kAvx512:
      return "Avx512";
  }
  return "?";
}

using LaneTargetTest = testing::TestWithParam<LaneTarget>;

}  // namespace vitrell

// Skips the test if this processor has no such engine; the test uses the pointer afterwards.
#define VITRELL_SKIP_WITHOUT(engine)                                                   \
  if ((engine) == nullptr) {                                                           \
    GTEST_SKIP() << "this processor has no engine for " << LaneTargetName(GetParam()); \
  }                                                                                    \
  static_assert(true)

// The targets follow the suite's name.
#define VITRELL_FOR_LANE_TARGETS(suite, ...)                                      \
  INSTANTIATE_TEST_SUITE_P(Targets, suite, testing::Values(__VA_ARGS__),          \
                           [](const testing::TestParamInfo<LaneTarget>& target) { \
                             return LaneTargetName(target.param);                 \
                           })

#endif  // VITRELL_TESTS_SIMD_LANE_TARGETS_H_
