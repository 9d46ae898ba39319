// Positions as the effect rounds them.
#include "panel/view/effect_position.h"

#include <gtest/gtest.h>

namespace vitrell::panel {
namespace {

TEST(EffectPositionTest, PixelsAreTheEffects) {
  // The fixed number 1000 * 65536 divided by 65566 is 999.54.
  EXPECT_EQ(EffectPixel({1000, false}, 1), 999);
  EXPECT_EQ(EffectPixel({1920, false}, 1), 1919);
  EXPECT_EQ(EffectPixel({50, true}, 1920), 959);
  EXPECT_EQ(EffectPixel({0, false}, 1), 0);
  EXPECT_EQ(EffectPixel({-1.5, false}, 1), -1);
}

TEST(EffectPositionTest, EveryPixelHasACoordinate) {
  for (int pixel = -5000; pixel <= 32000; ++pixel) {
    for (const bool percent : {false, true}) {
      const look::Coordinate coordinate = CoordinateFor(pixel, percent, 1920);
      ASSERT_EQ(coordinate.percent, percent);
      ASSERT_EQ(EffectPixel(coordinate, 1920), pixel) << coordinate.value << (percent ? "%" : "");
    }
  }
}

TEST(EffectPositionTest, CoordinatesAreShortNumbers) {
  EXPECT_EQ(CoordinateFor(959, false, 1920).value, 960);
  EXPECT_EQ(CoordinateFor(0, false, 1920).value, 0);
  EXPECT_EQ(CoordinateFor(959, true, 1920).value, 50);
  EXPECT_EQ(CoordinateFor(-10, false, 1920).value, -11);
}

TEST(EffectPositionTest, PixelsBeyondTheRangeGetItsEnd) {
  EXPECT_EQ(CoordinateFor(100000, false, 1920).value, look::kFixedLimit);
  EXPECT_EQ(CoordinateFor(-100000, false, 1920).value, -look::kFixedLimit);
}

}  // namespace
}  // namespace vitrell::panel
