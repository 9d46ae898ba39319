// The planes of floats with mirrored borders, value by value.
#include "blur/directional/color_planes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/picture.h"

namespace vitrell {
namespace {

// A mirrored column, one reflection after the other.
std::int64_t Fold(std::int64_t column, std::int64_t width) {
  while (column < 0 || column >= width) {
    column = column < 0 ? -column : 2 * width - 1 - column;
  }
  return column;
}

template <typename Pixel>
class ColorPlanesTest : public testing::Test {
 protected:
  // The value that a lane reads if its vector begins at column x and its tap lies `tap` columns to
  // the right.
  static float ValueAt(const ColorPlanes& planes, const float* plane, std::int64_t y,
                       std::int64_t x, std::int64_t tap, std::int64_t lane) {
    const std::int64_t index = x + planes.IndexOf(tap);
    return plane[y * planes.rowStride() +
                 (index < planes.count() ? index : index - planes.count()) + lane];
  }
};

using Depths = testing::Types<PF_Pixel, PF_Pixel16>;
TYPED_TEST_SUITE(ColorPlanesTest, Depths);

// Width 3, from -2 to 4: columns 2 1 | 0 1 2 | 2 1 of the picture, of which 5 are a period.
TYPED_TEST(ColorPlanesTest, BordersAreReflectedByHand) {
  Picture<TypeParam> picture(3, 1);
  picture.At(0, 0) = {1, 10, 40, 70};
  picture.At(1, 0) = {1, 20, 50, 80};
  picture.At(2, 0) = {1, 30, 60, 90};
  ColorPlanes planes;
  ASSERT_TRUE(planes.Build(*picture.get(), -2, 2, 1));
  EXPECT_FALSE(planes.HasHoles());
  const float expected[7] = {30, 20, 10, 20, 30, 30, 20};
  for (int tap = -2; tap <= 2; ++tap) {
    for (int x = 0; x < 3; ++x) {
      EXPECT_EQ(this->ValueAt(planes, planes.Color(0), 0, x, tap, 0), expected[x + tap + 2])
          << x << " " << tap;
      EXPECT_EQ(this->ValueAt(planes, planes.Color(1), 0, x, tap, 0), expected[x + tap + 2] + 30);
      EXPECT_EQ(this->ValueAt(planes, planes.Color(2), 0, x, tap, 0), expected[x + tap + 2] + 60);
    }
  }
}

TYPED_TEST(ColorPlanesTest, TransparentPixelsAreBlackAndMarked) {
  Picture<TypeParam> picture(2, 2);
  picture.Fill({1, 10, 20, 30});
  picture.At(1, 0).alpha = 0;
  ColorPlanes planes;
  ASSERT_TRUE(planes.Build(*picture.get(), 0, 0, 4));
  ASSERT_TRUE(planes.HasHoles());
  const float opaque[4] = {1, 0, 1, 1};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(this->ValueAt(planes, planes.Opacity(), i / 2, i % 2, 0, 0), opaque[i]);
    EXPECT_EQ(this->ValueAt(planes, planes.Color(0), i / 2, i % 2, 0, 0), 10 * opaque[i]);
    EXPECT_EQ(this->ValueAt(planes, planes.Color(2), i / 2, i % 2, 0, 0), 30 * opaque[i]);
  }
}

// Every lane whose vector begins within the image and every tap within reach, shorter and longer
// than a period. Beyond the image's last column the memory only has to be readable.
TYPED_TEST(ColorPlanesTest, EveryPlaceIsTheFoldedPixel) {
  constexpr std::int64_t kLanes = 16;
  for (const A_long width : {1, 2, 3, 7, 16, 17, 33}) {
    for (const std::int64_t reach : {0, 1, 5, 13, 60, 123}) {
      Picture<TypeParam> picture(width, 3);
      picture.FillNoise(static_cast<std::uint64_t>(width), Picture<TypeParam>::kWhite);
      for (A_long x = 0; x < width; x += 3) {
        picture.At(x, 1).alpha = 0;
      }
      ColorPlanes planes;
      ASSERT_TRUE(planes.Build(*picture.get(), -reach, reach / 2, kLanes));
      EXPECT_LE(planes.count(), 2 * std::int64_t{width} - 1);
      SCOPED_TRACE("width " + std::to_string(width) + " reach " + std::to_string(reach));
      for (std::int64_t tap = -reach; tap <= reach / 2; ++tap) {
        for (std::int64_t x = 0; x < width; ++x) {
          for (std::int64_t lane = 0; lane < kLanes && x + lane < width; ++lane) {
            for (A_long y = 0; y < 3; ++y) {
              const TypeParam& pixel =
                  picture.At(static_cast<A_long>(Fold(x + tap + lane, width)), y);
              const bool isOpaque = pixel.alpha != 0;
              ASSERT_EQ(this->ValueAt(planes, planes.Color(0), y, x, tap, lane),
                        isOpaque ? pixel.red : 0);
              ASSERT_EQ(this->ValueAt(planes, planes.Color(1), y, x, tap, lane),
                        isOpaque ? pixel.green : 0);
              ASSERT_EQ(this->ValueAt(planes, planes.Color(2), y, x, tap, lane),
                        isOpaque ? pixel.blue : 0);
              ASSERT_EQ(this->ValueAt(planes, planes.Opacity(), y, x, tap, lane), isOpaque ? 1 : 0);
            }
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace vitrell
