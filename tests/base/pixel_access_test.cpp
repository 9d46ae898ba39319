// Reads of a world: inside it, outside it, reflected at its edges, and between its pixels.
#include "base/pixel_access.h"

#include <gtest/gtest.h>

#include <array>

#include "host/picture.h"

namespace vitrell {
namespace {

template <typename Pixel>
class PixelAccessTest : public testing::Test {
 protected:
  using Channel = ChannelOf<Pixel>;

  // Red is 10 x row + column; the other channels distinguish this world from others.
  static Picture<Pixel> ByPosition(A_long width, A_long height) {
    Picture<Pixel> picture(width, height);
    for (A_long y = 0; y < height; ++y) {
      for (A_long x = 0; x < width; ++x) {
        const auto red = static_cast<Channel>(10 * y + x);
        picture.At(x, y) = {200, red, static_cast<Channel>(red + 1), static_cast<Channel>(red + 2)};
      }
    }
    return picture;
  }
  static int RedAt(const Picture<Pixel>& picture, int row, int column, unsigned char mirror) {
    return GetPointerFromData<Pixel>(picture.get(), row, column, mirror).red;
  }
  static int Sample(const Picture<Pixel>& picture, double row, double column,
                    unsigned char mirror) {
    Pixel out = {9, 99, 9, 9};
    GetPointerFromDataDP(picture.get(), row, column, &out, mirror);
    return out.red;
  }
};

using Depths = testing::Types<PF_Pixel, PF_Pixel16>;
TYPED_TEST_SUITE(PixelAccessTest, Depths);

TYPED_TEST(PixelAccessTest, AddressesPixelsOfPaddedRows) {
  auto picture = this->ByPosition(5, 4);
  EXPECT_EQ(GetPointerFromDataP<TypeParam>(picture.get(), 3, 2, 0), &picture.At(2, 3));
  EXPECT_EQ(GetPointerFromDataP<TypeParam>(picture.get(), 0, 0, 1), &picture.At(0, 0));
  EXPECT_EQ(this->RedAt(picture, 3, 4, 0), 34);
}

TYPED_TEST(PixelAccessTest, ExtentHintIsTheOrigin) {
  auto picture = this->ByPosition(5, 4);
  picture.get()->extent_hint = {-2, 7, 3, 11};
  EXPECT_EQ(GetPointerFromDataP<TypeParam>(picture.get(), 7, -2, 0), &picture.At(0, 0));
  EXPECT_EQ(GetPointerFromDataP<TypeParam>(picture.get(), 6, -2, 0), nullptr);
  EXPECT_EQ(GetPointerFromDataP<TypeParam>(picture.get(), 10, 2, 0), &picture.At(4, 3));
  EXPECT_EQ(GetPointerFromDataP<TypeParam>(picture.get(), 11, 2, 0), nullptr);
}

TYPED_TEST(PixelAccessTest, KeepsTheAsymmetricMirror) {
  const auto picture = this->ByPosition(5, 4);
  EXPECT_EQ(this->RedAt(picture, -1, 0, 1), 10);  // The first row is not repeated ...
  EXPECT_EQ(this->RedAt(picture, 4, 0, 1), 30);   // ... the last one is.
  EXPECT_EQ(this->RedAt(picture, 5, 0, 1), 20);
  EXPECT_EQ(this->RedAt(picture, 0, -1, 1), 1);
  EXPECT_EQ(this->RedAt(picture, 0, 5, 1), 4);
  EXPECT_EQ(this->RedAt(picture, 0, 6, 1), 3);
}

// Height 2: -3 -> 3 -> 2 x 2 - 1 - 3 = 0.
TYPED_TEST(PixelAccessTest, BouncesUntilInside) {
  const auto picture = this->ByPosition(3, 2);
  EXPECT_EQ(this->RedAt(picture, -3, 0, 1), 0);
  // Period 3: -3 and 3 are 0; -2 and 4 are 1 (-2 -> 2 -> 1, 4 -> -1 -> 1); 5 -> -2 -> 2 -> 1.
  EXPECT_EQ(this->RedAt(picture, 4, 0, 1), 10);
  EXPECT_EQ(this->RedAt(picture, 5, 0, 1), 10);
  EXPECT_EQ(this->RedAt(picture, -2, 0, 1), 10);
  EXPECT_EQ(this->RedAt(picture, 3, 0, 1), 0);
}

// The reflections one by one, for many sizes and positions.
TYPED_TEST(PixelAccessTest, FoldingIsRepeatedReflection) {
  for (int size = 1; size <= 7; ++size) {
    for (int position = -60; position <= 60; ++position) {
      int expected = position;
      while (expected < 0 || expected >= size) {
        expected = expected < 0 ? -expected : 2 * size - 1 - expected;
      }
      PF_LayerDef world = {};
      world.height = size;
      world.width = 1;
      int row = position;
      int column = 0;
      RecomputePosition(&world, row, column);
      ASSERT_EQ(row, expected) << size << " " << position;
      ASSERT_EQ(column, 0);
      world.height = 1;
      world.width = size;
      row = 0;
      column = position;
      RecomputePosition(&world, row, column);
      ASSERT_EQ(column, expected) << size << " " << position;
    }
  }
}

TYPED_TEST(PixelAccessTest, EmptyWorldLeavesThePositionAlone) {
  PF_LayerDef world = {};
  int row = -3;
  int column = 8;
  RecomputePosition(&world, row, column);
  EXPECT_EQ(row, -3);
  EXPECT_EQ(column, 8);
  EXPECT_EQ(GetPointerFromDataP<TypeParam>(&world, 0, 0, 1), nullptr);
  EXPECT_EQ(GetPointerFromData<TypeParam>(&world, 0, 0, 1), TypeParam{});
}

TYPED_TEST(PixelAccessTest, OutsideIsMissingUnlessTheFlagIsExactlyOne) {
  const auto picture = this->ByPosition(3, 3);
  constexpr std::array<std::array<int, 2>, 4> kOutside = {{{-1, 0}, {3, 0}, {0, -1}, {0, 3}}};
  for (const unsigned char mirror : std::array<unsigned char, 3>{0, 2, 255}) {
    for (const auto& [row, column] : kOutside) {
      EXPECT_EQ(GetPointerFromDataP<TypeParam>(picture.get(), row, column, mirror), nullptr);
      EXPECT_EQ(GetPointerFromData<TypeParam>(picture.get(), row, column, mirror), TypeParam{});
    }
    EXPECT_EQ(this->Sample(picture, 3.5, 1.5, mirror), 99);
    EXPECT_EQ(this->Sample(picture, 1.5, 2.5, mirror), 99);
  }
}

// Layer row 0 is stored row -1, folded to 1. GetPointerFromData takes 1 for a layer row again:
// stored row 0. The address family does not.
TYPED_TEST(PixelAccessTest, KeepsTheDoubledOriginSubtraction) {
  auto picture = this->ByPosition(5, 5);
  picture.get()->extent_hint = {1, 1, 6, 6};
  EXPECT_EQ(GetPointerFromDataP<TypeParam>(picture.get(), 0, 3, 1)->red, 12);
  EXPECT_EQ(this->RedAt(picture, 0, 3, 1), 1);
  EXPECT_EQ(this->RedAt(picture, 3, 3, 1), 22);  // Inside it is subtracted once.
}

TYPED_TEST(PixelAccessTest, FirstRowAndColumnAreNotInterpolated) {
  const auto picture = this->ByPosition(9, 4);
  EXPECT_EQ(this->Sample(picture, 0.5, 7.5, 0), 7);
  EXPECT_EQ(this->Sample(picture, 2.9, 0.9, 0), 20);
  // (17 + 18 + 27 + 28) / 4 = 22.5.
  EXPECT_EQ(this->Sample(picture, 1.5, 7.5, 0), 22);
}

TYPED_TEST(PixelAccessTest, AllFourChannelsAreSampled) {
  const auto picture = this->ByPosition(4, 4);
  TypeParam out = {};
  GetPointerFromDataDP(picture.get(), 1.0, 1.5, &out, 0);
  EXPECT_EQ(out.alpha, 200);
  EXPECT_EQ(out.red, 11);  // (11 + 12) / 2
  EXPECT_EQ(out.green, 12);
  EXPECT_EQ(out.blue, 13);
}

// -0.5 has the base 0 (first row: no interpolation); -1.0 has the base -2, and with fy = 1 takes
// the row below it, -1, which mirrors to 1.
TYPED_TEST(PixelAccessTest, KeepsTheSamplingBaseThatIsNoFloor) {
  const auto picture = this->ByPosition(9, 6);
  EXPECT_EQ(this->Sample(picture, -0.5, 3.0, 0), 3);
  EXPECT_EQ(this->Sample(picture, 2.0, -0.5, 0), 20);
  EXPECT_EQ(this->Sample(picture, -1.0, 3.0, 1), 13);
  EXPECT_EQ(this->Sample(picture, -1.0, 3.0, 0), 99);
  // -1.5: base -2 (row 2 mirrored), fy = 0.5 with row -1 (row 1 mirrored): (23 + 13) / 2.
  EXPECT_EQ(this->Sample(picture, -1.5, 3.0, 1), 18);
}

TYPED_TEST(PixelAccessTest, OneMissingNeighbourLeavesTheOutputAlone) {
  const auto picture = this->ByPosition(4, 4);
  EXPECT_EQ(this->Sample(picture, 3.0, 2.0, 0), 99);  // Row 4 is missing, though its weight is 0.
  EXPECT_EQ(this->Sample(picture, 2.0, 3.0, 0), 99);
  EXPECT_EQ(this->Sample(picture, 2.0, 2.0, 0), 22);
  EXPECT_EQ(this->Sample(picture, 3.0, 2.0, 1), 32);
}

TEST(PixelAccess16Test, SamplesTruncate) {
  Picture<PF_Pixel16> picture(4, 4);
  picture.Fill({0, 0, 0, 0});
  picture.At(1, 1) = {32768, 3, 32768, 0};
  PF_Pixel16 out = {};
  GetPointerFromDataDP(picture.get(), 1.5, 1.0, &out, 0);
  EXPECT_EQ(out.alpha, 16384);
  EXPECT_EQ(out.red, 1);
  EXPECT_EQ(out.green, 16384);
}

}  // namespace
}  // namespace vitrell
