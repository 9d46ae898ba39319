// The custom lens: samples worked out by hand, and whole rows against the literal mask.
#include "lens/custom_lens.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "host/fake_host.h"
#include "host/picture.h"
#include "literal/lens/lens_mask.h"

namespace vitrell {
namespace {

class CustomLensTest : public testing::Test {
 protected:
  CustomLensTest() {
    info_.lensType = kLensCustom;
    info_.customLayer = &noImage_;
    info_.placement = kCenterMap;
    info_.scaleWidth = info_.scaleHeight = 1;
    info_.positionX = 10;
    info_.positionY = 5;
    SetOutput(20, 10);
  }

  void SetOutput(A_long width, A_long height) {
    output_.width = width;
    output_.height = height;
    inputExtent_ = {0, 0, width, height};
  }

  std::vector<double> Row(int y, int left, std::uint32_t count) {
    std::vector<double> values(count, -1);
    CustomLens({host_.inData(), &output_, inputExtent_}, info_)
        .FillRow(y, left, count, values.data());
    return values;
  }
  double At(int x, int y) { return Row(y, x, 1)[0]; }

  FakeHost host_;
  PF_LayerDef noImage_ = {};
  PF_LayerDef output_ = {};
  PF_LRect inputExtent_ = {};
  LX_Info info_ = {};
};

TEST_F(CustomLensTest, WithoutAnImageIsOutside) { EXPECT_EQ(At(10, 5), 0.0); }

// An image of the layer's size, centred: the lens centre (10, 5) reads the image's (9, 4).
TEST_F(CustomLensTest, KeepsTheSampleOnePixelUpAndLeft) {
  Picture<PF_Pixel> image(20, 10);
  image.Fill({255, 0, 0, 0});
  image.At(9, 4) = {255, 255, 255, 255};
  info_.customLayer = image.get();
  for (int y = 2; y <= 8; ++y) {
    for (int x = 2; x <= 18; ++x) {
      EXPECT_NEAR(At(x, y), x == 10 && y == 5 ? 1.0 : 0.0, 1e-12) << x << "," << y;
    }
  }
}

// (0.299 x 200 + 0.587 x 100 + 0.114 x 50) x 128 / 65025 = 124.2 x 128 / 65025.
TEST_F(CustomLensTest, ValueIsLuminanceTimesAlpha) {
  Picture<PF_Pixel> image(20, 10);
  image.Fill({128, 200, 100, 50});
  info_.customLayer = image.get();
  EXPECT_NEAR(At(10, 5), 124.2 * 128 / 65025, 1e-12);
}

// (0.299 x 20000 + 0.587 x 10000 + 0.114 x 5000) x 16384 / 2^30 = 12420 / 65536; values above
// white are not limited: 65535 x 65535 / 2^30 = 3.9999.
TEST_F(CustomLensTest, DeepImagesAreScaledByTwoToTheThirty) {
  Picture<PF_Pixel16> image(20, 10);
  image.Fill({16384, 20000, 10000, 5000});
  info_.customLayer = image.get();
  EXPECT_NEAR(At(10, 5), 12420.0 / 65536, 1e-12);
  image.Fill({65535, 65535, 65535, 65535});
  EXPECT_NEAR(At(10, 5), 65535.0 * 65535 / 1073741824, 1e-9);
}

// Scale width 2: column 10 + 3 / 2 - 1 = 10.5 lies half-way between a channel of 101 and one of
// 200: 150.5, truncated before the luminance is formed.
TEST_F(CustomLensTest, SamplesAreBilinearAndTruncated) {
  Picture<PF_Pixel> image(20, 10);
  image.Fill({255, 101, 101, 101});
  for (A_long y = 0; y < 10; ++y) {
    image.At(11, y) = {255, 200, 200, 200};
  }
  info_.customLayer = image.get();
  info_.scaleWidth = 2;
  EXPECT_NEAR(At(13, 5), 150.0 / 255, 1e-12);
}

// A quarter turn: the column to the right of the centre comes from the row below it or above it.
TEST_F(CustomLensTest, RotationTurnsTheSample) {
  Picture<PF_Pixel> image(20, 20);
  image.Fill({255, 0, 0, 0});
  image.At(9, 6) = {255, 255, 255, 255};
  info_.customLayer = image.get();
  SetOutput(20, 20);
  info_.positionY = 10;
  info_.rotation = 1.5707963267948966;
  // The sample of (10 + p, 10) is row 10 - p - 1: 6 for p = 3.
  EXPECT_NEAR(At(13, 10), 1.0, 1e-12);
  EXPECT_NEAR(At(7, 10), 0.0, 1e-12);
}

// Twice the layer's size. Stretched: column 2 x (10 + p) - 1, row 2 x (5 - q) - 1 with q the
// position's row less the pixel's. Centred: column 20 + p - 1, row 10 - q - 1. Any other placement
// takes the image as it comes: column 10 + p - 1.
TEST_F(CustomLensTest, PlacementStretchesOrCentres) {
  Picture<PF_Pixel> image(40, 20);
  image.Fill({255, 0, 0, 0});
  image.At(21, 11) = {255, 255, 255, 255};
  image.At(10, 5) = {255, 0, 255, 0};
  info_.customLayer = image.get();
  info_.placement = kStretchMapToFit;
  EXPECT_NEAR(At(11, 6), 1.0, 1e-12);
  EXPECT_NEAR(At(12, 7), 0.0, 1e-12);
  info_.placement = kCenterMap;
  EXPECT_NEAR(At(12, 7), 1.0, 1e-12);
  EXPECT_NEAR(At(11, 6), 0.0, 1e-12);
  info_.placement = 7;
  EXPECT_NEAR(At(11, 6), 0.587, 1e-12);
}

// Extent (4, 2, 20, 10): the middle is ((4 + 20) / 2, (2 + 10) / 2) = (12, 6), so that the lens
// centre reads (11, 5).
TEST_F(CustomLensTest, MiddleIsThatOfTheInputsOwnExtent) {
  Picture<PF_Pixel> image(20, 10);
  image.Fill({255, 0, 0, 0});
  image.At(11, 5) = {255, 255, 255, 255};
  info_.customLayer = image.get();
  inputExtent_ = {4, 2, 20, 10};
  EXPECT_NEAR(At(10, 5), 1.0, 1e-12);
}

TEST_F(CustomLensTest, SamplesOutsideTheImageAreZero) {
  Picture<PF_Pixel> image(20, 10);
  image.Fill({255, 255, 255, 255});
  info_.customLayer = image.get();
  EXPECT_NEAR(At(19, 5), 1.0, 1e-12);  // Column 18 and its neighbour 19.
  EXPECT_NEAR(At(20, 5), 0.0, 1e-12);  // Column 19, whose neighbour is missing.
  EXPECT_NEAR(At(-1, 5), 0.0, 1e-12);  // Column -2.
  EXPECT_NEAR(At(40, 5), 0.0, 1e-12);
}

template <typename Pixel>
literal::World LiteralImage(const Picture<Pixel>& image) {
  literal::World world;
  world.deep = Picture<Pixel>::kDeep;
  world.width = image.get()->width;
  world.height = image.get()->height;
  const PF_LRect& extent = image.get()->extent_hint;
  world.extent = {extent.left, extent.top, extent.right, extent.bottom};
  for (A_long y = 0; y < world.height; ++y) {
    for (A_long x = 0; x < world.width; ++x) {
      const Pixel& pixel = image.At(x, y);
      world.pixels.push_back({{pixel.alpha, pixel.red, pixel.green, pixel.blue}});
    }
  }
  return world;
}

template <typename Pixel>
class CustomLensRowsTest : public CustomLensTest {
 protected:
  // Every row of the output, bit for bit as in the literal mask.
  void ExpectLiteralRows(Picture<Pixel>& image, const std::string& what) {
    literal::World world = LiteralImage(image);
    literal::Settings settings;
    settings.lensType = info_.lensType;
    settings.customLayer = &world;
    settings.placement = info_.placement;
    settings.positionX = info_.positionX;
    settings.positionY = info_.positionY;
    settings.scaleWidth = info_.scaleWidth;
    settings.scaleHeight = info_.scaleHeight;
    settings.rotation = info_.rotation;
    const PF_ANSICallbacks& maths = host_.inData()->utils->ansi;
    const literal::Mask expected = literal::BuildLensMask(
        settings, {maths.sin, maths.cos, maths.tan, maths.atan, maths.sqrt, maths.pow},
        {0, 0, output_.width, output_.height}, output_.width, output_.height,
        {inputExtent_.left, inputExtent_.top, inputExtent_.right, inputExtent_.bottom});
    info_.customLayer = image.get();
    const auto width = static_cast<std::size_t>(output_.width);
    for (A_long y = 0; y < output_.height; ++y) {
      const std::vector<double> row = Row(y, 0, static_cast<std::uint32_t>(width));
      for (std::size_t x = 0; x < width; ++x) {
        const double value = expected.values[static_cast<std::size_t>(y) * width + x];
        ASSERT_EQ(std::bit_cast<std::uint64_t>(row[x]), std::bit_cast<std::uint64_t>(value))
            << what << " at " << x << "," << y << ": " << row[x] << " for " << value;
      }
    }
  }
};

using Depths = testing::Types<PF_Pixel, PF_Pixel16>;
TYPED_TEST_SUITE(CustomLensRowsTest, Depths);

TYPED_TEST(CustomLensRowsTest, RandomImagesMatchTheLiteralMask) {
  constexpr std::uint32_t kSeed = 20261121;
  std::mt19937 random(kSeed);
  const auto between = [&random](int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
  };
  LX_Info& info = this->info_;
  for (int i = 0; i < 200; ++i) {
    Picture<TypeParam> image(between(1, 60), between(1, 40));
    image.FillNoise(random(), i % 3 == 0 ? 65535 : Picture<TypeParam>::kWhite);
    if (i % 5 == 0) {
      image.get()->extent_hint = {3, -2, 3 + image.get()->width, image.get()->height - 2};
    }
    this->SetOutput(between(1, 300), between(1, 30));
    if (i % 4 == 0) {
      this->inputExtent_ = {between(-9, 9), between(-9, 9), between(10, 90), between(10, 50)};
    }
    info.placement = between(1, 3);
    info.positionX = between(-20, 120);
    info.positionY = between(-20, 60);
    const float scales[] = {1, 1, 0.3F, 2.4F, 0.0001F, 0.00011F, 0};
    info.scaleWidth = scales[random() % 4];
    info.scaleHeight = scales[random() % 6];
    info.rotation = i % 2 == 0 ? 0.0 : 0.01 * between(-400, 400);
    this->ExpectLiteralRows(image, "seed " + std::to_string(kSeed) + " case " + std::to_string(i));
  }
}

TYPED_TEST(CustomLensRowsTest, LargePicturesMatchTheLiteralMask) {
  for (const auto& [width, height] : {std::pair<A_long, A_long>{1920, 1080}, {8192, 64}}) {
    Picture<TypeParam> image(width / 2, height * 2);
    image.FillNoise(7);
    this->SetOutput(width, height);
    this->info_.positionX = width / 2;
    this->info_.positionY = height / 2;
    this->info_.placement = kStretchMapToFit;
    this->info_.scaleWidth = 1.1F;
    this->info_.rotation = 0.02;
    this->ExpectLiteralRows(image, std::to_string(width));
  }
}

}  // namespace
}  // namespace vitrell
