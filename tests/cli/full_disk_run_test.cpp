// A disk that takes no more is noticed in every format, however little is missing.
#include <sys/mount.h>

#include <filesystem>
#include <string>
#include <vector>

#include "cli/tool_run.h"
#include "media/formats.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::WritePictureFile;

namespace fs = std::filesystem;

constexpr long kPage = 4096;

class FullDiskRunTest : public ToolTest, public testing::WithParamInterface<media::Format> {
 protected:
  FullDiskRunTest() {
    WritePictureFile(InFolder("in.png"), NoisePicture(80, 60, 3, OIIO::TypeDesc::UINT8, 1));
  }
  ~FullDiskRunTest() override {
    if (mounted_) ::umount(InFolder("disk").c_str());
  }

  static std::string Name() {
    const std::string extensions(GetParam().extensions);
    return "out." + extensions.substr(0, extensions.find(' '));
  }

  // Writes the picture where there is room and tells how long its file is.
  long Size() const {
    EXPECT_EQ(Run({"render", "in.png", Name(), "--quiet"}).exitCode, 0);
    const auto size = static_cast<long>(fs::file_size(InFolder(Name())));
    fs::remove(InFolder(Name()));
    return size;
  }

  bool MountDisk(long bytes) {
    fs::create_directory(InFolder("disk"));
    const std::string options = "size=" + std::to_string(bytes);
    mounted_ = ::mount("tmpfs", InFolder("disk").c_str(), "tmpfs", 0, options.c_str()) == 0;
    return mounted_;
  }

  void LeaveRoom(long disk, long room) const {
    WriteFile("disk/filler", std::string(static_cast<std::size_t>(disk - room), 'x'));
  }

 private:
  bool mounted_ = false;
};

TEST_P(FullDiskRunTest, ALimitOfTheProcessIsTold) {
  const long size = Size();
  for (const long limit : {0L, size / 2, size - 1}) {
    ToolOptions options;
    options.maxFileBytes = limit;
    const ToolResult result = Run({"render", "in.png", Name(), "--quiet"}, options);
    ExpectMessage(result, 1, {Name(), "File too large"});
    EXPECT_EQ(Names(), std::vector<std::string>{"in.png"}) << limit << " of " << size << " bytes";
  }
  ToolOptions enough;
  enough.maxFileBytes = size + kPage;
  EXPECT_EQ(Run({"render", "in.png", Name(), "--quiet"}, enough).exitCode, 0);
}

TEST_P(FullDiskRunTest, AFullDiskIsTold) {
  const long size = Size();
  const long pages = (size + kPage - 1) / kPage;
  const long disk = (pages + 100) * kPage;
  if (!MountDisk(disk)) GTEST_SKIP() << "no right to mount here; the process's limit covers it";
  const std::string target = "disk/" + Name();
  for (const long room : {0L, pages - 1}) {
    LeaveRoom(disk, room * kPage);
    ExpectMessage(Run({"render", "in.png", target, "--quiet"}), 1,
                  {target, "No space left on device", "Free some space"});
    fs::remove(InFolder("disk/filler"));
    EXPECT_TRUE(fs::is_empty(InFolder("disk"))) << room << " of " << pages << " pages";
  }
  LeaveRoom(disk, pages * kPage);
  EXPECT_EQ(Run({"render", "in.png", target, "--quiet"}).exitCode, 0);
  EXPECT_EQ(static_cast<long>(fs::file_size(InFolder(target))), size);
}

std::vector<media::Format> WrittenFormats() {
  std::vector<media::Format> written;
  for (const media::Format& format : media::AllFormats()) {
    if (format.writes) written.push_back(format);
  }
  return written;
}

INSTANTIATE_TEST_SUITE_P(Formats, FullDiskRunTest, testing::ValuesIn(WrittenFormats()),
                         [](const testing::TestParamInfo<media::Format>& test) {
                           const std::string extensions(test.param.extensions);
                           return extensions.substr(0, extensions.find(' '));
                         });

class FullDiskTextRunTest : public ToolTest {};

TEST_F(FullDiskTextRunTest, APresetThatDoesNotFitIsTold) {
  WritePictureFile(InFolder("in.png"), NoisePicture(8, 8, 3, OIIO::TypeDesc::UINT8, 1));
  ToolOptions options;
  options.maxFileBytes = 1000;
  const ToolResult result =
      Run({"render", "in.png", "out.png", "--quiet", "--save-preset", "look.json"}, options);
  ExpectMessage(result, 1, {"look.json", "File too large"});
}

}  // namespace
}  // namespace vitrell::cli
