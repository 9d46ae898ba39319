// An image that the effect does not change is written with every sample as it was read.
#include <string>
#include <tuple>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::FilePicture;
using media::NoisePicture;
using media::ReadPictureFile;
using media::WritePictureFile;

// Without lens and blur no stage changes the image.
std::vector<std::string> Neutral(const std::string& input, const std::string& output,
                                 const std::vector<std::string>& more = {}) {
  std::vector<std::string> arguments = {
      "render", input, output, "--set", "lens.type=none", "--set", "fast-blur.amount=0"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

using Case = std::tuple<const char*, int, int>;  // extension, bits, channels

class NeutralRunTest : public ToolTest, public testing::WithParamInterface<Case> {};

TEST_P(NeutralRunTest, KeepsEverySample) {
  const auto [extension, bits, channels] = GetParam();
  const OIIO::TypeDesc type = bits == 8 ? OIIO::TypeDesc::UINT8 : OIIO::TypeDesc::UINT16;
  const std::string input = std::string("in.") + extension;
  const std::string output = std::string("out.") + extension;
  const FilePicture picture =
      NoisePicture(67, 53, channels, type, 20 + static_cast<uint32_t>(bits));
  WritePictureFile(InFolder(input), picture);
  const ToolResult result = Run(Neutral(input, output));
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  const FilePicture written = ReadPictureFile(InFolder(output));
  EXPECT_EQ(written.spec.nchannels, channels);
  EXPECT_EQ(written.spec.format, type);
  EXPECT_EQ(written.spec.width, 67);
  EXPECT_EQ(written.spec.height, 53);
  EXPECT_TRUE(written.samples == picture.samples);
}

INSTANTIATE_TEST_SUITE_P(AllFormats, NeutralRunTest,
                         testing::Combine(testing::Values("png", "tif"), testing::Values(8, 16),
                                          testing::Values(1, 2, 3, 4)),
                         [](const testing::TestParamInfo<Case>& test) {
                           return std::string(std::get<0>(test.param)) +
                                  std::to_string(std::get<1>(test.param)) + "bit" +
                                  std::to_string(std::get<2>(test.param)) + "channels";
                         });

class NeutralFormatsRunTest : public ToolTest {};

TEST_F(NeutralFormatsRunTest, MultipliedTiffStaysMultiplied) {
  for (const OIIO::TypeDesc type : {OIIO::TypeDesc::UINT8, OIIO::TypeDesc::UINT16}) {
    const FilePicture picture = NoisePicture(67, 53, 4, type, 7, true);
    WritePictureFile(InFolder("in.tif"), picture);
    ASSERT_EQ(Run(Neutral("in.tif", "out.tif", {"--force"})).exitCode, 0);
    const FilePicture written = ReadPictureFile(InFolder("out.tif"));
    EXPECT_EQ(written.spec.get_int_attribute("oiio:UnassociatedAlpha", 0), 0);
    EXPECT_TRUE(written.samples == picture.samples);
  }
}

TEST_F(NeutralFormatsRunTest, ExrKeepsItsFloats) {
  for (const OIIO::TypeDesc type : {OIIO::TypeDesc::HALF, OIIO::TypeDesc::FLOAT}) {
    WritePictureFile(InFolder("in.exr"), NoisePicture(67, 53, 4, type, 8, true));
    const FilePicture read = ReadPictureFile(InFolder("in.exr"));
    ASSERT_EQ(Run(Neutral("in.exr", "out.exr", {"--force"})).exitCode, 0);
    const FilePicture written = ReadPictureFile(InFolder("out.exr"));
    EXPECT_EQ(written.spec.format, type);
    EXPECT_TRUE(written.floats == read.floats);
  }
}

TEST_F(NeutralFormatsRunTest, DpxKeepsItsTenBits) {
  FilePicture picture = NoisePicture(64, 48, 3, OIIO::TypeDesc::UINT16, 9);
  picture.spec.attribute("oiio:BitsPerSample", 10);
  WritePictureFile(InFolder("in.dpx"), picture);
  const FilePicture read = ReadPictureFile(InFolder("in.dpx"));
  const ToolResult result = Run(Neutral("in.dpx", "out.dpx"));
  ASSERT_EQ(result.exitCode, 0) << result.err;
  const FilePicture written = ReadPictureFile(InFolder("out.dpx"));
  EXPECT_EQ(written.spec.get_int_attribute("oiio:BitsPerSample", 0), 10);
  EXPECT_TRUE(written.samples == read.samples);
}

TEST_F(NeutralFormatsRunTest, StraightPngBecomesMultipliedExr) {
  FilePicture picture = NoisePicture(1, 1, 4, OIIO::TypeDesc::UINT8, 1);
  picture.samples = {200, 100, 0, 51};
  WritePictureFile(InFolder("in.png"), picture);
  ASSERT_EQ(Run(Neutral("in.png", "out.exr")).exitCode, 0);
  const FilePicture written = ReadPictureFile(InFolder("out.exr"));
  ASSERT_EQ(written.floats.size(), 4U);
  EXPECT_NEAR(written.floats[0], 200.0 / 255 * 0.2, 1e-3);
  EXPECT_NEAR(written.floats[1], 100.0 / 255 * 0.2, 1e-3);
  EXPECT_EQ(written.floats[2], 0.0F);
  EXPECT_NEAR(written.floats[3], 0.2, 1e-3);
}

TEST_F(NeutralFormatsRunTest, MultipliedExrBecomesStraightPng) {
  FilePicture picture = NoisePicture(1, 1, 4, OIIO::TypeDesc::FLOAT, 1, true);
  picture.floats = {0.25F, 0.125F, 0.0F, 0.5F};
  WritePictureFile(InFolder("in.exr"), picture);
  const ToolResult result = Run(Neutral("in.exr", "out.png"));
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("without colour conversion"), std::string::npos) << result.err;
  // Halves of 65535 are rounded up: PNG holds 16 bits.
  EXPECT_EQ(ReadPictureFile(InFolder("out.png")).samples,
            (std::vector<uint16_t>{32768, 16384, 0, 32768}));
}

TEST_F(NeutralFormatsRunTest, DepthSixteenWidensEightBitFilesExactly) {
  const FilePicture picture = NoisePicture(33, 17, 3, OIIO::TypeDesc::UINT8, 3);
  WritePictureFile(InFolder("in.png"), picture);
  ASSERT_EQ(Run(Neutral("in.png", "out.png", {"--depth", "16"})).exitCode, 0);
  const FilePicture written = ReadPictureFile(InFolder("out.png"));
  EXPECT_EQ(written.spec.format, OIIO::TypeDesc::UINT16);
  std::vector<uint16_t> expected;
  for (const uint16_t sample : picture.samples) {
    expected.push_back(static_cast<uint16_t>(sample * 257));
  }
  EXPECT_TRUE(written.samples == expected);
}

TEST_F(NeutralFormatsRunTest, DepthEightNarrowsSixteenBitFiles) {
  FilePicture picture = NoisePicture(3, 1, 1, OIIO::TypeDesc::UINT16, 3);
  picture.samples = {128, 129, 65535};  // 128 / 257 = 0.498, 129 / 257 = 0.502
  WritePictureFile(InFolder("in.tif"), picture);
  ASSERT_EQ(Run(Neutral("in.tif", "out.tif", {"--depth", "8"})).exitCode, 0);
  const FilePicture written = ReadPictureFile(InFolder("out.tif"));
  EXPECT_EQ(written.spec.format, OIIO::TypeDesc::UINT8);
  EXPECT_EQ(written.samples, (std::vector<uint16_t>{0, 1, 255}));
}

TEST_F(NeutralFormatsRunTest, UnusualSizesPass) {
  for (const auto& [width, height] : {std::pair{1, 1}, {1, 97}, {97, 1}, {30000, 1}}) {
    const FilePicture picture = NoisePicture(width, height, 4, OIIO::TypeDesc::UINT8, 5);
    WritePictureFile(InFolder("in.png"), picture);
    const ToolResult result = Run(Neutral("in.png", "out.png", {"--force"}));
    ASSERT_EQ(result.exitCode, 0) << width << "x" << height << result.err;
    EXPECT_TRUE(ReadPictureFile(InFolder("out.png")).samples == picture.samples);
    // The default look runs every window far over such edges.
    EXPECT_EQ(Run({"render", "in.png", "look.png", "--force"}).exitCode, 0);
  }
}

}  // namespace
}  // namespace vitrell::cli
