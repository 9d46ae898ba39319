// Distances of the lens shapes, worked out by hand.
#include "lens/lens_shapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "host/fake_host.h"

namespace vitrell {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(LensShapesTest, KeepsSegmentsThatGoNeitherRightNorDownAsPoints) {
  FakeHost host;
  const auto distance = [&](double px, double py, double ax, double ay, double bx, double by) {
    return GetDistanceFromPtToSegLine(px, py, ax, ay, bx, by, host.inData());
  };
  EXPECT_EQ(distance(4, 3, 0, 0, 10, 0), 3);   // Beside it.
  EXPECT_EQ(distance(-3, 4, 0, 0, 10, 0), 5);  // Before A.
  EXPECT_EQ(distance(13, 4, 0, 0, 10, 0), 5);  // Beyond B.
  EXPECT_EQ(distance(3, 5, 0, 0, 0, 10), 3);   // Downward.
  // From (10, 0) to (0, 0): the point (10, 0) alone.
  EXPECT_EQ(distance(4, 8, 10, 0, 0, 0), 10);
  EXPECT_EQ(distance(3, 4, 0, 0, 0, 0), 5);
}

TEST(LensShapesTest, RectangleDistances) {
  FakeHost host;
  const auto distance = [&](double u, double v, double k) {
    return GetDistanceKWithRectMode(u, v, k, 10, 20, host.inData());
  };
  // k = 0.4: band 4, inner half-sizes 18 and 8.
  EXPECT_EQ(distance(18, -8, 0.4), 0);
  EXPECT_DOUBLE_EQ(distance(19, 0, 0.4), 0.25);
  EXPECT_DOUBLE_EQ(distance(0, -11, 0.4), 0.75);
  EXPECT_DOUBLE_EQ(distance(-5, 10, 0.4), 0.5);
  EXPECT_DOUBLE_EQ(distance(21, 12, 0.4), 1);  // (3, 4) from the corner: 5 / 4, limited.
  // k = 3: band 30, inner half-sizes 20 - 10 and 10 - 10.
  EXPECT_DOUBLE_EQ(distance(0, 6, 3), 0.2);
  EXPECT_DOUBLE_EQ(distance(5, 6, 3), 0.2);
  EXPECT_DOUBLE_EQ(distance(16, 0, 3), 0.2);
  EXPECT_TRUE(std::isnan(distance(kNan, 0, 0.4)));
}

class LensRowsTest : public testing::TestWithParam<int> {
 protected:
  template <typename T>
  T Pick(std::initializer_list<T> values) {
    return values.begin()[random_() % values.size()];
  }

  LX_Info RandomInfo() {
    LX_Info info = {};
    info.lensType = GetParam();
    info.feather = Pick({0.0F, 0.02F, 0.5F, 1.0F, 2.1F, 10.0F});
    info.positionX = Pick({0, 137, 960, -1000000, 2147483647});
    info.positionY = Pick({0, 3, -40, 1000000});
    info.scaleWidth = Pick({1.0F, 0.3F, 2.37F, 16.0F, 1e-6F, 1e-38F, 3e38F});
    info.scaleHeight = Pick({info.scaleWidth, 1.0F, 0.4F});
    info.rotation = Pick({0.0, 1.5707963267948966, 3.141592653589793, 0.7, -2.0, 40.0});
    return info;
  }

  std::mt19937 random_{20261122};
};

// Rows that end before, at and behind the length that is computed at once, of outputs of any size,
// none and less included.
TEST_P(LensRowsTest, ColumnsTogetherHaveTheBitsOfColumnsAlone) {
  FakeHost host;
  for (int i = 0; i < 600; ++i) {
    const LX_Info info = RandomInfo();
    const double width = Pick({1920.0, 400.0, 37.0, 1.0, 0.0, -50.0});
    const LensShape shape(host.inData(), info, width, Pick({1080.0, 100.0, 0.0}));
    // The last column's number has to fit, too.
    const std::int32_t x = Pick({0, 1, -300, std::min(info.positionX, 2147482000), 2147482000});
    const std::int32_t y = Pick({0, 1, 3, 55, 90, -41, 1000001});
    std::vector<double> distances(Pick<std::size_t>({1, 2, 255, 256, 257, 600, 1501}));
    const auto count = static_cast<std::uint32_t>(distances.size());
    shape.RawDistances(x, y, count, distances.data());
    for (std::uint32_t column = 0; column < count; ++column) {
      const auto place = static_cast<std::int32_t>(x + std::int64_t{column});
      ASSERT_EQ(std::bit_cast<std::uint64_t>(distances[column]),
                std::bit_cast<std::uint64_t>(shape.RawDistance(place, y)))
          << "case " << i << " width " << width << " at " << place << "," << y << ": "
          << distances[column] << " instead of " << shape.RawDistance(place, y);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, LensRowsTest,
                         testing::Values(kLensCircle, kLensWideRectangle, kLensTallRectangle,
                                         kLensTriangle));

}  // namespace
}  // namespace vitrell
