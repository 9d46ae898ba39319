// EXIF, IPTC, XMP and ICC profiles go from every format to every other that can hold them, as
// another program reads them.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
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

// What exiftool shows of a file: the group and name of each entry, and its value.
using Entries = std::map<std::string, std::string>;

// One of every sort of value that photographs hold. Those that tell of pixels are wrong on purpose.
constexpr const char* kEntries =
    "-EXIF:Make=Lens maker\n-EXIF:Model=Model 7\n-EXIF:Software=Darkroom 2\n"
    "-EXIF:Artist=Ann Other\n-EXIF:Copyright=2024 Ann Other\n-EXIF:ImageDescription=A street\n"
    "-EXIF:ModifyDate=2024:05:06 07:08:09\n-EXIF:DateTimeOriginal=2024:05:06 07:08:09\n"
    "-EXIF:CreateDate=2024:05:06 07:08:10\n-EXIF:OffsetTimeOriginal=+02:00\n"
    "-EXIF:SubSecTimeOriginal=123\n-EXIF:ExposureTime=1/250\n-EXIF:FNumber=2.8\n-EXIF:ISO=400\n"
    "-EXIF:ExposureProgram#=3\n-EXIF:MeteringMode#=5\n-EXIF:Flash#=16\n-EXIF:FocalLength=50\n"
    "-EXIF:LensModel=50mm f/1.8\n-EXIF:LensInfo=50 50 1.8 1.8\n-EXIF:BodySerialNumber=00123\n"
    "-EXIF:UserComment=Some words\n-EXIF:ExposureCompensation=-0.33\n-EXIF:WhiteBalance#=1\n"
    "-EXIF:ExifImageWidth=6000\n-EXIF:ExifImageHeight=4000\n-EXIF:InteropIndex=R98\n"
    "-EXIF:XPTitle=Street\n-EXIF:Rating=4\n-EXIF:XResolution=300\n-EXIF:YResolution=300\n"
    "-EXIF:GPSLatitudeRef=N\n-EXIF:GPSLatitude=52.5\n-EXIF:GPSLongitudeRef=E\n"
    "-EXIF:GPSLongitude=13.4\n-EXIF:GPSAltitude=34\n-EXIF:GPSDateStamp=2024:05:06\n"
    "-IPTC:Keywords=street\n-IPTC:Keywords=night\n-IPTC:Keywords=rain\n-IPTC:City=Berlin\n"
    "-IPTC:Caption-Abstract=A street at night\n-IPTC:By-line=Ann Other\n-IPTC:Urgency#=3\n"
    "-XMP-dc:Subject=street\n-XMP-dc:Subject=night\n-XMP-dc:Title=Street\n"
    "-XMP-dc:Title-de=Gasse\n-XMP-xmp:Rating=4\n-XMP-xmp:Label=Red\n-XMP-photoshop:Headline=Head\n"
    "-XMP-crs:Exposure2012=+0.50\n-XMP-lr:HierarchicalSubject=a|b\n-XMP-aux:Lens=50mm\n"
    "-XMP-xmpMM:History=[{Action=saved,When=2024:05:06 07:08:09},{Action=edited}]\n"
    "-XMP-tiff:ImageWidth=6000\n-XMP-exif:ExifImageHeight=4000\n-XMP-iptcCore:Location=Mitte\n";

// Besides the layout of the samples: the reader's own remarks, and what a file's directory needs.
bool IsAboutTheFile(const std::string& name) {
  static const std::set<std::string> kNames = {
      "IFD0:ImageWidth",      "IFD0:ImageHeight",  "IFD0:BitsPerSample",
      "IFD0:Compression",     "IFD0:Predictor",    "IFD0:PhotometricInterpretation",
      "IFD0:StripOffsets",    "IFD0:RowsPerStrip", "IFD0:SamplesPerPixel",
      "IFD0:StripByteCounts", "IFD0:SampleFormat", "IFD0:PlanarConfiguration",
      "IFD0:ExtraSamples",    "IFD0:SubfileType",  "XMP-x:XMPToolkit",
      "IFD0:YCbCrPositioning"};
  return kNames.contains(name);
}

class CarriedMetadataRunTest : public ToolTest {
 protected:
  void Exiftool(const std::string& arguments) const {
    const std::string command = "cd '" + Folder().string() + "' && exiftool -q -q -m " + arguments;
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
  }

  // By file name.
  std::map<std::string, Entries> Show(const std::vector<std::string>& names) const {
    std::string files;
    for (const std::string& name : names) files += " " + name;
    Exiftool("-json -G1 -a -struct -w %f.%e.json -ext '*' " + files);
    std::map<std::string, Entries> shown;
    for (const std::string& name : names) {
      const nlohmann::json json = nlohmann::json::parse(ReadFile(name + ".json"));
      for (const auto& [key, value] : json.at(0).items()) {
        const std::string group = key.substr(0, key.find(':'));
        static const std::set<std::string> kGroups = {"IFD0",       "IFD1", "ExifIFD", "GPS",
                                                      "InteropIFD", "IPTC", "File"};
        if (kGroups.contains(group) || group.starts_with("XMP-") || group.starts_with("ICC")) {
          shown[name][key] = value.dump();
        }
      }
    }
    return shown;
  }

  // What must be in an output of this format.
  static Entries Kept(const Entries& input, const media::Format& format) {
    Entries kept;
    for (const auto& [key, value] : input) {
      const bool xmp = key.starts_with("XMP-");
      const bool iptc = key.starts_with("IPTC:");
      const bool profile = key.starts_with("ICC");
      const bool exif = !xmp && !iptc && !profile && !key.starts_with("File:");
      const bool held = (xmp && format.xmp) || (iptc && format.iptc) ||
                        (profile && format.profile) || (exif && format.exif);
      if (held && !IsAboutTheFile(key) && !key.starts_with("IFD1:")) kept[key] = value;
    }
    return kept;
  }

  static std::string FirstExtension(const media::Format& format) {
    const std::string extensions(format.extensions);
    return extensions.substr(0, extensions.find(' '));
  }

  // A file of each format that can hold metadata, with all of them.
  std::vector<const media::Format*> MakePhotos() const {
    std::vector<const media::Format*> formats;
    WriteFile("entries", kEntries);
    WritePictureFile(InFolder("plain.png"), NoisePicture(64, 48, 3, OIIO::TypeDesc::UINT8, 4));
    std::string names;
    for (const media::Format& format : media::AllFormats()) {
      if (!format.writes || !(format.exif || format.iptc || format.xmp)) continue;
      formats.push_back(&format);
      const std::string name = "in." + FirstExtension(format);
      EXPECT_EQ(Run({"render", "plain.png", name}).exitCode, 0);
      names += " " + name;
    }
    Exiftool("-overwrite_original -@ entries" + names);
    return formats;
  }
};

TEST_F(CarriedMetadataRunTest, EveryEntryGoesOverWhereItCan) {
  const std::vector<const media::Format*> formats = MakePhotos();
  ASSERT_GE(formats.size(), 7U);
  std::vector<std::string> names;
  for (const media::Format* from : formats) {
    const std::string input = "in." + FirstExtension(*from);
    names.push_back(input);
    for (const media::Format* to : formats) {
      const std::string output = "from-" + FirstExtension(*from) + "." + FirstExtension(*to);
      names.push_back(output);
      const ToolResult result = Run({"render", input, output});
      ASSERT_EQ(result.exitCode, 0) << result.err;
      // All of them hold EXIF and XMP.
      const bool loses = from->iptc && !to->iptc;
      EXPECT_EQ(result.err.find("does not keep the IPTC data") != std::string::npos, loses)
          << output << ": " << result.err;
      EXPECT_EQ(result.err.find("EXIF data"), std::string::npos) << output << ": " << result.err;
      EXPECT_EQ(result.err.find("XMP data"), std::string::npos) << output << ": " << result.err;
    }
  }
  const std::map<std::string, Entries> shown = Show(names);
  for (const media::Format* from : formats) {
    const Entries& input = shown.at("in." + FirstExtension(*from));
    ASSERT_GE(input.size(), 45U) << from->name;
    for (const media::Format* to : formats) {
      const std::string output = "from-" + FirstExtension(*from) + "." + FirstExtension(*to);
      Entries expected = Kept(input, *to);
      // What tells of pixels is put right.
      for (const char* width : {"ExifIFD:ExifImageWidth", "XMP-tiff:ImageWidth"}) {
        if (expected.contains(width)) expected[width] = "64";
      }
      for (const char* height : {"ExifIFD:ExifImageHeight", "XMP-exif:ExifImageHeight"}) {
        if (expected.contains(height)) expected[height] = "48";
      }
      const Entries written = Kept(shown.at(output), *to);
      for (const auto& [key, value] : expected) {
        const auto found = written.find(key);
        ASSERT_NE(found, written.end()) << output << " lacks " << key << " " << value;
        EXPECT_EQ(found->second, value) << output << " " << key;
      }
    }
  }
}

TEST_F(CarriedMetadataRunTest, WhatDescribesThePixelsIsTrue) {
  const std::vector<const media::Format*> formats = MakePhotos();
  ASSERT_FALSE(formats.empty());
  WritePictureFile(InFolder("small.jpg"), NoisePicture(16, 12, 3, OIIO::TypeDesc::UINT8, 4));
  Exiftool("-overwrite_original -n -Orientation=6 '-ThumbnailImage<=small.jpg' in.jpg");
  const std::vector<std::string> names = {"in.jpg", "out.jpg", "out.tif", "out.png", "out.webp"};
  for (std::size_t i = 1; i < names.size(); ++i) {
    ASSERT_EQ(Run({"render", "in.jpg", names[i]}).exitCode, 0);
  }
  const std::map<std::string, Entries> shown = Show(names);
  ASSERT_TRUE(shown.at("in.jpg").contains("IFD1:ThumbnailLength"));
  for (std::size_t i = 1; i < names.size(); ++i) {
    const Entries& entries = shown.at(names[i]);
    const auto picture = ReadPictureFile(InFolder(names[i])).spec;
    EXPECT_EQ(entries.at("ExifIFD:ExifImageWidth"), std::to_string(picture.width));
    EXPECT_EQ(entries.at("ExifIFD:ExifImageHeight"), std::to_string(picture.height));
    // A new one, but not where it would be a page.
    EXPECT_EQ(entries.contains("IFD1:ThumbnailLength"), names[i] != "out.tif") << names[i];
  }
  EXPECT_EQ(shown.at("out.tif").at("IFD0:BitsPerSample"), "\"8 8 8\"");
  // 64 x 48 pixels that lay on their side.
  EXPECT_EQ(shown.at("out.tif").at("IFD0:ImageWidth"), "48");
}

// Formats without a place for them say so, each kind by itself.
TEST_F(CarriedMetadataRunTest, WhatCannotBeHeldIsTold) {
  ASSERT_FALSE(MakePhotos().empty());
  for (const char* name : {"out.bmp", "out.tga", "out.ppm", "out.hdr", "out.gif", "out.dpx"}) {
    const ToolResult result = Run({"render", "in.jpg", name});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    for (const char* kind : {"EXIF", "IPTC", "XMP"}) {
      EXPECT_NE(result.err.find("does not keep the " + std::string(kind) + " data"),
                std::string::npos)
          << name << " " << kind << ": " << result.err;
    }
  }
}

TEST_F(CarriedMetadataRunTest, TheSameCommandGivesTheSameBytes) {
  ASSERT_FALSE(MakePhotos().empty());
  for (const char* name : {"out.jpg", "out.tif", "out.png", "out.webp", "out.jp2", "out.avif"}) {
    ASSERT_EQ(Run({"render", "in.jpg", name}).exitCode, 0);
    const std::string first = ReadFile(name);
    ASSERT_EQ(Run({"render", "in.jpg", name, "--force"}).exitCode, 0);
    EXPECT_TRUE(ReadFile(name) == first) << name;
  }
}

// An XMP packet that JPEG cannot hold costs neither the picture nor the other metadata.
TEST_F(CarriedMetadataRunTest, WhatIsTooLargeIsTold) {
  ASSERT_FALSE(MakePhotos().empty());
  WriteFile("long.txt", std::string(70000, 'x'));
  Exiftool("-overwrite_original '-XMP-dc:Description<=long.txt' in.tif");
  const ToolResult result = Run({"render", "in.tif", "out.jpg"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("does not keep the XMP data"), std::string::npos) << result.err;
  EXPECT_EQ(result.err.find("EXIF data"), std::string::npos) << result.err;
  EXPECT_EQ(Show({"out.jpg"}).at("out.jpg").at("IFD0:Make"), "\"Lens maker\"");
}

// Some programs write one property twice, which the metadata library refuses. Where the packet is a
// block of its own it goes over; where it is put together anew its loss is told.
TEST_F(CarriedMetadataRunTest, XmpThatCannotBeReadGoesOverOrIsTold) {
  const std::string packet =
      "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
      "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description "
      "xmlns:exif='http://ns.adobe.com/exif/1.0/'><exif:Make>A</exif:Make><exif:Make>B</exif:Make>"
      "</rdf:Description></rdf:RDF></x:xmpmeta>";
  const std::string segment = std::string("http://ns.adobe.com/xap/1.0/\0", 29) + packet;
  WritePictureFile(InFolder("plain.jpg"), NoisePicture(40, 30, 3, OIIO::TypeDesc::UINT8, 1));
  const std::string plain = ReadFile("plain.jpg");
  const std::size_t size = segment.size() + 2;
  WriteFile("in.jpg", plain.substr(0, 2) + "\xff\xe1" + static_cast<char>(size >> 8) +
                          static_cast<char>(size & 0xff) + segment + plain.substr(2));
  for (const char* name : {"out.jpg", "out.webp", "out.avif"}) {
    const ToolResult result = Run({"render", "in.jpg", name});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(ReadFile(name).find(packet), std::string::npos) << name << result.err;
    EXPECT_EQ(result.err.find("XMP"), std::string::npos) << result.err;
  }
  for (const char* name : {"out.tif", "out.bmp"}) {
    const ToolResult result = Run({"render", "in.jpg", name});
    EXPECT_NE(result.err.find("does not keep the XMP data"), std::string::npos)
        << name << result.err;
  }
}

// The old one would show the picture as it was.
TEST_F(CarriedMetadataRunTest, ThumbnailsAreMadeAnew) {
  FilePicture picture = NoisePicture(640, 320, 3, OIIO::TypeDesc::UINT8, 1);
  picture.samples.assign(picture.samples.size(), 200);
  WritePictureFile(InFolder("small.jpg"), picture);
  WritePictureFile(InFolder("in.jpg"), picture);
  Exiftool("-overwrite_original '-ThumbnailImage<=small.jpg' -EXIF:Make=Me in.jpg");
  for (const char* name : {"out.jpg", "out.png", "out.webp", "out.tif"}) {
    const ToolResult result = Run({"render", "in.jpg", name, "--set", "color.opacity=100", "--set",
                                   "color.color=#000000", "--set", "lens.type=none"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err.find("EXIF"), std::string::npos) << result.err;
    Exiftool("-b -ThumbnailImage -w! 'thumb-%f-%e.jpg' " + std::string(name));
  }
  for (const char* name : {"thumb-out-jpg.jpg", "thumb-out-png.jpg", "thumb-out-webp.jpg"}) {
    const FilePicture thumbnail = ReadPictureFile(InFolder(name));
    EXPECT_EQ(thumbnail.spec.width, 160);
    EXPECT_EQ(thumbnail.spec.height, 80);
    ASSERT_FALSE(thumbnail.samples.empty());
    EXPECT_LT(thumbnail.samples.at(thumbnail.samples.size() / 2), 100) << name;
  }
  EXPECT_FALSE(std::filesystem::exists(InFolder("thumb-out-tif.jpg")));
}

}  // namespace
}  // namespace vitrell::cli
