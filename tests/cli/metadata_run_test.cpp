// What comes with a picture stays with it.
#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "cli/picture_files.h"
#include "cli/tool_run.h"

namespace vitrell::cli {
namespace {

// The shortest that libraries take for a profile: a header of 128 bytes and an empty table.
std::vector<uint8_t> Profile(const char* space) {
  std::vector<uint8_t> profile(132, 0);
  profile[3] = 132;
  profile[8] = 2;
  profile[9] = 0x40;
  std::memcpy(profile.data() + 12, "mntr", 4);
  std::memcpy(profile.data() + 16, space, 4);
  std::memcpy(profile.data() + 20, "XYZ ", 4);
  std::memcpy(profile.data() + 36, "acsp", 4);
  constexpr std::array<uint8_t, 12> kD50 = {0, 0, 0xF6, 0xD6, 0, 1, 0, 0, 0, 0, 0xD3, 0x2D};
  std::copy(kD50.begin(), kD50.end(), profile.begin() + 68);
  return profile;
}

FilePicture Photo(int channels, const char* profileSpace) {
  FilePicture picture = NoisePicture(40, 30, channels, OIIO::TypeDesc::UINT8, 11);
  const std::vector<uint8_t> profile = Profile(profileSpace);
  picture.spec.attribute("ICCProfile",
                         OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())),
                         profile.data());
  picture.spec.attribute("XResolution", 300.0F);
  picture.spec.attribute("YResolution", 300.0F);
  picture.spec.attribute("ResolutionUnit", "in");
  picture.spec.attribute("Exif:FNumber", 2.8F);
  picture.spec.attribute("Make", "Lens maker");
  return picture;
}

class MetadataRunTest : public ToolTest {
 protected:
  static std::vector<uint8_t> ProfileOf(const FilePicture& picture) {
    const OIIO::ParamValue* profile = picture.spec.find_attribute("ICCProfile");
    if (profile == nullptr) return {};
    const auto* bytes = static_cast<const uint8_t*>(profile->data());
    return {bytes, bytes + profile->type().size()};
  }
};

TEST_F(MetadataRunTest, ProfileExifAndResolutionAreKept) {
  for (const char* extension : {"tif", "jpg"}) {
    const std::string input = std::string("in.") + extension;
    const std::string output = std::string("out.") + extension;
    WritePictureFile(InFolder(input), Photo(3, "RGB "));
    ASSERT_EQ(ProfileOf(ReadPictureFile(InFolder(input))), Profile("RGB "));
    const ToolResult result = Run({"render", input, output});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
    const FilePicture written = ReadPictureFile(InFolder(output));
    EXPECT_EQ(ProfileOf(written), Profile("RGB "));
    EXPECT_EQ(written.spec.get_float_attribute("XResolution"), 300.0F);
    EXPECT_EQ(written.spec.get_float_attribute("YResolution"), 300.0F);
    EXPECT_NEAR(written.spec.get_float_attribute("Exif:FNumber"), 2.8F, 1e-3);
    EXPECT_EQ(written.spec.get_string_attribute("Make"), "Lens maker");
  }
}

TEST_F(MetadataRunTest, PngKeepsProfileAndResolution) {
  WritePictureFile(InFolder("in.png"), Photo(4, "RGB "));
  const FilePicture before = ReadPictureFile(InFolder("in.png"));
  ASSERT_EQ(ProfileOf(before), Profile("RGB "));
  const ToolResult result = Run({"render", "in.png", "out.png"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  const FilePicture written = ReadPictureFile(InFolder("out.png"));
  EXPECT_EQ(ProfileOf(written), Profile("RGB "));
  EXPECT_EQ(written.spec.get_float_attribute("XResolution"),
            before.spec.get_float_attribute("XResolution"));
}

TEST_F(MetadataRunTest, WhatAFormatCannotKeepIsTold) {
  WritePictureFile(InFolder("in.tif"), Photo(3, "RGB "));
  const ToolResult result = Run({"render", "in.tif", "out.png"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("out.png: the format does not keep the EXIF data"), std::string::npos)
      << result.err;
  EXPECT_EQ(Run({"render", "in.tif", "out2.png", "--quiet"}).err, "");
}

TEST_F(MetadataRunTest, GreyProfileLeavesAColouredResult) {
  WritePictureFile(InFolder("in.tif"), Photo(1, "GRAY"));
  const ToolResult result = Run({"render", "in.tif", "out.tif", "--set", "color.opacity=100",
                                 "--set", "color.color=#ff0000"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("the grey input came out coloured"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("ICC profile is left out"), std::string::npos) << result.err;
  const FilePicture written = ReadPictureFile(InFolder("out.tif"));
  EXPECT_EQ(written.spec.nchannels, 3);
  EXPECT_TRUE(ProfileOf(written).empty());
}

TEST_F(MetadataRunTest, GreyStaysGreyWithItsProfile) {
  WritePictureFile(InFolder("in.tif"), Photo(1, "GRAY"));
  const ToolResult result = Run({"render", "in.tif", "out.tif"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  const FilePicture written = ReadPictureFile(InFolder("out.tif"));
  EXPECT_EQ(written.spec.nchannels, 1);
  EXPECT_EQ(ProfileOf(written), Profile("GRAY"));
  EXPECT_FALSE(written.samples == Photo(1, "GRAY").samples);
}

TEST_F(MetadataRunTest, NewTransparencyIsStoredOrLaidOverBlack) {
  WritePictureFile(InFolder("in.png"), NoisePicture(8, 8, 3, OIIO::TypeDesc::UINT8, 2));
  const std::vector<std::string> fade = {"--effect", VITRELL_FAKE_EFFECT_PATH, "--set",
                                         "test.work=fade"};
  std::vector<std::string> arguments = {"render", "in.png", "out.png"};
  arguments.insert(arguments.end(), fade.begin(), fade.end());
  ToolResult result = Run(arguments);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("the output has an alpha channel"), std::string::npos);
  const FilePicture written = ReadPictureFile(InFolder("out.png"));
  ASSERT_EQ(written.spec.nchannels, 4);
  EXPECT_EQ(written.samples[3], 127);
  arguments[2] = "out.jpg";
  result = Run(arguments);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("laid over black"), std::string::npos);
}

TEST_F(MetadataRunTest, ClippingIsTold) {
  FilePicture picture = NoisePicture(4, 1, 3, OIIO::TypeDesc::FLOAT, 2);
  picture.floats[3] = 5.0F;
  WritePictureFile(InFolder("in.exr"), picture);
  const ToolResult result = Run({"render", "in.exr", "out.exr"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("in.exr: 1 pixels had values outside"), std::string::npos)
      << result.err;
}

}  // namespace
}  // namespace vitrell::cli
