// Videos that end too early, change on the way or are none, and runs that are ended.
#include <signal.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "cli/video_files.h"

namespace vitrell::cli {
namespace {

constexpr useconds_t kMoment = 20000;
constexpr int kMoments = 1500;
constexpr std::uintmax_t kSomeFrames = 400000;

class VideoFaultsRunTest : public VideoTest {
 protected:
  int FramesOf(const std::string& file) const {
    const std::string text = Probe(file, "stream=nb_read_frames", "-count_frames");
    return std::stoi(text.substr(text.find('=') + 1));
  }
  // Until some frames are in the file that has no name yet.
  void WaitForHiddenFile() const {
    for (int i = 0; i < kMoments; ++i) {
      for (const std::string& name : Names()) {
        std::error_code ignored;
        if (name.starts_with(".vitrell") &&
            std::filesystem::file_size(InFolder(name), ignored) > kSomeFrames) {
          return;
        }
      }
      ::usleep(kMoment);
    }
    FAIL() << "no frame was written";
  }
  bool Exists(const std::string& name) const { return std::filesystem::exists(InFolder(name)); }
};

TEST_F(VideoFaultsRunTest, ATruncatedFileKeepsItsFramesUnderANameThatSaysSo) {
  Ffmpeg("-f lavfi -i testsrc2=s=64x48:r=25:d=2 -c:v ffv1 a.mkv");
  Ffmpeg("-i a.mkv -c:v libx264 -g 10 -movflags faststart b.mp4");
  Ffmpeg("-i a.mkv -c:v ffv1 c.avi");
  Ffmpeg("-i a.mkv -pix_fmt yuv420p d.y4m");
  for (const std::string name : {"a.mkv", "b.mp4", "c.avi", "d.y4m"}) {
    const std::string whole = ReadFile(name);
    WriteFile("cut-" + name, whole.substr(0, whole.size() * 7 / 10));
    const ToolResult result = Neutral("cut-" + name, "out.mkv", {"--force"});
    EXPECT_EQ(result.exitCode, 1) << name;
    EXPECT_NE(result.err.find("cut-" + name + ": ends "), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("kept as out.partial.mkv"), std::string::npos) << result.err;
    EXPECT_FALSE(Exists("out.mkv")) << name;
    ASSERT_TRUE(Exists("out.partial.mkv")) << name;
    const int frames = FramesOf("out.partial.mkv");
    EXPECT_GT(frames, 4) << name;
    EXPECT_LT(frames, 50) << name;
    std::filesystem::remove(InFolder("out.partial.mkv"));
  }
}

TEST_F(VideoFaultsRunTest, AChangeOfSizeEndsTheVideoThere) {
  Ffmpeg(
      "-f lavfi -i testsrc2=s=64x48:r=25:d=0.4 -c:v mpeg2video -flags low_delay -bf 0 -f "
      "mpeg2video a.m2v");
  Ffmpeg(
      "-f lavfi -i testsrc2=s=96x80:r=25:d=0.4 -c:v mpeg2video -flags low_delay -bf 0 -f "
      "mpeg2video b.m2v");
  WriteFile("in.m2v", ReadFile("a.m2v") + ReadFile("b.m2v"));
  const ToolResult result = Neutral("in.m2v", "out.mkv");
  EXPECT_EQ(result.exitCode, 1);
  for (const char* piece : {"in.m2v: changes its size at frame 10 from 64 x 48 to 96 x 80",
                            "first 10 frames are kept as out.partial.mkv"}) {
    EXPECT_NE(result.err.find(piece), std::string::npos) << piece << " is not in " << result.err;
  }
  EXPECT_FALSE(Exists("out.mkv"));
  EXPECT_EQ(FramesOf("out.partial.mkv"), 10);
}

TEST_F(VideoFaultsRunTest, FilesWithoutAVideoAreRefused) {
  Ffmpeg("-f lavfi -i sine=d=0.2 sound.m4a");
  Ffmpeg("-f lavfi -i sine=d=0.2 sound.wav");
  ExpectMessage(Run({"render", "sound.m4a", "out.mkv"}), 1, {"sound.m4a", "has no video"});
  ExpectMessage(Run({"render", "sound.wav", "out.mkv"}), 1, {"sound.wav", "has no video"});
  WriteFile("none.y4m", "YUV4MPEG2 W16 H16 F25:1\n");
  ExpectMessage(Run({"render", "none.y4m", "out.mkv"}), 1, {"none.y4m", "has no frames"});
  WriteFile("empty.mkv", "");
  ExpectMessage(Run({"render", "empty.mkv", "out.mkv"}), 1, {"empty.mkv", "cannot be read"});
  ExpectMessage(Run({"render", "missing.mkv", "out.mkv"}), 1, {"missing.mkv", "No such file"});
  EXPECT_EQ(Names(), (std::vector<std::string>{"empty.mkv", "none.y4m", "sound.m4a", "sound.wav"}));
}

TEST_F(VideoFaultsRunTest, WrongUsageIsTold) {
  Ffmpeg("-f lavfi -i testsrc2=s=16x16:r=25:d=0.08 -c:v libx264 in.mp4");
  const auto expect = [&](const std::string& output, const std::vector<std::string>& options,
                          const std::vector<std::string>& pieces) {
    std::vector<std::string> arguments = {"render", "in.mp4", output};
    arguments.insert(arguments.end(), options.begin(), options.end());
    ExpectMessage(Run(arguments), 2, pieces);
  };
  expect("out.png", {}, {"in.mp4: is a video", "mkv"});
  expect("out.mp4", {"--video-codec", "ffv1"}, {"--video-codec ffv1", "cannot hold"});
  expect("out.mkv", {"--video-codec", "none"}, {"--video-codec none", "no such encoder"});
  expect("out.mkv", {"--quality", "50"}, {"--quality", "ffv1"});
  expect("out.mp4", {"--lossless"}, {"--lossless", "libx264"});
  expect("out.mkv", {"--channels", "R,G,B"}, {"--channels"});
  expect("out.mov", {"--pixel-format", "rgb24"}, {"--pixel-format rgb24", "yuv444p10le"});
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.mp4"}));
}

TEST_F(VideoFaultsRunTest, AnExistingOutputStaysUntilTheNewOneIsWhole) {
  Ffmpeg("-f lavfi -i testsrc2=s=16x16:r=25:d=0.4 -c:v ffv1 in.mkv");
  WriteFile("out.mkv", "precious");
  ExpectMessage(Neutral("in.mkv", "out.mkv"), 1, {"out.mkv", "already exists"});
  const std::string whole = ReadFile("in.mkv");
  WriteFile("cut.mkv", whole.substr(0, whole.size() / 2));
  EXPECT_EQ(Neutral("cut.mkv", "out.mkv", {"--force"}).exitCode, 1);
  EXPECT_EQ(ReadFile("out.mkv"), "precious");
  // Too little room: nothing stays.
  ToolOptions little;
  little.maxFileBytes = 4096;
  const ToolResult full = Run({"render", "in.mkv", "full.mkv"}, little);
  EXPECT_EQ(full.exitCode, 1);
  EXPECT_NE(full.err.find("full.mkv: cannot be written (File too large)"), std::string::npos)
      << full.err;
  for (const std::string& name : Names()) EXPECT_EQ(name.find("full"), std::string::npos) << name;
  EXPECT_EQ(Neutral("in.mkv", "out.mkv", {"--dry-run", "--force"}).exitCode, 0);
  EXPECT_EQ(ReadFile("out.mkv"), "precious");
}

TEST_F(VideoFaultsRunTest, SignalsKeepWhatIsRendered) {
  Ffmpeg("-f lavfi -i testsrc2=s=320x180:r=25:d=60 -c:v libx264 -preset ultrafast in.mp4");
  for (const auto& [extension, signal, exitCode] :
       {std::tuple<std::string, int, int>{".mkv", SIGINT, 130}, {".mov", SIGTERM, 143}}) {
    RunningTool tool(
        {"render", "in.mp4", "out" + extension, "--set", "directional-blur.amount=300"}, Folder());
    WaitForHiddenFile();
    tool.Signal(signal);
    const ToolResult result = tool.Wait();
    ExpectMessage(result, exitCode, {"cancelled", "kept as out.partial" + extension});
    EXPECT_FALSE(Exists("out" + extension));
    EXPECT_GT(FramesOf("out.partial" + extension), 0);
    EXPECT_LT(FramesOf("out.partial" + extension), 1500);
  }
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.mp4", "out.partial.mkv", "out.partial.mov"}));
}

// Whoever starts such a run again may have more luck.
TEST_F(VideoFaultsRunTest, AFullDiskMayBeTriedAgain) {
  Ffmpeg("-f lavfi -i testsrc2=s=64x48:r=25:d=1 -c:v ffv1 in.mkv");
  std::filesystem::create_directory(InFolder("disk"));
  if (::mount("tmpfs", InFolder("disk").c_str(), "tmpfs", 0, "size=32k") != 0) {
    GTEST_SKIP() << "no right to mount here";
  }
  const ToolResult result = Neutral("in.mkv", "disk/out.mkv");
  const bool empty = std::filesystem::is_empty(InFolder("disk"));
  ::umount(InFolder("disk").c_str());
  ExpectMessage(result, 75, {"disk/out.mkv: cannot be written (No space left on device)"});
  EXPECT_TRUE(empty);
}

TEST_F(VideoFaultsRunTest, TooLittleMemoryMayBeTriedAgain) {
  Ffmpeg("-f lavfi -i color=s=8000x6000:r=25 -frames:v 1 -c:v ffv1 in.mkv");
  // The program starts in these addresses, but such a frame has no room in them.
  Shell("(ulimit -v 2000000; " VITRELL_TOOL_PATH " render in.mkv out.mkv 2>said; echo $? >code)");
  EXPECT_EQ(ReadFile("code"), "75\n") << ReadFile("said");
  EXPECT_NE(ReadFile("said").find("in.mkv: there is not enough memory"), std::string::npos)
      << ReadFile("said");
  EXPECT_FALSE(Exists("out.mkv"));
}

TEST_F(VideoFaultsRunTest, ReportsTellBothVideos) {
  Ffmpeg("-f lavfi -i testsrc2=s=16x16:r=25:d=0.4 -c:v ffv1 -pix_fmt bgr0 in.mkv");
  const ToolResult result = Neutral("in.mkv", "out.mp4", {"--report", "-"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  for (const char* piece : {"\"frames\": 10", "\"codec\": \"h264\"", "\"pixelFormat\": \"bgr0\"",
                            "\"frameRate\": \"25/1\"", "\"result\": \"done\""}) {
    EXPECT_NE(result.out.find(piece), std::string::npos) << piece << " is not in " << result.out;
  }
}

}  // namespace
}  // namespace vitrell::cli
