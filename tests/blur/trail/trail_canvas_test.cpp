// Which ray's colour a pixel keeps, with rays painted by hand.
#include "blur/trail/trail_canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

#include "host/picture.h"

namespace vitrell {
namespace {

constexpr std::uint32_t kSeed = 20261127;

template <typename Pixel>
void PaintFrom(TrailCanvas* canvas, A_long x, A_long y, const PF_FixedPoint& point,
               const Pixel& colour) {
  TrailCanvas::Brush<Pixel>(canvas, x, y).Paint(point, [&] { return colour; });
}

template <typename Pixel>
class TrailCanvasTest : public testing::Test {};

using Depths = testing::Types<PF_Pixel, PF_Pixel16>;
TYPED_TEST_SUITE(TrailCanvasTest, Depths);

TYPED_TEST(TrailCanvasTest, FirstRayInRowMajorOrderWinsInAnyOrderOfPainting) {
  struct Start {
    A_long x;
    A_long y;
  };
  std::vector<Start> starts = {{3, 0}, {8, 0}, {0, 1}, {8, 1}, {0, 2}, {5, 6}};
  do {
    Picture<TypeParam> picture(9, 7);
    picture.Fill({});
    TrailCanvas canvas;
    ASSERT_TRUE(canvas.Prepare(picture.get()));
    for (const Start& start : starts) {
      const auto colour = static_cast<decltype(TypeParam::red)>(10 * start.y + start.x);
      PaintFrom<TypeParam>(&canvas, start.x, start.y, {4, 3}, {0, colour, 0, 0});
    }
    ASSERT_EQ(picture.At(4, 3), (TypeParam{0, 3, 0, 0}));
  } while (std::next_permutation(starts.begin(), starts.end(), [](const Start& a, const Start& b) {
    return a.y != b.y ? a.y < b.y : a.x < b.x;
  }));
}

TYPED_TEST(TrailCanvasTest, ColoursOfAllZeroDoNotCount) {
  Picture<TypeParam> picture(9, 7);
  picture.Fill({});
  TrailCanvas canvas;
  ASSERT_TRUE(canvas.Prepare(picture.get()));
  PaintFrom<TypeParam>(&canvas, 0, 0, {4, 3}, {});
  PaintFrom<TypeParam>(&canvas, 0, 5, {4, 3}, {0, 0, 0, 1});
  PaintFrom<TypeParam>(&canvas, 0, 2, {4, 3}, {});
  EXPECT_EQ(picture.At(4, 3), (TypeParam{0, 0, 0, 1}));
}

TYPED_TEST(TrailCanvasTest, WhatWasThereBeforeStays) {
  Picture<TypeParam> picture(9, 7);
  picture.Fill({});
  picture.At(4, 3) = {0, 0, 7, 0};
  TrailCanvas canvas;
  ASSERT_TRUE(canvas.Prepare(picture.get()));
  PaintFrom<TypeParam>(&canvas, 0, 1, {4, 3}, {1, 2, 3, 4});
  PaintFrom<TypeParam>(&canvas, 0, 0, {4, 3}, {5, 6, 7, 8});
  EXPECT_EQ(picture.At(4, 3), (TypeParam{0, 0, 7, 0}));
}

// Reflection: column -2 is 2 and, in an image of 7 rows, row 7 is 6; the extent begins at (10, 20).
TYPED_TEST(TrailCanvasTest, PositionsOutsideAreMirrored) {
  Picture<TypeParam> picture(9, 7);
  picture.Fill({});
  picture.get()->extent_hint = {10, 20, 19, 27};
  TrailCanvas canvas;
  ASSERT_TRUE(canvas.Prepare(picture.get()));
  PaintFrom<TypeParam>(&canvas, 0, 0, {8, 27}, {1, 2, 3, 4});
  EXPECT_EQ(picture.At(2, 6), (TypeParam{1, 2, 3, 4}));
}

// Four threads paint every pixel of several tiles from starts in random order.
TYPED_TEST(TrailCanvasTest, ThreadsAgree) {
  constexpr A_long kWidth = 300;
  constexpr A_long kHeight = 140;
  Picture<TypeParam> picture(kWidth, kHeight);
  picture.Fill({});
  TrailCanvas canvas;
  ASSERT_TRUE(canvas.Prepare(picture.get()));
  std::vector<A_long> starts(60);
  std::iota(starts.begin(), starts.end(), 0);
  std::shuffle(starts.begin(), starts.end(), std::mt19937(kSeed));
  std::atomic<int> next = 0;
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int turn = next++; turn < 60; turn = next++) {
        const A_long start = starts[static_cast<std::size_t>(turn)];
        const auto colour = static_cast<decltype(TypeParam::red)>(start + 1);
        TrailCanvas::Brush<TypeParam> brush(&canvas, 0, start);
        for (A_long k = 0; k < kWidth * kHeight; ++k) {
          const A_long column = k % kWidth;
          if (column % 60 > start) continue;  // Of start 0 in column 0, of start 59 in column 59.
          brush.Paint({column, k / kWidth}, [&] { return TypeParam{0, colour, 0, 0}; });
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (A_long y = 0; y < kHeight; ++y) {
    for (A_long x = 0; x < kWidth; ++x) {
      ASSERT_EQ(picture.At(x, y).red, x % 60 + 1) << x << "," << y;
    }
  }
}

}  // namespace
}  // namespace vitrell
