// Options and values that are wrong end with exit code 2 and a message, before any work.
#include <string>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::WritePictureFile;

class WrongUsageRunTest : public ToolTest {
 protected:
  WrongUsageRunTest() {
    WritePictureFile(InFolder("in.png"), NoisePicture(8, 8, 4, OIIO::TypeDesc::UINT8, 1));
  }

  ToolResult Render(const std::vector<std::string>& more) const {
    std::vector<std::string> arguments = {"render", "in.png", "out.png"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Run(arguments);
  }
};

TEST_F(WrongUsageRunTest, UnknownControl) {
  ExpectMessage(Render({"--set", "lens.tipe=circle"}), 2, {"lens.tipe", "Did you mean lens.type"});
  ExpectMessage(Run({"params", "--set", "lens.tipe=circle"}), 2, {"Did you mean lens.type"});
}

TEST_F(WrongUsageRunTest, WhatIsNoNumber) {
  for (const char* text : {"nan", "inf", "-inf", "abc", ""}) {
    ExpectMessage(Render({"--set", std::string("lens.feather=") + text}), 2,
                  {"--set lens.feather=", "is not a number", "0 to 1000 %"});
  }
}

TEST_F(WrongUsageRunTest, OutOfRange) {
  ExpectMessage(Render({"--set", "lightness.amount=-101"}), 2, {"-101", "-100 to 100 %"});
  ExpectMessage(Render({"--set", "fast-blur.amount=32769"}), 2, {"0 to 32768"});
}

TEST_F(WrongUsageRunTest, WrongChoicePointAndColour) {
  ExpectMessage(Render({"--set", "lens.type=oval"}), 2, {"None | Circle"});
  ExpectMessage(Render({"--set", "lens.position=5"}), 2, {"960,540"});
  ExpectMessage(Render({"--set", "color.color=reddish"}), 2, {"#ff8800", "#f80", "name"});
  ExpectMessage(Render({"--set", "lens.feather"}), 2, {"a name and a value"});
}

TEST_F(WrongUsageRunTest, WrongOptions) {
  ExpectMessage(Run({}), 2, {"a command is needed", "--help"});
  ExpectMessage(Run({"rendr"}), 2,
                {"\"rendr\"", "render, check, params, keys, formats, about or help"});
  ExpectMessage(Run({"render"}), 2, {"required", "vitrell render --help"});
  ExpectMessage(Run({"render", "in.png"}), 2, {"OUTPUT", "vitrell render --help"});
  ExpectMessage(Render({"third.png"}), 2, {"third.png"});
  ExpectMessage(Render({"--colour"}), 2, {"--colour"});
  ExpectMessage(Render({"--depth", "12"}), 2, {"--depth", "12"});
  ExpectMessage(Render({"--threads", "-1"}), 2, {"--threads"});
  ExpectMessage(Render({"--threads", "many"}), 2, {"--threads"});
  ExpectMessage(Render({"--quiet", "--verbose"}), 2, {"--quiet"});
  ExpectMessage(Render({"--set"}), 2, {"--set"});
  ExpectMessage(Run({"params", "--json", "--markdown"}), 2, {"--json"});
}

TEST_F(WrongUsageRunTest, ValuesThatAShellTookApartAreTold) {
  const std::string hint = "\"lens.type=Rectangle --\"";
  ExpectMessage(Render({"--set", "lens.type=rectangle", "--"}), 2, {"Quote a value", hint});
  ExpectMessage(Run({"render", "--set", "lens.type=rectangle", "--", "in.png", "out.png"}), 2,
                {"Quote a value", hint});
  ExpectMessage(Render({"--set", "lens.type=rectangle", "l"}), 2,
                {"quote it: --set \"lens.type=rectangle l\""});
}

TEST_F(WrongUsageRunTest, NothingIsWritten) {
  Render({"--set", "lens.tipe=circle"});
  Render({"--colour"});
  EXPECT_EQ(Names(), std::vector<std::string>{"in.png"});
}

}  // namespace
}  // namespace vitrell::cli
