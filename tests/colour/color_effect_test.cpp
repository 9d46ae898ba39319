// Colour: the pull toward a colour, at every value of both depths.
#include "colour/color_effect.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

#include "host/fake_host.h"
#include "host/picture.h"
#include "pass/call_stage.h"

namespace vitrell {
namespace {

using ::testing::ElementsAre;

constexpr PF_Pixel kTarget = {255, 10, 128, 200};

PF_Pixel Pull8(float opacity, PF_Pixel in, PF_Pixel target = kTarget) {
  ColorRefcon refcon = {opacity, target};
  PF_Pixel out = {1, 2, 3, 4};
  EXPECT_EQ(PF_Err_NONE, ColorEffect8(&refcon, 0, 0, &in, &out));
  return out;
}

PF_Pixel16 Pull16(float opacity, PF_Pixel16 in, PF_Pixel target = kTarget) {
  ColorRefcon refcon = {opacity, target};
  PF_Pixel16 out = {1, 2, 3, 4};
  EXPECT_EQ(PF_Err_NONE, ColorEffect16(&refcon, 0, 0, &in, &out));
  return out;
}

TEST(ColorEffectTest, FullOpacityGivesTheTargetAlphaIncluded) {
  for (int v = 0; v < 256; ++v) {
    const auto value = static_cast<std::uint8_t>(v);
    const PF_Pixel out = Pull8(1.0f, {value, value, value, value});
    ASSERT_EQ(255, out.alpha);
    ASSERT_EQ(10, out.red);
    ASSERT_EQ(128, out.green);
    ASSERT_EQ(200, out.blue);
  }
}

// 255 x 256 = 65280 is above the 16-bit white of 32768.
TEST(ColorEffectTest, KeepsSixteenBitTargetsWidenedBy256) {
  for (int v = 0; v < 65536; ++v) {
    const auto value = static_cast<std::uint16_t>(v);
    const PF_Pixel16 out = Pull16(1.0f, {value, value, value, value});
    ASSERT_EQ(65280, out.alpha);
    ASSERT_EQ(2560, out.red);
    ASSERT_EQ(32768, out.green);
    ASSERT_EQ(51200, out.blue);
  }
}

TEST(ColorEffectTest, OpacityZeroKeepsEveryValue) {
  for (int v = 0; v < 256; ++v) {
    const auto value = static_cast<std::uint8_t>(v);
    ASSERT_EQ(v, Pull8(0.0f, {0, value, 0, 0}).red);
  }
  for (int v = 0; v < 65536; ++v) {
    const auto value = static_cast<std::uint16_t>(v);
    ASSERT_EQ(v, Pull16(0.0f, {0, 0, value, 0}).green);
  }
}

// Half of the way, truncated: (255 - 100) / 2 + 100 = 177.5, (10 - 100) / 2 + 100 = 55,
// (128 - 101) / 2 + 101 = 114.5, (200 - 0) / 2 = 100.
TEST(ColorEffectTest, HalfOpacityGoesHalfWayAndTruncates) {
  const PF_Pixel out = Pull8(0.5f, {100, 100, 101, 0});
  EXPECT_EQ(177, out.alpha);
  EXPECT_EQ(55, out.red);
  EXPECT_EQ(114, out.green);
  EXPECT_EQ(100, out.blue);
}

// Opacity 0.1 in single precision is a little above a tenth. 32768 - 7 steps of a tenth toward
// 65280 give 3251.9 + 32761 = 36012.9; toward 0 from 10 give 9.0, which truncates to 9 in single
// precision though the true value is just below.
TEST(ColorEffectTest, ComputesInSinglePrecision) {
  const PF_Pixel16 out = Pull16(0.1f, {32761, 10, 10, 10}, {255, 0, 0, 0});
  EXPECT_EQ(36012, out.alpha);
  EXPECT_LT(-10 * static_cast<double>(0.1f) + 10, 9.0);
  EXPECT_EQ(9, out.red);
}

TEST(ColorEffectTest, MatchesSinglePrecisionEvaluationAtEveryValue) {
  for (const float opacity : {0.003f, 0.25f, 0.37f, 0.999f}) {
    for (int v = 0; v < 65536; ++v) {
      const auto value = static_cast<std::uint16_t>(v);
      volatile float product = (static_cast<float>(77 * 256) - static_cast<float>(v)) * opacity;
      const float sum = product + static_cast<float>(v);
      ASSERT_EQ(static_cast<int>(sum), Pull16(opacity, {0, value, 0, 0}, {0, 77, 0, 0}).red);
      if (v < 256) {
        product = (77.0f - static_cast<float>(v)) * opacity;
        const float sum8 = product + static_cast<float>(v);
        const auto value8 = static_cast<std::uint8_t>(v);
        ASSERT_EQ(static_cast<int>(sum8), Pull8(opacity, {0, 0, 0, value8}, {0, 0, 0, 77}).blue);
      }
    }
  }
}

// Opacity 3: (10 - 200) x 3 + 200 = -370 = 142 in the low 8 bits; (255 - 0) x 3 = 765 = 253.
TEST(ColorEffectTest, KeepsLowBitsOutsideTheRange) {
  const PF_Pixel out = Pull8(3.0f, {0, 200, 128, 200});
  EXPECT_EQ(253, out.alpha);
  EXPECT_EQ(142, out.red);
  EXPECT_EQ(128, out.green);
  EXPECT_EQ(200, out.blue);
}

TEST(ColorEffectTest, SurvivesOpacitiesThatAreNoNumbers) {
  EXPECT_EQ(0, Pull8(std::nanf(""), {9, 9, 9, 9}).green);
  EXPECT_EQ(0, Pull16(INFINITY, {9, 9, 9, 9}).alpha);
}

TEST(ColorEffectTest, PassesEqualTheFunctionAtEveryValue) {
  FakeHost host;
  Picture<PF_Pixel> src(16, 16);
  Picture<PF_Pixel> dst(16, 16);
  Picture<PF_Pixel16> deepSrc(256, 256);
  Picture<PF_Pixel16> deepDst(256, 256);
  for (A_long i = 0; i < 65536; ++i) {
    const auto at = [i](A_long factor) { return static_cast<std::uint16_t>(i * factor + 77); };
    deepSrc.At(i % 256, i / 256) = {at(1), at(3), at(5), at(7)};
    src.At(i % 16, i / 16 % 16) = {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(at(3)),
                                   static_cast<std::uint8_t>(at(5)),
                                   static_cast<std::uint8_t>(at(7))};
  }
  for (const float opacity : {0.37f, 1.0f, -2.5f, 300.0f, NAN}) {
    LX_Info info = {};
    info.colorOpacity = opacity;
    info.colorValue = kTarget;
    ASSERT_EQ(PF_Err_NONE, CallStage(RunColorEffect, host.inData(), src.get(), dst.get(), info));
    ASSERT_EQ(PF_Err_NONE,
              CallStage(RunColorEffect, host.inData(), deepSrc.get(), deepDst.get(), info));
    for (A_long i = 0; i < 256; ++i) {
      const PF_Pixel expected = Pull8(opacity, src.At(i % 16, i / 16));
      const PF_Pixel& out = dst.At(i % 16, i / 16);
      ASSERT_TRUE(expected.alpha == out.alpha && expected.red == out.red &&
                  expected.green == out.green && expected.blue == out.blue);
    }
    for (A_long i = 0; i < 65536; ++i) {
      const PF_Pixel16 expected = Pull16(opacity, deepSrc.At(i % 256, i / 256));
      const PF_Pixel16& out = deepDst.At(i % 256, i / 256);
      ASSERT_TRUE(expected.alpha == out.alpha && expected.red == out.red &&
                  expected.green == out.green && expected.blue == out.blue);
    }
  }
}

TEST(ColorEffectTest, RunsOverTheWholePicture) {
  FakeHost host;
  Picture<PF_Pixel> src(4, 3);
  Picture<PF_Pixel> dst(4, 3, 5);
  for (A_long i = 0; i < 12; ++i) {
    src.At(i % 4, i / 4) = {static_cast<std::uint8_t>(i), 20, static_cast<std::uint8_t>(100 + i),
                            0};
  }
  LX_Info info = {};
  info.colorOpacity = 0.5f;
  info.colorValue = {100, 10, 200, 9};
  ASSERT_EQ(PF_Err_NONE, CallStage(RunColorEffect, host.inData(), src.get(), dst.get(), info));
  for (A_long i = 0; i < 12; ++i) {
    const PF_Pixel& out = dst.At(i % 4, i / 4);
    EXPECT_EQ((100 + i) / 2, out.alpha);
    EXPECT_EQ(15, out.red);
    EXPECT_EQ((300 + i) / 2, out.green);
    EXPECT_EQ(4, out.blue);
  }
  EXPECT_TRUE(dst.IsPaddingIntact());
  EXPECT_THAT(host.log, ElementsAre("acquire PF Iterate8 Suite 1", "iterate8 0..3",
                                    "release PF Iterate8 Suite 1"));
  host.iterateResult = PF_Interrupt_CANCEL;
  EXPECT_EQ(PF_Interrupt_CANCEL,
            CallStage(RunColorEffect, host.inData(), src.get(), dst.get(), info));
}

}  // namespace
}  // namespace vitrell
