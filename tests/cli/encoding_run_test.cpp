// Depth, quality and compression of what is written.
// The JPEG library's header needs the standard one before it.
// clang-format off
#include <cstdio>
#include <jpeglib.h>
// clang-format on

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::FilePicture;
using media::NoisePicture;
using media::ReadPictureFile;
using media::WritePictureFile;

class EncodingRunTest : public ToolTest {
 protected:
  ToolResult RunNeutral(std::vector<std::string> files,
                        const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments = {"render"};
    arguments.insert(arguments.end(), files.begin(), files.end());
    arguments.insert(arguments.end(),
                     {"--force", "--set", "lens.type=none", "--set", "fast-blur.amount=0"});
    arguments.insert(arguments.end(), options.begin(), options.end());
    return Run(arguments);
  }

  void Write(const std::string& name, OIIO::TypeDesc type, int bits = 0) const {
    FilePicture picture = NoisePicture(61, 47, 3, type, 5);
    if (bits > 0) picture.spec.attribute("oiio:BitsPerSample", bits);
    WritePictureFile(InFolder(name), picture);
  }

  OIIO::ImageSpec SpecOf(const std::string& name) const {
    return ReadPictureFile(InFolder(name)).spec;
  }

  std::uintmax_t SizeOf(const std::string& name) const {
    return std::filesystem::file_size(InFolder(name));
  }

  static bool Has(const ToolResult& result, const std::string& text) {
    return result.err.find(text) != std::string::npos;
  }

  // The largest difference between two 8-bit pictures of the same form.
  int Furthest(const std::string& a, const std::string& b) const {
    const FilePicture one = ReadPictureFile(InFolder(a));
    const FilePicture other = ReadPictureFile(InFolder(b));
    EXPECT_EQ(one.samples.size(), other.samples.size());
    int furthest = 0;
    for (std::size_t i = 0; i < std::min(one.samples.size(), other.samples.size()); ++i) {
      furthest = std::max(furthest, std::abs(one.samples[i] - other.samples[i]));
    }
    return furthest;
  }
};

TEST_F(EncodingRunTest, Depth16WritesSixteenBits) {
  Write("in.exr", OIIO::TypeDesc::FLOAT);
  Write("in.png", OIIO::TypeDesc::UINT8);
  for (const char* input : {"in.exr", "in.png"}) {
    for (const char* output : {"out.tif", "out.png", "out.dpx", "out.jp2"}) {
      const ToolResult result = RunNeutral({input, output}, {"--depth", "16"});
      ASSERT_EQ(result.exitCode, 0) << result.err;
      EXPECT_EQ(SpecOf(output).format, OIIO::TypeDesc::UINT16) << input << " " << output;
    }
    ASSERT_EQ(RunNeutral({input, "out.exr"}, {"--depth", "16"}).exitCode, 0);
    EXPECT_EQ(SpecOf("out.exr").format, OIIO::TypeDesc::HALF) << input;
  }
}

TEST_F(EncodingRunTest, FloatsStayWithoutADepth) {
  for (const OIIO::TypeDesc& type :
       {OIIO::TypeDesc(OIIO::TypeDesc::HALF), OIIO::TypeDesc(OIIO::TypeDesc::FLOAT)}) {
    Write("in.exr", type);
    ASSERT_EQ(RunNeutral({"in.exr", "out.exr"}).exitCode, 0);
    EXPECT_EQ(SpecOf("out.exr").format, type);
  }
  // Half floats could not hold them.
  Write("in.png", OIIO::TypeDesc::UINT16);
  ASSERT_EQ(RunNeutral({"in.png", "out.exr"}).exitCode, 0);
  EXPECT_EQ(SpecOf("out.exr").format, OIIO::TypeDesc::FLOAT);
  ASSERT_EQ(RunNeutral({"out.exr", "back.png"}).exitCode, 0);
  EXPECT_TRUE(ReadPictureFile(InFolder("back.png")).samples ==
              ReadPictureFile(InFolder("in.png")).samples);
}

TEST_F(EncodingRunTest, OtherIntegersBecomeSixteenBits) {
  for (const OIIO::TypeDesc& type :
       {OIIO::TypeDesc(OIIO::TypeDesc::INT16), OIIO::TypeDesc(OIIO::TypeDesc::UINT32)}) {
    FilePicture picture = NoisePicture(61, 47, 3, OIIO::TypeDesc::FLOAT, 5);
    const std::vector<float> values = picture.floats;
    const auto file = OIIO::ImageOutput::create("x.tif");
    OIIO::ImageSpec spec(61, 47, 3, type);
    ASSERT_TRUE(file != nullptr && file->open(InFolder("in.tif").string(), spec) &&
                file->write_image(OIIO::TypeDesc::FLOAT, values.data()) && file->close());
    ASSERT_EQ(SpecOf("in.tif").format, type);
    const ToolResult result = RunNeutral({"in.tif", "out.png"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Has(result, "stores 16-bit integers, the picture has 32-bit"), type.size() == 4);
    const FilePicture written = ReadPictureFile(InFolder("out.png"));
    ASSERT_EQ(written.spec.format, OIIO::TypeDesc::UINT16);
    for (std::size_t i = 0; i < values.size(); ++i) {
      const double expected = std::clamp(static_cast<double>(values[i]), 0.0, 1.0) * 65535;
      ASSERT_NEAR(written.samples[i], expected, 2.5) << i;
    }
  }
}

TEST_F(EncodingRunTest, DpxKeepsItsBits) {
  for (const int bits : {8, 10, 12, 16}) {
    Write("in.dpx", bits == 8 ? OIIO::TypeDesc::UINT8 : OIIO::TypeDesc::UINT16, bits);
    ASSERT_EQ(SpecOf("in.dpx").get_int_attribute("oiio:BitsPerSample", bits), bits);
    ASSERT_EQ(RunNeutral({"in.dpx", "out.dpx"}).exitCode, 0);
    EXPECT_EQ(SpecOf("out.dpx").get_int_attribute("oiio:BitsPerSample", bits > 8 ? 16 : 8), bits);
    EXPECT_EQ(SizeOf("out.dpx"), SizeOf("in.dpx"));
    EXPECT_TRUE(ReadPictureFile(InFolder("out.dpx")).samples ==
                ReadPictureFile(InFolder("in.dpx")).samples)
        << bits;
  }
}

TEST_F(EncodingRunTest, QualityIsObeyed) {
  Write("in.png", OIIO::TypeDesc::UINT8);
  for (const char* output : {"out.jpg", "out.webp", "out.avif", "out.heic"}) {
    std::uintmax_t before = 0;
    for (const char* quality : {"20", "60", "100"}) {
      const ToolResult result = RunNeutral({"in.png", output}, {"--quality", quality});
      ASSERT_EQ(result.exitCode, 0) << result.err;
      EXPECT_GT(SizeOf(output), before) << output << " " << quality;
      before = SizeOf(output);
    }
  }
}

TEST_F(EncodingRunTest, LosslessKeepsEverySample) {
  Write("in.png", OIIO::TypeDesc::UINT8);
  for (const char* output : {"out.png", "out.tif", "out.webp", "out.avif", "out.heic", "out.jp2",
                             "out.tga", "out.bmp", "out.ppm", "out.dpx"}) {
    const ToolResult result = RunNeutral({"in.png", output}, {"--lossless"});
    ASSERT_EQ(result.exitCode, 0) << output << result.err;
    ASSERT_EQ(RunNeutral({output, "back.png"}).exitCode, 0);
    EXPECT_EQ(Furthest("back.png", "in.png"), 0) << output;
  }
}

TEST_F(EncodingRunTest, CompressionsAreThoseOfTheFormat) {
  Write("in.png", OIIO::TypeDesc::UINT8);
  for (const char* name : {"none", "lzw", "zip", "packbits"}) {
    ASSERT_EQ(RunNeutral({"in.png", "out.tif"}, {"--compression", name}).exitCode, 0);
    EXPECT_EQ(SpecOf("out.tif").get_string_attribute("compression"), name);
  }
  for (const char* name :
       {"none", "rle", "zips", "zip", "piz", "pxr24", "b44", "b44a", "dwaa", "dwab"}) {
    ASSERT_EQ(RunNeutral({"in.png", "out.exr"}, {"--compression", name}).exitCode, 0);
    const std::string kept(SpecOf("out.exr").get_string_attribute("compression"));
    EXPECT_EQ(kept.substr(0, kept.find(':')), name);
  }
  // Noise cannot be compressed.
  FilePicture flat = NoisePicture(61, 47, 3, OIIO::TypeDesc::UINT8, 5);
  std::fill(flat.samples.begin(), flat.samples.end(), uint16_t{77});
  WritePictureFile(InFolder("in.png"), flat);
  ASSERT_EQ(RunNeutral({"in.png", "none.png"}, {"--compression", "none"}).exitCode, 0);
  ASSERT_EQ(RunNeutral({"in.png", "best.png"}, {"--compression", "best"}).exitCode, 0);
  EXPECT_GT(SizeOf("none.png"), 61U * 47U * 3U);
  EXPECT_LT(SizeOf("best.png"), SizeOf("none.png"));
}

TEST_F(EncodingRunTest, WhatDoesNotSuitIsRefused) {
  Write("in.png", OIIO::TypeDesc::UINT8);
  ExpectMessage(RunNeutral({"in.png", "out.png"}, {"--quality", "80"}), 2,
                {"--quality", "PNG", "--compression none, fast, best", "--lossless"});
  ExpectMessage(RunNeutral({"in.png", "out.jpg"}, {"--lossless"}), 2,
                {"--lossless", "JPEG", "--quality 1 to 100"});
  ExpectMessage(RunNeutral({"in.png", "out.exr"}, {"--compression", "lzw"}), 2,
                {"--compression lzw", "EXR", "none, rle, zips, zip, piz"});
  ExpectMessage(RunNeutral({"in.png", "out.gif"}, {"--quality", "5"}), 2, {"GIF", "nothing"});
  ExpectMessage(RunNeutral({"in.png", "out.exr"}, {"--compression", "dwaa", "--lossless"}), 2,
                {"dwaa", "--lossless"});
  ExpectMessage(RunNeutral({"in.png", "out.webp"}, {"--quality", "5", "--lossless"}), 2,
                {"--quality", "--lossless"});
  ExpectMessage(RunNeutral({"in.png", "out.webp"}, {"--quality", "500"}), 2, {"--quality"});
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.png"}));
}

TEST_F(EncodingRunTest, ShrinkingIsTold) {
  Write("in.png", OIIO::TypeDesc::UINT8);
  ASSERT_EQ(RunNeutral({"in.png", "in.avif"}, {"--lossless"}).exitCode, 0);
  ASSERT_EQ(RunNeutral({"in.png", "again.avif"}).exitCode, 0);
  // Noise needs nearly as much at the usual quality.
  const ToolResult usual = RunNeutral({"in.avif", "out.avif"});
  EXPECT_GT(SizeOf("out.avif"), SizeOf("in.avif") / 3);
  EXPECT_FALSE(Has(usual, "times smaller")) << usual.err;
  const ToolResult blurred = Run({"render", "in.avif", "blurred.avif", "--set", "lens.type=none",
                                  "--set", "fast-blur.amount=100"});
  EXPECT_LT(SizeOf("blurred.avif"), SizeOf("in.avif") / 3);
  EXPECT_TRUE(Has(blurred, "times smaller than the input; --quality above 90")) << blurred.err;
}

TEST_F(EncodingRunTest, AvifKeepsTheColoursOfEveryPixel) {
  // One column red, the next green: at half the resolution they would become one brown.
  FilePicture picture = NoisePicture(32, 32, 3, OIIO::TypeDesc::UINT8, 5);
  for (std::size_t i = 0; i < picture.samples.size(); i += 3) {
    const bool red = i / 3 % 2 == 0;
    picture.samples[i] = red ? 200 : 40;
    picture.samples[i + 1] = red ? 40 : 200;
    picture.samples[i + 2] = 60;
  }
  WritePictureFile(InFolder("in.png"), picture);
  ASSERT_EQ(RunNeutral({"in.png", "out.avif"}).exitCode, 0);
  ASSERT_EQ(RunNeutral({"out.avif", "back.png"}).exitCode, 0);
  EXPECT_LE(Furthest("back.png", "in.png"), 30);
}

TEST_F(EncodingRunTest, CmykIsConvertedWithANote) {
  FilePicture picture = NoisePicture(61, 47, 3, OIIO::TypeDesc::UINT8, 5);
  picture.spec.attribute("tiff:ColorSpace", "CMYK");
  WritePictureFile(InFolder("in.tif"), picture);
  // Four inks: a plain file of the JPEG library.
  std::FILE* file = std::fopen(InFolder("in.jpg").c_str(), "wb");
  ASSERT_NE(file, nullptr);
  jpeg_compress_struct jpeg{};
  jpeg_error_mgr errors{};
  jpeg.err = jpeg_std_error(&errors);
  jpeg_create_compress(&jpeg);
  jpeg_stdio_dest(&jpeg, file);
  jpeg.image_width = 16;
  jpeg.image_height = 16;
  jpeg.input_components = 4;
  jpeg.in_color_space = JCS_CMYK;
  jpeg_set_defaults(&jpeg);
  jpeg_start_compress(&jpeg, TRUE);
  std::vector<JSAMPLE> inks(64, 90);
  JSAMPROW row = inks.data();
  for (int y = 0; y < 16; ++y) jpeg_write_scanlines(&jpeg, &row, 1);
  jpeg_finish_compress(&jpeg);
  jpeg_destroy_compress(&jpeg);
  std::fclose(file);
  for (const char* input : {"in.tif", "in.jpg"}) {
    for (const char* output : {"out.tif", "out.jpg", "out.png"}) {
      const ToolResult result = RunNeutral({input, output});
      ASSERT_EQ(result.exitCode, 0) << result.err;
      EXPECT_TRUE(Has(result, std::string(input) + ": is in CMYK")) << result.err;
      EXPECT_EQ(SpecOf(output).nchannels, 3);
      EXPECT_FALSE(Has(RunNeutral({output, "again.png"}), "CMYK")) << output;
    }
  }
}

}  // namespace
}  // namespace vitrell::cli
