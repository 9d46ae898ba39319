// Presets as users keep and use them.
#include <filesystem>
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

TEST_F(PresetRunTest, FitScalesLengthsToThePicture) {
  WriteFile("look.json", R"({"picture-width": 120, "fast-blur.amount": 12, "lens.feather": 30})");
  const auto render = [&](const char* name, const std::vector<std::string>& more) {
    std::vector<std::string> arguments = {"render", "in.png", name};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Run(arguments);
  };
  ToolResult result =
      render("fit.png", {"--preset", "look.json", "--fit", "--save-preset", "fitted.json"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  result = render("same.png", {"--set", "fast-blur.amount=6", "--set", "lens.feather=30"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(ReadFile("fit.png"), ReadFile("same.png"));
  const std::string fitted = ReadFile("fitted.json");
  EXPECT_NE(fitted.find("\"picture-width\": 60"), std::string::npos) << fitted;
  EXPECT_NE(fitted.find("\"fast-blur.amount\": 6"), std::string::npos) << fitted;
  result = render("plain.png", {"--preset", "look.json"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.err.find("made for a picture 120 pixels wide, and this one has 60"),
            std::string::npos)
      << result.err;
  EXPECT_NE(ReadFile("fit.png"), ReadFile("plain.png"));
  ExpectMessage(render("no.png", {"--fit"}), 2, {"--fit", "--preset"});
  WriteFile("old.json", "{}");
  ExpectMessage(render("no.png", {"--fit", "--preset", "old.json"}), 1, {"--fit", "picture-width"});
}

TEST_F(PresetRunTest, WidthsThatDifferByHalfAreNoted) {
  const auto isNoted = [&](const std::string& width) {
    WriteFile("look.json", "{\"picture-width\": " + width + "}");
    const ToolResult result =
        Run({"render", "in.png", "out.png", "--force", "--preset", "look.json"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    return result.err.find("made for a picture " + width) != std::string::npos;
  };
  // The picture is 60 wide: 1.5 times 40 and half of 120.
  EXPECT_TRUE(isNoted("40"));
  EXPECT_FALSE(isNoted("41"));
  EXPECT_FALSE(isNoted("60"));
  EXPECT_FALSE(isNoted("119"));
  EXPECT_TRUE(isNoted("120"));
}

// They are tried on pictures of this width (scripts/make_doc_pictures.sh).
TEST_F(PresetRunTest, TheShippedPresetsTellTheirWidth) {
  int presets = 0;
  for (const auto& entry : std::filesystem::directory_iterator(VITRELL_PRESETS_PATH)) {
    ++presets;
    const ToolResult result =
        Run({"params", "--preset", entry.path(), "--save-preset", "look.json", "--force"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(ReadFile("look.json").find("\"picture-width\": 960"), std::string::npos)
        << entry.path();
  }
  EXPECT_EQ(presets, 3);
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
