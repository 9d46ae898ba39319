// Videos into pictures where something goes wrong: damaged files, effects that fail, signals,
// disks.
#include <signal.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "cli/video_pictures.h"

namespace vitrell::cli {
namespace {

class VideoPicturesFaultsRunTest : public VideoPicturesTest {};

TEST_F(VideoPicturesFaultsRunTest, ATruncatedVideoGivesTheFramesUpToThere) {
  MakeVideo(20);
  const std::string whole = ReadFile("in.mkv");
  WriteFile("in.mkv", whole.substr(0, whole.size() / 2));
  ExpectMessage(Neutral("in.mkv", kPictures, {"--quiet"}), 1, {"in.mkv: ends "});
  const std::string out = Out();
  EXPECT_EQ(out.find(PictureNames({0, 1, 2})), 0U) << out;
  EXPECT_EQ(out.find("look.0015.png"), std::string::npos) << out;
}

TEST_F(VideoPicturesFaultsRunTest, AChangeOfSizeGivesTheFramesUpToThere) {
  for (const auto& [name, size] : {std::pair{"a.m2v", "64x48"}, std::pair{"b.m2v", "96x80"}}) {
    Ffmpeg("-f lavfi -i testsrc2=s=" + std::string(size) +
           ":r=25:d=0.2 -c:v mpeg2video -flags low_delay -bf 0 -f mpeg2video " + name);
  }
  WriteFile("in.m2v", ReadFile("a.m2v") + ReadFile("b.m2v"));
  ExpectMessage(Neutral("in.m2v", kPictures, {"--quiet"}), 1,
                {"in.m2v: changes its size at frame 5 from 64 x 48 to 96 x 80"});
  EXPECT_EQ(Out(), PictureNames({0, 1, 2, 3, 4}));
}

TEST_F(VideoPicturesFaultsRunTest, FailuresAreThoseOfFrames) {
  MakeVideo(4);
  const auto work = [&](const std::string& what, std::vector<std::string> more) {
    more.insert(more.end(), {"--effect", VITRELL_FAKE_EFFECT_PATH, "--set", "test.work=" + what,
                             "--force", "--jobs", "1"});
    return Render(more);
  };
  const ToolResult one = work("0|=Copy; 2|=Out of Memory; 3|=Copy", {"--keep-going"});
  EXPECT_NE(one.err.find("1 of 4 frames failed: 2."), std::string::npos) << one.err;
  EXPECT_EQ(one.exitCode, 75);
  EXPECT_EQ(Out(), PictureNames({0, 1, 3}));
  const ToolResult died = work("0|=Copy; 1|=Kill; 2|=Copy", {"--keep-going"});
  EXPECT_EQ(died.exitCode, 75) << died.err;
  EXPECT_NE(died.err.find("frame 1 was ended by signal 9"), std::string::npos) << died.err;
}

TEST_F(VideoPicturesFaultsRunTest, SignalsEndTheWorkersAndLeaveNoFiles) {
  MakeVideo(6);
  for (const int signal : {SIGINT, SIGTERM}) {
    std::filesystem::remove(InFolder("rendering"));
    RunningTool tool({"render", "in.mkv", kPictures, "--effect", VITRELL_FAKE_EFFECT_PATH, "--jobs",
                      "2", "--set", "test.work=wait"},
                     Folder());
    for (int i = 0; i < 1500 && !std::filesystem::remove(InFolder("rendering")); ++i) {
      ::usleep(20000);
    }
    tool.Signal(signal);
    const ToolResult result = tool.Wait();
    EXPECT_EQ(result.exitCode, signal == SIGINT ? 130 : 143) << result.err;
    EXPECT_NE(result.err.find("cancelled. "), std::string::npos) << result.err;
    EXPECT_EQ(Out(), "");
  }
}

TEST_F(VideoPicturesFaultsRunTest, AFullDiskMayBeTriedAgain) {
  MakeVideo(6);
  if (::mount("tmpfs", InFolder("out").c_str(), "tmpfs", 0, "size=16k") != 0) {
    GTEST_SKIP() << "no right to mount here";
  }
  const ToolResult full = Neutral("in.mkv", kPictures, {"--keep-going"});
  const std::string left = Shell("ls -A out | grep -v '^look' | wc -l");
  ::umount(InFolder("out").c_str());
  EXPECT_EQ(full.exitCode, 75) << full.err;
  EXPECT_NE(full.err.find("No space left on device"), std::string::npos) << full.err;
  EXPECT_EQ(left, "0\n");
}

}  // namespace
}  // namespace vitrell::cli
