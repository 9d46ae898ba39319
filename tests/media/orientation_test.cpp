// Pixels upright, as the definition of the tag tells.
#include "media/orientation.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "media/picture_files.h"
#include "media/psd_file.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

// Beyond one square of the pixels that are turned together, and no multiple of it.
constexpr int kShotWidth = 67;
constexpr int kShotHeight = 45;

class OrientationTest : public testing::TestWithParam<int> {
 protected:
  OrientationTest() {
    std::string pattern = (fs::temp_directory_path() / "vitrell-orientation-XXXXXX").string();
    folder_ = ::mkdtemp(pattern.data());
  }
  ~OrientationTest() override { fs::remove_all(folder_); }

  fs::path WriteTurned(int channels, OIIO::TypeDesc type) const {
    FilePicture picture = NoisePicture(kShotWidth, kShotHeight, channels, type, 5);
    picture.spec.attribute("Orientation", GetParam());
    // The writer works out the vertical one.
    picture.spec.attribute("XResolution", 300.0F);
    picture.spec.attribute("PixelAspectRatio", 0.5F);
    fs::path file = folder_ / "in.tif";
    WritePictureFile(file, picture);
    return file;
  }

  template <typename Sample>
  void ExpectUpright(int channels, OIIO::TypeDesc type) const {
    const fs::path file = WriteTurned(channels, type);
    const Picture picture = ReadPicture(file, {});
    const bool turned = GetParam() >= 5;
    EXPECT_EQ(picture.Width(), turned ? kShotHeight : kShotWidth);
    EXPECT_EQ(picture.Height(), turned ? kShotWidth : kShotHeight);
    EXPECT_EQ(picture.spec.get_int_attribute("Orientation"), 1);
    const FilePicture stored = ReadPictureFile(file);
    const float x = stored.spec.get_float_attribute("XResolution");
    const float y = stored.spec.get_float_attribute("YResolution");
    EXPECT_NE(x, y);
    EXPECT_EQ(picture.spec.get_float_attribute("XResolution"), turned ? y : x);
    EXPECT_EQ(picture.spec.get_float_attribute("YResolution"), turned ? x : y);
    const FilePicture viewed = Viewed(stored, GetParam());
    if constexpr (std::is_same_v<Sample, float>) {
      EXPECT_TRUE(std::get<std::vector<float>>(picture.samples) == viewed.floats);
    } else {
      EXPECT_TRUE(std::get<std::vector<Sample>>(picture.samples) ==
                  std::vector<Sample>(viewed.samples.begin(), viewed.samples.end()))
          << type;
    }
  }

  fs::path folder_;
};

TEST_P(OrientationTest, EveryTypeComesUpright) {
  ExpectUpright<uint8_t>(1, OIIO::TypeDesc::UINT8);
  ExpectUpright<uint8_t>(3, OIIO::TypeDesc::UINT8);
  ExpectUpright<uint16_t>(3, OIIO::TypeDesc::UINT16);
  ExpectUpright<float>(3, OIIO::TypeDesc::FLOAT);
}

TEST_P(OrientationTest, IsLeftAloneWhenNotWanted) {
  const fs::path file = WriteTurned(3, OIIO::TypeDesc::UINT8);
  ReadChoice stays;
  stays.autoOrient = false;
  const Picture picture = ReadPicture(file, {}, {}, stays);
  EXPECT_EQ(picture.Width(), kShotWidth);
  EXPECT_EQ(picture.spec.get_int_attribute("Orientation"), GetParam());
  const std::vector<uint16_t> stored = ReadPictureFile(file).samples;
  EXPECT_EQ(std::get<std::vector<uint8_t>>(picture.samples),
            std::vector<uint8_t>(stored.begin(), stored.end()));
}

// The layers lie as the canvas does, to which alone the tag belongs.
TEST_P(OrientationTest, PsdAndItsLayersComeUpright) {
  const fs::path file = folder_ / "in.psd";
  const PsdFile psd{NoisePicture(kShotWidth, kShotHeight, 3, OIIO::TypeDesc::UINT8, 5),
                    GetParam(),
                    {{"top", 3, 2, NoisePicture(20, 11, 4, OIIO::TypeDesc::UINT8, 6)}}};
  WritePsdFile(file, psd);
  for (const auto& [part, stored] : {std::pair{"", psd.flat}, {"top", psd.layers[0].picture}}) {
    ReadChoice choice;
    choice.part = part;
    const Picture picture = ReadPicture(file, {}, {}, choice);
    const FilePicture viewed = Viewed(stored, GetParam());
    EXPECT_EQ(picture.Width(), viewed.spec.width);
    EXPECT_EQ(picture.Height(), viewed.spec.height);
    EXPECT_EQ(picture.spec.get_int_attribute("Orientation"), 1);
    EXPECT_TRUE(std::get<std::vector<uint8_t>>(picture.samples) ==
                std::vector<uint8_t>(viewed.samples.begin(), viewed.samples.end()))
        << "part \"" << part << "\"";
  }
}

INSTANTIATE_TEST_SUITE_P(AllTags, OrientationTest, testing::Range(1, 9));

}  // namespace
}  // namespace vitrell::media
