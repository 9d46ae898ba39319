// The trail's averages along one ray against sums tap by tap.
#include "blur/trail/trail_ray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "literal/blur/trail/trail_ray.h"

namespace vitrell {
namespace {

constexpr std::uint32_t kSeed = 20261124;

enum class Fill { kNoise, kFlat, kFlatWithHoles, kTwoFlats, kNearlyFlat, kBlackAndWhite, kHoles };
constexpr Fill kFills[] = {Fill::kNoise,    Fill::kFlat,       Fill::kFlatWithHoles,
                           Fill::kTwoFlats, Fill::kNearlyFlat, Fill::kBlackAndWhite,
                           Fill::kHoles};

// One row of pixels, along which the ray runs from column 0 to the last one.
template <typename Pixel>
std::vector<Pixel> MakeRow(Fill fill, std::size_t count, std::mt19937* random) {
  using Channel = ChannelOf<Pixel>;
  const auto any = [&] { return static_cast<Channel>((*random)()); };
  const Pixel flat = {any(), any(), any(), any()};
  const Pixel other = {static_cast<Channel>(any() | 1), any(), any(), any()};
  std::vector<Pixel> row(count);
  for (std::size_t x = 0; x < count; ++x) {
    Pixel& pixel = row[x];
    const bool isHole = (*random)() % 3 == 0;
    pixel = fill == Fill::kNoise || fill == Fill::kHoles ? Pixel{any(), any(), any(), any()} : flat;
    if (fill == Fill::kTwoFlats && x > count / 3) {
      pixel = other;
    } else if (fill == Fill::kNearlyFlat && isHole) {
      ++pixel.red;
    } else if (fill == Fill::kBlackAndWhite) {
      const Channel level = isHole ? std::numeric_limits<Channel>::max() : Channel{0};
      pixel = {1, level, Channel{0}, level};
    }
    const bool canHaveHoles = fill == Fill::kHoles || fill == Fill::kFlatWithHoles;
    pixel.alpha = static_cast<Channel>(canHaveHoles && isHole ? 0 : pixel.alpha | 1);
  }
  return row;
}

// The definition: weight ((N - j) / N) squared for the tap at distance j, transparent taps skipped.
template <typename Pixel>
Pixel PlainAverage(const std::vector<Pixel>& row, std::size_t k, std::int32_t tapCount) {
  using Channel = ChannelOf<Pixel>;
  double red = 0, green = 0, blue = 0, weightSum = 0;
  for (std::int32_t j = 0; j < tapCount && k + static_cast<std::size_t>(j) < row.size(); ++j) {
    const double q = static_cast<double>(tapCount - j) / tapCount;
    const double w = q * q;
    const Pixel& tap = row[k + static_cast<std::size_t>(j)];
    if (tap.alpha != 0) {
      red += w * tap.red;
      green += w * tap.green;
      blue += w * tap.blue;
      weightSum += w;
    }
  }
  if (weightSum == 0) {
    return {row[k].alpha, 0, 0, 0};
  }
  return {row[k].alpha, static_cast<Channel>(red / weightSum),
          static_cast<Channel>(green / weightSum), static_cast<Channel>(blue / weightSum)};
}

template <typename Pixel>
void ExpectAverages(Fill fill, std::size_t count, std::int32_t tapCount, std::mt19937* random) {
  std::vector<Pixel> row = MakeRow<Pixel>(fill, count, random);
  PF_LayerDef world = {};
  world.data = row.data();
  world.width = static_cast<A_long>(count);
  world.height = 1;
  world.rowbytes = static_cast<A_long>(count * sizeof(Pixel));
  world.extent_hint = {0, 0, world.width, 1};
  TrailWeights weights;
  ASSERT_TRUE(weights.Fill(tapCount, world.width));
  Ray<Pixel> ray;
  ASSERT_TRUE(ray.Allocate(count));
  ray.Cast(0, 0, {world.width - 1, 0});
  ASSERT_EQ(ray.Count(), count);
  const std::size_t pointCounts[] = {count, (count + 1) / 2, 1};
  for (const std::size_t pointCount : pointCounts) {
    ray.Read(world, weights, pointCount);
    for (std::size_t k = 0; k < pointCount; ++k) {
      const Pixel expected = PlainAverage(row, k, tapCount);
      const Pixel actual = ray.Average(k, weights);
      ASSERT_TRUE(expected.alpha == actual.alpha && expected.red == actual.red &&
                  expected.green == actual.green && expected.blue == actual.blue)
          << "seed " << kSeed << ", fill " << static_cast<int>(fill) << ", points " << count
          << ", read for " << pointCount << ", taps " << tapCount << ", point " << k;
    }
  }
}

// Beyond some 5000 taps at 16 and 30000 at 8 bits the sums are too large to be exact.
constexpr std::int32_t kTapCounts[] = {-3,   1,     2,     3,       7,         33,   99,
                                       100,  255,   256,   1000,    4999,      5200, 7401,
                                       9999, 20000, 40000, 1000000, 2147483647};

TEST(TrailRayTest, AveragesEqualThePlainOnes) {
  std::mt19937 random(kSeed);
  for (const Fill fill : kFills) {
    for (const std::int32_t tapCount : kTapCounts) {
      for (const std::size_t count : {1U, 2U, 17U, 300U}) {
        ExpectAverages<PF_Pixel>(fill, count, tapCount, &random);
        ExpectAverages<PF_Pixel16>(fill, count, tapCount, &random);
      }
    }
  }
}

TEST(TrailRayTest, LongRaysEqualThePlainOnes) {
  std::mt19937 random(kSeed);
  for (const Fill fill : kFills) {
    ExpectAverages<PF_Pixel>(fill, 6000, 5000, &random);
    ExpectAverages<PF_Pixel16>(fill, 6000, 5000, &random);
  }
}

TEST(TrailRayTest, RandomRaysEqualThePlainOnes) {
  std::mt19937 random(kSeed);
  for (int i = 0; i < 400; ++i) {
    const Fill fill = kFills[random() % std::size(kFills)];
    const std::size_t count = 1 + random() % 200;
    const auto tapCount = static_cast<std::int32_t>(1 + random() % 250);
    ExpectAverages<PF_Pixel>(fill, count, tapCount, &random);
    ExpectAverages<PF_Pixel16>(fill, count, tapCount, &random);
  }
}

std::vector<std::pair<int, int>> Line(int x0, int y0, int x1, int y1) {
  std::vector<PF_FixedPoint> points(200);
  const int count = ComputeLinePTs(x0, y0, x1, y1, points.data());
  std::vector<std::pair<int, int>> line;
  for (int i = 0; i < count; ++i) {
    line.emplace_back(points[static_cast<std::size_t>(i)].x, points[static_cast<std::size_t>(i)].y);
  }
  return line;
}

TEST(ComputeLinePTsTest, FromAPointToItselfIsOnePoint) {
  using Points = std::vector<std::pair<int, int>>;
  EXPECT_EQ(Line(-3, 7, -3, 7), (Points{{-3, 7}}));
}

// dx = 5, dy = 2: err begins at 2 and falls by 2 with each column; below 2 a row is taken and 5
// added. dx = 2, dy = 3, downwards: err begins at -3 / 2 = -1, and so on.
TEST(ComputeLinePTsTest, LinesByHand) {
  using Points = std::vector<std::pair<int, int>>;
  EXPECT_EQ(Line(0, 0, 5, 2), (Points{{0, 0}, {1, 0}, {2, 1}, {3, 1}, {4, 2}, {5, 2}}));
  EXPECT_EQ(Line(0, 0, 2, 3), (Points{{0, 0}, {1, 1}, {1, 2}, {2, 3}}));
  EXPECT_EQ(Line(2, 2, -1, 2), (Points{{2, 2}, {1, 2}, {0, 2}, {-1, 2}}));
  EXPECT_EQ(Line(1, 1, 1, -2), (Points{{1, 1}, {1, 0}, {1, -1}, {1, -2}}));
  EXPECT_EQ(Line(0, 0, -2, -2), (Points{{0, 0}, {-1, -1}, {-2, -2}}));
}

// The literal walk to every end within 40 pixels.
TEST(ComputeLinePTsTest, MatchesTheLiteralWalk) {
  for (int y = -40; y <= 40; ++y) {
    for (int x = -40; x <= 40; ++x) {
      std::vector<std::pair<int, int>> expected;
      for (const literal::LinePoint& point : literal::ComputeLinePoints(3, -5, x, y)) {
        expected.emplace_back(point.x, point.y);
      }
      ASSERT_EQ(Line(3, -5, x, y), expected) << x << "," << y;
    }
  }
}

}  // namespace
}  // namespace vitrell
