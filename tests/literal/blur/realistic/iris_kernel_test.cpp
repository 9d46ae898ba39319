// The literal iris against numbers worked out by hand.
#include "literal/blur/realistic/iris_kernel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "literal/base/types.h"
#include "literal/picture.h"

namespace vitrell::literal {
namespace {

using ::testing::ElementsAre;

// A disc: every angle lies in the round part.
Settings DiscSettings(float amount) {
  Settings settings;
  settings.realisticVisible = 1;
  settings.realisticAmount = amount / 100.0F;
  settings.irisRoundness = 1;
  return settings;
}

float GridAt(const std::vector<float>& grid, int radius, int x, int y) {
  const int index = (y + radius) * (2 * radius + 1) + x + radius;
  return grid.at(static_cast<std::size_t>(index));
}

TEST(LiteralIrisKernelTest, KeepsTruncatedSinglePrecisionRadius) {
  for (const int amount : {53, 59, 105, 106, 117, 118}) {
    EXPECT_EQ(MaximumRadius(DiscSettings(static_cast<float>(amount))), amount - 1);
  }
  for (const int amount : {1, 52, 54, 100, 119, 500}) {
    EXPECT_EQ(MaximumRadius(DiscSettings(static_cast<float>(amount))), amount);
  }
}

TEST(LiteralIrisKernelTest, RadiusZeroIsOneWeightAndTwoDifferences) {
  const std::vector<float> grid = KernelGrid(0, DiscSettings(1), kMaths);
  EXPECT_THAT(grid, ElementsAre(1.0F));
  const std::vector<WeightPoint> points = DifferencePoints(grid, 0);
  ASSERT_EQ(points.size(), 2U);
  EXPECT_EQ(points[0].x, -1);
  EXPECT_EQ(points[0].y, 0);
  EXPECT_EQ(points[0].weight, -1.0F);
  EXPECT_EQ(points[1].x, 0);
  EXPECT_EQ(points[1].y, 0);
  EXPECT_EQ(points[1].weight, 1.0F);
}

TEST(LiteralIrisKernelTest, DifferencesSkipSmallStepsButNotSmallEnds) {
  const std::vector<float> grid = {0.00005F, 0.0001F, 0.5F,  //
                                   0.0F,     1.0F,    1.0F,  //
                                   0.25F,    0.25F,   0.00003F};
  const std::vector<WeightPoint> points = DifferencePoints(grid, 1);
  ASSERT_EQ(points.size(), 8U);
  const std::array<std::array<int, 2>, 8> expected = {
      {{-2, -1}, {0, -1}, {1, -1}, {-1, 0}, {1, 0}, {-2, 1}, {0, 1}, {1, 1}}};
  for (std::size_t i = 0; i < points.size(); ++i) {
    EXPECT_EQ(points[i].x, expected[i][0]) << i;
    EXPECT_EQ(points[i].y, expected[i][1]) << i;
  }
  EXPECT_EQ(points[0].weight, -0.00005F);
  EXPECT_EQ(points[1].weight, 0.0001F - 0.5F);
  EXPECT_EQ(points[3].weight, -1.0F);
  EXPECT_EQ(points[7].weight, 0.00003F);
}

TEST(LiteralIrisKernelTest, FullRoundnessIsADiscWithARisingEdge) {
  const std::vector<float> grid = KernelGrid(2, DiscSettings(2), kMaths);
  for (const int sign : {-1, 1}) {
    EXPECT_EQ(GridAt(grid, 2, sign, 0), 1.0F);
    EXPECT_EQ(GridAt(grid, 2, sign, sign), 1.0F);
    EXPECT_EQ(GridAt(grid, 2, 0, 2 * sign), 1.0F);
    // Root of 5 less 2.0001, and root of 8 less 2.0001: the weight rises outward.
    EXPECT_FLOAT_EQ(GridAt(grid, 2, sign, 2), 0.23596798F);
    EXPECT_FLOAT_EQ(GridAt(grid, 2, 2 * sign, -1), 0.23596798F);
    EXPECT_FLOAT_EQ(GridAt(grid, 2, 2 * sign, 2), 0.82832712F);
  }
}

TEST(LiteralIrisKernelTest, KeepsTriangleMirrored) {
  // Turned by 90 degrees the computed triangle has its side at x = -2 and its corner at x = 4; the
  // stored one has them the other way round.
  Settings settings = DiscSettings(4);
  settings.irisSides = 1;
  settings.irisRoundness = 0;
  settings.irisRotation = kPi / 2;
  const std::vector<float> grid = KernelGrid(4, settings, kMaths);
  for (int x = -4; x <= 2; ++x) EXPECT_EQ(GridAt(grid, 4, x, 0), 1.0F) << x;
  EXPECT_FLOAT_EQ(GridAt(grid, 4, 3, 0), 0.9999F);
  EXPECT_EQ(GridAt(grid, 4, 4, 0), 0.0F);
}

TEST(LiteralIrisKernelTest, AspectAboveOneShrinksTheOtherAxisToo) {
  Settings settings = DiscSettings(4);
  settings.irisAspectRatio = 2;
  const std::vector<float> grid = KernelGrid(4, settings, kMaths);
  // Across: |x| / 2 x 2. Along: |y| x 2.
  EXPECT_EQ(GridAt(grid, 4, 4, 0), 1.0F);
  EXPECT_EQ(GridAt(grid, 4, 0, 2), 1.0F);
  EXPECT_EQ(GridAt(grid, 4, 0, 3), 0.0F);
}

TEST(LiteralIrisKernelTest, AspectBelowOneSqueezesAcross) {
  Settings settings = DiscSettings(4);
  settings.irisAspectRatio = 0.5F;
  const std::vector<float> grid = KernelGrid(4, settings, kMaths);
  EXPECT_EQ(GridAt(grid, 4, 2, 0), 1.0F);
  EXPECT_EQ(GridAt(grid, 4, 3, 0), 0.0F);
  EXPECT_EQ(GridAt(grid, 4, 0, 4), 1.0F);
}

TEST(LiteralIrisKernelTest, AspectZeroLeavesNoNumbersOnTheAxis) {
  Settings settings = DiscSettings(1);
  settings.irisAspectRatio = 0;
  const std::vector<float> grid = KernelGrid(1, settings, kMaths);
  EXPECT_EQ(GridAt(grid, 1, 0, 0), 1.0F);
  EXPECT_TRUE(std::isnan(GridAt(grid, 1, 0, 1)));
  EXPECT_EQ(GridAt(grid, 1, 1, 0), 0.0F);
}

}  // namespace
}  // namespace vitrell::literal
