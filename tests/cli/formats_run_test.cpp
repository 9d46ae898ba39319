// What each format gets, and what is told when it cannot hold the picture.
#include <webp/encode.h>

#include <string>
#include <vector>

#include "cli/tool_run.h"
#include "media/formats.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::FilePicture;
using media::NoisePicture;
using media::ReadPictureFile;
using media::WritePictureFile;

class FormatsRunTest : public ToolTest {
 protected:
  // Without lens and blur every stage leaves the picture alone.
  ToolResult RunNeutral(const std::string& input, const std::string& output) const {
    return Run({"render", input, output, "--force", "--set", "lens.type=none", "--set",
                "fast-blur.amount=0"});
  }

  static bool Has(const ToolResult& result, const std::string& text) {
    return result.err.find(text) != std::string::npos;
  }

  // A picture without noise, so that lossy formats come near it: grey from left to right, and more
  // opaque downwards.
  static FilePicture Ramp(int channels) {
    constexpr int kEdge = 64;
    FilePicture picture = NoisePicture(kEdge, kEdge, channels, OIIO::TypeDesc::UINT8, 1);
    std::size_t at = 0;
    for (int y = 0; y < kEdge; ++y) {
      for (int x = 0; x < kEdge; ++x) {
        for (int channel = 0; channel < channels; ++channel) {
          const bool alpha = channels % 2 == 0 && channel == channels - 1;
          picture.samples[at++] = static_cast<uint16_t>(alpha ? 128 + y * 2 : x * 4);
        }
      }
    }
    return picture;
  }

  void WriteWebpWithoutLoss(const std::string& name, const FilePicture& picture) const {
    const std::vector<uint8_t> pixels(picture.samples.begin(), picture.samples.end());
    WebPConfig config;
    WebPPicture encoder;
    ASSERT_TRUE(WebPConfigInit(&config) != 0 && WebPConfigLosslessPreset(&config, 1) != 0);
    ASSERT_NE(WebPPictureInit(&encoder), 0);
    config.exact = 1;
    encoder.use_argb = 1;
    encoder.width = picture.spec.width;
    encoder.height = picture.spec.height;
    WebPMemoryWriter bytes;
    WebPMemoryWriterInit(&bytes);
    encoder.writer = &WebPMemoryWrite;
    encoder.custom_ptr = &bytes;
    ASSERT_NE(WebPPictureImportRGBA(&encoder, pixels.data(), 4 * encoder.width), 0);
    ASSERT_NE(WebPEncode(&config, &encoder), 0);
    WriteFile(name, std::string(reinterpret_cast<const char*>(bytes.mem), bytes.size));
    WebPPictureFree(&encoder);
    WebPMemoryWriterClear(&bytes);
  }

  static std::string FirstExtension(const media::Format& format) {
    const std::string extensions(format.extensions);
    return extensions.substr(0, extensions.find(' '));
  }
};

TEST_F(FormatsRunTest, ListNamesEveryFormat) {
  const ToolResult result = Run({"formats"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  for (const media::Format& format : media::AllFormats()) {
    std::string line(1, '\n');
    line.append(format.name).push_back(' ');
    EXPECT_NE(result.out.find(line), std::string::npos) << result.out;
  }
}

TEST_F(FormatsRunTest, OthersAreRefused) {
  WritePictureFile(InFolder("in.png"), Ramp(3));
  WritePictureFile(InFolder("in.sgi"), Ramp(3));
  WriteFile("in.fits", "SIMPLE  =                    T");
  for (const char* name : {"in.sgi", "in.fits"}) {
    ExpectMessage(Run({"render", name, "out.png"}), 1, {name, "PNG, JPEG, TIFF", "Radiance HDR"});
  }
  for (const char* name : {"out.sgi", "out.fits", "out.psd", "out.iff", "out.xyz"}) {
    ExpectMessage(Run({"render", "in.png", name}), 1, {name, "extension", "vitrell formats"});
  }
}

// Grey and alpha are widened where a format has no such channels; alpha goes only with a note.
TEST_F(FormatsRunTest, EveryFormatTakesEveryPicture) {
  for (const int channels : {1, 2, 3, 4}) {
    const FilePicture picture = Ramp(channels);
    WritePictureFile(InFolder("in.png"), picture);
    for (const media::Format& format : media::AllFormats()) {
      if (!format.writes) continue;
      const std::string name = "out." + FirstExtension(format);
      SCOPED_TRACE(name + " from " + std::to_string(channels) + " channels");
      const ToolResult result = RunNeutral("in.png", name);
      ASSERT_EQ(result.exitCode, 0) << result.err;
      const bool grey = channels < 3;
      const bool alpha = channels % 2 == 0;
      const bool keepsAlpha = format.alpha || (grey && format.greyAlpha);
      EXPECT_EQ(Has(result, "laid over black"), alpha && !keepsAlpha) << result.err;
      const FilePicture written = ReadPictureFile(InFolder(name));
      EXPECT_EQ(written.spec.width, 64);
      EXPECT_EQ(written.spec.height, 64);
      if (format.name == "GIF") continue;  // is always read as RGBA
      const bool oneColour = grey && (alpha && keepsAlpha ? format.greyAlpha : format.grey);
      EXPECT_EQ(written.spec.nchannels, (oneColour ? 1 : 3) + (alpha && keepsAlpha ? 1 : 0));
    }
  }
}

// Formats without loss give the samples back; alpha is the same on both sides.
TEST_F(FormatsRunTest, FormatsWithoutLossKeepEverySample) {
  for (const char* name : {"out.png", "out.tif", "out.tga", "out.bmp"}) {
    for (const int channels : {3, 4}) {
      WritePictureFile(InFolder("in.png"),
                       NoisePicture(61, 47, channels, OIIO::TypeDesc::UINT8, 5));
      ASSERT_EQ(RunNeutral("in.png", name).exitCode, 0);
      ASSERT_EQ(RunNeutral(name, "back.png").exitCode, 0);
      EXPECT_TRUE(ReadPictureFile(InFolder("back.png")).samples ==
                  ReadPictureFile(InFolder("in.png")).samples)
          << name << " " << channels;
    }
  }
}

// What has loss comes near: straight stays straight, and colours do not change places.
TEST_F(FormatsRunTest, FormatsWithLossComeNear) {
  for (const char* name : {"out.webp", "out.avif", "out.heic", "out.jp2", "out.dpx", "out.exr"}) {
    for (const int channels : {3, 4}) {
      const FilePicture picture = Ramp(channels);
      WritePictureFile(InFolder("in.png"), picture);
      ASSERT_EQ(RunNeutral("in.png", name).exitCode, 0);
      ASSERT_EQ(RunNeutral(name, "back.tif").exitCode, 0);
      ASSERT_EQ(RunNeutral("back.tif", "back.png").exitCode, 0);
      const FilePicture back = ReadPictureFile(InFolder("back.png"));
      ASSERT_EQ(back.spec.nchannels, channels);
      const int scale = back.spec.format == OIIO::TypeDesc::UINT8 ? 1 : 257;
      int furthest = 0;
      for (std::size_t i = 0; i < picture.samples.size(); ++i) {
        furthest = std::max(furthest, std::abs(back.samples[i] / scale - picture.samples[i]));
      }
      EXPECT_LE(furthest, 16) << name << " " << channels;
    }
  }
}

TEST_F(FormatsRunTest, AWebpWithoutLossStaysSo) {
  FilePicture picture = NoisePicture(16, 16, 4, OIIO::TypeDesc::UINT8, 4);
  WriteWebpWithoutLoss("in.webp", picture);
  ASSERT_EQ(RunNeutral("in.webp", "out.webp").exitCode, 0);
  ASSERT_EQ(RunNeutral("out.webp", "back.png").exitCode, 0);
  EXPECT_TRUE(ReadPictureFile(InFolder("back.png")).samples == picture.samples);
}

TEST_F(FormatsRunTest, NamesDoNotDeceive) {
  WritePictureFile(InFolder("real.png"), Ramp(3));
  std::filesystem::rename(InFolder("real.png"), InFolder("in.jpg"));
  ASSERT_EQ(RunNeutral("in.jpg", "out.png").exitCode, 0);
  EXPECT_TRUE(ReadPictureFile(InFolder("out.png")).samples == Ramp(3).samples);
}

}  // namespace
}  // namespace vitrell::cli
