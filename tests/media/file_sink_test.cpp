// What reaches a file, and what does not.
#include "media/file_sink.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "media/memory_file.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

class FileSinkTest : public testing::Test {
 protected:
  FileSinkTest() {
    std::string pattern = (fs::temp_directory_path() / "vitrell-sink-XXXXXX").string();
    const int file = ::mkstemp(pattern.data());
    EXPECT_GE(file, 0);
    ::close(file);
    file_ = pattern;
  }
  ~FileSinkTest() override { fs::remove(file_); }

  std::string Contents() const {
    std::ifstream stream(file_, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  fs::path file_;
};

TEST_F(FileSinkTest, KeepsWhatIsWrittenInAnyOrder) {
  FileSink sink(file_);
  EXPECT_EQ(sink.write("0123456789", 10), 10U);
  EXPECT_TRUE(sink.seek(2));
  EXPECT_EQ(sink.write("AB", 2), 2U);
  EXPECT_EQ(sink.pwrite("end", 3, 12), 3U);
  sink.close();
  EXPECT_EQ(sink.FirstError(), "");
  EXPECT_EQ(Contents(), std::string("01AB456789\0\0end", 15));
}

TEST_F(FileSinkTest, AFailedWriteIsRemembered) {
  FileSink sink("/dev/full");
  EXPECT_EQ(sink.write("0123456789", 10), 0U);
  EXPECT_EQ(sink.FirstError(), "No space left on device");
}

TEST_F(FileSinkTest, ALengthThatChangedMeanwhileIsAnError) {
  FileSink sink(file_);
  sink.write("0123456789", 10);
  fs::resize_file(file_, 7);
  sink.close();
  EXPECT_NE(sink.FirstError(), "");
}

TEST_F(FileSinkTest, AFileThatCannotBeOpenedIsAnError) {
  FileSink sink("/nowhere/file");
  EXPECT_EQ(sink.FirstError(), "No such file or directory");
}

TEST_F(FileSinkTest, AFileInMemoryIsCopiedWhole) {
  const MemoryFile memory;
  // Longer than the blocks in which it is copied.
  std::string text((16 << 20) + 12345, 'a');
  for (std::size_t i = 0; i < text.size(); i += 1000) text[i] = static_cast<char>('b' + i % 23);
  std::ofstream(memory.Path(), std::ios::binary) << text;
  FileSink sink(file_);
  EXPECT_EQ(memory.CopyTo(sink), "");
  sink.close();
  EXPECT_EQ(sink.FirstError(), "");
  EXPECT_TRUE(Contents() == text);
}

}  // namespace
}  // namespace vitrell::media
