// All pages of a TIFF or GIF, rendered into one file.
#include <exiv2/exiv2.hpp>
#include <nlohmann/json.hpp>
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

class PagesRunTest : public ToolTest {
 protected:
  // Of different sizes and descriptions.
  static FilePicture Page(int i, OIIO::TypeDesc type = OIIO::TypeDesc::UINT16) {
    FilePicture picture = NoisePicture(60 + 11 * i, 40 + i, 3, type, static_cast<uint32_t>(i));
    picture.spec.attribute("ImageDescription", "page " + std::to_string(i + 1));
    picture.spec.attribute("compression", "zip");
    return picture;
  }

  void WritePages(const std::string& name, const std::vector<FilePicture>& pages) const {
    const auto output = OIIO::ImageOutput::create(InFolder(name).string());
    ASSERT_NE(output, nullptr);
    for (std::size_t i = 0; i < pages.size(); ++i) {
      ASSERT_TRUE(
          output->open(InFolder(name).string(), pages[i].spec,
                       i == 0 ? OIIO::ImageOutput::Create : OIIO::ImageOutput::AppendSubimage));
      ASSERT_TRUE(output->write_image(OIIO::TypeDesc::UINT16, pages[i].samples.data()));
    }
    ASSERT_TRUE(output->close());
  }

  void WriteTiff(const std::string& name, int count) const {
    std::vector<FilePicture> pages;
    for (int i = 0; i < count; ++i) pages.push_back(Page(i));
    WritePages(name, pages);
  }

  std::vector<FilePicture> ReadPages(const std::string& name) const {
    return media::ReadPages(InFolder(name));
  }

  // Each page is what the same page rendered as a file of its own is.
  void ExpectPages(const std::string& name, const std::vector<int>& wanted) const {
    const std::vector<FilePicture> pages = ReadPages(name);
    ASSERT_EQ(pages.size(), wanted.size());
    for (std::size_t i = 0; i < pages.size(); ++i) {
      WritePictureFile(InFolder("alone.tif"), Page(wanted[i]));
      ASSERT_EQ(Run({"render", "alone.tif", "alone-out.tif", "--force"}).exitCode, 0);
      const FilePicture alone = ReadPictureFile(InFolder("alone-out.tif"));
      EXPECT_TRUE(pages[i].samples == alone.samples) << "page " << i;
      EXPECT_EQ(pages[i].spec.get_string_attribute("ImageDescription"),
                "page " + std::to_string(wanted[i] + 1));
      EXPECT_EQ(pages[i].spec.get_string_attribute("compression"), "zip");
    }
  }

  static bool Has(const ToolResult& result, const std::string& text) {
    return result.err.find(text) != std::string::npos;
  }
};

TEST_F(PagesRunTest, PagesOfATiffAreRenderedIntoOne) {
  WriteTiff("in.tif", 5);
  const std::vector<std::pair<std::string, std::vector<int>>> cases = {
      {"all", {0, 1, 2, 3, 4}}, {"2-3", {1, 2}}, {"4-,1", {3, 4, 0}}, {"5", {4}}};
  for (const auto& [wanted, pages] : cases) {
    const ToolResult result =
        Run({"render", "in.tif", "out.tif", "--pages", wanted, "--force", "--report", "r.json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_NE(result.out.find("out.tif: " + std::to_string(pages.size()) + " pages, 16 bits"),
              std::string::npos)
        << result.out;
    EXPECT_EQ(nlohmann::json::parse(ReadFile("r.json")).at("pages"), pages.size());
    ExpectPages("out.tif", pages);
  }
}

// EXIF and XMP of each page are its own.
TEST_F(PagesRunTest, PagesKeepTheirMetadata) {
  const auto artists = [this](const std::string& name) {
    std::vector<std::string> found;
    const auto file = OIIO::ImageInput::open(InFolder(name).string());
    for (int page = 0; file != nullptr && file->seek_subimage(page, 0); ++page) {
      found.emplace_back(file->spec().get_string_attribute("Artist"));
    }
    return found;
  };
  std::vector<FilePicture> pages = {Page(0), Page(1), Page(2)};
  for (std::size_t i = 0; i < 3; ++i) pages[i].spec.attribute("Artist", std::to_string(i) + " me");
  WritePages("in.tif", pages);
  const ToolResult result = Run({"render", "in.tif", "out.tif", "--pages", "all"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(artists("out.tif"), (std::vector<std::string>{"0 me", "1 me", "2 me"}));
  // One alone has those of the page, too.
  ASSERT_EQ(Run({"render", "in.tif", "out.jpg", "--part", "2"}).exitCode, 0);
  const auto image = Exiv2::ImageFactory::open(InFolder("out.jpg").string());
  image->readMetadata();
  EXPECT_EQ(image->exifData()["Exif.Image.Artist"].toString(), "2 me");
}

TEST_F(PagesRunTest, OnePageIsAPart) {
  WriteTiff("in.tif", 3);
  const std::vector<std::string> neutral = {"--set", "lens.type=none", "--set",
                                            "fast-blur.amount=0"};
  for (const char* const name : {"in.tif", "in.gif"}) {
    if (name == std::string("in.gif")) {
      std::vector<FilePicture> frames;
      for (uint32_t i = 0; i < 3; ++i) {
        frames.push_back(NoisePicture(50, 40, 3, OIIO::TypeDesc::UINT16, i));
      }
      WritePages("in.gif", frames);
    }
    const std::vector<FilePicture> pages = ReadPages(name);
    for (std::size_t i = 0; i < 3; ++i) {
      std::vector<std::string> arguments = {"render",  name,     "out.tif",
                                            "--force", "--part", std::to_string(i)};
      arguments.insert(arguments.end(), neutral.begin(), neutral.end());
      const ToolResult result = Run(arguments);
      ASSERT_EQ(result.exitCode, 0) << result.err;
      EXPECT_TRUE(ReadPages("out.tif").at(0).samples == pages[i].samples) << name << " " << i;
    }
    ExpectMessage(Run({"render", name, "out.tif", "--force", "--part", "3"}), 2,
                  {std::string(name) + ": has no part \"3\"", "0, 1, 2"});
  }
}

TEST_F(PagesRunTest, AnAnimationKeepsItsTimes) {
  std::vector<FilePicture> frames;
  for (int i = 0; i < 4; ++i) {
    frames.push_back(NoisePicture(50, 40, 3, OIIO::TypeDesc::UINT8, static_cast<uint32_t>(i)));
    for (uint16_t& sample : frames.back().samples) sample = static_cast<uint16_t>(sample * 257);
    frames.back().spec.attribute("FramesPerSecond", 100.0F / static_cast<float>(5 + 10 * i));
  }
  WritePages("in.gif", frames);
  // The library's writer knows one number of loops only: for ever.
  std::string bytes = ReadFile("in.gif");
  const std::size_t loops = bytes.find("NETSCAPE2.0\x03\x01");
  ASSERT_NE(loops, std::string::npos);
  bytes[loops + 13] = 7;
  WriteFile("in.gif", bytes);
  const std::vector<FilePicture> before = ReadPages("in.gif");
  const ToolResult result = Run({"render", "in.gif", "out.gif", "--pages", "all"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_FALSE(Has(result, "several pictures")) << result.err;
  const std::vector<FilePicture> after = ReadPages("out.gif");
  ASSERT_EQ(after.size(), 4U);
  EXPECT_EQ(after[0].spec.get_int_attribute("gif:LoopCount"), 7);
  for (std::size_t i = 0; i < 4; ++i) {
    const auto rate = [&](const FilePicture& frame) {
      return frame.spec.get_float_attribute("FramesPerSecond", -1);
    };
    EXPECT_FLOAT_EQ(rate(after[i]), rate(before[i])) << i;
    EXPECT_FALSE(after[i].samples == before[i].samples);
  }
  const ToolResult still = Run({"render", "in.gif", "out.tif", "--pages", "2-3"});
  EXPECT_TRUE(Has(still, "the format stores no times")) << still.err;
  EXPECT_EQ(ReadPages("out.tif").size(), 2U);
  ASSERT_EQ(Run({"render", "in.gif", "out.tif", "--pages", "all", "--strict", "--force"}).exitCode,
            1);
  EXPECT_EQ(ReadPages("out.tif").size(), 2U);
}

TEST_F(PagesRunTest, WhatCannotBeDoneIsRefused) {
  WriteTiff("in.tif", 3);
  WritePictureFile(InFolder("in.png"), NoisePicture(50, 40, 3, OIIO::TypeDesc::UINT8, 1));
  for (const char* pages : {"4", "0", "2-9", "3-2", "x", "1,", "-2", "1-2-3"}) {
    ExpectMessage(Run({"render", "in.tif", "out.tif", std::string("--pages=") + pages}), 2,
                  {"in.tif: has no pages \"" + std::string(pages) + "\"; it has 3", "2,5-7"});
  }
  EXPECT_EQ(Run({"render", "in.tif", "out.tif", "--pages", ""}).exitCode, 2);
  EXPECT_EQ(Run({"render", "in.tif", "out.tif", "--pages", "1", "--part", "1"}).exitCode, 2);
  ExpectMessage(Run({"render", "in.tif", "out.png", "--pages", "all"}), 2,
                {"out.png: PNG holds one page", ".tif or .gif", "--part"});
  ExpectMessage(Run({"render", "in.png", "out.tif", "--pages", "all"}), 2,
                {"in.png: --pages is for TIFF and GIF"});
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.png", "in.tif"}));
  EXPECT_TRUE(Has(Run({"render", "in.tif", "out.png"}), "--pages all renders all"));
}

// A page that cannot be written leaves nothing.
TEST_F(PagesRunTest, FailuresLeaveNothing) {
  WriteTiff("in.tif", 4);
  ToolOptions options;
  for (const long bytes : {0L, 9000L, 40000L}) {
    options.maxFileBytes = bytes;
    const ToolResult result = Run({"render", "in.tif", "out.tif", "--pages", "all"}, options);
    ExpectMessage(result, 1, {"out.tif: cannot be written"});
  }
  const std::string whole = ReadFile("in.tif");
  WriteFile("in.tif", whole.substr(0, whole.size() / 2) + std::string(9000, 'x') +
                          whole.substr(whole.size() / 2 + 9000));
  ExpectMessage(Run({"render", "in.tif", "out.tif", "--pages", "all"}), 1, {"in.tif", "damaged"});
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.tif"}));
}

}  // namespace
}  // namespace vitrell::cli
