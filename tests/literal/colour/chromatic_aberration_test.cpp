// The literal chromatic aberration against numbers worked out by hand.
#include "literal/colour/chromatic_aberration.h"

#include <gtest/gtest.h>

#include "literal/picture.h"

namespace vitrell::literal {
namespace {

TEST(LiteralChromaticAberrationTest, FetchesFromHalfTheDistance) {
  const World src = MakeWorld(9, 9, false, ByPosition);
  World dst = src;
  ChromaticPass({0.5F, 1.0F, 1.0F}, 4, 4, UniformMask(9, 9, 1.0), src, dst);
  EXPECT_EQ(dst.At(8, 1).channel[1], 63);  // Row 4 + 4 / 2, column 4 - 1.5 truncated to -1.
  ChromaticPass({0.5F, 1.0F, 1.0F}, 4, 4, UniformMask(9, 9, 0.0001), src, dst);
  EXPECT_EQ(dst.At(8, 1).channel[1], 81);
  dst.At(8, 1).channel[1] = 5;
  ChromaticPass({0.0F, 1.0F, 1.0F}, 4, 4, UniformMask(9, 9, 1.0), src, dst);
  EXPECT_EQ(dst.At(8, 1).channel[1], 5);
}

}  // namespace
}  // namespace vitrell::literal
