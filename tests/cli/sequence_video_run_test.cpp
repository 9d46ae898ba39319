// Sequences into videos.
#include <array>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/video_files.h"

namespace vitrell::cli {
namespace {

constexpr const char* kPlate = "plate.####.png";

class SequenceVideoRunTest : public VideoTest {
 protected:
  static std::string Frame(const std::string& name, int number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%s.%04d.png", name.c_str(), number);
    return text.data();
  }
  // From frame 1 on.
  void MakePlate(int frames, const std::string& pixels = "rgb24") const {
    Ffmpeg("-f lavfi -i testsrc2=s=48x32:r=25,noise=alls=40:allf=t -frames:v " +
           std::to_string(frames) + " -pix_fmt " + pixels + " plate.%04d.png");
  }
  std::string HashesOfFrames(const std::string& name, const std::string& pixels) const {
    return FrameHashes(name + ".%04d.png", pixels);
  }
  ToolResult Render(const std::string& output, std::vector<std::string> more,
                    const std::string& input = kPlate) const {
    more.insert(more.begin(), {"render", input, output});
    return Run(more);
  }
};

TEST_F(SequenceVideoRunTest, EveryBitOfEveryFrameIsThere) {
  for (const std::string pixels : {"rgb24", "rgba", "rgb48be", "rgba64be"}) {
    MakePlate(5, pixels);
    const ToolResult run = Neutral(kPlate, "out.mkv", {"--force"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(FrameHashes("out.mkv", pixels), HashesOfFrames("plate", pixels)) << pixels;
  }
}

TEST_F(SequenceVideoRunTest, TheRateIsToldOrChosen) {
  MakePlate(5);
  const ToolResult usual = Neutral(kPlate, "out.mov");
  EXPECT_NE(usual.err.find("out.mov: shows 25 frames per second; --fps"), std::string::npos)
      << usual.err;
  EXPECT_EQ(Probe("out.mov", "stream=r_frame_rate,nb_frames"), "r_frame_rate=25/1\nnb_frames=5\n");
  const ToolResult chosen = Neutral(kPlate, "out.mp4", {"--fps", "23.976"});
  EXPECT_EQ(chosen.err, "");
  EXPECT_EQ(Probe("out.mp4", "stream=r_frame_rate,nb_frames"),
            "r_frame_rate=24000/1001\nnb_frames=5\n");
}

TEST_F(SequenceVideoRunTest, FramesAreThoseOfTheRenderedSequenceOnAnyJobs) {
  MakePlate(6);
  Ffmpeg("-f lavfi -i testsrc2=s=48x32 -frames:v 3 layer.%d.png");
  const std::vector<std::string> look = {
      "--set",          "intensity=0=0; 6=100", "--set",    "lens.type=custom",
      "--custom-layer", "layer.#.png",          "--frames", "2-6"};
  ASSERT_EQ(Render("look.####.png", look).exitCode, 0);
  std::vector<std::string> video = look;
  video.insert(video.end(), {"--threads", "4", "--jobs", "1"});
  ASSERT_EQ(Render("one.mkv", video).exitCode, 0);
  EXPECT_EQ(FrameHashes("one.mkv", "rgb24"),
            Shell("ffmpeg -nostdin -v error -start_number 2 -i look.%04d.png -pix_fmt rgb24 -f "
                  "framehash - | grep -v '^#' | cut -d, -f6"));
  video.back() = "3";
  const ToolResult three = Render("three.mkv", video);
  ASSERT_EQ(three.exitCode, 0) << three.err;
  EXPECT_NE(three.err.find("layer.#.png: the custom layer ends with frame 3"), std::string::npos)
      << three.err;
  EXPECT_TRUE(ReadFile("one.mkv") == ReadFile("three.mkv"));
}

TEST_F(SequenceVideoRunTest, OneSizeIsNeeded) {
  MakePlate(5);
  Ffmpeg("-f lavfi -i testsrc2=s=30x20 -frames:v 1 " + Frame("plate", 4));
  ExpectMessage(Render("out.mkv", {"--fps", "25"}), 1,
                {"plate.####.png: frame 4 has 30 x 20 pixels, those before have 48 x 32",
                 "the first 3 frames are kept as out.partial.mkv"});
  EXPECT_EQ(Probe("out.partial.mkv", "stream=nb_read_frames", "-count_frames"),
            "nb_read_frames=3\n");
  EXPECT_FALSE(std::filesystem::exists(InFolder("out.mkv")));
}

TEST_F(SequenceVideoRunTest, OneDepthIsNeededUnlessItIsChosen) {
  MakePlate(2);
  Ffmpeg("-f lavfi -i testsrc2=s=48x32,format=rgb48be -frames:v 1 " + Frame("plate", 3));
  ExpectMessage(Render("out.mkv", {"--fps", "25"}), 1,
                {"plate.####.png: frame 3 has more than 8 bits in a channel, those before have 8;",
                 "--depth", "the first 2 frames are kept as out.partial.mkv"});
  ExpectMessage(Render("down.mkv", {"--fps", "25", "--frames", "3-1"}), 1,
                {"frame 2 has 8 bits in a channel, those before have more than 8;"});
  for (const std::string depth : {"8", "16"}) {
    const std::string out = "chosen" + depth + ".mkv";
    EXPECT_EQ(Render(out, {"--fps", "25", "--depth", depth}).exitCode, 0);
    EXPECT_EQ(Probe(out, "stream=nb_read_frames", "-count_frames"), "nb_read_frames=3\n");
  }
}

TEST_F(SequenceVideoRunTest, HolesAndDamageAreTold) {
  MakePlate(5);
  std::filesystem::remove(InFolder(Frame("plate", 2)));
  ExpectMessage(Render("out.mkv", {"--fps", "25", "--frames", "1-5"}), 1,
                {"frames 2 are not there", "--missing"});
  EXPECT_EQ(Render("out.mkv", {"--frames", "1-5", "--missing", "hold"}).exitCode, 0);
  EXPECT_EQ(Probe("out.mkv", "stream=nb_read_frames", "-count_frames"), "nb_read_frames=5\n");
  WriteFile(Frame("plate", 4), ReadFile(Frame("plate", 4)).substr(0, 300));
  const ToolResult cut = Render("cut.mkv", {"--fps", "25", "--quiet"});
  ExpectMessage(cut, 1, {"plate.0004.png: is damaged", "the first 2 frames are kept"});
  ExpectMessage(Render("out.mkv", {"--keep-going"}), 2, {"--keep-going", "OUTPUT is a video"});
  ExpectMessage(Render("out.mkv", {"--frames-out", "1-"}), 2, {"--frames-out"});
}

TEST_F(SequenceVideoRunTest, TransparencyIsKeptOrTold) {
  MakePlate(3, "rgba");
  // Of which one is transparent.
  Ffmpeg("-y -f lavfi -i color=red@0.5:s=48x32,format=rgba -frames:v 1 " + Frame("plate", 2));
  const ToolResult flat = Neutral(kPlate, "out.mp4");
  EXPECT_EQ(flat.exitCode, 0);
  EXPECT_NE(flat.err.find("stores no transparency; the video is laid over black"),
            std::string::npos)
      << flat.err;
  EXPECT_EQ(Neutral(kPlate, "strict.mp4", {"--strict"}).exitCode, 1);
  EXPECT_EQ(Neutral(kPlate, "strict.mkv", {"--strict"}).exitCode, 0);
  EXPECT_FALSE(std::filesystem::exists(InFolder("strict.mp4")));
  EXPECT_FALSE(std::filesystem::exists(InFolder("strict.partial.mp4")));
}

TEST_F(SequenceVideoRunTest, OnePictureMayBeAllFramesAndWhatIsThereMayStay) {
  MakePlate(2);
  const std::vector<std::string> fade = {"--frames",   "0-4", "--set", "intensity=0=0; 4=100",
                                         "--existing", "skip"};
  ASSERT_EQ(Render("out.mkv", fade, Frame("plate", 1)).exitCode, 0);
  EXPECT_EQ(Probe("out.mkv", "stream=nb_read_frames", "-count_frames"), "nb_read_frames=5\n");
  const ToolResult again = Render("out.mkv", fade, Frame("plate", 1));
  EXPECT_NE(again.out.find("out.mkv: is there already"), std::string::npos) << again.out;
  const ToolResult other = Render("out.mkv", fade, Frame("plate", 2));
  EXPECT_NE(other.err.find("is made of something else"), std::string::npos) << other.err;
}

}  // namespace
}  // namespace vitrell::cli
