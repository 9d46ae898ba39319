// Transparency of videos: laid over black where there is none, and read as asked.
#include <string>
#include <vector>

#include "cli/video_files.h"

namespace vitrell::cli {
namespace {

class VideoAlphaRunTest : public VideoTest {};

TEST_F(VideoAlphaRunTest, TransparencyIsLaidOverBlackWhereThereIsNone) {
  Ffmpeg(
      "-f lavfi -i color=white:s=16x16:r=25:d=0.08,format=bgra,colorchannelmixer=aa=0.5 "
      "-c:v ffv1 in.mkv");
  const ToolResult result = Neutral("in.mkv", "out.mp4");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_NE(result.err.find("stores no transparency"), std::string::npos) << result.err;
  const std::string pixel =
      Shell("ffmpeg -nostdin -v error -i out.mp4 -frames:v 1 -pix_fmt gray -f rawvideo -");
  EXPECT_NEAR(pixel.at(0) & 0xff, 128, 3);
  EXPECT_EQ(Neutral("in.mkv", "strict.mp4", {"--strict"}).exitCode, 1);
  EXPECT_EQ(Neutral("in.mkv", "out.webm", {"--strict"}).exitCode, 0);
  EXPECT_NEAR(Shell("ffmpeg -nostdin -v error -c:v libvpx-vp9 -i out.webm -frames:v 1 -vf "
                    "alphaextract,format=gray -f rawvideo -")
                      .at(0) &
                  0xff,
              128, 3);
}

// 16 times the same.
std::string Pixels(const std::string& pixel) {
  std::string pixels;
  for (int i = 0; i < 16; ++i) pixels += pixel;
  return pixels;
}

// 50, 30 and 10 under an alpha of 100, as numbers of a pixel.
TEST_F(VideoAlphaRunTest, AlphaIsReadAsAsked) {
  WriteFile("in.raw", Pixels("\x32\x1e\x0a\x64"));
  Ffmpeg("-f rawvideo -pixel_format rgba -video_size 4x4 -i in.raw -c:v ffv1 -pix_fmt bgra in.mkv");
  struct Case {
    std::vector<std::string> alpha;
    std::string format;
    std::string pixel;
  };
  for (const Case& c : {Case{{}, "rgba", "\x32\x1e\x0a\x64"},
                        Case{{"--alpha", "straight"}, "rgba", "\x32\x1e\x0a\x64"},
                        Case{{"--alpha", "premultiplied"}, "rgba", "\x80\x4d\x1a\x64"},
                        Case{{"--alpha", "ignore"}, "rgb24", "\x32\x1e\x0a"}}) {
    std::vector<std::string> options = c.alpha;
    options.insert(options.end(), {"--force", "--strict"});
    const ToolResult run = Neutral("in.mkv", "out.mkv", options);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Probe("out.mkv", "stream=pix_fmt"),
              c.format == "rgba" ? "pix_fmt=bgra\n" : "pix_fmt=bgr0\n");
    EXPECT_EQ(Shell("ffmpeg -nostdin -v error -i out.mkv -pix_fmt " + c.format + " -f rawvideo -"),
              Pixels(c.pixel));
  }
}

}  // namespace
}  // namespace vitrell::cli
