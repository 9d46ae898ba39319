// The fast blur against the sum of every tap, and at numbers worked out by hand.
#include "blur/fast/fast_blur.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "blur/fast/box_reference.h"
#include "host/fake_host.h"
#include "host/picture.h"
#include "lens/test_mask.h"
#include "literal/blur/fast/fast_blur.h"
#include "pass/call_stage.h"

namespace vitrell {
namespace {

using testing::ElementsAre;

constexpr std::uint64_t kSeed = 8150;

LX_Info Uniform(float amount) {
  LX_Info info = {};
  info.scaleWidth = info.scaleHeight = 1;
  info.fastBlurVisible = 1;
  info.fastBlurAmount = amount;
  return info;
}

// The lens map is in force: the feather is wide against any amount used here.
LX_Info Mapped(float amount) {
  LX_Info info = Uniform(amount);
  info.fastBlurUseLensAsBlurMap = 1;
  info.feather = 1000;
  return info;
}

template <typename Pixel>
PF_Err Blur(FakeHost& host, const LX_Info& info, Picture<Pixel>& src, Picture<Pixel>& dst) {
  const PF_Err err = CallStage(RenderFastBlurEffect, host.inData(), src.get(), dst.get(), info);
  EXPECT_EQ(host.liveWorlds, 0);
  return err;
}

// Only the horizontal pass of the first round: every other pass is made to fail.
template <typename Pixel>
Picture<Pixel> HorizontalPass(const LX_Info& info, const Picture<Pixel>& picture) {
  FakeHost host;
  for (const int n : {2, 3, 4, 5, 6}) {
    host.failures["iterate"][n] = 99;
  }
  Picture<Pixel> src = picture;
  Picture<Pixel> dst(picture.get()->width, picture.get()->height);
  EXPECT_EQ(Blur(host, info, src, dst), 99);
  return dst;
}

// Only the vertical pass of the first round, reading `picture`; what the round began with, and so
// what faint mask values blend with, is `unblurred`.
template <typename Pixel>
Picture<Pixel> VerticalPass(const LX_Info& info, const Picture<Pixel>& picture,
                            const Picture<Pixel>& unblurred) {
  FakeHost host;
  for (const int n : {1, 3, 4, 5, 6}) {
    host.failures["iterate"][n] = 99;
  }
  Picture<Pixel> src = unblurred;
  Picture<Pixel> dst = picture;
  EXPECT_EQ(Blur(host, info, src, dst), 99);
  return dst;
}

template <typename Pixel>
void ExpectSame(const Picture<Pixel>& expected, const Picture<Pixel>& actual,
                const std::string& what) {
  if (!expected.SameBytes(actual)) {
    for (A_long y = 0; y < expected.get()->height; ++y) {
      for (A_long x = 0; x < expected.get()->width; ++x) {
        ASSERT_EQ(expected.At(x, y), actual.At(x, y)) << what << " at " << x << "," << y;
      }
    }
    FAIL() << what << ": bytes beside the pixels differ";
  }
}

template <typename Pixel>
class FastBlurTest : public testing::Test {
 protected:
  static constexpr A_long kMax = std::numeric_limits<decltype(Pixel::red)>::max();

  // Three rounds through the shipped code and by every tap, both worlds compared.
  static void ExpectEveryTap(A_long width, A_long height, int radius, A_long limit) {
    Picture<Pixel> src(width, height);
    src.FillNoise(kSeed + static_cast<std::uint64_t>(radius), limit);
    Picture<Pixel> dst(width, height);
    Picture<Pixel> expectedSrc = src;
    Picture<Pixel> expectedDst = dst;
    const BoxReference<Pixel> reference(width, height, radius);
    for (Picture<Pixel>* from : {&expectedSrc, &expectedDst, &expectedSrc}) {
      Picture<Pixel>* const to = from == &expectedSrc ? &expectedDst : &expectedSrc;
      reference.AlongRows(*from, *to);
      reference.DownColumns(*to, *from);
      for (A_long y = 0; y < height; ++y) {
        for (A_long x = 0; x < width; ++x) {
          to->At(x, y) = from->At(x, y);
        }
      }
    }
    FakeHost host;
    ASSERT_EQ(Blur(host, Uniform(static_cast<float>(radius)), src, dst), PF_Err_NONE);
    const std::string what = std::to_string(width) + "x" + std::to_string(height) + " radius " +
                             std::to_string(radius) + " seed " + std::to_string(kSeed);
    ExpectSame(expectedDst, dst, what);
    ExpectSame(expectedSrc, src, what + " (source)");
  }
};

using Depths = testing::Types<PF_Pixel, PF_Pixel16>;
TYPED_TEST_SUITE(FastBlurTest, Depths);

TYPED_TEST(FastBlurTest, EqualsEveryTapForSizesOneToNineAndAllRadiiUpTo300) {
  for (A_long height = 1; height <= 9; ++height) {
    for (A_long width = 1; width <= 9; ++width) {
      for (int radius = 1; radius <= 300; ++radius) {  // Radius 0 is a copy.
        this->ExpectEveryTap(width, height, radius, this->kMax);
      }
    }
  }
}

TYPED_TEST(FastBlurTest, EqualsEveryTapForPrimeSizes) {
  for (const auto& [width, height] :
       {std::pair{11, 7}, {13, 53}, {67, 53}, {53, 13}, {31, 1}, {1, 47}, {67, 2}, {2, 53}}) {
    for (const int radius : {1, 2, 5, 12, 13, 30, 52, 53, 66, 67, 68, 105, 106, 133, 134, 299}) {
      this->ExpectEveryTap(width, height, radius, this->kMax);
    }
  }
}

// Around the radii at which sums need more bits, up to the slider's end and beyond it.
TYPED_TEST(FastBlurTest, EqualsEveryTapForLargeRadii) {
  std::vector<int> radii = {4095,  4096,  4097,  8192,  16382, 16383,
                            16384, 32767, 32768, 32769, 50000, 70000};
  std::mt19937_64 random(kSeed);
  for (int i = 0; i < 8; ++i) {
    radii.push_back(static_cast<int>(301 + random() % 32468));
  }
  for (const int radius : radii) {
    for (const auto& [width, height] :
         {std::pair{1, 1}, {2, 1}, {1, 2}, {2, 2}, {3, 5}, {9, 4}, {17, 3}}) {
      this->ExpectEveryTap(width, height, radius, this->kMax);
      this->ExpectEveryTap(width, height, radius, 1);
    }
  }
}

// 65537 taps over a row of two pixels.
TYPED_TEST(FastBlurTest, SixtyFiveThousandTapsOverTwoPixels) {
  this->ExpectEveryTap(2, 1, 32768, this->kMax);
  this->ExpectEveryTap(1, 2, 32768, this->kMax);
}

// Windows whose mean is nearest to a half: of n taps (n - 1) / 2 or (n + 1) / 2 are one higher.
// The mean is then base + 0.5 -+ 1 / (2 n), which rounds to base or to base + 1.
TYPED_TEST(FastBlurTest, RoundsMeansNextToAHalf) {
  for (const int radius : {1, 50, 300, 2000, 4096, 4097, 16383, 16384}) {
    const int taps = 2 * radius + 1;
    for (A_long base = 0; base < this->kMax; base += this->kMax / (radius == 4096 ? 255 : 5)) {
      for (const int higher : {taps / 2, taps / 2 + 1}) {
        Picture<TypeParam> row(taps, 1, 0);
        Picture<TypeParam> column(1, taps, 0);
        for (int i = 0; i < taps; ++i) {
          // Spread over the window.
          const bool up = (i + 1) * higher / taps > i * higher / taps;
          const auto value = static_cast<decltype(TypeParam::red)>(base + (up ? 1 : 0));
          row.At(i, 0) = column.At(0, i) = {9, value, value, value};
        }
        const int expected = static_cast<int>(base) + (higher > taps / 2 ? 1 : 0);
        const LX_Info info = Uniform(static_cast<float>(radius));
        EXPECT_EQ(HorizontalPass(info, row).At(radius, 0).red, expected) << radius << " " << base;
        EXPECT_EQ(VerticalPass(info, column, column).At(0, radius).red, expected)
            << radius << " " << base;
      }
    }
  }
}

// The literal engine adds up every tap in floating point; uniform and by random masks, half of them
// with values beyond 1, the other half in worlds whose extent begins anywhere.
TYPED_TEST(FastBlurTest, MatchesTheLiteralEngine) {
  std::mt19937_64 random(kSeed);
  const auto below = [&](std::uint64_t n) { return static_cast<int>(random() % n); };
  for (int i = 0; i < 250; ++i) {
    const A_long width = 1 + below(i % 4 == 0 ? 50 : 13);
    const A_long height = 1 + below(11);
    const double large = i % 2 == 0 ? 1.25 : 0.75;
    const LX_Info info = i % 3 == 0 ? Uniform(static_cast<float>(below(40)))
                                    : Mapped(static_cast<float>(below(400)) / 10.0F);
    Picture<TypeParam> src(width, height);
    src.FillNoise(random(), i % 5 == 0 ? 3 : this->kMax);
    Picture<TypeParam> dst(width, height);
    const A_long left = i % 2 == 0 ? 0 : below(9) - 4;
    const A_long top = i % 2 == 0 ? 0 : below(9) - 4;
    literal::Mask mask = {{left, top, left + width, top + height}, {}};
    src.get()->extent_hint = dst.get()->extent_hint = {left, top, left + width, top + height};
    literal::World from;
    from.deep = Picture<TypeParam>::kDeep;
    from.width = width;
    from.height = height;
    from.extent = mask.rect;
    for (A_long k = 0; k < width * height; ++k) {
      const double choices[] = {0,
                                1,
                                0.00005,
                                large,
                                static_cast<double>(below(10001)) / 10000,
                                static_cast<double>(below(10001)) / 10000};
      mask.values.push_back(choices[below(6)]);
      const TypeParam& pixel = src.At(k % width, k / width);
      from.pixels.push_back({{pixel.alpha, pixel.red, pixel.green, pixel.blue}});
    }
    literal::World to = from;
    literal::Settings settings;
    settings.fastBlurVisible = 1;
    settings.fastBlurAmount = info.fastBlurAmount;
    settings.fastBlurUseLensAsBlurMap = info.fastBlurUseLensAsBlurMap;
    settings.feather = info.feather;
    literal::FastBlur(settings, mask, from, to);
    const TestMask testMask(mask.values);
    FakeHost host;
    ASSERT_EQ(Blur(host, info, src, dst), PF_Err_NONE);
    for (A_long k = 0; k < width * height; ++k) {
      const std::uint16_t(&c)[4] = to.pixels[static_cast<std::size_t>(k)].channel;
      const TypeParam& pixel = dst.At(k % width, k / width);
      ASSERT_THAT((std::vector<int>{pixel.alpha, pixel.red, pixel.green, pixel.blue}),
                  ElementsAre(c[0], c[1], c[2], c[3]))
          << "case " << i << " pixel " << k << " of " << width << "x" << height << " at " << left
          << "," << top << " amount " << info.fastBlurAmount << " seed " << kSeed;
    }
  }
}

TYPED_TEST(FastBlurTest, CopiesWithoutRadiusScaleOrSwitch) {
  std::vector<LX_Info> copies = {Uniform(0), Uniform(0.99F), Uniform(-0.5F)};
  copies.push_back(Uniform(30));
  copies.back().scaleWidth = 0;
  copies.push_back(Uniform(30));
  copies.back().scaleHeight = 0;
  for (const int visible : {0, 2, 255}) {
    copies.push_back(Uniform(30));
    copies.back().fastBlurVisible = static_cast<std::uint8_t>(visible);
  }
  for (const LX_Info& info : copies) {
    FakeHost host;
    Picture<TypeParam> src(7, 5);
    src.FillNoise(kSeed);
    Picture<TypeParam> dst(7, 5);
    EXPECT_EQ(Blur(host, info, src, dst), PF_Err_NONE);
    EXPECT_TRUE(src.SameBytes(dst));
    EXPECT_THAT(host.log, ElementsAre("copy"));
    FakeHost failing;
    failing.failures["copy"][1] = 515;
    EXPECT_EQ(Blur(failing, info, src, dst), 515);
  }
}

TYPED_TEST(FastBlurTest, NanScaleCountsAsNonZero) {
  FakeHost host;
  LX_Info info = Uniform(2);
  info.scaleWidth = info.scaleHeight = std::numeric_limits<float>::quiet_NaN();
  Picture<TypeParam> src(3, 3);
  src.FillNoise(kSeed);
  Picture<TypeParam> dst(3, 3);
  EXPECT_EQ(Blur(host, info, src, dst), PF_Err_NONE);
  EXPECT_GT(host.log.size(), 20U);
}

// Radius 1 over 0, 90, 255: mirrored taps (90, 0, 90), (0, 90, 255), (90, 255, 255).
TYPED_TEST(FastBlurTest, EdgesAreMirrored) {
  Picture<TypeParam> row(3, 1);
  row.At(0, 0) = {1, 0, 0, 0};
  row.At(1, 0) = {2, 90, 0, 0};
  row.At(2, 0) = {3, 255, 0, 0};
  const Picture<TypeParam> blurred = HorizontalPass(Uniform(1), row);
  EXPECT_EQ(blurred.At(0, 0).red, 60);
  EXPECT_EQ(blurred.At(1, 0).red, 115);
  EXPECT_EQ(blurred.At(2, 0).red, 200);
  EXPECT_EQ(blurred.At(2, 0).alpha, 3);
}

TYPED_TEST(FastBlurTest, TransparentPixelsKeepTheirAlphaAndMixColours) {
  FakeHost host;
  Picture<TypeParam> src(3, 1);
  src.Fill({200, 100, 100, 100});
  src.At(1, 0) = {0, 10, 10, 10};
  Picture<TypeParam> dst(3, 1);
  ASSERT_EQ(Blur(host, Uniform(1), src, dst), PF_Err_NONE);
  EXPECT_EQ(dst.At(1, 0).alpha, 0);
  EXPECT_GT(dst.At(1, 0).red, 60);
  EXPECT_EQ(dst.At(0, 0).alpha, 200);
  EXPECT_LT(dst.At(0, 0).red, 100);
}

// The host counts pixels from the first one in memory, here at layer position (1, 0): around pixel
// x lie the stored pixels x - 2 to x, mirrored: (255, 90, 0), (90, 0, 90), (0, 90, 255). Alpha is
// that of pixel x itself.
TYPED_TEST(FastBlurTest, KeepsThePixelsOwnAlphaAtADisplacedExtent) {
  Picture<TypeParam> row(3, 1);
  row.At(0, 0) = {1, 0, 0, 0};
  row.At(1, 0) = {2, 90, 0, 0};
  row.At(2, 0) = {3, 255, 0, 0};
  row.get()->extent_hint = {1, 0, 4, 1};
  const Picture<TypeParam> blurred = HorizontalPass(Uniform(1), row);
  EXPECT_EQ(blurred.At(0, 0), (TypeParam{1, 115, 0, 0}));
  EXPECT_EQ(blurred.At(1, 0), (TypeParam{2, 60, 0, 0}));
  EXPECT_EQ(blurred.At(2, 0), (TypeParam{3, 115, 0, 0}));
  FakeHost host;
  Picture<TypeParam> dst = row;
  ASSERT_EQ(Blur(host, Uniform(1), row, dst), PF_Err_NONE);
  for (A_long x = 0; x < 3; ++x) {
    EXPECT_EQ(dst.At(x, 0).alpha, x + 1);
    EXPECT_EQ(row.At(x, 0).alpha, x + 1);
  }
}

TYPED_TEST(FastBlurTest, MaskZeroKeepsThePixelThroughAllRounds) {
  for (const std::size_t rowWidth : {0U, 3U}) {  // Without and with mask rows.
    FakeHost host;
    const TestMask mask({0.0, 1.0, 1.0}, rowWidth);
    Picture<TypeParam> src(3, 1);
    src.Fill({9, 200, 200, 200});
    src.At(0, 0) = {9, 10, 20, 30};
    Picture<TypeParam> dst(3, 1);
    ASSERT_EQ(Blur(host, Mapped(2), src, dst), PF_Err_NONE);
    EXPECT_EQ(dst.At(0, 0), (TypeParam{9, 10, 20, 30}));
    EXPECT_LT(dst.At(1, 0).red, 200);
  }
}

// Mask 1: taps outside are mirrored and weigh as much as any, also beside mask values of 0.
TYPED_TEST(FastBlurTest, MaskOneIsThePlainBox) {
  Picture<TypeParam> row(3, 1);
  row.At(0, 0) = {1, 0, 0, 0};
  row.At(1, 0) = {2, 90, 0, 0};
  row.At(2, 0) = {3, 255, 0, 0};
  for (const std::size_t rowWidth : {0U, 3U}) {
    const TestMask mask({1.0, 0.0, 0.0}, rowWidth);
    const Picture<TypeParam> blurred = HorizontalPass(Mapped(1), row);
    EXPECT_EQ(blurred.At(0, 0).red, 60);
    EXPECT_EQ(blurred.At(1, 0).red, 90);
  }
}

// m = 0.5, radius 6: reach 3. Inside the mask lie three taps; those outside weigh nothing:
// (0 + 30 + 60) / 3. The horizontal pass blends with nothing.
TYPED_TEST(FastBlurTest, KeepsTheHorizontalPassUnblended) {
  const TestMask mask({0.5, 0.5, 0.5});
  Picture<TypeParam> row(3, 1);
  for (A_long x = 0; x < 3; ++x) {
    row.At(x, 0) = {1, static_cast<decltype(TypeParam::red)>(30 * x), 0, 0};
  }
  const Picture<TypeParam> blurred = HorizontalPass(Mapped(6), row);
  EXPECT_EQ(blurred.At(0, 0).red, 30);
  EXPECT_EQ(blurred.At(2, 0).red, 30);
}

// The same down a column: t = (0.5 x 6 - 1) / 4 = 0.5 of the mean, the rest of the pixel before
// both passes, 100: 15 + 50. With radius 2 (m x r = 1) t is 0; with radius 10 it is 1.
TYPED_TEST(FastBlurTest, KeepsTheVerticalPassAloneBlending) {
  const TestMask mask({0.5, 0.5, 0.5});
  Picture<TypeParam> column(1, 3);
  Picture<TypeParam> unblurred(1, 3);
  unblurred.Fill({1, 100, 0, 0});
  for (A_long y = 0; y < 3; ++y) {
    column.At(0, y) = {1, static_cast<decltype(TypeParam::red)>(30 * y), 0, 0};
  }
  EXPECT_EQ(VerticalPass(Mapped(6), column, unblurred).At(0, 1).red, 65);
  EXPECT_EQ(VerticalPass(Mapped(2), column, unblurred).At(0, 1).red, 100);
  EXPECT_EQ(VerticalPass(Mapped(10), column, unblurred).At(0, 1).red, 30);
  EXPECT_EQ(VerticalPass(Mapped(8), column, unblurred).At(0, 1).red, 48);  // 0.75 x 30 + 25 = 47.5
}

// Mask 1: the plain box of the column, its border mirrored, its taps outside and those on mask 0
// counting in full, and nothing blended with the pixel before both passes: (90 + 0 + 90) / 3 at
// row 0, (90 + 255 + 255) / 3 at row 2.
TYPED_TEST(FastBlurTest, VerticalPassAtMaskOneIsThePlainBox) {
  Picture<TypeParam> column(1, 3);
  column.At(0, 0) = {1, 0, 0, 0};
  column.At(0, 1) = {2, 90, 0, 0};
  column.At(0, 2) = {3, 255, 0, 0};
  Picture<TypeParam> unblurred(1, 3);
  unblurred.Fill({1, 7, 0, 0});
  for (const std::size_t rowWidth : {0U, 1U}) {
    const TestMask ends({1.0, 0.0, 1.0}, rowWidth);
    const Picture<TypeParam> blurred = VerticalPass(Mapped(1), column, unblurred);
    EXPECT_EQ(blurred.At(0, 0).red, 60);
    EXPECT_EQ(blurred.At(0, 2).red, 200);
  }
}

// Radius 6. Row 0, mask 0.5: reach 3, taps on rows -3 to -1 weigh nothing: (0 x 0.5 + 70 x 1 +
// 140 x 0.25) / 1.75 = 60; half of it, (3 - 1) / 4, and half of the 100 from before: 80. Row 2,
// mask 0.25: reach 1: (70 x 1 + 140 x 0.25) / 1.25 = 84; an eighth of it, (1.5 - 1) / 4,
// and 87.5: 98. Row 1, mask 1: rows -5 to 7 mirrored are 0 1 2 2 1 0 1 2 2 1 0 1 2: (5 x 70 + 5 x
// 140) / 13 = 80.8.
TYPED_TEST(FastBlurTest, VerticalPassBeyondTheEdges) {
  Picture<TypeParam> column(1, 3);
  column.At(0, 0) = {1, 0, 0, 0};
  column.At(0, 1) = {2, 70, 0, 0};
  column.At(0, 2) = {3, 140, 0, 0};
  Picture<TypeParam> unblurred(1, 3);
  unblurred.Fill({1, 100, 0, 0});
  const TestMask mask({0.5, 1.0, 0.25});
  const Picture<TypeParam> blurred = VerticalPass(Mapped(6), column, unblurred);
  EXPECT_EQ(blurred.At(0, 0).red, 80);
  EXPECT_EQ(blurred.At(0, 1).red, 81);
  EXPECT_EQ(blurred.At(0, 2).red, 98);
}

// Without the lens map the temporary world is never read, so that any depth will do.
TYPED_TEST(FastBlurTest, TemporaryWorldOfAnotherDepthIsTakenWithoutTheLensMap) {
  Picture<TypeParam> usual(7, 5);
  usual.FillNoise(kSeed);
  Picture<TypeParam> src = usual;
  Picture<TypeParam> dst(7, 5);
  Picture<TypeParam> expected(7, 5);
  {
    FakeHost host;
    host.newWorldAnswers.assign(3, {.deep = Picture<TypeParam>::kDeep});
    ASSERT_EQ(Blur(host, Uniform(2), usual, expected), PF_Err_NONE);
  }
  FakeHost host;
  host.newWorldAnswers.assign(3, {.deep = !Picture<TypeParam>::kDeep});
  ASSERT_EQ(Blur(host, Uniform(2), src, dst), PF_Err_NONE);
  ExpectSame(expected, dst, "temporary world of another depth");
  EXPECT_EQ(std::count_if(host.log.begin(), host.log.end(),
                          [](const std::string& call) { return call.rfind("new_world", 0) == 0; }),
            3);
}

// With it the world is asked for once more, and 516 when its depth stays wrong. Rounds that cannot
// be made are ignored but for the last one.
TYPED_TEST(FastBlurTest, TemporaryWorldOfAnotherDepthIsAskedForOnceMoreByTheLensMap) {
  const TestMask mask({0.5, 0.5, 0.5});
  Picture<TypeParam> src(3, 1);
  src.FillNoise(kSeed);
  Picture<TypeParam> dst(3, 1);
  const bool deep = Picture<TypeParam>::kDeep;
  FakeHost host;
  host.newWorldAnswers = {{.deep = !deep}, {.deep = deep}, {.deep = deep}, {.deep = deep}};
  EXPECT_EQ(Blur(host, Mapped(6), src, dst), PF_Err_NONE);
  host.newWorldAnswers = {{.deep = deep}, {.deep = deep}, {.deep = !deep}, {.deep = !deep}};
  EXPECT_EQ(Blur(host, Mapped(6), src, dst), PF_Err_BAD_CALLBACK_PARAM);
}

// 2 x feather must exceed amount / 100; at the narrow feather the mask 0 is not looked at.
TYPED_TEST(FastBlurTest, KeepsTheBlurUniformUnderANarrowFeather) {
  const TestMask mask({0.0, 0.0, 0.0});
  Picture<TypeParam> row(3, 1);
  row.Fill({1, 0, 0, 0});
  row.At(1, 0) = {1, 90, 0, 0};
  LX_Info info = Mapped(1);
  info.feather = 0.005F;
  EXPECT_EQ(HorizontalPass(info, row).At(1, 0).red, 30);
  info.feather = 0.0051F;
  EXPECT_EQ(HorizontalPass(info, row).At(1, 0).red, 90);
  info.fastBlurUseLensAsBlurMap = 2;  // Non-zero is enough here.
  EXPECT_EQ(HorizontalPass(info, row).At(1, 0).red, 90);
}

}  // namespace
}  // namespace vitrell
