// The literal final blend against numbers worked out by hand.
#include "literal/colour/blend_modes.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "literal/lens/lens_stage.h"
#include "literal/picture.h"

namespace vitrell::literal {
namespace {

TEST(LiteralBlendModesTest, EightBitModes) {
  EXPECT_EQ(BlendChannel8(100, 200, 0.5, 1.0F, 1, 0), 100);
  EXPECT_EQ(BlendChannel8(200, 200, 1.0, 1.0F, 2, 0), 255);
  EXPECT_EQ(BlendChannel8(100, 50, 0.5, 0.5F, 2, 0), 75);
  EXPECT_EQ(BlendChannel8(255, 10, 1.0, 1.0F, 3, 0), 255);
  EXPECT_EQ(BlendChannel8(51, 51, 1.0, 1.0F, 3, 0), 91);     // 1 - 0.8 x 0.8 = 0.36 of 255 is 91.8.
  EXPECT_EQ(BlendChannel8(100, 200, 0.5, 1.0F, 4, 0), 139);  // 78; 200 - 122 x 0.5.
  EXPECT_EQ(BlendChannel8(100, 200, 0.5, 0.0F, 4, 0), 200);
  EXPECT_EQ(BlendChannel8(100, 200, 0.5, 1.0F, 9, 17), 17);
}

TEST(LiteralBlendModesTest, SixteenBitModes) {
  EXPECT_EQ(BlendChannel16(20000, 20000, 1.0, 1.0F, 2, 0), 32768);
  EXPECT_EQ(BlendChannel16(10000, 10000, 0.5, 1.0F, 2, 0), 15000);
  EXPECT_EQ(BlendChannel16(16384, 16384, 1.0, 1.0F, 3, 0), 24576);
  EXPECT_EQ(BlendChannel16(16384, 16384, 1.0, 1.0F, 4, 0), 8192);
  EXPECT_EQ(BlendChannel16(16384, 16384, 0.5, 1.0F, 4, 0), 14336);
  EXPECT_EQ(BlendChannel16(30000, 10000, 0.25, 1.0F, 1, 0), 15000);
  EXPECT_EQ(BlendChannel16(1, 1000, 0.5, 1.0F, 7, 3000), 2000);
  // 65535 x 65535 wraps to -131071, which shifted is -4: 65535 - 65539 = -4.
  EXPECT_EQ(BlendChannel16(65535, 65535, 1.0, 1.0F, 4, 0), 65532);
}

TEST(LiteralBlendModesTest, ThresholdDiffersBetweenTheDepths) {
  const World back8 = MakeWorld(1, 1, false, [](auto, auto) -> std::uint16_t { return 9; });
  const World front8 = MakeWorld(1, 1, false, [](auto, auto) -> std::uint16_t { return 200; });
  World out8 = back8;
  BlendPass(back8, 0.0F, 1, UniformMask(1, 1, 0.0001), front8, out8);
  EXPECT_EQ(out8.At(0, 0).channel[1], 9);
  const World back16 = MakeWorld(1, 1, true, [](auto, auto) -> std::uint16_t { return 9; });
  const World front16 = MakeWorld(1, 1, true, [](auto, auto) -> std::uint16_t { return 200; });
  World out16 = back16;
  BlendPass(back16, 0.0F, 1, UniformMask(1, 1, 0.0001), front16, out16);
  EXPECT_EQ(out16.At(0, 0).channel[1], 200);
}

TEST(LiteralBlendModesTest, BackgroundOfTheOtherDepthUses32767) {
  const World back16 = MakeWorld(1, 1, true, [](auto, auto) -> std::uint16_t { return 65280; });
  World out8 = MakeWorld(1, 1, false, [](auto, auto) -> std::uint16_t { return 0; });
  const World front8 = out8;
  BlendPass(back16, 0.0F, 1, UniformMask(1, 1, 1), front8, out8);
  EXPECT_EQ(out8.At(0, 0).channel[1], 255);  // Clamped.
  LensPass(back16, false, 0, UniformMask(1, 1, 0), front8, out8);
  EXPECT_EQ(out8.At(0, 0).channel[1], 252);  // 508, not clamped, keeps its low byte.
}

}  // namespace
}  // namespace vitrell::literal
