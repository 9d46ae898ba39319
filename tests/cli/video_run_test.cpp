// Videos through the program: containers and codecs, sizes, time stamps, colour tags, keys, memory.
#include <array>
#include <cstdlib>
#include <string>

#include "cli/video_files.h"

namespace vitrell::cli {
namespace {

class VideoRunTest : public VideoTest {};

TEST_F(VideoRunTest, TheSmallestAndOddSizesAreWritten) {
  for (const char* form : {"1:1,format=bgr0", "1:1,format=yuv420p", "3:5,format=yuv420p"}) {
    Ffmpeg("-f lavfi -i testsrc2=s=64x64:r=25:d=0.12,scale=" + std::string(form) +
           " -c:v ffv1 in.mkv");
    for (const char* output : {"out.mkv", "out.mov", "out.webm"}) {
      const ToolResult result = Neutral("in.mkv", output, {"--force", "--quiet"});
      EXPECT_EQ(result.exitCode, 0) << form << output << result.err;
      EXPECT_EQ(Probe(output, "stream=nb_read_frames", "-count_frames"), "nb_read_frames=3\n");
    }
  }
  ExpectMessage(Neutral("in.mkv", "out.mp4"), 1, {"out.mp4", "3 x 5", "yuv420p", "odd"});
  EXPECT_EQ(Neutral("in.mkv", "out.mp4", {"--pixel-format", "yuv444p", "--quiet"}).exitCode, 0);
}

TEST_F(VideoRunTest, EachExtensionHasItsCodec) {
  Ffmpeg("-f lavfi -i testsrc2=s=64x48:r=25:d=0.2,format=yuva444p10le -c:v ffv1 in.mkv");
  struct Case {
    std::string output;
    std::string facts;
  };
  // The reader of ProRes 4444 tells 12 bits for any.
  for (const Case& c : {Case{"a.mov", "codec_name=prores\nprofile=4\npix_fmt=yuva444p12le\n"},
                        Case{"a.mkv", "codec_name=ffv1\nprofile=unknown\npix_fmt=gbrap16le\n"}}) {
    const ToolResult result = Neutral("in.mkv", c.output, {"--strict"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Probe(c.output, "stream=codec_name,profile,pix_fmt", "-bitexact"), c.facts);
  }
  Ffmpeg("-f lavfi -i testsrc2=s=64x48:r=25:d=0.2,format=yuv420p -c:v ffv1 plain.mkv");
  for (const Case& c : {Case{"b.mp4", "codec_name=h264\npix_fmt=yuv420p\n"},
                        Case{"b.webm", "codec_name=vp9\npix_fmt=yuv420p\n"},
                        Case{"b.mov", "codec_name=prores\npix_fmt=yuv444p12le\n"}}) {
    EXPECT_EQ(Neutral("plain.mkv", c.output, {"--strict"}).exitCode, 0);
    EXPECT_EQ(Probe(c.output, "stream=codec_name,pix_fmt"), c.facts);
  }
  EXPECT_EQ(Neutral("plain.mkv", "low.mp4", {"--quality", "20"}).exitCode, 0);
  EXPECT_LT(ReadFile("low.mp4").size(), ReadFile("b.mp4").size());
  EXPECT_EQ(Neutral("plain.mkv", "c.mkv", {"--video-codec", "h264"}).exitCode, 0);
  EXPECT_EQ(Probe("c.mkv", "stream=codec_name"), "codec_name=h264\n");
}

TEST_F(VideoRunTest, TimeStampsOfVariableRatesStay) {
  const std::string frames = "-vf \"select='not(mod(n,3))+gt(mod(n,7),4)'\" -fps_mode passthrough ";
  Ffmpeg("-f lavfi -i testsrc2=s=32x32:r=30:d=2 " + frames + "-c:v libx264 -bf 2 in.mov");
  const std::string times = Probe("in.mov", "frame=pts_time");
  for (const char* output : {"out.mov", "out.mp4"}) {
    ASSERT_EQ(Neutral("in.mov", output, {"--quiet"}).exitCode, 0);
    EXPECT_EQ(Probe(output, "frame=pts_time"), times) << output;
  }
  // Matroska counts milliseconds.
  Ffmpeg("-i in.mov -fps_mode passthrough -c:v ffv1 in.mkv");
  ASSERT_EQ(Neutral("in.mkv", "out.mkv", {"--quiet"}).exitCode, 0);
  EXPECT_EQ(Probe("out.mkv", "frame=pts_time"), Probe("in.mkv", "frame=pts_time"));
}

TEST_F(VideoRunTest, ColourTagsAreObeyedAndWritten) {
  // One red in two matrices and ranges: other numbers, the same colour.
  const std::string red = "-f lavfi -i color=red:s=16x16:r=25:d=0.08,format=gbrp,scale=";
  const auto tags = [](const std::string& matrix, const std::string& range) {
    return " -colorspace " + matrix + " -color_range " + range +
           " -color_primaries bt2020 -color_trc smpte2084 ";
  };
  for (const auto& [matrix, scaled, range] : {std::array<std::string, 3>{"bt709", "bt709", "tv"},
                                              {"smpte170m", "bt601", "pc"},
                                              {"bt2020nc", "bt2020", "tv"}}) {
    Ffmpeg(red + "out_color_matrix=" + scaled + ":out_range=" + range +
           ":flags=accurate_rnd,format=yuv444p" + tags(matrix, range) + "-c:v ffv1 in.mkv");
    ASSERT_EQ(Neutral("in.mkv", "rgb.mkv", {"--force", "--quiet"}).exitCode, 0);
    const std::string pixel =
        Shell("ffmpeg -nostdin -v error -i rgb.mkv -frames:v 1 -pix_fmt rgb24 -f rawvideo -");
    EXPECT_NEAR(pixel.at(0) & 0xff, 255, 3) << matrix;
    EXPECT_NEAR(pixel.at(1) & 0xff, 0, 3) << matrix;
    EXPECT_NEAR(pixel.at(2) & 0xff, 0, 3) << matrix;
    EXPECT_EQ(Probe("rgb.mkv", "stream=color_space,color_transfer,color_primaries"),
              "color_space=gbr\ncolor_transfer=smpte2084\ncolor_primaries=bt2020\n");
    ASSERT_EQ(Neutral("in.mkv", "out.mp4", {"--force", "--quiet"}).exitCode, 0);
    const std::string entries = "stream=color_range,color_space,color_transfer,color_primaries";
    EXPECT_EQ(Probe("out.mp4", entries), Probe("in.mkv", entries));
  }
}

TEST_F(VideoRunTest, KeysFollowTheFramesOfTheVideo) {
  Ffmpeg("-f lavfi -i testsrc2=s=32x32:r=10:d=1,format=bgr0 -c:v ffv1 in.mkv");
  const std::string settings = "lens.type=none";
  const auto render = [&](const std::string& keys, const std::string& output) {
    return Run({"render", "in.mkv", output, "--set", settings, "--set", keys, "--quiet"}).exitCode;
  };
  ASSERT_EQ(render("fast-blur.amount=0=0; 5|=0; 6=20", "frames.mkv"), 0);
  ASSERT_EQ(render("fast-blur.amount=0s=0; 0.5s|=0; 0.6s=20", "seconds.mkv"), 0);
  ASSERT_EQ(render("fast-blur.amount=0=0; -5|=0; -4=20", "end.mkv"), 0);
  const std::string moving = FrameHashes("frames.mkv", "bgr0");
  EXPECT_EQ(FrameHashes("seconds.mkv", "bgr0"), moving);
  EXPECT_EQ(FrameHashes("end.mkv", "bgr0"), moving);
  // The first six stand still, the others are blurred.
  const std::string still = FrameHashes("in.mkv", "bgr0");
  const std::size_t line = still.size() / 10;
  EXPECT_EQ(moving.substr(0, 6 * line), still.substr(0, 6 * line));
  for (std::size_t i = 6; i < 10; ++i) {
    EXPECT_NE(moving.substr(i * line, line), still.substr(i * line, line)) << i;
  }
}

TEST_F(VideoRunTest, TheSameCommandGivesTheSameBytes) {
  Ffmpeg("-f lavfi -i testsrc2=s=64x48:r=25:d=0.4 -c:v ffv1 in.mkv");
  for (const std::string extension : {".mkv", ".mov", ".mp4", ".webm"}) {
    ASSERT_EQ(Neutral("in.mkv", "a" + extension, {"--quiet"}).exitCode, 0);
    ASSERT_EQ(Neutral("in.mkv", "b" + extension, {"--quiet"}).exitCode, 0);
    EXPECT_EQ(ReadFile("a" + extension), ReadFile("b" + extension)) << extension;
  }
}

// VITRELL_VIDEO_FRAMES: how many, for a thorough run.
TEST_F(VideoRunTest, MemoryDoesNotGrowWithTheFrames) {
  const char* wanted = std::getenv("VITRELL_VIDEO_FRAMES");
  const std::string many = wanted == nullptr ? "3000" : wanted;
  Ffmpeg("-f lavfi -i testsrc2=s=16x16:r=25 -frames:v 300 -c:v ffv1 few.mkv");
  Ffmpeg("-f lavfi -i testsrc2=s=16x16:r=25 -frames:v " + many + " -c:v ffv1 many.mkv");
  const ToolResult few = Neutral("few.mkv", "out.mov", {"--threads", "1"});
  const ToolResult all = Neutral("many.mkv", "all.mov", {"--threads", "1"});
  ASSERT_EQ(all.exitCode, 0) << all.err;
  EXPECT_NE(all.out.find(" " + many + " frames"), std::string::npos) << all.out;
  EXPECT_EQ(Probe("all.mov", "stream=nb_frames"), "nb_frames=" + many + "\n");
  // An index of the file's frames, which every container has, takes some bytes of each.
  const long perFrame = 200;
  EXPECT_LT(all.maxKilobytes, few.maxKilobytes + 6000 + std::stol(many) * perFrame / 1024);
}

}  // namespace
}  // namespace vitrell::cli
