// The columns that have weight within a band of rows, as the band moves down.
#include "blur/realistic/bright_columns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>

#include "host/fake_host.h"
#include "host/picture.h"

namespace vitrell {
namespace {

class BrightColumnsTest : public testing::Test {
 protected:
  void BuildMap(const Picture<PF_Pixel>& picture) {
    ASSERT_TRUE(
        map_.Build(host_.inData(), *picture.get(), PlaneOrder::kColumnMajor, MapUse::kUniform));
  }

  FakeHost host_;
  HighlightMap map_;
};

constexpr PF_Pixel kDark = {255, 0, 0, 0};
constexpr PF_Pixel kBright = {255, 9, 9, 9};
constexpr PF_Pixel kTransparent = {0, 9, 9, 9};

// Row 0: column 1. Row 1: nothing. Row 2: columns 3 and 4. Row 3: column 0, transparent.
TEST_F(BrightColumnsTest, ByHand) {
  Picture<PF_Pixel> picture(6, 4);
  picture.Fill(kDark);
  picture.At(1, 0) = picture.At(3, 2) = picture.At(4, 2) = kBright;
  picture.At(0, 3) = kTransparent;
  BuildMap(picture);
  BrightColumns columns;
  ASSERT_TRUE(columns.Prepare(map_));
  columns.MoveTo(-3, 1);  // Row 0 alone: what is above the map has no weight.
  EXPECT_EQ(columns.FirstFrom(0), 1);
  EXPECT_EQ(columns.FirstFrom(-5), 1);
  EXPECT_EQ(columns.FirstFrom(2), 6);
  EXPECT_EQ(columns.LastUpTo(5), 1);
  EXPECT_EQ(columns.LastUpTo(100), 1);
  EXPECT_EQ(columns.LastUpTo(0), -1);
  columns.MoveTo(0, 3);
  EXPECT_EQ(columns.FirstFrom(2), 3);
  EXPECT_EQ(columns.LastUpTo(2), 1);
  EXPECT_EQ(columns.LastUpTo(9), 4);
  EXPECT_EQ(columns.FirstFrom(5), 6);
  columns.MoveTo(1, 3);
  EXPECT_EQ(columns.FirstFrom(0), 3);
  EXPECT_EQ(columns.LastUpTo(2), -1);
  columns.MoveTo(3, 9);  // Row 3 and what is below the map.
  EXPECT_EQ(columns.FirstFrom(0), 6);
}

TEST_F(BrightColumnsTest, RandomBandsMatchAWalkOverThePixels) {
  constexpr std::uint32_t kSeed = 20261121;
  std::mt19937 random(kSeed);
  for (int round = 0; round < 60; ++round) {
    const auto width = static_cast<A_long>(1 + random() % 20);
    const auto height = static_cast<A_long>(1 + random() % 30);
    Picture<PF_Pixel> picture(width, height);
    picture.Fill(kDark);
    for (A_long i = 0; i < width * height / 15 + 1; ++i) {
      const auto x = static_cast<A_long>(random() % static_cast<unsigned>(width));
      const auto y = static_cast<A_long>(random() % static_cast<unsigned>(height));
      picture.At(x, y) = random() % 4 == 0 ? kTransparent : kBright;
    }
    BuildMap(picture);
    BrightColumns columns;
    ASSERT_TRUE(columns.Prepare(map_));
    std::int64_t first = -4;
    std::int64_t end = -4;
    while (first < height + 3) {
      first += static_cast<std::int64_t>(random() % 3);
      end = std::max(end + static_cast<std::int64_t>(random() % 4), first);
      columns.MoveTo(first, end);
      const auto isBright = [&](std::int64_t column) {
        for (std::int64_t y = std::max<std::int64_t>(first, 0);
             y < std::min<std::int64_t>(end, height); ++y) {
          const PF_Pixel& pixel = picture.At(static_cast<A_long>(column), static_cast<A_long>(y));
          if (pixel.alpha != 0 && pixel.red != 0) {
            return true;
          }
        }
        return false;
      };
      for (std::int64_t column = 0; column < width; ++column) {
        std::int64_t next = column;
        while (next < width && !isBright(next)) {
          ++next;
        }
        std::int64_t before = column;
        while (before >= 0 && !isBright(before)) {
          --before;
        }
        ASSERT_EQ(columns.FirstFrom(column), next) << "seed " << kSeed << " round " << round;
        ASSERT_EQ(columns.LastUpTo(column), before) << "seed " << kSeed << " round " << round;
      }
    }
  }
}

}  // namespace
}  // namespace vitrell
