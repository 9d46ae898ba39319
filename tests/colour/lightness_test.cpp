// Lightness: the power curve at every value of both depths.
#include "colour/lightness.h"

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

LX_Info LightnessSettings(float amount) {
  LX_Info info = {};
  info.lightnessVisible = 1;
  info.lightnessAmount = amount;
  return info;
}

// Runs the stage over the world and returns its result in place.
template <typename Pixel>
void Brighten(Picture<Pixel>* world, float amount) {
  FakeHost host;
  Picture<Pixel> result(world->get()->width, world->get()->height, 12);
  ASSERT_EQ(PF_Err_NONE, CallStage(RunLightness, host.inData(), world->get(), result.get(),
                                   LightnessSettings(amount)));
  EXPECT_TRUE(result.IsPaddingIntact());
  for (A_long y = 0; y < world->get()->height; ++y) {
    for (A_long x = 0; x < world->get()->width; ++x) {
      world->At(x, y) = result.At(x, y);
    }
  }
}

// One pixel whose four channels are the four values.
PF_Pixel Brighten8(PF_Pixel pixel, float amount) {
  Picture<PF_Pixel> world(1, 1);
  world.At(0, 0) = pixel;
  Brighten(&world, amount);
  return world.At(0, 0);
}

PF_Pixel16 Brighten16(PF_Pixel16 pixel, float amount) {
  Picture<PF_Pixel16> world(1, 1);
  world.At(0, 0) = pixel;
  Brighten(&world, amount);
  return world.At(0, 0);
}

// The integer part of a value, its low bits kept; defined for all that a curve can give here.
std::uint32_t LowBits(double value) {
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(value));
}

constexpr float kAmounts[] = {-1.0f, -0.73f, -0.301f, 0.0f, 0.05f, 0.5f, 1.0f};

TEST(LightnessTest, AmountZeroKeepsEvery8BitValue) {
  Picture<PF_Pixel> world(256, 1);
  for (int v = 0; v < 256; ++v) {
    const auto value = static_cast<std::uint8_t>(v);
    world.At(v, 0) = {value, static_cast<std::uint8_t>(255 - v), value, 7};
  }
  Brighten(&world, 0.0f);
  for (int v = 0; v < 256; ++v) {
    ASSERT_EQ(v, world.At(v, 0).alpha);
    ASSERT_EQ(255 - v, world.At(v, 0).red);
    ASSERT_EQ(v, world.At(v, 0).green);
    ASSERT_EQ(7, world.At(v, 0).blue);
  }
}

TEST(LightnessTest, AmountZeroKeepsEvery16BitValue) {
  Picture<PF_Pixel16> world(256, 256);
  for (int v = 0; v < 65536; ++v) {
    const auto value = static_cast<std::uint16_t>(v);
    world.At(v % 256, v / 256) = {value, static_cast<std::uint16_t>(65535 - v), 7, value};
  }
  Brighten(&world, 0.0f);
  for (int v = 0; v < 65536; ++v) {
    const PF_Pixel16& pixel = world.At(v % 256, v / 256);
    ASSERT_EQ(v, pixel.alpha);
    ASSERT_EQ(65535 - v, pixel.red);
    ASSERT_EQ(7, pixel.green);
    ASSERT_EQ(v, pixel.blue);
  }
}

TEST(LightnessTest, Matches8BitDirectEvaluationAtEveryValue) {
  for (const float amount : kAmounts) {
    const double gain = std::pow(10.0, -static_cast<double>(amount));
    Picture<PF_Pixel> world(256, 1);
    for (int v = 0; v < 256; ++v) {
      const auto value = static_cast<std::uint8_t>(v);
      world.At(v, 0) = {value, static_cast<std::uint8_t>(v ^ 0x55), 0, 255};
    }
    Brighten(&world, amount);
    const auto expected = [gain](int v) {
      return LowBits(std::pow(v / 255.0, gain) * 255.0) & 0xFFU;
    };
    for (int v = 0; v < 256; ++v) {
      ASSERT_EQ(expected(v), world.At(v, 0).alpha) << "amount " << amount << " value " << v;
      ASSERT_EQ(expected(v ^ 0x55), world.At(v, 0).red);
      ASSERT_EQ(0, world.At(v, 0).green);
      ASSERT_EQ(255, world.At(v, 0).blue);
    }
  }
}

TEST(LightnessTest, Matches16BitDirectEvaluationAtEveryValue) {
  for (const float amount : kAmounts) {
    const double gain = std::pow(10.0, -static_cast<double>(amount));
    Picture<PF_Pixel16> world(256, 256);
    for (int v = 0; v < 65536; ++v) {
      const auto value = static_cast<std::uint16_t>(v);
      world.At(v % 256, v / 256) = {32768, value, static_cast<std::uint16_t>(v ^ 0x5555), 0};
    }
    Brighten(&world, amount);
    const auto expected = [gain](int v) {
      return LowBits(std::pow(v * 3.0517578125e-05, gain) * 32768.0) & 0xFFFFU;
    };
    for (int v = 0; v < 65536; ++v) {
      const PF_Pixel16& pixel = world.At(v % 256, v / 256);
      ASSERT_EQ(32768, pixel.alpha);
      ASSERT_EQ(expected(v), pixel.red) << "amount " << amount << " value " << v;
      ASSERT_EQ(expected(v ^ 0x5555), pixel.green);
      ASSERT_EQ(0, pixel.blue);
    }
  }
}

// (200 / 255)^10 x 255 = 22.5 and (128 / 255)^10 x 255 = 0.26.
TEST(LightnessTest, BendsAlphaLikeTheColours) {
  const PF_Pixel darker = Brighten8({200, 200, 128, 255}, -1.0f);
  EXPECT_EQ(22, darker.alpha);
  EXPECT_EQ(22, darker.red);
  EXPECT_EQ(0, darker.green);
  EXPECT_EQ(255, darker.blue);
}

// (1 / 255)^0.1 x 255 = 146.5.
TEST(LightnessTest, AmountHundredRaisesTheDarkest) {
  const PF_Pixel brighter = Brighten8({0, 1, 255, 1}, 1.0f);
  EXPECT_EQ(0, brighter.alpha);
  EXPECT_EQ(146, brighter.red);
  EXPECT_EQ(255, brighter.green);
  EXPECT_EQ(146, brighter.blue);
}

// White is 32768: 0.5^10 x 32768 = 32, 0.75^10 x 32768 = 1845.3.
TEST(LightnessTest, SixteenBitWhiteIs32768) {
  const PF_Pixel16 darker = Brighten16({32768, 16384, 24576, 0}, -1.0f);
  EXPECT_EQ(32768, darker.alpha);
  EXPECT_EQ(32, darker.red);
  EXPECT_EQ(1845, darker.green);
  EXPECT_EQ(0, darker.blue);
}

// 1.5^10 x 32768 = 1889568 = 28 x 65536 + 54560.
TEST(LightnessTest, KeepsLowSixteenBitsAboveWhite) {
  EXPECT_EQ(54560, Brighten16({49152, 0, 0, 0}, -1.0f).alpha);
}

TEST(LightnessTest, SurvivesAmountsThatAreNoNumbers) {
  const float notANumber = std::nanf("");
  // pow(x, NaN) is NaN, stored as 0, but for pow(1, NaN) = 1.
  EXPECT_EQ(0, Brighten8({100, 0, 0, 0}, notANumber).alpha);
  EXPECT_EQ(255, Brighten8({255, 0, 0, 0}, notANumber).alpha);
  // An infinite amount is an exponent of 0: everything is white.
  EXPECT_EQ(255, Brighten8({100, 0, 0, 0}, INFINITY).alpha);
}

TEST(LightnessTest, IteratesOnceOverTheWholePicture) {
  FakeHost host;
  Picture<PF_Pixel16> src(3, 5);
  Picture<PF_Pixel16> dst(3, 5);
  dst.get()->extent_hint = {0, 1, 3, 5};
  host.iterateResult = PF_Interrupt_CANCEL;
  EXPECT_EQ(PF_Interrupt_CANCEL,
            CallStage(RunLightness, host.inData(), src.get(), dst.get(), LightnessSettings(0.5f)));
  EXPECT_THAT(host.log, ElementsAre("acquire PF iterate16 Suite 1", "iterate16 0..4",
                                    "release PF iterate16 Suite 1"));
  EXPECT_TRUE(host.lastAreaNull);
  EXPECT_EQ(src.get(), host.lastSource);
  EXPECT_EQ(dst.get(), host.lastDestination);
}

}  // namespace
}  // namespace vitrell
