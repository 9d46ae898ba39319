// The literal fast blur against numbers worked out by hand.
#include "literal/blur/fast/fast_blur.h"

#include <gtest/gtest.h>

#include <cstring>

#include "literal/picture.h"

namespace vitrell::literal {
namespace {

TEST(LiteralFastBlurTest, OneRoundOfRadiusOne) {
  World src = MakeWorld(3, 1, false, ByPosition);
  src.pixels[0].channel[1] = 30;
  src.pixels[1].channel[1] = 60;
  src.pixels[2].channel[1] = 120;
  World dst = src;
  FastBlurRound(1, 0, false, {}, src, dst);
  // Before column 0 mirrors column 1, behind column 2 stands column 2 again.
  EXPECT_EQ(src.pixels[0].channel[1], 50);
  EXPECT_EQ(src.pixels[1].channel[1], 70);
  EXPECT_EQ(src.pixels[2].channel[1], 100);
  EXPECT_EQ(std::memcmp(src.pixels.data(), dst.pixels.data(), 3 * sizeof(Pixel)), 0);
}

TEST(LiteralFastBlurTest, MappedRoundWeighsByTheMask) {
  World src = MakeWorld(1, 3, false, ByPosition);
  src.pixels[0].channel[1] = 0;
  src.pixels[1].channel[1] = 200;
  src.pixels[2].channel[1] = 40;
  World dst = src;
  const Mask mask = {{0, 0, 1, 3}, {1.0, 0.5, 0.25}};
  FastBlurRound(0, 4, true, mask, src, dst);
  // Row 1: reach 2, weights 0, 1, 0.5, 0.25, 0 on 200, 0, 200, 40: 110 / 1.75 = 62.857; the blend
  // has t = (2 - 1) / 4: 150 + 15.71 + 0.5.
  EXPECT_EQ(src.pixels[1].channel[1], 166);
  // Row 2: reach 1, weights 0.5, 0.25, 0 on 200, 40, 40; t = 0 keeps the pixel.
  EXPECT_EQ(src.pixels[2].channel[1], 40);
  // Row 0: mask 1 is the plain box; rows -4 to 4 hold 200 40 40 200 0 200 40 40 200: 106.67 + 0.5.
  EXPECT_EQ(src.pixels[0].channel[1], 107);
}

}  // namespace
}  // namespace vitrell::literal
