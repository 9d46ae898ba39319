// Conversion from floating point to integers with a result for every value, and wrapping
// arithmetic.
#include "base/numeric.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace vitrell {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(NumericTest, TruncatesTowardZero) {
  EXPECT_EQ(TruncateToInt32(1.999), 1);
  EXPECT_EQ(TruncateToInt32(-1.999), -1);
  EXPECT_EQ(TruncateToInt32(-0.9F), 0);
  EXPECT_EQ(TruncateToInt32(2147483647.9), 2147483647);
  EXPECT_EQ(TruncateToInt32(-2147483648.9), kMin);
}

TEST(NumericTest, WhatDoesNotFitIsTheSmallestInteger) {
  for (const double value : {2147483648.0, 1e300, -2147483649.0, -1e300, kNan, kInfinity}) {
    EXPECT_EQ(TruncateToInt32(value), kMin) << value;
    EXPECT_EQ(TruncateToInt32(static_cast<float>(value)), kMin) << value;
  }
}

TEST(NumericTest, ChannelsKeepTheLowBits) {
  EXPECT_EQ(TruncateToChannel<std::uint8_t>(255.99), 255);
  EXPECT_EQ(TruncateToChannel<std::uint8_t>(256.0), 0);
  EXPECT_EQ(TruncateToChannel<std::uint8_t>(-1.0), 255);
  EXPECT_EQ(TruncateToChannel<std::uint8_t>(510.01F), 254);
  EXPECT_EQ(TruncateToChannel<std::uint16_t>(65537.5), 1);
  EXPECT_EQ(TruncateToChannel<std::uint16_t>(-2.0), 65534);
  EXPECT_EQ(TruncateToChannel<std::uint16_t>(kNan), 0);
  EXPECT_EQ(TruncateToChannel<std::uint8_t>(kInfinity), 0);
}

TEST(NumericTest, IntegersWrap) {
  EXPECT_EQ(WrappingAdd(2147483647, 1), kMin);
  EXPECT_EQ(WrappingSubtract(kMin, 1), 2147483647);
  // 65535 x 65535 = 4294836225 = 2^32 - 131071.
  EXPECT_EQ(WrappingMultiply(65535, 65535), -131071);
}

}  // namespace
}  // namespace vitrell
