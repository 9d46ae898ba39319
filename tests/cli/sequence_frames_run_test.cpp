// Which frames of a sequence are rendered: sets, numbers, holes, parts.
#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/sequence_files.h"

namespace vitrell::cli {
namespace {

class SequenceFramesRunTest : public SequenceRunTest {};

TEST_F(SequenceFramesRunTest, ChoosesAndRenumbersFrames) {
  MakePlate(1, 9);
  EXPECT_EQ(Render({"--frames", "9-1x4"}).exitCode, 0);
  EXPECT_EQ(Out(), Looks({1, 5, 9}));
  EXPECT_EQ(Render({"--frames", "9-7", "--frames-out", "101-"}, "plate.@@@@.png", "out/b%04d.png")
                .exitCode,
            0);
  EXPECT_EQ(Pixels("out/b0101.png").size(), Pixels("plate.0009.png").size());
  EXPECT_EQ(Run({"render", "plate.0009.png", "nine.png"}).exitCode, 0);
  EXPECT_EQ(Pixels("out/b0101.png"), Pixels("nine.png"));
  ExpectMessage(Render({"--frames", "1-3", "--frames-out", "1-2"}), 2, {"--frames-out", "1-"});
}

TEST_F(SequenceFramesRunTest, OnePictureServesAllFrames) {
  MakePlate(1, 1);
  EXPECT_EQ(Render({"--frames=-1-1", "--set", "intensity=0=0; 1=100"}, "plate.0001.png").exitCode,
            0);
  EXPECT_EQ(Out(), (std::vector<std::string>{"look.-001.png", "look.0000.png", "look.0001.png"}));
  const std::vector<std::string> still = {"render", "plate.0001.png", "s.png", "--set",
                                          "intensity=0"};
  EXPECT_EQ(Run(still).exitCode, 0);
  EXPECT_EQ(Pixels("out/look.-001.png"), Pixels("s.png"));
  EXPECT_NE(Pixels("out/look.0001.png"), Pixels("plate.0001.png"));
}

TEST_F(SequenceFramesRunTest, WrongNamesAreWrongUsage) {
  MakePlate(1, 2);
  ExpectMessage(Render({}, kPlate, "out.png"), 2, {"out.png", "no place for a frame's number"});
  ExpectMessage(Render({}, "p##_##.png"), 2, {"p##_##.png", "several places"});
  ExpectMessage(Render({}, kPlate, "o#_#.png"), 2, {"several places"});
  ExpectMessage(Render({"--frames", "1-x"}), 2, {"1-x", "no set of frames"});
  ExpectMessage(Render({}, kPlate, "plate.@@@@.png"), 2, {"same sequence as INPUT"});
  ExpectMessage(Render({"--at", "3"}), 2, {"--at"});
  ExpectMessage(Render({"--part", "3/2"}), 2, {"--part 3/2"});
  ExpectMessage(Render({"--existing", "skip"}, "plate.0001.png", "still.png"), 2,
                {"--existing", "sequences"});
  ExpectMessage(Render({}, "none.####.png"), 1, {"none.####.png", "no frame of this name"});
  EXPECT_TRUE(Out().empty());
}

TEST_F(SequenceFramesRunTest, MissingFramesAreToldSkippedHeldOrBlack) {
  MakePlate(1, 2);
  MakePlate(5, 5);
  ExpectMessage(Render({"--frames", "1-6"}), 1, {kPlate, "frames 3,4,6 are not there"});
  EXPECT_TRUE(Out().empty());
  ToolResult run = Render({});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_TRUE(Holds(run.err, "frames 3,4 are not there and are left out")) << run.err;
  EXPECT_EQ(Out(), Looks({1, 2, 5}));
  run = Render({"--frames", "0-6", "--missing", "hold"}, kPlate, "out/hold.####.png");
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(Pixels("out/hold.0004.png"), Pixels("out/look.0002.png"));
  EXPECT_EQ(Pixels("out/hold.0006.png"), Pixels("out/look.0005.png"));
  EXPECT_EQ(Pixels("out/hold.0000.png"), Pixels("out/look.0001.png"));
  EXPECT_EQ(Render({"--missing", "black"}, kPlate, "out/black.####.png").exitCode, 0);
  const std::vector<uint16_t> black = Pixels("out/black.0004.png");
  ASSERT_EQ(black.size(), 24U * 16 * 3 + 24U * 16);
  for (std::size_t i = 0; i < black.size(); ++i) ASSERT_EQ(black[i], i % 4 == 3 ? 255 : 0);
  EXPECT_EQ(Pixels("out/black.0005.png"), Pixels("out/look.0005.png"));
  EXPECT_EQ(Render({"--frames", "1-6", "--missing", "skip"}, kPlate, "out/s.####.png").exitCode, 0);
  EXPECT_FALSE(std::filesystem::exists(InFolder("out/s.0003.png")));
}

TEST_F(SequenceFramesRunTest, PartsTogetherAreTheWhole) {
  MakePlate(1, 7);
  std::vector<std::string> all;
  for (int part = 1; part <= 3; ++part) {
    const ToolResult run =
        Render({"--part", std::to_string(part) + "/3", "--status", "status.json", "--quiet"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
  }
  EXPECT_EQ(Out(), Looks({1, 2, 3, 4, 5, 6, 7}));
  std::istringstream lines(ReadFile("status.2-of-3.json"));
  std::vector<int> frames;
  for (std::string line; std::getline(lines, line);) {
    const auto json = nlohmann::json::parse(line);
    EXPECT_EQ(json["state"], "done");
    EXPECT_EQ(json["frames"], 2);
    EXPECT_GE(json["ms"], 0);
    frames.push_back(json["frame"]);
  }
  std::sort(frames.begin(), frames.end());
  EXPECT_EQ(frames, (std::vector<int>{3, 4}));
}

// The set begins with a dash, which need not be glued to the option.
TEST_F(SequenceFramesRunTest, NumbersMayBeNegative) {
  MakePlate(1, 5);
  for (int i = 1; i <= 5; ++i) {
    std::filesystem::rename(InFolder(Name("plate.", i)),
                            InFolder("plate.-00" + std::to_string(i) + ".png"));
  }
  const std::vector<std::string> all = {"look.-001.png", "look.-002.png", "look.-003.png",
                                        "look.-004.png", "look.-005.png"};
  ASSERT_EQ(Render({"--frames=-5--1"}).exitCode, 0);
  EXPECT_EQ(Out(), all);
  ASSERT_EQ(Render({"--frames", "-5--1", "--force"}).exitCode, 0);
  ASSERT_EQ(Render({"--force"}).exitCode, 0);
  EXPECT_EQ(Out(), all);
  EXPECT_EQ(Run({"check", kLook, "--frames=-5--1"}).exitCode, 0);
  ASSERT_EQ(Render({"--frames=-2--1", "--frames-out", "1-"}, kPlate, "out/n.####.png").exitCode, 0);
  EXPECT_EQ(Pixels("out/n.0001.png"), Pixels("out/look.-002.png"));
}

TEST_F(SequenceFramesRunTest, LongRangesTakeNoMemory) {
  MakePlate(1, 3);
  const std::string many = "1-1000000";
  const auto memoryOf = [&](const std::vector<std::string>& arguments, int exitCode) {
    const ToolResult run = Run(arguments);
    EXPECT_EQ(run.exitCode, exitCode) << run.err;
    return run.maxKilobytes;
  };
  // Eight bytes for each would be more than that, also of half as many.
  const long little = 3500;
  const long few = memoryOf({"render", kPlate, kLook}, 0);
  EXPECT_LT(memoryOf({"render", kPlate, kLook, "--frames", many, "--missing", "skip", "--force",
                      "--quiet"},
                     0),
            few + little);
  EXPECT_LT(memoryOf({"render", kPlate, kLook, "--frames", many, "--keep-going", "--force"}, 1),
            few + little);
  EXPECT_LT(memoryOf({"render", kPlate, kLook, "--frames", many, "--part", "1/99999", "--missing",
                      "skip", "--force", "--quiet"},
                     0),
            few + little);
  const long checked = memoryOf({"check", kLook, "--frames", "1-3"}, 0);
  EXPECT_LT(memoryOf({"check", kLook, "--frames", "1-500000"}, 1), checked + little);
}

// What holds for one picture holds for each of them.
TEST_F(SequenceFramesRunTest, OptionsOfStillsHoldForEveryFrame) {
  MakePlate(1, 2);
  const auto same = [&](const std::string& extension, std::vector<std::string> options) {
    const ToolResult run = Render(options, kPlate, "out/f.####." + extension);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    for (int frame = 1; frame <= 2; ++frame) {
      const std::string still = "still." + extension;
      std::vector<std::string> arguments = {"render", Name("plate.", frame), still, "--force"};
      arguments.insert(arguments.end(), options.begin(), options.end());
      EXPECT_EQ(Run(arguments).exitCode, 0);
      const std::string name = "out/f.000" + std::to_string(frame) + "." + extension;
      EXPECT_EQ(Pixels(name), Pixels(still)) << name;
    }
    const auto size = ReadFile("out/f.0001." + extension).size();
    std::filesystem::remove_all(InFolder("out"));
    std::filesystem::create_directory(InFolder("out"));
    return size;
  };
  EXPECT_LT(same("jpg", {"--quality", "20", "--quiet"}), same("jpg", {"--quiet"}));
  EXPECT_GT(same("png", {"--depth", "16"}), same("png", {"--depth", "8"}));
  EXPECT_NE(same("png", {"--channels", "R,G,B"}), 0U);
  const ToolResult wrong = Render({"--channels", "R,X", "--jobs", "1"}, kPlate, "out/f.####.png");
  EXPECT_EQ(wrong.exitCode, 2) << wrong.err;
  EXPECT_TRUE(Holds(wrong.err, "has no channels \"R,X\"")) << wrong.err;
}

}  // namespace
}  // namespace vitrell::cli
