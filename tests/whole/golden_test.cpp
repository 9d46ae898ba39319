// Golden pictures and presets, rendered by the built command line and by the literal render.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "cli/tool_run.h"
#include "whole/golden_case.h"
#include "whole/literal_bridge.h"
#include "whole/picture_hash.h"

namespace vitrell::whole {
namespace {

namespace fs = std::filesystem;

// Set by scripts/update_goldens.sh: expected pictures are written anew.
bool Updating() { return std::getenv("VITRELL_UPDATE_GOLDENS") != nullptr; }

std::vector<std::string> SortedNames(const fs::path& folder, bool folders) {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.is_directory() == folders) {
      names.push_back(entry.path().filename().string());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string DescribeWorlds(const literal::World& expected, const literal::World& actual) {
  return headless::DescribeDifference(FromLiteral(expected), FromLiteral(actual));
}

// Test names hold letters, digits and underscores only.
std::string TestName(const testing::TestParamInfo<std::string>& param) {
  std::string name = param.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

// Renders the sample picture.
class GoldenTest : public cli::ToolTest {
 protected:
  const FilePicture& Input() const { return input_; }

  FilePicture RenderByTool(const fs::path& settings, bool deep) const {
    const cli::ToolResult run =
        Run({"render", VITRELL_GOLDEN_INPUT, "result.png", "--preset", settings.string(), "--depth",
             deep ? "16" : "8", "--threads", "1", "--quiet", "--force"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return ReadFilePicture(InFolder("result.png"));
  }

  // The command line, the effect and the literal render agree, and show something.
  void CheckRender(const fs::path& settings, bool deep, const FilePicture& result) const {
    const GoldenResults renders = RenderGolden(settings, Input(), deep);
    EXPECT_EQ(DescribeWorlds(renders.expected, WorldOf(result, deep)), "");
    EXPECT_EQ(DescribeWorlds(renders.expected, renders.actual), "");
    EXPECT_NE(DescribeWorlds(WorldOf(Input(), deep), WorldOf(result, deep)), "");
  }

 private:
  FilePicture input_ = ReadFilePicture(VITRELL_GOLDEN_INPUT);
};

class GoldenPictureTest : public GoldenTest, public testing::WithParamInterface<std::string> {};

TEST_P(GoldenPictureTest, IsWhatTheToolAndTheLiteralRenderGive) {
  const bool deep = IsDeepGolden(GetParam());
  const fs::path settings = GoldenFolder(GetParam()) / "settings.json";
  const fs::path expectedFile = GoldenFolder(GetParam()) / "expected.png";
  const FilePicture result = RenderByTool(settings, deep);
  ASSERT_EQ(result.width, 480);
  ASSERT_EQ(result.height, 270);
  EXPECT_EQ(std::holds_alternative<std::vector<std::uint16_t>>(result.samples), deep);
  CheckRender(settings, deep, result);
  if (Updating() && !HasFailure()) {
    fs::copy_file(InFolder("result.png"), expectedFile, fs::copy_options::overwrite_existing);
    std::cout << "written anew: " << GetParam() << std::endl;
  }
  const FilePicture expected = ReadFilePicture(expectedFile);
  EXPECT_EQ(DescribeWorlds(WorldOf(expected, deep), WorldOf(result, deep)), "");
  EXPECT_TRUE(expected == result) << "scripts/update_goldens.sh renews what is meant to change";
}

INSTANTIATE_TEST_SUITE_P(Goldens, GoldenPictureTest, testing::ValuesIn(GoldenNames()), TestName);

TEST(GoldenSetTest, IsComplete) {
  EXPECT_EQ(GoldenNames().size(), 16U);
  EXPECT_EQ(SortedNames(VITRELL_GOLDEN_FOLDER, true), GoldenNames());
}

// The sample picture must be the same on every platform, or none of the goldens could be.
TEST(GoldenSetTest, HasOneHashEverywhere) {
  const FilePicture input = ReadFilePicture(VITRELL_GOLDEN_INPUT);
  PictureHash expected;
  PictureHash actual;
  for (const std::string& name : GoldenNames()) {
    const GoldenResults renders =
        RenderGolden(GoldenFolder(name) / "settings.json", input, IsDeepGolden(name));
    expected.Add(renders.expected);
    actual.Add(renders.actual);
  }
  std::cout << "hash of " << GoldenNames().size() << " goldens: literal " << std::hex
            << expected.Value() << ", effect " << actual.Value() << std::dec << std::endl;
  EXPECT_EQ(expected.Value(), kAllGoldens);
  EXPECT_EQ(actual.Value(), kAllGoldens);
}

class PresetPictureTest : public GoldenTest, public testing::WithParamInterface<std::string> {};

TEST_P(PresetPictureTest, IsWhatTheLiteralRenderGives) {
  const fs::path settings = fs::path(VITRELL_PRESET_FOLDER) / (GetParam() + ".json");
  for (const bool deep : {false, true}) {
    CheckRender(settings, deep, RenderByTool(settings, deep));
  }
}

INSTANTIATE_TEST_SUITE_P(Shipped, PresetPictureTest,
                         testing::Values("bokeh-street", "dream-vignette", "tilt-shift"), TestName);

TEST(PresetSetTest, IsComplete) {
  EXPECT_EQ(
      SortedNames(VITRELL_PRESET_FOLDER, false),
      (std::vector<std::string>{"bokeh-street.json", "dream-vignette.json", "tilt-shift.json"}));
}

}  // namespace
}  // namespace vitrell::whole
