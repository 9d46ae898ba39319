// The driver's visible results: small rendered frames.
#include "literal/render/render_driver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "literal/render/settings.h"
#include "render/driver_case.h"

namespace vitrell {
namespace {

using headless::SamePixels;

// A row of opaque grey pixels.
headless::WorldBuffer GreyRow(const std::vector<int>& values) {
  headless::WorldBuffer row(static_cast<std::int32_t>(values.size()), 1, false);
  for (std::int32_t x = 0; x < row.Width(); ++x) {
    const auto grey = static_cast<std::uint8_t>(values[static_cast<std::size_t>(x)]);
    row.At8(x, 0) = {255, grey, grey, grey};
  }
  return row;
}

std::vector<int> Reds(const headless::WorldBuffer& row) {
  std::vector<int> reds;
  for (std::int32_t x = 0; x < row.Width(); ++x) {
    reds.push_back(row.At8(x, 0).red);
  }
  return reds;
}

std::vector<int> RenderRow(DriverCase& test, const std::vector<int>& values) {
  const headless::WorldBuffer input = GreyRow(values);
  headless::WorldBuffer output = GreyRow(std::vector<int>(values.size(), 77));
  const headless::RenderResult result = test.host().Render(input, output);
  EXPECT_EQ(result.error, PF_Err_NONE);
  EXPECT_EQ(result.complaints, std::vector<std::string>());
  return Reds(output);
}

TEST(RenderDriverTest, AllOffIsTheInputItself) {
  for (const bool deep : {false, true}) {
    DriverCase test(deep);
    test.AllOff();
    EXPECT_TRUE(SamePixels(test.Picture(), test.input()));
  }
}

// Add of a picture to itself, capped at 255; Multiply: v x v / 255 in integers (100 -> 39,
// 200 -> 156); INTENSITY 50 half-way: 100 + (200 - 100) / 2, 200 + (255 - 200) / 2 = 227.5.
TEST(RenderDriverTest, AllOffLeavesTheBlendOfTheInputWithItself) {
  DriverCase test;
  test.AllOff().Set("mode", 2);
  EXPECT_EQ(RenderRow(test, {0, 100, 200}), std::vector<int>({0, 200, 255}));
  test.Set("intensity", 50);
  EXPECT_EQ(RenderRow(test, {0, 100, 200}), std::vector<int>({0, 150, 227}));
  test.Set("mode", 4).Set("intensity", 100);
  EXPECT_EQ(RenderRow(test, {0, 100, 200}), std::vector<int>({0, 39, 156}));
}

// With "Scale" 0 the mask is 0 and the blend passes the processed picture: lightness alone shows.
TEST(RenderDriverTest, ScaleZeroCopiesTheLensStage) {
  DriverCase test;
  test.AllOff().Set("lightness.visible", 1).Set("lightness.amount", 30);
  const std::vector<int> lightened = RenderRow(test, {10, 100, 200});
  EXPECT_NE(lightened, std::vector<int>({10, 100, 200}));
  test.Set("lens.type", 2).Set("lens.scale", 0);
  EXPECT_EQ(RenderRow(test, {10, 100, 200}), lightened);
}

// Only the low byte counts, and only as exactly 1.
TEST(RenderDriverTest, CheckboxesCountOnlyWhenTheyAreOne) {
  DriverCase test;
  test.AllOff().Set("lightness.amount", 30);
  for (const int off : {0, 2, 255, 256}) {
    test.Set("lightness.visible", off);
    EXPECT_EQ(RenderRow(test, {10, 100, 200}), std::vector<int>({10, 100, 200})) << off;
  }
  test.Set("lightness.visible", 257);
  EXPECT_NE(RenderRow(test, {10, 100, 200}), std::vector<int>({10, 100, 200}));
}

// The host's own record of the input is written to: left and top become 0, right and bottom stay.
TEST(RenderDriverTest, KeepsTheInputsExtentHintWithLeftAndTopZeroed) {
  DriverCase test;
  test.input().SetExtentHint({2, 1, 5, 3});
  const headless::RenderResult result = test.Render();
  EXPECT_EQ(result.error, PF_Err_NONE);
  EXPECT_EQ(result.complaints, std::vector<std::string>());
  EXPECT_EQ(result.inputRecord.extent_hint.left, 0);
  EXPECT_EQ(result.inputRecord.extent_hint.top, 0);
  EXPECT_EQ(result.inputRecord.extent_hint.right, 5);
  EXPECT_EQ(result.inputRecord.extent_hint.bottom, 3);
}

// A failure of the first step that follows the write leaves it in place; one before does not make
// it.
TEST(RenderDriverTest, ExtentHintIsWrittenBehindTheWorkingWorlds) {
  DriverCase test;
  test.input().SetExtentHint({2, 1, 5, 3});
  test.host().GetFaults().FailNth(headless::CallKind::kNewWorld, 2, 4);
  EXPECT_EQ(test.Render().inputRecord.extent_hint.left, 2);
  test.host().GetFaults().Clear();
  test.host().GetFaults().FailNth(headless::CallKind::kCopy, 1, 4);
  EXPECT_EQ(test.Render().inputRecord.extent_hint.left, 0);
}

TEST(RenderDriverTest, RendersInARowAreTheSame) {
  for (const bool deep : {false, true}) {
    DriverCase test(deep);
    const headless::WorldBuffer first = test.Picture();
    EXPECT_TRUE(SamePixels(first, test.Picture()));
    EXPECT_TRUE(SamePixels(first, test.Picture()));
    EXPECT_FALSE(SamePixels(first, test.input()));
  }
}

// What the lens decides of a lens-mapped fast blur, from the driver's plan written independently.
struct BlurMapCase {
  double amount, feather;
  bool useBlurMap, pass1;
};

TEST(RenderDriverTest, FeatherDecidesBetweenPassOneAndTheMask) {
  for (const BlurMapCase& wanted : {BlurMapCase{10, 10, false, true},
                                    {10, 5, true, false},
                                    {10, 5.0001, false, true},
                                    {10, 4.9, true, false},
                                    {0, 0, true, false},
                                    {20, 0, true, false}}) {
    DriverCase test;
    test.Set("fast-blur.use-lens-as-blur-map", 1);
    test.Set("fast-blur.amount", wanted.amount).Set("lens.feather", wanted.feather);
    std::vector<const PF_ParamDef*> params;
    for (const headless::Parameter& parameter : test.host().Parameters()) {
      params.push_back(&test.host().Record(parameter.index));
    }
    const literal::Plan plan = literal::MakePlan(literal::SettingsFromParams(params.data()));
    EXPECT_EQ(plan.useBlurMap, wanted.useBlurMap) << wanted.amount << " " << wanted.feather;
    EXPECT_EQ(plan.mappedBlurs, wanted.pass1) << wanted.amount << " " << wanted.feather;
    // Passes of the module: three rounds of two in pass 0 (none with amount 0), lightness, blend
    // and lens, and three rounds more in pass 1.
    const int passes = (wanted.amount > 0 ? 6 : 0) + 3 + (wanted.pass1 ? 6 : 0);
    const headless::RenderResult result = test.Render();
    EXPECT_EQ(headless::CountCalls(result.calls, headless::CallKind::kIterate8), passes);
  }
}

}  // namespace
}  // namespace vitrell
