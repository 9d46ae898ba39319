// The effect itself behind this host: its parameter tree and an orderly first frame.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/effect_host.h"

namespace vitrell::headless {
namespace {

using testing::ElementsAre;

TEST(VitrellModuleTest, ParametersHaveTheExpectedPaths) {
  const EffectHost host{std::filesystem::path(VITRELL_MODULE_PATH)};
  ASSERT_EQ(host.Parameters().size(), 65U);
  EXPECT_EQ(host.IndexOf("lens.type"), 2);
  EXPECT_EQ(host.IndexOf("lens.invert-alpha"), 5);
  EXPECT_EQ(host.IndexOf("fast-blur.amount"), 16);
  EXPECT_EQ(host.IndexOf("fast-blur.use-lens-as-blur-map"), 17);
  EXPECT_EQ(host.IndexOf("realistic-blur.iris-sides"), 22);
  EXPECT_EQ(host.IndexOf("optical-distortion.center-of-the-lens"), 31);
  EXPECT_EQ(host.IndexOf("color.color"), 53);
  EXPECT_EQ(host.IndexOf("chromatic-aberration.red-cyan"), 58);
  EXPECT_EQ(host.IndexOf("intensity"), 63);
  EXPECT_EQ(host.IndexOf("mode"), 64);
}

TEST(VitrellModuleTest, DefaultFrameIsOrderlyInBothDepthsBehindGuardPages) {
  EffectHost host{std::filesystem::path(VITRELL_MODULE_PATH)};
  for (const bool deep : {false, true}) {
    for (const GuardPages pages : {GuardPages::kNone, GuardPages::kAtEnd, GuardPages::kAtStart}) {
      const WorldLayout layout = {.rowPadding = 4, .guardPages = pages};
      WorldBuffer input(61, 37, deep, layout), output(61, 37, deep, layout);
      input.FillNoise(21);
      RenderOptions options;
      options.threads = 2;
      options.newWorldLayout = layout;
      const RenderResult result = host.Render(input, output, nullptr, options);
      EXPECT_EQ(result.description, "");
      EXPECT_THAT(result.complaints, ElementsAre());
      EXPECT_FALSE(SamePixels(input, output));
    }
  }
  EXPECT_THAT(host.Complaints(), ElementsAre());
}

TEST(VitrellModuleTest, OrdersOfPassesGiveTheSameFrame) {
  EffectHost host{std::filesystem::path(VITRELL_MODULE_PATH)};
  WorldBuffer input(40, 30, false), expected(40, 30, false), output(40, 30, false);
  input.FillNoise(3);
  ASSERT_TRUE(host.Render(input, expected).Ok());
  for (const IterateOrder order :
       {IterateOrder::kReversedRows, IterateOrder::kShuffledPixels, IterateOrder::kSinglePixels}) {
    for (const int threads : {1, 2, 7}) {
      RenderOptions options;
      options.order = order;
      options.threads = threads;
      output.FillBytes(0);
      ASSERT_TRUE(host.Render(input, output, nullptr, options).Ok());
      EXPECT_EQ(DescribeDifference(expected, output), "");
    }
  }
}

}  // namespace
}  // namespace vitrell::headless
