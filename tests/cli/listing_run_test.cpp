// `vitrell params`, `about`, `--version` and `--help`.
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "cli/tool_run.h"

namespace vitrell::cli {
namespace {

class ListingRunTest : public ToolTest {
 protected:
  // The names of what is greyed out.
  std::vector<std::string> GreyedOut(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "params");
    const ToolResult result = Run(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    std::vector<std::string> names;
    std::istringstream lines(result.out);
    for (std::string line; std::getline(lines, line);) {
      const bool marked = line.starts_with("- ");
      EXPECT_EQ(marked, line.ends_with("; greyed out")) << line;
      if (!marked) continue;
      const std::size_t start = line.find_first_not_of("- ");
      names.push_back(line.substr(start, line.find(' ', start) - start));
    }
    return names;
  }
};

TEST_F(ListingRunTest, GreysOutWhatThePanelWould) {
  using Names = std::vector<std::string>;
  EXPECT_EQ(GreyedOut({}), (Names{"lens.custom-layer", "lens.placement",
                                  "optical-distortion.center", "trail.center"}));
  EXPECT_EQ(GreyedOut({"--set", "lens.type=custom"}),
            (Names{"lens.feather", "optical-distortion.center", "trail.center"}));
  EXPECT_EQ(GreyedOut({"--set", "lens.type=none", "--set", "trail.center-of-the-lens=off"}),
            (Names{"lens.custom-layer", "lens.placement", "lens.invert-alpha", "lens.feather",
                   "lens.scale", "lens.scale-width", "lens.scale-height", "lens.rotation",
                   "optical-distortion.center"}));
  WriteFile("look.json", R"({"lens.type": "custom"})");
  EXPECT_EQ(GreyedOut({"--preset", "look.json"}), GreyedOut({"--set", "lens.type=custom"}));
}

TEST_F(ListingRunTest, TextTellsValuesRangesUnitsAndDefaults) {
  const std::string text = Run({"params", "--set", "lens.feather=25"}).out;
  const std::size_t start = text.find("lens.feather");
  const std::string line = text.substr(start, text.find('\n', start) - start);
  EXPECT_NE(line.find("25 %"), std::string::npos) << line;
  EXPECT_NE(line.find("0 to 1000 %, slider 0 to 500; default 0 %"), std::string::npos) << line;
}

TEST_F(ListingRunTest, JsonIsTheTree) {
  const auto json = nlohmann::json::parse(Run({"params", "--json", "--set", "mode=add"}).out);
  const auto& top = json.at("controls");
  ASSERT_EQ(top.size(), 5U);
  EXPECT_EQ(top[0].at("group"), "I. LENS");
  EXPECT_EQ(top[0].at("controls").size(), 10U);
  EXPECT_EQ(top[0].at("controls")[4].at("maximum"), 1000);
  EXPECT_EQ(top[0].at("controls")[4].at("unit"), "percent");
  EXPECT_EQ(top[0].at("controls")[1].at("greyedOut"), true);
  EXPECT_EQ(top[1].at("controls").size(), 5U);
  EXPECT_EQ(top[1].at("controls")[1].at("startsCollapsed"), true);
  EXPECT_EQ(top[2].at("controls").size(), 3U);
  EXPECT_EQ(top[3].at("name"), "intensity");
  EXPECT_EQ(top[4].at("value"), "Add");
  EXPECT_EQ(top[4].at("default"), "Normal");
  EXPECT_EQ(top[4].at("choices").size(), 4U);
}

TEST_F(ListingRunTest, MarkdownHasARowForEachControl) {
  const std::string text = Run({"params", "--markdown"}).out;
  int rows = 0;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) rows += line.find("| `") != std::string::npos;
  EXPECT_EQ(rows, 42);
  EXPECT_NE(text.find("### Fast Blur"), std::string::npos);
  EXPECT_NE(text.find("None \\| Circle"), std::string::npos);
}

TEST_F(ListingRunTest, AboutShowsTheEffectsText) {
  const ToolResult result = Run({"about"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out.find("Vitrell\nVersion 1.0.5\n"), 0U) << result.out;
}

TEST_F(ListingRunTest, VersionAndHelp) {
  EXPECT_EQ(Run({"--version"}).out, "vitrell 1.0.5\n");
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"},
                                                    {"render", "--help"},
                                                    {"params", "--help"},
                                                    {"about", "--help"}}) {
    const ToolResult result = Run(arguments);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_NE(result.out.find("Examples:\n  vitrell "), std::string::npos) << result.out;
  }
}

}  // namespace
}  // namespace vitrell::cli
