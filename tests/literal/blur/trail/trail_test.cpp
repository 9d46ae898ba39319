// The literal trail against pictures worked out by hand.
#include "literal/blur/trail/trail.h"

#include <gtest/gtest.h>

#include <vector>

#include "literal/picture.h"

namespace vitrell::literal {
namespace {

World RunTrail(const World& src, int cx, int cy, float amount, int distance) {
  World dst = MakeWorld(src.width, src.height);
  TrailPass(src, dst, cx, cy, amount, distance);
  return dst;
}

World MiddleRow(const std::vector<Pixel>& values) {
  World src = MakeWorld(5, 5, Gray(1));
  for (int x = 0; x < 5; ++x) src.At(2, x) = values.at(static_cast<std::size_t>(x));
  return src;
}

TEST(LiteralTrailTest, TooSmallAnAmountCopiesTheSource) {
  World src = MakeWorld(5, 4);
  for (std::size_t i = 0; i < src.pixels.size(); ++i) {
    src.pixels[i] = MakePixel(static_cast<int>(i), static_cast<int>(3 * i), 50, 9);
  }
  // 9 x 0.3 x 0.3 = 0.81.
  EXPECT_EQ(Texts(RunTrail(src, 2, 2, 0.3F, 9)), Texts(src));
  EXPECT_NE(Texts(RunTrail(src, 2, 2, 0.6F, 9)), Texts(src));
}

TEST(LiteralTrailTest, WeightsFallQuadratically) {
  const World src = MiddleRow({Gray(100), Gray(50), Gray(10), Gray(1), Gray(1)});
  const World dst = RunTrail(src, 2, 2, 1.0F, 2);
  EXPECT_EQ(Text(dst.At(2, 0)), "255 90 90 90");  // (100 + 50 / 4) / 1.25
  EXPECT_EQ(Text(dst.At(2, 1)), "255 42 42 42");  // (50 + 10 / 4) / 1.25
  EXPECT_EQ(Text(dst.At(2, 2)), "255 10 10 10");  // The centre alone.
}

TEST(LiteralTrailTest, KeepsColoursRoundedDown) {
  const World src = MiddleRow({Gray(100), Gray(54), Gray(10), Gray(1), Gray(1)});
  EXPECT_EQ(RunTrail(src, 2, 2, 1.0F, 2).At(2, 0).channel[1], 90);  // 113.5 / 1.25 = 90.8
}

TEST(LiteralTrailTest, TransparentTapsAreSkipped) {
  const World src =
      MiddleRow({Gray(100), MakePixel(0, 50, 50, 50), MakePixel(8, 10, 20, 30), Gray(1), Gray(1)});
  const World dst = RunTrail(src, 2, 2, 1.0F, 2);
  EXPECT_EQ(Text(dst.At(2, 0)), "255 100 100 100");
  EXPECT_EQ(Text(dst.At(2, 1)), "0 10 20 30");
}

TEST(LiteralTrailTest, TheFirstRayToReachAPixelSetsIt) {
  // (3, 0) goes on to (2, 0); the later ray from (4, 0) goes through (3, 0) to (2, 1).
  World src = MakeWorld(5, 4, Gray(5));
  src.At(0, 3) = Gray(100);
  src.At(0, 2) = Gray(50);
  src.At(1, 2) = Gray(200);
  EXPECT_EQ(RunTrail(src, 1, 1, 1.0F, 2).At(0, 3).channel[1], 90);
}

TEST(LiteralTrailTest, KeepsTransparentBlackResultsOpenForLaterRays) {
  World src = MakeWorld(5, 4, Gray(5));
  src.At(0, 3) = Pixel{};
  src.At(0, 2) = Pixel{};
  src.At(1, 2) = Gray(200);
  EXPECT_EQ(Text(RunTrail(src, 1, 1, 1.0F, 2).At(0, 3)), "0 200 200 200");
}

TEST(LiteralTrailTest, OnlyTransparentTapsGiveBlack) {
  const World src =
      MiddleRow({MakePixel(0, 9, 9, 9), MakePixel(0, 50, 50, 50), Gray(10), Gray(1), Gray(1)});
  EXPECT_EQ(Text(RunTrail(src, 2, 2, 1.0F, 2).At(2, 0)), "0 0 0 0");
}

TEST(LiteralTrailTest, NegativeReachTakesNoTaps) {
  World src = MakeWorld(3, 3, Gray(40));
  EXPECT_EQ(Text(RunTrail(src, 1, 1, 1.0F, -3).At(0, 0)), "255 0 0 0");
}

TEST(LiteralTrailTest, CentreOutsideASinglePixelIsFolded) {
  // The clamped centre of a 1 x 1 world is (-1, -1).
  EXPECT_EQ(Text(RunTrail(MakeWorld(1, 1, Gray(77)), -1, -1, 1.0F, 2).At(0, 0)), "255 77 77 77");
}

}  // namespace
}  // namespace vitrell::literal
