// Photographs that the camera held another way up come out upright.
#include <exiv2/exiv2.hpp>
#include <string>
#include <vector>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::FilePicture;
using media::NoisePicture;
using media::ReadPictureFile;
using media::Viewed;
using media::WritePictureFile;

constexpr int kTags = 8;

class OrientationRunTest : public ToolTest {
 protected:
  void WriteTurned(const std::string& name, int orientation) const {
    FilePicture picture = NoisePicture(60, 40, 3, OIIO::TypeDesc::UINT8, 3);
    picture.spec.attribute("Orientation", orientation);
    WritePictureFile(InFolder(name), picture);
  }

  void WriteUpright(const std::string& turned, int orientation, const std::string& name) const {
    WritePictureFile(InFolder(name), Viewed(ReadPictureFile(InFolder(turned)), orientation));
  }

  std::vector<uint16_t> Samples(const std::string& name) const {
    return ReadPictureFile(InFolder(name)).samples;
  }

  int Tag(const std::string& name) const {
    return ReadPictureFile(InFolder(name)).spec.get_int_attribute("Orientation", 0);
  }

  // Of a lens beside the middle, so that every other way up looks different.
  void ExpectSameRender(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    for (const auto& [files, output] : {std::pair{a, "a.png"}, {b, "b.png"}}) {
      std::vector<std::string> arguments = {"render",  files[0],       output,
                                            "--force", "--set",        "lens.position=20%,30%",
                                            "--set",   "lens.scale=40"};
      arguments.insert(arguments.end(), files.begin() + 1, files.end());
      const ToolResult result = Run(arguments);
      ASSERT_EQ(result.exitCode, 0) << result.err;
    }
    EXPECT_TRUE(Samples("a.png") == Samples("b.png"));
  }
};

TEST_F(OrientationRunTest, CoordinatesAreThoseOfTheUprightPicture) {
  for (int tag = 1; tag <= kTags; ++tag) {
    SCOPED_TRACE(tag);
    WriteTurned("in.jpg", tag);
    WriteUpright("in.jpg", tag, "upright.png");
    ExpectSameRender({"in.jpg"}, {"upright.png"});
  }
}

TEST_F(OrientationRunTest, TheTagIsSetToNormal) {
  for (const char* extension : {"jpg", "tif"}) {
    for (int tag = 1; tag <= kTags; ++tag) {
      const std::string input = std::string("in.") + extension;
      const std::string output = std::string("out.") + extension;
      WriteTurned(input, tag);
      const ToolResult result = Run({"render", input, output, "--force"});
      ASSERT_EQ(result.exitCode, 0) << result.err;
      EXPECT_EQ(result.err, "");
      EXPECT_EQ(Tag(output), 1) << output << " of " << tag;
      EXPECT_EQ(ReadPictureFile(InFolder(output)).spec.width, tag < 5 ? 60 : 40);
    }
  }
}

TEST_F(OrientationRunTest, DpxIsTurnedWhereItsLinesAreRows) {
  for (const int tag : {2, 3, 4}) {
    WriteTurned("in.dpx", tag);
    // The library writes 3 as 4 and 4 as 3, but reads what is written.
    const int written = tag == 2 ? 2 : 7 - tag;
    WriteUpright("in.dpx", written, "upright.png");
    ExpectSameRender({"in.dpx"}, {"upright.png"});
  }
  WriteTurned("in.dpx", 6);
  ExpectMessage(Run({"render", "in.dpx", "out.png"}), 1, {"in.dpx: is stored column by column"});
}

TEST_F(OrientationRunTest, TheCustomLayerIsTurnedToo) {
  WritePictureFile(InFolder("in.png"), NoisePicture(50, 50, 3, OIIO::TypeDesc::UINT8, 4));
  WriteTurned("layer.tif", 6);
  WriteUpright("layer.tif", 6, "upright.png");
  ExpectSameRender({"in.png", "--set", "lens.type=custom", "--custom-layer", "layer.tif"},
                   {"in.png", "--set", "lens.type=custom", "--custom-layer", "upright.png"});
}

TEST_F(OrientationRunTest, IsLeftAloneWithTheOption) {
  WriteTurned("in.tif", 6);
  const ToolResult result = Run({"render", "in.tif", "out.tif", "--no-auto-orient", "--set",
                                 "lens.type=none", "--set", "fast-blur.amount=0"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(Samples("out.tif") == Samples("in.tif"));
  EXPECT_EQ(Tag("out.tif"), 6);
  // As the layer of another picture.
  WritePictureFile(InFolder("in.png"), NoisePicture(50, 50, 3, OIIO::TypeDesc::UINT8, 4));
  FilePicture plain = NoisePicture(60, 40, 3, OIIO::TypeDesc::UINT8, 3);
  WritePictureFile(InFolder("plain.png"), plain);
  ExpectSameRender(
      {"in.png", "--set", "lens.type=custom", "--custom-layer", "in.tif", "--no-auto-orient"},
      {"in.png", "--set", "lens.type=custom", "--custom-layer", "plain.png"});
}

TEST_F(OrientationRunTest, AFormatThatCannotKeepTheTagSaysSo) {
  WriteTurned("in.tif", 6);
  const ToolResult result = Run({"render", "in.tif", "out.bmp", "--no-auto-orient"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("does not keep the orientation"), std::string::npos) << result.err;
  EXPECT_EQ(Run({"render", "in.tif", "upright.bmp"}).err.find("orientation"), std::string::npos);
}

// Formats in which the picture library does not look for the tag.
TEST_F(OrientationRunTest, PngAndWebpAreTurnedByTheirExif) {
  const std::vector<std::string> neutral = {"--set", "lens.type=none", "--set",
                                            "fast-blur.amount=0"};
  WriteTurned("in.tif", 8);
  WriteUpright("in.tif", 8, "upright.png");
  const auto render = [&](const std::string& input, const std::string& output) {
    std::vector<std::string> arguments = {"render", input, output, "--force"};
    arguments.insert(arguments.end(), neutral.begin(), neutral.end());
    return Run(arguments).exitCode;
  };
  WritePictureFile(InFolder("plain.png"), NoisePicture(60, 40, 3, OIIO::TypeDesc::UINT8, 3));
  ASSERT_EQ(render("plain.png", "in.png"), 0);
  ASSERT_EQ(render("plain.png", "in.webp"), 0);
  // WebP loses; what is turned is what a plain file of the same pixels gives.
  ASSERT_EQ(render("in.webp", "stored.png"), 0);
  WriteUpright("stored.png", 8, "upright-webp.png");
  for (const char* name : {"in.png", "in.webp"}) {
    const auto image = Exiv2::ImageFactory::open(InFolder(name).string());
    image->readMetadata();
    image->exifData()["Exif.Image.Orientation"] = uint16_t{8};
    image->writeMetadata();
  }
  ExpectSameRender({"in.png"}, {"upright.png"});
  ExpectSameRender({"in.webp"}, {"upright-webp.png"});
}

}  // namespace
}  // namespace vitrell::cli
