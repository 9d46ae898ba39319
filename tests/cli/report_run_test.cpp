// --strict and --report: what a program can build on.
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::WritePictureFile;
using Json = nlohmann::json;

namespace fs = std::filesystem;

class ReportRunTest : public ToolTest {
 protected:
  // With alpha, which JPEG does not hold.
  ReportRunTest() {
    WritePictureFile(InFolder("in.png"), NoisePicture(30, 20, 4, OIIO::TypeDesc::UINT16, 1));
  }

  Json Report(const std::string& name) const { return Json::parse(ReadFile(name)); }
};

TEST_F(ReportRunTest, StrictRefusesWhatWritingLoses) {
  WriteFile("old.jpg", "precious");
  for (const char* quiet : {"--verbose", "--quiet"}) {
    const ToolResult result = Run({"render", "in.png", "out.jpg", "--strict", quiet});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("vitrell: --strict: out.jpg: "), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("No picture was written."), std::string::npos) << result.err;
  }
  EXPECT_EQ(Run({"render", "in.png", "old.jpg", "--strict", "--force"}).exitCode, 1);
  EXPECT_EQ(ReadFile("old.jpg"), "precious");
  EXPECT_EQ(Run({"render", "in.png", "out.jpg", "--strict", "--dry-run"}).exitCode, 1);
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.png", "old.jpg"}));
  EXPECT_EQ(Run({"render", "in.png", "out.jpg"}).exitCode, 0);
  const ToolResult kept = Run({"render", "in.png", "out.png", "--strict"});
  EXPECT_EQ(kept.exitCode, 0) << kept.err;
}

// Before the render: the effect would take half a minute.
TEST_F(ReportRunTest, StrictRefusesWhatReadingLosesAtOnce) {
  const OIIO::ImageSpec spec(4, 4, 3, OIIO::TypeDesc::UINT8);
  const std::vector<uint8_t> grey(48, 128);
  const auto out = OIIO::ImageOutput::create("tiff");
  const std::string name = InFolder("two.tif").string();
  ASSERT_TRUE(out->open(name, spec));
  ASSERT_TRUE(out->write_image(OIIO::TypeDesc::UINT8, grey.data()));
  ASSERT_TRUE(out->open(name, spec, OIIO::ImageOutput::AppendSubimage));
  ASSERT_TRUE(out->write_image(OIIO::TypeDesc::UINT8, grey.data()) && out->close());
  const ToolResult result = Run({"render", "two.tif", "out.tif", "--strict", "--effect",
                                 VITRELL_FAKE_EFFECT_PATH, "--set", "test.work=wait"});
  ExpectMessage(result, 1, {"--strict: ", "two.tif", "several pictures"});
  EXPECT_FALSE(fs::exists(InFolder("rendering")));
}

// A lens without a layer loses nothing.
TEST_F(ReportRunTest, StrictLetsAdvicePass) {
  const ToolResult result =
      Run({"render", "in.png", "out.png", "--strict", "--set", "lens.type=custom"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("note: lens.type is custom"), std::string::npos) << result.err;
}

TEST_F(ReportRunTest, TheReportTellsSizesDepthsTimesAndNotes) {
  const ToolResult result = Run({"render", "in.png", "out.jpg", "--quiet", "--threads", "1",
                                 "--custom-layer", "in.png", "--report", "report.json"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out + result.err, "");
  const Json report = Report("report.json");
  EXPECT_EQ(report.at("program"), "vitrell 1.0.5");
  EXPECT_EQ(report.at("result"), "done");
  EXPECT_EQ(report.at("exitCode"), 0);
  EXPECT_FALSE(report.contains("error"));
  const Json& input = report.at("input");
  EXPECT_EQ(input.at("file"), "in.png");
  EXPECT_EQ(input.at("format"), "PNG");
  EXPECT_EQ(input.at("width"), 30);
  EXPECT_EQ(input.at("height"), 20);
  EXPECT_EQ(input.at("channels"), (Json{"R", "G", "B", "A"}));
  EXPECT_EQ(input.at("type"), "uint16");
  EXPECT_EQ(input.at("bits"), 16);
  EXPECT_EQ(report.at("customLayer").at("file"), "in.png");
  EXPECT_EQ(report.at("output").at("format"), "JPEG");
  EXPECT_EQ(report.at("output").at("channels").size(), 3U);
  EXPECT_EQ(report.at("output").at("bits"), 8);
  EXPECT_EQ(report.at("effect"), (Json{{"bits", 16}, {"threads", 1}}));
  const Json& seconds = report.at("seconds");
  for (const char* step : {"read", "effect", "write"}) EXPECT_GT(seconds.at(step), 0.0) << step;
  const Json& processor = report.at("processorSeconds");
  EXPECT_GT(processor.at("effect"), 0.0);
  EXPECT_GT(processor.at("total"), processor.at("effect"));
  EXPECT_GE(seconds.at("total").get<double>(), seconds.at("read").get<double>() +
                                                   seconds.at("effect").get<double>() +
                                                   seconds.at("write").get<double>());
  // The layer that is not used, transparency and depth.
  ASSERT_GE(report.at("notes").size(), 3U);
  EXPECT_EQ(report.at("notes")[0].at("kind"), "advice");
  EXPECT_EQ(report.at("notes")[1].at("kind"), "loss");
  EXPECT_EQ(report.at("complaints"), Json::array());
}

TEST_F(ReportRunTest, TheReportGoesToStandardOutput) {
  const ToolResult result = Run({"render", "in.png", "out.png", "--report", "-"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(Json::parse(result.out).at("output").at("file"), "out.png");
  EXPECT_EQ(result.err.find("out.png: 30 x 20, 16 bits, effect "), 0U) << result.err;
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.png", "out.png"}));
}

TEST_F(ReportRunTest, FailuresAreReportedAsFarAsTheyCame) {
  const ToolResult strict =
      Run({"render", "in.png", "out.jpg", "--strict", "--report", "strict.json"});
  EXPECT_EQ(strict.exitCode, 1);
  Json report = Report("strict.json");
  EXPECT_EQ(report.at("result"), "failed");
  EXPECT_EQ(report.at("exitCode"), 1);
  EXPECT_EQ("vitrell: " + report.at("error").get<std::string>() + "\n", strict.err);
  EXPECT_GE(report.at("notes").size(), 2U);
  WriteFile("bad.png", "text");
  EXPECT_EQ(Run({"render", "bad.png", "out.png", "--report", "bad.json"}).exitCode, 1);
  report = Report("bad.json");
  EXPECT_EQ(report.at("result"), "failed");
  EXPECT_FALSE(report.contains("input"));
  EXPECT_EQ(Run({"render", "in.png", "out.png", "--dry-run", "--report", "dry.json"}).exitCode, 0);
  EXPECT_EQ(Report("dry.json").at("result"), "dry run");
}

TEST_F(ReportRunTest, ReportsReplaceNothingElse) {
  WriteFile("look.json", "{}");
  fs::create_symlink("in.png", InFolder("link.png"));
  for (const char* name : {"in.png", "link.png", "out.png", "look.json", "new.json"}) {
    ExpectMessage(Run({"render", "in.png", "out.png", "--preset", "look.json", "--save-preset",
                       "new.json", "--force", "--report", name}),
                  2, {name, "--report is the same file as "});
  }
  WritePictureFile(InFolder("mask.png"), NoisePicture(3, 3, 3, OIIO::TypeDesc::UINT8, 1));
  ExpectMessage(Run({"render", "in.png", "out.png", "--custom-layer", "mask.png", "--set",
                     "lens.type=custom", "--force", "--report", "mask.png"}),
                2, {"--report is the same file as the custom layer"});
  ExpectMessage(Run({"render", "in.png", "-", "--report", "-"}), 2, {"--report", "OUTPUT", "both"});
  ExpectMessage(Run({"render", "in.png", "out.png", "--report", "look.json"}), 1,
                {"look.json", "already exists", "--force"});
  EXPECT_EQ(ReadFile("look.json"), "{}");
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.png", "link.png", "look.json", "mask.png"}));
}

}  // namespace
}  // namespace vitrell::cli
