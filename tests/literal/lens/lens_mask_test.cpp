// The literal lens mask against numbers worked out by hand.
#include "literal/lens/lens_mask.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "literal/base/types.h"
#include "literal/picture.h"

namespace vitrell::literal {
namespace {

Settings CircleSettings(std::int32_t x, std::int32_t y) {
  Settings settings;
  settings.positionX = x;
  settings.positionY = y;
  return settings;
}

double MaskAt(const Mask& mask, std::int32_t x, std::int32_t y) {
  World world;
  world.extent = mask.rect;
  return GetLensMask(mask, x, y, world);
}

TEST(LiteralLensMaskTest, CircleIsCentredOnItsRadius) {
  const Mask mask = BuildLensMask(CircleSettings(0, 0), kMaths, {0, 0, 360, 1}, 1000, 1, {});
  EXPECT_EQ(MaskAt(mask, 349, 0), 1.0);
  EXPECT_NEAR(MaskAt(mask, 350, 0), 0.5, 1e-6);
  EXPECT_EQ(MaskAt(mask, 351, 0), 0.0);
  EXPECT_EQ(MaskAt(mask, 360, 0), 0.0);
}

TEST(LiteralLensMaskTest, NoneIsInsideAndInvertsToOutside) {
  Settings settings = CircleSettings(0, 0);
  settings.lensType = 1;
  EXPECT_EQ(BuildLensMask(settings, kMaths, {0, 0, 2, 2}, 2, 2, {}).values,
            std::vector<double>(4, 1.0));
  settings.invertAlpha = 1;
  EXPECT_EQ(BuildLensMask(settings, kMaths, {0, 0, 2, 2}, 2, 2, {}).values,
            std::vector<double>(4, 0.0));
  settings.scaleHeight = 0;
  EXPECT_EQ(BuildLensMask(settings, kMaths, {0, 0, 2, 2}, 2, 2, {}).values,
            std::vector<double>(4, 1.0));
  settings.invertAlpha = 2;
  EXPECT_EQ(BuildLensMask(settings, kMaths, {0, 0, 2, 2}, 2, 2, {}).values,
            std::vector<double>(4, 0.0));
}

TEST(LiteralLensMaskTest, RectangleDistances) {
  // Half-sizes 20 and 10, band 10 x 0.4 = 4: inner half-sizes 18 and 8.
  EXPECT_EQ(GetDistanceKWithRectMode(18, -8, 0.4, 10, 20, kMaths), 0);
  EXPECT_DOUBLE_EQ(GetDistanceKWithRectMode(19, 0, 0.4, 10, 20, kMaths), 0.25);
  EXPECT_DOUBLE_EQ(GetDistanceKWithRectMode(0, -11, 0.4, 10, 20, kMaths), 0.75);
  EXPECT_DOUBLE_EQ(GetDistanceKWithRectMode(-3, 10, 0.4, 10, 20, kMaths), 0.5);
  EXPECT_EQ(GetDistanceKWithRectMode(0, 30, 0.4, 10, 20, kMaths), 1);
  // k = 3 is above 2: inner half-sizes are b - min and a - min, 10 and 0; the band is 30.
  EXPECT_DOUBLE_EQ(GetDistanceKWithRectMode(25, 0, 3, 10, 20, kMaths), 0.5);
}

TEST(LiteralLensMaskTest, KeepsUpwardSegmentAsItsFirstPoint) {
  EXPECT_DOUBLE_EQ(GetDistanceFromPtToSegLine(3, 4, 0, 0, 10, 0, kMaths), 4);
  EXPECT_DOUBLE_EQ(GetDistanceFromPtToSegLine(13, 4, 0, 0, 10, 0, kMaths), 5);
  EXPECT_DOUBLE_EQ(GetDistanceFromPtToSegLine(-3, 4, 0, 0, -10, 0, kMaths), 5);
}

TEST(LiteralLensMaskTest, TriangleCentreIsInside) {
  Settings settings = CircleSettings(50, 50);
  settings.lensType = 5;
  const Mask mask = BuildLensMask(settings, kMaths, {0, 0, 100, 100}, 100, 100, {});
  EXPECT_EQ(MaskAt(mask, 50, 50), 1.0);
  // Inradius 17.5. The point (0, -v) lies below the centre when y grows: the flat side.
  EXPECT_EQ(MaskAt(mask, 50, 67), 1.0);
  EXPECT_EQ(MaskAt(mask, 50, 72), 0.0);
  EXPECT_EQ(MaskAt(mask, 50, 20), 1.0);  // 30 above, inside the corner at 35.
  EXPECT_EQ(MaskAt(mask, 20, 20), 0.0);
}

TEST(LiteralLensMaskTest, CustomSamplesOnePixelBeforeTheCentre) {
  World image = MakeWorld(8, 8, false, ByPosition);
  Settings settings = CircleSettings(4, 4);
  settings.lensType = 6;
  settings.customLayer = &image;
  const Mask mask = BuildLensMask(settings, kMaths, {0, 0, 8, 8}, 8, 8, {0, 0, 8, 8});
  // (0.299 x 33) x 255 / 65025 at row 3, column 3; y runs the same way in the image.
  EXPECT_NEAR(MaskAt(mask, 4, 4), 0.299 * 33 / 255, 1e-15);
  EXPECT_NEAR(MaskAt(mask, 6, 5), 0.299 * 45 / 255, 1e-15);
  EXPECT_EQ(MaskAt(mask, 0, 4), 0.0);
}

TEST(LiteralLensMaskTest, RectangleOfTheReadingWorldLeadsBeyondTheMask) {
  const Mask mask = {{0, 0, 2, 2}, {0.1, 0.2, 0.3, 0.4}};
  World world;
  world.extent = {0, 0, 3, 3};
  EXPECT_EQ(GetLensMask(mask, 2, 0, world), 0.3);
  EXPECT_EQ(GetLensMask(mask, 0, 1, world), 0.4);
  EXPECT_EQ(GetLensMask(mask, 1, 1, world), 0.0);
  EXPECT_EQ(GetLensMask(mask, 3, 0, world), 0.0);
}

}  // namespace
}  // namespace vitrell::literal
