// `vitrell params --frei0r` and `--mlt`.
#include <fstream>
#include <iterator>
#include <string>

#include "cli/tool_run.h"

namespace vitrell::cli {
namespace {

class Frei0rRunTest : public ToolTest {
 protected:
  Frei0rRunTest() {
    WriteFile("look.json", R"({"lens.feather": 25, "color.color": "#ff0000", "mode": "add"})");
  }
};

TEST_F(Frei0rRunTest, FilterForFfmpegIsOneLine) {
  const ToolResult result = Run({"params", "--frei0r", "look.json"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out.find("frei0r=filter_name=vitrell:filter_params=0.2|0|n|0.05|0.5|0.5|"), 0U)
      << result.out;
  EXPECT_NE(result.out.find("|1/0/0|"), std::string::npos) << result.out;
  EXPECT_EQ(result.out.find('\n'), result.out.size() - 1);
  EXPECT_EQ(Run({"params", "--frei0r", "--preset", "look.json"}).out, result.out);
  EXPECT_NE(Run({"params", "--frei0r"}).out, result.out);
  EXPECT_NE(Run({"params", "--frei0r", "look.json", "--set", "lens.feather=1"}).out, result.out);
}

TEST_F(Frei0rRunTest, ArgumentsForMeltNameTheParameters) {
  const std::string text = Run({"params", "--mlt", "look.json"}).out;
  EXPECT_EQ(text.find("-filter frei0r.vitrell threads=1 lens.type=0.2 "), 0U) << text;
  EXPECT_NE(text.find(" lens.feather=0.05 "), std::string::npos) << text;
  EXPECT_NE(text.find(" lens.invert-alpha=0 "), std::string::npos) << text;
  EXPECT_NE(text.find(" color.color=#ff0000 "), std::string::npos) << text;
  EXPECT_EQ(Run({"params", "--mlt", "--preset", "look.json"}).out, text);
  const std::string custom = Run({"params", "--mlt", "--set", "lens.type=custom"}).out;
  EXPECT_EQ(custom.find("-transition frei0r.vitrell_custom threads=1 lens.type=1 "), 0U) << custom;
}

TEST_F(Frei0rRunTest, KeysBecomeAnimationsOfMelt) {
  WriteFile("moving.json", R"({"fast-blur.amount": "0=0; 1s~=127; 50=0", "mode": "add",
                               "lens.type": "0|=circle; 9=custom"})");
  const std::string text = Run({"params", "--mlt", "moving.json", "--fps", "30"}).out;
  // The mixer, since the lens is a custom one at some time.
  EXPECT_EQ(text.find("-transition frei0r.vitrell_custom threads=1 lens.type=0|=0.2;9=1 "), 0U)
      << text;
  EXPECT_NE(text.find(" fast-blur.amount=0=0;30~=1;50=0 "), std::string::npos) << text;
  EXPECT_NE(text.find(" mode=0.3\n"), std::string::npos) << text;
  EXPECT_EQ(Run({"params", "--mlt", "moving.json", "--at", "3"}).exitCode, 2);
  // FFmpeg's filter stands still, and that is told.
  const ToolResult still = Run({"params", "--frei0r", "moving.json", "--at", "12.5"});
  EXPECT_NE(still.out.find("|y|0.5|n|"), std::string::npos) << still.out;
  EXPECT_NE(still.err.find("takes no keys"), std::string::npos) << still.err;
}

TEST_F(Frei0rRunTest, PixelsAreRefused) {
  for (const std::string host : {"--frei0r", "--mlt"}) {
    ExpectMessage(Run({"params", host, "--set", "trail.center=10,20"}), 2,
                  {"trail.center", "10,20", "percent", "--set trail.center=50%,50%"});
  }
  EXPECT_EQ(Run({"params", "--frei0r", "--mlt"}).exitCode, 2);
}

// `vitrell params --frei0r --markdown` makes the table of docs/frei0r.md.
TEST_F(Frei0rRunTest, ThePageHasTheTableOfToday) {
  const std::string table = Run({"params", "--frei0r", "--markdown"}).out;
  EXPECT_NE(table.find("| 11 | `fast-blur.amount` | Amount |"), std::string::npos) << table;
  std::ifstream file(VITRELL_DOCS_FOLDER "/frei0r.md");
  const std::string page(std::istreambuf_iterator<char>(file), {});
  const std::string begin = "<!-- table -->\n\n";
  const std::size_t start = page.find(begin);
  ASSERT_NE(start, std::string::npos);
  const std::size_t end = page.find("\n<!-- end -->", start);
  ASSERT_NE(end, std::string::npos);
  EXPECT_EQ(page.substr(start + begin.size(), end - start - begin.size()), table);
}

}  // namespace
}  // namespace vitrell::cli
