// The optical distortion of the effect module, bit for bit against its definition.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "blur/render_case.h"

namespace vitrell {
namespace {

using literal::World;

constexpr std::pair<int, int> kSizes[] = {{1, 1}, {2, 1},  {1, 2},  {2, 2},  {3, 3},   {5, 4},
                                          {7, 2}, {16, 9}, {33, 1}, {1, 33}, {17, 23}, {97, 61}};

RenderCase MakeCase(double degrees, int cx, int cy) {
  RenderCase c;
  c.Set("optical-distortion.visible", 1)
      .Set("optical-distortion.amount", degrees)
      .Set("optical-distortion.center-of-the-lens", 0);
  c.SetPoint("optical-distortion.center", cx, cy);
  return c;
}

std::string Text(const literal::Pixel& p) {
  return std::to_string(p.channel[0]) + " " + std::to_string(p.channel[1]) + " " +
         std::to_string(p.channel[2]) + " " + std::to_string(p.channel[3]);
}

TEST(OpticalDistortionTest, AmountZeroCopiesInput) {
  const World input = MakePicture(Pattern::kNoise, 13, 7, false);
  ExpectSamePicture(input, MakeCase(0, 6, 3).Actual(input), "amount 0");
  EXPECT_TRUE(Differ(input, MakeCase(120, 6, 3).Actual(input)));
}

TEST(OpticalDistortionTest, CentrePixelIsCopied) {
  for (const bool deep : {false, true}) {
    const World input = MakePicture(Pattern::kNoise, 41, 31, deep);
    const World result = MakeCase(150, 20, 11).Actual(input);
    EXPECT_EQ(Text(result.At(11, 20)), Text(input.At(11, 20)));
    EXPECT_NE(Text(result.At(11, 35)), Text(input.At(11, 35)));
  }
}

TEST(OpticalDistortionTest, OutsideTheLensNothingChanges) {
  for (const bool deep : {false, true}) {
    const World input = MakePicture(Pattern::kNoise, 41, 31, deep);
    RenderCase c = MakeCase(140, 20, 15);
    c.SetCircle(20, 15, 6, 41).Set("lens.feather", 40);
    c.ExpectExact(input);
    const World result = c.Actual(input);
    EXPECT_EQ(Text(result.At(1, 1)), Text(input.At(1, 1)));
    EXPECT_TRUE(Differ(input, result));
  }
}

TEST(OpticalDistortionTest, MaskGatesWithoutScaling) {
  // 16-bit greys from 320 to 339: masks on both sides of 0.0001.
  World lens = MakePicture(Pattern::kBlack, 12, 8, true);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 12; ++x) {
      const int grey = 320 + y + x;
      lens.At(y, x) = MakePixel(grey, grey, grey, grey);
    }
  }
  for (const bool deep : {false, true}) {
    RenderCase c = MakeCase(160, 6, 4);
    c.SetCustomLens(lens);
    c.ExpectExact(MakePicture(Pattern::kNoise, 12, 8, deep));
  }
}

TEST(OpticalDistortionTest, FaintMaskIsGatedBeforeTheLensStrengthensIt) {
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
  RenderCase c = MakeCase(160, 8, 4);
  c.Set("realistic-blur.visible", 1)
      .Set("realistic-blur.amount", 500)
      .Set("realistic-blur.use-lens-as-blur-map", 1);
  c.SetCustomLens(lens).SetPoint("lens.position", 8, 4);
  c.ExpectExact(input);
}

TEST(OpticalDistortionTest, FullHalfCircleShowsTheCentrePixel) {
  for (const bool deep : {false, true}) {
    World input = MakePicture(Pattern::kNoise, 13, 9, deep);
    input.At(4, 6) = MakePixel(77, 1, 2, 3);
    for (const literal::Pixel& pixel : MakeCase(180, 6, 4).Actual(input).pixels) {
      EXPECT_EQ(Text(pixel), "77 1 2 3");
    }
    // A centre outside is folded back in: column -2 is column 2, row 12 is row 5.
    input.At(5, 2) = MakePixel(66, 5, 6, 7);
    for (const literal::Pixel& pixel : MakeCase(180, -2, 12).Actual(input).pixels) {
      EXPECT_EQ(Text(pixel), "66 5 6 7");
    }
    MakeCase(180, -2, 12).ExpectExact(input);
  }
}

TEST(OpticalDistortionTest, SamplesOutsideAreMirrored) {
  // Seen from 60 pixels beyond the right edge, most samples of a picture 9 pixels wide lie outside
  // it and are folded back in.
  for (const bool deep : {false, true}) {
    const World input = MakePicture(Pattern::kNoise, 9, 9, deep);
    MakeCase(150, 69, 4).ExpectExact(input);
    World changed = input;
    for (int y = 0; y < 9; ++y) changed.At(y, 7) = MakePixel(1, 2, 3, 4);
    EXPECT_TRUE(Differ(MakeCase(150, 69, 4).Actual(input), MakeCase(150, 69, 4).Actual(changed)));
    int untouched = 0;
    const World result = MakeCase(150, 69, 4).Actual(input);
    for (std::size_t i = 0; i < 81; ++i) {
      untouched += result.pixels[i].channel[1] == input.pixels[i].channel[1] ? 1 : 0;
    }
    EXPECT_LT(untouched, 20);
  }
}

TEST(OpticalDistortionTest, AlphaStaysWhileColoursMove) {
  const World input = MakePicture(Pattern::kNoise, 41, 31, false);
  const World result = MakeCase(130, 20, 15).Actual(input);
  int moved = 0;
  for (std::size_t i = 0; i < input.pixels.size(); ++i) {
    EXPECT_EQ(result.pixels[i].channel[0], input.pixels[i].channel[0]);
    moved += result.pixels[i].channel[1] != input.pixels[i].channel[1] ? 1 : 0;
  }
  EXPECT_GT(moved, 900);
}

TEST(OpticalDistortionTest, EveryFieldOfView) {
  int turn = 0;
  for (const double degrees :
       {0.1,   0.5,   1.0,   5.0,   20.0,  45.0,  60.0,  89.9,   90.0,    120.0,
        150.0, 170.0, 175.0, 178.0, 179.0, 179.5, 179.9, 179.99, 179.999, 180.0}) {
    for (const bool deep : {false, true}) {
      MakeCase(degrees, 20, 11).ExpectExact(MakePicture(Pattern::kNoise, 41, 31, deep));
      MakeCase(degrees, 33, 29).ExpectExact(MakePicture(kAllPatterns[turn % 6], 37, 53, deep, 3));
      ++turn;
    }
  }
}

TEST(OpticalDistortionTest, CentresOnAndOutsideTheEdge) {
  for (const bool deep : {false, true}) {
    for (const int cx : {-500, -31, -1, 0, 1, 15, 30, 31, 32, 700}) {
      for (const int cy : {-500, -21, -2, 0, 1, 10, 20, 21, 700}) {
        MakeCase(100, cx, cy).ExpectExact(MakePicture(Pattern::kNoise, 31, 21, deep));
      }
    }
  }
}

TEST(OpticalDistortionTest, KeepsFirstRowAndColumnWithoutInterpolation) {
  // Near the top left corner every sample's base row or column is 0 and is copied as it is.
  for (const bool deep : {false, true}) {
    const World input = MakePicture(Pattern::kNoise, 9, 9, deep);
    MakeCase(90, 0, 0).ExpectExact(input);
    const World result = MakeCase(90, 0, 0).Actual(input);
    for (int x = 1; x < 9; ++x) {
      bool found = false;
      for (int from = 0; from < 9; ++from) {
        found = found || result.At(0, x).channel[1] == input.At(0, from).channel[1];
      }
      EXPECT_TRUE(found) << x;
    }
  }
}

TEST(OpticalDistortionTest, EverySizeAndDepth) {
  for (const auto& [width, height] : kSizes) {
    for (const bool deep : {false, true}) {
      for (const double degrees : {10.0, 100.0, 170.0}) {
        MakeCase(degrees, width / 2, height / 2)
            .ExpectExact(MakePicture(Pattern::kNoise, width, height, deep));
        MakeCase(degrees, width / 3 - 4, height + 3)
            .ExpectExact(MakePicture(Pattern::kHoles, width, height, deep));
      }
    }
  }
}

TEST(OpticalDistortionTest, EveryPattern) {
  for (const Pattern pattern : kAllPatterns) {
    for (const bool deep : {false, true}) {
      MakeCase(125, 31, 12).ExpectExact(MakePicture(pattern, 61, 37, deep));
    }
  }
}

TEST(OpticalDistortionTest, CentreOfTheLensIsAnyValueButZero) {
  const World input = MakePicture(Pattern::kNoise, 31, 21, false);
  RenderCase c = MakeCase(120, 3, 4);
  const World own = c.Actual(input);
  c.Set("optical-distortion.center-of-the-lens", 1).SetPoint("lens.position", 20, 10);
  c.ExpectExact(input);
  const World lens = c.Actual(input);
  EXPECT_TRUE(Differ(own, lens));
  PF_ParamDef& record = c.Host().Record(c.Host().IndexOf("optical-distortion.center-of-the-lens"));
  record.u.bd.value = 2;
  ExpectSamePicture(lens, c.Actual(input), "center of the lens 2");
  record.u.bd.value = 256;
  ExpectSamePicture(own, c.Actual(input), "center of the lens 256");
}

TEST(OpticalDistortionTest, RandomBendsAndPictures) {
  constexpr std::uint32_t kSeed = 20261123;
  std::mt19937 random(kSeed);
  const auto between = [&random](int first, int last) {
    return first + static_cast<int>(random() % static_cast<unsigned>(last - first + 1));
  };
  for (int i = 0; i < 300; ++i) {
    // Some rows are longer than what is worked out at once.
    const int width = i % 5 == 0 ? between(200, 600) : between(1, 97);
    const int height = between(1, 61);
    RenderCase c =
        MakeCase(between(1, 1799) / 10.0, between(-width, 2 * width), between(-height, 2 * height));
    if (i % 3 == 0) {
      c.SetCircle(between(0, width), between(0, height), between(1, 60), width)
          .Set("lens.feather", between(0, 90));
    }
    c.ExpectExact(MakePicture(kAllPatterns[between(0, 8)], width, height, i % 2 == 1,
                              static_cast<std::uint64_t>(i)));
    if (HasFailure()) {
      FAIL() << "seed " << kSeed << ", case " << i;
    }
  }
}

TEST(OpticalDistortionTest, PaddedRowsAndGuardPages) {
  for (const bool deep : {false, true}) {
    for (const headless::GuardPages guard :
         {headless::GuardPages::kNone, headless::GuardPages::kAtEnd,
          headless::GuardPages::kAtStart}) {
      RenderCase c = MakeCase(110, -4, 14);
      c.Layout().guardPages = guard;
      if (guard == headless::GuardPages::kNone) c.Layout().rowPadding = deep ? 6 : 7;
      c.Options().newWorldLayout = c.Layout();
      c.ExpectExact(MakePicture(Pattern::kHoles, 17, 9, deep));
    }
  }
}

TEST(OpticalDistortionTest, SameOnAnyNumberOfThreadsInAnyOrder) {
  for (const bool deep : {false, true}) {
    MakeCase(115, 12, 20).ExpectExactInEveryOrder(MakePicture(Pattern::kHoles, 37, 29, deep));
  }
}

}  // namespace
}  // namespace vitrell
