// Presets as files.
#include "look/preset.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "headless/effect_host.h"
#include "look/failure.h"

namespace vitrell::look {
namespace {

class PresetTest : public testing::Test {
 protected:
  ~PresetTest() override { std::filesystem::remove_all(folder_); }

  PresetTest() { std::filesystem::create_directories(folder_); }

  std::string LoadMessage(const std::string& text) {
    std::ofstream(file_) << text;
    Settings settings(panel_);
    try {
      LoadPreset(file_, settings);
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.Kind(), kFailed);
      EXPECT_NE(std::string(failure.what()).find(file_.string()), std::string::npos);
      return failure.what();
    }
    return "nothing";
  }

  Value Loaded(const std::string& text, const char* name) {
    std::ofstream(file_) << text;
    Settings settings(panel_);
    LoadPreset(file_, settings);
    return settings.ValueOf(*panel_.Find(name));
  }

  headless::EffectHost host_{std::filesystem::path(VITRELL_MODULE_PATH)};
  Panel panel_ = MakePanel(host_.Parameters());
  std::filesystem::path folder_ =
      std::filesystem::temp_directory_path() / ("vitrell-preset-" + std::to_string(::getpid()));
  std::filesystem::path file_ = folder_ / "look.json";
};

TEST_F(PresetTest, EveryKindOfValueIsRead) {
  EXPECT_EQ(Loaded(R"({"fast-blur.amount": 35})", "fast-blur.amount"), Value(35.0));
  EXPECT_EQ(Loaded(R"({"fast-blur.amount": "35.5"})", "fast-blur.amount"), Value(35.5));
  EXPECT_EQ(Loaded(R"({"trail.visible": false})", "trail.visible"), Value(false));
  EXPECT_EQ(Loaded(R"({"trail.visible": "off"})", "trail.visible"), Value(false));
  EXPECT_EQ(Loaded(R"({"trail.visible": 0})", "trail.visible"), Value(false));
  EXPECT_EQ(Loaded(R"({"lens.invert-alpha": 1})", "lens.invert-alpha"), Value(true));
  EXPECT_EQ(Loaded(R"({"lens.type": "triangle"})", "lens.type"), Value(ChoiceValue{5}));
  EXPECT_EQ(Loaded(R"({"lens.type": 6})", "lens.type"), Value(ChoiceValue{6}));
  EXPECT_EQ(Loaded(R"({"lens.position": [960, 540]})", "lens.position"),
            Value(PointValue{{960, false}, {540, false}}));
  EXPECT_EQ(Loaded(R"({"lens.position": "25%,75%"})", "lens.position"),
            Value(PointValue{{25, true}, {75, true}}));
  EXPECT_EQ(Loaded(R"({"color.color": [255, 136, 0]})", "color.color"),
            Value(ColourValue{255, 136, 0}));
  EXPECT_EQ(Loaded(R"({"lens.rotation": -45.5})", "lens.rotation"), Value(-45.5));
}

TEST_F(PresetTest, LayersAreRelativeToThePreset) {
  EXPECT_EQ(Loaded(R"({"lens.custom-layer": "mask.png"})", "lens.custom-layer"),
            Value(LayerValue{(folder_ / "mask.png").string()}));
  EXPECT_EQ(Loaded(R"({"lens.custom-layer": null})", "lens.custom-layer"), Value(LayerValue{}));
}

TEST_F(PresetTest, SavedSettingsLoadTheSame) {
  Settings settings(panel_);
  for (const char* assignment :
       {"lens.type=rectangle --", "lens.feather=33.3", "lens.position=10.5,25%",
        "color.color=1,2,3", "lens.rotation=-725.25", "trail.visible=off", "mode=screen"}) {
    settings.Set(assignment);
  }
  settings.SetValue(*panel_.Find("lens.custom-layer"), LayerValue{(folder_ / "m.png").string()});
  SavePreset(file_, settings);
  Settings loaded(panel_);
  LoadPreset(file_, loaded);
  EXPECT_EQ(loaded.Values(), settings.Values());
  EXPECT_NE(loaded.Values(), Settings(panel_).Values());
}

TEST_F(PresetTest, LengthsAreScaledFromTheWidthThatThePresetTells) {
  std::ofstream(file_) << R"({"picture-width": 1000, "fast-blur.amount": 8, "lens.feather": 40,
      "lens.position": "100,50%", "optical-distortion.amount": 90, "trail.amount": 30,
      "realistic-blur.iris-aspect-ratio": 2, "realistic-blur.amount": 400,
      "directional-blur.amount": 3, "lens.rotation": 10})";
  Settings settings(panel_);
  LoadPreset(file_, settings);
  settings.Set("directional-blur.amount=5");
  EXPECT_EQ(settings.WidthsMadeFor(), std::vector<double>{1000});
  EXPECT_EQ(settings.FitTo(1500), std::vector<std::string>{"realistic-blur.amount"});
  const auto value = [&](const char* name) { return settings.ValueOf(*panel_.Find(name)); };
  EXPECT_EQ(value("fast-blur.amount"), Value(12.0));
  EXPECT_EQ(value("lens.position"), Value(PointValue{{150, false}, {50, true}}));
  EXPECT_EQ(value("realistic-blur.amount"), Value(500.0));  // the end of its range
  EXPECT_EQ(value("directional-blur.amount"), Value(5.0));  // by --set
  EXPECT_EQ(value("lens.feather"), Value(40.0));
  EXPECT_EQ(value("optical-distortion.amount"), Value(90.0));
  EXPECT_EQ(value("trail.amount"), Value(30.0));
  EXPECT_EQ(value("realistic-blur.iris-aspect-ratio"), Value(2.0));
  EXPECT_EQ(value("lens.rotation"), Value(10.0));
  EXPECT_EQ(settings.WidthsMadeFor(), std::vector<double>{1500});
}

TEST_F(PresetTest, KeysAreScaledWithTheirPaths) {
  Settings settings(panel_);
  const Control& blur = *panel_.Find("fast-blur.amount");
  const Control& position = *panel_.Find("lens.position");
  settings.SetKeys(blur, {Key{.time = {}, .value = 0.0}, Key{.time = {}, .value = 4.0}});
  settings.SetMadeFor(blur, 100);
  Key key{.time = {}, .value = PointValue{{10, false}, {20, false}}};
  key.path = PathTangents{{1, 2}, {3, 4}};
  settings.SetKeys(position, {key});
  settings.SetMadeFor(position, 100);
  settings.FitTo(200);
  EXPECT_EQ(settings.KeysOf(blur)->at(1).value, Value(8.0));
  EXPECT_EQ(settings.KeysOf(position)->at(0).value, Value(PointValue{{20, false}, {40, false}}));
  EXPECT_EQ(settings.KeysOf(position)->at(0).path, (PathTangents{{2, 4}, {6, 8}}));
}

// The default of the fast blur is 20: that is what the preset's picture was rendered with.
TEST_F(PresetTest, WhatAPresetLeavesOutBelongsToItsPictureToo) {
  std::ofstream(file_) << R"({"picture-width": 100, "lens.feather": 40})";
  Settings settings(panel_);
  LoadPreset(file_, settings);
  settings.FitTo(50);
  EXPECT_EQ(settings.ValueOf(*panel_.Find("fast-blur.amount")), Value(10.0));
}

TEST_F(PresetTest, EachPresetHasItsOwnWidth) {
  const std::filesystem::path second = folder_ / "second.json";
  std::ofstream(file_) << R"({"picture-width": 100, "fast-blur.amount": 1,
                              "directional-blur.amount": 1})";
  std::ofstream(second) << R"({"picture-width": 400, "fast-blur.amount": 4})";
  Settings settings(panel_);
  LoadPreset(file_, settings);
  LoadPreset(second, settings);
  EXPECT_EQ(settings.WidthsMadeFor(), (std::vector<double>{400, 100}));
  settings.FitTo(800);
  EXPECT_EQ(settings.ValueOf(*panel_.Find("fast-blur.amount")), Value(8.0));
  EXPECT_EQ(settings.ValueOf(*panel_.Find("directional-blur.amount")), Value(8.0));
}

TEST_F(PresetTest, TheWidthIsSavedAndNumbersOnly) {
  SavePreset(file_, Settings(panel_), 640);
  Settings loaded(panel_);
  LoadPreset(file_, loaded);
  EXPECT_EQ(loaded.WidthsMadeFor(), std::vector<double>{640});
  for (const char* width : {"0", "-5", "\"960\"", "null", "1e9", "[960]"}) {
    EXPECT_NE(LoadMessage("{\"picture-width\": " + std::string(width) + "}")
                  .find("must be the width of a picture"),
              std::string::npos)
        << width;
  }
}

TEST_F(PresetTest, ALayerFileNamedNoneIsNotNoLayer) {
  Settings settings(panel_);
  const Control& layer = *panel_.Find("lens.custom-layer");
  settings.SetValue(layer, LayerValue{(folder_ / "none").string()});
  SavePreset(file_, settings);
  Settings loaded(panel_);
  LoadPreset(file_, loaded);
  EXPECT_EQ(loaded.ValueOf(layer), Value(LayerValue{(folder_ / "none").string()}));
}

TEST_F(PresetTest, DeeplyNestedListsAreRefused) {
  constexpr std::size_t kDepth = 500'000;
  const std::string text =
      "{\"mode\": " + std::string(kDepth, '[') + std::string(kDepth, ']') + "}";
  EXPECT_NE(LoadMessage(text).find("key \"mode\": the array is of the wrong type"),
            std::string::npos);
}

TEST_F(PresetTest, SavedPresetsNameEveryControl) {
  SavePreset(file_, Settings(panel_));
  std::ifstream stream(file_);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  for (const Control& control : panel_.controls) {
    EXPECT_NE(text.find("\"" + control.name + "\": "), std::string::npos) << control.name;
  }
}

TEST_F(PresetTest, MistakesAreToldWithTheirPlace) {
  EXPECT_NE(LoadMessage("{\n\"mode\": \n}").find("not valid JSON: parse error at line 3"),
            std::string::npos);
  for (const char* text : {"", "{", "[1,2]", "3", "null", "{\"mode\": NaN}", "{\"mode\": 1e999}"}) {
    EXPECT_NE(LoadMessage(text).find("--save-preset"), std::string::npos) << text;
  }
  EXPECT_NE(LoadMessage(R"({"lens.tipe": 1})").find("Did you mean lens.type"), std::string::npos);
  EXPECT_NE(LoadMessage(R"({"lens.feather": 2000})").find("key \"lens.feather\": 2000 is out of"),
            std::string::npos);
}

TEST_F(PresetTest, WrongTypesAreToldWithTheKey) {
  for (const char* text :
       {R"({"lens.feather": true})", R"({"lens.feather": null})", R"({"lens.feather": [1]})",
        R"({"lens.feather": {}})", R"({"lens.feather": "abc"})", R"({"trail.visible": 1.0})",
        R"({"trail.visible": 2})", R"({"trail.visible": "maybe"})", R"({"lens.type": 2.5})",
        R"({"lens.type": false})", R"({"lens.position": 5})", R"({"lens.position": [1]})",
        R"({"lens.position": [1, "x"]})", R"({"color.color": [1, 2, 300]})",
        R"({"color.color": 5})", R"({"mode": ["screen"]})"}) {
    EXPECT_NE(LoadMessage(text).find("key \""), std::string::npos) << text;
  }
}

TEST_F(PresetTest, UnreadablePresetsAreRefused) {
  Settings settings(panel_);
  EXPECT_THROW(LoadPreset(folder_ / "missing.json", settings), Failure);
  EXPECT_THROW(LoadPreset(folder_, settings), Failure);
  EXPECT_THROW(LoadPreset("/dev/zero", settings), Failure);
}

}  // namespace
}  // namespace vitrell::look
