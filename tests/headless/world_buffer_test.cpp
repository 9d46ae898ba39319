// Guarded pictures: shapes, damage and comparison.
#include "headless/world_buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "headless/host_error.h"

namespace vitrell::headless {
namespace {

TEST(WorldBufferTest, RecordTellsTheShape) {
  const WorldBuffer world(5, 3, true, {.rowPadding = 16});
  EXPECT_EQ(world.Def().width, 5);
  EXPECT_EQ(world.Def().height, 3);
  EXPECT_EQ(world.Def().rowbytes, 5 * 8 + 16);
  EXPECT_EQ(world.Def().extent_hint.right, 5);
  EXPECT_EQ(world.Def().extent_hint.bottom, 3);
  EXPECT_EQ(world.Def().world_flags, PF_WorldFlag_DEEP);
  EXPECT_EQ(world.Def().pix_aspect_ratio.num, 1);
  EXPECT_EQ(world.Def().data, static_cast<const void*>(world.Row(0)));
  EXPECT_EQ(WorldBuffer(5, 3, false).Def().world_flags, 0);
}

TEST(WorldBufferTest, BaseMayBeOddFor8Bit) {
  const WorldBuffer world(2, 2, false, {.rowPadding = 3, .baseOffset = 1});
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(world.Row(0)) % 2, 1U);
  EXPECT_EQ(world.RowBytes(), 11);
}

TEST(WorldBufferTest, RefusesWhatCannotBe) {
  EXPECT_THROW(WorldBuffer(2, 2, true, {.rowPadding = 1}), HostError);
  EXPECT_THROW(WorldBuffer(2, 2, true, {.baseOffset = 1}), HostError);
  EXPECT_THROW(WorldBuffer(2, 2, false, {.baseOffset = 64}), HostError);
  EXPECT_THROW(WorldBuffer(2, 2, false, {.rowPadding = -4}), HostError);
  EXPECT_THROW(WorldBuffer(-1, 2, false), HostError);
  EXPECT_THROW(WorldBuffer(1, 30001, false), HostError);
}

TEST(WorldBufferTest, FreshPixelsArePoisonedUnlessZeroIsAsked) {
  const WorldBuffer poisoned(2, 2, true);
  EXPECT_GT(poisoned.At16(1, 1).red, PF_MAX_CHAN16);
  const WorldBuffer zero(2, 2, true, {.fresh = FreshPixels::kZero});
  EXPECT_EQ(zero.At16(1, 1).red, 0);
}

TEST(WorldBufferTest, NoiseSpansTheDepthAndFollowsTheSeed) {
  WorldBuffer a(64, 64, true), b(64, 64, true), c(64, 64, true);
  a.FillNoise(7);
  b.FillNoise(7);
  c.FillNoise(8);
  EXPECT_TRUE(SamePixels(a, b));
  EXPECT_FALSE(SamePixels(a, c));
  A_u_short lowest = 65535, highest = 0;
  for (int y = 0; y < 64; ++y) {
    for (int x = 0; x < 64; ++x) {
      lowest = std::min(lowest, a.At16(x, y).green);
      highest = std::max(highest, a.At16(x, y).green);
    }
  }
  EXPECT_LT(lowest, 100);
  EXPECT_GT(highest, 32668);
  EXPECT_LE(highest, PF_MAX_CHAN16);
}

TEST(WorldBufferTest, FindsDamageBeforeAfterAndBetweenRows) {
  for (const bool deep : {false, true}) {
    WorldBuffer world(3, 2, deep, {.rowPadding = 4});
    const std::size_t rowBytes = 3 * world.PixelBytes();
    EXPECT_EQ(world.Damage(), std::nullopt);
    const auto damageAt = [&](std::byte* address) {
      const std::byte kept = *address;
      *address = ~kept;
      const std::string damage = world.Damage().value_or("none");
      *address = kept;
      return damage;
    };
    EXPECT_EQ(damageAt(world.Row(0) - 2), "The byte 2 before the first pixel was overwritten.");
    EXPECT_EQ(damageAt(world.Row(0) + rowBytes + 1),
              "The byte 2 of the padding behind row 0 was overwritten.");
    EXPECT_EQ(damageAt(world.Row(1) + rowBytes),
              "The byte 1 of the padding behind row 1 was overwritten.");
    EXPECT_EQ(damageAt(world.Row(1) + world.RowBytes()),
              "The byte 1 after the last row was overwritten.");
    EXPECT_EQ(world.Damage(), std::nullopt);
  }
}

TEST(WorldBufferTest, FillingAllPixelsIsNoDamage) {
  for (const GuardPages pages : {GuardPages::kNone, GuardPages::kAtEnd, GuardPages::kAtStart}) {
    WorldBuffer world(7, 5, true, {.rowPadding = 16, .guardPages = pages});
    world.FillBytes(0);
    EXPECT_EQ(world.Damage(), std::nullopt);
  }
}

TEST(WorldBufferTest, EmptyWorldsExist) {
  for (const GuardPages pages : {GuardPages::kNone, GuardPages::kAtEnd}) {
    EXPECT_EQ(WorldBuffer(0, 4, false, {.rowPadding = 4, .guardPages = pages}).Damage(),
              std::nullopt);
    EXPECT_EQ(WorldBuffer(4, 0, true, {.guardPages = pages}).Damage(), std::nullopt);
  }
}

// The write would not be noticed by a band check on a page of slack.
TEST(WorldBufferDeathTest, ProtectedPageEndsTheProcessBehindTheLastPixel) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  WorldBuffer world(3, 2, false, {.rowPadding = 64, .guardPages = GuardPages::kAtEnd});
  world.At8(2, 1) = {1, 2, 3, 4};
  EXPECT_DEATH(*reinterpret_cast<volatile std::byte*>(&world.At8(3, 1)) = std::byte{1}, "");
}

TEST(WorldBufferDeathTest, ProtectedPageEndsTheProcessBeforeTheFirstPixel) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  WorldBuffer world(3, 2, true, {.guardPages = GuardPages::kAtStart});
  world.At16(0, 0) = {1, 2, 3, 4};
  EXPECT_DEATH(*(reinterpret_cast<volatile std::byte*>(world.Row(0)) - 1) = std::byte{1}, "");
}

TEST(WorldBufferTest, CopiesAreIndependentAndMovesKeepThePixels) {
  WorldBuffer world(4, 4, false, {.rowPadding = 4, .baseOffset = 1});
  world.FillNoise(3);
  world.SetExtentHint({1, 1, 3, 3});
  WorldBuffer copy(world);
  EXPECT_TRUE(SamePixels(world, copy));
  EXPECT_EQ(copy.Def().extent_hint.left, 1);
  copy.At8(0, 0).red ^= 1;
  EXPECT_FALSE(SamePixels(world, copy));
  const std::byte* pixels = copy.Row(0);
  const WorldBuffer moved(std::move(copy));
  EXPECT_EQ(moved.Row(0), pixels);
  EXPECT_EQ(moved.Damage(), std::nullopt);
}

TEST(WorldBufferTest, ChecksumSeesPixelsButNotPadding) {
  WorldBuffer a(3, 3, false, {.rowPadding = 1}), b(3, 3, false, {.rowPadding = 64});
  a.FillNoise(5);
  b.FillNoise(5);
  EXPECT_EQ(a.Checksum(), b.Checksum());
  b.At8(2, 2).blue ^= 1;
  EXPECT_NE(a.Checksum(), b.Checksum());
}

TEST(WorldBufferTest, DifferenceNamesPixelsAndDumpsSmallPictures) {
  WorldBuffer a(2, 1, false), b(2, 1, false);
  a.At8(0, 0) = b.At8(0, 0) = {1, 2, 3, 4};
  a.At8(1, 0) = {5, 6, 7, 8};
  b.At8(1, 0) = {5, 6, 7, 9};
  EXPECT_EQ(DescribeDifference(a, a), "");
  EXPECT_EQ(DescribeDifference(a, b),
            "1 of 2 pixels differ (alpha,red,green,blue):\n"
            "  (1, 0) expected 5,6,7,8, got 5,6,7,9\n"
            "expected:\n  1,2,3,4  5,6,7,8\n"
            "got:\n  1,2,3,4  5,6,7,9\n");
  EXPECT_EQ(DescribeDifference(a, WorldBuffer(2, 1, true)),
            "expected a picture of 2 x 1 8-bit, got one of 2 x 1 16-bit\n");
}

}  // namespace
}  // namespace vitrell::headless
