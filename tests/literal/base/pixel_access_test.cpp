// The literal pixel access against numbers worked out by hand.
#include "literal/base/pixel_access.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "literal/picture.h"

namespace vitrell::literal {
namespace {

TEST(LiteralPixelAccessTest, MirrorRepeatsOnlyTheFarEdge) {
  const World world = MakeWorld(3, 2, false, ByPosition);
  EXPECT_EQ(GetPointerFromData(world, -1, 0, 1).channel[1], 10);
  EXPECT_EQ(GetPointerFromData(world, 2, 0, 1).channel[1], 10);
  EXPECT_EQ(GetPointerFromData(world, -3, 0, 1).channel[1], 0);
  EXPECT_EQ(GetPointerFromData(world, 0, 3, 1).channel[1], 2);
  EXPECT_EQ(GetPointerFromData(world, 0, -2, 1).channel[1], 2);
  EXPECT_EQ(GetPointerFromDataP(world, -1, 0, 0), nullptr);
  EXPECT_EQ(GetPointerFromDataP(world, -1, 0, 2), nullptr);
  EXPECT_EQ(GetPointerFromData(world, 2, 0, 0).channel[0], 0);
}

TEST(LiteralPixelAccessTest, KeepsTheDoubledOriginOfMirroredValues) {
  World world = MakeWorld(5, 5, false, ByPosition);
  world.extent = {1, 1, 6, 6};
  // Layer row 0 is stored row -1, folded to 1; the origin is taken off again: stored row 0.
  EXPECT_EQ(GetPointerFromData(world, 0, 3, 1).channel[1], 1);
  EXPECT_EQ(GetPointerFromDataP(world, 0, 3, 1)->channel[1], 12);
}

TEST(LiteralPixelAccessTest, BilinearSampleTruncates) {
  const World deep = MakeWorld(
      4, 4, true, [](std::int32_t row, std::int32_t) -> std::uint16_t { return row == 1 ? 3 : 0; });
  Pixel out;
  GetPointerFromDataDP(deep, 1.5, 1.0, out, 0);
  EXPECT_EQ(out.channel[1], 1);
  const World world = MakeWorld(9, 4, false, ByPosition);
  GetPointerFromDataDP(world, 0.5, 7.5, out, 0);
  EXPECT_EQ(out.channel[1], 7);
  GetPointerFromDataDP(world, 1.5, 6.5, out, 0);  // (16 + 17 + 26 + 27) / 4 = 21.5
  EXPECT_EQ(out.channel[1], 21);
}

TEST(LiteralPixelAccessTest, BilinearBaseIsNotTheFloor) {
  const World world = MakeWorld(9, 6, false, ByPosition);
  Pixel out;
  // Row -1.0 has base -2: fy = 1, so the row below the base, -1, which mirrors to 1.
  GetPointerFromDataDP(world, -1.0, 3.0, out, 1);
  EXPECT_EQ(out.channel[1], 13);
  out.channel[1] = 77;
  GetPointerFromDataDP(world, -1.0, 3.0, out, 0);
  EXPECT_EQ(out.channel[1], 77);
}

}  // namespace
}  // namespace vitrell::literal
