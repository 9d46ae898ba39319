// Pixels of videos through the program: every bit that a file can hold.
#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "cli/video_files.h"

namespace vitrell::cli {
namespace {

class VideoPixelsRunTest : public VideoTest {
 protected:
  std::string Raw(const std::string& file, const std::string& pixelFormat) const {
    return Shell("ffmpeg -nostdin -v error -i " + file + " -f rawvideo -pix_fmt " + pixelFormat +
                 " -");
  }
  std::vector<int> Words(const std::string& file, const std::string& pixelFormat) const {
    const std::string raw = Raw(file, pixelFormat);
    std::vector<int> words;
    for (std::size_t i = 0; i + 1 < raw.size(); i += 2) {
      words.push_back((raw[i] & 0xff) | (raw[i + 1] & 0xff) << 8);
    }
    return words;
  }

  // The largest difference of two Y4M files' samples; -1 if their frames differ in number.
  int LargestDifference(const std::string& a, const std::string& b) const {
    const std::vector<std::string> first = FramesOf(a);
    const std::vector<std::string> second = FramesOf(b);
    if (first.empty() || first.size() != second.size()) return -1;
    int largest = 0;
    for (std::size_t i = 0; i < first.size(); ++i) {
      if (first[i].size() != second[i].size()) return -1;
      for (std::size_t j = 0; j < first[i].size(); ++j) {
        largest = std::max(largest, std::abs((first[i][j] & 0xff) - (second[i][j] & 0xff)));
      }
    }
    return largest;
  }

 private:
  std::vector<std::string> FramesOf(const std::string& file) const {
    const std::string text = ReadFile(file);
    const std::string mark = "FRAME\n";
    std::vector<std::string> frames;
    for (std::size_t at = text.find(mark); at != std::string::npos;) {
      const std::size_t next = text.find(mark, at + mark.size());
      frames.push_back(text.substr(at + mark.size(), next - at - mark.size()));
      at = next;
    }
    return frames;
  }
};

TEST_F(VideoPixelsRunTest, ANeutralEffectKeepsEveryBitOfRgb) {
  struct Case {
    std::string format;
    std::string written;
    std::string bits;
  };
  // Noise, so that all low bits are in use; alpha differs from pixel to pixel, too.
  for (const Case& c :
       {Case{"bgr0", "bgr0", "8 bits"}, Case{"bgra", "bgra", "8 bits"},
        Case{"gbrp16le", "gbrp16le", "16 bits"}, Case{"rgb48le", "gbrp16le", "16 bits"},
        Case{"gbrap16le", "gbrap16le", "16 bits"}}) {
    Ffmpeg("-f lavfi -i testsrc2=s=34x18:r=25:d=0.4,format=" +
           std::string(c.format.starts_with("bgr") ? "gbrap" : "gbrap16le") +
           ",noise=alls=90:allf=t -pix_fmt " + c.format + " -c:v " +
           (c.format == "rgb48le" ? "rawvideo" : "ffv1") + " in.nut");
    const ToolResult result = Neutral("in.nut", "out.mkv", {"--force"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_NE(result.out.find("34 x 18, " + c.bits + ", 10 frames"), std::string::npos)
        << result.out;
    EXPECT_EQ(FrameHashes("out.mkv", c.format), FrameHashes("in.nut", c.format)) << c.format;
    EXPECT_EQ(Probe("out.mkv", "stream=codec_name,pix_fmt"),
              "codec_name=ffv1\npix_fmt=" + c.written + "\n");
  }
}

// What lies between 8 and 16 bits is stored in 16, whose upper bits are the file's.
TEST_F(VideoPixelsRunTest, TenBitsBecomeSixteen) {
  Ffmpeg(
      "-f lavfi -i testsrc2=s=34x18:r=25:d=0.2,format=gbrp16le,noise=alls=90:allf=t "
      "-pix_fmt gbrp10le -c:v ffv1 in.mkv");
  ASSERT_EQ(Neutral("in.mkv", "out.mkv").exitCode, 0);
  EXPECT_EQ(Probe("out.mkv", "stream=pix_fmt"), "pix_fmt=gbrp16le\n");
  const std::vector<int> before = Words("in.mkv", "gbrp10le");
  const std::vector<int> after = Words("out.mkv", "gbrp16le");
  ASSERT_EQ(after.size(), before.size());
  for (std::size_t i = 0; i < before.size(); ++i) {
    ASSERT_EQ(after[i], before[i] << 6 | before[i] >> 4) << i;
  }
}

TEST_F(VideoPixelsRunTest, DepthOverridesTheFilesBits) {
  Ffmpeg("-f lavfi -i testsrc2=s=34x18:r=25:d=0.2,format=gbrp -pix_fmt bgr0 -c:v ffv1 in.mkv");
  ASSERT_EQ(Neutral("in.mkv", "deep.mkv", {"--depth", "16"}).exitCode, 0);
  EXPECT_EQ(Probe("deep.mkv", "stream=pix_fmt"), "pix_fmt=gbrp16le\n");
  const std::string bytes = Raw("in.mkv", "gbrp");
  const std::vector<int> words = Words("deep.mkv", "gbrp16le");
  ASSERT_EQ(words.size(), bytes.size());
  for (std::size_t i = 0; i < words.size(); ++i) ASSERT_EQ(words[i], (bytes[i] & 0xff) * 257);
  ASSERT_EQ(Neutral("deep.mkv", "flat.mkv", {"--depth", "8"}).exitCode, 0);
  EXPECT_EQ(Probe("flat.mkv", "stream=pix_fmt"), "pix_fmt=bgr0\n");
}

TEST_F(VideoPixelsRunTest, WhiteIsWhiteInSixteenBits) {
  struct Case {
    std::string format;
    std::string white;
    std::string written;
  };
  for (const Case& c : {Case{"yuv420p", "235:128:128", "gbrp16le"},
                        Case{"yuva444p10le", "940:512:512:1023", "gbrap16le"},
                        Case{"yuv444p12le", "3760:2048:2048", "gbrp16le"},
                        Case{"yuv420p10le", "940:512:512", "gbrp16le"}}) {
    Ffmpeg("-f lavfi -i color=gray:s=16x16:r=25:d=0.04,format=" + c.format + ",geq=" + c.white +
           " -c:v rawvideo in.nut");
    ASSERT_EQ(Neutral("in.nut", "out.mkv", {"--depth", "16", "--force", "--quiet"}).exitCode, 0);
    EXPECT_EQ(Probe("out.mkv", "stream=pix_fmt"), "pix_fmt=" + c.written + "\n");
    for (const int word : Words("out.mkv", c.written)) ASSERT_EQ(word, 65535) << c.format;
  }
  ASSERT_EQ(
      Neutral("out.mkv", "back.mkv", {"--video-codec", "ffv1", "--pixel-format", "yuv444p10le"})
          .exitCode,
      0);
  const std::vector<int> words = Words("back.mkv", "yuv444p10le");
  ASSERT_EQ(words.size(), 3U * 16 * 16);
  for (std::size_t i = 0; i < words.size(); ++i) ASSERT_EQ(words[i], i < 256 ? 940 : 512);
}

TEST_F(VideoPixelsRunTest, HalvedChromaComesBackAsFromFfmpeg) {
  // The second size has chroma samples that are half outside the picture.
  for (const char* size : {"64x48", "35x27"}) {
    Ffmpeg("-f lavfi -i mandelbrot=s=64x48:r=25 -t 0.2 -vf scale=" + std::string(size) +
           ",format=yuv420p in.y4m");
    ASSERT_EQ(Neutral("in.y4m", "out.y4m", {"--force", "--quiet"}).exitCode, 0);
    const std::string scale = "scale=flags=bicubic+accurate_rnd+full_chroma_int+full_chroma_inp";
    Ffmpeg("-i in.y4m -vf " + scale + ",format=gbrp," + scale + ",format=yuv420p ffmpeg.y4m");
    const int difference = LargestDifference("out.y4m", "ffmpeg.y4m");
    EXPECT_GE(difference, 0) << size;
    EXPECT_LE(difference, 1) << size;
    // The trip is not without loss, so that the comparison tells something.
    EXPECT_GT(LargestDifference("in.y4m", "out.y4m"), 1);
  }
}

// Of every pixel of sizes for which the codec knows no slices.
TEST_F(VideoPixelsRunTest, TheSmallestKeepEveryBitToo) {
  for (const std::string size : {"1x1", "2x1", "1x3", "2x2", "3x2", "5x2"}) {
    Ffmpeg("-f lavfi -i testsrc2=s=64x64:r=25:d=0.12,format=gbrap,noise=alls=90:allf=t,scale=" +
           size.substr(0, 1) + ":" + size.substr(2) + " -pix_fmt rgba -c:v rawvideo in.nut");
    ASSERT_EQ(Neutral("in.nut", "out.mkv", {"--force", "--quiet"}).exitCode, 0) << size;
    EXPECT_EQ(Raw("out.mkv", "rgba"), Raw("in.nut", "rgba")) << size;
  }
}

}  // namespace
}  // namespace vitrell::cli
