// AVIF and HEIC tell in boxes of their own how a picture lies, and may hold the EXIF tag beside
// them.
#include <libheif/heif.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "cli/tool_run.h"
#include "media/heif_records.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::FilePicture;
using media::NoisePicture;
using media::ReadPictureFile;
using media::Viewed;

constexpr int kTurnedWidth = 96;
constexpr int kTurnedHeight = 64;
const std::vector<std::string> kNeutral = {"--set", "lens.type=none", "--set",
                                           "fast-blur.amount=0"};

class TurnedHeifRunTest : public ToolTest {
 protected:
  // As a camera does that was held another way up.
  void WriteTurned(const std::string& name, int orientation) const {
    const media::HeifContext context(heif_context_alloc());
    heif_encoder* encoder = nullptr;
    const bool avif = name.ends_with(".avif");
    ASSERT_EQ(heif_context_get_encoder_for_format(
                  context.get(), avif ? heif_compression_AV1 : heif_compression_HEVC, &encoder)
                  .code,
              heif_error_Ok);
    const media::HeifEncoder ownedEncoder(encoder);
    // Colours of every second column only would depend on the direction in which they are read.
    heif_encoder_set_parameter_string(encoder, "chroma", "444");
    const media::HeifImage image = MakeImage();
    const media::HeifOptions options(heif_encoding_options_alloc());
    options->image_orientation = static_cast<heif_orientation>(orientation);
    heif_image_handle* handle = nullptr;
    ASSERT_EQ(
        heif_context_encode_image(context.get(), image.get(), encoder, options.get(), &handle).code,
        heif_error_Ok);
    const media::HeifHandle ownedHandle(handle);
    ASSERT_EQ(heif_context_write_to_file(context.get(), InFolder(name).c_str()).code,
              heif_error_Ok);
  }

  FilePicture Rendered(const std::string& input, const std::string& output,
                       const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"render", input, output, "--force"};
    arguments.insert(arguments.end(), kNeutral.begin(), kNeutral.end());
    arguments.insert(arguments.end(), more.begin(), more.end());
    const ToolResult result = Run(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    return ReadPictureFile(InFolder(output));
  }

 private:
  static media::HeifImage MakeImage() {
    const FilePicture picture =
        NoisePicture(kTurnedWidth, kTurnedHeight, 3, OIIO::TypeDesc::UINT8, 7);
    heif_image* image = nullptr;
    heif_image_create(kTurnedWidth, kTurnedHeight, heif_colorspace_RGB, heif_chroma_interleaved_RGB,
                      &image);
    heif_image_add_plane(image, heif_channel_interleaved, kTurnedWidth, kTurnedHeight, 8);
    int stride = 0;
    uint8_t* const plane = heif_image_get_plane(image, heif_channel_interleaved, &stride);
    constexpr std::size_t kRowBytes = 3 * kTurnedWidth;
    for (std::size_t i = 0; i < picture.samples.size(); ++i) {
      plane[i / kRowBytes * static_cast<std::size_t>(stride) + i % kRowBytes] =
          static_cast<uint8_t>(picture.samples[i]);
    }
    return media::HeifImage(image);
  }
};

TEST_F(TurnedHeifRunTest, PixelsAreUpright) {
  for (const std::string input : {"in.heic", "in.avif"}) {
    WriteTurned(input, 1);
    // Coding loses; a turned file holds the same coded pixels.
    const FilePicture stored = ReadPictureFile(InFolder(input));
    for (const int orientation : {2, 3, 4, 5, 6, 7, 8}) {
      WriteTurned(input, orientation);
      const FilePicture viewed = Viewed(stored, orientation);
      const FilePicture rendered = Rendered(input, "out.png");
      EXPECT_EQ(rendered.spec.width, viewed.spec.width);
      EXPECT_TRUE(rendered.samples == viewed.samples) << input << ", " << orientation;
    }
  }
}

// Cameras write the EXIF tag, too; who turned by both would turn twice.
TEST_F(TurnedHeifRunTest, TheExifTagTurnsNothingAndIsSetToNormal) {
  for (const std::string input : {"in.heic", "in.avif"}) {
    WriteTurned(input, 1);
    const FilePicture viewed = Viewed(ReadPictureFile(InFolder(input)), 6);
    WriteTurned(input, 6);
    const std::string tag = "cd '" + Folder().string() +
                            "' && exiftool -q -overwrite_original -n -EXIF:Orientation=6 " + input;
    ASSERT_EQ(std::system(tag.c_str()), 0);
    // The option has nothing to leave: the reader turns these files in any case.
    for (const std::vector<std::string>& more :
         {std::vector<std::string>{}, std::vector<std::string>{"--no-auto-orient"}}) {
      const FilePicture rendered = Rendered(input, "out.tif", more);
      EXPECT_EQ(rendered.spec.get_int_attribute("Orientation"), 1) << input;
      EXPECT_TRUE(rendered.samples == viewed.samples) << input;
    }
  }
}

}  // namespace
}  // namespace vitrell::cli
