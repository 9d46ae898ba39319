// A rendered image keeps the metadata of its input.
#include <stdlib.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "cli/tool_run.h"
#include "media/formats.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::FilePicture;
using media::NoisePicture;
using media::ReadPictureFile;
using media::WritePictureFile;

void PutNumber(std::vector<uint8_t>& bytes, std::size_t offset, std::size_t number) {
  for (std::size_t i = 0; i < 4; ++i) {
    bytes[offset + i] = static_cast<uint8_t>(number >> (24 - 8 * i));
  }
}

void PutText(std::vector<uint8_t>& bytes, std::size_t offset, const char* text) {
  std::memcpy(bytes.data() + offset, text, 4);
}

// A header of 128 bytes and nine empty tags of 12 bytes; libpng drops shorter profiles.
std::vector<uint8_t> Profile(const char* space) {
  constexpr std::size_t kTags = 9;
  constexpr std::size_t kTable = 132;
  constexpr std::size_t kData = kTable + 12 * kTags;
  std::vector<uint8_t> profile(kData + 12 * kTags, 0);
  PutNumber(profile, 0, profile.size());
  PutNumber(profile, 8, 0x02400000);
  PutText(profile, 12, "mntr");
  PutText(profile, 16, space);
  PutText(profile, 20, "XYZ ");
  PutText(profile, 36, "acsp");
  // The white point of every profile, D50.
  PutNumber(profile, 68, 0xF6D6);
  PutNumber(profile, 72, 0x10000);
  PutNumber(profile, 76, 0xD32D);
  PutNumber(profile, 128, kTags);
  for (std::size_t tag = 0; tag < kTags; ++tag) {
    PutText(profile, kTable + 12 * tag, "desc");
    PutNumber(profile, kTable + 12 * tag + 4, kData + 12 * tag);
    PutNumber(profile, kTable + 12 * tag + 8, 12);
    PutText(profile, kData + 12 * tag, "desc");
  }
  return profile;
}

FilePicture Photo(int channels, const char* profileSpace) {
  FilePicture picture = NoisePicture(40, 36, channels, OIIO::TypeDesc::UINT8, 11);
  const std::vector<uint8_t> profile = Profile(profileSpace);
  picture.spec.attribute("ICCProfile",
                         OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())),
                         profile.data());
  picture.spec.attribute("XResolution", 300.0F);
  picture.spec.attribute("YResolution", 300.0F);
  picture.spec.attribute("ResolutionUnit", "in");
  picture.spec.attribute("FNumber", 2.8F);
  picture.spec.attribute("Exif:FocalLength", 50.0F);
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
    EXPECT_NEAR(written.spec.get_float_attribute("FNumber"), 2.8F, 1e-3);
    EXPECT_EQ(written.spec.get_float_attribute("Exif:FocalLength"), 50.0F);
    EXPECT_EQ(written.spec.get_string_attribute("Make"), "Lens maker");
  }
}

// To every format that has a place for profiles, and back; the bytes as another program reads them.
TEST_F(MetadataRunTest, ProfileGoesWhereverItCan) {
  WritePictureFile(InFolder("in.tif"), Photo(3, "RGB "));
  int formats = 0;
  for (const media::Format& format : media::AllFormats()) {
    if (!format.writes) continue;
    const std::string extensions(format.extensions);
    const std::string name = "out." + extensions.substr(0, extensions.find(' '));
    const ToolResult result = Run({"render", "in.tif", name});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const bool told = result.err.find("does not keep the ICC profile") != std::string::npos;
    EXPECT_EQ(told, !format.profile) << name << ": " << result.err;
    if (!format.profile) continue;
    ++formats;
    const std::string command = "cd '" + Folder().string() +
                                "' && exiftool -q -q -b -icc_profile " + name + " > profile.icc";
    ASSERT_EQ(std::system(command.c_str()), 0);
    const std::string shown = ReadFile("profile.icc");
    EXPECT_TRUE(std::vector<uint8_t>(shown.begin(), shown.end()) == Profile("RGB ")) << name;
    ASSERT_EQ(Run({"render", name, "back.png", "--force"}).exitCode, 0);
    EXPECT_EQ(ProfileOf(ReadPictureFile(InFolder("back.png"))), Profile("RGB ")) << name;
  }
  EXPECT_EQ(formats, 7);
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

// A damaged profile must not cost the picture.
TEST_F(MetadataRunTest, ProfileThatAFormatRefusesIsLeftOut) {
  FilePicture picture = Photo(3, "RGB ");
  std::vector<uint8_t> profile = Profile("RGB ");
  PutNumber(profile, 68, 1);
  picture.spec.attribute("ICCProfile",
                         OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())),
                         profile.data());
  WritePictureFile(InFolder("in.tif"), picture);
  const ToolResult result = Run({"render", "in.tif", "out.png"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("does not keep the ICC profile"), std::string::npos) << result.err;
  EXPECT_EQ(ReadPictureFile(InFolder("out.png")).spec.width, 40);
}

TEST_F(MetadataRunTest, WhatAFormatCannotKeepIsTold) {
  WritePictureFile(InFolder("in.tif"), Photo(3, "RGB "));
  const ToolResult result = Run({"render", "in.tif", "out.bmp"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  for (const char* kind : {"EXIF data", "ICC profile"}) {
    EXPECT_NE(result.err.find("out.bmp: the format does not keep the " + std::string(kind)),
              std::string::npos)
        << result.err;
  }
  EXPECT_EQ(Run({"render", "in.tif", "out2.bmp", "--quiet"}).err, "");
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

TEST_F(MetadataRunTest, TheSameCommandGivesTheSameBytes) {
  WritePictureFile(InFolder("in.png"), NoisePicture(40, 40, 3, OIIO::TypeDesc::UINT8, 2));
  const std::vector<std::string> names = {"out.tif", "out.exr", "out.dpx", "out.png"};
  std::vector<std::string> before;
  for (const std::string& name : names) {
    ASSERT_EQ(Run({"render", "in.png", name, "--quiet"}).exitCode, 0);
    before.push_back(ReadFile(name));
  }
  // The dates in files count seconds.
  ::usleep(1100000);
  for (std::size_t i = 0; i < names.size(); ++i) {
    ASSERT_EQ(Run({"render", "in.png", names[i], "--quiet", "--force"}).exitCode, 0);
    EXPECT_TRUE(ReadFile(names[i]) == before[i]) << names[i];
  }
}

TEST_F(MetadataRunTest, TheDateOfTheSourceIsObeyed) {
  WritePictureFile(InFolder("in.png"), NoisePicture(40, 40, 3, OIIO::TypeDesc::UINT8, 2));
  ::setenv("SOURCE_DATE_EPOCH", "1000000000", 1);
  const ToolResult result = Run({"render", "in.png", "out.tif"});
  ::unsetenv("SOURCE_DATE_EPOCH");
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(ReadPictureFile(InFolder("out.tif")).spec.get_string_attribute("DateTime"),
            "2001:09:09 01:46:40");
}

}  // namespace
}  // namespace vitrell::cli
