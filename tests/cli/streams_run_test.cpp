// "-": pictures and presets through standard input and output.
#include <filesystem>
#include <string>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::ReadPictureFile;
using media::WritePictureFile;

namespace fs = std::filesystem;

class StreamsRunTest : public ToolTest {
 protected:
  StreamsRunTest() { Write("in.png", OIIO::TypeDesc::UINT8); }

  void Write(const std::string& name, OIIO::TypeDesc type) const {
    WritePictureFile(InFolder(name), NoisePicture(50, 40, 3, type, 1));
  }

  ToolResult RunWith(const std::string& input, const std::vector<std::string>& arguments) const {
    ToolOptions options;
    options.input = input;
    return Run(arguments, options);
  }
};

TEST_F(StreamsRunTest, APictureGoesThroughPipes) {
  ASSERT_EQ(Run({"render", "in.png", "file.png"}).exitCode, 0);
  const ToolResult result = RunWith(ReadFile("in.png"), {"render", "-", "-"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, ReadFile("file.png"));
  EXPECT_EQ(result.err.find("standard output: 50 x 40, 8 bits, effect "), 0U) << result.err;
  EXPECT_EQ(Names(), (std::vector<std::string>{"file.png", "in.png"}));
  EXPECT_EQ(RunWith(ReadFile("in.png"), {"render", "-", "-", "--quiet"}).err, "");
}

TEST_F(StreamsRunTest, StandardInputIsOfAnyFormatThatTellsItself) {
  for (const char* name : {"in.tif", "in.exr", "in.jpg", "in.webp", "in.dpx", "in.bmp"}) {
    Write(name, OIIO::TypeDesc::UINT8);
    ASSERT_EQ(Run({"render", name, "file.png", "--force"}).exitCode, 0) << name;
    const ToolResult result = RunWith(ReadFile(name), {"render", "-", "-"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.out == ReadFile("file.png")) << name;
  }
}

TEST_F(StreamsRunTest, StandardOutputKeepsSixteenBits) {
  Write("deep.png", OIIO::TypeDesc::UINT16);
  const ToolResult result = Run({"render", "deep.png", "-"});
  WriteFile("out.png", result.out);
  EXPECT_EQ(ReadPictureFile(InFolder("out.png")).spec.format, OIIO::TypeDesc::UINT16);
}

// A pipe has no date; a file that was redirected has.
TEST_F(StreamsRunTest, TheSameInputGivesTheSameFile) {
  const std::string picture = ReadFile("in.png");
  ASSERT_EQ(RunWith(picture, {"render", "-", "a.tif"}).exitCode, 0);
  ASSERT_EQ(RunWith(picture, {"render", "-", "b.tif"}).exitCode, 0);
  EXPECT_EQ(ReadFile("a.tif"), ReadFile("b.tif"));
  ToolOptions redirected;
  redirected.inputFile = "in.png";
  ASSERT_EQ(Run({"render", "-", "c.tif"}, redirected).exitCode, 0);
  ASSERT_EQ(Run({"render", "in.png", "d.tif"}).exitCode, 0);
  EXPECT_EQ(ReadFile("c.tif"), ReadFile("d.tif"));
}

TEST_F(StreamsRunTest, MessagesNameTheStreams) {
  ExpectMessage(RunWith("text", {"render", "-", "out.png"}), 1,
                {"standard input: cannot be read as a picture"});
  ExpectMessage(RunWith("", {"render", "-", "out.png"}), 1, {"standard input: is empty"});
  ExpectMessage(RunWith(ReadFile("in.png").substr(0, 2000), {"render", "-", "out.png"}), 1,
                {"standard input: is damaged"});
  EXPECT_EQ(Names(), std::vector<std::string>{"in.png"});
}

TEST_F(StreamsRunTest, APresetComesThroughAPipe) {
  const std::string preset = R"({"fast-blur.amount": 3})";
  WriteFile("look.json", preset);
  ASSERT_EQ(Run({"render", "in.png", "a.png", "--preset", "look.json"}).exitCode, 0);
  ASSERT_EQ(RunWith(preset, {"render", "in.png", "b.png", "--preset", "-"}).exitCode, 0);
  ASSERT_EQ(Run({"render", "in.png", "c.png"}).exitCode, 0);
  EXPECT_EQ(ReadFile("a.png"), ReadFile("b.png"));
  EXPECT_NE(ReadFile("a.png"), ReadFile("c.png"));
  ExpectMessage(RunWith("{", {"render", "in.png", "d.png", "--preset", "-"}), 1,
                {"preset standard input: is not valid JSON"});
}

TEST_F(StreamsRunTest, StandardInputIsReadOnce) {
  ExpectMessage(RunWith("{}", {"render", "-", "a.png", "--preset", "-"}), 2,
                {"standard input", "only once"});
  ExpectMessage(RunWith("{}", {"params", "--preset", "-", "--preset", "-"}), 2, {"only once"});
}

TEST_F(StreamsRunTest, ARedirectedFileIsNotReplaced) {
  ToolOptions redirected;
  redirected.inputFile = "in.png";
  const std::string before = ReadFile("in.png");
  ExpectMessage(Run({"render", "-", "in.png", "--force"}, redirected), 2,
                {"in.png: OUTPUT is the same file as INPUT"});
  EXPECT_EQ(ReadFile("in.png"), before);
}

TEST_F(StreamsRunTest, TerminalsAreNoPictures) {
  if (const std::string why = WhyNoTerminal(); !why.empty()) GTEST_SKIP() << why;
  ToolOptions options;
  options.terminalOutput = true;
  const ToolResult result = Run({"render", "in.png", "-"}, options);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.err.find("standard output: is a terminal"), std::string::npos) << result.err;
  EXPECT_EQ(result.out, "");
}

// As `| head -c 100` leaves it.
TEST_F(StreamsRunTest, AReaderThatWentAwayIsTold) {
  ToolOptions options;
  options.closedOutput = true;
  ExpectMessage(Run({"render", "in.png", "-"}, options), 1,
                {"standard output: cannot be written (Broken pipe)"});
}

}  // namespace
}  // namespace vitrell::cli
