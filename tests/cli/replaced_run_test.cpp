// What --force keeps of the replaced file, ignored signals, and what killed runs leave.
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::WritePictureFile;

namespace fs = std::filesystem;

class ReplacedRunTest : public ToolTest {
 protected:
  ReplacedRunTest() { Write("in.png", 40); }

  void Write(const std::string& name, int size) const {
    WritePictureFile(InFolder(name), NoisePicture(size, size, 4, OIIO::TypeDesc::UINT8, 1));
  }

  struct stat StatusOf(const std::string& name) const {
    struct stat status {};
    EXPECT_EQ(::stat(InFolder(name).c_str(), &status), 0) << name;
    return status;
  }

  // What a run on this machine names its file.
  static std::string TemporaryName(const std::string& rest) {
    std::array<char, 65> host{};
    EXPECT_EQ(::gethostname(host.data(), 64), 0);
    return ".vitrell-" + std::string(host.data()) + "-" + rest;
  }
};

TEST_F(ReplacedRunTest, TheModeStays) {
  for (const mode_t mode : {0600U, 0664U, 0444U, 0755U}) {
    WriteFile("out.png", "old");
    ::chmod(InFolder("out.png").c_str(), mode);
    const ToolResult result = Run({"render", "in.png", "out.png", "--force", "--strict"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(StatusOf("out.png").st_mode & 07777U, mode);
    EXPECT_GT(StatusOf("out.png").st_size, 3);
    fs::remove(InFolder("out.png"));
  }
  WriteFile("look.json", "{}");
  ::chmod(InFolder("look.json").c_str(), 0640);
  ASSERT_EQ(Run({"params", "--save-preset", "look.json", "--force"}).exitCode, 0);
  EXPECT_EQ(StatusOf("look.json").st_mode & 07777U, 0640U);
}

TEST_F(ReplacedRunTest, TheOwnerStaysOrIsTold) {
  WriteFile("out.png", "old");
  constexpr uid_t kUser = 12345;
  constexpr gid_t kGroup = 23456;
  if (::chown(InFolder("out.png").c_str(), kUser, kGroup) != 0) {
    GTEST_SKIP() << "no right to give files away here";
  }
  ASSERT_EQ(Run({"render", "in.png", "out.png", "--force"}).exitCode, 0);
  EXPECT_EQ(StatusOf("out.png").st_uid, kUser);
  EXPECT_EQ(StatusOf("out.png").st_gid, kGroup);
  // As another user, who may write into the folder.
  ::chmod(Folder().c_str(), 0777);
  ToolOptions options;
  options.maxProcesses = 1000;
  const ToolResult told = Run({"render", "in.png", "out.png", "--force"}, options);
  if (told.exitCode == 98 || told.exitCode == 99) GTEST_SKIP() << "no run with fewer rights here";
  EXPECT_EQ(told.exitCode, 0) << told.err;
  EXPECT_NE(told.err.find("out.png: the replaced file's owner or group cannot be kept"),
            std::string::npos)
      << told.err;
}

TEST_F(ReplacedRunTest, OtherNamesOfTheFileAreTold) {
  WriteFile("out.png", "old");
  fs::create_hard_link(InFolder("out.png"), InFolder("other.png"));
  ExpectMessage(Run({"render", "in.png", "out.png", "--force", "--strict"}), 1,
                {"out.png: the replaced file has 2 names", "hard links"});
  EXPECT_EQ(ReadFile("out.png"), "old");
  const ToolResult result = Run({"render", "in.png", "out.png", "--force"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_NE(result.err.find("has 2 names (hard links); the other ones keep the old contents"),
            std::string::npos)
      << result.err;
  EXPECT_EQ(ReadFile("other.png"), "old");
  EXPECT_NE(ReadFile("out.png"), "old");
}

// As nohup starts programs. The effect takes a second, in which it asks whether to stop.
TEST_F(ReplacedRunTest, IgnoredSignalsStayIgnored) {
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    struct sigaction before {};
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    ::sigaction(signal, &ignore, &before);
    RunningTool tool({"render", "in.png", "out.png", "--force", "--effect",
                      VITRELL_FAKE_EFFECT_PATH, "--set", "test.work=nap"},
                     Folder());
    ::sigaction(signal, &before, nullptr);
    constexpr int kMoments = 1500;
    bool rendering = false;
    for (int i = 0; i < kMoments && !rendering; ++i) {
      rendering = fs::remove(InFolder("rendering"));
      if (!rendering) ::usleep(20000);
    }
    ASSERT_TRUE(rendering);
    tool.Signal(signal);
    const ToolResult result = tool.Wait();
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(fs::remove(InFolder("out.png")));
  }
}

TEST_F(ReplacedRunTest, AKilledRunsFileIsRemovedByTheNext) {
  Write("large.png", 3000);
  {
    RunningTool tool({"render", "large.png", "out.png", "--set", "lens.type=none", "--set",
                      "fast-blur.visible=off"},
                     Folder());
    const auto left = [this] {
      const std::vector<std::string> names = Names();
      return names.front().starts_with(".vitrell-");
    };
    constexpr int kMoments = 60000;
    for (int i = 0; i < kMoments && !left(); ++i) ::usleep(1000);
    tool.Signal(SIGKILL);
    tool.Wait();
    ASSERT_TRUE(left());
  }
  ASSERT_EQ(Run({"render", "in.png", "next.png"}).exitCode, 0);
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.png", "large.png", "next.png"}));
}

TEST_F(ReplacedRunTest, OnlyAbandonedFilesOfThisProgramAndMachineAreRemoved) {
  const std::string living = TemporaryName("1-0.png");
  const std::vector<std::string> others = {
      living,         TemporaryName("1-x.png"),         TemporaryName("notes.txt"),
      ".vitrell-rc",  ".vitrell-other-machine-1-0.png", TemporaryName("-0.png"),
      "picture.png.1"};
  const std::vector<std::string> abandoned = {TemporaryName("99999999-0.png"),
                                              TemporaryName("7-12"), TemporaryName("7-0.exr")};
  for (const std::string& name : others) WriteFile(name, "x");
  for (const std::string& name : abandoned) WriteFile(name, "x");
  fs::create_directory(InFolder(TemporaryName("8-0.png")));
  const int file = ::open(InFolder(living).c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(::flock(file, LOCK_EX), 0);
  ASSERT_EQ(Run({"render", "in.png", "out.png"}).exitCode, 0);
  ::close(file);
  std::vector<std::string> expected = others;
  expected.insert(expected.end(), {"in.png", "out.png", TemporaryName("8-0.png")});
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(Names(), expected);
}

}  // namespace
}  // namespace vitrell::cli
