// Window sums of a mirrored line against adding up every tap.
#include "blur/fast/box_window.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "blur/fast/box_reference.h"

namespace vitrell {
namespace {

constexpr std::uint64_t kSeed = 4711;

// Repeated reflection, one step at a time.
std::int64_t Fold(std::int64_t position, std::int64_t n) {
  while (position < 0 || position >= n) {
    position = position < 0 ? -position : 2 * n - 1 - position;
  }
  return position;
}

class Line {
 public:
  Line(std::int64_t n, std::uint64_t limit) : sums_(1, 0) {
    std::mt19937_64 random(kSeed + static_cast<std::uint64_t>(n));
    for (std::int64_t i = 0; i < n; ++i) {
      values_.push_back(random() % (limit + 1));
      sums_.push_back(sums_.back() + values_.back());
    }
  }

  std::uint64_t EveryTap(std::int64_t center, std::int64_t radius) const {
    const auto n = static_cast<std::int64_t>(values_.size());
    std::uint64_t sum = 0;
    for (std::int64_t i = center - radius; i <= center + radius; ++i) {
      sum += values_[static_cast<std::size_t>(Fold(i, n))];
    }
    return sum;
  }

  // Every tap as well, but walked, for radii that would take too many reflections.
  std::uint64_t ByCounts(std::int64_t center, std::int64_t radius) const {
    const auto n = static_cast<std::int64_t>(values_.size());
    const std::vector<std::int64_t> counts = TapCounts(n, center, radius);
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < counts.size(); ++i) {
      sum += static_cast<std::uint64_t>(counts[i]) * values_[i];
    }
    return sum;
  }

  std::uint64_t ByWindow(std::int64_t center, std::int64_t radius) const {
    const auto n = static_cast<std::int64_t>(values_.size());
    const BoxWindow w = MakeBoxWindow(n, center, radius);
    EXPECT_LE(w.high, values_.size());
    EXPECT_LE(w.low, values_.size());
    if (w.inside) {
      return sums_[w.high] - sums_[w.low];
    }
    return w.wholeFactor * sums_.back() + w.firstFactor * sums_[1] + w.highSign * sums_[w.high] +
           w.lowSign * sums_[w.low];
  }

 private:
  std::vector<std::uint64_t> values_;
  std::vector<std::uint64_t> sums_;  // Of the first i values.
};

TEST(BoxWindowTest, EqualsEveryTapForShortLinesAndAllRadiiUpTo300) {
  for (std::int64_t n = 1; n <= 9; ++n) {
    const Line line(n, 65535);
    for (std::int64_t radius = 0; radius <= 300; ++radius) {
      for (std::int64_t center = -2; center < n + 2; ++center) {
        ASSERT_EQ(line.ByWindow(center, radius), line.EveryTap(center, radius))
            << n << " " << center << " " << radius << " seed " << kSeed;
        ASSERT_EQ(line.ByCounts(center, radius), line.EveryTap(center, radius));
      }
    }
  }
}

TEST(BoxWindowTest, EqualsEveryTapForLongLines) {
  for (const std::int64_t n : {11, 13, 31, 53, 67, 97}) {
    const Line line(n, 65535);
    for (std::int64_t radius = 0; radius <= 300; radius += radius < 2 * n + 2 ? 1 : 7) {
      for (std::int64_t center = 0; center < n; ++center) {
        ASSERT_EQ(line.ByWindow(center, radius), line.EveryTap(center, radius))
            << n << " " << center << " " << radius << " seed " << kSeed;
      }
    }
  }
}

// 65537 taps over two pixels, 0, 1, 1, 0, 1, 1, ...: 21845 periods of three, and two taps.
TEST(BoxWindowTest, SixtyFiveThousandTapsOverTwoPixels) {
  const Line line(2, 65535);
  for (const std::int64_t center : {0, 1}) {
    EXPECT_EQ(line.ByWindow(center, 32768), line.ByCounts(center, 32768));
  }
}

TEST(BoxWindowTest, EqualsEveryTapForLargeRandomRadii) {
  std::mt19937_64 random(kSeed);
  for (int i = 0; i < 100; ++i) {
    const auto n = static_cast<std::int64_t>(1 + random() % 67);
    const auto radius = static_cast<std::int64_t>(random() % 40000);
    const Line line(n, 65535);
    for (std::int64_t center = 0; center < n; center += 1 + n / 3) {
      ASSERT_EQ(line.ByWindow(center, radius), line.ByCounts(center, radius))
          << n << " " << center << " " << radius << " seed " << kSeed;
    }
  }
}

TEST(BoxWindowTest, WindowInsideTheLineIsTwoSums) {
  const BoxWindow window = MakeBoxWindow(10, 4, 3);
  EXPECT_TRUE(window.inside);
  EXPECT_EQ(window.low, 1U);
  EXPECT_EQ(window.high, 8U);
  EXPECT_FALSE(MakeBoxWindow(10, 1, 3).inside);
}

}  // namespace
}  // namespace vitrell
