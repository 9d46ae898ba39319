// The realistic blur of the effect module, bit for bit against its definition.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "blur/render_case.h"

namespace vitrell {
namespace {

using literal::World;
using ::testing::Each;
using ::testing::ElementsAre;

constexpr std::pair<int, int> kSizes[] = {{1, 1}, {2, 1},  {1, 2},  {2, 2},  {3, 3},   {5, 4},
                                          {7, 2}, {16, 9}, {33, 1}, {1, 33}, {17, 23}, {97, 61}};

RenderCase MakeCase(double amount) {
  RenderCase c;
  c.Set("realistic-blur.visible", 1).Set("realistic-blur.amount", amount);
  return c;
}

// A disc, blurred uniformly.
RenderCase DiscCase(double amount) {
  RenderCase c = MakeCase(amount);
  c.Set("realistic-blur.iris-roundness", 100);
  return c;
}

RenderCase MappedCase(double amount) {
  RenderCase c = MakeCase(amount);
  c.Set("realistic-blur.use-lens-as-blur-map", 1);
  return c;
}

// One white dot on dark grey: the blurred picture shows the iris.
World Dot(int size, bool deep) {
  World world = MakePicture(Pattern::kBlack, size, size, deep);
  const int white = deep ? 32768 : 255;
  for (literal::Pixel& pixel : world.pixels) pixel = MakePixel(white, 2, 2, 2);
  world.At(size / 2, size / 2) = MakePixel(white, white, white, white);
  return world;
}

TEST(RealisticBlurTest, AmountZeroCopiesInput) {
  for (const bool deep : {false, true}) {
    const World input = MakePicture(Pattern::kNoise, 13, 7, deep);
    ExpectSamePicture(input, MakeCase(0).Actual(input), "amount 0");
    ExpectSamePicture(input, MakeCase(0.01).Actual(input), "amount 0.01");
    MakeCase(0.01).ExpectExact(input);
    MappedCase(0.005).ExpectExact(input);
    EXPECT_TRUE(Differ(input, MakeCase(2).Actual(input)));
  }
}

TEST(RealisticBlurTest, InvisibleCopiesInput) {
  const World input = MakePicture(Pattern::kNoise, 13, 7, false);
  ExpectSamePicture(input, MakeCase(5).Set("realistic-blur.visible", 0).Actual(input), "off");
  RenderCase two = MakeCase(5);
  two.Host().Record(two.Host().IndexOf("realistic-blur.visible")).u.bd.value = 2;
  ExpectSamePicture(input, two.Actual(input), "visible 2");
}

TEST(RealisticBlurTest, RadiusZeroMendsTheEdges) {
  for (const bool deep : {false, true}) {
    for (const Pattern pattern : kAllPatterns) {
      const World input = MakePicture(pattern, 9, 6, deep);
      MakeCase(0.5).ExpectExact(input);
      MappedCase(0.5).ExpectExact(input);
    }
  }
}

TEST(RealisticBlurTest, EveryRadiusFromZeroToForty) {
  for (int radius = 0; radius <= 40; ++radius) {
    const bool deep = radius % 2 == 1;
    const double amount = radius + 0.5;
    MakeCase(amount).ExpectExact(MakePicture(Pattern::kBrightToDark, 41, 19, deep));
    MakeCase(amount).ExpectExact(MakePicture(Pattern::kHoles, 19, 23, !deep));
    MappedCase(amount).ExpectExact(MakePicture(Pattern::kHoles, 23, 12, deep));
  }
}

TEST(RealisticBlurTest, EverySizeAndDepth) {
  for (const auto& [width, height] : kSizes) {
    for (const bool deep : {false, true}) {
      for (const double amount : {1.0, 3.0, 7.0}) {
        MakeCase(amount).ExpectExact(MakePicture(Pattern::kNoise, width, height, deep));
        MappedCase(amount).ExpectExact(MakePicture(Pattern::kNoise, width, height, deep));
      }
    }
  }
}

TEST(RealisticBlurTest, EveryPattern) {
  for (const Pattern pattern : kAllPatterns) {
    for (const bool deep : {false, true}) {
      MakeCase(4).ExpectExact(MakePicture(pattern, 61, 37, deep));
      MappedCase(4).ExpectExact(MakePicture(pattern, 31, 27, deep));
    }
  }
}

TEST(RealisticBlurTest, EveryIrisShape) {
  int turn = 0;
  for (int sides = 1; sides <= 8; ++sides) {
    for (const double roundness : {0.0, 37.0, 100.0}) {
      for (const double aspect : {0.0, 0.01, 0.5, 1.0, 2.75, 4.0}) {
        for (const double degrees : {0.0, 23.0, 90.0, -135.0}) {
          RenderCase c = MakeCase(2 + turn % 9);
          c.Set("realistic-blur.iris-sides", sides)
              .Set("realistic-blur.iris-roundness", roundness)
              .Set("realistic-blur.iris-aspect-ratio", aspect)
              .Set("realistic-blur.iris-rotation", degrees)
              .Set("realistic-blur.use-lens-as-blur-map", turn % 3 == 0 ? 1 : 0);
          c.ExpectExact(MakePicture(kAllPatterns[turn % 6], 19, 15, turn % 2 == 0));
          ++turn;
        }
      }
    }
  }
  EXPECT_EQ(turn, 576);
}

TEST(RealisticBlurTest, ADotShowsTheIris) {
  for (int sides = 1; sides <= 8; ++sides) {
    for (const bool deep : {false, true}) {
      const World dot = Dot(41, deep);
      MakeCase(15).Set("realistic-blur.iris-sides", sides).ExpectExact(dot);
      MappedCase(15).Set("realistic-blur.iris-sides", sides).ExpectExact(dot);
    }
  }
}

TEST(RealisticBlurTest, LargeRadiiOnSmallPictures) {
  for (const double amount : {63.0, 127.0, 255.0, 500.0}) {
    MakeCase(amount).ExpectExact(MakePicture(Pattern::kBrightToDark, 23, 9, false));
    MakeCase(amount)
        .Set("realistic-blur.iris-roundness", 37)
        .ExpectExact(MakePicture(Pattern::kNoise, 6, 11, true));
  }
  MappedCase(200).ExpectExact(MakePicture(Pattern::kNoise, 5, 4, false));
}

TEST(RealisticBlurTest, KeepsTruncatedSinglePrecisionRadius) {
  const World input = MakePicture(Pattern::kNoise, 130, 3, false);
  for (const int amount : {53, 59, 105, 106, 117, 118}) {
    const World lower = MakeCase(amount - 0.5).Actual(input);
    ExpectSamePicture(lower, MakeCase(amount).Actual(input), std::to_string(amount));
    EXPECT_TRUE(Differ(lower, MakeCase(amount + 0.5).Actual(input))) << amount;
    MakeCase(amount).ExpectExact(input);
  }
}

TEST(RealisticBlurTest, KeepsShapeMirrored) {
  // A triangle turned by 90 degrees: the kernel reaches 8 pixels to the left and 4 to the right, so
  // the dot's light reaches 8 pixels to its right and 5 to its left (one of them by the edge ramp).
  const World dot = Dot(31, false);
  RenderCase c = MakeCase(8);
  c.Set("realistic-blur.iris-sides", 1).Set("realistic-blur.iris-rotation", 90);
  const World blurred = c.Actual(dot);
  EXPECT_GT(blurred.At(15, 15 + 8).channel[1], 2);
  EXPECT_LE(blurred.At(15, 15 + 9).channel[1], 2);
  EXPECT_GT(blurred.At(15, 15 - 5).channel[1], 2);
  EXPECT_LE(blurred.At(15, 15 - 6).channel[1], 2);
  c.ExpectExact(dot);
}

TEST(RealisticBlurTest, KeepsRisingEdgeOfTheDisc) {
  // At radius 2 the root of 5 weighs 0.236 and the root of 8 weighs 0.828: more of a dot's light
  // reaches the corner pixel than the one beside it, although that one is nearer.
  for (const bool deep : {false, true}) DiscCase(2).ExpectExact(Dot(15, deep));
  const World blurred = DiscCase(2).Actual(Dot(15, true));
  EXPECT_GT(blurred.At(5, 5).channel[1], blurred.At(6, 5).channel[1]);
}

TEST(RealisticBlurTest, KeepsAspectAboveOneShrinkingBothAxes) {
  // The shape of amount 8 at ratio 2 is 8 pixels wide and 4 high: squeezed, then doubled again.
  const World dot = Dot(31, false);
  RenderCase c = DiscCase(8);
  c.Set("realistic-blur.iris-aspect-ratio", 2);
  const World blurred = c.Actual(dot);
  EXPECT_GT(blurred.At(15, 15 + 8).channel[1], 2);
  EXPECT_LE(blurred.At(15, 15 + 9).channel[1], 2);
  EXPECT_GT(blurred.At(15 + 4, 15).channel[1], 2);
  EXPECT_LE(blurred.At(15 + 5, 15).channel[1], 2);
  c.ExpectExact(dot);
}

TEST(RealisticBlurTest, KeepsResidueOfTheSlidingSumOnBlack) {
  // Weights 0.76696497 and 0.15339300. After both have been added and taken away again in single
  // precision, -1.25e-6 of colour and -2.98e-8 of weight remain: 42 on black.
  EXPECT_THAT(Reds(DiscCase(1).Actual(MakeGreyRow({150, 6, 0, 0, 0, 0}))),
              ElementsAre(126, 126, 5, 42, 42, 42));
}

TEST(RealisticBlurTest, KeepsLowByteOfUnclampedColours) {
  // The residue is 1.19e-6 over -1.49e-8, which is -80, stored as 176.
  EXPECT_EQ(Reds(DiscCase(1).Actual(MakeGreyRow({150, 7, 0, 0, 0, 0})))[4], 176);
}

TEST(RealisticBlurTest, TransparentBlackResultStartsTheSumAnew) {
  World input = MakeGreyRow({100, 44, 0, 0, 0, 6, 0, 0});
  EXPECT_THAT(Reds(DiscCase(1).Actual(input)), ElementsAre(77, 77, 43, 0, 5, 5, 5, 5));
  input.pixels[3] = literal::Pixel{};
  EXPECT_THAT(Reds(DiscCase(1).Actual(input)), ElementsAre(77, 77, 43, 0, 6, 6, 6, 6));
  DiscCase(1).ExpectExact(input);
}

TEST(RealisticBlurTest, IslandsInTransparentBlack) {
  // Bright islands further apart than the kernel is wide: every gap starts the sum anew.
  for (const bool deep : {false, true}) {
    for (const std::uint64_t seed : {1U, 2U, 3U, 4U}) {
      World input = MakePicture(Pattern::kNoise, 97, 13, deep, seed);
      for (int y = 0; y < 13; ++y) {
        for (int x = 0; x < 97; ++x) {
          if ((x / 9 + y / 5) % 2 == 0) input.At(y, x) = literal::Pixel{};
        }
      }
      for (const double amount : {1.0, 2.0, 3.0}) MakeCase(amount).ExpectExact(input);
    }
  }
}

TEST(RealisticBlurTest, ResidueOnBlackInWholePictures) {
  for (const bool deep : {false, true}) {
    for (const std::uint64_t seed : {1U, 2U, 3U}) {
      for (const double amount : {2.0, 6.0, 17.0}) {
        MakeCase(amount).ExpectExact(MakePicture(Pattern::kBrightToDark, 97, 61, deep, seed));
      }
    }
  }
}

TEST(RealisticBlurTest, WeightlessFootprintIsBlackWhenUniform) {
  for (const bool deep : {false, true}) {
    const World input = MakePicture(Pattern::kTransparent, 9, 7, deep);
    EXPECT_THAT(Reds(MakeCase(3).Actual(input)), Each(0));
    MakeCase(3).ExpectExact(input);
  }
}

TEST(RealisticBlurTest, WeightlessFootprintKeepsColoursWhenMapped) {
  for (const bool deep : {false, true}) {
    const World input = MakePicture(Pattern::kTransparent, 9, 7, deep);
    EXPECT_EQ(MappedCase(3).Actual(input).At(2, 3).channel[1], input.At(2, 3).channel[1]);
    MappedCase(3).ExpectExact(input);
  }
}

TEST(RealisticBlurTest, KeepsLastRowAndColumnCopied) {
  for (const bool deep : {false, true}) {
    for (const bool mapped : {false, true}) {
      const World input = MakePicture(Pattern::kNoise, 21, 14, deep);
      RenderCase c = mapped ? MappedCase(3) : MakeCase(3);
      const World result = c.Actual(input);
      for (int i = 0; i < 4; ++i) {
        for (int x = 0; x < 20; ++x) {
          EXPECT_EQ(result.At(13, x).channel[i], result.At(12, x).channel[i]) << x;
        }
        for (int y = 0; y < 14; ++y) {
          EXPECT_EQ(result.At(y, 20).channel[i], result.At(y, 19).channel[i]) << y;
        }
        EXPECT_EQ(result.At(13, 20).channel[i], result.At(12, 19).channel[i]);
      }
      // Alpha is not blurred: what was mended is not what came in.
      EXPECT_NE(result.At(13, 5).channel[0], input.At(13, 5).channel[0]);
      EXPECT_NE(result.At(6, 20).channel[0], input.At(6, 20).channel[0]);
    }
  }
}

// A grey of value g and alpha 1 weighs the root of g x 2^-30. 1 and 5 together weigh 0.0000988,
// less than the least that is divided by; 2 and 4 weigh 0.0000432 + 0.0000610, and their average is
// (2 x 0.0000432 + 4 x 0.0000610) / 0.0001042 = 3.17. The last column is mended.
TEST(RealisticBlurTest, FaintPixelsKeepTheirColoursWhenMapped) {
  RenderCase c = MappedCase(1);
  c.Set("realistic-blur.iris-roundness", 100);
  const auto blurred = [&c](int left, int right) {
    World input = MakePicture(Pattern::kBlack, 4, 1, true);
    input.pixels = {MakePixel(1, left, left, left), MakePixel(1, right, right, right),
                    MakePixel(0, 900, 900, 900), MakePixel(0, 800, 800, 800)};
    c.ExpectExact(input);
    const World result = c.Actual(input);
    EXPECT_EQ(result.At(0, 0).channel[0], 1);
    return std::vector<int>{result.At(0, 0).channel[1], result.At(0, 1).channel[1]};
  };
  EXPECT_THAT(blurred(1, 5), ElementsAre(1, 5));
  EXPECT_THAT(blurred(2, 4), ElementsAre(3, 3));
}

TEST(RealisticBlurTest, LoneRowsAndColumnsAreNotMended) {
  EXPECT_THAT(Reds(MappedCase(0.5).Actual(MakeGreyRow({5, 10, 20}))), ElementsAre(5, 10, 10));
  EXPECT_THAT(Reds(MappedCase(0.5).Actual(MakeGreyRow({5}))), ElementsAre(5));
}

TEST(RealisticBlurTest, MaskZeroSelectsKernelZeroAndOneTheLargest) {
  // The left half of the lens is black, the right half white; it lies one pixel further right.
  World lens = MakePicture(Pattern::kBlack, 24, 10, false);
  for (int y = 0; y < 10; ++y) {
    for (int x = 12; x < 24; ++x) lens.At(y, x) = MakePixel(255, 255, 255, 255);
  }
  const World input = MakePicture(Pattern::kNoise, 24, 10, false);
  RenderCase c = MappedCase(4);
  c.SetCustomLens(lens).SetPoint("lens.position", 12, 5);
  c.ExpectExact(input);
  const World result = c.Actual(input);
  const World smallest = MappedCase(0.5).Actual(input);
  const World largest = MappedCase(4).Actual(input);
  for (int y = 1; y < 9; ++y) {
    EXPECT_EQ(result.At(y, 5).channel[1], smallest.At(y, 5).channel[1]);
    EXPECT_EQ(result.At(y, 12).channel[1], smallest.At(y, 12).channel[1]);
    EXPECT_EQ(result.At(y, 13).channel[1], largest.At(y, 13).channel[1]);
    EXPECT_EQ(result.At(y, 20).channel[1], largest.At(y, 20).channel[1]);
  }
}

TEST(RealisticBlurTest, LensMapsOfEveryKind) {
  for (const bool deep : {false, true}) {
    for (const double amount : {1.0, 5.0, 20.0}) {
      for (const double feather : {0.0, 20.0, 300.0}) {
        RenderCase c = MappedCase(amount);
        c.SetCircle(20, 15, 9, 41).Set("lens.feather", feather);
        c.ExpectExact(MakePicture(Pattern::kHoles, 41, 31, deep));
        c.Set("lens.invert-alpha", 1);
        c.ExpectExact(MakePicture(Pattern::kNoise, 41, 31, deep));
      }
      RenderCase c = MappedCase(amount);
      c.SetCustomLens(MakePicture(Pattern::kNoise, 29, 17, deep));
      c.ExpectExact(MakePicture(Pattern::kNoise, 29, 17, deep));
    }
  }
}

TEST(RealisticBlurTest, MaskAboveOneOrBelowZeroStaysWithinTheKernels) {
  RenderCase c = MappedCase(6);
  c.SetCustomLens(MakePicture(Pattern::kAboveWhite, 15, 12, true));
  c.ExpectExact(MakePicture(Pattern::kNoise, 15, 12, true));
  c.Set("lens.invert-alpha", 1);
  c.ExpectExact(MakePicture(Pattern::kNoise, 15, 12, true));
}

TEST(RealisticBlurTest, LensDoesNotGateTheUniformBlur) {
  RenderCase c = MakeCase(3);
  c.SetCircle(10, 10, 4, 25).Set("lens.feather", 30);
  c.ExpectExact(MakePicture(Pattern::kNoise, 25, 21, false));
}

TEST(RealisticBlurTest, EightBitWorkingWorldsForADeepInput) {
  RenderCase c = MakeCase(4);
  c.Options().newWorldDepth = headless::NewWorldDepth::kEightBit;
  c.ExpectExact(MakePicture(Pattern::kNoise, 25, 21, true));
  RenderCase mapped = MappedCase(4);
  mapped.Options().newWorldDepth = headless::NewWorldDepth::kEightBit;
  mapped.ExpectExact(MakePicture(Pattern::kNoise, 25, 21, true));
}

TEST(RealisticBlurTest, PaddedRowsAndOddBases) {
  for (const bool deep : {false, true}) {
    RenderCase c = MakeCase(5);
    c.Layout().rowPadding = deep ? 6 : 7;
    c.Layout().baseOffset = deep ? 2 : 3;
    c.Options().newWorldLayout = c.Layout();
    for (const int width : {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 33}) {
      c.ExpectExact(MakePicture(Pattern::kHoles, width, 6, deep));
    }
    c.Set("realistic-blur.use-lens-as-blur-map", 1);
    c.ExpectExact(MakePicture(Pattern::kHoles, 17, 6, deep));
  }
}

TEST(RealisticBlurTest, GuardPagesBesideThePixels) {
  for (const headless::GuardPages guard :
       {headless::GuardPages::kAtEnd, headless::GuardPages::kAtStart}) {
    for (const bool deep : {false, true}) {
      RenderCase c = MakeCase(9);
      c.Layout().guardPages = guard;
      c.Options().newWorldLayout = c.Layout();
      c.ExpectExact(MakePicture(Pattern::kHoles, 13, 6, deep));
      c.Set("realistic-blur.use-lens-as-blur-map", 1);
      c.ExpectExact(MakePicture(Pattern::kNoise, 13, 6, deep));
    }
  }
}

TEST(RealisticBlurTest, SameOnAnyNumberOfThreadsInAnyOrder) {
  for (const bool deep : {false, true}) {
    MakeCase(6).ExpectExactInEveryOrder(MakePicture(Pattern::kHoles, 37, 29, deep));
    RenderCase c = MappedCase(9);
    c.SetCustomLens(MakePicture(Pattern::kNoise, 37, 29, deep, 5));
    c.ExpectExactInEveryOrder(MakePicture(Pattern::kHoles, 37, 29, deep));
  }
}

}  // namespace
}  // namespace vitrell
