// Channels and parts of an EXR that are not rendered go through as they are.
#include <ImfChannelList.h>
#include <ImfDeepFrameBuffer.h>
#include <ImfDeepScanLineOutputPart.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfMultiPartInputFile.h>
#include <ImfMultiPartOutputFile.h>
#include <ImfOutputPart.h>
#include <ImfPartType.h>
#include <ImfStringAttribute.h>
#include <ImfTiledOutputPart.h>
#include <OpenImageIO/deepdata.h>
#include <half.h>

#include <algorithm>
#include <map>
#include <random>
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

constexpr int kWidth = 60;
constexpr int kHeight = 44;
constexpr auto kPixels = static_cast<std::size_t>(kWidth * kHeight);

using Channels = std::map<std::string, std::string>;  // the stored bytes of all pixels, by name

class ExrRunTest : public ToolTest {
 protected:
  static std::size_t Bytes(Imf::PixelType type) { return type == Imf::HALF ? 2 : 4; }

  // Bits of every kind, numbers or not; colours are what a renderer writes.
  static std::string Noise(const std::string& name, Imf::PixelType type, uint32_t seed) {
    std::mt19937 random(seed + static_cast<uint32_t>(std::hash<std::string>()(name) % 1000));
    std::string bytes;
    const bool colour = type == Imf::HALF;
    while (bytes.size() < kPixels * Bytes(type)) {
      const uint32_t bits = static_cast<uint32_t>(random());
      const half value(static_cast<float>(bits % 4096) / 4095.0F);
      const uint16_t stored = value.bits();
      bytes.append(
          colour ? reinterpret_cast<const char*>(&stored) : reinterpret_cast<const char*>(&bits),
          Bytes(type));
    }
    return bytes;
  }

  static Imf::Header MakeHeader(const std::string& name, const std::string& type,
                                const std::vector<std::string>& halves,
                                const std::vector<std::string>& floats = {},
                                const std::vector<std::string>& numbers = {}) {
    Imf::Header header(kWidth, kHeight);
    header.setName(name);
    header.setType(type);
    if (type == Imf::TILEDIMAGE) header.setTileDescription(Imf::TileDescription(16, 16));
    header.insert("studio", Imf::StringAttribute("kept in " + name));
    for (const std::string& channel : halves) header.channels().insert(channel, Imf::HALF);
    for (const std::string& channel : floats) header.channels().insert(channel, Imf::FLOAT);
    for (const std::string& channel : numbers) header.channels().insert(channel, Imf::UINT);
    return header;
  }

  static void WriteDeep(Imf::MultiPartOutputFile& file, int part) {
    std::vector<unsigned> counts(kPixels, 1);
    std::vector<float> depths(kPixels);
    std::vector<float*> pointers(kPixels);
    for (std::size_t i = 0; i < kPixels; ++i) {
      depths[i] = static_cast<float>(i) * 0.25F;
      pointers[i] = &depths[i];
    }
    Imf::DeepFrameBuffer buffer;
    buffer.insertSampleCountSlice(Imf::Slice(Imf::UINT, reinterpret_cast<char*>(counts.data()),
                                             sizeof(unsigned), sizeof(unsigned) * kWidth));
    buffer.insert("Z", Imf::DeepSlice(Imf::FLOAT, reinterpret_cast<char*>(pointers.data()),
                                      sizeof(float*), sizeof(float*) * kWidth, sizeof(float)));
    Imf::DeepScanLineOutputPart target(file, part);
    target.setFrameBuffer(buffer);
    target.writePixels(kHeight);
  }

  void WriteExr(const std::string& name, const std::vector<Imf::Header>& headers) const {
    Imf::MultiPartOutputFile file(InFolder(name).c_str(), headers.data(),
                                  static_cast<int>(headers.size()));
    for (int part = 0; part < file.parts(); ++part) {
      const Imf::Header& header = headers[static_cast<std::size_t>(part)];
      if (header.type() == Imf::DEEPSCANLINE) {
        WriteDeep(file, part);
        continue;
      }
      Channels channels;
      Imf::FrameBuffer buffer;
      for (auto channel = header.channels().begin(); channel != header.channels().end();
           ++channel) {
        const Imf::PixelType type = channel.channel().type;
        std::string& bytes = channels[channel.name()];
        bytes = Noise(channel.name(), type, static_cast<uint32_t>(part));
        buffer.insert(channel.name(),
                      Imf::Slice(type, bytes.data(), Bytes(type), Bytes(type) * kWidth));
      }
      if (header.type() == Imf::TILEDIMAGE) {
        Imf::TiledOutputPart target(file, part);
        target.setFrameBuffer(buffer);
        // Smaller levels hold what lies at the same place of the buffer.
        for (int level = 0; level < target.numXLevels(); ++level) {
          target.writeTiles(0, target.numXTiles(level) - 1, 0, target.numYTiles(level) - 1, level);
        }
      } else {
        Imf::OutputPart target(file, part);
        target.setFrameBuffer(buffer);
        target.writePixels(kHeight);
      }
    }
  }

  Channels ReadPart(const std::string& name, int part) const {
    Channels channels;
    const auto input = OIIO::ImageInput::open(InFolder(name).string());
    EXPECT_TRUE(input != nullptr && input->seek_subimage(part, 0)) << name << " " << part;
    if (input == nullptr) return channels;
    const OIIO::ImageSpec spec = input->spec();
    std::string bytes(spec.image_bytes(true), '\0');
    EXPECT_TRUE(
        input->read_image(part, 0, 0, spec.nchannels, OIIO::TypeDesc::UNKNOWN, bytes.data()));
    for (int channel = 0; channel < spec.nchannels; ++channel) {
      const std::size_t size = spec.channelformat(channel).size();
      const std::size_t offset = spec.pixel_bytes(0, channel, true);
      std::string& values = channels[spec.channel_name(channel)];
      for (std::size_t pixel = 0; pixel < kPixels; ++pixel) {
        values.append(bytes, pixel * spec.pixel_bytes(true) + offset, size);
      }
    }
    return channels;
  }

  std::string ReadDeep(const std::string& name, int part) const {
    const auto input = OIIO::ImageInput::open(InFolder(name).string());
    OIIO::DeepData deep;
    EXPECT_TRUE(input != nullptr && input->read_native_deep_image(part, 0, deep));
    const auto data = deep.all_data();
    return {data.data(), static_cast<std::size_t>(data.size())};
  }

  // The names of those that differ; both must have the same.
  static std::vector<std::string> Changed(const Channels& before, const Channels& after) {
    std::vector<std::string> changed;
    EXPECT_EQ(before.size(), after.size());
    for (const auto& [name, bytes] : before) {
      EXPECT_EQ(after.count(name), 1U) << name;
      if (after.count(name) == 1 && after.at(name) != bytes) changed.push_back(name);
    }
    return changed;
  }

  std::vector<std::string> Names(const std::string& file, int part) const {
    std::vector<std::string> names;
    for (const auto& [name, bytes] : ReadPart(file, part)) names.push_back(name);
    return names;
  }

  void WriteLayers(const std::string& name) const {
    WriteExr(name, {MakeHeader("all", Imf::SCANLINEIMAGE,
                               {"R", "G", "B", "A", "diffuse.R", "diffuse.G", "diffuse.B"},
                               {"Z", "N.X", "N.Y", "N.Z"}, {"id"})});
  }

  static bool Has(const ToolResult& result, const std::string& text) {
    return result.err.find(text) != std::string::npos;
  }

  ToolResult RunLook(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "render");
    arguments.insert(arguments.end(), {"--force", "--set", "fast-blur.amount=9"});
    return Run(arguments);
  }
};

using Texts = std::vector<std::string>;

TEST_F(ExrRunTest, OtherChannelsKeepEveryBitAndTheirNames) {
  for (const char* type : {"scanlineimage", "tiledimage"}) {
    for (const Imf::Compression compression :
         {Imf::PIZ_COMPRESSION, Imf::DWAA_COMPRESSION, Imf::B44_COMPRESSION}) {
      Imf::Header header = MakeHeader("all", type, {"R", "G", "B", "A", "diffuse.R", "fur.density"},
                                      {"Z", "N.X"}, {"id"});
      header.compression() = compression;
      WriteExr("in.exr", {header});
      const Channels before = ReadPart("in.exr", 0);
      const ToolResult result = RunLook({"in.exr", "out.exr"});
      ASSERT_EQ(result.exitCode, 0) << result.err;
      EXPECT_EQ(Changed(before, ReadPart("out.exr", 0)), (Texts{"B", "G", "R"}));
    }
  }
}

TEST_F(ExrRunTest, TilesStayAndLevelsAreTold) {
  Imf::Header header = MakeHeader("all", Imf::TILEDIMAGE, {"R", "G", "B"}, {"Z"});
  header.setTileDescription(Imf::TileDescription(24, 10));
  header.compression() = Imf::PIZ_COMPRESSION;
  WriteExr("in.exr", {header});
  ASSERT_EQ(RunLook({"in.exr", "out.exr", "--strict"}).exitCode, 0);
  const Imf::MultiPartInputFile out(InFolder("out.exr").c_str());
  ASSERT_EQ(out.header(0).type(), Imf::TILEDIMAGE);
  EXPECT_EQ(out.header(0).tileDescription(), header.tileDescription());
  EXPECT_EQ(out.header(0).compression(), Imf::PIZ_COMPRESSION);
  EXPECT_EQ(Changed(ReadPart("in.exr", 0), ReadPart("out.exr", 0)), (Texts{"B", "G", "R"}));
  // In rows the same pixels come out.
  header.setType(Imf::SCANLINEIMAGE);
  WriteExr("rows.exr", {header});
  ASSERT_EQ(RunLook({"rows.exr", "rows-out.exr"}).exitCode, 0);
  EXPECT_EQ(Changed(ReadPart("rows-out.exr", 0), ReadPart("out.exr", 0)), Texts{});

  header.setType(Imf::TILEDIMAGE);
  header.setTileDescription(Imf::TileDescription(16, 16, Imf::MIPMAP_LEVELS));
  WriteExr("in.exr", {header});
  const ToolResult result = RunLook({"in.exr", "out.exr"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(Has(result, "smaller copies of the picture (mip levels) are left out"));
  const Imf::MultiPartInputFile alone(InFolder("out.exr").c_str());
  EXPECT_EQ(alone.header(0).tileDescription(), Imf::TileDescription(16, 16, Imf::ONE_LEVEL));
  EXPECT_EQ(Changed(ReadPart("in.exr", 0), ReadPart("out.exr", 0)), (Texts{"B", "G", "R"}));
}

// What was asked for, in a file that goes through.
TEST_F(ExrRunTest, CompressionAndDepthAreChosen) {
  WriteLayers("in.exr");
  const Channels before = ReadPart("in.exr", 0);
  for (const auto& [name, compression] : {std::pair{"none", Imf::NO_COMPRESSION},
                                          {"zips", Imf::ZIPS_COMPRESSION},
                                          {"dwaa", Imf::DWAA_COMPRESSION}}) {
    const ToolResult result = RunLook({"in.exr", "out.exr", "--compression", name});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Imf::MultiPartInputFile(InFolder("out.exr").c_str()).header(0).compression(),
              compression);
  }
  WriteExr("wide.exr", {MakeHeader("all", Imf::SCANLINEIMAGE, {"A"}, {"R", "G", "B", "Z"})});
  ASSERT_EQ(RunLook({"wide.exr", "out.exr", "--depth", "16"}).exitCode, 0);
  const Imf::MultiPartInputFile out(InFolder("out.exr").c_str());
  EXPECT_EQ(out.header(0).channels()["R"].type, Imf::HALF);
  EXPECT_EQ(out.header(0).channels()["Z"].type, Imf::FLOAT);
  EXPECT_EQ(ReadPart("out.exr", 0)["Z"], ReadPart("wide.exr", 0)["Z"]);
}

TEST_F(ExrRunTest, OtherPartsAreCopiedAsTheyAreStored) {
  std::vector<Imf::Header> headers = {
      MakeHeader("lossy", Imf::SCANLINEIMAGE, {"R", "G", "B", "A"}, {"Z"}),
      MakeHeader("beauty", Imf::SCANLINEIMAGE, {"R", "G", "B", "A"}, {"Z"}),
      MakeHeader("tiles", Imf::TILEDIMAGE, {"R", "G", "B"}, {}, {"id"}),
      MakeHeader("deep", Imf::DEEPSCANLINE, {}, {"Z"})};
  headers[0].compression() = Imf::DWAA_COMPRESSION;
  headers[3].compression() = Imf::ZIPS_COMPRESSION;
  WriteExr("in.exr", headers);
  for (const char* part : {"beauty", "1"}) {
    const ToolResult result = RunLook({"in.exr", "out.exr", "--part", part});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_FALSE(Has(result, "left out")) << result.err;
    EXPECT_EQ(Changed(ReadPart("in.exr", 0), ReadPart("out.exr", 0)), Texts{});
    EXPECT_EQ(Changed(ReadPart("in.exr", 1), ReadPart("out.exr", 1)), (Texts{"B", "G", "R"}));
    EXPECT_EQ(Changed(ReadPart("in.exr", 2), ReadPart("out.exr", 2)), Texts{});
    EXPECT_EQ(ReadDeep("in.exr", 3), ReadDeep("out.exr", 3));
    const Imf::MultiPartInputFile out(InFolder("out.exr").c_str());
    ASSERT_EQ(out.parts(), 4);
    for (int i = 0; i < 4; ++i) {
      const Imf::Header& before = headers[static_cast<std::size_t>(i)];
      EXPECT_EQ(out.header(i).name(), before.name());
      EXPECT_EQ(out.header(i).type(), before.type());
      EXPECT_EQ(out.header(i).compression(), before.compression());
      EXPECT_EQ(out.header(i).typedAttribute<Imf::StringAttribute>("studio").value(),
                "kept in " + before.name());
    }
  }
  // Without the option it is the first; other formats hold one.
  EXPECT_EQ(RunLook({"in.exr", "out.exr"}).exitCode, 0);
  EXPECT_EQ(Changed(ReadPart("in.exr", 1), ReadPart("out.exr", 1)), Texts{});
  EXPECT_TRUE(Has(RunLook({"in.exr", "out.png"}), "the other parts of the file are left out"));
}

TEST_F(ExrRunTest, ChannelsAreChosenByLayerOrByName) {
  WriteLayers("in.exr");
  const Channels before = ReadPart("in.exr", 0);
  const std::vector<std::pair<std::string, Texts>> cases = {
      {"diffuse", {"diffuse.B", "diffuse.G", "diffuse.R"}},
      {"diffuse.R,diffuse.G,diffuse.B", {"diffuse.B", "diffuse.G", "diffuse.R"}},
      {"B,diffuse.R,G", {"B", "G", "diffuse.R"}},
      {"R", {"R"}}};
  for (const auto& [wanted, changed] : cases) {
    const ToolResult result = RunLook({"in.exr", "out.exr", "--channels", wanted});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Changed(before, ReadPart("out.exr", 0)), changed) << wanted;
  }
}

TEST_F(ExrRunTest, AChosenLayerIsRenderedLikeAPictureOfItsOwn) {
  WriteLayers("in.exr");
  const Channels layers = ReadPart("in.exr", 0);
  FilePicture alone = NoisePicture(kWidth, kHeight, 3, OIIO::TypeDesc::HALF, 1);
  const std::vector<std::string> names = {"diffuse.R", "diffuse.G", "diffuse.B"};
  for (std::size_t i = 0; i < alone.floats.size(); ++i) {
    alone.floats[i] = reinterpret_cast<const half*>(layers.at(names[i % 3]).data())[i / 3];
  }
  WritePictureFile(InFolder("alone.exr"), alone);
  ASSERT_EQ(RunLook({"alone.exr", "alone.png"}).exitCode, 0);
  const ToolResult result = RunLook({"in.exr", "out.png", "--channels", "diffuse"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(Has(result, "channels beyond colour and alpha are left out"));
  EXPECT_TRUE(ReadPictureFile(InFolder("out.png")).samples ==
              ReadPictureFile(InFolder("alone.png")).samples);
}

TEST_F(ExrRunTest, UnknownPartsAndChannelsAreRefusedWithTheList) {
  WriteExr("in.exr", {MakeHeader("beauty", Imf::SCANLINEIMAGE, {"R", "G", "B", "A", "hair.r"}),
                      MakeHeader("shadow", Imf::SCANLINEIMAGE, {"Y"})});
  ExpectMessage(RunLook({"in.exr", "out.exr", "--part", "beaut"}), 2,
                {"in.exr: has no part \"beaut\"", "0 beauty, 1 shadow"});
  ExpectMessage(RunLook({"in.exr", "out.exr", "--part", "2"}), 2, {"0 beauty, 1 shadow"});
  for (const char* wanted : {"hair", "R,G,C", "R,G,B,A,hair.r", "R,", ",", "r"}) {
    ExpectMessage(
        RunLook({"in.exr", "out.exr", "--channels", wanted}), 2,
        {"in.exr: has no channels \"" + std::string(wanted) + "\"", "R, G, B, A, hair.r"});
  }
  ExpectMessage(RunLook({"in.exr", "out.exr", "--channels", "R,G,R"}), 2, {"R is named twice"});
  EXPECT_EQ(ToolTest::Names(), Texts{"in.exr"});
}

TEST_F(ExrRunTest, NewChannelsDisplaceNone) {
  WriteLayers("in.exr");
  const Channels before = ReadPart("in.exr", 0);
  ToolResult result = RunLook({"in.exr", "out.exr", "--channels", "Z", "--set", "color.opacity=100",
                               "--set", "color.color=#ff0000"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  Channels after = ReadPart("out.exr", 0);
  EXPECT_EQ(after.size(), before.size() + 2);
  EXPECT_EQ(after.count("Z.R") + after.count("Z.G") + after.count("Z.B"), 3U);
  for (const auto& [name, bytes] : before) {
    EXPECT_TRUE(name == "Z" || after[name] == bytes) << name;
  }
  result = Run({"render", "in.exr", "out.exr", "--force", "--channels", "diffuse", "--effect",
                VITRELL_FAKE_EFFECT_PATH, "--set", "test.work=fade"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  after = ReadPart("out.exr", 0);
  EXPECT_EQ(after.count("diffuse.A"), 1U);
  EXPECT_EQ(after["A"], before.at("A"));
}

TEST_F(ExrRunTest, AFullDiskIsTold) {
  WriteLayers("in.exr");
  const std::string before = ReadFile("in.exr");
  for (const long bytes : {0L, 500L, 40000L}) {
    ToolOptions options;
    options.maxFileBytes = bytes;
    ExpectMessage(Run({"render", "in.exr", "out.exr"}, options), 1, {"out.exr: cannot be written"});
    EXPECT_EQ(ToolTest::Names(), Texts{"in.exr"});
  }
}

}  // namespace
}  // namespace vitrell::cli
