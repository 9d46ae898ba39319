// Keys on the command line: listed, drawn, in presets, at a frame of a render.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "cli/tool_run.h"

namespace vitrell::cli {
namespace {

class KeysRunTest : public ToolTest {
 protected:
  std::string Params(const std::vector<std::string>& arguments) {
    std::vector<std::string> all = {"params", "--json"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const ToolResult run = Run(all);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    return run.out;
  }
};

TEST_F(KeysRunTest, ParamsAtAFrame) {
  const std::string keys = "fast-blur.amount=0=0; 1s=40; 2s=0";
  EXPECT_EQ(Params({"--set", keys, "--at", "20"}), Params({"--set", "fast-blur.amount=32"}));
  EXPECT_EQ(Params({"--set", keys, "--at", "20", "--fps", "50"}),
            Params({"--set", "fast-blur.amount=16"}));
  EXPECT_EQ(Params({"--set", "lens.position=0=0,0; -1=99,198", "--length", "100", "--at", "10"}),
            Params({"--set", "lens.position=10,20"}));
}

TEST_F(KeysRunTest, TheEndMustBeKnown) {
  const ToolResult run = Run({"params", "--set", "intensity=0=0; -1=100"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find("--length"), std::string::npos) << run.err;
}

TEST_F(KeysRunTest, BadKeysAreWrongUsage) {
  const ToolResult run = Run({"params", "--set", "mode=0=Normal; 5=Add"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find("|="), std::string::npos) << run.err;
}

TEST_F(KeysRunTest, PresetsKeepKeys) {
  const std::string eased =
      R"({"intensity": {"a": 1, "k": [{"t": 0, "s": [0], "o": {"x": [0.3], "y": [0]},)"
      R"( "i": {"x": [0.7], "y": [1]}}, {"t": 10, "s": [100]}]}, "lens.scale": "0~=50; 9=80"})";
  WriteFile("moving.json", eased);
  const std::string preset = "moving.json";
  const std::string saved = "saved.json";
  const ToolResult run = Run({"params", "--preset", preset, "--save-preset", saved});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const auto json = nlohmann::json::parse(ReadFile(saved));
  EXPECT_EQ(json["lens.scale"], "0~=50; 9=80");
  EXPECT_EQ(json["intensity"], nlohmann::json::parse(eased)["intensity"]);
  EXPECT_EQ(Params({"--preset", saved, "--at", "5"}), Params({"--preset", preset, "--at", "5"}));
  EXPECT_EQ(Params({"--preset", saved, "--at", "5"}),
            Params({"--preset", preset, "--set", "intensity=50", "--at", "5"}));
}

TEST_F(KeysRunTest, RendersTheFrameAsked) {
  std::string pixels = "P6 8 6 255\n";
  for (int i = 0; i < 8 * 6 * 3; ++i) pixels += static_cast<char>(i * 7 % 256);
  WriteFile("in.ppm", pixels);
  const auto render = [&](const char* name, const std::vector<std::string>& settings) {
    std::vector<std::string> arguments = {"render", "in.ppm", name};
    arguments.insert(arguments.end(), settings.begin(), settings.end());
    const ToolResult run = Run(arguments);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    return ReadFile(name);
  };
  const std::string keys = "lightness.amount=0=0; 10=50";
  const std::string at4 = render("a.ppm", {"--set", keys, "--at", "4"});
  EXPECT_EQ(at4, render("b.ppm", {"--set", "lightness.amount=20"}));
  EXPECT_NE(at4, render("c.ppm", {"--set", keys}));
}

TEST_F(KeysRunTest, ListsAndDrawsCurves) {
  const std::string plot = "curves.svg";
  const ToolResult run = Run({"keys", "--set", "fast-blur.amount=0=0; 25~=40; 50=0", "--set",
                              "lens.position=0=0,0; 50=10,90", "--plot", plot});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.out.find("fast-blur.amount: 0=0; 25~=40; 50=0\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("frames 0 to 50"), std::string::npos) << run.out;
  const std::string svg = ReadFile(plot);
  const std::regex line("<polyline");
  EXPECT_EQ(std::distance(std::sregex_iterator(svg.begin(), svg.end(), line), {}), 3);
  EXPECT_EQ(Run({"keys", "--set", "intensity=0=5", "--plot", plot}).exitCode, 1);
  EXPECT_EQ(Run({"keys", "--set", "intensity=0=5", "--plot", plot, "--force"}).exitCode, 0);
}

TEST_F(KeysRunTest, ListsAsJson) {
  const ToolResult run = Run({"keys", "--json", "--fps", "50", "--plot", "curves.svg", "--set",
                              "intensity=0~=10; 1s=20", "--set", "mode=0|=Normal; 5|=Add"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const auto json = nlohmann::json::parse(run.out);
  EXPECT_EQ(json.at("framesPerSecond"), 50);
  EXPECT_EQ(json.at("first"), 0);
  EXPECT_EQ(json.at("last"), 50);
  ASSERT_EQ(json.at("controls").size(), 2U);
  const auto& keys = json["controls"][0].at("keys");
  EXPECT_EQ(json["controls"][0].at("name"), "intensity");
  EXPECT_EQ(keys, nlohmann::json::parse(R"([{"frame": 0, "value": 10, "stretch": "smooth"},
                                            {"frame": 50, "value": 20, "stretch": "linear"}])"));
  EXPECT_EQ(json["controls"][1].at("keys")[1].at("value"), "Add");
  EXPECT_EQ(json["controls"][1].at("keys")[1].at("stretch"), "hold");
}

TEST_F(KeysRunTest, StandardInputIsReadOnce) {
  ToolOptions options;
  options.input = "P6 1 1 255\nabc";
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"render", "-", "out.png", "--keys", "-"},
        {"render", "in.png", "out.png", "--preset", "-", "--keys", "-"},
        {"keys", "--preset", "-", "--keys", "-"},
        {"params", "--preset", "-", "--keys", "-"}}) {
    ExpectMessage(Run(command, options), 2, {"standard input (-) can be read only once"});
  }
}

TEST_F(KeysRunTest, KeysFromTheClipboard) {
  const std::string file = "copied.txt";
  WriteFile(file,
            "Adobe After Effects 8.0 Keyframe Data\n\n\tUnits Per Second\t50\n\n"
            "Effects\tVitrell #1\tFeather #7\n\tFrame\tpercent\n\t0\t10\n\t50\t60\n\n"
            "Transform\tOpacity\n\tFrame\n\t0\t1\n\nEnd of Keyframe Data\n");
  const ToolResult run = Run({"params", "--json", "--keys", file, "--at", "10"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, Params({"--set", "lens.feather=30"}));
  EXPECT_NE(run.err.find("Transform / Opacity"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("no easing"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("50 per second"), std::string::npos) << run.err;
  WriteFile(file, "something else");
  EXPECT_EQ(Run({"params", "--keys", file}).exitCode, 1);
}

}  // namespace
}  // namespace vitrell::cli
