// The points of straight lines, by hand and by what every line has in common.
#include "base/line_walk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

namespace vitrell {
namespace {

using Point = std::pair<std::int64_t, std::int64_t>;
using testing::ElementsAre;

std::vector<Point> Line(std::int64_t x0, std::int64_t y0, std::int64_t x1, std::int64_t y1) {
  std::vector<Point> points;
  WalkLine(x0, y0, x1, y1, [&](std::int64_t x, std::int64_t y) { points.emplace_back(x, y); });
  return points;
}

TEST(LineWalkTest, FromAPointToItselfIsThatPoint) {
  EXPECT_THAT(Line(-3, 7, -3, 7), ElementsAre(Point(-3, 7)));
}

TEST(LineWalkTest, ByHand) {
  EXPECT_THAT(Line(0, 0, 3, 0), ElementsAre(Point(0, 0), Point(1, 0), Point(2, 0), Point(3, 0)));
  EXPECT_THAT(Line(1, 1, -1, -1), ElementsAre(Point(1, 1), Point(0, 0), Point(-1, -1)));
  // dx 4, dy 1: the error begins at 2 and is 2, 1, 0, 3 before the four steps; only a value below
  // dy moves y, which the third step has.
  EXPECT_THAT(Line(0, 0, 4, 1),
              ElementsAre(Point(0, 0), Point(1, 0), Point(2, 0), Point(3, 1), Point(4, 1)));
  // dx 1, dy 3: the error begins at -1, truncated from -1.5, and is -1, 0, -2 before the three
  // steps; x moves where it is above -1, in the second step.
  EXPECT_THAT(Line(0, 0, 1, 3), ElementsAre(Point(0, 0), Point(0, 1), Point(1, 2), Point(1, 3)));
}

// Every line ends at its end, never steps farther than to a neighbour, always moves along its
// longer side, and has as many points as that is long, and one.
TEST(LineWalkTest, EveryLineIsConnectedAndCounted) {
  for (std::int64_t x = -9; x <= 9; ++x) {
    for (std::int64_t y = -9; y <= 9; ++y) {
      const std::vector<Point> points = Line(2, -3, 2 + x, -3 + y);
      ASSERT_EQ(static_cast<std::int64_t>(points.size()), CountLinePoints(2, -3, 2 + x, -3 + y));
      ASSERT_EQ(points.front(), Point(2, -3));
      ASSERT_EQ(points.back(), Point(2 + x, -3 + y));
      for (std::size_t i = 1; i < points.size(); ++i) {
        const std::int64_t stepX = points[i].first - points[i - 1].first;
        const std::int64_t stepY = points[i].second - points[i - 1].second;
        ASSERT_LE(std::abs(stepX), 1);
        ASSERT_LE(std::abs(stepY), 1);
        ASSERT_NE(std::abs(x) >= std::abs(y) ? stepX : stepY, 0) << x << "," << y;
      }
    }
  }
}

}  // namespace
}  // namespace vitrell
