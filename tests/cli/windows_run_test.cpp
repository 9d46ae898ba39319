// EXR files whose pixels lie somewhere in, around or beside the display window.
#include <algorithm>
#include <string>
#include <vector>

#include "cli/tool_run.h"
#include "media/picture.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::FilePicture;
using media::NoisePicture;
using media::ReadPictureFile;
using media::Window;
using media::WritePictureFile;

constexpr int kWindowWidth = 64;
constexpr int kWindowHeight = 48;
constexpr int kChannels = 4;
// Where the display window begins; nothing may depend on it.
constexpr int kLeft = 100;
constexpr int kTop = -7;

struct Case {
  const char* name;
  Window data;  // in the display window
};

class WindowsRunTest : public ToolTest {
 protected:
  // Multiplied, in halves, so that what comes back is what was written.
  void WriteData(const std::string& name, const Window& data) const {
    FilePicture picture =
        NoisePicture(data.width, data.height, kChannels, OIIO::TypeDesc::HALF, 6, true);
    picture.spec.full_x = kLeft;
    picture.spec.full_y = kTop;
    picture.spec.full_width = kWindowWidth;
    picture.spec.full_height = kWindowHeight;
    picture.spec.x = kLeft + data.x;
    picture.spec.y = kTop + data.y;
    WritePictureFile(InFolder(name), picture);
  }

  // The same picture without windows: what lies outside is transparent black, or cut off.
  void WriteDisplay(const std::string& name, const FilePicture& framed, const Window& data) const {
    FilePicture picture =
        NoisePicture(kWindowWidth, kWindowHeight, kChannels, OIIO::TypeDesc::HALF, 6, true);
    std::fill(picture.floats.begin(), picture.floats.end(), 0.0F);
    for (int y = std::max(data.y, 0); y < std::min(data.Bottom(), kWindowHeight); ++y) {
      for (int x = std::max(data.x, 0); x < std::min(data.Right(), kWindowWidth); ++x) {
        std::copy_n(&framed.floats[Index(x - data.x, y - data.y, data.width)], kChannels,
                    &picture.floats[Index(x, y, kWindowWidth)]);
      }
    }
    WritePictureFile(InFolder(name), picture);
  }

  static std::size_t Index(int x, int y, int width) {
    return static_cast<std::size_t>((y * width + x) * kChannels);
  }

  ToolResult RunLook(const std::string& input, const std::string& output) const {
    return Run({"render", input, output, "--force", "--set", "lens.position=30%,40%", "--set",
                "fast-blur.amount=4", "--set", "lens.scale=70"});
  }

  static bool Has(const ToolResult& result, const std::string& text) {
    return result.err.find(text) != std::string::npos;
  }
};

class PlacedWindowsRunTest : public WindowsRunTest, public testing::WithParamInterface<Case> {};

TEST_P(PlacedWindowsRunTest, TheLensIsThatOfTheDisplayWindow) {
  const Window data = GetParam().data;
  WriteData("in.exr", data);
  const FilePicture before = ReadPictureFile(InFolder("in.exr"));
  WriteDisplay("display.exr", before, data);
  const ToolResult result = RunLook("in.exr", "out.exr");
  ASSERT_EQ(result.exitCode, 0) << result.err;
  ASSERT_EQ(RunLook("display.exr", "expected.exr").exitCode, 0);
  const FilePicture after = ReadPictureFile(InFolder("out.exr"));
  const FilePicture expected = ReadPictureFile(InFolder("expected.exr"));
  EXPECT_EQ(after.spec.full_x, kLeft);
  EXPECT_EQ(after.spec.full_y, kTop);
  EXPECT_EQ(after.spec.full_width, kWindowWidth);
  EXPECT_EQ(after.spec.full_height, kWindowHeight);
  EXPECT_EQ(after.spec.x, kLeft + data.x);
  EXPECT_EQ(after.spec.y, kTop + data.y);
  ASSERT_EQ(after.spec.width, data.width);
  ASSERT_EQ(after.spec.height, data.height);
  int wrong = 0;
  for (int y = data.y; y < data.Bottom(); ++y) {
    for (int x = data.x; x < data.Right(); ++x) {
      const bool seen = x >= 0 && y >= 0 && x < kWindowWidth && y < kWindowHeight;
      const std::size_t at = Index(x - data.x, y - data.y, data.width);
      const float* pixel = seen ? &expected.floats[Index(x, y, kWindowWidth)] : &before.floats[at];
      if (!std::equal(pixel, pixel + kChannels, &after.floats[at])) ++wrong;
    }
  }
  EXPECT_EQ(wrong, 0);
  const bool seen = data.x < kWindowWidth;
  EXPECT_EQ(after.floats != before.floats, seen);
}

TEST_P(PlacedWindowsRunTest, FormatsWithoutWindowsGetTheDisplayWindow) {
  const Window data = GetParam().data;
  WriteData("in.exr", data);
  WriteDisplay("display.exr", ReadPictureFile(InFolder("in.exr")), data);
  for (const char* output : {"out.png", "out.tif"}) {
    const ToolResult result = RunLook("in.exr", output);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(Has(result, "the display window is written")) << result.err;
    EXPECT_EQ(Has(result, "without the pixels beyond it"), data.x < 0 || data.y < 0 ||
                                                               data.Right() > kWindowWidth ||
                                                               data.Bottom() > kWindowHeight);
    const std::string expected = std::string("expected") + (output + 3);
    ASSERT_EQ(RunLook("display.exr", expected).exitCode, 0);
    const FilePicture a = ReadPictureFile(InFolder(output));
    const FilePicture b = ReadPictureFile(InFolder(expected));
    EXPECT_EQ(a.spec.width, kWindowWidth);
    EXPECT_EQ(a.spec.height, kWindowHeight);
    EXPECT_TRUE(a.samples == b.samples) << output;
    EXPECT_TRUE(a.floats == b.floats) << output;
  }
}

INSTANTIATE_TEST_SUITE_P(Places, PlacedWindowsRunTest,
                         testing::Values(Case{"inside", {10, 5, 30, 20}},
                                         Case{"around", {-9, -4, 90, 60}},
                                         Case{"across", {-5, 20, 33, 40}},
                                         Case{"beside", {80, 3, 16, 16}}),
                         [](const testing::TestParamInfo<Case>& test) { return test.param.name; });

TEST_F(WindowsRunTest, WhatIsPaintedOutsideTheDataIsTold) {
  WriteData("in.exr", {10, 5, 30, 20});
  // The wash of colour is opaque and covers everything.
  const ToolResult result =
      Run({"render", "in.exr", "out.exr", "--set", "lens.type=none", "--set", "color.opacity=100"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(Has(result, std::to_string(kWindowWidth * kWindowHeight - 30 * 20) +
                              " pixels that the effect painted outside the data window"))
      << result.err;
}

TEST_F(WindowsRunTest, WithoutAlphaTheOutsideIsTransparentToo) {
  FilePicture picture = NoisePicture(8, 8, 3, OIIO::TypeDesc::HALF, 6);
  picture.spec.full_width = 20;
  picture.spec.full_height = 10;
  picture.spec.x = 4;
  WritePictureFile(InFolder("in.exr"), picture);
  const std::vector<std::string> neutral = {"--set", "lens.type=none", "--set",
                                            "fast-blur.amount=0"};
  const auto run = [&](const std::string& output) {
    std::vector<std::string> arguments = {"render", "in.exr", output};
    arguments.insert(arguments.end(), neutral.begin(), neutral.end());
    return Run(arguments);
  };
  EXPECT_EQ(run("out.exr").err, "");
  EXPECT_EQ(ReadPictureFile(InFolder("out.exr")).spec.nchannels, 3);
  const ToolResult result = run("out.png");
  EXPECT_TRUE(Has(result, "outside the data window is transparent")) << result.err;
  const FilePicture written = ReadPictureFile(InFolder("out.png"));
  ASSERT_EQ(written.spec.nchannels, kChannels);
  for (int y = 0; y < 10; ++y) {
    for (int x = 0; x < 20; ++x) {
      const bool inside = x >= 4 && x < 12 && y < 8;
      EXPECT_EQ(written.samples[Index(x, y, 20) + 3], inside ? 65535 : 0) << x << ", " << y;
    }
  }
}

}  // namespace
}  // namespace vitrell::cli
