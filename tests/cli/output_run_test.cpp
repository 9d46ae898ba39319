// Where and how the output is written.
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::ReadPictureFile;
using media::WritePictureFile;

namespace fs = std::filesystem;

class OutputRunTest : public ToolTest {
 protected:
  OutputRunTest() {
    WritePictureFile(InFolder("in.png"), NoisePicture(200, 150, 4, OIIO::TypeDesc::UINT8, 1));
  }
};

TEST_F(OutputRunTest, LeavesNothingButTheOutput) {
  const ToolResult result = Run({"render", "in.png", "out.png"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out.find("out.png: 200 x 150, 8 bits, effect "), 0U) << result.out;
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.png", "out.png"}));
}

TEST_F(OutputRunTest, ExistingFilesAreReplacedOnlyByForce) {
  WriteFile("out.png", "precious");
  ExpectMessage(Run({"render", "in.png", "out.png"}), 1, {"out.png", "already exists", "--force"});
  EXPECT_EQ(ReadFile("out.png"), "precious");
  EXPECT_EQ(Run({"render", "in.png", "out.png", "--force"}).exitCode, 0);
  EXPECT_EQ(ReadPictureFile(InFolder("out.png")).spec.width, 200);
}

TEST_F(OutputRunTest, AFailureLeavesTheExistingFile) {
  WriteFile("out.png", "precious");
  ToolOptions options;
  options.maxFileBytes = 20000;
  EXPECT_EQ(Run({"render", "in.png", "out.png", "--force"}, options).exitCode, 1);
  EXPECT_EQ(ReadFile("out.png"), "precious");
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.png", "out.png"}));
}

// Not even by force, and through no link.
TEST_F(OutputRunTest, FilesThatAreReadAreNotWritten) {
  fs::create_symlink("in.png", InFolder("soft.png"));
  fs::create_hard_link(InFolder("in.png"), InFolder("hard.png"));
  fs::create_directory(InFolder("folder"));
  fs::create_directory_symlink(".", InFolder("here"));
  WriteFile("look.json", "{}");
  const std::string before = ReadFile("in.png");
  for (const char* name :
       {"in.png", "./in.png", "folder/../in.png", "here/in.png", "soft.png", "hard.png"}) {
    ExpectMessage(Run({"render", "in.png", name, "--force"}), 2,
                  {name, "OUTPUT is the same file as INPUT"});
    ExpectMessage(Run({"render", "in.png", "out.png", "--save-preset", name, "--force"}), 2,
                  {name, "--save-preset is the same file as INPUT"});
    ExpectMessage(Run({"render", "look.json", name, "--custom-layer", "in.png", "--set",
                       "lens.type=custom", "--force"}),
                  2, {name, "OUTPUT is the same file as the custom layer"});
  }
  ExpectMessage(Run({"render", "in.png", "look.json", "--preset", "look.json", "--force"}), 2,
                {"OUTPUT is the same file as --preset"});
  EXPECT_EQ(ReadFile("in.png"), before);
  EXPECT_EQ(ReadFile("look.json"), "{}");
}

// Neither file exists yet.
TEST_F(OutputRunTest, OutputAndSavedPresetAreTwoFiles) {
  fs::create_symlink("out.png", InFolder("link.png"));
  for (const char* name : {"out.png", "./out.png", "link.png"}) {
    ExpectMessage(Run({"render", "in.png", "out.png", "--save-preset", name}), 2,
                  {name, "--save-preset is the same file as OUTPUT"});
  }
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.png", "link.png"}));
}

TEST_F(OutputRunTest, APresetMayBeUpdatedAndThePictureBeItsOwnLayer) {
  WriteFile("look.json", "{\"fast-blur.amount\": 3}");
  const ToolResult result =
      Run({"render", "in.png", "out.png", "--preset", "look.json", "--custom-layer", "in.png",
           "--set", "lens.type=custom", "--save-preset", "look.json", "--force"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(ReadFile("look.json").find("\"fast-blur.amount\": 3"), std::string::npos);
}

TEST_F(OutputRunTest, LinksStayLinks) {
  fs::create_directory(InFolder("store"));
  fs::create_symlink("store/real.png", InFolder("out.png"));
  EXPECT_EQ(Run({"render", "in.png", "out.png", "--force"}).exitCode, 0);
  EXPECT_TRUE(fs::is_symlink(InFolder("out.png")));
  EXPECT_TRUE(fs::is_regular_file(InFolder("store/real.png")));
}

TEST_F(OutputRunTest, TargetsThatCannotBe) {
  fs::create_directory(InFolder("folder.png"));
  ExpectMessage(Run({"render", "in.png", "folder.png", "--force"}), 1, {"is a folder"});
  ExpectMessage(Run({"render", "in.png", "none/out.png"}), 1, {"none", "does not exist"});
  ExpectMessage(Run({"render", "in.png", "/dev/full", "--force"}), 1, {"regular file"});
  ExpectMessage(Run({"render", "in.png", "out.xyz"}), 1, {"out.xyz", "extension", ".png"});
  ExpectMessage(Run({"render", "in.png", "out"}), 1, {"extension"});
  ExpectMessage(Run({"render", "in.png", ""}), 2, {"empty"});
  EXPECT_EQ(Names(), (std::vector<std::string>{"folder.png", "in.png"}));
}

// Not even root can create files there.
TEST_F(OutputRunTest, UnwritableFolder) {
  ExpectMessage(Run({"render", "in.png", "/proc/out.png"}), 1, {"/proc"});
}

TEST_F(OutputRunTest, FolderWithoutWriteRight) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write anywhere; UnwritableFolder covers it";
  fs::create_directory(InFolder("closed"));
  ::chmod(InFolder("closed").c_str(), 0555);
  ExpectMessage(Run({"render", "in.png", "closed/out.png"}), 1, {"cannot be written to"});
}

TEST_F(OutputRunTest, ReadOnlyDisk) {
  const fs::path disk = InFolder("disk");
  fs::create_directory(disk);
  if (::mount("tmpfs", disk.c_str(), "tmpfs", MS_RDONLY, "size=16k") != 0) {
    GTEST_SKIP() << "no right to mount here; UnwritableFolder covers it";
  }
  const ToolResult result = Run({"render", "in.png", "disk/out.png"});
  ::umount(disk.c_str());
  ExpectMessage(result, 1, {"disk", "Read-only file system", "another folder"});
}

TEST_F(OutputRunTest, VerboseTellsStagesAndTimes) {
  const ToolResult result = Run({"render", "in.png", "out.png", "--verbose"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_NE(result.err.find("start s"), std::string::npos);
  EXPECT_NE(result.err.find("iterate8 world"), std::string::npos);
}

TEST_F(OutputRunTest, QuietTellsNothing) {
  const ToolResult result = Run({"render", "in.png", "out.png", "--quiet"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out + result.err, "");
}

TEST_F(OutputRunTest, ProgressShowsOnATerminalOnly) {
  if (const std::string why = WhyNoTerminal(); !why.empty()) GTEST_SKIP() << why;
  ToolOptions options;
  options.terminal = true;
  const ToolResult shown = Run({"render", "in.png", "a.png"}, options);
  EXPECT_EQ(shown.exitCode, 0);
  EXPECT_NE(shown.err.find(" %  stage "), std::string::npos) << shown.err;
  EXPECT_EQ(Run({"render", "in.png", "b.png"}).err, "");
  EXPECT_EQ(Run({"render", "in.png", "c.png", "--quiet"}, options).err, "");
  EXPECT_EQ(ReadFile("a.png"), ReadFile("b.png"));
}

TEST_F(OutputRunTest, ThreadsDoNotChangeThePicture) {
  for (const char* threads : {"1", "2", "7"}) {
    EXPECT_EQ(
        Run({"render", "in.png", std::string(threads) + ".png", "--threads", threads}).exitCode, 0);
  }
  EXPECT_EQ(ReadFile("1.png"), ReadFile("2.png"));
  EXPECT_EQ(ReadFile("1.png"), ReadFile("7.png"));
}

}  // namespace
}  // namespace vitrell::cli
