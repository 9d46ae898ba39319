// The points of the literal lines against numbers worked out by hand.
#include "literal/blur/trail/trail_ray.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vitrell::literal {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> PointTexts(const std::vector<LinePoint>& points) {
  std::vector<std::string> texts;
  texts.reserve(points.size());
  for (const LinePoint& p : points)
    texts.push_back(std::to_string(p.x) + "," + std::to_string(p.y));
  return texts;
}

TEST(LiteralTrailRayTest, FromAPointToItselfIsOnePoint) {
  EXPECT_THAT(PointTexts(ComputeLinePoints(3, -4, 3, -4)), ElementsAre("3,-4"));
}

TEST(LiteralTrailRayTest, LinesByHand) {
  EXPECT_THAT(PointTexts(ComputeLinePoints(0, 0, 2, 1)), ElementsAre("0,0", "1,0", "2,1"));
  EXPECT_THAT(PointTexts(ComputeLinePoints(2, 1, 0, 0)), ElementsAre("2,1", "1,1", "0,0"));
  EXPECT_THAT(PointTexts(ComputeLinePoints(0, 0, 0, -2)), ElementsAre("0,0", "0,-1", "0,-2"));
  EXPECT_THAT(PointTexts(ComputeLinePoints(1, 1, -1, -1)), ElementsAre("1,1", "0,0", "-1,-1"));
  EXPECT_THAT(PointTexts(ComputeLinePoints(1, 0, 3, 3)), ElementsAre("1,0", "2,1", "2,2", "3,3"));
}

}  // namespace
}  // namespace vitrell::literal
