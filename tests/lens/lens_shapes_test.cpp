// Distances of the lens shapes, worked out by hand.
#include "lens/lens_shapes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/fake_host.h"

namespace vitrell {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(LensShapesTest, KeepsSegmentsThatGoNeitherRightNorDownAsPoints) {
  FakeHost host;
  const auto distance = [&](double px, double py, double ax, double ay, double bx, double by) {
    return GetDistanceFromPtToSegLine(px, py, ax, ay, bx, by, host.inData());
  };
  EXPECT_EQ(distance(4, 3, 0, 0, 10, 0), 3);   // Beside it.
  EXPECT_EQ(distance(-3, 4, 0, 0, 10, 0), 5);  // Before A.
  EXPECT_EQ(distance(13, 4, 0, 0, 10, 0), 5);  // Beyond B.
  EXPECT_EQ(distance(3, 5, 0, 0, 0, 10), 3);   // Downward.
  // From (10, 0) to (0, 0): the point (10, 0) alone.
  EXPECT_EQ(distance(4, 8, 10, 0, 0, 0), 10);
  EXPECT_EQ(distance(3, 4, 0, 0, 0, 0), 5);
}

TEST(LensShapesTest, RectangleDistances) {
  FakeHost host;
  const auto distance = [&](double u, double v, double k) {
    return GetDistanceKWithRectMode(u, v, k, 10, 20, host.inData());
  };
  // k = 0.4: band 4, inner half-sizes 18 and 8.
  EXPECT_EQ(distance(18, -8, 0.4), 0);
  EXPECT_DOUBLE_EQ(distance(19, 0, 0.4), 0.25);
  EXPECT_DOUBLE_EQ(distance(0, -11, 0.4), 0.75);
  EXPECT_DOUBLE_EQ(distance(-5, 10, 0.4), 0.5);
  EXPECT_DOUBLE_EQ(distance(21, 12, 0.4), 1);  // (3, 4) from the corner: 5 / 4, limited.
  // k = 3: band 30, inner half-sizes 20 - 10 and 10 - 10.
  EXPECT_DOUBLE_EQ(distance(0, 6, 3), 0.2);
  EXPECT_DOUBLE_EQ(distance(5, 6, 3), 0.2);
  EXPECT_DOUBLE_EQ(distance(16, 0, 3), 0.2);
  EXPECT_TRUE(std::isnan(distance(kNan, 0, 0.4)));
}

}  // namespace
}  // namespace vitrell
