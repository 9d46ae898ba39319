// PSD files: the flattened picture, and its layers one by one.
#include <string>
#include <vector>

#include "cli/tool_run.h"
#include "media/picture_files.h"
#include "media/psd_file.h"

namespace vitrell::cli {
namespace {

using media::FilePicture;
using media::NoisePicture;
using media::PsdFile;
using media::ReadPictureFile;
using media::Viewed;
using media::WritePictureFile;
using media::WritePsdFile;

const std::vector<std::string> kNeutral = {"--set", "lens.type=none", "--set",
                                           "fast-blur.amount=0"};

class PsdRunTest : public ToolTest {
 protected:
  PsdRunTest() { WritePsdFile(InFolder("in.psd"), psd_); }

  FilePicture Rendered(const std::string& input, const std::string& output,
                       const std::vector<std::string>& more) const {
    std::vector<std::string> arguments = {"render", input, output, "--force"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const ToolResult result = Run(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    return ReadPictureFile(InFolder(output));
  }

  // By this name or number, unchanged by the effect.
  FilePicture Part(const std::string& part) const {
    std::vector<std::string> arguments = kNeutral;
    arguments.insert(arguments.end(), {"--part", part});
    return Rendered("in.psd", "out.png", arguments);
  }

  const PsdFile psd_{NoisePicture(50, 40, 3, OIIO::TypeDesc::UINT8, 1),
                     0,
                     {{"street", 0, 0, NoisePicture(50, 40, 3, OIIO::TypeDesc::UINT8, 2)},
                      {"sign", 12, -3, NoisePicture(31, 22, 4, OIIO::TypeDesc::UINT8, 3)}}};
};

TEST_F(PsdRunTest, PartChoosesALayer) {
  EXPECT_TRUE(Part("0").samples == psd_.flat.samples);
  EXPECT_TRUE(Part("1").samples == psd_.layers[0].picture.samples);
  // Its own size, wherever it lies in the canvas; and what its program has hidden by alpha, too.
  const FilePicture sign = Part("sign");
  EXPECT_EQ(sign.spec.width, 31);
  EXPECT_EQ(sign.spec.height, 22);
  EXPECT_TRUE(sign.samples == psd_.layers[1].picture.samples);
  ExpectMessage(Run({"render", "in.psd", "out.png", "--part", "3", "--force"}), 2,
                {"in.psd: has no part \"3\"", "0, 1 street, 2 sign"});
}

TEST_F(PsdRunTest, WithoutPartTheFlattenedPictureIsRendered) {
  std::vector<std::string> arguments = {"render", "in.psd", "out.png"};
  arguments.insert(arguments.end(), kNeutral.begin(), kNeutral.end());
  const ToolResult result = Run(arguments);
  EXPECT_NE(result.err.find("in.psd: holds several pictures; only the first one is used."),
            std::string::npos)
      << result.err;
  EXPECT_TRUE(ReadPictureFile(InFolder("out.png")).samples == psd_.flat.samples);
}

// Colours are not multiplied by alpha: the layer looks like the same picture in a PNG.
TEST_F(PsdRunTest, ALayerRendersLikeAnyPicture) {
  WritePictureFile(InFolder("sign.png"), psd_.layers[1].picture);
  EXPECT_TRUE(Rendered("in.psd", "a.png", {"--part", "sign"}).samples ==
              Rendered("sign.png", "b.png", {}).samples);
}

TEST_F(PsdRunTest, ATurnedLayerIsWrittenUpright) {
  PsdFile turned = psd_;
  turned.orientation = 6;
  WritePsdFile(InFolder("in.psd"), turned);
  std::vector<std::string> arguments = kNeutral;
  arguments.insert(arguments.end(), {"--part", "sign"});
  const FilePicture sign = Rendered("in.psd", "out.tif", arguments);
  EXPECT_EQ(sign.spec.get_int_attribute("Orientation"), 1);
  EXPECT_EQ(sign.spec.width, 22);
  EXPECT_TRUE(sign.samples == Viewed(psd_.layers[1].picture, 6).samples);
}

}  // namespace
}  // namespace vitrell::cli
