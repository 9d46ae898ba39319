// Some frames of a video, with what belongs to their time.
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "cli/video_files.h"

namespace vitrell::cli {
namespace {

constexpr const char* kTwoChapters =
    ";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\nEND=600\ntitle=One\n"
    "[CHAPTER]\nTIMEBASE=1/1000\nSTART=600\nEND=1200\ntitle=Two\n";

class VideoFramesRunTest : public VideoTest {
 protected:
  // 30 frames in 1.2 seconds.
  void MakeVideo(const std::string& file, const std::string& options) const {
    Ffmpeg("-f lavfi -i testsrc2=s=32x32:r=25 -f lavfi -i sine=r=8000:d=1.2 -frames:v 30 " +
           options + " " + file);
  }
  // What ffprobe tells of one entry: "packet=pts_time".
  std::vector<double> Numbers(const std::string& file, const std::string& entry,
                              const std::string& stream) const {
    std::istringstream lines(Probe(file, entry, "-select_streams " + stream));
    std::vector<double> numbers;
    for (std::string line; std::getline(lines, line);) {
      numbers.push_back(std::strtod(line.substr(line.find('=') + 1).c_str(), nullptr));
    }
    return numbers;
  }
  // Those from `begin` on and before `end`, seen from `begin`.
  static std::vector<double> Between(const std::vector<double>& times, double begin, double end) {
    std::vector<double> found;
    for (const double time : times) {
      if (time > begin - 1e-6 && time < end - 1e-6) found.push_back(time - begin);
    }
    return found;
  }
  static void ExpectNear(const std::vector<double>& found, const std::vector<double>& expected) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) EXPECT_NEAR(found[i], expected[i], 0.0011) << i;
  }
};

TEST_F(VideoFramesRunTest, TheyAreThoseOfTheWholeVideo) {
  MakeVideo("in.mkv", "-c:v ffv1 -pix_fmt bgr0 -c:a pcm_s16le");
  const std::vector<std::string> look = {"--set", "lens.type=none", "--set", "fast-blur.amount=5"};
  const auto render = [&](const std::string& output, const std::vector<std::string>& frames) {
    std::vector<std::string> arguments = {"render", "in.mkv", output, "--quiet"};
    arguments.insert(arguments.end(), look.begin(), look.end());
    arguments.insert(arguments.end(), frames.begin(), frames.end());
    return Run(arguments).exitCode;
  };
  ASSERT_EQ(render("whole.mkv", {}), 0);
  const std::string whole = FrameHashes("whole.mkv", "bgr0");
  const std::size_t line = whole.size() / 30;
  const std::vector<double> sound = Numbers("in.mkv", "packet=pts_time", "a");
  const auto expect = [&](const std::string& frames, std::size_t first, std::size_t count) {
    ASSERT_EQ(render("out.mkv", {"--force", "--frames", frames}), 0);
    EXPECT_EQ(FrameHashes("out.mkv", "bgr0"), whole.substr(first * line, count * line)) << frames;
    const double begin = static_cast<double>(first) / 25;
    const bool toTheEnd = first + count == 30;
    const double end = toTheEnd ? 100 : begin + static_cast<double>(count) / 25;
    ExpectNear(Numbers("out.mkv", "packet=pts_time", "v"),
               Between(Numbers("in.mkv", "packet=pts_time", "v"), begin, end));
    ExpectNear(Numbers("out.mkv", "packet=pts_time", "a"), Between(sound, begin, end));
  };
  expect("10-19", 10, 10);
  expect("7", 7, 1);
  expect("20-", 20, 10);
  expect("0..4", 0, 5);
  expect("25-29", 25, 5);
  ASSERT_EQ(render("all.mkv", {"--frames", "0-"}), 0);
  EXPECT_TRUE(ReadFile("all.mkv") == ReadFile("whole.mkv"));
}

// Frame 0 is the first one that is rendered, and frame -1 the last one.
TEST_F(VideoFramesRunTest, KeysBeginAndEndWithWhatIsRendered) {
  MakeVideo("in.mkv", "-c:v ffv1 -pix_fmt bgr0 -c:a pcm_s16le");
  const auto render = [&](const std::string& output, const std::string& keys,
                          const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {"render", "in.mkv", output, "--quiet", "--force"};
    arguments.insert(arguments.end(), {"--set", "lens.type=none", "--set", keys});
    arguments.insert(arguments.end(), options.begin(), options.end());
    return Run(arguments).exitCode;
  };
  ASSERT_EQ(render("whole.mkv", "fast-blur.amount=10=0; 15=20; 19=5", {}), 0);
  const std::string whole = FrameHashes("whole.mkv", "bgr0");
  const std::size_t line = whole.size() / 30;
  const std::string expected = whole.substr(10 * line, 10 * line);
  const std::vector<std::string> range = {"--frames", "10-19"};
  for (const char* keys : {"fast-blur.amount=0=0; 5=20; 9=5", "fast-blur.amount=0s=0; 0.2s=20; 9=5",
                           "fast-blur.amount=-10=0; -5=20; -1=5"}) {
    ASSERT_EQ(render("out.mkv", keys, range), 0) << keys;
    EXPECT_EQ(FrameHashes("out.mkv", "bgr0"), expected) << keys;
  }
  ASSERT_EQ(render("out.mkv", "fast-blur.amount=0=0; -15=20; -11=5", {"--frames", "10-"}), 0);
  EXPECT_EQ(FrameHashes("out.mkv", "bgr0").substr(0, 10 * line), expected);
}

TEST_F(VideoFramesRunTest, ChaptersAndTimecodeMoveAlong) {
  WriteFile("chapters.txt", kTwoChapters);
  MakeVideo("base.mov", "-c:v libx264 -bf 2 -c:a aac -timecode 01:02:03:04");
  Ffmpeg("-i base.mov -i chapters.txt -map 0:v -map 0:a -map_chapters 1 -c copy in.mov");
  const ToolResult run = Neutral("in.mov", "out.mov", {"--frames", "10-19", "--strict"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(Probe("out.mov", "stream_tags=timecode", "-select_streams v"),
            "TAG:timecode=01:02:03:14\n");
  EXPECT_EQ(Probe("out.mov", "chapter=start_time,end_time:chapter_tags=title"),
            "start_time=0.000000\nend_time=0.200000\nTAG:title=One\n"
            "start_time=0.200000\nend_time=0.400000\nTAG:title=Two\n");
  // The second one is all that is left.
  ASSERT_EQ(Neutral("in.mov", "late.mov", {"--frames", "20-24", "--strict"}).exitCode, 0);
  EXPECT_EQ(Probe("late.mov", "chapter=start_time,end_time:chapter_tags=title"),
            "start_time=0.000000\nend_time=0.200000\nTAG:title=Two\n");
}

TEST_F(VideoFramesRunTest, VariableRatesKeepTheirDistances) {
  Ffmpeg(
      "-f lavfi -i testsrc2=s=32x32:r=30:d=2 -vf \"select='not(mod(n,3))+gt(mod(n,7),4)'\" "
      "-fps_mode passthrough -c:v libx264 -bf 2 in.mov");
  ASSERT_EQ(Neutral("in.mov", "out.mov", {"--frames", "8-15", "--quiet"}).exitCode, 0);
  const std::vector<double> times = Numbers("in.mov", "frame=pts_time", "v");
  ExpectNear(Numbers("out.mov", "frame=pts_time", "v"), Between(times, times[8], times[16]));
}

TEST_F(VideoFramesRunTest, FramesThatAreNotThereAreTold) {
  MakeVideo("in.mkv", "-c:v ffv1 -c:a pcm_s16le");
  ExpectMessage(Neutral("in.mkv", "out.mkv", {"--frames", "20-40"}), 1,
                {"in.mkv: has only 30 frames; --frames asks for frame 40",
                 "the first 10 frames are kept as out.partial.mkv"});
  ExpectMessage(Neutral("in.mkv", "out.mkv", {"--frames", "30-40"}), 1, {"has only 30 frames"});
  for (const char* frames : {"1,5", "9-3", "1-9x2", "x", "-5"}) {
    ExpectMessage(Neutral("in.mkv", "out.mkv", {std::string("--frames=") + frames}), 2,
                  {std::string("--frames ") + frames, "without a gap"});
  }
  ExpectMessage(Neutral("in.mkv", "out.mkv", {"--frames", "1-5", "--frames-out", "1-"}), 2,
                {"--frames-out"});
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.mkv", "out.partial.mkv"}));
}

TEST_F(VideoFramesRunTest, WhatIsThereStaysWhileItIsMadeOfTheSame) {
  MakeVideo("in.mkv", "-c:v ffv1 -c:a pcm_s16le");
  Ffmpeg("-f lavfi -i color=gray:s=32x32 -frames:v 1 layer.png");
  std::vector<std::string> look = {
      "--set", "intensity=0=0; 10=50", "--set", "lens.type=custom", "--custom-layer", "layer.png"};
  const auto render = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments = {"render", "in.mkv", "out.mkv", "--existing", "skip"};
    arguments.insert(arguments.end(), look.begin(), look.end());
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Run(arguments);
  };
  const auto expectRendered = [&](const std::vector<std::string>& more, const std::string& why) {
    const ToolResult run = render(more);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("frames, effect"), std::string::npos) << run.out;
    EXPECT_NE(run.err.find(why), std::string::npos) << why << " is not in " << run.err;
    const ToolResult again = render(more);
    EXPECT_EQ(again.exitCode, 0) << again.err;
    EXPECT_NE(again.out.find("out.mkv: is there already"), std::string::npos) << again.out;
  };
  const std::string other = "out.mkv: is made of something else";
  expectRendered({}, "");
  const std::string bytes = ReadFile("out.mkv");
  look[1] = "intensity=0=0; 12=50";
  expectRendered({}, other);
  look[1] = "intensity=0=0; 10=50";
  expectRendered({"--frames", "3-9"}, other);
  expectRendered({"--depth", "16"}, other);
  Ffmpeg("-f lavfi -i color=white:s=32x32 -frames:v 1 layer.png");
  expectRendered({}, other);
  Ffmpeg("-f lavfi -i color=gray:s=32x32 -frames:v 1 layer.png");
  expectRendered({}, other);
  EXPECT_TRUE(ReadFile("out.mkv") == bytes);
  WriteFile("out.mkv", bytes.substr(0, bytes.size() / 2));
  expectRendered({}, "out.mkv: is not whole");
  EXPECT_TRUE(ReadFile("out.mkv") == bytes);
  MakeVideo("in.mkv", "-c:v ffv1 -c:a flac");
  expectRendered({}, other);
  ExpectMessage(Run({"render", "in.mkv", "out.mkv", "--existing", "fail", "--force"}), 1,
                {"out.mkv", "already exists"});
  EXPECT_EQ(Run({"render", "in.mkv", "out.mkv", "--existing", "overwrite"}).exitCode, 0);
  ExpectMessage(Run({"render", "in.mkv", "-", "--existing", "skip"}), 2, {"--existing"});
  EXPECT_EQ(Names(),
            (std::vector<std::string>{"in.mkv", "layer.png", "out.mkv", "out.mkv.vitrell.json"}));
}

}  // namespace
}  // namespace vitrell::cli
