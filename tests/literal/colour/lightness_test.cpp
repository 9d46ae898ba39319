// The literal lightness against numbers worked out by hand.
#include "literal/colour/lightness.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "literal/base/types.h"
#include "literal/picture.h"

namespace vitrell::literal {
namespace {

TEST(LiteralLightnessTest, LightnessBendsAlphaToo) {
  const World src = MakeWorld(1, 1, true, [](auto, auto) -> std::uint16_t { return 16384; });
  World dst = src;
  LightnessPass(2.0, kMaths, src, dst);
  EXPECT_EQ(dst.At(0, 0).channel[1], 8192);
  EXPECT_DOUBLE_EQ(LightnessExponent(-1.0F, kMaths), 10.0);
}

}  // namespace
}  // namespace vitrell::literal
