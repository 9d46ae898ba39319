// The lens stage: one-row images under masks chosen by hand.
#include "lens/lens_stage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

#include "host/fake_host.h"
#include "host/picture.h"
#include "lens/test_mask.h"
#include "pass/call_stage.h"

namespace vitrell {
namespace {

using testing::ElementsAre;

LX_Info CircleInfo() {
  LX_Info info = {};
  info.lensType = kLensCircle;
  info.scaleWidth = info.scaleHeight = 1;
  return info;
}

template <typename Pixel, typename InputPixel>
std::vector<int> RedsUnder(const TestMask& testMask, InputPixel unprocessed, Pixel processed,
                           const LX_Info& info) {
  FakeHost host;
  const std::vector<double>& mask = testMask.values();
  const auto width = static_cast<A_long>(mask.size());
  Picture<InputPixel> input(width, 1);
  input.Fill(unprocessed);
  Picture<Pixel> src(width, 1);
  src.Fill(processed);
  Picture<Pixel> dst(width, 1);
  EXPECT_EQ(CallStage(RunLensStage, host.inData(), src.get(), dst.get(), info, input.get()),
            PF_Err_NONE);
  std::vector<int> reds;
  reds.reserve(mask.size());
  for (A_long x = 0; x < width; ++x) {
    reds.push_back(dst.At(x, 0).red);
  }
  return reds;
}

// The red channels of the stage's result over uniform images, one pixel per mask value. Checks that
// the result is the same with and without mask rows.
template <typename Pixel, typename InputPixel>
std::vector<int> Reds(const std::vector<double>& mask, InputPixel unprocessed, Pixel processed,
                      const LX_Info& info) {
  std::vector<int> plain = RedsUnder(TestMask(mask), unprocessed, processed, info);
  EXPECT_EQ(RedsUnder(TestMask(mask, mask.size()), unprocessed, processed, info), plain);
  return plain;
}

constexpr PF_Pixel kBlack8 = {0, 0, 0, 0};
constexpr PF_Pixel16 kBlack16 = {0, 0, 0, 0};
constexpr PF_Pixel16 kWhite16 = {32768, 32768, 32768, 32768};

// Blended, 0.0001 would give 0.0001 x 32768 + 0.5 = 3; 0.00011 gives 3.6 + 0.5 = 4.
TEST(LensStageTest, ThresholdItselfIsOutside) {
  EXPECT_THAT(Reds({0.0, 0.0001, 0.00011}, kBlack16, kWhite16, CircleInfo()), ElementsAre(0, 0, 4));
}

// In 8 bits the first value that shows is half a step of 255: 0.00196 x 255 + 0.5 = 0.9998 and
// 0.001961 x 255 + 0.5 = 1.00006.
TEST(LensStageTest, FirstEightBitStepIsHalfAStepOfWhite) {
  EXPECT_THAT(Reds({0.0001, 0.00011, 0.00196, 0.001961}, kBlack8, PF_Pixel{255, 255, 255, 255},
                   CircleInfo()),
              ElementsAre(0, 0, 0, 1));
}

// 0.25 x 10 + 0.75 x 200 + 0.5 = 153; m = 1 gives the processed pixel.
TEST(LensStageTest, BlendsByTheMask) {
  EXPECT_THAT(Reds({0.0, 0.75, 1.0}, PF_Pixel{1, 10, 1, 1}, PF_Pixel{2, 200, 2, 2}, CircleInfo()),
              ElementsAre(10, 153, 200));
}

// Every 8-bit channel outside with every one inside.
TEST(LensStageTest, AllPairsMixInDoublePrecision) {
  constexpr A_long kSide = 256;
  for (const double m : {0.0002, 0.1, 0.5, 0.1 / 0.3, 0.999, 1.0}) {
    FakeHost host;
    const TestMask mask(std::vector<double>(std::size_t{kSide} * kSide, m), kSide);
    Picture<PF_Pixel> input(kSide, kSide);
    Picture<PF_Pixel> src(kSide, kSide, 20);
    Picture<PF_Pixel> dst(kSide, kSide);
    for (A_long y = 0; y < kSide; ++y) {
      for (A_long x = 0; x < kSide; ++x) {
        const auto u = static_cast<A_u_char>(x);
        const auto f = static_cast<A_u_char>(y);
        input.At(x, y) = {u, f, 7, u};
        src.At(x, y) = {f, u, f, 201};
      }
    }
    ASSERT_EQ(
        CallStage(RunLensStage, host.inData(), src.get(), dst.get(), CircleInfo(), input.get()),
        PF_Err_NONE);
    const auto mix = [m](int outside, int inside) {
      return static_cast<A_u_char>(static_cast<int>((1 - m) * outside + m * inside + 0.5));
    };
    for (A_long y = 0; y < kSide; ++y) {
      for (A_long x = 0; x < kSide; ++x) {
        const PF_Pixel u = input.At(x, y);
        const PF_Pixel f = src.At(x, y);
        const PF_Pixel expected = {mix(u.alpha, f.alpha), mix(u.red, f.red), mix(u.green, f.green),
                                   mix(u.blue, f.blue)};
        ASSERT_EQ(dst.At(x, y), expected) << "m " << m << " at " << x << "," << y;
      }
    }
  }
}

TEST(LensStageTest, AlphaIsBlendedLikeTheColours) {
  FakeHost host;
  const TestMask mask({0.5});
  Picture<PF_Pixel> input(1, 1);
  input.Fill({0, 10, 20, 30});
  Picture<PF_Pixel> src(1, 1);
  src.Fill({255, 20, 40, 70});
  Picture<PF_Pixel> dst(1, 1);
  ASSERT_EQ(CallStage(RunLensStage, host.inData(), src.get(), dst.get(), CircleInfo(), input.get()),
            PF_Err_NONE);
  EXPECT_EQ(dst.At(0, 0).alpha, 128);  // 127.5 + 0.5
  EXPECT_EQ(dst.At(0, 0).red, 15);
  EXPECT_EQ(dst.At(0, 0).green, 30);
  EXPECT_EQ(dst.At(0, 0).blue, 50);
}

// Amount 50, narrow feather: 0.8 -> 1.2 -> 1; 0.00005 -> 0.000075, outside; 0.00007 -> 0.000105,
// 0.000105 x 32768 + 0.5 = 3.94.
TEST(LensStageTest, BlurMapStrengthensTheMaskUpToOne) {
  LX_Info info = CircleInfo();
  info.fastBlurVisible = info.fastBlurUseLensAsBlurMap = 1;
  info.fastBlurAmount = 50;
  EXPECT_THAT(Reds({0.8, 0.00005, 0.00007, 0.5}, kBlack16, kWhite16, info),
              ElementsAre(32768, 0, 3, 24576));
  // 8 bits. Unlimited, 0.8 would give -0.2 x 10 + 1.2 x 200 + 0.5 = 238; 0.5 -> 0.75 gives 153;
  // 0.00126 x 1.5 x 190 + 10.5 = 10.86 and 0.00176 x 1.5 x 190 + 10.5 = 11.0016.
  EXPECT_THAT(
      Reds({0.8, 0.5, 0.00126, 0.00176}, PF_Pixel{1, 10, 1, 1}, PF_Pixel{2, 200, 2, 2}, info),
      ElementsAre(200, 153, 10, 11));
}

// Without the blur map a value above 1 is not limited: -0.5 x 10 + 1.5 x 100 + 0.5 = 145.5.
TEST(LensStageTest, KeepsMasksAboveOneWithoutABlurMap) {
  EXPECT_THAT(Reds({1.5}, PF_Pixel{1, 10, 1, 1}, PF_Pixel{2, 100, 2, 2}, CircleInfo()),
              ElementsAre(145));
}

// 2 x 0.05 = 0.1 = 10 / 100 in single precision; a feather just wider switches it off.
TEST(LensStageTest, FeatherDecidesInSinglePrecision) {
  LX_Info info = CircleInfo();
  info.fastBlurVisible = info.fastBlurUseLensAsBlurMap = 1;
  info.fastBlurAmount = 10;
  info.feather = 0.05F;
  EXPECT_THAT(Reds({0.5}, kBlack16, kWhite16, info), ElementsAre(18022));  // 0.55: 18022.4 + 0.5
  info.feather = 0.0500001F;
  EXPECT_THAT(Reds({0.5}, kBlack16, kWhite16, info), ElementsAre(16384));
  info.feather = 0.05F;
  info.fastBlurUseLensAsBlurMap = 2;
  EXPECT_THAT(Reds({0.5}, kBlack16, kWhite16, info), ElementsAre(16384));
}

// The realistic amount 50 is 0.5 in the settings and 0.005 here: 0.5 x 1.005 = 0.5025.
TEST(LensStageTest, KeepsTheRealisticAmountDividedTwice) {
  LX_Info info = CircleInfo();
  info.realisticVisible = info.realisticUseLensAsBlurMap = 1;
  info.realisticAmount = 0.5F;
  EXPECT_THAT(Reds({0.5}, kBlack16, kWhite16, info), ElementsAre(16466));  // 16465.92 + 0.5
  // It comes after the fast blur's and wins.
  info.fastBlurVisible = info.fastBlurUseLensAsBlurMap = 1;
  info.fastBlurAmount = 50;
  EXPECT_THAT(Reds({0.5}, kBlack16, kWhite16, info), ElementsAre(16466));
}

// 32767 -> 255; 16384 / 32767 x 255 = 127.504; 65535 -> 510.008, whose low byte is 254.
TEST(LensStageTest, Keeps32767AsDeepWhiteForAShallowDestination) {
  const auto converted = [](std::uint16_t red) {
    return Reds({0.0}, PF_Pixel16{0, red, 0, 0}, kBlack8, CircleInfo()).at(0);
  };
  EXPECT_EQ(converted(32767), 255);
  EXPECT_EQ(converted(32768), 255);
  EXPECT_EQ(converted(16384), 127);
  EXPECT_EQ(converted(65535), 254);
  EXPECT_EQ(converted(128), 0);  // 0.996
  EXPECT_EQ(converted(129), 1);
}

// 255 -> 32767; 128 / 255 x 32767 = 16447.75; 1 -> 128.498.
TEST(LensStageTest, Keeps32767AsDeepWhiteForADeepDestination) {
  const auto converted = [](std::uint8_t red) {
    return Reds({0.0}, PF_Pixel{0, red, 0, 0}, kBlack16, CircleInfo()).at(0);
  };
  EXPECT_EQ(converted(255), 32767);
  EXPECT_EQ(converted(128), 16447);
  EXPECT_EQ(converted(1), 128);
}

TEST(LensStageTest, OutsideTheMasksRectangleIsUnprocessed) {
  FakeHost host;
  const TestMask mask({1.0, 1.0});
  Picture<PF_Pixel> input(4, 1);
  input.Fill({1, 10, 1, 1});
  Picture<PF_Pixel> src(4, 1);
  src.Fill({2, 200, 2, 2});
  Picture<PF_Pixel> dst(4, 1);
  dst.get()->extent_hint = {1, 0, 3, 1};
  ASSERT_EQ(CallStage(RunLensStage, host.inData(), src.get(), dst.get(), CircleInfo(), input.get()),
            PF_Err_NONE);
  EXPECT_EQ(dst.At(0, 0).red, 10);
  EXPECT_EQ(dst.At(1, 0).red, 200);
  EXPECT_EQ(dst.At(2, 0).red, 200);
  EXPECT_EQ(dst.At(3, 0).red, 10);
}

template <typename Pixel>
std::vector<Pixel> MixedUnder(const TestMask& /*mask*/, Picture<Pixel>* input, Picture<Pixel>* src,
                              A_long width, A_long height) {
  FakeHost host;
  Picture<Pixel> dst(width, height, 8);
  EXPECT_EQ(
      CallStage(RunLensStage, host.inData(), src->get(), dst.get(), CircleInfo(), input->get()),
      PF_Err_NONE);
  std::vector<Pixel> pixels;
  for (A_long y = 0; y < height; ++y) {
    for (A_long x = 0; x < width; ++x) {
      pixels.push_back(dst.At(x, y));
    }
  }
  return pixels;
}

// Sizes from 1 x 1 on, values around every decision, layers smaller than the worlds.
template <typename Pixel>
void ExpectRowsToMixAsValuesDo() {
  const double kValues[] = {0.0,
                            0.0,
                            0.0001,
                            0.00011,
                            0.5,
                            0.1 / 0.3,
                            0.99999999999999989,
                            1.0,
                            1.0,
                            1.0,
                            1.5,
                            -0.25,
                            std::numeric_limits<double>::quiet_NaN()};
  std::mt19937 random(20261122);
  for (int i = 0; i < 400; ++i) {
    const auto width = static_cast<A_long>(1 + random() % 23);
    const auto height = static_cast<A_long>(1 + random() % 4);
    std::vector<double> values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::generate(values.begin(), values.end(), [&] { return kValues[random() % 13]; });
    const A_long less = random() % 4 == 0 ? 1 : 0;
    Picture<Pixel> input(std::max(width - less, A_long{1}), height, 12);
    input.FillNoise(static_cast<unsigned>(2 * i));
    Picture<Pixel> src(width, height, 4);
    src.FillNoise(static_cast<unsigned>(2 * i + 1));
    const std::vector<Pixel> expected = MixedUnder(TestMask(values), &input, &src, width, height);
    const std::vector<Pixel> mixed =
        MixedUnder(TestMask(values, static_cast<std::size_t>(width)), &input, &src, width, height);
    ASSERT_TRUE(mixed == expected) << "case " << i << " of " << width << "x" << height;
  }
}

TEST(LensStageTest, RowsOfTheMaskMixAsItsValuesDo) {
  ExpectRowsToMixAsValuesDo<PF_Pixel>();
  ExpectRowsToMixAsValuesDo<PF_Pixel16>();
}

// Type None, or a scale of 0: a copy. The pixel format is asked for all the same, and a failing
// answer ends the stage.
TEST(LensStageTest, WithoutALensCopies) {
  for (const int variant : {0, 1, 2, 3}) {
    LX_Info info = CircleInfo();
    info.lensType = variant == 0 ? kLensNone : kLensCircle;
    info.scaleWidth = variant == 1 ? 0.0F : 1.0F;
    info.scaleHeight = variant == 2 ? -1.0F : 1.0F;
    FakeHost host;
    const TestMask mask({0.0});
    Picture<PF_Pixel> input(1, 1);
    input.Fill({1, 10, 1, 1});
    Picture<PF_Pixel> src(1, 1);
    src.Fill({2, 200, 2, 2});
    Picture<PF_Pixel> dst(1, 1);
    ASSERT_EQ(CallStage(RunLensStage, host.inData(), src.get(), dst.get(), info, input.get()),
              PF_Err_NONE);
    EXPECT_EQ(dst.At(0, 0).red, variant == 3 ? 10 : 200);
    EXPECT_EQ(host.log.at(1), "get_pixel_format");
    EXPECT_EQ(host.log.at(2), variant == 3 ? "acquire PF Iterate8 Suite 1" : "copy");
    host.failures["get_pixel_format"][2] = 513;
    EXPECT_EQ(CallStage(RunLensStage, host.inData(), src.get(), dst.get(), info, input.get()), 513);
  }
}

}  // namespace
}  // namespace vitrell
