// Telling formats by their first bytes and by extensions.
#include "media/formats.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <string>

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

class FormatsTest : public testing::Test {
 protected:
  FormatsTest() {
    std::string pattern = (fs::temp_directory_path() / "vitrell-formats-XXXXXX").string();
    folder_ = ::mkdtemp(pattern.data());
  }
  ~FormatsTest() override { fs::remove_all(folder_); }

  std::string FormatOf(const std::string& name, const std::string& bytes) const {
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
    const Format* format = FormatOfFile(folder_ / name);
    return format == nullptr ? "" : std::string(format->name);
  }

  fs::path folder_;
};

TEST_F(FormatsTest, ContentsCountAndNotTheName) {
  const std::string zero(1, '\0');
  EXPECT_EQ(FormatOf("a.jpg", "\x89PNG\r\n\x1a\n...."), "PNG");
  EXPECT_EQ(FormatOf("a.png", "\xff\xd8\xff\xe0"), "JPEG");
  EXPECT_EQ(FormatOf("a.png", "II*" + zero + "12345678"), "TIFF");
  EXPECT_EQ(FormatOf("a.png", "MM" + zero + "*12345678"), "TIFF");
  EXPECT_EQ(FormatOf("a", "RIFF1234WEBPVP8 "), "WebP");
  EXPECT_EQ(FormatOf("a", zero + zero + zero + " ftypavif"), "AVIF");
  EXPECT_EQ(FormatOf("a", zero + zero + zero + " ftypheic"), "HEIC");
}

TEST_F(FormatsTest, TargaHasNoMarkButItsName) {
  EXPECT_EQ(FormatOf("a.tga", std::string(18, '\0')), "TGA");
  EXPECT_EQ(FormatOf("a.TGA", std::string(18, '\0')), "TGA");
  EXPECT_EQ(FormatOf("a.png", std::string(18, '\0')), "");
}

TEST_F(FormatsTest, OthersAreNone) {
  EXPECT_EQ(FormatOf("a.fits", "SIMPLE  =                    T"), "");
  EXPECT_EQ(FormatOf("a.sgi", "\x01\xda\x01\x01"), "");
  EXPECT_EQ(FormatOf("a.iff", "FOR4"), "");
  EXPECT_EQ(FormatOf("a.png", "\x89PN"), "");
  EXPECT_EQ(FormatOf("a.png", ""), "");
}

TEST_F(FormatsTest, ExtensionsTellWhatIsWritten) {
  EXPECT_EQ(FormatToWrite("a.JPEG")->name, "JPEG");
  EXPECT_EQ(FormatToWrite("folder.png/a.avif")->name, "AVIF");
  EXPECT_EQ(FormatToWrite("a.heif")->name, "HEIC");
  for (const char* name : {"a.psd", "a.sgi", "a.fits", "a", "a.", "a.tif tiff", ".png"}) {
    EXPECT_EQ(FormatToWrite(name), nullptr) << name;
  }
}

TEST_F(FormatsTest, NoExtensionIsInTwoFormats) {
  for (const Format& format : AllFormats()) {
    const std::string extensions(format.extensions);
    for (std::size_t at = 0; at < extensions.size();) {
      const std::size_t end = std::min(extensions.find(' ', at), extensions.size());
      if (format.writes) {
        EXPECT_EQ(FormatToWrite("a." + extensions.substr(at, end - at)), &format);
      }
      at = end + 1;
    }
  }
}

}  // namespace
}  // namespace vitrell::media
