// The trail of the effect module, bit for bit against its definition on one thread, row by row.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "blur/render_case.h"

namespace vitrell {
namespace {

using literal::World;

constexpr std::pair<int, int> kSizes[] = {{1, 1},  {2, 1},   {1, 2}, {2, 2},  {3, 3},
                                          {3, 2},  {5, 4},   {7, 2}, {16, 9}, {33, 1},
                                          {1, 33}, {17, 23}, {4, 4}, {40, 3}, {97, 61}};

RenderCase MakeCase(double amount, int cx, int cy) {
  RenderCase c;
  c.Set("trail.visible", 1).Set("trail.amount", amount).Set("trail.center-of-the-lens", 0);
  c.SetPoint("trail.center", cx, cy);
  return c;
}

TEST(TrailTest, TooSmallAnAmountReproducesTheInput) {
  // The farthest corner of a 20 x 20 picture lies less than 28 pixels away: 28 x 0.15 squared is
  // 0.63, so no tap; and 0.15 x 2.5 + 0.5 is below 1, so no smoothing either.
  for (const bool deep : {false, true}) {
    for (const Pattern pattern : {Pattern::kNoise, Pattern::kHoles, Pattern::kTransparent}) {
      const World input = MakePicture(pattern, 20, 20, deep);
      MakeCase(15, 10, 10).ExpectExact(input);
    }
    const World input = MakePicture(Pattern::kNoise, 20, 20, deep);
    ExpectSamePicture(input, MakeCase(15, 10, 10).Actual(input), "amount 15");
    EXPECT_TRUE(Differ(input, MakeCase(60, 10, 10).Actual(input)));
  }
}

TEST(TrailTest, AmountZeroAndInvisibleCopyTheInput) {
  const World input = MakePicture(Pattern::kNoise, 20, 12, false);
  ExpectSamePicture(input, MakeCase(0, 10, 5).Actual(input), "amount 0");
  RenderCase hidden = MakeCase(50, 10, 5);
  hidden.Set("trail.visible", 0);
  ExpectSamePicture(input, hidden.Actual(input), "invisible");
}

TEST(TrailTest, KeepsColoursRoundedDownWithoutSmoothing) {
  // At 19 % nothing is smoothed (0.19 x 2.5 + 0.5 = 0.975). The farthest corner is 60 pixels away:
  // 60 x 0.0361 = 2.166, so two taps, weights 1 and 1/4. Along the middle row toward the centre at
  // its right: (200 + 101 / 4) / 1.25 = 180.2 and (103 + 50 / 4) / 1.25 = 92.4.
  World input = MakePicture(Pattern::kBlack, 62, 3, false);
  for (int x = 0; x < 62; ++x) {
    input.At(1, x) = x % 2 == 0 ? MakePixel(255, 200, 103, 0) : MakePixel(255, 101, 50, 0);
  }
  const World result = MakeCase(19, 60, 1).Actual(input);
  EXPECT_EQ(result.At(1, 0).channel[1], 180);
  EXPECT_EQ(result.At(1, 0).channel[2], 92);
  MakeCase(19, 60, 1).ExpectExact(input);
}

TEST(TrailTest, KeepsSinglePrecisionReach) {
  // 100 x 0.7 x 0.7 is 49 in single precision but 48.9999983 in double.
  for (const bool deep : {false, true}) {
    MakeCase(70, 100, 1).ExpectExact(MakePicture(Pattern::kNoise, 103, 3, deep));
  }
}

TEST(TrailTest, TransparentTapsAreSkipped) {
  World input = MakePicture(Pattern::kBlack, 62, 3, false);
  for (int x = 0; x < 62; ++x) {
    input.At(1, x) = x % 2 == 0 ? MakePixel(255, 200, 100, 0) : MakePixel(0, 99, 99, 99);
  }
  const World result = MakeCase(19, 60, 1).Actual(input);
  EXPECT_EQ(result.At(1, 0).channel[1], 200);
  EXPECT_EQ(result.At(1, 1).channel[1], 200);
  EXPECT_EQ(result.At(1, 1).channel[0], 0);
  MakeCase(19, 60, 1).ExpectExact(input);
}

// In a picture two pixels wide the centre is pulled onto the left border, so that one ray goes from
// a point to itself.
TEST(TrailTest, RayFromTheCentreToItself) {
  for (const bool deep : {false, true}) {
    for (const Pattern pattern : {Pattern::kNoise, Pattern::kHoles}) {
      for (const double amount : {19.0, 50.0, 100.0}) {
        MakeCase(amount, 1, 20).ExpectExactInEveryOrder(MakePicture(pattern, 2, 40, deep));
      }
    }
  }
  // 2 x 60: the farthest corner is 58 pixels from (0, 2), so that 19 % are two taps, weights 1 and
  // 1/4. The pixel above the centre takes a fifth of the centre's 50: (200 + 50 / 4) / 1.25. The
  // centre has no pixel beyond it.
  World input = MakePicture(Pattern::kBlack, 2, 60, false);
  input.At(1, 0) = MakePixel(255, 200, 0, 0);
  input.At(2, 0) = MakePixel(255, 50, 0, 0);
  const World result = MakeCase(19, 1, 2).Actual(input);
  EXPECT_EQ(result.At(1, 0).channel[1], 170);
  EXPECT_EQ(result.At(2, 0).channel[1], 50);
}

// A transparent pixel may take the colour of a later ray; which one depends only on the rays'
// order.
TEST(TrailTest, SamePictureInAnyOrderOnAnyThreads) {
  for (const Pattern pattern : {Pattern::kNoise, Pattern::kHoles, Pattern::kTransparent}) {
    for (const bool deep : {false, true}) {
      for (const double amount : {1.0, 19.0, 45.0, 100.0}) {
        MakeCase(amount, 40, 25).ExpectExactInEveryOrder(MakePicture(pattern, 97, 61, deep));
      }
      // More than one tile each way.
      MakeCase(60, 200, 40).ExpectExactInEveryOrder(MakePicture(pattern, 301, 260, deep));
    }
  }
}

TEST(TrailTest, EverySizeAndDepth) {
  for (const auto& [width, height] : kSizes) {
    for (const bool deep : {false, true}) {
      for (const double amount : {5.0, 30.0, 70.0, 100.0}) {
        MakeCase(amount, width / 2, height / 3)
            .ExpectExact(MakePicture(Pattern::kNoise, width, height, deep));
        MakeCase(amount, width / 4, height / 2)
            .ExpectExact(MakePicture(Pattern::kHoles, width, height, deep));
      }
    }
  }
}

TEST(TrailTest, EveryAmount) {
  for (int amount = 1; amount <= 100; ++amount) {
    MakeCase(amount, 20, 30).ExpectExact(MakePicture(Pattern::kNoise, 61, 41, amount % 2 == 0));
  }
}

TEST(TrailTest, CentresOnAndOutsideTheEdge) {
  for (const bool deep : {false, true}) {
    for (const int cx : {-500, -1, 0, 1, 15, 28, 29, 30, 31, 500}) {
      for (const int cy : {-500, -1, 0, 1, 9, 18, 19, 20, 21, 500}) {
        MakeCase(70, cx, cy).ExpectExact(MakePicture(Pattern::kHoles, 31, 21, deep));
      }
    }
  }
}

TEST(TrailTest, CentreOnTheEdgeIsPulledInside) {
  const World input = MakePicture(Pattern::kNoise, 31, 21, false);
  const World corner = MakeCase(70, 1, 1).Actual(input);
  ExpectSamePicture(corner, MakeCase(70, 0, 0).Actual(input), "top left");
  ExpectSamePicture(corner, MakeCase(70, -40, -7).Actual(input), "beyond the top left");
  const World opposite = MakeCase(70, 29, 19).Actual(input);
  ExpectSamePicture(opposite, MakeCase(70, 30, 20).Actual(input), "bottom right");
  ExpectSamePicture(opposite, MakeCase(70, 99, 99).Actual(input), "beyond the bottom right");
  EXPECT_TRUE(Differ(corner, opposite));
}

TEST(TrailTest, EveryQuadrantAroundTheMiddle) {
  // Odd and even sizes; the farthest corner changes at the middle.
  for (const auto& [width, height] : {std::pair{24, 18}, std::pair{25, 19}}) {
    for (int cx = width / 2 - 2; cx <= width / 2 + 1; ++cx) {
      for (int cy = height / 2 - 2; cy <= height / 2 + 1; ++cy) {
        MakeCase(88, cx, cy).ExpectExact(MakePicture(Pattern::kNoise, width, height, false));
      }
    }
  }
}

TEST(TrailTest, CentreOfTheLens) {
  const World input = MakePicture(Pattern::kNoise, 31, 21, false);
  RenderCase c = MakeCase(80, 3, 4);
  const World own = c.Actual(input);
  c.Set("trail.center-of-the-lens", 1).SetPoint("lens.position", 20, 10);
  c.ExpectExact(input);
  EXPECT_TRUE(Differ(own, c.Actual(input)));
  // Any value but exactly 1 means the trail's own centre.
  c.Host().Record(c.Host().IndexOf("trail.center-of-the-lens")).u.bd.value = 2;
  ExpectSamePicture(own, c.Actual(input), "center of the lens 2");
}

TEST(TrailTest, EveryPattern) {
  for (const Pattern pattern : kAllPatterns) {
    for (const bool deep : {false, true}) {
      MakeCase(18, 40, 20).ExpectExact(MakePicture(pattern, 97, 61, deep));
      MakeCase(90, 40, 20).ExpectExact(MakePicture(pattern, 61, 37, deep));
    }
  }
}

TEST(TrailTest, WithinALens) {
  RenderCase c = MakeCase(60, 15, 10);
  c.SetCircle(20, 15, 8, 41).Set("lens.feather", 40);
  c.ExpectExact(MakePicture(Pattern::kNoise, 41, 31, true));
}

TEST(TrailTest, RandomCentresAndPictures) {
  constexpr std::uint32_t kSeed = 20261125;
  std::mt19937 random(kSeed);
  const auto between = [&random](int first, int last) {
    return first + static_cast<int>(random() % static_cast<unsigned>(last - first + 1));
  };
  for (int i = 0; i < 250; ++i) {
    const int width = between(1, 97);
    const int height = between(1, 61);
    MakeCase(between(1, 1000) / 10.0, between(-width, 2 * width), between(-height, 2 * height))
        .ExpectExact(MakePicture(kAllPatterns[between(0, 8)], width, height, i % 2 == 1,
                                 static_cast<std::uint64_t>(i)));
    if (HasFailure()) {
      FAIL() << "seed " << kSeed << ", case " << i;
    }
  }
}

TEST(TrailTest, PaddedRowsAndGuardPages) {
  for (const bool deep : {false, true}) {
    for (const headless::GuardPages guard :
         {headless::GuardPages::kNone, headless::GuardPages::kAtEnd,
          headless::GuardPages::kAtStart}) {
      RenderCase c = MakeCase(75, 4, 4);
      c.Layout().guardPages = guard;
      if (guard == headless::GuardPages::kNone) c.Layout().rowPadding = deep ? 6 : 7;
      c.Options().newWorldLayout = c.Layout();
      c.ExpectExact(MakePicture(Pattern::kHoles, 17, 9, deep));
      c.ExpectExact(MakePicture(Pattern::kHoles, 1, 1, deep));
    }
  }
}

}  // namespace
}  // namespace vitrell
