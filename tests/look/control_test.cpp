// The panel as users name it, made from what the real effect registers.
#include "look/control.h"

#include <gtest/gtest.h>

#include "headless/effect_host.h"
#include "look/failure.h"
#include "look/settings.h"

namespace vitrell::look {
namespace {

class ControlTest : public testing::Test {
 protected:
  headless::EffectHost host_{std::filesystem::path(VITRELL_MODULE_PATH)};
  Panel panel_ = MakePanel(host_.Parameters());

  std::string SetMessage(const std::string& assignment) {
    try {
      Settings(panel_).Set(assignment);
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.Kind(), kWrongUsage);
      return failure.what();
    }
    return "nothing";
  }
};

TEST_F(ControlTest, EveryControlHasItsName) {
  const std::vector<std::string> expected = {"lens.type",
                                             "lens.custom-layer",
                                             "lens.placement",
                                             "lens.invert-alpha",
                                             "lens.feather",
                                             "lens.position",
                                             "lens.scale",
                                             "lens.scale-width",
                                             "lens.scale-height",
                                             "lens.rotation",
                                             "fast-blur.visible",
                                             "fast-blur.amount",
                                             "fast-blur.use-lens-as-blur-map",
                                             "realistic-blur.visible",
                                             "realistic-blur.amount",
                                             "realistic-blur.iris-sides",
                                             "realistic-blur.iris-roundness",
                                             "realistic-blur.iris-aspect-ratio",
                                             "realistic-blur.iris-rotation",
                                             "realistic-blur.use-lens-as-blur-map",
                                             "optical-distortion.visible",
                                             "optical-distortion.amount",
                                             "optical-distortion.center-of-the-lens",
                                             "optical-distortion.center",
                                             "trail.visible",
                                             "trail.amount",
                                             "trail.center-of-the-lens",
                                             "trail.center",
                                             "directional-blur.visible",
                                             "directional-blur.amount",
                                             "directional-blur.direction",
                                             "lightness.visible",
                                             "lightness.amount",
                                             "color.visible",
                                             "color.color",
                                             "color.opacity",
                                             "chromatic-aberration.visible",
                                             "chromatic-aberration.red-cyan",
                                             "chromatic-aberration.green-magenta",
                                             "chromatic-aberration.blue-yellow",
                                             "intensity",
                                             "mode"};
  std::vector<std::string> names;
  for (const Control& control : panel_.controls) names.push_back(control.name);
  EXPECT_EQ(names, expected);
}

TEST_F(ControlTest, ChoicesLoseTheirDoubledBlanks) {
  EXPECT_EQ(panel_.Find("lens.type")->choices,
            (std::vector<std::string>{"None", "Circle", "Rectangle --", "Rectangle l", "Triangle",
                                      "Custom"}));
}

TEST_F(ControlTest, FactsAreThoseTheEffectRegistered) {
  const Control* feather = panel_.Find("lens.feather");
  EXPECT_EQ(feather->kind, ControlKind::kNumber);
  EXPECT_EQ(feather->maximum, 1000);
  EXPECT_EQ(feather->sliderMaximum, 500);
  EXPECT_TRUE(feather->percent);
  EXPECT_EQ(panel_.Find("fast-blur.amount")->defaultValue, Value(20.0));
  EXPECT_EQ(panel_.Find("lens.position")->defaultValue, Value(PointValue{{50, true}, {50, true}}));
  EXPECT_EQ(panel_.Find("color.color")->defaultValue, Value(ColourValue{255, 255, 255}));
  EXPECT_EQ(panel_.Find("realistic-blur.iris-rotation")->diskId, 23);
}

TEST_F(ControlTest, UnknownNamesAreAnsweredWithTheNearest) {
  EXPECT_NE(SetMessage("lens.tipe=circle").find("Did you mean lens.type"), std::string::npos);
  EXPECT_NE(SetMessage("feather=3").find("lens.feather"), std::string::npos);
  EXPECT_NE(SetMessage("fastblur.amount=3").find("fast-blur.amount"), std::string::npos);
  EXPECT_NE(SetMessage("zzzzzzzzzzzz=3").find("`vitrell params` lists every name"),
            std::string::npos);
}

TEST_F(ControlTest, AssignmentsNeedNameAndValue) {
  for (const char* assignment : {"", "=", "=5", "lens.feather"}) {
    EXPECT_NE(SetMessage(assignment).find("a name and a value are needed"), std::string::npos)
        << assignment;
  }
}

TEST_F(ControlTest, LaterAssignmentsWin) {
  Settings settings(panel_);
  settings.Set("fast-blur.amount=3");
  settings.Set("fast-blur.amount=4");
  EXPECT_EQ(settings.ValueOf(*panel_.Find("fast-blur.amount")), Value(4.0));
}

TEST_F(ControlTest, ValuesReachTheHostInItsUnits) {
  Settings settings(panel_);
  for (const char* assignment :
       {"lens.type=triangle", "lens.feather=12.5", "lens.position=100,25%", "lens.rotation=-90",
        "lens.invert-alpha=on", "color.color=#ff8800"}) {
    settings.Set(assignment);
  }
  settings.Apply(host_, 640, 360);
  const auto record = [&](const char* name) -> const PF_ParamDefUnion& {
    return host_.Record(panel_.Find(name)->index).u;
  };
  EXPECT_EQ(record("lens.type").pd.value, 5);
  EXPECT_EQ(record("lens.feather").fs_d.value, 12.5);
  EXPECT_EQ(record("lens.position").td.x_value, 100 * 65536);
  EXPECT_EQ(record("lens.position").td.y_value, 90 * 65536);
  EXPECT_EQ(record("lens.rotation").ad.value, -90 * 65536);
  EXPECT_EQ(record("lens.invert-alpha").bd.value, 1);
  EXPECT_EQ(record("color.color").cd.value.red, 255);
  EXPECT_EQ(record("color.color").cd.value.green, 136);
  EXPECT_EQ(record("color.color").cd.value.blue, 0);
  EXPECT_EQ(record("color.color").cd.value.alpha, 255);
}

}  // namespace
}  // namespace vitrell::look
