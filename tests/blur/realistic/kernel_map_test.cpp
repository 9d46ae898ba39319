// The kernel that the mask gives each pixel, observed through its sums.
#include "blur/realistic/kernel_map.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "blur/realistic/tap_sums.h"
#include "host/fake_host.h"
#include "host/picture.h"
#include "lens/test_mask.h"

namespace vitrell {
namespace {

class KernelMapTest : public testing::Test {
 protected:
  KernelMapTest() {
    info_.irisSides = 3;
    info_.irisRoundness = 1;
    info_.irisAspectRatio = 1;
  }

  IrisShape Shape() { return MakeIrisShape(info_, host_.inData()->utils->ansi); }

  void Build(Picture<PF_Pixel>& src, Picture<PF_Pixel>& dst, std::int32_t maxRadius) {
    const IO_Params io = {host_.inData(), nullptr, src.get(), dst.get()};
    ASSERT_TRUE(map_.Build(io, Shape(), maxRadius));
    ASSERT_EQ(map_.width(), dst.get()->width);
    ASSERT_EQ(map_.height(), dst.get()->height);
  }

  // The sums of one pixel, as the first of a block.
  TapSums SumsAt(std::int64_t x, std::int64_t y) const {
    LaneSums sums[kMaxLaneRows];
    map_.SumRows(x, y, sums);
    return sums[0].Lane(0);
  }

  FakeHost host_;
  LX_Info info_ = {};
  KernelMap map_{BestEngine<IrisEngine>()};
};

// White everywhere, so that the total weight far from the border is that of the kernel: 1, then the
// disc of radius 1: 5 ones and 4 times 0.41411, then radius 2: 13 ones, 8 times root of 5 less
// 2.0001, 4 times root of 8 less 2.0001.
TEST_F(KernelMapTest, MaskSelectsTheKernelByHand) {
  Picture<PF_Pixel> src(16, 7);
  src.Fill({255, 255, 255, 255});
  Picture<PF_Pixel> dst(16, 7);
  // With maximum radius 2: 0.39^1.5 gives 0.487 + 0.5 and 0.4 gives 0.506 + 0.5; 0.82 gives 1.485 +
  // 0.5 and 0.83 gives 1.512 + 0.5.
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double masks[9] = {0, 0.39, 0.4, 0.82, 0.83, 1, 4, -1, nan};
  const int radii[9] = {0, 0, 1, 1, 2, 2, 2, 0, 0};
  const double totals[3] = {1, 5 + 4 * 0.414114, 13 + 8 * 0.235968 + 4 * 0.828327};
  std::vector<double> values(std::size_t{16} * 7, 0.0);
  for (std::size_t i = 0; i < 9; ++i) {
    values[3 * 16 + 3 + i] = masks[i];
  }
  const TestMask mask(values);
  Build(src, dst, 2);
  for (int i = 0; i < 9; ++i) {
    EXPECT_NEAR(SumsAt(3 + i, 3).weight, totals[radii[i]], 1e-4) << masks[i];
  }
}

// Pixels beyond the mask's memory have mask value 0.
TEST_F(KernelMapTest, PixelsBeyondTheMaskHaveTheSmallestKernel) {
  Picture<PF_Pixel> src(9, 3);
  src.Fill({255, 255, 255, 255});
  Picture<PF_Pixel> dst(9, 3);
  const TestMask mask(std::vector<double>(12, 1.0));
  Build(src, dst, 1);
  EXPECT_GT(SumsAt(2, 1).weight, 2);     // Value 11.
  EXPECT_EQ(SumsAt(3, 1).weight, 1.0F);  // Value 12.
}

TEST_F(KernelMapTest, BlocksOfEveryPlaceMatchThePlainSums) {
  constexpr std::uint32_t kSeed = 20261121;
  constexpr std::int32_t kMaxRadius = 7;
  std::mt19937 random(kSeed);
  info_.irisRoundness = 0.4F;
  info_.irisRotation = 0.7;
  Picture<PF_Pixel> src(83, 11);
  src.FillNoise(kSeed);
  src.get()->extent_hint = {2, 1, 85, 12};
  Picture<PF_Pixel> dst(79, 9);
  std::vector<double> values(std::size_t{79} * 9);
  for (std::size_t i = 0; i < values.size(); ++i) {
    // Runs of one value and single ones.
    values[i] = i % 31 < 12 ? 1.0 : static_cast<double>(random() % 1001) / 1000;
  }
  const TestMask mask(values);
  Build(src, dst, kMaxRadius);
  HighlightMap plain;
  ASSERT_TRUE(plain.Build(host_.inData(), *src.get(), PlaneOrder::kRowMajor, MapUse::kByMask));
  IrisKernelBuilder builder(Shape(), ReachBetween(*src.get(), *dst.get()));
  std::vector<IrisKernel> kernels(kMaxRadius + 1);
  for (std::int32_t radius = 0; radius <= kMaxRadius; ++radius) {
    ASSERT_TRUE(builder.Build(radius, TapChoice::kAboveThreshold,
                              &kernels[static_cast<std::size_t>(radius)], nullptr));
  }
  for (std::int64_t y = 0; y < 9; y += map_.blockRows()) {
    for (std::int64_t x = 0; x < 79; x += map_.blockLanes()) {
      LaneSums sums[kMaxLaneRows];
      map_.SumRows(x, y, sums);
      for (std::int64_t row = 0; row < map_.blockRows() && y + row < 9; ++row) {
        for (int lane = 0; lane < map_.blockLanes() && x + lane < 79; ++lane) {
          const double m = values[static_cast<std::size_t>((y + row) * 79 + x + lane)];
          const auto radius = static_cast<std::size_t>(std::pow(m, 1.5) * kMaxRadius + 0.5);
          const TapSums expected = SumKernel(plain, kernels[radius], y + row - 1, x + lane - 2);
          const TapSums actual = sums[row].Lane(lane);
          ASSERT_EQ(std::bit_cast<std::uint32_t>(expected.weight),
                    std::bit_cast<std::uint32_t>(actual.weight))
              << "seed " << kSeed << " at " << x + lane << "," << y + row;
          ASSERT_EQ(expected.red, actual.red) << x + lane << "," << y + row;
          ASSERT_EQ(expected.green, actual.green) << x + lane << "," << y + row;
          ASSERT_EQ(expected.blue, actual.blue) << x + lane << "," << y + row;
        }
      }
    }
  }
}

}  // namespace
}  // namespace vitrell
