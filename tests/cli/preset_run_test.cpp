// Presets as users keep and use them.
#include <string>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::WritePictureFile;

class PresetRunTest : public ToolTest {
 protected:
  PresetRunTest() {
    WritePictureFile(InFolder("in.png"), NoisePicture(60, 40, 4, OIIO::TypeDesc::UINT8, 1));
  }
};

TEST_F(PresetRunTest, SavedPresetGivesTheSamePicture) {
  ASSERT_EQ(Run({"render", "in.png", "a.png", "--set", "lens.type=triangle", "--set",
                 "color.opacity=60", "--set", "color.color=#ff8800", "--set",
                 "lens.position=20,25%", "--save-preset", "look.json"})
                .exitCode,
            0);
  ASSERT_EQ(
      Run({"render", "in.png", "b.png", "--preset", "look.json", "--save-preset", "again.json"})
          .exitCode,
      0);
  ASSERT_EQ(Run({"render", "in.png", "c.png"}).exitCode, 0);
  EXPECT_EQ(ReadFile("a.png"), ReadFile("b.png"));
  EXPECT_NE(ReadFile("a.png"), ReadFile("c.png"));
  EXPECT_EQ(ReadFile("look.json"), ReadFile("again.json"));
}

TEST_F(PresetRunTest, SettingsOverrideThePreset) {
  WriteFile("look.json", R"({"fast-blur.amount": 3, "intensity": 50})");
  ASSERT_EQ(
      Run({"render", "in.png", "a.png", "--preset", "look.json", "--set", "fast-blur.amount=9"})
          .exitCode,
      0);
  ASSERT_EQ(
      Run({"render", "in.png", "b.png", "--set", "fast-blur.amount=9", "--set", "intensity=50"})
          .exitCode,
      0);
  ASSERT_EQ(Run({"render", "in.png", "c.png", "--preset", "look.json"}).exitCode, 0);
  EXPECT_EQ(ReadFile("a.png"), ReadFile("b.png"));
  EXPECT_NE(ReadFile("a.png"), ReadFile("c.png"));
}

TEST_F(PresetRunTest, PresetsAreNotReplacedWithoutForce) {
  WriteFile("look.json", "precious");
  ExpectMessage(Run({"render", "in.png", "a.png", "--save-preset", "look.json"}), 1,
                {"look.json", "already exists", "--force"});
  EXPECT_EQ(ReadFile("look.json"), "precious");
  EXPECT_EQ(Run({"render", "in.png", "a.png", "--save-preset", "look.json", "--force"}).exitCode,
            0);
  EXPECT_EQ(ReadFile("look.json").front(), '{');
}

TEST_F(PresetRunTest, BadPresetsAreTold) {
  ExpectMessage(Run({"render", "in.png", "a.png", "--preset", "none.json"}), 1,
                {"none.json", "No such file", "Check"});
  WriteFile("bad.json", "{\"mode\": ");
  ExpectMessage(Run({"render", "in.png", "a.png", "--preset", "bad.json"}), 1,
                {"bad.json", "not valid JSON", "line 1", "--save-preset"});
  WriteFile("key.json", R"({"lens.tipe": 2})");
  ExpectMessage(Run({"render", "in.png", "a.png", "--preset", "key.json"}), 1,
                {"key.json", "lens.tipe", "Did you mean lens.type", "remove"});
  WriteFile("type.json", R"({"lens.feather": "wide"})");
  ExpectMessage(Run({"params", "--preset", "type.json"}), 1,
                {"type.json", "lens.feather", "wide", "0 to 1000 %"});
  EXPECT_EQ(Names(), (std::vector<std::string>{"bad.json", "in.png", "key.json", "type.json"}));
}

}  // namespace
}  // namespace vitrell::cli
