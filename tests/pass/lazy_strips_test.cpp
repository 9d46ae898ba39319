// Strips of rows or columns are computed once, whichever thread asks first.
#include "pass/lazy_strips.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <vector>

#include "host/host_api.h"

namespace vitrell {
namespace {

TEST(LazyStripsTest, EveryStripIsFilledOnceOnAnyNumberOfThreads) {
  constexpr std::int32_t kWidth = 9;
  constexpr std::int32_t kHeight = 45;
  constexpr int kThreads = 4;
  LazyStrips<PF_Pixel16, 4> strips;
  ASSERT_TRUE(strips.Reset(kWidth, kHeight));
  int filled[kHeight] = {};
  const auto fill = [&](std::int32_t firstRow, std::int32_t endRow, PF_Pixel16* out) {
    for (std::int32_t row = firstRow; row < endRow; ++row) {
      ++filled[row];
      for (std::int32_t x = 0; x < kWidth; ++x) {
        *out++ = {1, static_cast<std::uint16_t>(x), static_cast<std::uint16_t>(row), 0};
      }
    }
    return true;
  };
  // Neighbouring rows go to different threads, so that all threads want the same strip at once.
  const auto work = [&](int thread) {
    for (std::int32_t row = thread; row < kHeight; row += kThreads) {
      for (std::int32_t x = 0; x < kWidth; ++x) {
        if (const PF_Pixel16* const pixel = strips.PixelOrFill(x, row, fill)) {
          EXPECT_EQ(pixel->red, x);
          EXPECT_EQ(pixel->green, row);
        }
      }
    }
  };
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back(work, thread);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (std::int32_t row = 0; row < kHeight; ++row) {
    EXPECT_EQ(filled[row], 1) << row;
    EXPECT_NE(strips.ReadyPixel(0, row), nullptr) << row;
  }
  EXPECT_EQ(strips.ReadyPixel(-1, 0), nullptr);
  EXPECT_EQ(strips.ReadyPixel(kWidth, 0), nullptr);
  EXPECT_EQ(strips.ReadyPixel(0, kHeight), nullptr);
  EXPECT_EQ(strips.PixelOrFill(0, -1, fill), nullptr);
}

// A thread that would have to wait computes another strip.
TEST(LazyStripsTest, AStripInOtherHandsLeavesTheNextOne) {
  LazyStrips<PF_Pixel, 2> strips;
  ASSERT_TRUE(strips.Reset(3, 6));
  std::vector<std::int32_t> order;
  strips.PixelOrFill(0, 0, [&](std::int32_t firstRow, std::int32_t, PF_Pixel*) {
    order.push_back(firstRow);
    EXPECT_EQ(strips.PixelOrFill(1, 1,
                                 [&](std::int32_t nextRow, std::int32_t, PF_Pixel*) {
                                   order.push_back(nextRow);
                                   return true;
                                 }),
              nullptr);
    return true;
  });
  EXPECT_EQ(order, (std::vector<std::int32_t>{0, 2}));
  EXPECT_NE(strips.ReadyPixel(1, 1), nullptr);
  EXPECT_NE(strips.ReadyPixel(2, 3), nullptr);
  EXPECT_EQ(strips.ReadyPixel(2, 4), nullptr);
}

// After a fill that failed, a later pixel tries again.
TEST(LazyStripsTest, AStripThatWasNotFilledIsAskedForAgain) {
  LazyStrips<PF_Pixel, 2> strips;
  ASSERT_TRUE(strips.Reset(3, 3));
  int calls = 0;
  const auto decline = [&](std::int32_t, std::int32_t, PF_Pixel*) {
    ++calls;
    return false;
  };
  EXPECT_EQ(strips.PixelOrFill(1, 2, decline), nullptr);
  EXPECT_EQ(strips.PixelOrFill(1, 2, decline), nullptr);
  EXPECT_EQ(calls, 2);
  const auto fill = [](std::int32_t, std::int32_t, PF_Pixel* out) {
    out[1] = {1, 2, 3, 4};
    return true;
  };
  const PF_Pixel* const pixel = strips.PixelOrFill(1, 2, fill);
  ASSERT_NE(pixel, nullptr);
  EXPECT_EQ(pixel->red, 2);
  EXPECT_EQ(strips.ReadyPixel(1, 2), pixel);
}

// Memory of a larger pass serves a smaller one, which starts without strips.
TEST(LazyStripsTest, MemoryIsHandedOnWithoutItsStrips) {
  StripMemory<PF_Pixel> memory;
  const auto fill = [](std::int32_t, std::int32_t, PF_Pixel* out) {
    out[0] = {1, 2, 3, 4};
    return true;
  };
  LazyStrips<PF_Pixel, 1> rows;
  ASSERT_TRUE(rows.Reset(4, 4, &memory));
  const PF_Pixel* const first = rows.PixelOrFill(0, 0, fill);
  ASSERT_NE(first, nullptr);
  LazyStrips<PF_Pixel, 2, StripLines::kColumns> columns;
  ASSERT_TRUE(columns.Reset(3, 3, &memory));
  EXPECT_EQ(columns.ReadyPixel(0, 0), nullptr);
  EXPECT_EQ(columns.PixelOrFill(0, 0, fill), first);
}

// Bottom up, with a gap between rows, and not a pixel more than the rows.
template <std::int32_t kStripSize>
void ExpectRowsOfTheCallers() {
  constexpr std::int32_t kWidth = 3;
  constexpr std::int32_t kHeight = 4;
  constexpr std::ptrdiff_t kPitch = 5;
  const PF_Pixel untouched = {9, 9, 9, 9};
  std::vector<PF_Pixel> image(kPitch * kHeight, untouched);
  PF_Pixel* const lastRow = image.data() + kPitch * (kHeight - 1);
  StripMemory<PF_Pixel> memory;
  LazyStrips<PF_Pixel, kStripSize> strips;
  ASSERT_TRUE(strips.Reset(kWidth, kHeight, {lastRow, -kPitch}, &memory));
  const auto fill = [](std::int32_t first, std::int32_t end, PF_Pixel* out) {
    for (std::int32_t row = first; row < end; ++row) {
      for (std::int32_t x = 0; x < kWidth; ++x) {
        (out - kPitch * (row - first))[x] = {1, static_cast<A_u_char>(x),
                                             static_cast<A_u_char>(row), 0};
      }
    }
    return true;
  };
  for (std::int32_t row = 0; row < kHeight; ++row) {
    for (std::int32_t x = 0; x < kWidth; ++x) {
      const PF_Pixel* const pixel = strips.PixelOrFill(x, row, fill);
      ASSERT_EQ(pixel, lastRow - kPitch * row + x);
      EXPECT_EQ(pixel->red, x);
      EXPECT_EQ(pixel->green, row);
      EXPECT_EQ(strips.ReadyPixel(x, row), pixel);
    }
  }
  for (std::size_t i = 0; i < image.size(); ++i) {
    EXPECT_EQ(image[i].alpha, i % kPitch < kWidth ? 1 : untouched.alpha) << i;
  }
  EXPECT_EQ(memory.pixels.size(), 0U);
}

TEST(LazyStripsTest, RowsOfTheCallers) {
  ExpectRowsOfTheCallers<1>();
  ExpectRowsOfTheCallers<3>();
}

}  // namespace
}  // namespace vitrell
