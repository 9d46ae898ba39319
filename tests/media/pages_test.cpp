// Pages of TIFF and GIF files: found, and put together.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "media/file_sink.h"
#include "media/gif_pages.h"
#include "media/picture_files.h"
#include "media/tiff_pages.h"

namespace vitrell::media {
namespace {

class PagesTest : public testing::Test {
 protected:
  PagesTest() : folder_(std::filesystem::temp_directory_path() / ("pages-" + Unique())) {
    std::filesystem::create_directory(folder_);
  }
  ~PagesTest() override { std::filesystem::remove_all(folder_); }

  std::filesystem::path InFolder(const std::string& name) const { return folder_ / name; }

  std::string Read(const std::string& name) const {
    std::ifstream stream(InFolder(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(InFolder(name), std::ios::binary) << bytes;
  }

  std::string Encoded(const std::string& name, const FilePicture& picture) const {
    WritePictureFile(InFolder(name), picture);
    return Read(name);
  }

  template <typename Joiner, typename... More>
  void Join(const std::string& name, const std::vector<std::string>& files,
            const std::vector<int>& delays, const More&... more) const {
    Write(name, "");
    FileSink sink(InFolder(name));
    Joiner joiner(sink, more...);
    for (std::size_t i = 0; i < files.size(); ++i) joiner.Add(files[i], delays[i]);
    joiner.Finish();
    sink.close();
    EXPECT_EQ(sink.FirstError(), "");
  }

  // By the picture library, which knows nothing of how the pages came together.
  std::vector<FilePicture> Pages(const std::string& name) const {
    return ReadPages(InFolder(name));
  }

 private:
  static std::string Unique() {
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    return std::to_string(::getpid()) + "-" + test->name();
  }

  std::filesystem::path folder_;
};

// Sizes, channels, compressions and odd lengths of files differ.
TEST_F(PagesTest, TiffFilesBecomePages) {
  std::vector<FilePicture> pictures;
  std::vector<std::string> files;
  for (int i = 0; i < 6; ++i) {
    FilePicture picture =
        NoisePicture(31 + 40 * i, 17 + 9 * i, 1 + i % 4, OIIO::TypeDesc::UINT16, 5);
    picture.spec.attribute("compression", i % 2 == 0 ? "zip" : "none");
    picture.spec.attribute("ImageDescription", "page " + std::to_string(i));
    picture.spec.attribute("tiff:RowsPerStrip", 3 + i);
    pictures.push_back(picture);
    files.push_back(Encoded("page.tif", picture));
  }
  Join<TiffJoiner>("all.tif", files, {0, 0, 0, 0, 0, 0});
  const std::vector<FilePicture> pages = Pages("all.tif");
  ASSERT_EQ(pages.size(), pictures.size());
  for (std::size_t i = 0; i < pages.size(); ++i) {
    EXPECT_EQ(pages[i].spec.width, pictures[i].spec.width);
    EXPECT_EQ(pages[i].spec.get_string_attribute("ImageDescription"),
              pictures[i].spec.get_string_attribute("ImageDescription"));
    EXPECT_TRUE(pages[i].samples == pictures[i].samples) << "page " << i;
  }
}

TEST_F(PagesTest, EveryPageOfATiffCanComeFirst) {
  std::vector<std::string> files;
  for (int i = 0; i < 4; ++i) {
    FilePicture picture = NoisePicture(20 + i, 10, 3, OIIO::TypeDesc::UINT8, 5);
    files.push_back(Encoded("page.tif", picture));
  }
  Join<TiffJoiner>("all.tif", files, {0, 0, 0, 0});
  for (int i = 0; i < 5; ++i) {
    std::string bytes = Read("all.tif");
    EXPECT_EQ(BeginWithPage(bytes, i), i < 4);
    if (i == 4) break;
    Write("first.tif", bytes);
    EXPECT_EQ(ReadPictureFile(InFolder("first.tif")).spec.width, 20 + i);
  }
  const std::string other("MM\0*\0\0\0\x08\0\0\0\0\0\x0e\0\0\0\0\0\0", 20);
  std::string swapped = other;
  ASSERT_TRUE(BeginWithPage(swapped, 1));
  EXPECT_EQ(swapped.substr(4, 4), std::string("\0\0\0\x0e", 4));
  for (std::size_t size = 0; size < 14; ++size) {
    std::string cut = other.substr(0, size);
    EXPECT_FALSE(BeginWithPage(cut, 1)) << size;
  }
}

TEST_F(PagesTest, GifFilesBecomeFramesWithTheirTimes) {
  std::vector<std::string> files;
  std::vector<FilePicture> alone;
  for (uint32_t i = 0; i < 3; ++i) {
    files.push_back(Encoded("frame.gif", NoisePicture(40, 30, 3, OIIO::TypeDesc::UINT8, i)));
    alone.push_back(Pages("frame.gif").at(0));
  }
  Join<GifJoiner>("all.gif", files, {7, 0, 300}, std::optional<int>(5));
  const GifTimes times = FindGifTimes(Read("all.gif"));
  EXPECT_EQ(times.delays, (std::vector<int>{7, 0, 300}));
  EXPECT_EQ(times.loops, 5);
  const std::vector<FilePicture> frames = Pages("all.gif");
  ASSERT_EQ(frames.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(frames[i].samples == alone[i].samples) << i;
  EXPECT_EQ(frames[0].spec.get_int_attribute("gif:LoopCount"), 5);
  const OIIO::ParamValue* const rate = frames[2].spec.find_attribute("FramesPerSecond");
  ASSERT_NE(rate, nullptr);
  EXPECT_NEAR(rate->get_float(), 100.0 / 300, 1e-6);
  Join<GifJoiner>("once.gif", files, {7, 0, 300}, std::optional<int>());
  EXPECT_EQ(FindGifTimes(Read("once.gif")).loops, std::nullopt);
}

// A smaller frame does not lie over the one before.
TEST_F(PagesTest, GifFramesMayDifferInSize) {
  const std::vector<std::string> files = {
      Encoded("a.gif", NoisePicture(20, 30, 3, OIIO::TypeDesc::UINT8, 1)),
      Encoded("b.gif", NoisePicture(40, 10, 3, OIIO::TypeDesc::UINT8, 2))};
  Join<GifJoiner>("all.gif", files, {9, 9}, std::optional<int>(0));
  const std::vector<FilePicture> frames = Pages("all.gif");
  ASSERT_EQ(frames.size(), 2U);
  EXPECT_EQ(frames[0].spec.width, 40);
  EXPECT_EQ(frames[0].spec.height, 30);
  constexpr std::size_t kBelow = std::size_t{20} * 40 * 4;
  EXPECT_NE(frames[0].samples.at(kBelow + 3), 0);
  EXPECT_EQ(frames[1].samples.at(kBelow + 3), 0) << "the first frame shows through";
}

TEST_F(PagesTest, CutFilesAreNotJoined) {
  const std::string gif = Encoded("a.gif", NoisePicture(20, 30, 3, OIIO::TypeDesc::UINT8, 1));
  const std::string tiff = Encoded("a.tif", NoisePicture(20, 30, 3, OIIO::TypeDesc::UINT8, 1));
  for (const std::size_t part : {0U, 5U, 40U, 90U, 99U}) {
    const std::string cutGif = gif.substr(0, gif.size() * part / 100);
    const std::string cutTiff = tiff.substr(0, part);  // within the directory, which comes first
    EXPECT_THROW(Join<GifJoiner>("o.gif", {cutGif}, {1}, std::optional<int>()), std::runtime_error)
        << part;
    EXPECT_THROW(Join<TiffJoiner>("o.tif", {tiff, cutTiff}, {1, 1}), std::runtime_error) << part;
    FindGifTimes(cutGif);
  }
}

}  // namespace
}  // namespace vitrell::media
