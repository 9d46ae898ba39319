// The literal taps of the directional blur against numbers worked out by hand.
#include "literal/blur/directional/line_taps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "literal/base/types.h"
#include "literal/picture.h"

namespace vitrell::literal {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> TapTexts(const std::vector<LineTap>& taps) {
  std::vector<std::string> texts;
  texts.reserve(taps.size());
  for (const LineTap& tap : taps) {
    texts.push_back(std::to_string(tap.x) + "," + std::to_string(tap.y));
  }
  return texts;
}

// The taps of the line to (length x cos, length x sin) of a direction, without the quarter turn.
std::vector<LineTap> TapsToward(float length, double angleRad) {
  return DirectionalTaps(length, angleRad - kPi / 2, kMaths);
}

TEST(LiteralLineTapsTest, LengthBelowOneIsOneTap) {
  EXPECT_EQ(DirectionalTaps(0.0F, 0, kMaths).size(), 1U);
  EXPECT_EQ(DirectionalTaps(0.99F, 0, kMaths).size(), 1U);
  // A diagonal of length 1 reaches no neighbour either.
  EXPECT_EQ(DirectionalTaps(1.0F, kPi / 4, kMaths).size(), 1U);
  EXPECT_EQ(DirectionalTaps(1.0F, 0, kMaths).size(), 3U);
}

TEST(LiteralLineTapsTest, EndTapsWeighNothing) {
  const std::vector<LineTap> taps = DirectionalTaps(2.9F, 0, kMaths);
  EXPECT_THAT(TapTexts(taps), ElementsAre("0,-2", "0,-1", "0,0", "0,1", "0,2"));
  const std::array<double, 5> weights = {0.0, 0.5, 1.0, 0.5, 0.0};
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(taps[i].weight, weights[i]);
}

TEST(LiteralLineTapsTest, SlantedLinesByHand) {
  EXPECT_THAT(TapTexts(TapsToward(3, 0.6)),  // To (2, 1).
              ElementsAre("-2,-1", "-1,-1", "0,0", "1,0", "2,1"));
  EXPECT_THAT(TapTexts(TapsToward(4, 1.2)),  // To (1, 3).
              ElementsAre("-1,-3", "-1,-2", "0,-1", "0,0", "0,1", "1,2", "1,3"));
  EXPECT_THAT(TapTexts(TapsToward(2, kPi + 0.1)),  // To (-1, 0).
              ElementsAre("1,0", "0,0", "-1,0"));
}

}  // namespace
}  // namespace vitrell::literal
