// Checked scratch memory.
#include "base/buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace vitrell {
namespace {

constexpr std::size_t kTooMany = std::numeric_limits<std::size_t>::max() / 4;

TEST(BufferTest, StartsEmpty) {
  const Buffer<int> buffer;
  EXPECT_EQ(buffer.size(), 0U);
  EXPECT_EQ(buffer.data(), nullptr);
  EXPECT_EQ(buffer.begin(), buffer.end());
}

TEST(BufferTest, AllocatingNothingSucceedsWithoutMemory) {
  Buffer<int> buffer;
  ASSERT_TRUE(buffer.Allocate(3));
  EXPECT_TRUE(buffer.Allocate(0));
  EXPECT_EQ(buffer.size(), 0U);
  EXPECT_EQ(buffer.data(), nullptr);
}

TEST(BufferTest, AllocateZeroedClearsEveryValue) {
  Buffer<std::uint32_t> buffer;
  ASSERT_TRUE(buffer.Allocate(1000));
  std::fill(buffer.begin(), buffer.end(), 0xA5A5A5A5U);
  ASSERT_TRUE(buffer.AllocateZeroed(1000));
  EXPECT_TRUE(std::all_of(buffer.begin(), buffer.end(), [](std::uint32_t v) { return v == 0; }));
}

// 2^62 values of 8 bytes would be 2^65 bytes, which wraps to 0 when it is not checked.
TEST(BufferTest, SizesThatWrapAreRefusedAndLeaveItEmpty) {
  Buffer<std::uint64_t> buffer;
  ASSERT_TRUE(buffer.Allocate(4));
  EXPECT_FALSE(buffer.Allocate(std::size_t{1} << 62U));
  EXPECT_EQ(buffer.size(), 0U);
  EXPECT_EQ(buffer.data(), nullptr);
  EXPECT_FALSE(buffer.AllocateZeroed(kTooMany));
}

TEST(BufferTest, MovingHandsTheMemoryOn) {
  Buffer<int> from;
  ASSERT_TRUE(from.Allocate(2));
  from[0] = 7;
  const int* const memory = from.data();
  Buffer<int> to = std::move(from);
  EXPECT_EQ(to.data(), memory);
  EXPECT_EQ(to[0], 7);
  Buffer<int> third;
  third = std::move(to);
  EXPECT_EQ(third.data(), memory);
  EXPECT_EQ(third.size(), 2U);
}

TEST(BufferTest, FreeingForgets) {
  Buffer<int> buffer;
  ASSERT_TRUE(buffer.Allocate(2));
  buffer.Free();
  EXPECT_EQ(buffer.size(), 0U);
  buffer.Free();
  EXPECT_EQ(buffer.data(), nullptr);
}

TEST(GrowingBufferTest, KeepsValuesWhileItGrows) {
  GrowingBuffer<int> buffer;
  for (int i = 0; i < 1000; ++i) {
    ASSERT_TRUE(buffer.Append(i * 3));
  }
  ASSERT_EQ(buffer.size(), 1000U);
  for (std::size_t i = 0; i < 1000; ++i) {
    ASSERT_EQ(buffer[i], static_cast<int>(i) * 3);
  }
}

TEST(GrowingBufferTest, ClearingStartsANew) {
  GrowingBuffer<int> buffer;
  ASSERT_TRUE(buffer.Append(1));
  ASSERT_TRUE(buffer.Append(2));
  buffer.Clear();
  EXPECT_EQ(buffer.size(), 0U);
  ASSERT_TRUE(buffer.Append(9));
  EXPECT_EQ(buffer[0], 9);
  EXPECT_EQ(buffer.size(), 1U);
}

}  // namespace
}  // namespace vitrell
