// The final blend over whole images, against the literal formulas.
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "host/fake_host.h"
#include "host/picture.h"
#include "lens/test_mask.h"
#include "literal/colour/blend_modes.h"
#include "pass/call_stage.h"
#include "render/render_driver.h"

namespace vitrell {
namespace {

constexpr A_long kSide = 256;  // All pairs of 8-bit channels.
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

std::uint8_t LiteralChannel(std::uint8_t f, std::uint8_t b, double m, const LX_Info& info,
                            std::uint8_t present) {
  return m < 0.0001 ? f : literal::BlendChannel8(f, b, m, info.intensity, info.mode, present);
}

std::uint16_t LiteralChannel(std::uint16_t f, std::uint16_t b, double m, const LX_Info& info,
                             std::uint16_t present) {
  return m <= 0.0001 ? f : literal::BlendChannel16(f, b, m, info.intensity, info.mode, present);
}

// Every front over every back, a different pair in each channel.
void FillPairs(Picture<PF_Pixel>* front, Picture<PF_Pixel>* back) {
  for (A_long y = 0; y < kSide; ++y) {
    for (A_long x = 0; x < kSide; ++x) {
      const auto f = static_cast<A_u_char>(x);
      const auto b = static_cast<A_u_char>(y);
      const auto g = static_cast<A_u_char>(255 - x);
      front->At(x, y) = {f, g, b, static_cast<A_u_char>(f + 77)};
      back->At(x, y) = {b, b, f, g};
    }
  }
}

// Noise up to the largest value, with every pair of remarkable values in the first row.
void FillPairs(Picture<PF_Pixel16>* front, Picture<PF_Pixel16>* back) {
  front->FillNoise(401, 65535);
  back->FillNoise(402, 65535);
  constexpr A_u_short kRemarkable[] = {0, 1, 255, 16384, 32767, 32768, 32769, 65535};
  A_long x = 0;
  for (const A_u_short f : kRemarkable) {
    for (const A_u_short b : kRemarkable) {
      front->At(x, 0) = {f, b, f, 0};
      back->At(x++, 0) = {b, f, f, b};
    }
  }
}

// Blends all pairs of channels under one mask value, with or without mask rows, and compares every
// result with the literal formula.
template <typename Pixel>
void ExpectLiteralBlend(const LX_Info& info, double m, bool inRows) {
  FakeHost host;
  const TestMask mask(std::vector<double>(std::size_t{kSide} * kSide, m), inRows ? kSide : 0);
  Picture<Pixel> front(kSide, kSide);
  Picture<Pixel> back(kSide, kSide, 24);
  FillPairs(&front, &back);
  Picture<Pixel> dst(kSide, kSide);
  const Pixel present = {3, 141, 59, 26};
  dst.Fill(present);
  ASSERT_EQ(CallStage(RenderEffect, host.inData(), front.get(), dst.get(), info, back.get()),
            PF_Err_NONE);
  int wrong = 0;
  for (A_long y = 0; y < kSide; ++y) {
    for (A_long x = 0; x < kSide; ++x) {
      const Pixel f = front.At(x, y);
      const Pixel b = back.At(x, y);
      const Pixel expected = {LiteralChannel(f.alpha, b.alpha, m, info, present.alpha),
                              LiteralChannel(f.red, b.red, m, info, present.red),
                              LiteralChannel(f.green, b.green, m, info, present.green),
                              LiteralChannel(f.blue, b.blue, m, info, present.blue)};
      if (!(dst.At(x, y) == expected) && wrong++ < 3) {
        ADD_FAILURE() << "mode " << info.mode << " opacity " << info.intensity << " mask " << m
                      << (inRows ? " in rows" : "") << " at " << x << "," << y << ": red " << f.red
                      << " over " << b.red << " gives " << dst.At(x, y).red << ", not "
                      << expected.red;
      }
    }
  }
  EXPECT_EQ(wrong, 0);
}

class BlendPassTest : public testing::TestWithParam<int> {};

TEST_P(BlendPassTest, AllPairsMatchTheLiteralFormulas) {
  // 1e-17 of a level is lost in a sum with the level; from 2^-20 on Multiply takes another way.
  constexpr float kOpacities[] = {0.0F, 1e-17F, 0.37F, 0.7F, 1.0F, 1.7F};
  // Under 0.9 a 16-bit product that wraps ends below 0.
  constexpr double kMasks[] = {1.0, 0.9, 0.5, 0.1 / 0.3, 0.0001, 0.00009, 1.5, kNan};
  for (const float opacity : kOpacities) {
    for (const double m : kMasks) {
      LX_Info info = {};
      info.mode = GetParam();
      info.intensity = opacity;
      for (const bool inRows : {true, false}) {
        ExpectLiteralBlend<PF_Pixel>(info, m, inRows);
        ExpectLiteralBlend<PF_Pixel16>(info, m, inRows);
      }
    }
  }
}

// The four modes and one on either side.
INSTANTIATE_TEST_SUITE_P(Modes, BlendPassTest, testing::Values(0, 1, 2, 3, 4, 5));

// Neither the layer's size nor its origin has to be that of the worlds.
TEST(BlendPassTest, SmallerBackgroundsAreMirrored) {
  for (const std::size_t width : {std::size_t{0}, std::size_t{4}}) {
    FakeHost host;
    const TestMask mask(std::vector<double>(12, 1.0), width);
    Picture<PF_Pixel> front(4, 3);
    front.FillNoise(7);
    Picture<PF_Pixel> back(2, 2);
    back.FillNoise(8);
    Picture<PF_Pixel> dst(4, 3);
    LX_Info info = {};
    info.mode = kNormal;
    info.intensity = 0;
    ASSERT_EQ(CallStage(RenderEffect, host.inData(), front.get(), dst.get(), info, back.get()),
              PF_Err_NONE);
    EXPECT_EQ(dst.At(0, 0), back.At(0, 0));
    EXPECT_EQ(dst.At(2, 0), back.At(1, 0));
    EXPECT_EQ(dst.At(3, 2), back.At(0, 1));
  }
}

}  // namespace
}  // namespace vitrell
