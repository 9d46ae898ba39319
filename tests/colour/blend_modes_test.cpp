// The final blend, channel by channel, at numbers worked out by hand.
#include "colour/blend_modes.h"

#include <gtest/gtest.h>

#include "host/fake_host.h"
#include "host/picture.h"
#include "lens/test_mask.h"
#include "pass/call_stage.h"
#include "render/render_driver.h"

namespace vitrell {
namespace {

template <typename Pixel, typename BackPixel>
int BlendUnder(const TestMask& /*mask*/, int mode, int f, int b, float opacity, int present) {
  using Channel = decltype(Pixel::red);
  FakeHost host;
  Picture<BackPixel> input(1, 1);
  input.Fill({1, static_cast<decltype(BackPixel::red)>(b), 1, 1});
  Picture<Pixel> src(1, 1);
  src.Fill({2, static_cast<Channel>(f), 2, 2});
  Picture<Pixel> dst(1, 1);
  dst.Fill({3, static_cast<Channel>(present), 3, 3});
  LX_Info info = {};
  info.intensity = opacity;
  info.mode = mode;
  EXPECT_EQ(CallStage(RenderEffect, host.inData(), src.get(), dst.get(), info, input.get()),
            PF_Err_NONE);
  return dst.At(0, 0).red;
}

// The red channel of one blended pixel: front f over background b, in a destination that holds
// `present`. Checks that the result is the same with and without mask rows.
template <typename Pixel, typename BackPixel = Pixel>
int Blend(int mode, int f, int b, double m, float opacity, int present) {
  const int plain = BlendUnder<Pixel, BackPixel>(TestMask({m}), mode, f, b, opacity, present);
  EXPECT_EQ((BlendUnder<Pixel, BackPixel>(TestMask({m}, 1), mode, f, b, opacity, present)), plain);
  return plain;
}

constexpr auto Blend8 = Blend<PF_Pixel>;
constexpr auto Blend16 = Blend<PF_Pixel16>;

// --- The threshold: 8-bit below it, 16-bit at it too ---

TEST(BlendModesTest, Keeps8BitBlendedAtTheThreshold) {
  EXPECT_EQ(Blend8(kNormal, 200, 10, 0.0001, 0.0F, 0), 10);
  EXPECT_EQ(Blend8(kNormal, 200, 10, 0.0000999, 0.0F, 0), 200);
}

TEST(BlendModesTest, Keeps16BitCopiedAtTheThreshold) {
  EXPECT_EQ(Blend16(kNormal, 20000, 10, 0.0001, 1.0F, 0), 20000);
  // 10 x 0.9999 + 20000 x 0.00011 = 12.2.
  EXPECT_EQ(Blend16(kNormal, 20000, 10, 0.00011, 1.0F, 0), 12);
}

// --- 8 bits ---

TEST(BlendModesTest, Keeps8BitNormalBlindToTheFeather) {
  EXPECT_EQ(Blend8(kNormal, 200, 10, 0.5, 1.0F, 0), 200);
  EXPECT_EQ(Blend8(kNormal, 201, 100, 0.5, 0.5F, 0), 150);  // 100.5 + 50
}

TEST(BlendModesTest, Add8) {
  EXPECT_EQ(Blend8(kAdd, 200, 200, 1.0, 1.0F, 0), 255);
  EXPECT_EQ(Blend8(kAdd, 200, 200, 1.0, 0.5F, 0), 227);  // 200 + 55 / 2
  EXPECT_EQ(Blend8(kAdd, 101, 100, 0.5, 1.0F, 0), 150);  // 50.5 + 100
}

// (128, 128): 1 - (127 / 255)^2 = 0.751957, x 255 = 191.75. With f x m = 100 over 100:
// 1 - (155 / 255)^2 = 0.630527, x 255 = 160.78.
TEST(BlendModesTest, Screen8) {
  EXPECT_EQ(Blend8(kScreen, 128, 128, 1.0, 1.0F, 0), 191);
  EXPECT_EQ(Blend8(kScreen, 128, 128, 1.0, 0.5F, 0), 159);  // 128 + 63 / 2
  EXPECT_EQ(Blend8(kScreen, 200, 100, 0.5, 1.0F, 0), 160);
}

// A mask of 1.5 from a custom layer above white: (1 - (1 - 1.5)) x 255 = 382.5, low byte 126.
TEST(BlendModesTest, Keeps8BitScreensLowByte) {
  EXPECT_EQ(Blend8(kScreen, 255, 0, 1.5, 1.0F, 0), 126);
}

// 200 x 100 / 255 = 78.4 in integers: 78.
TEST(BlendModesTest, Multiply8) {
  EXPECT_EQ(Blend8(kMultiply, 200, 100, 1.0, 1.0F, 0), 78);
  EXPECT_EQ(Blend8(kMultiply, 200, 100, 0.5, 0.5F, 0), 94);  // 100 - 22 / 4
}

TEST(BlendModesTest, Keeps8BitUntouchedByOtherModes) {
  for (const int mode : {0, 5, -1, 256}) {
    EXPECT_EQ(Blend8(mode, 200, 100, 1.0, 1.0F, 33), 33) << mode;
    EXPECT_EQ(Blend8(mode, 200, 100, 0.0, 1.0F, 33), 200) << mode;  // Outside: the processed one.
  }
}

// --- 16 bits ---

TEST(BlendModesTest, Normal16FadesAlongTheFeather) {
  EXPECT_EQ(Blend16(kNormal, 10001, 10000, 1.0, 0.5F, 0), 10000);  // 10000.5
  EXPECT_EQ(Blend16(kNormal, 20000, 10000, 0.25, 1.0F, 0), 12500);
}

TEST(BlendModesTest, Add16IsCappedAtWhite) {
  EXPECT_EQ(Blend16(kAdd, 20000, 20000, 1.0, 1.0F, 0), 32768);
  EXPECT_EQ(Blend16(kAdd, 20000, 20000, 1.0, 0.5F, 0), 26384);  // 20000 + 12768 / 2
}

// t = 20000, not 15000; then half-way from 10000.
TEST(BlendModesTest, Keeps16BitAddsSumWithoutTheMask) {
  EXPECT_EQ(Blend16(kAdd, 10000, 10000, 0.5, 1.0F, 0), 15000);
  // The masked sum 27500 is no more than white, so 50000 is not capped: 15000 + 12500.
  EXPECT_EQ(Blend16(kAdd, 30000, 20000, 0.25, 1.0F, 0), 27500);
}

TEST(BlendModesTest, Screen16) {
  EXPECT_EQ(Blend16(kScreen, 16384, 16384, 1.0, 1.0F, 0), 24576);  // 0.75 x 32768
  // f x m = 8192: 1 - 0.5 x 0.75 = 0.625, 20480; then half-way from 16384.
  EXPECT_EQ(Blend16(kScreen, 16384, 16384, 0.5, 1.0F, 0), 18432);
}

// 16384 x 16384 >> 15 = 8192. Half a mask: 16384 - 4096 = 12288, and half-way once more.
TEST(BlendModesTest, Keeps16BitMultiplyMaskedTwice) {
  EXPECT_EQ(Blend16(kMultiply, 16384, 16384, 1.0, 1.0F, 0), 8192);
  EXPECT_EQ(Blend16(kMultiply, 16384, 16384, 0.5, 1.0F, 0), 14336);
}

// 65535 x 65535 wraps to -131071, >> 15 rounds down to -4, whose low 16 bits are 65532.
TEST(BlendModesTest, Multiply16WrapsIn32Bits) {
  EXPECT_EQ(Blend16(kMultiply, 65535, 65535, 1.0, 1.0F, 0), 65532);
}

// 1000 x 0.75 + 9000 x 0.25.
TEST(BlendModesTest, Keeps16BitFeatheringThePresentValueInOtherModes) {
  for (const int mode : {0, 5, -1}) {
    EXPECT_EQ(Blend16(mode, 20000, 1000, 0.25, 1.0F, 9000), 3000) << mode;
  }
}

TEST(BlendModesTest, OpacityZeroIsTheBackground) {
  for (const int mode : {1, 2, 3, 4}) {
    EXPECT_EQ(Blend8(mode, 200, 101, 1.0, 0.0F, 0), 101) << mode;
    EXPECT_EQ(Blend16(mode, 20000, 10001, 1.0, 0.0F, 0), 10001) << mode;
    EXPECT_EQ(Blend16(mode, 20000, 10000, 0.5, 0.0F, 0), 10000) << mode;
  }
}

// --- Between the depths, seen with opacity 0 ---

TEST(BlendModesTest, Keeps32767AsDeepWhiteFor8Bits) {
  const auto converted = [](int b) {
    return Blend<PF_Pixel, PF_Pixel16>(kNormal, 3, b, 1.0, 0.0F, 0);
  };
  EXPECT_EQ(converted(32767), 255);
  EXPECT_EQ(converted(32768), 255);
  EXPECT_EQ(converted(65535), 255);  // 510.008, clamped here.
  EXPECT_EQ(converted(16384), 127);  // 127.504
  EXPECT_EQ(converted(0), 0);
}

TEST(BlendModesTest, Keeps32767AsDeepWhiteFor16Bits) {
  const auto converted = [](int b) {
    return Blend<PF_Pixel16, PF_Pixel>(kNormal, 3, b, 1.0, 0.0F, 0);
  };
  EXPECT_EQ(converted(255), 32767);
  EXPECT_EQ(converted(128), 16447);  // 16447.75
  EXPECT_EQ(converted(1), 128);      // 128.498
}

// --- All channels, and the pass itself ---

TEST(BlendModesTest, AlphaGoesThroughTheSameFormula) {
  FakeHost host;
  const TestMask mask({1.0});
  Picture<PF_Pixel> input(1, 1);
  input.Fill({100, 10, 20, 30});
  Picture<PF_Pixel> src(1, 1);
  src.Fill({200, 1, 2, 3});
  Picture<PF_Pixel> dst(1, 1);
  LX_Info info = {};
  info.intensity = 1;
  info.mode = kAdd;
  ASSERT_EQ(CallStage(RenderEffect, host.inData(), src.get(), dst.get(), info, input.get()),
            PF_Err_NONE);
  EXPECT_EQ(dst.At(0, 0), (PF_Pixel{255, 11, 22, 33}));
}

// Failures of the query and of the pass are not reported; the default 8-bit format remains only if
// the host does not set one. Progress counts to the source's height, not to its extent's.
TEST(BlendModesTest, KeepsErrorsToItself) {
  FakeHost host;
  host.failures["iterate"][1] = 517;
  host.failures["get_pixel_format"][1] = 513;
  const TestMask mask({1.0});
  Picture<PF_Pixel> picture(1, 3);
  picture.get()->extent_hint.bottom = 1;
  LX_Info info = {};
  EXPECT_EQ(
      CallStage(RenderEffect, host.inData(), picture.get(), picture.get(), info, picture.get()),
      PF_Err_NONE);
  EXPECT_EQ(host.log.at(4), "iterate8 0..3");
}

}  // namespace
}  // namespace vitrell
