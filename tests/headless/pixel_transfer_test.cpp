// Copies and fills: conversion, rectangles, scaling, threads.
#include "headless/pixel_transfer.h"

#include <gtest/gtest.h>

#include "headless/world_buffer.h"

namespace vitrell::headless {
namespace {

PixelView ViewOf(WorldBuffer& world) {
  return {world.Row(0), world.RowBytes(), world.Width(), world.Height(), world.Deep()};
}

// Red encodes the position: 10 * row + column.
WorldBuffer Numbered(std::int32_t width, std::int32_t height) {
  WorldBuffer world(width, height, false, {.rowPadding = 4});
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      world.At8(x, y) = {255, static_cast<A_u_char>(10 * y + x), 1, 2};
    }
  }
  return world;
}

std::vector<int> Reds(const WorldBuffer& world) {
  std::vector<int> reds;
  for (std::int32_t y = 0; y < world.Height(); ++y) {
    for (std::int32_t x = 0; x < world.Width(); ++x) reds.push_back(world.At8(x, y).red);
  }
  return reds;
}

TEST(PixelTransferTest, WhiteBecomesWhiteAndValuesRoundToNearest) {
  EXPECT_EQ(WidenChannel(0), 0);
  EXPECT_EQ(WidenChannel(1), 129);      // 128.50
  EXPECT_EQ(WidenChannel(128), 16448);  // 16448.25
  EXPECT_EQ(WidenChannel(255), 32768);
  EXPECT_EQ(NarrowChannel(0), 0);
  EXPECT_EQ(NarrowChannel(64), 0);       // 0.498
  EXPECT_EQ(NarrowChannel(65), 1);       // 0.506
  EXPECT_EQ(NarrowChannel(16384), 128);  // 127.5
  EXPECT_EQ(NarrowChannel(32768), 255);
  EXPECT_EQ(NarrowChannel(65535), 255);
  for (int value = 0; value <= 255; ++value) {
    EXPECT_EQ(NarrowChannel(WidenChannel(static_cast<A_u_char>(value))), value);
  }
}

TEST(PixelTransferTest, CopiesWholeWorldsBetweenPaddings) {
  ThreadPool pool;
  for (const bool deep : {false, true}) {
    for (const int threads : {1, 2, 7}) {
      WorldBuffer source(13, 9, deep, {.rowPadding = 4});
      WorldBuffer destination(13, 9, deep, {.rowPadding = 64});
      source.FillNoise(11);
      CopyPixels(ViewOf(source), ViewOf(destination), nullptr, nullptr, pool, threads);
      EXPECT_TRUE(SamePixels(source, destination)) << "threads " << threads;
      EXPECT_EQ(destination.Damage(), std::nullopt);
    }
  }
}

TEST(PixelTransferTest, ConvertsBetweenDepths) {
  ThreadPool pool;
  WorldBuffer narrow(2, 1, false), wide(2, 1, true);
  narrow.At8(0, 0) = {255, 1, 128, 0};
  narrow.At8(1, 0) = {0, 255, 255, 255};
  CopyPixels(ViewOf(narrow), ViewOf(wide), nullptr, nullptr, pool, 1);
  EXPECT_EQ(wide.At16(0, 0).alpha, 32768);
  EXPECT_EQ(wide.At16(0, 0).red, 129);
  EXPECT_EQ(wide.At16(0, 0).green, 16448);
  EXPECT_EQ(wide.At16(1, 0).alpha, 0);
  wide.At16(0, 0) = {40000, 64, 65, 32768};
  CopyPixels(ViewOf(wide), ViewOf(narrow), nullptr, nullptr, pool, 1);
  EXPECT_EQ(narrow.At8(0, 0).alpha, 255);
  EXPECT_EQ(narrow.At8(0, 0).red, 0);
  EXPECT_EQ(narrow.At8(0, 0).green, 1);
  EXPECT_EQ(narrow.At8(0, 0).blue, 255);
}

TEST(PixelTransferTest, HonoursRectanglesAndLeavesTheRestAlone) {
  ThreadPool pool;
  WorldBuffer source = Numbered(4, 3);
  WorldBuffer destination(4, 3, false, {.fresh = FreshPixels::kZero});
  const PF_LRect from = {1, 1, 3, 3};
  const PF_LRect to = {0, 0, 2, 2};
  CopyPixels(ViewOf(source), ViewOf(destination), &from, &to, pool, 1);
  EXPECT_EQ(Reds(destination), (std::vector<int>{11, 12, 0, 0, 21, 22, 0, 0, 0, 0, 0, 0}));
}

TEST(PixelTransferTest, LeavesOutWhatLiesOutsideTheWorlds) {
  ThreadPool pool;
  WorldBuffer source = Numbered(3, 3);
  WorldBuffer destination(3, 3, false, {.fresh = FreshPixels::kZero});
  const PF_LRect from = {-1, 0, 2, 3};
  const PF_LRect to = {0, 1, 3, 4};
  CopyPixels(ViewOf(source), ViewOf(destination), &from, &to, pool, 1);
  EXPECT_EQ(Reds(destination), (std::vector<int>{0, 0, 0, 0, 0, 1, 0, 10, 11}));
  EXPECT_EQ(destination.Damage(), std::nullopt);
}

TEST(PixelTransferTest, DifferentSizesTakeTheNearestPixel) {
  ThreadPool pool;
  WorldBuffer small = Numbered(2, 1);
  WorldBuffer large(4, 2, false);
  CopyPixels(ViewOf(small), ViewOf(large), nullptr, nullptr, pool, 1);
  EXPECT_EQ(Reds(large), (std::vector<int>{0, 0, 1, 1, 0, 0, 1, 1}));
  WorldBuffer wide = Numbered(6, 1);
  WorldBuffer narrow(2, 1, false);
  CopyPixels(ViewOf(wide), ViewOf(narrow), nullptr, nullptr, pool, 1);
  // Pixel centres 0.5 and 1.5 of 2 lie at 1.5 and 4.5 of 6.
  EXPECT_EQ(Reds(narrow), (std::vector<int>{1, 4}));
}

TEST(PixelTransferTest, CopyOntoItselfIsLegal) {
  ThreadPool pool;
  WorldBuffer world = Numbered(3, 3);
  const WorldBuffer before(world);
  CopyPixels(ViewOf(world), ViewOf(world), nullptr, nullptr, pool, 1);
  EXPECT_TRUE(SamePixels(before, world));
  const PF_LRect from = {0, 0, 2, 2};
  const PF_LRect to = {1, 1, 3, 3};
  CopyPixels(ViewOf(world), ViewOf(world), &from, &to, pool, 1);
  EXPECT_EQ(Reds(world), (std::vector<int>{0, 1, 2, 10, 0, 1, 20, 10, 11}));
}

TEST(PixelTransferTest, FillsTheRectangleInsideTheWorld) {
  WorldBuffer world = Numbered(3, 2);
  const PF_LRect rect = {1, -5, 9, 1};
  FillPixels(ViewOf(world), PF_Pixel{0, 77, 0, 0}, &rect);
  EXPECT_EQ(Reds(world), (std::vector<int>{0, 77, 77, 10, 11, 12}));
  EXPECT_EQ(world.Damage(), std::nullopt);
  WorldBuffer deep(2, 2, true);
  FillPixels(ViewOf(deep), PF_Pixel16{1, 2, 3, 4}, nullptr);
  EXPECT_EQ(deep.At16(1, 1).blue, 4);
  EXPECT_EQ(deep.At16(0, 0).alpha, 1);
}

}  // namespace
}  // namespace vitrell::headless
