// Values of controls through a frei0r host's numbers and back.
#include "look/frei0r_mapping.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "headless/effect_host.h"
#include "look/value_text.h"

namespace vitrell::look {
namespace {

constexpr unsigned kValuesSeed = 20;
constexpr int kRounds = 3000;

class Frei0rMappingTest : public testing::Test {
 protected:
  const Frei0rParameter& Named(const std::string& name) const {
    for (const Frei0rParameter& parameter : parameters_) {
      if (parameter.name == name) return parameter;
    }
    ADD_FAILURE() << "no parameter " << name;
    return parameters_.front();
  }
  Value After(const std::string& name, double x) const {
    Settings settings(panel_);
    SetFrei0rNumber(Named(name), x, settings);
    return settings.ValueOf(panel_.controls[Named(name).control]);
  }
  // The parameter's value after it went through a host that reads the text as FFmpeg and melt do.
  Value ThroughHost(const Frei0rParameter& parameter, const Settings& settings) const {
    const std::string text = Frei0rText(parameter, settings);
    EXPECT_EQ(text.find_first_not_of("-.0123456789"), std::string::npos) << text;
    Settings read(panel_);
    SetFrei0rNumber(parameter, std::strtod(text.c_str(), nullptr), read);
    return read.ValueOf(panel_.controls[parameter.control]);
  }

  headless::EffectHost host_{VITRELL_MODULE_PATH};
  Panel panel_ = MakePanel(host_.Parameters());
  std::vector<Frei0rParameter> parameters_ = MakeFrei0rParameters(panel_);
};

TEST_F(Frei0rMappingTest, EveryControlButTheLayerIsThereAndAPositionIsTwo) {
  std::size_t expected = 0;
  for (const Control& control : panel_.controls) {
    if (control.kind == ControlKind::kLayer) continue;
    ++expected;
    const bool isPoint = control.kind == ControlKind::kPoint;
    EXPECT_NE(Named(control.name + (isPoint ? "-x" : "")).explanation.find(control.label + ": "),
              std::string::npos);
    if (!isPoint) continue;
    ++expected;
    EXPECT_NE(Named(control.name + "-y").explanation.find("height"), std::string::npos);
  }
  EXPECT_EQ(parameters_.size(), expected);
  EXPECT_EQ(parameters_.size(), 44U);
}

TEST_F(Frei0rMappingTest, NumbersSpanTheSliderAndGoOnToTheEndsOfTheRange) {
  EXPECT_EQ(After("fast-blur.amount", 0), Value(0.0));
  EXPECT_EQ(After("fast-blur.amount", 0.5), Value(63.5));
  EXPECT_EQ(After("fast-blur.amount", 1), Value(127.0));
  EXPECT_EQ(After("fast-blur.amount", 2), Value(254.0));
  EXPECT_EQ(After("fast-blur.amount", 1e300), Value(32768.0));
  EXPECT_EQ(After("fast-blur.amount", -1), Value(0.0));
  EXPECT_EQ(After("lightness.amount", 0.25), Value(-50.0));
  EXPECT_EQ(After("lens.rotation", 0.75), Value(90.0));
  EXPECT_EQ(After("lens.rotation", 1.5), Value(360.0));
  EXPECT_EQ(After("lens.rotation", -std::numeric_limits<double>::infinity()), Value(-32767.0));
  EXPECT_EQ(After("lens.position-x", 0.25), Value(PointValue{{25, true}, {50, true}}));
  EXPECT_EQ(After("lens.position-y", 1.25), Value(PointValue{{50, true}, {125, true}}));
  EXPECT_EQ(After("fast-blur.amount", std::nan("")), Value(20.0));
}

TEST_F(Frei0rMappingTest, ZeroIsNeverNegative) {
  const Value middle = After("lightness.amount", 0.5 - 1e-15);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(std::get<double>(middle)), 0U);
}

// A decimal with up to nine digits behind the point, as a user types it, in the whole range.
TEST_F(Frei0rMappingTest, EveryNumberComesBackWithAllItsBits) {
  std::mt19937 random(kValuesSeed);
  int checked = 0;
  for (const Frei0rParameter& parameter : parameters_) {
    const Control& control = panel_.controls[parameter.control];
    const bool isPoint = control.kind == ControlKind::kPoint;
    if (control.kind != ControlKind::kNumber && control.kind != ControlKind::kAngle && !isPoint) {
      continue;
    }
    const double low = control.kind == ControlKind::kNumber ? control.minimum : -32767;
    const double high = control.kind == ControlKind::kNumber ? control.maximum : 32767;
    std::uniform_real_distribution<double> inRange(low, high);
    std::uniform_real_distribution<double> small(low < 0 ? -4 : 0, 4);
    for (int round = 0; round < kRounds; ++round) {
      char typed[64];
      std::snprintf(typed, sizeof(typed), "%.*f", round % 10,
                    round % 3 == 0 ? small(random) : inRange(random));
      const Value value = isPoint ? ParseValue(control, typed + std::string("%,") + typed + "%")
                                  : ParseValue(control, typed);
      Settings settings(panel_);
      settings.SetValue(control, value);
      const Value back = ThroughHost(parameter, settings);
      if (isPoint) {
        const PointValue wanted = std::get<PointValue>(value);
        const PointValue got = std::get<PointValue>(back);
        ASSERT_EQ(parameter.isY ? got.y.value : got.x.value,
                  parameter.isY ? wanted.y.value : wanted.x.value)
            << parameter.name << " " << typed << ", seed " << kValuesSeed;
      } else {
        ASSERT_EQ(std::get<double>(back), std::get<double>(value))
            << parameter.name << " " << typed << ", seed " << kValuesSeed;
      }
      ++checked;
    }
  }
  EXPECT_EQ(checked, 26 * kRounds);
}

TEST_F(Frei0rMappingTest, EveryChoiceComesBack) {
  for (const Frei0rParameter& parameter : parameters_) {
    const Control& control = panel_.controls[parameter.control];
    for (std::size_t i = 0; i < control.choices.size(); ++i) {
      Settings settings(panel_);
      settings.SetValue(control, ChoiceValue{static_cast<int>(i) + 1});
      EXPECT_EQ(ThroughHost(parameter, settings), settings.ValueOf(control)) << parameter.name;
    }
  }
}

TEST_F(Frei0rMappingTest, EveryChannelComesBackThroughSinglePrecision) {
  const Frei0rParameter& parameter = Named("color.color");
  const Control& control = panel_.controls[parameter.control];
  for (int i = 0; i < 256; ++i) {
    const auto channel = static_cast<uint8_t>(i);
    Settings settings(panel_);
    settings.SetValue(control, ColourValue{channel, static_cast<uint8_t>(255 - i), 7});
    float red = 0;
    float green = 0;
    float blue = 0;
    ASSERT_EQ(std::sscanf(Frei0rText(parameter, settings).c_str(), "%f/%f/%f", &red, &green, &blue),
              3);
    EXPECT_EQ(ChannelFromFrei0r(static_cast<double>(red)), channel);
    EXPECT_EQ(ChannelFromFrei0r(static_cast<double>(green)), 255 - i);
    EXPECT_EQ(ChannelFromFrei0r(static_cast<double>(blue)), 7);
    EXPECT_EQ(ChannelFromFrei0r(static_cast<double>(static_cast<float>(i) / 255.0F)), channel);
  }
  EXPECT_EQ(ChannelFromFrei0r(-1), 0);
  EXPECT_EQ(ChannelFromFrei0r(9), 255);
  EXPECT_EQ(ChannelFromFrei0r(std::nan("")), 0);
}

TEST_F(Frei0rMappingTest, TextsAreShort) {
  Settings settings(panel_);
  settings.Set("lens.feather=25");
  settings.Set("color.color=#ff8000");
  EXPECT_EQ(Frei0rText(Named("lens.feather"), settings), "0.05");
  EXPECT_EQ(Frei0rText(Named("color.color"), settings), "1/0.502/0");
  EXPECT_EQ(Frei0rText(Named("lens.type"), settings), "0.2");
  EXPECT_EQ(Frei0rText(Named("fast-blur.visible"), settings), "y");
}

}  // namespace
}  // namespace vitrell::look
