// The geometry of the literal trail against numbers worked out by hand.
#include "literal/blur/blur_dispatcher.h"

#include <gtest/gtest.h>

#include "literal/base/types.h"
#include "literal/picture.h"

namespace vitrell::literal {
namespace {

TEST(LiteralBlurDispatcherTest, TrailCentreIsPulledInside) {
  Settings settings;
  settings.trailCenterOfLens = 1;
  settings.positionX = 0;
  settings.positionY = 500;
  const TrailGeometry geometry = MakeTrailGeometry(settings, kMaths, {0, 0, 100, 80});
  EXPECT_EQ(geometry.cx, 1);
  EXPECT_EQ(geometry.cy, 78);
  EXPECT_EQ(geometry.cornerDistance, 126);  // To (100, 0): sqrt(9801 + 6084) = 126.04.
}

}  // namespace
}  // namespace vitrell::literal
