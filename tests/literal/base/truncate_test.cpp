// The literal truncation against numbers worked out by hand.
#include "literal/base/truncate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace vitrell::literal {
namespace {

TEST(LiteralTruncateTest, LeavesInt32OnlyAsItsMinimum) {
  EXPECT_EQ(TruncateToInt(-1.9), -1);
  EXPECT_EQ(TruncateToInt(2147483647.9), 2147483647);
  EXPECT_EQ(TruncateToInt(2147483648.0), INT32_MIN);
  EXPECT_EQ(TruncateToInt(-2147483648.9), INT32_MIN);
  EXPECT_EQ(TruncateToInt(-3e9), INT32_MIN);
  EXPECT_EQ(TruncateToInt(std::nan("")), INT32_MIN);
  EXPECT_EQ(ChannelFromReal(-1.0, false), 255);
  EXPECT_EQ(ChannelFromReal(300.7, false), 44);
  EXPECT_EQ(ChannelFromReal(65537.0, true), 1);
  EXPECT_EQ(ChannelFromReal(std::nan(""), true), 0);
}

}  // namespace
}  // namespace vitrell::literal
