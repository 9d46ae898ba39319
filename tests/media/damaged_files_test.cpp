// Damaged files of every format end in a picture or in a message, never in a signal.
#include <OpenImageIO/filesystem.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "media/failure.h"
#include "media/picture.h"
#include "media/picture_files.h"
#include "media/psd_file.h"
#include "media/webp_output.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

// Of each format; VITRELL_DAMAGED_CASES asks for another number.
int CaseCount() {
  const char* const text = std::getenv("VITRELL_DAMAGED_CASES");
  return text == nullptr ? 200 : std::atoi(text);
}
const int kCases = CaseCount();
constexpr unsigned kSecondsPerFormat = 300;
constexpr int kWidth = 48;
constexpr int kHeight = 40;

struct Counts {
  int next = 0;  // the case that is under way
  int pictures = 0;
  int messages = 0;
};

// Shared with the processes that read.
class SharedCounts {
 public:
  SharedCounts()
      : counts_(static_cast<Counts*>(::mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE,
                                            MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {}
  ~SharedCounts() { ::munmap(counts_, sizeof(Counts)); }
  SharedCounts(const SharedCounts&) = delete;
  SharedCounts& operator=(const SharedCounts&) = delete;
  Counts* operator->() const { return counts_; }

 private:
  Counts* counts_;
};

void WriteWebp(const fs::path& file, const FilePicture& picture) {
  WebpOutput output;
  OIIO::Filesystem::IOFile proxy(file.string(), OIIO::Filesystem::IOProxy::Write);
  output.set_ioproxy(&proxy);
  const std::vector<uint8_t> bytes(picture.samples.begin(), picture.samples.end());
  ASSERT_TRUE(output.open(file.string(), picture.spec, OIIO::ImageOutput::Create));
  ASSERT_TRUE(output.write_image(OIIO::TypeDesc::UINT8, bytes.data()));
  ASSERT_TRUE(output.close());
  proxy.close();
}

class DamagedFilesTest : public testing::TestWithParam<Format> {
 protected:
  DamagedFilesTest() {
    std::string pattern = (fs::temp_directory_path() / "vitrell-damaged-XXXXXX").string();
    folder_ = ::mkdtemp(pattern.data());
    const std::string extensions(GetParam().extensions);
    file_ = folder_ / ("in." + extensions.substr(0, extensions.find(' ')));
  }
  ~DamagedFilesTest() override { fs::remove_all(folder_); }

  // In a process of its own, so that this one starts no threads that others would miss.
  std::string WholeFile() const {
    const pid_t process = ::fork();
    if (process == 0) {
      OIIO::attribute("threads", 1);
      const FilePicture picture = NoisePicture(kWidth, kHeight, 3, OIIO::TypeDesc::UINT8, 4);
      if (GetParam().name == "PSD") {
        WritePsdFile(file_, {picture, 6, {{"layer", 5, 4, picture}}});
      } else if (GetParam().name == "WebP") {
        WriteWebp(file_, picture);
      } else {
        WritePictureFile(file_, picture);
      }
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    std::ifstream stream(file_, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  // Up to eight bytes anew, or the end cut off, or both. Half of the changes hit the first 200
  // bytes, where headers are.
  static std::string Damaged(std::string bytes, uint32_t seed) {
    std::mt19937 random(seed);
    const auto below = [&](std::size_t limit) {
      return random() % std::max<std::size_t>(limit, 1);
    };
    if (seed % 3 != 0) {
      const std::size_t flips = 1 + below(8);
      for (std::size_t i = 0; i < flips; ++i) {
        const std::size_t range =
            below(2) == 0 ? std::min<std::size_t>(200, bytes.size()) : bytes.size();
        bytes[below(range)] = static_cast<char>(below(256));
      }
    }
    if (seed % 3 != 1) bytes.resize(below(bytes.size()));
    return bytes;
  }

  // Returns how the process ended.
  int ReadFrom(int first, const std::string& whole, SharedCounts& counts) const {
    const pid_t process = ::fork();
    if (process == 0) {
      ::alarm(kSecondsPerFormat);
      OIIO::attribute("threads", 1);
      for (counts->next = first; counts->next < kCases; ++counts->next) {
        std::ofstream(file_, std::ios::binary)
            << Damaged(whole, static_cast<uint32_t>(counts->next));
        try {
          const Picture picture = ReadPicture(file_, {});
          ++(picture.Width() > 0 ? counts->pictures : counts->messages);
        } catch (const Failure&) {
          ++counts->messages;
        }
      }
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    return status;
  }

  fs::path folder_;
  fs::path file_;
};

TEST_P(DamagedFilesTest, EndInAPictureOrAMessage) {
  const std::string whole = WholeFile();
  ASSERT_GT(whole.size(), 100U);
  ASSERT_GT(kCases, 0) << "VITRELL_DAMAGED_CASES must be a positive number";
  SharedCounts counts;
  for (int first = 0; first < kCases; first = counts->next + 1) {
    const int status = ReadFrom(first, whole, counts);
    if (status == 0) break;
    ADD_FAILURE() << GetParam().name << ", seed " << counts->next << ": signal "
                  << WTERMSIG(status);
  }
  EXPECT_GT(counts->messages, kCases / 10);
  EXPECT_EQ(counts->pictures + counts->messages, kCases);
  RecordProperty("pictures", counts->pictures);
  std::printf("%s: %d pictures, %d messages\n", std::string(GetParam().name).c_str(),
              counts->pictures, counts->messages);
}

INSTANTIATE_TEST_SUITE_P(Formats, DamagedFilesTest,
                         testing::ValuesIn(AllFormats().begin(), AllFormats().end()),
                         [](const testing::TestParamInfo<Format>& test) {
                           const std::string extensions(test.param.extensions);
                           return extensions.substr(0, extensions.find(' '));
                         });

// The picture library does not look at what it unpacks of these by itself.
TEST(DamagedTiffTest, ZippedRowsAndTilesAreTold) {
  const fs::path file =
      fs::temp_directory_path() / ("zipped-" + std::to_string(::getpid()) + ".tif");
  for (const int tile : {0, 32}) {
    FilePicture picture = NoisePicture(200, 150, 3, OIIO::TypeDesc::UINT8, 1);
    picture.spec.attribute("compression", "zip");
    picture.spec.tile_width = picture.spec.tile_height = tile;
    WritePictureFile(file, picture);
    EXPECT_EQ(std::get<std::vector<uint8_t>>(ReadPicture(file, {}).samples).size(),
              picture.samples.size());
    const auto middle = static_cast<std::streamoff>(fs::file_size(file) / 2);
    std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
    stream.seekp(middle);
    stream << std::string(100, 'x');
    stream.close();
    EXPECT_THROW(ReadPicture(file, {}), Failure) << tile;
  }
  fs::remove(file);
}

}  // namespace
}  // namespace vitrell::media
