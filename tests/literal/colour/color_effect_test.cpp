// The literal colour wash against numbers worked out by hand.
#include "literal/colour/color_effect.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "literal/picture.h"

namespace vitrell::literal {
namespace {

TEST(LiteralColorEffectTest, KeepsColourTargetAboveWhite) {
  const World src = MakeWorld(1, 1, true, [](auto, auto) -> std::uint16_t { return 100; });
  World dst = src;
  ColorPass(1.0F, {255, 255, 128, 0}, src, dst);
  EXPECT_EQ(dst.At(0, 0).channel[0], 65280);
  EXPECT_EQ(dst.At(0, 0).channel[2], 32768);
}

}  // namespace
}  // namespace vitrell::literal
