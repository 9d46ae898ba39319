// Videos through standard input and output.
#include <string>

#include "cli/video_files.h"

namespace vitrell::cli {
namespace {

constexpr const char* kTool = VITRELL_TOOL_PATH
    " render - - --set lens.type=none "
    "--set fast-blur.visible=off ";

class VideoPipeRunTest : public VideoTest {
 protected:
  VideoPipeRunTest() {
    Ffmpeg(
        "-f lavfi -i testsrc2=s=64x48:r=30000/1001:d=0.5 -f lavfi -i sine=d=0.5 -c:v ffv1 "
        "-pix_fmt bgr0 -c:a flac in.mkv");
  }
};

TEST_F(VideoPipeRunTest, Y4mGoesThroughBothPipes) {
  Shell("ffmpeg -nostdin -v error -i in.mkv -pix_fmt yuv444p -f yuv4mpegpipe - | " +
        std::string(kTool) + "2>said.txt | ffmpeg -nostdin -v error -i - -c:v rawvideo out.nut");
  EXPECT_EQ(
      Probe("out.nut", "stream=codec_type,pix_fmt,r_frame_rate,nb_read_frames", "-count_frames"),
      "codec_type=video\npix_fmt=yuv444p\nr_frame_rate=30000/1001\nnb_read_frames=15\n");
  EXPECT_NE(ReadFile("said.txt").find("standard output: 64 x 48, 8 bits, 15 frames"),
            std::string::npos);
}

TEST_F(VideoPipeRunTest, NutTakesSoundAlong) {
  Shell("ffmpeg -nostdin -v error -i in.mkv -c copy -f nut - | " + std::string(kTool) +
        "2>said.txt | ffmpeg -nostdin -v error -i - -c copy out.nut");
  EXPECT_EQ(FrameHashes("out.nut", "gbrp"), FrameHashes("in.mkv", "gbrp"));
  EXPECT_EQ(Shell("ffmpeg -nostdin -v error -i out.nut -map 0:a -f hash -"),
            Shell("ffmpeg -nostdin -v error -i in.mkv -map 0:a -f hash -"));
}

TEST_F(VideoPipeRunTest, TheFormatOfTheOutputCanBeChosen) {
  Shell("ffmpeg -nostdin -v error -i in.mkv -c copy -f nut - | " + std::string(kTool) +
        "--video-format y4m 2>said.txt >out.y4m");
  EXPECT_EQ(ReadFile("out.y4m").substr(0, 9), "YUV4MPEG2");
  Shell(VITRELL_TOOL_PATH
        " render - out.mkv --set lens.type=none --set fast-blur.visible=off "
        "--quiet <in.mkv");
  EXPECT_EQ(FrameHashes("out.mkv", "bgr0"), FrameHashes("in.mkv", "bgr0"));
}

}  // namespace
}  // namespace vitrell::cli
