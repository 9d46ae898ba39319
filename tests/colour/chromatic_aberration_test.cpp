// Chromatic aberration: where each colour comes from, and which pixels and channels are written.
#include "colour/chromatic_aberration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

#include "base/numeric.h"
#include "host/fake_host.h"
#include "host/picture.h"
#include "lens/test_mask.h"
#include "pass/call_stage.h"

namespace vitrell {
namespace {

using ::testing::ElementsAre;

LX_Info Settings(float red, float green, float blue, std::int32_t x, std::int32_t y) {
  LX_Info info = {};
  info.chromaticVisible = 1;
  info.chromaticRedCyan = red;
  info.chromaticGreenMagenta = green;
  info.chromaticBlueYellow = blue;
  info.positionX = x;
  info.positionY = y;
  return info;
}

template <typename Pixel>
void SplitColours(FakeHost* host, Picture<Pixel>* src, Picture<Pixel>* dst, const LX_Info& info) {
  ASSERT_EQ(PF_Err_NONE,
            CallStage(RunChromaticAberration, host->inData(), src->get(), dst->get(), info));
}

// A row of 16-bit pixels whose channels encode their column: 1000 + x, 2000 + x and so on.
void FillWithColumns(Picture<PF_Pixel16>* world) {
  for (A_long y = 0; y < world->get()->height; ++y) {
    for (A_long x = 0; x < world->get()->width; ++x) {
      const auto place = static_cast<std::uint16_t>(100 * y + x);
      world->At(x, y) = {
          static_cast<std::uint16_t>(1000 + place), static_cast<std::uint16_t>(2000 + place),
          static_cast<std::uint16_t>(3000 + place), static_cast<std::uint16_t>(4000 + place)};
    }
  }
}

TEST(ChromaticAberrationTest, RunsWhenVisibleAndAnyFractionIsPositive) {
  EXPECT_FALSE(MakePlan(Settings(0, 0, 0, 0, 0)).isChromaticOn);
  EXPECT_FALSE(MakePlan(Settings(-1, 0, -0.5f, 0, 0)).isChromaticOn);
  EXPECT_TRUE(MakePlan(Settings(0.01f, 0, 0, 0, 0)).isChromaticOn);
  EXPECT_TRUE(MakePlan(Settings(0, 0.01f, 0, 0, 0)).isChromaticOn);
  EXPECT_TRUE(MakePlan(Settings(-1, 0, 0.01f, 0, 0)).isChromaticOn);
  LX_Info info = Settings(1, 1, 1, 0, 0);
  info.chromaticVisible = 2;
  EXPECT_FALSE(MakePlan(info).isChromaticOn);
  info.chromaticVisible = 0;
  EXPECT_FALSE(MakePlan(info).isChromaticOn);
}

// Only the third pixel is above the threshold; its colours come from half the distance to column 0.
TEST(ChromaticAberrationTest, MaskAtTheThresholdCountsAsOutside) {
  FakeHost host;
  for (const bool isInRows : {false, true}) {
    const TestMask mask({0, 0, 0, 0.0001, 0.00010001}, isInRows ? 5 : 0);
    Picture<PF_Pixel16> src(5, 1);
    Picture<PF_Pixel16> dst(5, 1);
    FillWithColumns(&src);
    SplitColours(&host, &src, &dst, Settings(1, 1, 1, 0, 0));
    for (A_long x = 0; x < 4; ++x) {
      EXPECT_EQ(2000 + x, dst.At(x, 0).red);
    }
    EXPECT_EQ(2002, dst.At(4, 0).red);
    EXPECT_EQ(3002, dst.At(4, 0).green);
    EXPECT_EQ(4002, dst.At(4, 0).blue);
  }
}

// Scale 0.5 about column 5: 0 comes from 5 - 2 = 3 (2.5 truncated), 10 from 5 + 2 = 7.
TEST(ChromaticAberrationTest, SliderAtHundredFetchesFromHalfTheDistance) {
  FakeHost host;
  for (const bool isInRows : {false, true}) {
    const TestMask mask = TestMask::Uniform(11, 1, 1.0, isInRows);
    Picture<PF_Pixel16> src(11, 1);
    Picture<PF_Pixel16> dst(11, 1, 6);
    FillWithColumns(&src);
    SplitColours(&host, &src, &dst, Settings(1, 0, 0, 5, 0));
    constexpr int kSources[11] = {3, 3, 4, 4, 5, 5, 5, 6, 6, 7, 7};
    for (A_long x = 0; x < 11; ++x) {
      EXPECT_EQ(2000 + kSources[x], dst.At(x, 0).red) << x;
      EXPECT_EQ(3000 + x, dst.At(x, 0).green);
      EXPECT_EQ(4000 + x, dst.At(x, 0).blue);
      EXPECT_EQ(1000 + x, dst.At(x, 0).alpha);
    }
    EXPECT_TRUE(dst.IsPaddingIntact());
  }
}

TEST(ChromaticAberrationTest, RowsAreScaledLikeColumns) {
  FakeHost host;
  for (const bool isInRows : {false, true}) {
    const TestMask mask = TestMask::Uniform(2, 7, 1.0, isInRows);
    Picture<PF_Pixel16> src(2, 7);
    Picture<PF_Pixel16> dst(2, 7);
    FillWithColumns(&src);
    SplitColours(&host, &src, &dst, Settings(0, 0, 1, 0, 6));
    constexpr int kSources[7] = {3, 4, 4, 5, 5, 6, 6};
    for (A_long y = 0; y < 7; ++y) {
      EXPECT_EQ(4000 + 100 * kSources[y], dst.At(0, y).blue) << y;
      EXPECT_EQ(2000 + 100 * y + 1, dst.At(1, y).red);
    }
  }
}

TEST(ChromaticAberrationTest, SliderAtZeroFetchesThePixelItself) {
  FakeHost host;
  for (const bool isInRows : {false, true}) {
    const TestMask mask = TestMask::Uniform(6, 4, 1.0, isInRows);
    Picture<PF_Pixel16> src(6, 4);
    Picture<PF_Pixel16> dst(6, 4);
    FillWithColumns(&src);
    SplitColours(&host, &src, &dst, Settings(0, 0, 0, 2, 1));
    for (A_long y = 0; y < 4; ++y) {
      for (A_long x = 0; x < 6; ++x) {
        EXPECT_EQ(2000 + 100 * y + x, dst.At(x, y).red);
        EXPECT_EQ(3000 + 100 * y + x, dst.At(x, y).green);
        EXPECT_EQ(4000 + 100 * y + x, dst.At(x, y).blue);
      }
    }
  }
}

// 1 - 0.5 x 2 = 0 is not above 0.0001. 1 - 0.5 x 1.9998 is, by a little, in single precision:
// every pixel then shows the centre.
TEST(ChromaticAberrationTest, KeepsChannelsUnwrittenAtScaleZero) {
  FakeHost host;
  const TestMask mask = TestMask::Uniform(4, 1, 1.0);
  Picture<PF_Pixel16> src(4, 1);
  Picture<PF_Pixel16> dst(4, 1);
  FillWithColumns(&src);
  for (A_long x = 0; x < 4; ++x) {
    dst.At(x, 0) = {11, 22, 33, 44};
  }
  SplitColours(&host, &src, &dst, Settings(2.0f, 1.9998f, std::nanf(""), 1, 0));
  for (A_long x = 0; x < 4; ++x) {
    EXPECT_EQ(1000 + x, dst.At(x, 0).alpha);
    EXPECT_EQ(22, dst.At(x, 0).red);
    EXPECT_EQ(3001, dst.At(x, 0).green);
    EXPECT_EQ(44, dst.At(x, 0).blue);
  }
}

// In single precision 1 - 0.5 x 1.9998 is 0.00010002, above the threshold; the next larger fraction
// gives 0.00009996, which is not.
TEST(ChromaticAberrationTest, ThresholdOfTheScaleLiesJustAboveAFractionOf19998) {
  const float fraction = 1.9998f;
  FakeHost host;
  const TestMask mask = TestMask::Uniform(3, 1, 1.0);
  Picture<PF_Pixel16> src(3, 1);
  Picture<PF_Pixel16> dst(3, 1);
  FillWithColumns(&src);
  for (A_long x = 0; x < 3; ++x) {
    dst.At(x, 0) = {11, 22, 33, 44};
  }
  SplitColours(&host, &src, &dst, Settings(fraction, std::nextafter(fraction, 2.0f), 0, 1, 0));
  for (A_long x = 0; x < 3; ++x) {
    EXPECT_EQ(2001, dst.At(x, 0).red);
    EXPECT_EQ(33, dst.At(x, 0).green);
    EXPECT_EQ(4000 + x, dst.At(x, 0).blue);
  }
}

// A fraction of -2 doubles the distance. About column 0 of 5, 3 goes to 6 and folds to 3, 4 goes to
// 8 and folds to 1. About column 4, 3 goes to 2, 1 goes to -2 and folds to 2, 0 goes to -4, 4.
TEST(ChromaticAberrationTest, MirrorsSamplesOutsideTheSource) {
  FakeHost host;
  const TestMask mask = TestMask::Uniform(5, 1, 1.0);
  Picture<PF_Pixel16> src(5, 1);
  Picture<PF_Pixel16> dst(5, 1);
  FillWithColumns(&src);
  constexpr int kFromLeft[5] = {0, 2, 4, 3, 1};
  SplitColours(&host, &src, &dst, Settings(-2, 1, 1, 0, 0));
  for (A_long x = 0; x < 5; ++x) {
    EXPECT_EQ(2000 + kFromLeft[x], dst.At(x, 0).red) << x;
  }
  constexpr int kFromRight[5] = {4, 2, 0, 2, 4};
  SplitColours(&host, &src, &dst, Settings(-2, 1, 1, 4, 0));
  for (A_long x = 0; x < 5; ++x) {
    EXPECT_EQ(2000 + kFromRight[x], dst.At(x, 0).red) << x;
  }
}

// Scale 1.5. About column 1 of 4, 3 goes one beyond the right edge, to 4, which is the edge column
// 3 itself. About column 2, 0 goes one beyond the left edge, to -1, which is column 1.
constexpr int kOneBeyondRight[4] = {0, 1, 2, 3};
constexpr int kOneBeyondLeft[4] = {1, 1, 2, 3};

TEST(ChromaticAberrationTest, OneColumnBeyondEachEdge) {
  FakeHost host;
  Picture<PF_Pixel16> src(4, 1);
  Picture<PF_Pixel16> dst(4, 1);
  FillWithColumns(&src);
  for (const bool isInRows : {false, true}) {
    const TestMask mask = TestMask::Uniform(4, 1, 1.0, isInRows);
    for (const bool isRight : {true, false}) {
      SplitColours(&host, &src, &dst, Settings(-1, 0, 1, isRight ? 1 : 2, 0));
      for (A_long x = 0; x < 4; ++x) {
        EXPECT_EQ(2000 + (isRight ? kOneBeyondRight : kOneBeyondLeft)[x], dst.At(x, 0).red) << x;
        EXPECT_EQ(3000 + x, dst.At(x, 0).green);
      }
    }
  }
}

TEST(ChromaticAberrationTest, OneRowBeyondEachEdge) {
  FakeHost host;
  Picture<PF_Pixel16> src(1, 4);
  Picture<PF_Pixel16> dst(1, 4);
  FillWithColumns(&src);
  for (const bool isInRows : {false, true}) {
    const TestMask mask = TestMask::Uniform(1, 4, 1.0, isInRows);
    for (const bool isBottom : {true, false}) {
      SplitColours(&host, &src, &dst, Settings(0, 1, -1, 0, isBottom ? 1 : 2));
      for (A_long y = 0; y < 4; ++y) {
        EXPECT_EQ(4000 + 100 * (isBottom ? kOneBeyondRight : kOneBeyondLeft)[y], dst.At(0, y).blue)
            << y;
        EXPECT_EQ(2000 + 100 * y, dst.At(0, y).red);
      }
    }
  }
}

// The source coordinate of one channel by its definition: single precision, truncated, reflected
// step by step.
std::int32_t PlainPosition(std::int32_t coordinate, std::int32_t center, float scale,
                           std::int32_t size) {
  const volatile float distance = static_cast<float>(coordinate - center) * scale;
  std::int32_t position = static_cast<std::int32_t>(distance) + center;
  while (position < 0 || position >= size) {
    position = position < 0 ? -position : 2 * size - 1 - position;
  }
  return position;
}

template <typename Pixel>
void CompareWithPlainEvaluation(unsigned seed) {
  SCOPED_TRACE(::testing::Message() << "seed " << seed);
  std::mt19937 random(seed);
  const auto below = [&random](int bound) {
    return static_cast<A_long>(random() % static_cast<unsigned>(bound));
  };
  const A_long width = 1 + below(40);
  const A_long height = 1 + below(30);
  const auto fraction = [&] { return static_cast<float>(below(2001) - 800) / 1000.0f; };
  const LX_Info info =
      Settings(fraction(), fraction(), fraction(), below(120) - 40, below(100) - 30);
  FakeHost host;
  host.shuffleSeed = seed;
  Picture<Pixel> src(width, height, below(9) * static_cast<A_long>(sizeof(Pixel)));
  Picture<Pixel> dst(width, height, below(9) * static_cast<A_long>(sizeof(Pixel)));
  src.FillAnything(random());
  dst.FillAnything(random());
  std::vector<double> values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (double& value : values) {
    value = below(4) == 0 ? 0.0001 : 0.3;
  }
  const TestMask mask(values, seed % 2 == 0 ? static_cast<std::size_t>(width) : 0);
  SplitColours(&host, &src, &dst, info);
  const float redScale = 1.0f - 0.5f * info.chromaticRedCyan;
  const float greenScale = 1.0f - 0.5f * info.chromaticGreenMagenta;
  const float blueScale = 1.0f - 0.5f * info.chromaticBlueYellow;
  for (A_long y = 0; y < height; ++y) {
    for (A_long x = 0; x < width; ++x) {
      const auto source = [&](float scale) -> const Pixel& {
        const double m = values[static_cast<std::size_t>(y * width + x)];
        const float used = m <= 0.0001 ? 1.0f : scale;
        return src.At(PlainPosition(x, info.positionX, used, width),
                      PlainPosition(y, info.positionY, used, height));
      };
      ASSERT_EQ(src.At(x, y).alpha, dst.At(x, y).alpha) << x << ", " << y;
      ASSERT_EQ(source(redScale).red, dst.At(x, y).red) << x << ", " << y;
      ASSERT_EQ(source(greenScale).green, dst.At(x, y).green) << x << ", " << y;
      ASSERT_EQ(source(blueScale).blue, dst.At(x, y).blue) << x << ", " << y;
    }
  }
  EXPECT_TRUE(dst.IsPaddingIntact());
}

TEST(ChromaticAberrationTest, MatchesPlainEvaluationInAnyOrder) {
  for (unsigned seed = 1; seed <= 150; ++seed) {
    CompareWithPlainEvaluation<PF_Pixel>(seed);
    CompareWithPlainEvaluation<PF_Pixel16>(seed);
    if (HasFatalFailure()) {
      return;
    }
  }
}

// A mirrored position loses the source's origin, here (2, 0), a second time; the scale about column
// 0 is 2, the source 6 wide.
TEST(ChromaticAberrationTest, KeepsSubtractingTheOriginTwiceWhenMirrored) {
  FakeHost host;
  Picture<PF_Pixel16> src(6, 1);
  Picture<PF_Pixel16> dst(8, 1);
  const TestMask mask = TestMask::Uniform(8, 1, 1.0);
  FillWithColumns(&src);
  src.get()->extent_hint = {2, 0, 8, 1};
  SplitColours(&host, &src, &dst, Settings(-2, 0, 0, 0, 0));
  EXPECT_EQ(2002, dst.At(2, 0).red);  // To 4, stored at 2: inside, subtracted once.
  EXPECT_EQ(2004, dst.At(3, 0).red);  // To 6, stored at 4.
  // To 8, stored at 6, folded to 5, read at 3.
  EXPECT_EQ(2003, dst.At(4, 0).red);
  // To 10, stored at 8, folded to 3, read at 1.
  EXPECT_EQ(2001, dst.At(5, 0).red);
}

TEST(ChromaticAberrationTest, SurvivesCentersAndScalesBeyondAllBounds) {
  FakeHost host;
  const TestMask mask = TestMask::Uniform(3, 2, 1.0);
  Picture<PF_Pixel> src(3, 2);
  Picture<PF_Pixel> dst(3, 2);
  std::mt19937 random(5);
  src.FillAnything(random());
  for (const std::int32_t center : {INT32_MIN, INT32_MAX, -2000000000, 0}) {
    for (const float fraction : {-INFINITY, -1e30f, 0.7f}) {
      SplitColours(&host, &src, &dst, Settings(fraction, fraction, fraction, center, center));
      EXPECT_EQ(src.At(2, 1).alpha, dst.At(2, 1).alpha);
    }
  }
}

TEST(ChromaticAberrationTest, IteratesOnceAndAnswersTheHostsCode) {
  FakeHost host;
  const TestMask mask = TestMask::Uniform(3, 5, 1.0);
  Picture<PF_Pixel> src(3, 5);
  Picture<PF_Pixel> dst(3, 5);
  dst.get()->extent_hint = {0, 2, 3, 5};
  host.iterateResult = PF_Interrupt_CANCEL;
  EXPECT_EQ(PF_Interrupt_CANCEL, CallStage(RunChromaticAberration, host.inData(), src.get(),
                                           dst.get(), Settings(1, 1, 1, 0, 0)));
  EXPECT_THAT(host.log, ElementsAre("acquire PF Iterate8 Suite 1", "iterate8 0..3",
                                    "release PF Iterate8 Suite 1"));
  EXPECT_TRUE(host.lastAreaNull);
}

}  // namespace
}  // namespace vitrell
