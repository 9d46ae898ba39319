// Parameter facts, units, paths and suggestions.
#include "headless/parameters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "headless/fakes/fake_effect.h"

namespace vitrell::headless {
namespace {

using fakes::MakeRecord;

TEST(ParameterNamesTest, WordsDropNumeralsAndRemarks) {
  EXPECT_EQ(PathWord("I. LENS"), "lens");
  EXPECT_EQ(PathWord("II. BLUR"), "blur");
  EXPECT_EQ(PathWord("III. OTHER"), "other");
  EXPECT_EQ(PathWord("Realistic Blur  [very slow]"), "realistic-blur");
  EXPECT_EQ(PathWord("Red/Cyan"), "red-cyan");
  EXPECT_EQ(PathWord("invert Alpha"), "invert-alpha");
  EXPECT_EQ(PathWord("Use Lens as Blur Map"), "use-lens-as-blur-map");
  EXPECT_EQ(PathWord("INTENSITY"), "intensity");
  EXPECT_EQ(PathWord("Mix"), "mix");
  EXPECT_EQ(PathWord("VIVID. X"), "vivid-x");  // D is no numeral here.
  EXPECT_EQ(PathWord(""), "");
}

std::vector<Parameter> Tree() {
  std::vector<Parameter> list;
  const auto add = [&list](PF_ParamType type, const char* name) {
    list.push_back(DescribeRecord(static_cast<int>(list.size()), MakeRecord(type, name, 1)));
  };
  add(PF_Param_LAYER, "Input");
  add(PF_Param_GROUP_START, "II. BLUR");
  add(PF_Param_GROUP_START, "Fast Blur");
  add(PF_Param_FLOAT_SLIDER, "Amount");
  add(PF_Param_FLOAT_SLIDER, "Amount");
  add(PF_Param_GROUP_END, "");
  add(PF_Param_FLOAT_SLIDER, "Mix");
  add(PF_Param_GROUP_END, "");
  add(PF_Param_POPUP, "MODE");
  ArrangeTree(list);
  return list;
}

TEST(ParameterNamesTest, PathsUseTheInnermostGroupAndAreUnique) {
  const std::vector<Parameter> tree = Tree();
  EXPECT_EQ(tree[0].path, "");
  EXPECT_EQ(tree[1].path, "");
  EXPECT_EQ(tree[3].path, "fast-blur.amount");
  EXPECT_EQ(tree[4].path, "fast-blur.amount-2");
  EXPECT_EQ(tree[5].path, "");
  EXPECT_EQ(tree[6].path, "blur.mix");
  EXPECT_EQ(tree[8].path, "mode");
  EXPECT_EQ(tree[3].groups, (std::vector<int>{1, 2}));
  EXPECT_EQ(tree[6].groups, (std::vector<int>{1}));
  EXPECT_TRUE(tree[8].groups.empty());
}

TEST(ParameterNamesTest, NearestPathsComeFirst) {
  const std::vector<Parameter> tree = Tree();
  EXPECT_EQ(NearestPaths(tree, "fast-blur.amonut", 1),
            (std::vector<std::string>{"fast-blur.amount"}));
  EXPECT_EQ(NearestPaths(tree, "mod", 1), (std::vector<std::string>{"mode"}));
  // Without its group a control is found by its own word.
  EXPECT_EQ(NearestPaths(tree, "amount", 2),
            (std::vector<std::string>{"fast-blur.amount", "fast-blur.amount-2"}));
  EXPECT_EQ(NearestPaths(tree, "x", 99).size(), 4U);
}

TEST(ParametersTest, FixedRoundsHalfAwayFromZero) {
  EXPECT_EQ(ToFixed(1.0), 65536);
  EXPECT_EQ(ToFixed(960.5), 62947328);
  EXPECT_EQ(ToFixed(0.5 / 65536), 1);
  EXPECT_EQ(ToFixed(-0.5 / 65536), -1);
  EXPECT_EQ(ToFixed(0.49 / 65536), 0);
  EXPECT_EQ(ToFixed(-1.49 / 65536), -1);
  EXPECT_EQ(ToFixed(1e9), std::numeric_limits<PF_Fixed>::max());
  EXPECT_EQ(ToFixed(-1e9), std::numeric_limits<PF_Fixed>::min());
  EXPECT_EQ(ToFixed(std::nan("")), 0);
}

TEST(ParametersTest, DescribesTheRegisteredFacts) {
  PF_ParamDef slider = MakeRecord(PF_Param_FLOAT_SLIDER, "Feather", 6);
  slider.u.fs_d.valid_max = 1000;
  slider.u.fs_d.slider_max = 500;
  slider.u.fs_d.dephault = 7;
  slider.u.fs_d.precision = 1;
  slider.u.fs_d.display_flags = PF_ValueDisplayFlag_PERCENT;
  slider.ui_flags = PF_PUI_DISABLED;
  const Parameter feather = DescribeRecord(6, slider);
  EXPECT_EQ(feather.diskId, 6);
  EXPECT_EQ(feather.validMax, 1000);
  EXPECT_EQ(feather.sliderMax, 500);
  EXPECT_EQ(feather.defaultNumber, 7);
  EXPECT_EQ(feather.precision, 1);
  EXPECT_TRUE(feather.percent);
  EXPECT_TRUE(feather.Greyed());

  PF_ParamDef popup = MakeRecord(PF_Param_POPUP, "Type", 2);
  popup.u.pd.u.namesptr = "None|Circle|Rectangle  --";
  popup.u.pd.dephault = 2;
  EXPECT_EQ(DescribeRecord(2, popup).choices,
            (std::vector<std::string>{"None", "Circle", "Rectangle  --"}));

  PF_ParamDef box = MakeRecord(PF_Param_CHECKBOX, "", 5);
  box.u.bd.u.nameptr = "Visible";
  box.u.bd.dephault = 1;
  EXPECT_EQ(DescribeRecord(5, box).Title(), "Visible");
  EXPECT_EQ(DescribeRecord(5, box).defaultNumber, 1);

  PF_ParamDef angle = MakeRecord(PF_Param_ANGLE, "Rotation", 1);
  angle.u.ad.dephault = -(90 << 16);
  EXPECT_EQ(DescribeRecord(1, angle).defaultNumber, -90);

  PF_ParamDef point = MakeRecord(PF_Param_POINT, "Center", 1);
  point.u.td.x_dephault = 25 << 16;
  point.u.td.y_dephault = 75 << 16;
  EXPECT_EQ(DescribeRecord(1, point).defaultXPercent, 25);
  EXPECT_EQ(DescribeRecord(1, point).defaultYPercent, 75);
}

}  // namespace
}  // namespace vitrell::headless
