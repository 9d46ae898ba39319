// Random whole renders by the module, judged bit for bit by the literal render.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "headless/effect_host.h"
#include "literal/host_calls.h"
#include "whole/literal_bridge.h"
#include "whole/random_case.h"

namespace vitrell::whole {
namespace {

constexpr int kShards = 8;
constexpr int kDefaultCases = 5000;
constexpr std::uint64_t kDefaultSeed = 20260000;
constexpr int kReportedCases = 3;  // A shard stops after this many failed cases.

// The first line in which two lists differ, with what stands around it.
std::string FirstDifference(const std::vector<std::string>& expected,
                            const std::vector<std::string>& actual) {
  const auto line = [](const std::vector<std::string>& lines, std::size_t i) {
    return i < lines.size() ? lines[i] : std::string("(nothing)");
  };
  for (std::size_t i = 0; i < expected.size() || i < actual.size(); ++i) {
    if (line(expected, i) != line(actual, i)) {
      return "call " + std::to_string(i + 1) + "\n  after    " +
             (i == 0 ? "(nothing)" : line(actual, i - 1)) + "\n  expected " + line(expected, i) +
             "\n  actual   " + line(actual, i);
    }
  }
  return "";
}

// Renders one case and compares everything observable about it.
void CheckCase(std::uint64_t seed, headless::EffectHost& host) {
  RandomCase testCase = MakeRandomCase(seed, host);
  std::optional<literal::World> custom;
  if (testCase.custom.has_value()) {
    custom = ToLiteral(*testCase.custom);
  }
  const literal::RenderInputs inputs = MakeRenderInputs(
      host, testCase.input, testCase.output, custom.has_value() ? &*custom : nullptr,
      testCase.custom.has_value() ? testCase.custom->Def().world_flags : 0, testCase.options);
  const literal::RenderOutcome expected = literal::Render(inputs);
  const literal::RenderTime time{testCase.options.currentTime, testCase.options.timeStep,
                                 testCase.options.timeScale};
  const headless::RenderResult result =
      host.Render(testCase.input, testCase.output,
                  testCase.custom.has_value() ? &*testCase.custom : nullptr, testCase.options);

  SCOPED_TRACE(Describe(testCase, host));
  EXPECT_EQ(result.error, expected.error) << result.description;
  EXPECT_EQ(headless::DescribeDifference(FromLiteral(expected.output), testCase.output), "");
  EXPECT_EQ(testCase.output.Damage().value_or(""), "");
  EXPECT_EQ(
      FirstDifference(literal::ExpectedHostCalls(inputs, time), headless::CallTexts(result.calls)),
      "");
  EXPECT_EQ(result.complaints, std::vector<std::string>());
  const PF_LRect extent = result.inputRecord.extent_hint;
  EXPECT_EQ(extent.left, expected.inputExtent.left);
  EXPECT_EQ(extent.top, expected.inputExtent.top);
  EXPECT_EQ(extent.right, expected.inputExtent.right);
  EXPECT_EQ(extent.bottom, expected.inputExtent.bottom);
}

// Of the running test so far; checks that succeed leave no part result.
int FailedChecks() {
  return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

// A thorough run asks for more; VITRELL_RANDOM_RENDERS, which is for all random tests, goes first.
int RenderCount() {
  const char* const more = std::getenv("VITRELL_LITERAL_RENDERS");
  return CaseCount(more == nullptr ? kDefaultCases : std::atoi(more));
}

class RandomRenderTest : public testing::TestWithParam<int> {};

TEST_P(RandomRenderTest, MatchesTheLiteralRender) {
  const std::uint64_t baseSeed = BaseSeed(kDefaultSeed);
  const int count = RenderCount();
  ASSERT_GT(count, 0) << "VITRELL_RANDOM_RENDERS and VITRELL_LITERAL_RENDERS must be positive";
  const int first = GetParam() * count / kShards;
  const int end = (GetParam() + 1) * count / kShards;
  if (first == end) {
    GTEST_SKIP() << "too few cases for this shard";
  }
  std::cout << "seeds " << baseSeed + static_cast<std::uint64_t>(first) << " to "
            << baseSeed + static_cast<std::uint64_t>(end - 1) << std::endl;
  headless::EffectHost host{std::filesystem::path(VITRELL_MODULE_PATH)};
  int failedCases = 0;
  for (int i = first; i < end && failedCases < kReportedCases; ++i) {
    const int before = FailedChecks();
    CheckCase(baseSeed + static_cast<std::uint64_t>(i), host);
    failedCases += FailedChecks() > before ? 1 : 0;
  }
}

TEST(WholeRenderTest, NullBasicSuiteEndsBeforeAnyHostCall) {
  headless::EffectHost host{std::filesystem::path(VITRELL_MODULE_PATH)};
  RandomCase testCase = MakeRandomCase(kDefaultSeed, host);
  const headless::WorldBuffer untouched = testCase.output;
  host.GetFaults().SetNullBasicSuite(true);
  const headless::RenderResult refused =
      host.Render(testCase.input, testCase.output, nullptr, testCase.options);
  EXPECT_EQ(refused.error, PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_EQ(headless::CallTexts(refused.calls), std::vector<std::string>());
  EXPECT_TRUE(headless::SamePixels(untouched, testCase.output));
  host.GetFaults().Clear();
  CheckCase(kDefaultSeed, host);
}

INSTANTIATE_TEST_SUITE_P(Shards, RandomRenderTest, testing::Range(0, kShards));

}  // namespace
}  // namespace vitrell::whole
