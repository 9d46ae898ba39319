// Frames in any order, told in theirs.
#include "cli/gathered_frames.h"

#include <gtest/gtest.h>

namespace vitrell::cli {
namespace {

std::string TextOf(const std::vector<std::int64_t>& frames) {
  GatheredFrames gathered;
  for (const std::int64_t frame : frames) gathered.Add(frame);
  EXPECT_EQ(gathered.Size(), static_cast<std::int64_t>(frames.size()));
  return gathered.Text();
}

TEST(GatheredFramesTest, AreToldInTheOrderOfTheirNumbers) {
  EXPECT_EQ(TextOf({}), "");
  EXPECT_EQ(TextOf({1, 2, 3, 7}), "1-3,7");
  EXPECT_EQ(TextOf({2, 1, 4, 3, 6, 5}), "1-6");
  EXPECT_EQ(TextOf({9, 7, 5, 3, 1}), "1-9x2");
  EXPECT_EQ(TextOf({10, 20, 30, 5, 25}), "5,10,20-30x5");
}

TEST(GatheredFramesTest, TwoLotsAreOne) {
  GatheredFrames left;
  left.Add(6);
  left.Add(4);
  GatheredFrames all;
  for (const std::int64_t frame : {1, 5, 7}) all.Add(frame);
  all.AddAll(left);
  EXPECT_EQ(all.Size(), 5);
  EXPECT_EQ(all.Text(), "1,4-7");
}

}  // namespace
}  // namespace vitrell::cli
