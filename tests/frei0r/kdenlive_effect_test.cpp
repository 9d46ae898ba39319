// Kdenlive's description of the filter.
#include "frei0r/kdenlive_effect.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "headless/effect_host.h"
#include "look/frei0r_mapping.h"

namespace vitrell::frei0r {
namespace {

using testing::HasSubstr;

class KdenliveEffectTest : public testing::Test {
 protected:
  headless::EffectHost host_{VITRELL_MODULE_PATH};
  look::Panel panel_ = look::MakePanel(host_.Parameters());
  std::string text_ = KdenliveEffect(panel_);

  std::vector<std::smatch> All(const std::string& pattern) const {
    const std::regex regex(pattern);
    return {std::sregex_iterator(text_.begin(), text_.end(), regex), std::sregex_iterator()};
  }
};

TEST_F(KdenliveEffectTest, EveryParameterIsThereOnceAndInOrder) {
  std::vector<std::string> expected = {"threads"};
  for (const look::Frei0rParameter& parameter : look::MakeFrei0rParameters(panel_)) {
    expected.push_back(parameter.name);
  }
  std::vector<std::string> found;
  for (const std::smatch& match : All("<parameter name=\"([^\"]*)\"")) found.push_back(match[1]);
  EXPECT_EQ(found, expected);
}

TEST_F(KdenliveEffectTest, EachKindHasItsForm) {
  EXPECT_THAT(text_,
              HasSubstr("<parameter name=\"fast-blur.visible\" type=\"bool\" default=\"1\">\n"
                        "        <name>Fast Blur: Visible</name>\n"));
  EXPECT_THAT(text_, HasSubstr("name=\"color.color\" type=\"color\" default=\"#ffffff\">"));
  EXPECT_THAT(text_,
              HasSubstr("name=\"lens.type\" type=\"list\" default=\"0.2\" "
                        "paramlist=\"0;0.2;0.4;0.6;0.8;1\">\n        <paramlistdisplay>None,"
                        "Circle,Rectangle --,Rectangle l,Triangle,Custom</paramlistdisplay>"));
  EXPECT_THAT(text_, HasSubstr("name=\"lens.feather\" type=\"animated\" default=\"0\" min=\"0\" "
                               "max=\"500\" factor=\"500\" decimals=\"2\" suffix=\"%\">"));
  EXPECT_THAT(text_, HasSubstr("name=\"trail.center-y\" type=\"animated\" default=\"0.5\" "
                               "min=\"-100\" max=\"200\" factor=\"100\" decimals=\"2\" "
                               "suffix=\"%\">\n        <name>Trail: Center Y</name>"));
}

TEST_F(KdenliveEffectTest, AScaleThatDoesNotBeginAtZeroIsExplained) {
  EXPECT_THAT(text_, HasSubstr("<comment>180 is 0 degrees, 0 is -180 degrees.</comment>"));
  EXPECT_THAT(text_, HasSubstr("<comment>100 is 0 %, 0 is -100 %.</comment>"));
  EXPECT_EQ(All("<comment>").size(), 4U);  // three angles and the lightness
}

// What Kdenlive shows of a default is the panel's own number.
TEST_F(KdenliveEffectTest, DefaultsLieWithinTheirSliders) {
  const std::vector<std::smatch> numbers =
      All(R"-(default="([^"]*)" min="([^"]*)" max="([^"]*)" factor="([^"]*)")-");
  EXPECT_GT(numbers.size(), 20U);
  for (const std::smatch& match : numbers) {
    const double shown = std::stod(match[1]) * std::stod(match[4]);
    EXPECT_GE(shown, std::stod(match[2])) << match.str();
    EXPECT_LE(shown, std::stod(match[3])) << match.str();
  }
}

}  // namespace
}  // namespace vitrell::frei0r
