// Random renders have the same hash on every platform: that of the literal render.
#include <gtest/gtest.h>

#include <iostream>
#include <optional>

#include "headless/effect_host.h"
#include "whole/literal_bridge.h"
#include "whole/picture_hash.h"
#include "whole/random_case.h"

namespace vitrell::whole {
namespace {

constexpr std::uint64_t kFirstSeed = 20260000;

// Of the literal renders, whatever processor, compiler, optimisation and C library made them.
struct KnownHash {
  int cases;
  std::uint64_t value;
};
constexpr KnownHash kFew = {200, 0x3D27CC0C2D3BD1C3ULL};
constexpr KnownHash kMany = {2000, 0x3AE9D8A1E272D891ULL};

void CompareWith(const KnownHash& known) {
  headless::EffectHost host{std::filesystem::path(VITRELL_MODULE_PATH)};
  PictureHash expected;
  PictureHash actual;
  for (int i = 0; i < known.cases; ++i) {
    RandomCase testCase = MakeRandomCase(kFirstSeed + static_cast<std::uint64_t>(i), host);
    std::optional<literal::World> custom;
    if (testCase.custom.has_value()) {
      custom = ToLiteral(*testCase.custom);
    }
    const literal::RenderOutcome outcome = literal::Render(MakeRenderInputs(
        host, testCase.input, testCase.output, custom.has_value() ? &*custom : nullptr,
        testCase.custom.has_value() ? testCase.custom->Def().world_flags : 0, testCase.options));
    expected.Add(static_cast<std::uint32_t>(outcome.error));
    expected.Add(outcome.output);
    const headless::RenderResult result =
        host.Render(testCase.input, testCase.output,
                    testCase.custom.has_value() ? &*testCase.custom : nullptr, testCase.options);
    actual.Add(static_cast<std::uint32_t>(result.error));
    actual.Add(ToLiteral(testCase.output));
  }
  std::cout << "hash of " << known.cases << " random renders from seed " << kFirstSeed
            << ": literal " << std::hex << expected.Value() << ", effect " << actual.Value()
            << std::dec << std::endl;
  EXPECT_EQ(expected.Value(), known.value);
  EXPECT_EQ(actual.Value(), known.value);
}

TEST(PlatformHashTest, RandomRendersAreTheSameEverywhere) { CompareWith(kFew); }

TEST(PlatformHashTest, ManyRandomRendersAreTheSameEverywhere) {
  if (CaseCount(kMany.cases) < kMany.cases) {
    GTEST_SKIP() << "VITRELL_RANDOM_RENDERS asks for fewer renders";
  }
  CompareWith(kMany);
}

}  // namespace
}  // namespace vitrell::whole
