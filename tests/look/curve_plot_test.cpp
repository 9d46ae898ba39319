// The drawing of curves, read as whoever looks at it does.
#include "look/curve_plot.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "headless/effect_host.h"

namespace vitrell::look {
namespace {

using Points = std::vector<std::pair<double, double>>;

constexpr double kRounding = 0.1;

struct Box {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
};

class CurvePlotTest : public testing::Test {
 protected:
  std::string Plot(const std::vector<std::string>& assignments) const {
    Settings settings(panel_);
    for (const std::string& assignment : assignments) settings.Set(assignment);
    const TimeBase base{25, 100};
    return PlotCurves(settings, base, RangeOfKeys(settings, base));
  }

  static std::vector<std::smatch> Find(const std::string& svg, const std::regex& pattern) {
    return {std::sregex_iterator(svg.begin(), svg.end(), pattern), std::sregex_iterator()};
  }
  static std::vector<Box> Boxes(const std::string& svg) {
    const std::regex box("<rect x='([^']+)' y='([^']+)' width='([^']+)' height='([^']+)'");
    std::vector<Box> boxes;
    for (const std::smatch& found : Find(svg, box)) {
      boxes.push_back(
          {std::stod(found[1]), std::stod(found[2]), std::stod(found[3]), std::stod(found[4])});
    }
    return boxes;
  }
  static std::vector<Points> Lines(const std::string& svg) {
    std::vector<Points> lines;
    for (const std::smatch& found : Find(svg, std::regex("points='([^']*)'"))) {
      const std::string text = found[1];
      Points points;
      for (const std::smatch& point : Find(text, std::regex("([^ ,]+),([^ ]+)"))) {
        points.emplace_back(std::stod(point[1]), std::stod(point[2]));
      }
      lines.push_back(points);
    }
    return lines;
  }

  headless::EffectHost host_{std::filesystem::path(VITRELL_MODULE_PATH)};
  Panel panel_ = MakePanel(host_.Parameters());
};

// From the lower left corner of its box to the upper right one.
TEST_F(CurvePlotTest, AStraightStretchIsAStraightLine) {
  const std::string svg = Plot({"fast-blur.amount=0=0; 50=40"});
  ASSERT_EQ(Boxes(svg).size(), 1U) << svg;
  ASSERT_EQ(Lines(svg).size(), 1U) << svg;
  const Box box = Boxes(svg)[0];
  const Points line = Lines(svg)[0];
  EXPECT_NEAR(line.front().first, box.left, kRounding);
  EXPECT_NEAR(line.front().second, box.top + box.height, kRounding);
  EXPECT_NEAR(line.back().first, box.left + box.width, kRounding);
  EXPECT_NEAR(line.back().second, box.top, kRounding);
  for (const auto& [x, y] : line) {
    const double share = (x - box.left) / box.width;
    EXPECT_NEAR(y, box.top + box.height * (1 - share), kRounding) << x;
  }
  for (const char* text : {">fast-blur.amount", ">0<", ">40<", ">frame 50<"}) {
    EXPECT_NE(svg.find(text), std::string::npos) << text << " is not in " << svg;
  }
}

TEST_F(CurvePlotTest, AHeldValueJumpsAtTheNextKey) {
  const std::string svg = Plot({"fast-blur.amount=0|=40; 30|=0; 40=20"});
  const Box box = Boxes(svg).at(0);
  const Points line = Lines(svg).at(0);
  for (const auto& [x, y] : line) {
    const double frame = 40 * (x - box.left) / box.width;
    // A point beside the jump may be drawn on it.
    if (std::abs(frame - 30) < kRounding || std::abs(frame - 40) < kRounding) continue;
    EXPECT_NEAR(y, frame < 30 ? box.top : box.top + box.height, kRounding) << frame;
  }
  EXPECT_NEAR(line.back().second, box.top + box.height / 2, kRounding);
}

TEST_F(CurvePlotTest, EachControlThatMovesHasAChart) {
  const std::string svg = Plot({"fast-blur.amount=0=0; 25~=40; 50=0", "intensity=70",
                                "lens.position=0=0,0; 50=10,90", "lens.type=0|=none; 20|=circle"});
  const std::vector<Box> boxes = Boxes(svg);
  ASSERT_EQ(boxes.size(), 3U);
  EXPECT_GT(boxes[1].top, boxes[0].top + boxes[0].height);
  EXPECT_GT(boxes[2].top, boxes[1].top + boxes[1].height);
  const std::vector<Points> lines = Lines(svg);
  EXPECT_EQ(lines.size(), 4U);
  EXPECT_EQ(svg.find("intensity"), std::string::npos);
  for (const Points& line : lines) {
    for (const auto& [x, y] : line) {
      EXPECT_GE(y, boxes.front().top - kRounding);
      EXPECT_LE(y, boxes.back().top + boxes.back().height + kRounding);
      EXPECT_LE(x, boxes.front().left + boxes.front().width + kRounding);
    }
  }
}

TEST_F(CurvePlotTest, ACurveThatStandsStillIsAFlatLine) {
  const std::string svg = Plot({"fast-blur.amount=0=7; 10=7"});
  const Box box = Boxes(svg).at(0);
  const Points line = Lines(svg).at(0);
  for (const auto& [x, y] : line) {
    EXPECT_NEAR(y, box.top + box.height / 2, kRounding) << x;
  }
  EXPECT_EQ(Lines(Plot({"intensity=70"})).size(), 0U);
}

}  // namespace
}  // namespace vitrell::look
