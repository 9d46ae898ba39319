// The literal optical distortion against pictures worked out by hand.
#include "literal/blur/optical/optical_distortion.h"

#include <gtest/gtest.h>

#include "literal/base/types.h"
#include "literal/picture.h"

namespace vitrell::literal {
namespace {

World RunOptical(const World& src, int cx, int cy, double focalLength, double mask = 1.0) {
  World dst = MakeWorld(src.width, src.height, MakePixel(9, 9, 9, 9));
  OpticalPass(src, dst, MakeMask(src, mask), kMaths, cx, cy, focalLength);
  return dst;
}

World Ramp(int width, int height) {
  World src = MakeWorld(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) src.At(y, x) = MakePixel(1 + 10 * y + x, 23 * x, 31 * y, 7);
  }
  return src;
}

TEST(LiteralOpticalDistortionTest, SamplesNearerToTheCentre) {
  // At distance 4 with focal length 3 the root is 0.8: the sample lies 2.4 pixels from the centre.
  World src = Ramp(8, 4);
  src.At(2, 4) = MakePixel(99, 100, 0, 0);
  src.At(2, 5) = MakePixel(98, 203, 0, 0);
  EXPECT_EQ(Text(RunOptical(src, 2, 2, 3.0).At(2, 6)), "27 141 0 0");  // 60 + 81.2, alpha stays.
}

TEST(LiteralOpticalDistortionTest, CentrePixelIsCopied) {
  const World src = Ramp(7, 5);
  const World dst = RunOptical(src, 3, 2, 2.0);
  EXPECT_EQ(Text(dst.At(2, 3)), Text(src.At(2, 3)));
  EXPECT_NE(Text(dst.At(2, 5)), Text(src.At(2, 5)));
}

TEST(LiteralOpticalDistortionTest, OutsideTheLensNothingChanges) {
  const World src = Ramp(7, 5);
  EXPECT_EQ(Texts(RunOptical(src, 3, 2, 2.0, 0.0001)), Texts(src));
  EXPECT_EQ(Texts(RunOptical(src, 3, 2, 2.0, 0.00011)), Texts(RunOptical(src, 3, 2, 2.0, 1.0)));
}

TEST(LiteralOpticalDistortionTest, VanishingFocalLengthShowsTheCentrePixel) {
  World src = Ramp(7, 5);
  src.At(2, 3) = MakePixel(77, 1, 2, 3);
  for (const Pixel& pixel : RunOptical(src, 3, 2, 0.00009).pixels) {
    EXPECT_EQ(Text(pixel), "77 1 2 3");
  }
  // A centre outside is folded back in: row -2 is row 2, column 9 is column 4.
  src.At(2, 4) = MakePixel(5, 6, 7, 8);
  EXPECT_EQ(Text(RunOptical(src, 9, -2, 0.0).At(0, 0)), "5 6 7 8");
  EXPECT_NE(Text(RunOptical(src, 3, 2, 0.0001).At(0, 0)), "77 1 2 3");
}

TEST(LiteralOpticalDistortionTest, SamplesOutsideAreMirrored) {
  // The centre lies 4 columns left of the world. For (0, 2) at focal length 3 the sample is at
  // column -4 + 2.4 = -1.6, whose base is -2: columns -2 and -1 read 2 and 1, with a share of 0.4.
  World src = Ramp(8, 4);
  src.At(2, 1) = MakePixel(1, 203, 0, 0);
  src.At(2, 2) = MakePixel(1, 100, 0, 0);
  EXPECT_EQ(Text(RunOptical(src, -4, 2, 3.0).At(2, 0)), "21 141 0 0");
}

TEST(LiteralOpticalDistortionTest, AlphaStaysWhileColoursMove) {
  const World src = Ramp(9, 9);
  const World dst = RunOptical(src, 4, 4, 1.5);
  for (int y = 0; y < 9; ++y) {
    for (int x = 0; x < 9; ++x) EXPECT_EQ(dst.At(y, x).channel[0], src.At(y, x).channel[0]);
  }
  EXPECT_NE(dst.At(4, 8).channel[1], src.At(4, 8).channel[1]);
}

}  // namespace
}  // namespace vitrell::literal
