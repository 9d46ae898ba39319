// The literal lens stage against numbers worked out by hand.
#include "literal/lens/lens_stage.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "literal/picture.h"

namespace vitrell::literal {
namespace {

TEST(LiteralLensStageTest, BlursMapStrengthensTheMask) {
  const World input = MakeWorld(1, 1, false, [](auto, auto) -> std::uint16_t { return 10; });
  const World src = MakeWorld(1, 1, false, [](auto, auto) -> std::uint16_t { return 110; });
  World dst = src;
  LensPass(input, false, 0, UniformMask(1, 1, 0.0001), src, dst);
  EXPECT_EQ(dst.At(0, 0).channel[1], 10);
  LensPass(input, false, 0, UniformMask(1, 1, 0.8), src, dst);
  EXPECT_EQ(dst.At(0, 0).channel[1], 90);
  LensPass(input, true, 0.5, UniformMask(1, 1, 0.8), src, dst);
  EXPECT_EQ(dst.At(0, 0).channel[1], 110);
}

}  // namespace
}  // namespace vitrell::literal
