// Custom layers that are sequences and videos, for videos, sequences and stills. The layer has
// three frames and the shot five, so that its last one holds.
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "cli/video_files.h"

namespace vitrell::cli {
namespace {

class MovingLayerRunTest : public VideoTest {
 protected:
  // The same frames as files 7 to 11 and as a video, and of the layer as 7 to 9 and as a video.
  MovingLayerRunTest() {
    Ffmpeg(
        "-f lavfi -i testsrc2=s=48x32:r=25,noise=alls=40:allf=t -frames:v 5 -c:v ffv1 "
        "-pix_fmt bgr0 in.mkv");
    Ffmpeg("-i in.mkv -start_number 7 -pix_fmt rgb24 plate.%04d.png");
    Ffmpeg("-f lavfi -i mandelbrot=s=48x32:r=2 -frames:v 3 -c:v ffv1 -pix_fmt bgr0 layer.mkv");
    Ffmpeg("-i layer.mkv -start_number 7 -pix_fmt rgb24 layer.%04d.png");
  }

  ToolResult Render(const std::string& input, const std::string& output, const std::string& layer,
                    const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"render",           input,   output,
                                          "--custom-layer",   layer,   "--set",
                                          "lens.type=custom", "--set", "fast-blur.amount=20",
                                          "--threads",        "4"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    ToolResult result = Run(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    return result;
  }
  std::string Hashes(const std::string& start, int first) const {
    return Shell("ffmpeg -nostdin -v error -start_number " + std::to_string(first) + " -i " +
                 start + "%04d.png -pix_fmt rgb24 -f framehash - | grep -v '^#' | cut -d, -f6");
  }
  // By the files' own numbers.
  std::string Expected() const {
    Render("plate.####.png", "look.####.png", "layer.####.png");
    return Hashes("look.", 7);
  }
};

std::size_t Count(const std::string& text, const std::string& piece) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(piece, at)) != std::string::npos; ++at) ++count;
  return count;
}

TEST_F(MovingLayerRunTest, EveryFrameOfAVideoHasItsOwn) {
  const std::string expected = Expected();
  // It is the layer that makes frames differ.
  Render("in.mkv", "still.mkv", "layer.0007.png");
  const std::string first = FrameHashes("still.mkv", "rgb24");
  EXPECT_EQ(first.substr(0, first.size() / 5), expected.substr(0, expected.size() / 5));
  EXPECT_NE(first.substr(first.size() / 5), expected.substr(expected.size() / 5));
  for (const std::string jobs : {"1", "3"}) {
    for (const auto& [layer, last] :
         {std::pair<std::string, std::string>{"layer.####.png", "9"}, {"layer.mkv", "2"}}) {
      const ToolResult run = Render("in.mkv", "out.mkv", layer, {"--force", "--jobs", jobs});
      EXPECT_EQ(FrameHashes("out.mkv", "rgb24"), expected) << layer << " with " << jobs;
      EXPECT_EQ(Count(run.err, layer + ": the custom layer ends with frame " + last), 1U)
          << run.err;
    }
  }
  // The range's first frame is not the layer's first.
  Render("in.mkv", "part.mkv", "layer.mkv", {"--frames", "1-"});
  EXPECT_EQ(FrameHashes("part.mkv", "rgb24"), expected.substr(expected.size() / 5));
}

TEST_F(MovingLayerRunTest, AVideoIsOneForSequencesAndStills) {
  const std::string expected = Expected();
  const ToolResult run =
      Render("plate.####.png", "out.####.png", "layer.mkv", {"--existing", "skip", "--jobs", "2"});
  EXPECT_EQ(Hashes("out.", 7), expected);
  EXPECT_EQ(Count(run.err, "layer.mkv: the custom layer ends with frame 2"), 1U) << run.err;
  const ToolResult same =
      Render("plate.####.png", "out.####.png", "layer.mkv", {"--existing", "skip"});
  EXPECT_NE(same.out.find("0 frames rendered, 5 skipped"), std::string::npos) << same.out;
  // Some of the frames have the layers that they have among all.
  const ToolResult some = Render("plate.####.png", "out.####.png", "layer.mkv",
                                 {"--existing", "skip", "--frames", "8-9"});
  EXPECT_NE(some.out.find("0 frames rendered, 2 skipped"), std::string::npos) << some.out;
  Render("plate.####.png", "out.mkv", "layer.mkv", {"--quiet"});
  EXPECT_EQ(FrameHashes("out.mkv", "rgb24"), expected);
  Render("plate.0007.png", "still.0000.png", "layer.mkv");
  EXPECT_EQ(Hashes("still.", 0), expected.substr(0, expected.size() / 5));
  Render("in.mkv", "video.####.png", "layer.mkv", {"--jobs", "2"});
  EXPECT_EQ(Hashes("video.", 0), expected);
}

TEST_F(MovingLayerRunTest, WhatTheLayerHoldsCounts) {
  const std::vector<std::string> skip = {"--existing", "skip"};
  Render("in.mkv", "out.mkv", "layer.####.png", skip);
  EXPECT_NE(Render("in.mkv", "out.mkv", "layer.####.png", skip).out.find("is there already"),
            std::string::npos);
  WriteFile("layer.0008.png", ReadFile("layer.0007.png"));
  EXPECT_NE(Render("in.mkv", "out.mkv", "layer.####.png", skip).err.find("something else"),
            std::string::npos);
  ExpectMessage(Run({"render", "in.mkv", "no.mkv", "--custom-layer", "none.##.png", "--set",
                     "lens.type=custom"}),
                1, {"none.##.png: there is no frame of this name"});
}

}  // namespace
}  // namespace vitrell::cli
