// The literal highlight map against numbers worked out by hand.
#include "literal/blur/realistic/highlight_map.h"

#include <gtest/gtest.h>

#include <vector>

#include "literal/base/types.h"
#include "literal/picture.h"

namespace vitrell::literal {
namespace {

TEST(LiteralHighlightMapTest, HighlightIsTheRootOfLuminanceTimesAlpha) {
  World src = MakeWorld(4, 1);
  src.pixels = {Gray(255), MakePixel(51, 51, 51, 51), MakePixel(0, 255, 255, 255),
                MakePixel(255, 255, 0, 0)};
  const std::vector<float> shallow = HighlightMap(src, false, kMaths);
  ASSERT_EQ(shallow.size(), 4U);
  EXPECT_FLOAT_EQ(shallow[0], 1.0F);
  EXPECT_FLOAT_EQ(shallow[1], 0.2F);
  EXPECT_EQ(shallow[2], 0.0F);
  EXPECT_FLOAT_EQ(shallow[3], 0.54680896F);  // Root of 0.299.
  src.deep = true;
  src.pixels[0] = MakePixel(32768, 32768, 32768, 32768);
  src.pixels[1] = MakePixel(16384, 16384, 16384, 16384);
  const std::vector<float> deep = HighlightMap(src, true, kMaths);
  EXPECT_FLOAT_EQ(deep[0], 1.0F);
  EXPECT_FLOAT_EQ(deep[1], 0.5F);
}

}  // namespace
}  // namespace vitrell::literal
