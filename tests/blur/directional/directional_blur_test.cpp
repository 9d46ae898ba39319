// The directional blur of the effect module, bit for bit against its definition.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "blur/render_case.h"

namespace vitrell {
namespace {

using literal::World;

constexpr std::pair<int, int> kSizes[] = {{1, 1}, {2, 1},  {1, 2},  {2, 2},  {3, 3},   {5, 4},
                                          {7, 2}, {16, 9}, {33, 1}, {1, 33}, {17, 23}, {97, 61}};

RenderCase MakeCase(double length, double degrees = 0) {
  RenderCase c;
  c.Set("directional-blur.visible", 1)
      .Set("directional-blur.amount", length)
      .Set("directional-blur.direction", degrees);
  return c;
}

World Column(const std::vector<literal::Pixel>& pixels) {
  World world = MakePicture(Pattern::kBlack, 1, static_cast<int>(pixels.size()), false);
  world.pixels = pixels;
  return world;
}

std::string Text(const literal::Pixel& p) {
  return std::to_string(p.channel[0]) + " " + std::to_string(p.channel[1]) + " " +
         std::to_string(p.channel[2]) + " " + std::to_string(p.channel[3]);
}

TEST(DirectionalBlurTest, OneTapCopiesInput) {
  for (const bool deep : {false, true}) {
    const World input = MakePicture(Pattern::kNoise, 13, 7, deep);
    ExpectSamePicture(input, MakeCase(0).Actual(input), "length 0");
    ExpectSamePicture(input, MakeCase(0.99).Actual(input), "length 0.99");
    // A diagonal of length 1 reaches no neighbour: both of its ends are the pixel itself.
    ExpectSamePicture(input, MakeCase(1, 45).Actual(input), "diagonal of length 1");
    EXPECT_TRUE(Differ(input, MakeCase(2).Actual(input)));
  }
}

TEST(DirectionalBlurTest, EndTapsAddNothing) {
  // Length 1 has three taps, of which the outer two weigh 0.
  for (const bool deep : {false, true}) {
    const World input = MakePicture(Pattern::kNoise, 13, 7, deep);
    ExpectSamePicture(input, MakeCase(1).Actual(input), "length 1");
  }
}

TEST(DirectionalBlurTest, KeepsColoursRoundedDown) {
  const World result = MakeCase(2).Actual(
      Column({MakePixel(10, 100, 3, 0), MakePixel(20, 200, 4, 0), MakePixel(30, 50, 6, 0)}));
  // (100 / 2 + 200 + 50 / 2) / 2 = 137.5 and (1.5 + 4 + 3) / 2 = 4.25; alpha stays. Row -1 reads
  // row 1, row 3 reads row 2.
  EXPECT_EQ(Text(result.At(1, 0)), "20 137 4 0");
  EXPECT_EQ(Text(result.At(0, 0)), "10 150 3 0");
  EXPECT_EQ(Text(result.At(2, 0)), "30 87 5 0");
}

// Length 3 has the weights 1/3, 2/3, 1, 2/3 and 1/3, whose doubles add up to 3 + 2^-51. Four times
// the weights in single precision add up to 4, 8, 10.666667 and 12 exactly, and 12 by that sum is
// just below 4. Added up in double precision they would be 12 + 2^-49, which gives 4.
//
// Length 7 over 10000: the weights add up to 7 + 2^-50, the products in single precision to 30000
// before the middle, 40000 with it, then to 48571.4296875, 55714.28515625, 61428.5703125,
// 65714.28125, 68571.421875 and 69999.9921875, which by 7 is 9999.9989. In double precision the sum
// would be 70000.00000000001 and the result 10000.
TEST(DirectionalBlurTest, KeepsSinglePrecisionSums) {
  for (const bool deep : {false, true}) {
    World grey = MakePicture(Pattern::kBlack, 9, 9, deep);
    for (literal::Pixel& pixel : grey.pixels) pixel = MakePixel(9, 4, 100, 4);
    const World result = MakeCase(3).Actual(grey);
    for (const literal::Pixel& pixel : result.pixels) EXPECT_EQ(Text(pixel), "9 3 99 3");
  }
  World grey = MakePicture(Pattern::kBlack, 9, 20, true);
  for (literal::Pixel& pixel : grey.pixels) pixel = MakePixel(9, 10000, 10000, 10000);
  EXPECT_EQ(Text(MakeCase(7).Actual(grey).At(10, 4)), "9 9999 9999 9999");
}

TEST(DirectionalBlurTest, TransparentTapsAreSkipped) {
  const World result = MakeCase(2).Actual(
      Column({MakePixel(0, 100, 0, 0), MakePixel(20, 200, 0, 0), MakePixel(30, 50, 0, 0)}));
  EXPECT_EQ(Text(result.At(1, 0)), "20 150 0 0");  // (200 + 25) / 1.5
  EXPECT_EQ(Text(result.At(0, 0)), "0 200 0 0");
}

TEST(DirectionalBlurTest, OnlyTransparentTapsLeaveThePixel) {
  const World result = MakeCase(2).Actual(
      Column({MakePixel(255, 200, 200, 200), MakePixel(0, 1, 2, 3), MakePixel(0, 4, 5, 6),
              MakePixel(0, 7, 8, 9), MakePixel(255, 90, 90, 90)}));
  EXPECT_EQ(Text(result.At(2, 0)), "0 4 5 6");
  EXPECT_EQ(Text(result.At(1, 0)), "0 200 200 200");
  for (const bool deep : {false, true}) {
    const World input = MakePicture(Pattern::kTransparent, 13, 7, deep);
    ExpectSamePicture(input, MakeCase(5, 30).Actual(input), "all transparent");
  }
}

TEST(DirectionalBlurTest, OutsideTheLensNothingChanges) {
  for (const bool deep : {false, true}) {
    const World input = MakePicture(Pattern::kNoise, 41, 31, deep);
    RenderCase c = MakeCase(6, 20);
    c.SetCircle(20, 15, 6, 41).Set("lens.feather", 40);
    c.ExpectExact(input);
    const World result = c.Actual(input);
    EXPECT_EQ(Text(result.At(1, 1)), Text(input.At(1, 1)));
    EXPECT_NE(Text(result.At(15, 20)), Text(input.At(15, 20)));
  }
}

TEST(DirectionalBlurTest, MaskGatesWithoutScaling) {
  // Masks around the threshold of 0.0001, set by a custom lens: 16-bit greys 327 and 328 give
  // 0.0000996 and 0.0001002 (grey times an equal alpha, over 2^30).
  World lens = MakePicture(Pattern::kBlack, 12, 8, true);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 12; ++x) {
      const int grey = 320 + y + x;
      lens.At(y, x) = MakePixel(grey, grey, grey, grey);
    }
  }
  for (const bool deep : {false, true}) {
    RenderCase c = MakeCase(4, 60);
    c.SetCustomLens(lens);
    c.ExpectExact(MakePicture(Pattern::kNoise, 12, 8, deep));
  }
}

TEST(DirectionalBlurTest, FaintMaskIsGatedBeforeTheLensStrengthensIt) {
  // The lens stage raises masks by a twentieth here, so that those just below 0.0001 show what this
  // stage has left alone, in steps of a 16-bit channel.
  World lens = MakePicture(Pattern::kBlack, 16, 8, true);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 16; ++x) {
      const int grey = 318 + x;
      lens.At(y, x) = MakePixel(grey, grey, grey, grey);
    }
  }
  const World input = MakePicture(Pattern::kNoise, 16, 8, true);
  RenderCase c = MakeCase(4, 60);
  c.Set("realistic-blur.visible", 1)
      .Set("realistic-blur.amount", 500)
      .Set("realistic-blur.use-lens-as-blur-map", 1);
  c.SetCustomLens(lens).SetPoint("lens.position", 8, 4);
  c.ExpectExact(input);
}

TEST(DirectionalBlurTest, EverySizeAndDepth) {
  for (const auto& [width, height] : kSizes) {
    for (const bool deep : {false, true}) {
      for (const double length : {1.0, 3.0, 11.0, 40.0}) {
        MakeCase(length, 33).ExpectExact(MakePicture(Pattern::kHoles, width, height, deep));
      }
    }
  }
}

TEST(DirectionalBlurTest, EveryDirection) {
  int turn = 0;
  for (int degrees = -180; degrees <= 360; degrees += 15) {
    for (const double length : {1.0, 2.0, 5.0, 13.7, 30.0}) {
      MakeCase(length, degrees)
          .ExpectExact(MakePicture(kAllPatterns[turn % 6], 19, 15, turn % 2 == 0));
      ++turn;
    }
  }
}

TEST(DirectionalBlurTest, EveryLength) {
  for (int length = 0; length <= 64; ++length) {
    MakeCase(length, 71).ExpectExact(MakePicture(Pattern::kNoise, 21, 9, length % 2 == 0));
    MakeCase(length, 0).ExpectExact(MakePicture(Pattern::kHoles, 9, 21, length % 2 == 1));
    MakeCase(length, 90).ExpectExact(MakePicture(Pattern::kHoles, 21, 9, length % 2 == 1));
  }
}

TEST(DirectionalBlurTest, EveryPattern) {
  for (const Pattern pattern : kAllPatterns) {
    for (const bool deep : {false, true}) {
      MakeCase(9, 50).ExpectExact(MakePicture(pattern, 61, 37, deep));
    }
  }
}

TEST(DirectionalBlurTest, LinesFarLongerThanThePicture) {
  // A lens of five pixels, so that the definition is done in reasonable time.
  for (const double degrees : {0.0, 90.0, 37.0}) {
    for (const double length : {500.0, 5000.0, 46340.0}) {
      RenderCase c = MakeCase(length, degrees);
      c.SetCircle(30, 20, 0.5, 200);
      const World input = MakePicture(Pattern::kHoles, 200, 150, length < 1000);
      c.ExpectExact(input);
      EXPECT_TRUE(Differ(input, c.Actual(input)));
    }
  }
}

TEST(DirectionalBlurTest, KeepsWrappedLengths) {
  // From 46341 on the square of the length exceeds 32 bits: every weight is NaN, and NaN is stored
  // as 0. The square of 65536 is 0, and every weight except the pixel's own is minus infinity.
  for (const double length : {46341.0, 50000.0, 65535.0, 65536.0}) {
    for (const double degrees : {0.0, 90.0, 30.0}) {
      RenderCase c = MakeCase(length, degrees);
      c.SetCircle(30, 20, 0.5, 400);
      const World input = MakePicture(Pattern::kNoise, 400, 300, degrees > 0);
      c.ExpectExact(input);
      EXPECT_TRUE(Differ(input, c.Actual(input)));
    }
  }
  RenderCase c = MakeCase(50000, 0);
  c.SetCircle(10, 6, 1.5, 21);
  const World result = c.Actual(MakePicture(Pattern::kNearWhite, 21, 13, false));
  EXPECT_EQ(result.At(6, 10).channel[1], 0);
}

TEST(DirectionalBlurTest, RandomLinesAndPictures) {
  constexpr std::uint32_t kSeed = 20261122;
  std::mt19937 random(kSeed);
  const auto below = [&random](int end) {
    return static_cast<int>(random() % static_cast<unsigned>(end));
  };
  for (int i = 0; i < 250; ++i) {
    const int width = 1 + below(97);
    const int height = 1 + below(61);
    // A few lines are as long as the panel lets them be.
    const double length = i % 60 == 0 ? below(65537) : below(90);
    RenderCase c = MakeCase(length, below(3600) / 10.0);
    if (length > 90) {
      c.SetCircle(below(width), below(height), 0.6, width);
    } else if (i % 3 == 0) {
      c.SetCircle(below(width), below(height), 1 + below(40), width).Set("lens.feather", below(60));
    }
    c.ExpectExact(MakePicture(kAllPatterns[below(9)], width, height, i % 2 == 1,
                              static_cast<std::uint64_t>(i)));
    if (HasFailure()) {
      FAIL() << "seed " << kSeed << ", case " << i << ", length " << length;
    }
  }
}

TEST(DirectionalBlurTest, PaddedRowsAndGuardPages) {
  for (const bool deep : {false, true}) {
    RenderCase c = MakeCase(7, 20);
    c.Layout().rowPadding = deep ? 6 : 7;
    c.Layout().baseOffset = deep ? 2 : 3;
    c.Options().newWorldLayout = c.Layout();
    c.ExpectExact(MakePicture(Pattern::kHoles, 17, 9, deep));
    for (const headless::GuardPages guard :
         {headless::GuardPages::kAtEnd, headless::GuardPages::kAtStart}) {
      RenderCase guarded = MakeCase(30, 20);
      guarded.Layout().guardPages = guard;
      guarded.Options().newWorldLayout = guarded.Layout();
      guarded.ExpectExact(MakePicture(Pattern::kHoles, 17, 9, deep));
    }
  }
}

TEST(DirectionalBlurTest, SameOnAnyNumberOfThreadsInAnyOrder) {
  for (const bool deep : {false, true}) {
    MakeCase(12, 25).ExpectExactInEveryOrder(MakePicture(Pattern::kHoles, 37, 29, deep));
  }
}

}  // namespace
}  // namespace vitrell
