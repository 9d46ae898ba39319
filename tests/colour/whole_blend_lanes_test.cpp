// Blends without a mask, lane by lane, against the literal formulas.
#include "colour/whole_blend_lanes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>

#include "literal/colour/blend_modes.h"

namespace vitrell {
namespace {

std::uint8_t Literal(std::uint8_t f, std::uint8_t b, float opacity, int mode) {
  return literal::BlendChannel8(f, b, 1, opacity, mode, 0);
}

std::uint16_t Literal(std::uint16_t f, std::uint16_t b, float opacity, int mode) {
  return literal::BlendChannel16(f, b, 1, opacity, mode, 0);
}

template <int kMode, typename Pixel>
void ExpectLiteral(const Pixel& f, const Pixel& b, float opacity) {
  Pixel blended;
  StoreLowBits(WholeBlendedLanes<kMode>(f, b, opacity), &blended);
  const Pixel expected = {
      Literal(f.alpha, b.alpha, opacity, kMode), Literal(f.red, b.red, opacity, kMode),
      Literal(f.green, b.green, opacity, kMode), Literal(f.blue, b.blue, opacity, kMode)};
  const bool isSame = blended.alpha == expected.alpha && blended.red == expected.red &&
                      blended.green == expected.green && blended.blue == expected.blue;
  ASSERT_TRUE(isSame) << "mode " << kMode << " opacity " << opacity << ": alpha " << f.alpha
                      << " over " << b.alpha << " gives " << blended.alpha << ", not "
                      << expected.alpha << "; red " << f.red << " over " << b.red << " gives "
                      << blended.red << ", not " << expected.red;
}

template <typename Pixel>
void ExpectLiteralInAllModes(const Pixel& f, const Pixel& b, float opacity) {
  ExpectLiteral<kNormal>(f, b, opacity);
  ExpectLiteral<kAdd>(f, b, opacity);
  ExpectLiteral<kScreen>(f, b, opacity);
  ExpectLiteral<kMultiply>(f, b, opacity);
}

class WholeBlendLanesTest : public testing::Test {
 protected:
  // Percentages, their finest steps, any number in reach, and both limits.
  float Opacity() {
    switch (random_() % 5) {
      case 0:
        return static_cast<float>(random_() % 101) / 100.0F;
      case 1:
        return static_cast<float>(random_() % 10001) / 10000.0F;
      case 2:
        return std::ldexp(1.0F + static_cast<float>(random_() % 8388608) * 0x1p-23F,
                          -static_cast<int>(random_() % 20) - 1);
      case 3:
        return kLeastQuickOpacity;
      default:
        return 1.0F;
    }
  }

  // Everything from 0 to 65535; around black, white, and the root of 2^31 more often.
  A_u_short Channel() {
    constexpr A_u_short kEdges[] = {0,     1,     255,   16384, 32766, 32767,
                                    32768, 32769, 46340, 46341, 65534, 65535};
    switch (random_() % 4) {
      case 0:
        return kEdges[random_() % 12];
      case 1:
        return static_cast<A_u_short>(random_() % 65536);
      default:
        return static_cast<A_u_short>(random_() % 32769);
    }
  }

  std::mt19937 random_{20261122};
};

TEST_F(WholeBlendLanesTest, AllPairsOf8BitChannels) {
  for (int i = 0; i < 12; ++i) {
    const float opacity = i == 0 ? 0.0F : Opacity();
    for (int front = 0; front < 256; ++front) {
      const auto f = static_cast<A_u_char>(front);
      for (int back = 0; back < 256; back += 4) {
        const auto b = static_cast<A_u_char>(back);
        ExpectLiteralInAllModes<PF_Pixel>(
            {f, f, f, f},
            {b, static_cast<A_u_char>(b + 1), static_cast<A_u_char>(b + 2),
             static_cast<A_u_char>(b + 3)},
            opacity);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST_F(WholeBlendLanesTest, RandomPairsOf16BitChannels) {
  for (int i = 0; i < 300000 && !HasFatalFailure(); ++i) {
    const PF_Pixel16 f = {Channel(), Channel(), Channel(), Channel()};
    const PF_Pixel16 b = {Channel(), Channel(), Channel(), Channel()};
    ExpectLiteralInAllModes(f, b, Opacity());
  }
}

}  // namespace
}  // namespace vitrell
