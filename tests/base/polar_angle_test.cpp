// The polar angle in every direction.
#include "base/polar_angle.h"

#include <gtest/gtest.h>

#include "host/fake_host.h"

namespace vitrell {
namespace {

TEST(PolarAngleTest, InEveryDirection) {
  FakeHost host;
  const PF_ANSICallbacks& maths = host.inData()->utils->ansi;
  const auto degrees = [&maths](double u, double v) { return PolarAngle(maths, u, v) * 180 / kPi; };
  EXPECT_EQ(degrees(1, 0), 0);
  EXPECT_NEAR(degrees(1, 1), 45, 1e-12);
  EXPECT_EQ(degrees(0, 2), 90);
  EXPECT_NEAR(degrees(-1, 1), 135, 1e-12);
  EXPECT_EQ(degrees(-3, 0), 180);
  EXPECT_NEAR(degrees(-1, -1), 225, 1e-12);
  EXPECT_EQ(degrees(0, -2), 270);
  EXPECT_NEAR(degrees(1, -1), 315, 1e-12);
}

TEST(PolarAngleTest, KeepsTheOriginAtThreeQuarters) {
  FakeHost host;
  EXPECT_EQ(PolarAngle(host.inData()->utils->ansi, 0, 0), 4.71238898038469);
}

}  // namespace
}  // namespace vitrell
