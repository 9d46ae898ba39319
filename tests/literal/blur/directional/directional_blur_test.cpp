// The literal directional blur against pictures worked out by hand.
#include "literal/blur/directional/directional_blur.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "literal/base/types.h"
#include "literal/blur/directional/line_taps.h"
#include "literal/picture.h"

namespace vitrell::literal {
namespace {

using ::testing::ElementsAre;

World RunDirectional(const World& src, const std::vector<LineTap>& taps, double mask = 1.0) {
  World dst = MakeWorld(src.width, src.height, MakePixel(9, 9, 9, 9));
  DirectionalPass(src, dst, MakeMask(src, mask), taps);
  return dst;
}

TEST(LiteralDirectionalBlurTest, AveragesDownTheLine) {
  World src = MakeWorld(1, 3);
  src.pixels = {MakePixel(10, 100, 3, 0), MakePixel(20, 200, 4, 0), MakePixel(30, 50, 6, 0)};
  const World dst = RunDirectional(src, DirectionalTaps(2, 0, kMaths));
  // (100 / 2 + 200 + 50 / 2) / 2 = 137.5 and (1.5 + 4 + 3) / 2 = 4.25; alpha stays.
  EXPECT_EQ(Text(dst.At(1, 0)), "20 137 4 0");
  // Row -1 reads row 1, row 3 reads row 2.
  EXPECT_EQ(Text(dst.At(0, 0)), "10 150 3 0");
  EXPECT_EQ(Text(dst.At(2, 0)), "30 87 5 0");
}

TEST(LiteralDirectionalBlurTest, TransparentTapsAreSkipped) {
  World src = MakeWorld(1, 3);
  src.pixels = {MakePixel(0, 100, 0, 0), MakePixel(20, 200, 0, 0), MakePixel(30, 50, 0, 0)};
  const World dst = RunDirectional(src, DirectionalTaps(2, 0, kMaths));
  EXPECT_EQ(Text(dst.At(1, 0)), "20 150 0 0");  // (200 + 25) / 1.5
  EXPECT_EQ(Text(dst.At(0, 0)), "0 200 0 0");
}

TEST(LiteralDirectionalBlurTest, OnlyTransparentOrWeightlessTapsLeaveThePixel) {
  World src = MakeWorld(1, 5);
  src.pixels = {Gray(200), MakePixel(0, 1, 2, 3), MakePixel(0, 4, 5, 6), MakePixel(0, 7, 8, 9),
                Gray(90)};
  const World dst = RunDirectional(src, DirectionalTaps(2, 0, kMaths));
  EXPECT_EQ(Text(dst.At(2, 0)), "0 4 5 6");
  EXPECT_EQ(Text(dst.At(1, 0)), "0 200 200 200");
}

TEST(LiteralDirectionalBlurTest, MaskGatesWithoutScaling) {
  World src = MakeWorld(1, 3);
  src.pixels = {Gray(100), Gray(200), Gray(50)};
  const std::vector<LineTap> taps = DirectionalTaps(2, 0, kMaths);
  EXPECT_EQ(Texts(RunDirectional(src, taps, 0.0001)), Texts(src));
  EXPECT_THAT(Reds(RunDirectional(src, taps, 0.00011)), ElementsAre(150, 137, 87));
  EXPECT_EQ(Texts(RunDirectional(src, {}, 1.0)), Texts(src));
}

TEST(LiteralDirectionalBlurTest, KeepsWrappedLengths) {
  // The square of 65536 wraps to 0, that of 50000 to a negative number: no weight is a number.
  const std::vector<LineTap> whole = DirectionalTaps(65536, 0, kMaths);
  EXPECT_EQ(whole.size(), 131073U);
  EXPECT_TRUE(std::isnan(whole[65536].weight));
  EXPECT_EQ(whole[65537].weight, -std::numeric_limits<double>::infinity());
  const std::vector<LineTap> part = DirectionalTaps(50000, 0, kMaths);
  EXPECT_TRUE(std::isnan(part[50000].weight));
  EXPECT_TRUE(std::isnan(part[50001].weight));
  const std::vector<LineTap> longest = DirectionalTaps(46340, 0, kMaths);
  EXPECT_EQ(longest[46340].weight, 1.0);
  EXPECT_EQ(longest[0].weight, 0.0);
  World src = MakeWorld(1, 3, Gray(40));
  EXPECT_EQ(Text(RunDirectional(src, {{0, 0, part[50000].weight}}).At(0, 0)), "255 0 0 0");
}

}  // namespace
}  // namespace vitrell::literal
