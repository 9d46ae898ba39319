// Values as users type them.
#include "look/value_text.h"

#include <gtest/gtest.h>

#include <string>

#include "look/failure.h"
#include "media/comma_locale.h"

namespace vitrell::look {
namespace {

Control Slider() {
  Control control;
  control.kind = ControlKind::kNumber;
  control.name = "lens.feather";
  control.defaultValue = 0.0;
  control.minimum = 0;
  control.maximum = 1000;
  control.percent = true;
  return control;
}

Control Of(ControlKind kind, Value defaultValue) {
  Control control;
  control.kind = kind;
  control.name = "group.control";
  control.defaultValue = std::move(defaultValue);
  return control;
}

Control LensType() {
  Control control = Of(ControlKind::kChoice, ChoiceValue{2});
  control.choices = {"None", "Circle", "Rectangle --", "Rectangle l"};
  return control;
}

std::string Complaint(const Control& control, const std::string& text) {
  try {
    ParseValue(control, text);
  } catch (const ValueError& error) {
    return error.what();
  }
  return "nothing";
}

bool Holds(const std::string& text, const std::string& piece) {
  return text.find(piece) != std::string::npos;
}

TEST(ValueTextTest, NumbersAreInTheControlsUnit) {
  EXPECT_EQ(ParseValue(Slider(), "12.5"), Value(12.5));
  EXPECT_EQ(ParseValue(Slider(), "12.5%"), Value(12.5));
  EXPECT_EQ(ParseValue(Slider(), " +7 "), Value(7.0));
  EXPECT_EQ(ParseValue(Slider(), "1e2"), Value(100.0));
}

TEST(ValueTextTest, PercentSignIsRefusedWhereTheUnitIsAnother) {
  Control control = Slider();
  control.percent = false;
  EXPECT_TRUE(Holds(Complaint(control, "12%"), "is not a number"));
}

TEST(ValueTextTest, WhatIsNoFiniteNumberIsRefused) {
  for (const char* text : {"nan", "NaN", "-nan", "inf", "-inf", "infinity", "1e999", "abc", "", " ",
                           "12x", "1,5", "0x10", "--5", "+-5", "++5"}) {
    EXPECT_TRUE(Holds(Complaint(Slider(), text), "is not a number")) << text;
    EXPECT_TRUE(Holds(Complaint(Slider(), text), "0 to 1000 %")) << text;
  }
}

TEST(ValueTextTest, RangeIsToldAndItsEndsAreIn) {
  EXPECT_EQ(ParseValue(Slider(), "0"), Value(0.0));
  EXPECT_EQ(ParseValue(Slider(), "1000"), Value(1000.0));
  EXPECT_EQ(Complaint(Slider(), "1000.5"), "1000.5 is out of range. Give 0 to 1000 %.");
  EXPECT_EQ(Complaint(Slider(), "-1"), "-1 is out of range. Give 0 to 1000 %.");
}

TEST(ValueTextTest, NumbersDoNotDependOnTheLocale) {
  const CommaLocale locale;
  ASSERT_TRUE(locale.Holds());
  EXPECT_EQ(ParseValue(Slider(), "12.5"), Value(12.5));
  EXPECT_EQ(FormatNumber(12.5), "12.5");
}

TEST(ValueTextTest, SwitchesAreOnOrOff) {
  const Control control = Of(ControlKind::kSwitch, false);
  EXPECT_EQ(ParseValue(control, "ON"), Value(true));
  EXPECT_EQ(ParseValue(control, "off"), Value(false));
  EXPECT_TRUE(Holds(Complaint(control, "2"), "neither on nor off"));
  EXPECT_TRUE(Holds(Complaint(control, ""), "neither on nor off"));
}

TEST(ValueTextTest, ChoicesAreGivenByTextOrNumber) {
  EXPECT_EQ(ParseValue(LensType(), "circle"), Value(ChoiceValue{2}));
  EXPECT_EQ(ParseValue(LensType(), "rectangle --"), Value(ChoiceValue{3}));
  EXPECT_EQ(ParseValue(LensType(), "Rectangle  L"), Value(ChoiceValue{4}));
  EXPECT_EQ(ParseValue(LensType(), "1"), Value(ChoiceValue{1}));
  for (const char* text : {"0", "5", "1.5", "rectangle", "", "nan", "-1", "99999999999"}) {
    EXPECT_TRUE(Holds(Complaint(LensType(), text), "None | Circle | Rectangle -- | Rectangle l"))
        << text;
  }
}

TEST(ValueTextTest, PointsArePixelsOrPercent) {
  const Control control = Of(ControlKind::kPoint, PointValue{});
  EXPECT_EQ(ParseValue(control, "960,540"), Value(PointValue{{960, false}, {540, false}}));
  EXPECT_EQ(ParseValue(control, "50%, 25.5%"), Value(PointValue{{50, true}, {25.5, true}}));
  EXPECT_EQ(ParseValue(control, "-3.5,100%"), Value(PointValue{{-3.5, false}, {100, true}}));
  for (const char* text : {"960", "1,2,3", ",", "a,b", "1,", "nan,1", "1,inf", "40000,1", ""}) {
    EXPECT_NE(Complaint(control, text), "nothing") << text;
  }
}

TEST(ValueTextTest, AnglesAreDegreesOfAnyNumberOfTurns) {
  const Control control = Of(ControlKind::kAngle, 0.0);
  EXPECT_EQ(ParseValue(control, "-725.5"), Value(-725.5));
  EXPECT_TRUE(Holds(Complaint(control, "32768"), "-32767 to 32767 degrees"));
  EXPECT_TRUE(Holds(Complaint(control, "nan"), "is not a number"));
}

TEST(ValueTextTest, ColoursAreHexOrThreeNumbers) {
  const Control control = Of(ControlKind::kColour, ColourValue{});
  EXPECT_EQ(ParseValue(control, "#ff8800"), Value(ColourValue{255, 136, 0}));
  EXPECT_EQ(ParseValue(control, "#FF8800"), Value(ColourValue{255, 136, 0}));
  EXPECT_EQ(ParseValue(control, "255, 136, 0"), Value(ColourValue{255, 136, 0}));
  for (const char* text : {"ff8800", "#ff880", "#ff88000", "#gg0000", "#-f8800", "256,0,0", "1,2",
                           "1,2,3,4", "1.5,2,3", "-1,0,0", "#f8", "#f8g", "f80", "reddish", ""}) {
    EXPECT_TRUE(Holds(Complaint(control, text), "is not a colour")) << text;
  }
}

TEST(ValueTextTest, ColoursAreShortHexOrNamesOfCss) {
  const Control control = Of(ControlKind::kColour, ColourValue{});
  EXPECT_EQ(ParseValue(control, "#f80"), Value(ColourValue{0xff, 0x88, 0x00}));
  EXPECT_EQ(ParseValue(control, "#1aF"), Value(ColourValue{0x11, 0xaa, 0xff}));
  // The first and the last name, those that differ from X11's, and the spellings of grey.
  EXPECT_EQ(ParseValue(control, "aliceblue"), Value(ColourValue{240, 248, 255}));
  EXPECT_EQ(ParseValue(control, "YellowGreen"), Value(ColourValue{154, 205, 50}));
  EXPECT_EQ(ParseValue(control, " green "), Value(ColourValue{0, 128, 0}));
  EXPECT_EQ(ParseValue(control, "maroon"), Value(ColourValue{128, 0, 0}));
  EXPECT_EQ(ParseValue(control, "purple"), Value(ColourValue{128, 0, 128}));
  EXPECT_EQ(ParseValue(control, "gray"), Value(ColourValue{128, 128, 128}));
  EXPECT_EQ(ParseValue(control, "grey"), Value(ColourValue{128, 128, 128}));
  EXPECT_EQ(ParseValue(control, "rebeccapurple"), Value(ColourValue{102, 51, 153}));
}

TEST(ValueTextTest, AChoiceCutAtItsBlankIsToldToBeQuoted) {
  Control control = LensType();
  control.name = "lens.type";
  EXPECT_TRUE(Holds(Complaint(control, "rectangle"), "\"lens.type=Rectangle --\""));
  EXPECT_FALSE(Holds(Complaint(control, "oval"), "Quote"));
}

TEST(ValueTextTest, FormattedValuesReadBackTheSame) {
  const auto survives = [](const Control& control, const Value& value) {
    return ParseValue(control, FormatValue(control, value)) == value;
  };
  for (const double number : {0.0, 0.1, 1.0 / 3, 20.0, 999.999, 1000.0, 5e-324, 1e-7, 1.0 / 3e30}) {
    EXPECT_TRUE(survives(Slider(), number)) << number;
  }
  EXPECT_TRUE(survives(LensType(), ChoiceValue{3}));
  EXPECT_TRUE(survives(Of(ControlKind::kSwitch, false), true));
  EXPECT_TRUE(survives(Of(ControlKind::kAngle, 0.0), -0.125));
  EXPECT_TRUE(survives(Of(ControlKind::kPoint, PointValue{}),
                       PointValue{{12.25, false}, {100.0 / 3, true}}));
  EXPECT_TRUE(survives(Of(ControlKind::kColour, ColourValue{}), ColourValue{1, 2, 171}));
  EXPECT_TRUE(survives(Of(ControlKind::kLayer, LayerValue{}), LayerValue{"a b.png"}));
  EXPECT_TRUE(survives(Of(ControlKind::kLayer, LayerValue{}), LayerValue{}));
}

TEST(ValueTextTest, NumbersAreNeverScientific) {
  EXPECT_EQ(FormatNumber(65536), "65536");
  EXPECT_EQ(FormatNumber(100000), "100000");
  EXPECT_EQ(FormatNumber(1e308), "1e308");
  EXPECT_EQ(FormatNumber(1e23), "1e23");
  EXPECT_EQ(FormatNumber(1.0 / 3), "0.3333333333333333");
  EXPECT_EQ(FormatNumber(-1.7976931348623157e308), "-1.7976931348623157e308");
  EXPECT_EQ(FormatNumber(5e-324), "5e-324");
  EXPECT_EQ(FormatNumber(1e-7), "0.0000001");
  EXPECT_EQ(FormatNumber(-0.05), "-0.05");
  EXPECT_EQ(FormatNumber(-0.0), "0");
}

}  // namespace
}  // namespace vitrell::look
