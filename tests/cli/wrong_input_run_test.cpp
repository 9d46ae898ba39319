// Files that are missing, damaged or not what they should be.
#include <sys/stat.h>

#include <string>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::WritePictureFile;

class WrongInputRunTest : public ToolTest {
 protected:
  void WritePng(const std::string& name) const {
    WritePictureFile(InFolder(name), NoisePicture(64, 48, 4, OIIO::TypeDesc::UINT8, 1));
  }

  // A failure leaves nothing behind.
  void ExpectNoOutput() const {
    for (const std::string& name : Names()) {
      EXPECT_EQ(name.find("out"), std::string::npos) << name;
      EXPECT_NE(name.front(), '.') << name;
    }
  }
};

TEST_F(WrongInputRunTest, MissingFile) {
  ExpectMessage(Run({"render", "in.png", "out.png"}), 1, {"in.png", "no such file", "Check"});
  ExpectNoOutput();
}

TEST_F(WrongInputRunTest, Folder) {
  ::mkdir(InFolder("in.png").c_str(), 0755);
  ExpectMessage(Run({"render", "in.png", "out.png"}), 1, {"in.png", "is a folder"});
  ExpectNoOutput();
}

TEST_F(WrongInputRunTest, EmptyFile) {
  for (const char* name : {"in.png", "in.jpg", "in.tif", "in.exr"}) {
    WriteFile(name, "");
    ExpectMessage(Run({"render", name, "out.png"}), 1, {name, "is empty", "again"});
  }
  ExpectNoOutput();
}

// A terminal would obey them.
TEST_F(WrongInputRunTest, ControlCharactersInNamesAndKeysAreWrittenOut) {
  WriteFile("a\x1b]0;t\a.png", "text");
  const ToolResult picture = Run({"render", "a\x1b]0;t\a.png", "out.png"});
  ExpectMessage(picture, 1, {"a\\x1b]0;t\\x07.png"});
  WriteFile("look.json", "{\"\\u001b[2J\": 1}");
  ExpectMessage(Run({"params", "--preset", "look.json"}), 1, {"\\x1b[2J"});
  ExpectMessage(Run({"ren\x1b[1mder"}), 2, {"ren\\x1b[1mder"});
  ExpectMessage(Run({"params", "--set", "fast-blur.amount=1e308"}), 2, {"1e308 is out of range"});
}

TEST_F(WrongInputRunTest, NotAPicture) {
  WriteFile("in.png", "This is text, not a picture.\n");
  ExpectMessage(Run({"render", "in.png", "out.png"}), 1,
                {"in.png", "cannot be read as a picture", "Check"});
  ExpectNoOutput();
}

TEST_F(WrongInputRunTest, Device) {
  ExpectMessage(Run({"render", "/dev/zero", "out.png"}), 1, {"/dev/zero", "regular file"});
}

TEST_F(WrongInputRunTest, TruncatedAtEveryTenthPart) {
  for (const char* name : {"in.png", "in.tif", "in.jpg", "in.exr"}) {
    const bool straight = std::string(name) == "in.png";
    WritePictureFile(InFolder(name),
                     NoisePicture(64, 48, straight ? 4 : 3, OIIO::TypeDesc::UINT8, 1));
    const std::string whole = ReadFile(name);
    ASSERT_EQ(Run({"render", name, "good.png", "--force", "--quiet"}).exitCode, 0) << name;
    for (int tenth = 1; tenth < 10; ++tenth) {
      WriteFile(name, whole.substr(0, whole.size() * static_cast<std::size_t>(tenth) / 10));
      ExpectMessage(Run({"render", name, "out.png", "--quiet"}), 1, {name});
    }
  }
  ExpectNoOutput();
}

TEST_F(WrongInputRunTest, DamagedPngIsRefused) {
  WritePng("in.png");
  std::string bytes = ReadFile("in.png");
  for (std::size_t i = bytes.size() / 2; i < bytes.size() / 2 + 40; ++i) bytes[i] = 'x';
  WriteFile("in.png", bytes);
  ExpectMessage(Run({"render", "in.png", "out.png"}), 1, {"in.png"});
  ExpectNoOutput();
}

TEST_F(WrongInputRunTest, TooLargeForALayer) {
  WritePictureFile(InFolder("in.png"), NoisePicture(30001, 1, 1, OIIO::TypeDesc::UINT8, 1));
  ExpectMessage(Run({"render", "in.png", "out.png"}), 1, {"30001 x 1", "30000 x 30000"});
  ExpectNoOutput();
}

TEST_F(WrongInputRunTest, CustomLayerIsMissingOrDamaged) {
  WritePng("in.png");
  WriteFile("bad.png", "text");
  const std::vector<std::string> start = {"render", "in.png",           "out.png",
                                          "--set",  "lens.type=custom", "--custom-layer"};
  for (const char* layer : {"missing.png", "bad.png"}) {
    std::vector<std::string> arguments = start;
    arguments.emplace_back(layer);
    ExpectMessage(Run(arguments), 1, {layer});
  }
  ExpectNoOutput();
}

TEST_F(WrongInputRunTest, CustomLayerWithoutUseIsTold) {
  WritePng("in.png");
  WritePng("mask.png");
  ToolResult result = Run({"render", "in.png", "out1.png", "--custom-layer", "mask.png"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_NE(result.err.find("mask.png: the custom layer is not used"), std::string::npos);
  result = Run({"render", "in.png", "out2.png", "--set", "lens.type=custom"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_NE(result.err.find("--custom-layer FILE"), std::string::npos);
  result = Run(
      {"render", "in.png", "out3.png", "--set", "lens.type=custom", "--custom-layer", "mask.png"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_NE(ReadFile("out2.png"), ReadFile("out3.png"));
}

TEST_F(WrongInputRunTest, MissingModule) {
  WritePng("in.png");
  ExpectMessage(Run({"render", "in.png", "out.png", "--effect", "none.so"}), 1,
                {"none.so", "no such effect module", "--effect"});
  ExpectMessage(Run({"params", "--effect", "none.so"}), 1, {"none.so"});
  ExpectMessage(Run({"about", "--effect", "."}), 1, {"is a folder"});
}

TEST_F(WrongInputRunTest, ModuleThatIsNoEffect) {
  WritePng("in.png");
  WriteFile("text.so", "not a module");
  ExpectMessage(Run({"render", "in.png", "out.png", "--effect", "text.so"}), 1, {"text.so"});
  ExpectMessage(Run({"render", "in.png", "out.png", "--effect", VITRELL_NO_ENTRY_POINT_PATH}), 1,
                {"EntryPointFunc"});
  ExpectNoOutput();
}

TEST_F(WrongInputRunTest, EffectThatFails) {
  WritePng("in.png");
  ExpectMessage(Run({"render", "in.png", "out.png", "--effect", VITRELL_FAKE_EFFECT_PATH, "--set",
                     "test.work=out of memory"}),
                1, {"in.png", "PF_Err_OUT_OF_MEMORY (4)", "smaller"});
  ExpectNoOutput();
}

}  // namespace
}  // namespace vitrell::cli
