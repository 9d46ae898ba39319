// What scripts lean on: several presets, presets without a render, dry runs, help.
#include <string>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::WritePictureFile;

class ScriptsRunTest : public ToolTest {
 protected:
  ScriptsRunTest() {
    WritePictureFile(InFolder("in.png"), NoisePicture(60, 40, 4, OIIO::TypeDesc::UINT8, 1));
  }
};

TEST_F(ScriptsRunTest, LaterPresetsAreStrongerAndSettingsStrongest) {
  WriteFile("one.json", R"({"fast-blur.amount": 3, "intensity": 50, "lens.feather": 5})");
  WriteFile("two.json", R"({"fast-blur.amount": 7, "lens.feather": 6})");
  const std::vector<std::string> presets = {"params",         "--preset", "one.json", "--set",
                                            "lens.feather=9", "--preset", "two.json"};
  std::vector<std::string> arguments = presets;
  arguments.insert(arguments.end(), {"--save-preset", "all.json"});
  EXPECT_EQ(Run(arguments).out, "all.json: 42 controls\n");
  const std::string all = ReadFile("all.json");
  EXPECT_NE(all.find("\"fast-blur.amount\": 7"), std::string::npos) << all;
  EXPECT_NE(all.find("\"intensity\": 50"), std::string::npos) << all;
  EXPECT_NE(all.find("\"lens.feather\": 9"), std::string::npos) << all;
  ExpectMessage(Run(arguments), 1, {"all.json", "already exists", "--force"});
  arguments.emplace_back("--force");
  EXPECT_EQ(Run(arguments).exitCode, 0);
}

TEST_F(ScriptsRunTest, ASavedPresetNeedsAFile) {
  ExpectMessage(Run({"params", "--save-preset", "-"}), 2, {"--save-preset", "name of a file"});
}

TEST_F(ScriptsRunTest, ADryRunChecksAndWritesNothing) {
  WriteFile("out.png", "precious");
  ToolResult result = Run({"render", "in.png", "new.png", "--dry-run", "--save-preset", "p.json"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, "new.png: 60 x 40, 8 bits, dry run, nothing was written\n");
  // What writing would lose is told.
  result = Run({"render", "in.png", "new.jpg", "--dry-run"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("new.jpg: "), std::string::npos) << result.err;
  ExpectMessage(Run({"render", "in.png", "out.png", "--dry-run"}), 1, {"already exists"});
  WriteFile("bad.png", ReadFile("in.png").substr(0, 3000));
  ExpectMessage(Run({"render", "bad.png", "new.png", "--dry-run"}), 1, {"bad.png", "damaged"});
  EXPECT_EQ(ReadFile("out.png"), "precious");
  EXPECT_EQ(Names(), (std::vector<std::string>{"bad.png", "in.png", "out.png"}));
}

TEST_F(ScriptsRunTest, HelpIsACommandToo) {
  EXPECT_EQ(Run({"-V"}).out, Run({"--version"}).out);
  for (const char* command : {"render", "params", "formats", "about"}) {
    const ToolResult result = Run({"help", command});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, Run({command, "--help"}).out);
    EXPECT_NE(result.out.find("Usage: vitrell " + std::string(command)), std::string::npos)
        << result.out;
  }
  EXPECT_EQ(Run({"help"}).out, Run({"--help"}).out);
  ExpectMessage(Run({"help", "rendr"}), 2, {"no command \"rendr\""});
}

TEST_F(ScriptsRunTest, HelpGroupsTheOptions) {
  const std::string help = Run({"render", "--help"}).out;
  std::size_t before = 0;
  for (const char* piece : {"Look:", "--set", "Files:", "--force", "Work:", "--threads",
                            "Words:", "--quiet", "Examples:"}) {
    const std::size_t at = help.find(piece, before);
    ASSERT_NE(at, std::string::npos) << piece << " is not in its place in\n" << help;
    before = at;
  }
  EXPECT_NE(help.find("for lens.type=custom: a picture, a sequence or a video"), std::string::npos)
      << help;
}

}  // namespace
}  // namespace vitrell::cli
