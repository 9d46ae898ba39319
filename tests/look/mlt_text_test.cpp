// Keys as animation strings, whose values are those that MLT itself reads out of them.
#include "look/mlt_text.h"

#include <gtest/gtest.h>

#include <array>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <variant>
#include <vector>

#include "headless/effect_host.h"
#include "look/animation_json.h"
#include "look/animation_text.h"
#include "look/failure.h"
#include "look/value_text.h"

// These headers do not say that they are C.
extern "C" {
#include <framework/mlt_properties.h>
}

namespace vitrell::look {
namespace {

constexpr std::uint32_t kKeysSeed = 20261122;

class MltTextTest : public testing::Test {
 protected:
  const Control& Named(const std::string& name) const { return *panel_.Find(name); }

  std::vector<Frei0rParameter> ParametersOf(const Control& control) const {
    std::vector<Frei0rParameter> found;
    for (const Frei0rParameter& parameter : parameters_) {
      if (&panel_.controls[parameter.control] == &control) found.push_back(parameter);
    }
    return found;
  }

  std::string TextOf(const std::string& name, const Keys& keys, const TimeBase& base = {25, 0}) {
    Settings settings(panel_);
    settings.SetKeys(Named(name), keys);
    return MltText(ParametersOf(Named(name)).front(), settings, base);
  }
  std::string TextOf(const std::string& name, const std::string& keys,
                     const TimeBase& base = {25, 0}) {
    return TextOf(name, ParseKeys(Named(name), keys), base);
  }

  // What the module makes of what MLT reads out of the texts.
  Value ThroughMlt(const Control& control, mlt_properties properties, int frame, int length) const {
    Settings read(panel_);
    for (const Frei0rParameter& parameter : ParametersOf(control)) {
      const char* const name = parameter.name.c_str();
      if (parameter.kind == Frei0rKind::kColour) {
        const mlt_color colour = mlt_properties_anim_get_color(properties, name, frame, length);
        read.SetValue(control, ColourValue{colour.r, colour.g, colour.b});
        continue;
      }
      const double number = mlt_properties_anim_get_double(properties, name, frame, length);
      if (parameter.kind == Frei0rKind::kSwitch) {
        read.SetValue(control, number >= 0.5);
      } else {
        SetFrei0rNumber(parameter, number, read);
      }
    }
    return read.ValueOf(control);
  }

  // Numbers agree to the module's nine decimals, everything else exactly.
  static void ExpectSame(const Value& expected, const Value& actual) {
    constexpr double kRoom = 2e-9;
    if (const auto* number = std::get_if<double>(&expected)) {
      EXPECT_NEAR(*number, std::get<double>(actual), kRoom);
    } else if (const auto* point = std::get_if<PointValue>(&expected)) {
      EXPECT_NEAR(point->x.value, std::get<PointValue>(actual).x.value, kRoom);
      EXPECT_NEAR(point->y.value, std::get<PointValue>(actual).y.value, kRoom);
    } else {
      EXPECT_EQ(expected, actual);
    }
  }

  // Every frame, some before the first key and behind the last one too.
  void ExpectEveryFrame(const std::string& name, const Keys& keys, int length,
                        const TimeBase& told) {
    const Control& control = Named(name);
    Settings settings(panel_);
    settings.SetKeys(control, keys);
    mlt_properties properties = mlt_properties_new();
    for (const Frei0rParameter& parameter : ParametersOf(control)) {
      const std::string text = MltText(parameter, settings, told);
      EXPECT_EQ(text.find_first_of(" \t\n\"'"), std::string::npos) << text;
      mlt_properties_set(properties, parameter.name.c_str(), text.c_str());
    }
    const Curve curve(control, keys, {told.framesPerSecond, static_cast<double>(length)});
    for (int frame = 0; frame < length; ++frame) {
      SCOPED_TRACE(name + ", frame " + std::to_string(frame) + ": " + FormatKeys(control, keys));
      ExpectSame(curve.At(frame), ThroughMlt(control, properties, frame, length));
      if (HasFailure()) break;
    }
    mlt_properties_close(properties);
  }

  headless::EffectHost host_{VITRELL_MODULE_PATH};
  Panel panel_ = MakePanel(host_.Parameters());
  std::vector<Frei0rParameter> parameters_ = MakeFrei0rParameters(panel_);
  std::mt19937 random_{kKeysSeed};

  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  std::string RandomValue(const Control& control) {
    const auto number = [&](double from, double to) {
      return FormatNumber(from + (to - from) * Below(4096) / 4096);
    };
    switch (control.kind) {
      case ControlKind::kSwitch:
        return Below(2) == 0 ? "on" : "off";
      case ControlKind::kChoice:
        return std::to_string(1 + Below(static_cast<int>(control.choices.size())));
      case ControlKind::kColour:
        return std::to_string(Below(256)) + "," + std::to_string(Below(256)) + ",7";
      case ControlKind::kPoint:
        return number(-50, 150) + "%," + number(-50, 150) + "%";
      case ControlKind::kAngle:
        return number(-1000, 1000);
      default:
        return number(control.minimum, control.maximum);
    }
  }
};

TEST_F(MltTextTest, KeysThatMltReadsAlikeStayKeys) {
  EXPECT_EQ(TextOf("fast-blur.amount", "0=0; 10~=63.5; 20|=127; 30=254"), "0=0;10~=0.5;20|=1;30=2");
  EXPECT_EQ(TextOf("trail.visible", "0|=on; 5=off"), "0|=1;5=0");
  EXPECT_EQ(TextOf("mode", "3|=Normal; 9=Multiply"), "3|=0;9=1");
  EXPECT_EQ(TextOf("color.color", "0|=#0102ff; 4|=#ff8800"), "0|=#0102ff;4|=#ff8800");
  EXPECT_EQ(TextOf("fast-blur.amount", "2s=127", {30, 0}), "60=1");
  EXPECT_EQ(TextOf("fast-blur.amount", "0=0; -1=127"), "0=0;-1=1");
  EXPECT_EQ(TextOf("fast-blur.amount", "0=0; -1=127", {25, 50}), "0=0;49=1");
}

TEST_F(MltTextTest, OthersBecomeHeldValues) {
  // Frames 1 and 2 lie on the way, frame 3 behind it.
  EXPECT_EQ(TextOf("fast-blur.amount", "0.5=0; 2.5=254"), "0|=0;1|=0.5;2|=1.5;3|=2");
  // MLT would round 127.5 down.
  EXPECT_EQ(TextOf("color.color", "0=#000000; 2=#ffffff; 9=#ffffff"),
            "0|=#000000;1|=#808080;2|=#ffffff");
}

TEST_F(MltTextTest, EveryControlMovesAsOnTheCommandLine) {
  for (const Control& control : panel_.controls) {
    if (control.kind == ControlKind::kLayer) continue;
    const bool jumps = control.kind == ControlKind::kChoice || control.kind == ControlKind::kSwitch;
    for (int round = 0; round < 6; ++round) {
      std::string text;
      int frame = Below(5);
      for (int key = 0, count = 1 + Below(6); key < count; ++key) {
        const char* const mark = jumps ? "|" : std::array{"", "~", "|"}[random_() % 3];
        // Every third text has a time between two frames.
        const bool between = round % 3 == 2 && key == 1;
        text += std::to_string(frame) + (between ? ".25" : "") + mark + "=" + RandomValue(control) +
                ";";
        frame += 1 + Below(12);
      }
      ExpectEveryFrame(control.name, ParseKeys(control, text), frame + 4, {25, 0});
    }
  }
}

TEST_F(MltTextTest, EasingComesOutFrameByFrame) {
  const char* const eased = R"({"a":1,"k":[
      {"t":2,"s":[10],"o":{"x":0.4,"y":0},"i":{"x":0.2,"y":1}},{"t":30,"s":[400]}]})";
  ExpectEveryFrame("fast-blur.amount",
                   KeysFromJson(Named("fast-blur.amount"), nlohmann::ordered_json::parse(eased)),
                   40, {25, 0});
}

TEST_F(MltTextTest, TimesFromTheEndNeedNoLength) {
  ExpectEveryFrame("trail.center", ParseKeys(Named("trail.center"), "0~=0%,50%; -1=90%,10%"), 30,
                   {25, 0});
}

TEST_F(MltTextTest, WhatCannotBeWrittenIsRefused) {
  EXPECT_THROW(TextOf("color.color", "0=#000000; -1=#ffffff"), Failure);
  EXPECT_EQ(TextOf("color.color", "0=#000000; -1=#ffffff", {25, 3}),
            "0|=#000000;1|=#808080;2|=#ffffff");
  EXPECT_THROW(TextOf("fast-blur.amount", "0.5=0; 50000=1000"), Failure);
  EXPECT_THROW(TextOf("fast-blur.amount", "0.5=0; 999999999=1"), Failure);
}

}  // namespace
}  // namespace vitrell::look
