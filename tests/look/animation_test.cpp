// Keys in text, JSON and from the clipboard, and the values between them, compared with other
// programs' values.
#include "look/animation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>

#include "headless/effect_host.h"
#include "look/animation_json.h"
#include "look/animation_text.h"
#include "look/clipboard_keys.h"
#include "look/failure.h"
#include "look/value_text.h"

// These headers do not say that they are C.
extern "C" {
#include <framework/mlt_properties.h>
}

namespace vitrell::look {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint32_t kSeed = 20261121;

class AnimationTest : public testing::Test {
 protected:
  const Control& Named(const char* name) const { return *panel_.Find(name); }

  Value At(const char* name, const std::string& text, double frame,
           const TimeBase& base = {25, 100}) const {
    return Curve(Named(name), ParseKeys(Named(name), text), base).At(frame);
  }
  double NumberAt(const std::string& text, double frame, const TimeBase& base = {25, 100}) const {
    return std::get<double>(At("fast-blur.amount", text, frame, base));
  }
  std::string Message(const char* name, const std::string& text) const {
    try {
      ParseKeys(Named(name), text);
    } catch (const ValueError& error) {
      return error.what();
    }
    return "nothing";
  }
  Keys FromJson(const char* name, const std::string& json) const {
    return KeysFromJson(Named(name), Json::parse(json));
  }
  std::string JsonMessage(const char* name, const std::string& json) const {
    try {
      FromJson(name, json);
    } catch (const ValueError& error) {
      return error.what();
    }
    return "nothing";
  }
  static Json Reference(const char* name) {
    std::ifstream file(std::filesystem::path(VITRELL_KEY_REFERENCES) / name);
    return Json::parse(file);
  }

  headless::EffectHost host_{std::filesystem::path(VITRELL_MODULE_PATH)};
  Panel panel_ = MakePanel(host_.Parameters());
};

TEST_F(AnimationTest, MarksRuleTheStretchAfterTheirKey) {
  const std::string text = "0=10; 10|=20; 20=0";
  EXPECT_EQ(NumberAt(text, 5), 15);
  EXPECT_EQ(NumberAt(text, 10), 20);
  EXPECT_EQ(NumberAt(text, 19.75), 20);
  EXPECT_EQ(NumberAt(text, 20), 0);
}

TEST_F(AnimationTest, HoldsBeforeTheFirstAndAfterTheLastKey) {
  EXPECT_EQ(NumberAt("10=3; 20=7", -5), 3);
  EXPECT_EQ(NumberAt("10=3; 20=7", 10), 3);
  EXPECT_EQ(NumberAt("10~=3; 20~=7", 1e6), 7);
  EXPECT_EQ(NumberAt("10=3", 4), 3);
}

TEST_F(AnimationTest, TimesAreFramesSecondsOrAClock) {
  EXPECT_EQ(NumberAt("0=0; 1.5s=30", 25, {20, 100}), 25);
  EXPECT_EQ(NumberAt("0=0; 00:00:02.500=50", 25, {20, 100}), 25);
  EXPECT_EQ(NumberAt("0=0; 01:01:01=3661", 24 * 60, {24, 1e6}), 60);
  EXPECT_EQ(NumberAt("0=0; 12.5=25", 5), 10);
}

TEST_F(AnimationTest, NegativeTimesCountFromTheEnd) {
  EXPECT_EQ(NumberAt("0=0; -1=99", 50), 50);
  EXPECT_EQ(NumberAt("0=0; -1s=75", 50), 50);
  EXPECT_EQ(NumberAt("-100=1; -50=51", 25), 26);
}

TEST_F(AnimationTest, TheLastKeyOfAFrameCounts) {
  EXPECT_EQ(NumberAt("10=1; 0=0; 10=2; 10=20", 5), 10);
  EXPECT_EQ(NumberAt("1s=1; 25=20; 0=0", 12.5), 10);
}

TEST_F(AnimationTest, PointsAnglesAndColoursMove) {
  EXPECT_EQ(At("lens.position", "0=10,20; 10=20,60", 5), (Value(PointValue{{15}, {40}})));
  EXPECT_EQ(At("lens.position", "0=10%,20%; 10=20%,60%", 5),
            (Value(PointValue{{15, true}, {40, true}})));
  EXPECT_EQ(At("lens.rotation", "0=0; 10=720", 5), Value(360.0));
  EXPECT_EQ(At("color.color", "0=#000000; 10=#ff8001", 5), (Value(ColourValue{128, 64, 1})));
}

TEST_F(AnimationTest, ChoicesAndSwitchesJump) {
  EXPECT_EQ(At("mode", "0|=Normal; 10|=Screen; 20=Add", 19), Value(ChoiceValue{3}));
  EXPECT_EQ(At("mode", "0|=Normal; 10|=Screen; 20=Add", 20), Value(ChoiceValue{2}));
  EXPECT_EQ(At("trail.visible", "0|=on; 5=off", 4), Value(true));
  EXPECT_NE(Message("mode", "0=Normal; 10=Add").find("|="), std::string::npos);
  EXPECT_NE(Message("trail.visible", "0~=on; 10=off").find("|="), std::string::npos);
}

TEST_F(AnimationTest, SmoothStretchesStayWithinTheRange) {
  EXPECT_EQ(NumberAt("0~=0; 10~=0; 20~=1000; 30=1000", 5), 0);  // Would be -62.5.
}

TEST_F(AnimationTest, BadKeysAreRefused) {
  for (const char* text : {"x=1", "1:2=3", "1:75:00=3", "0=1; 5", "1e3=2", "--1=2", "0$=1; 2=3",
                           "99999999999=1", "0= ; 1=2", "; ;", "1.2.3=4"}) {
    EXPECT_NE(Message("fast-blur.amount", text), "nothing") << text;
  }
  EXPECT_NE(Message("fast-blur.amount", "0=10; 5=-3").find("out of range"), std::string::npos);
  EXPECT_NE(Message("lens.position", "0=1,2; 9=50%,50%").find("percent"), std::string::npos);
  EXPECT_FALSE(HoldsKeys(Named("lens.custom-layer"), "a=b.png"));
  EXPECT_TRUE(HoldsKeys(Named("lens.feather"), "0=1"));
  EXPECT_FALSE(HoldsKeys(Named("lens.feather"), "12"));
}

TEST_F(AnimationTest, TextReadsBackAsTheSameKeys) {
  const std::pair<const char*, const char*> texts[] = {
      {"fast-blur.amount", "0=10; 1.5s~=20.25; -3|=0; -0s=7"},
      {"lens.position", "0=10,20.5; 10~=3,4"},
      {"color.color", "0|=#0102ff; 00:00:10=255,0,0"},
      {"mode", "0|=Normal; 3=Add"}};
  for (const auto& [name, text] : texts) {
    const Keys keys = ParseKeys(Named(name), text);
    EXPECT_EQ(ParseKeys(Named(name), FormatKeys(Named(name), keys)), keys) << text;
  }
  EXPECT_EQ(FormatKeys(Named("mode"), ParseKeys(Named("mode"), "0 |= Normal ;3=add;")),
            "0|=Normal; 3=Add");
}

// MLT works out its own animation strings. It stores single values as 32-bit numbers nowhere, so
// that a billionth is room enough for another order of the same sums.
TEST_F(AnimationTest, NumbersEqualMlt) {
  std::mt19937 random(kSeed);
  const char* marks[] = {"=", "~=", "|="};
  for (int round = 0; round < 200; ++round) {
    std::string text;
    int frame = static_cast<int>(random() % 5);
    for (int key = 0, count = 1 + static_cast<int>(random() % 7); key < count; ++key) {
      if (key > 0) text += ';';
      text += std::to_string(frame) + marks[random() % 3] +
              FormatNumber(20000 + static_cast<double>(random() % 80000) / 8);
      frame += 1 + static_cast<int>(random() % 30);
    }
    const int length = frame + 10;
    mlt_properties properties = mlt_properties_new();
    mlt_properties_set(properties, "value", text.c_str());
    const Curve curve(Named("fast-blur.amount"), ParseKeys(Named("fast-blur.amount"), text),
                      {25, static_cast<double>(length)});
    for (int position = 0; position < length; ++position) {
      const double expected = mlt_properties_anim_get_double(properties, "value", position, length);
      ASSERT_NEAR(std::get<double>(curve.At(position)), expected, 1e-9 * expected)
          << text << " at " << position;
    }
    mlt_properties_close(properties);
  }
}

TEST_F(AnimationTest, EasingEqualsBezierEasing) {
  int count = 0;
  for (const Json& curve : Reference("easing.json")) {
    const CubicEasing easing = {curve["x1"], curve["y1"], curve["x2"], curve["y2"]};
    for (std::size_t step = 0; step <= 16; ++step, ++count) {
      // That program stops its search at a ten millionth of the time.
      EXPECT_NEAR(Ease(easing, static_cast<double>(step) / 16),
                  curve["samples"][step].get<double>(), 1e-5)
          << curve.dump();
    }
  }
  EXPECT_EQ(count, 60 * 17);
}

TEST_F(AnimationTest, PathsEqualLottieWeb) {
  const Control& control = Named("lens.position");
  int count = 0;
  for (const Json& path : Reference("paths.json")) {
    const Json object = {{"a", 1}, {"k", path["keys"]}};
    const Curve curve(control, KeysFromJson(control, object), {25, 60});
    for (std::size_t frame = 0; frame < path["samples"].size(); ++frame, ++count) {
      const auto point = std::get<PointValue>(curve.At(static_cast<double>(frame)));
      const Json& expected = path["samples"][frame];
      // That program takes 150 pieces of a path instead of 512.
      const double tolerance = path["keys"][0].contains("to") ? 0.15 : 0.001;
      ASSERT_NEAR(point.x.value, expected[0].get<double>(), tolerance)
          << "frame " << frame << " of " << path["keys"].dump();
      ASSERT_NEAR(point.y.value, expected[1].get<double>(), tolerance)
          << "frame " << frame << " of " << path["keys"].dump();
    }
  }
  EXPECT_EQ(count, 30 * 46);
}

TEST_F(AnimationTest, EasingOfEachComponent) {
  const Keys keys = FromJson("lens.position",
                             R"({"a":1,"k":[{"t":0,"s":[0,0],"o":{"x":[0,0.5],"y":[0,0.5]},
                                 "i":{"x":[1,0.5],"y":[1,0.5]}},{"t":10,"s":[100,100]}]})");
  const auto point = std::get<PointValue>(Curve(Named("lens.position"), keys, {}).At(2.5));
  EXPECT_EQ(point.x.value, 25);
  EXPECT_EQ(point.y.value, 25);
}

TEST_F(AnimationTest, OldAndStillForms) {
  const Keys old =
      FromJson("fast-blur.amount", R"({"a":1,"k":[{"t":-5,"s":[10],"e":[30]},{"t":5,"h":1}]})");
  ASSERT_EQ(old.size(), 2U);
  EXPECT_EQ(old[1].value, Value(30.0));
  EXPECT_EQ(Curve(Named("fast-blur.amount"), old, {}).At(0), Value(20.0));
  const Keys still = FromJson("color.color", R"({"a":0,"k":[1,0.5,0,1]})");
  EXPECT_EQ(Curve(Named("color.color"), still, {}).At(77), (Value(ColourValue{255, 128, 0})));
}

TEST_F(AnimationTest, BadJsonIsRefused) {
  for (const char* json :
       {R"({})", R"({"a":1,"k":[]})", R"({"a":1,"k":5})", R"({"a":1,"k":[{"s":[1]}]})",
        R"({"a":1,"k":[{"t":0}]})", R"({"a":1,"k":[{"t":"x","s":[1]}]})",
        R"({"a":1,"k":[{"t":1e30,"s":[1]}]})", R"({"a":1,"k":[{"t":0,"s":[-1]}]})",
        R"({"a":1,"k":[{"t":0,"s":[1],"o":{"x":2,"y":0},"i":{"x":0,"y":0}},{"t":1,"s":[2]}]})",
        R"({"a":1,"k":[{"t":0,"s":[1],"o":{"x":[],"y":0},"i":{"x":0,"y":0}},{"t":1,"s":[2]}]})"}) {
    EXPECT_NE(JsonMessage("fast-blur.amount", json), "nothing") << json;
  }
  EXPECT_NE(JsonMessage("color.color", R"({"a":0,"k":[255,0,0]})").find("0 to 1"),
            std::string::npos);
}

TEST_F(AnimationTest, JsonReadsBackAsTheSameKeys) {
  for (const Json& path : Reference("paths.json")) {
    const Json object = {{"a", 1}, {"k", path["keys"]}};
    const Keys keys = KeysFromJson(Named("lens.position"), object);
    EXPECT_EQ(KeysFromJson(Named("lens.position"), JsonFromKeys(keys)), keys);
  }
}

constexpr const char* kClipboard =
    "Adobe After Effects 8.0 Keyframe Data\r\n\r\n"
    "\tUnits Per Second\t24\r\n\tSource Width\t1920\r\n\tSource Height\t1080\r\n"
    "\tSource Pixel Aspect Ratio\t1\r\n\tComp Pixel Aspect Ratio\t1\r\n\r\n"
    "Effects\tVitrell #1\tPosition #9\r\n\tFrame\tX pixels\tY pixels\t\r\n"
    "\t0\t960\t540\t\r\n\t12\t100.5\t-3\t\r\n\r\n"
    "Effects\tVitrell #1\tFeather #7\r\n\tFrame\tpercent\t\r\n\t-2\t10\t\r\n\t12\t50\t\r\n\r\n"
    "Effects\tVitrell #1\tColor #99\r\n\tFrame\talpha\tred\tgreen\tblue\t\r\n"
    "\t3\t255\t255\t128\t0\t\r\n\r\n"
    "Transform\tOpacity\r\n\tFrame\tpercent\t\r\n\t0\t100\t\r\n\r\n"
    "Effects\tOther #1\tFeather #2\r\n\tFrame\t\t\r\n\t0\t100\t\r\n\r\n"
    "End of Keyframe Data\r\n";

TEST_F(AnimationTest, ClipboardKeysAreStraight) {
  const ClipboardKeys read = ReadClipboardKeys(panel_, "Vitrell", kClipboard);
  EXPECT_EQ(read.framesPerSecond, 24);
  EXPECT_EQ(read.sourceWidth, 1920);
  EXPECT_EQ(read.sourceHeight, 1080);
  ASSERT_EQ(read.keys.size(), 3U);
  EXPECT_EQ(read.keys[0].first, &Named("lens.position"));
  EXPECT_EQ(read.keys[0].second[1].value, (Value(PointValue{{100.5}, {-3}})));
  EXPECT_EQ(read.keys[1].first, &Named("lens.feather"));
  EXPECT_EQ(Curve(Named("lens.feather"), read.keys[1].second, {}).At(5), Value(30.0));
  EXPECT_EQ(read.keys[2].second[0].value, (Value(ColourValue{255, 128, 0})));
  EXPECT_EQ(read.unmatched,
            (std::vector<std::string>{"Transform / Opacity", "Effects / Other #1 / Feather #2"}));
}

TEST_F(AnimationTest, ClipboardChoosesAmongEqualLabelsByNumber) {
  const std::string begin = "Adobe After Effects 8.0 Keyframe Data\n";
  const std::string end = "\n\tFrame\n\t0\t5\nEnd of Keyframe Data\n";
  const Control& trail = Named("trail.amount");
  const auto read = [&](int number) {
    return ReadClipboardKeys(
        panel_, "Vitrell", begin + "Effects\tVitrell #2\tAmount #" + std::to_string(number) + end);
  };
  ASSERT_EQ(read(trail.index).keys.size(), 1U);
  EXPECT_EQ(read(trail.index).keys[0].first, &trail);
  EXPECT_EQ(read(9999).keys.size(), 0U);
  EXPECT_EQ(read(9999).unmatched.size(), 1U);
}

TEST_F(AnimationTest, ClipboardTextsAreChecked) {
  const std::string whole = kClipboard;
  EXPECT_THROW(ReadClipboardKeys(panel_, "Vitrell", ""), ValueError);
  EXPECT_THROW(ReadClipboardKeys(panel_, "Vitrell", "x\n" + whole), ValueError);
  for (std::size_t cut = 0; cut + 24 < whole.size(); cut += 7) {
    EXPECT_THROW(ReadClipboardKeys(panel_, "Vitrell", whole.substr(0, cut)), ValueError) << cut;
  }
}

}  // namespace
}  // namespace vitrell::look
