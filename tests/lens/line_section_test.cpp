// The columns of a row that a region keeps: by hand, and against a test of every column.
#include "lens/line_section.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace vitrell {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// 21 columns at u = -10 to 10, all at v = 3.
constexpr MaskLine kLevel = {
    .first = -10, .count = 21, .stepU = 1, .startU = 0, .stepV = 0, .startV = 3};

void ExpectColumns(const LineSection& section, std::uint32_t begin, std::uint32_t end) {
  for (const bool allIfUnknown : {false, true}) {
    EXPECT_EQ(section.Columns(allIfUnknown).begin, begin);
    EXPECT_EQ(section.Columns(allIfUnknown).end, end);
  }
}

void ExpectUnknown(const LineSection& section) {
  EXPECT_EQ(section.Columns(true).begin, 0U);
  EXPECT_EQ(section.Columns(true).end, 21U);
  EXPECT_EQ(section.Columns(false).begin, section.Columns(false).end);
}

TEST(LineSectionTest, WithoutAClipEveryColumnIsLeft) { ExpectColumns(LineSection(kLevel), 0, 21); }

// u x u + 9 <= 25 from u = -4, column 6, to u = 4, column 14.
TEST(LineSectionTest, DiscIsClippedAtItsChord) {
  LineSection section(kLevel);
  section.ClipToDisc(5);
  ExpectColumns(section, 6, 15);
}

TEST(LineSectionTest, DiscThatTheLineMissesLeavesNothing) {
  LineSection section(kLevel);
  section.ClipToDisc(2.9);
  ExpectColumns(section, 0, 0);
}

// u <= 2.5 ends with u = 2, column 12; -u <= 3.5 begins with u = -3, column 7.
TEST(LineSectionTest, HalfPlanesClipEitherSide) {
  LineSection section(kLevel);
  section.ClipToHalfPlane(1, 0, 2.5);
  ExpectColumns(section, 0, 13);
  section.ClipToHalfPlane(-1, 0, 3.5);
  ExpectColumns(section, 7, 13);
}

TEST(LineSectionTest, LimitItselfIsKept) {
  LineSection section(kLevel);
  section.ClipToHalfPlane(1, 0, 2);
  section.ClipToHalfPlane(-1, 0, 3);
  ExpectColumns(section, 7, 13);
}

// Across the line all columns are on one side.
TEST(LineSectionTest, HalfPlaneAlongTheLineKeepsAllOrNothing) {
  LineSection kept(kLevel);
  kept.ClipToHalfPlane(0, 1, 3.5);
  ExpectColumns(kept, 0, 21);
  LineSection gone(kLevel);
  gone.ClipToHalfPlane(0, 1, 2.5);
  ExpectColumns(gone, 0, 0);
}

TEST(LineSectionTest, InfiniteLimitsKeepEverything) {
  LineSection section(kLevel);
  section.ClipToHalfPlane(1, 1, kInfinity);
  section.ClipToDisc(kInfinity);
  ExpectColumns(section, 0, 21);
}

// u + 3 <= 1 ends at -2, -u + 3 <= 0.5 begins at 2.5.
TEST(LineSectionTest, RegionsThatMeetBesideTheLineLeaveNothing) {
  LineSection section(kLevel);
  section.ClipToHalfPlane(1, 1, 1);
  ExpectColumns(section, 0, 9);
  section.ClipToHalfPlane(-1, 1, 0.5);
  ExpectColumns(section, 0, 0);
  MaskLine far = kLevel;
  far.first = 5;
  LineSection beyond(far);
  beyond.ClipToHalfPlane(1, 0, 2);
  ExpectColumns(beyond, 0, 0);
}

// The result is unknown near a limit of 0, where no relative margin holds; for NaN; and for
// positions so large that their rounding errors reach the margin.
TEST(LineSectionTest, UnknownIsAllOrNothingAsAsked) {
  for (const double limit : {0.0, -1.0, kNan}) {
    LineSection halfPlane(kLevel);
    halfPlane.ClipToHalfPlane(1, 0, limit);
    ExpectUnknown(halfPlane);
  }
  LineSection noRadius(kLevel);
  noRadius.ClipToDisc(0);
  ExpectUnknown(noRadius);
  LineSection notANumber(kLevel);
  notANumber.ClipToHalfPlane(kNan, 0, 3);
  ExpectUnknown(notANumber);
  MaskLine far = kLevel;
  far.startU = 1e9;
  LineSection rounded(far);
  rounded.ClipToHalfPlane(1, 0, 1000);
  ExpectUnknown(rounded);
  MaskLine point = kLevel;
  point.stepU = 0;
  LineSection noDirection(point);
  noDirection.ClipToDisc(5);
  ExpectUnknown(noDirection);
  // Once unknown, a later clip does not make it known.
  rounded.ClipToDisc(5);
  ExpectUnknown(rounded);
}

TEST(LineSectionTest, EmptyRowsHaveNoColumns) {
  MaskLine none = kLevel;
  none.count = 0;
  ExpectColumns(LineSection(none), 0, 0);
}

// A column is certainly kept if it is inside all regions by a relative 1e-9, and certainly dropped
// if it is outside one by as much.
TEST(LineSectionTest, RandomRegionsMatchAWalkOverTheColumns) {
  constexpr std::uint32_t kSeed = 20261121;
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> real(-1, 1);
  int partial = 0;
  for (int i = 0; i < 4000; ++i) {
    const double turn = 3.2 * real(random);
    const MaskLine line = {.first = std::floor(60 * real(random)),
                           .count = static_cast<std::uint32_t>(random() % 90),
                           .stepU = std::cos(turn) * (1.5 + real(random)),
                           .startU = 40 * real(random),
                           .stepV = std::sin(turn),
                           .startV = 40 * real(random)};
    const double normalU = real(random);
    const double normalV = i % 7 == 0 ? 0.0 : real(random);
    const double limit = 20 * (1.01 + real(random));
    const double radius = 40 * (1.01 + real(random));
    LineSection section(line);
    section.ClipToHalfPlane(normalU, normalV, limit);
    section.ClipToDisc(radius);
    const ColumnSpan all = section.Columns(true);
    const ColumnSpan certain = section.Columns(false);
    ASSERT_LE(all.end, line.count);
    for (std::uint32_t column = 0; column < line.count; ++column) {
      const double d = line.first + column;
      const double u = line.startU + line.stepU * d;
      const double v = line.startV + line.stepV * d;
      const double side = (normalU * u + normalV * v) / limit;
      const double distance = (u * u + v * v) / (radius * radius);
      constexpr double kTolerance = 1e-9;
      if (side < 1 - kTolerance && distance < 1 - kTolerance) {
        ASSERT_TRUE(column >= all.begin && column < all.end) << "seed " << kSeed << " case " << i;
      }
      if (side > 1 + kTolerance || distance > 1 + kTolerance) {
        ASSERT_FALSE(column >= certain.begin && column < certain.end)
            << "seed " << kSeed << " case " << i;
      }
    }
    partial += certain.begin < certain.end && certain.end - certain.begin < line.count ? 1 : 0;
  }
  EXPECT_GT(partial, 1000);
}

}  // namespace
}  // namespace vitrell
