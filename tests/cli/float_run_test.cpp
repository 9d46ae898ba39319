// Floats that the effect cannot see: what it leaves alone keeps them.
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::FilePicture;
using media::NoisePicture;
using media::ReadPictureFile;
using media::WritePictureFile;

constexpr int kSize = 64;

class FloatRunTest : public ToolTest {
 protected:
  // Normals, highlights and holes as a renderer writes them: from -3 to 3, some far above, some no
  // number; colours multiplied by an alpha that is often zero.
  static FilePicture Renderer(int channels, OIIO::TypeDesc type) {
    FilePicture picture = NoisePicture(kSize, kSize, channels, type, 17);
    for (std::size_t i = 0; i < picture.floats.size(); ++i) {
      float& value = picture.floats[i];
      const bool alpha = channels == 4 && i % 4 == 3;
      if (alpha) {
        value = value < 0.3F ? 0.0F : value;
        continue;
      }
      value = value * 6.0F - 3.0F;
      if (i % 97 == 0) value = 5000.0F;
      if (i % 101 == 0) value = std::numeric_limits<float>::infinity();
      if (i % 103 == 0) value = std::numeric_limits<float>::quiet_NaN();
    }
    return picture;
  }

  static std::size_t CountDifferences(const FilePicture& a, const FilePicture& b) {
    EXPECT_EQ(a.floats.size(), b.floats.size());
    std::size_t count = 0;
    for (std::size_t i = 0; i < a.floats.size(); ++i) {
      if (std::memcmp(&a.floats[i], &b.floats[i], sizeof(float)) != 0) ++count;
    }
    return count;
  }

  static bool Has(const ToolResult& result, const std::string& text) {
    return result.err.find(text) != std::string::npos;
  }
};

TEST_F(FloatRunTest, WithoutEffectEveryBitIsKept) {
  for (const OIIO::TypeDesc type : {OIIO::TypeDesc::HALF, OIIO::TypeDesc::FLOAT}) {
    for (const int channels : {3, 4}) {
      WritePictureFile(InFolder("in.exr"), Renderer(channels, type));
      const ToolResult result = Run({"render", "in.exr", "out.exr", "--force", "--set",
                                     "lens.type=none", "--set", "fast-blur.amount=0"});
      ASSERT_EQ(result.exitCode, 0) << result.err;
      EXPECT_EQ(result.err, "");
      const FilePicture written = ReadPictureFile(InFolder("out.exr"));
      EXPECT_EQ(written.spec.format, type);
      EXPECT_EQ(CountDifferences(ReadPictureFile(InFolder("in.exr")), written), 0U);
    }
  }
}

TEST_F(FloatRunTest, OutsideTheLensEveryBitIsKept) {
  WritePictureFile(InFolder("in.exr"), Renderer(4, OIIO::TypeDesc::HALF));
  const ToolResult result = Run({"render", "in.exr", "out.exr", "--set", "lens.scale=20", "--set",
                                 "lens.feather=0", "--set", "fast-blur.amount=3"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  const FilePicture before = ReadPictureFile(InFolder("in.exr"));
  const FilePicture after = ReadPictureFile(InFolder("out.exr"));
  // A circle of 20 % reaches a tenth of the width times 1.4 from the middle.
  std::size_t changedInside = 0;
  for (int y = 0; y < kSize; ++y) {
    for (int x = 0; x < kSize; ++x) {
      const std::size_t at = static_cast<std::size_t>(y * kSize + x) * 4;
      const bool same = std::memcmp(&before.floats[at], &after.floats[at], 4 * sizeof(float)) == 0;
      if (std::hypot(x - kSize / 2, y - kSize / 2) > 0.2 * kSize) {
        EXPECT_TRUE(same) << x << ", " << y;
      } else if (!same) {
        ++changedInside;
      }
    }
  }
  EXPECT_GT(changedInside, 50U);
  EXPECT_TRUE(Has(result, "out.exr: ")) << result.err;
  EXPECT_TRUE(Has(result, " pixels that the effect changed had values outside black to white"))
      << result.err;
}

TEST_F(FloatRunTest, WhatIsClippedInsideIsCounted) {
  FilePicture picture = NoisePicture(4, 1, 3, OIIO::TypeDesc::FLOAT, 2);
  picture.floats[3] = 5.0F;
  picture.floats[4] = -1.0F;
  picture.floats[9] = 2.0F;
  WritePictureFile(InFolder("in.exr"), picture);
  const ToolResult faded = Run({"render", "in.exr", "out.exr", "--effect", VITRELL_FAKE_EFFECT_PATH,
                                "--set", "test.work=fade"});
  EXPECT_TRUE(Has(faded, "out.exr: 2 pixels that the effect changed had values outside"))
      << faded.err;
  const ToolResult asPng = Run(
      {"render", "in.exr", "out.png", "--set", "lens.type=none", "--set", "fast-blur.amount=0"});
  EXPECT_TRUE(
      Has(asPng, "out.png: 2 pixels had values outside black to white, which the format does not"))
      << asPng.err;
}

}  // namespace
}  // namespace vitrell::cli
