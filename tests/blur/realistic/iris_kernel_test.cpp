// The tap lists of the iris, against values worked out by hand and against the literal grids.
#include "blur/realistic/iris_kernel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/fake_host.h"
#include "literal/blur/realistic/iris_kernel.h"

namespace vitrell {
namespace {

// A reach that cuts nothing off a kernel of this radius.
KernelReach WholeReach(std::int64_t radius) {
  return {-radius - 2, radius + 2, -radius - 2, radius + 2};
}

class IrisKernelTest : public testing::Test {
 protected:
  IrisKernelTest() {
    info_.irisSides = 3;
    info_.irisRoundness = 1;
    info_.irisAspectRatio = 1;
  }

  void Build(std::int32_t radius, const KernelReach& reach, TapChoice choice, bool isShared) {
    IrisKernelBuilder builder(MakeIrisShape(info_, host_.inData()->utils->ansi), reach);
    ASSERT_TRUE(!isShared || builder.ShareTo(radius));
    ASSERT_TRUE(builder.Build(radius, choice, &kernel_, &points_));
  }

  // The weight that the spans give an offset; 0 without one.
  float WeightAt(std::int64_t dx, std::int64_t dy) const {
    const std::int64_t row = dy - kernel_.firstDy;
    if (row < 0 || row >= kernel_.rowCount) {
      return 0;
    }
    const auto i = static_cast<std::size_t>(row);
    for (std::size_t s = kernel_.rowStart[i]; s < kernel_.rowStart[i + 1]; ++s) {
      const KernelSpan& span = kernel_.spans[s];
      if (dx >= span.dx && dx < span.dx + span.count) {
        return span.weight;
      }
    }
    return 0;
  }

  literal::Settings LiteralSettings() const {
    literal::Settings settings;
    settings.irisSides = info_.irisSides;
    settings.irisRoundness = info_.irisRoundness;
    settings.irisAspectRatio = info_.irisAspectRatio;
    settings.irisRotation = info_.irisRotation;
    return settings;
  }

  literal::Maths LiteralMaths() {
    const PF_ANSICallbacks& maths = host_.inData()->utils->ansi;
    return {maths.sin, maths.cos, maths.tan, maths.atan, maths.sqrt, maths.pow};
  }

  FakeHost host_;
  LX_Info info_ = {};
  IrisKernel kernel_;
  Buffer<Weight_Pt> points_;
};

TEST_F(IrisKernelTest, RadiusZeroIsOneWeightAndTwoDifferences) {
  for (const bool isShared : {false, true}) {
    Build(0, WholeReach(0), TapChoice::kNonZero, isShared);
    ASSERT_EQ(kernel_.spans.size(), 1U);
    EXPECT_EQ(kernel_.rowCount, 1);
    EXPECT_EQ(kernel_.spans[0].dx, 0);
    EXPECT_EQ(kernel_.spans[0].count, 1);
    EXPECT_EQ(kernel_.spans[0].weight, 1.0F);
    ASSERT_EQ(points_.size(), 2U);
    EXPECT_EQ(points_[0].x, -1);
    EXPECT_EQ(points_[0].y, 0);
    EXPECT_EQ(points_[0].weight, -1.0F);
    EXPECT_EQ(points_[1].x, 0);
    EXPECT_EQ(points_[1].y, 0);
    EXPECT_EQ(points_[1].weight, 1.0F);
  }
}

// A disc: rows -1 and 1 weigh root of 2 less 1.0001, 1, and the same again; row 0 is 1 throughout.
TEST_F(IrisKernelTest, RadiusOneByHand) {
  Build(1, WholeReach(1), TapChoice::kNonZero, false);
  ASSERT_EQ(kernel_.rowCount, 3);
  ASSERT_EQ(kernel_.spans.size(), 7U);
  EXPECT_FLOAT_EQ(kernel_.spans[0].weight, 0.41411356F);
  EXPECT_EQ(kernel_.spans[1].weight, 1.0F);
  EXPECT_EQ(kernel_.spans[3].dx, -1);
  EXPECT_EQ(kernel_.spans[3].count, 3);
  EXPECT_EQ(kernel_.ones[0].dx, 0);
  EXPECT_EQ(kernel_.ones[0].count, 1);
  EXPECT_EQ(kernel_.ones[1].count, 3);
  // Row -1 rises at -2 and -1 and falls at 0 and 1; row 0 at -2 and 1 alone; row 1 as row -1.
  const int expected[10][2] = {{-2, -1}, {-1, -1}, {0, -1}, {1, -1}, {-2, 0},
                               {1, 0},   {-2, 1},  {-1, 1}, {0, 1},  {1, 1}};
  ASSERT_EQ(points_.size(), 10U);
  for (std::size_t i = 0; i < 10; ++i) {
    EXPECT_EQ(points_[i].x, expected[i][0]) << i;
    EXPECT_EQ(points_[i].y, expected[i][1]) << i;
  }
  EXPECT_EQ(points_[4].weight, -1.0F);
  EXPECT_EQ(points_[5].weight, 1.0F);
  EXPECT_FLOAT_EQ(points_[1].weight, 0.41411356F - 1.0F);
}

TEST_F(IrisKernelTest, EveryShapeMatchesTheLiteralGridAndItsDifferences) {
  int turn = 0;
  for (int sides = 1; sides <= 8; ++sides) {
    for (const float aspect : {0.5F, 1.0F, 2.75F}) {
      for (const std::int32_t radius : {0, 1, 2, 5, 11}) {
        info_.irisSides = sides;
        info_.irisAspectRatio = aspect;
        info_.irisRoundness = static_cast<float>(turn % 3) * 0.5F;
        info_.irisRotation = 0.3 * (turn % 5);
        ++turn;
        SCOPED_TRACE("sides " + std::to_string(sides) + " radius " + std::to_string(radius));
        const std::vector<float> grid =
            literal::KernelGrid(radius, LiteralSettings(), LiteralMaths());
        const std::vector<literal::WeightPoint> differences =
            literal::DifferencePoints(grid, radius);
        for (const TapChoice choice : {TapChoice::kNonZero, TapChoice::kAboveThreshold}) {
          Build(radius, WholeReach(radius), choice, turn % 2 == 0);
          std::size_t entry = 0;
          for (std::int32_t dy = -radius; dy <= radius; ++dy) {
            for (std::int32_t dx = -radius; dx <= radius; ++dx) {
              const float weight = grid[entry++];
              const bool isTap = choice == TapChoice::kNonZero
                                     ? weight != 0
                                     : static_cast<double>(weight) > 0.0001;
              ASSERT_EQ(WeightAt(dx, dy), isTap ? weight : 0.0F) << dx << "," << dy;
            }
          }
        }
        ASSERT_EQ(points_.size(), differences.size());
        for (std::size_t i = 0; i < differences.size(); ++i) {
          ASSERT_EQ(points_[i].x, differences[i].x);
          ASSERT_EQ(points_[i].y, differences[i].y);
          ASSERT_EQ(points_[i].weight, differences[i].weight);
        }
      }
    }
  }
}

// A disc of radius 4 widened so that column 3 lies 4.00015 from the centre: its weight, 0.00005, is
// a tap of the uniform mode alone, and neither the step up to it nor the step down from it counts.
TEST_F(IrisKernelTest, SmallStepsAndWeightsAreLeftOut) {
  info_.irisAspectRatio = 3.0F / 4.00015F;
  for (const TapChoice choice : {TapChoice::kNonZero, TapChoice::kAboveThreshold}) {
    Build(4, WholeReach(4), choice, false);
    EXPECT_EQ(WeightAt(2, 0), 1.0F);
    EXPECT_NEAR(WeightAt(3, 0), choice == TapChoice::kNonZero ? 0.00005 : 0, 1e-6);
    EXPECT_EQ(WeightAt(4, 0), 0.0F);
    std::vector<int> columns;
    for (const Weight_Pt& point : points_) {
      if (point.y == 0) {
        columns.push_back(point.x);
      }
    }
    EXPECT_EQ(columns, (std::vector<int>{-3, 2}));
  }
}

// A 4 x 2 input and output at (0, 0): no tap lies more than 3 columns or 1 row away.
TEST_F(IrisKernelTest, WhatNoPixelCanReachIsLeftOut) {
  PF_LayerDef world = {};
  world.width = 4;
  world.height = 2;
  world.extent_hint = {0, 0, 4, 2};
  const KernelReach reach = ReachBetween(world, world);
  Build(9, reach, TapChoice::kNonZero, false);
  EXPECT_EQ(kernel_.firstDy, -1);
  EXPECT_EQ(kernel_.rowCount, 3);
  EXPECT_EQ(kernel_.spans[0].dx, -3);
  EXPECT_EQ(kernel_.spans[0].count, 7);
  for (const Weight_Pt& point : points_) {
    EXPECT_LE(std::abs(point.x), 3);
    EXPECT_LE(std::abs(point.y), 1);
  }
}

}  // namespace
}  // namespace vitrell
