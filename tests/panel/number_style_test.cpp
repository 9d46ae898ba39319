// Numbers, angles and positions as the panel shows, reads and steps them.
#include "panel/widgets/number_style.h"

#include <gtest/gtest.h>

#include "look/failure.h"
#include "panel/effect_panel.h"

namespace vitrell::panel {
namespace {

const look::Control& Named(std::string_view name) { return *EffectPanel().Find(name); }

TEST(NumberStyleTest, AHundredStepsFitIntoTheRange) {
  EXPECT_EQ(StepFor(100), 1);
  EXPECT_EQ(StepFor(99), 0.1);
  EXPECT_EQ(StepFor(500), 1);
  EXPECT_EQ(StepFor(1000), 10);
  EXPECT_EQ(StepFor(4), 0.01);
  EXPECT_EQ(StepFor(0), 1);
}

TEST(NumberStyleTest, SumsOfStepsStayOnTheGrid) {
  EXPECT_EQ(OnGrid(0.1 + 0.2, 1), 0.3);
  EXPECT_EQ(OnGrid(33.3333, 1), 33.3);
  EXPECT_EQ(OnGrid(-0.05, 0.1), -0.05);
  EXPECT_EQ(OnGrid(1.2344, 0.01), 1.234);
  EXPECT_EQ(OnGrid(1234, 100), 1230);
}

TEST(NumberStyleTest, NumbersHaveTheirUnit) {
  EXPECT_EQ(StyleOf(Named("lens.feather")).format(12.5), "12.5 %");
  EXPECT_EQ(StyleOf(Named("fast-blur.amount")).format(20), "20 px");
  EXPECT_EQ(StyleOf(Named("realistic-blur.iris-aspect-ratio")).format(1.0 / 3), "0.3333");
}

TEST(NumberStyleTest, NumbersAreReadWithAndWithoutTheirUnit) {
  const NumberStyle percent = StyleOf(Named("lens.feather"));
  EXPECT_EQ(percent.parse("12.5 %"), 12.5);
  EXPECT_EQ(percent.parse(" 12.5% "), 12.5);
  EXPECT_EQ(percent.parse("1e2"), 100);
  EXPECT_THROW(percent.parse("12 px"), look::ValueError);
  EXPECT_THROW(percent.parse("1000.1"), look::ValueError);
  EXPECT_THROW(percent.parse(""), look::ValueError);
  const NumberStyle pixels = StyleOf(Named("fast-blur.amount"));
  EXPECT_EQ(pixels.parse("20 px"), 20);
  EXPECT_EQ(pixels.parse("20"), 20);
  EXPECT_THROW(pixels.parse("20 %"), look::ValueError);
}

TEST(NumberStyleTest, AnglesAreWholeTurnsAndDegrees) {
  EXPECT_EQ(FormatAngle(0), "0°");
  EXPECT_EQ(FormatAngle(-45.5), "-45.5°");
  EXPECT_EQ(FormatAngle(750), "2x +30°");
  EXPECT_EQ(FormatAngle(-405), "-1x -45°");
  const NumberStyle angle = StyleOf(Named("lens.rotation"));
  EXPECT_EQ(angle.parse("2x+30"), 750);
  EXPECT_EQ(angle.parse("2X"), 720);
  EXPECT_EQ(angle.parse("-1x -45°"), -405);
  EXPECT_EQ(angle.parse("-1x 45"), -405);
  EXPECT_EQ(angle.parse("1x -45"), 315);
  EXPECT_EQ(angle.parse("750°"), 750);
  EXPECT_THROW(angle.parse("x"), look::ValueError);
  EXPECT_THROW(angle.parse("100x"), look::ValueError);
  for (const double degrees : {0.0, 359.0, 360.0, -1080.25, 1234.5}) {
    EXPECT_EQ(angle.parse(angle.format(degrees)), degrees);
  }
}

TEST(NumberStyleTest, PositionsAreConvertedToTheFieldsUnit) {
  const look::Control& position = Named("lens.position");
  EXPECT_EQ(CoordinateStyle(position, true, 1920).parse("960 px"), 50);
  EXPECT_EQ(CoordinateStyle(position, true, 1920).parse("25%"), 25);
  EXPECT_EQ(CoordinateStyle(position, false, 1920).parse("25%"), 480);
  EXPECT_EQ(CoordinateStyle(position, false, 1920).parse("25"), 25);
  EXPECT_THROW(CoordinateStyle(position, true, 0).parse("960 px"), look::ValueError);
  EXPECT_THROW(CoordinateStyle(position, false, 0).parse("5%"), look::ValueError);
  EXPECT_EQ(CoordinateStyle(position, false, 0).format(12.25), "12.25 px");
}

}  // namespace
}  // namespace vitrell::panel
