// The longest line that the directional blur takes.
#include "blur/directional/line_taps.h"

#include <gtest/gtest.h>

#include "host/fake_host.h"

namespace vitrell {
namespace {

// A line of 2 x 8388607 + 1 points is the longest odd one of at most 2^24.
TEST(LineTapsTest, TheLongestLineAndOneBeyond) {
  FakeHost host;
  LX_Info info = {};
  LineTaps taps;
  info.directionalAmount = 8388607.0F;
  EXPECT_EQ(taps.Build(host.inData(), info, true), PF_Err_NONE);
  EXPECT_EQ(taps.count(), 16777215);
  info.directionalAmount = 8388608.0F;
  EXPECT_EQ(taps.Build(host.inData(), info, true), PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(taps.count(), 0);
  // The line is rasterised also where the stage is off: then nobody needs it.
  EXPECT_EQ(taps.Build(host.inData(), info, false), PF_Err_NONE);
  EXPECT_EQ(taps.count(), 0);
}

}  // namespace
}  // namespace vitrell
