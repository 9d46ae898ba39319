// The same bytes on any number of threads and in any order of pixels.
#include <gtest/gtest.h>

#include <iostream>
#include <string>

#include "headless/effect_host.h"
#include "whole/random_case.h"

namespace vitrell::whole {
namespace {

constexpr int kDefaultCases = 400;
constexpr std::uint64_t kDefaultSeed = 77000;

struct Way {
  int threads;
  headless::IterateOrder order;
};

constexpr Way kWays[] = {
    {1, headless::IterateOrder::kReversedRows},   {1, headless::IterateOrder::kShuffledPixels},
    {2, headless::IterateOrder::kRows},           {2, headless::IterateOrder::kSinglePixels},
    {7, headless::IterateOrder::kShuffledPixels}, {7, headless::IterateOrder::kSinglePixels},
};

TEST(ThreadOrderTest, SameBytesOnAnyThreadsInAnyOrder) {
  const std::uint64_t baseSeed = BaseSeed(kDefaultSeed);
  const int count = CaseCount(kDefaultCases);
  ASSERT_GT(count, 0) << "VITRELL_RANDOM_RENDERS must be a positive number";
  std::cout << "seeds from " << baseSeed << std::endl;
  headless::EffectHost host{std::filesystem::path(VITRELL_MODULE_PATH)};
  for (int i = 0; i < count; ++i) {
    const std::uint64_t seed = baseSeed + static_cast<std::uint64_t>(i);
    RandomCase testCase = MakeRandomCase(seed, host);
    SCOPED_TRACE(Describe(testCase, host));
    const headless::WorldBuffer untouched = testCase.output;
    const headless::WorldBuffer* custom = testCase.custom.has_value() ? &*testCase.custom : nullptr;
    const headless::RenderResult plain =
        host.Render(testCase.input, testCase.output, custom, testCase.options);
    for (const Way& way : kWays) {
      headless::RenderOptions options = testCase.options;
      options.threads = way.threads;
      options.order = way.order;
      options.seed = seed;
      headless::WorldBuffer output = untouched;
      output.SetExtentHint(testCase.output.Def().extent_hint);
      const headless::RenderResult result = host.Render(testCase.input, output, custom, options);
      ASSERT_EQ(result.error, plain.error);
      ASSERT_EQ(headless::DescribeDifference(testCase.output, output), "")
          << way.threads << " threads, order " << static_cast<int>(way.order);
    }
  }
}

}  // namespace
}  // namespace vitrell::whole
