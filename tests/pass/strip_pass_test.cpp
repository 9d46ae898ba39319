// The three ways in which a strip pass serves a pixel: from a finished strip, from one that it
// computes, and alone.
#include "pass/strip_pass.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "host/host_api.h"

namespace vitrell {
namespace {

// Strips of three rows that begin at layer position (10, 20). Pixels of a strip encode their
// position, a pixel computed alone has green 99; the input's alpha is published.
struct PlacesStage {
  using Pixel = PF_Pixel;
  static constexpr std::int32_t kStripSize = 3;
  static constexpr StripLines kStripLines = StripLines::kRows;
  static constexpr std::int32_t kWidth = 4;

  bool FillStrip(std::int32_t firstRow, std::int32_t endRow, PF_Pixel* out) {
    filled.push_back(firstRow);
    if (declines) {
      return false;
    }
    for (std::int32_t row = firstRow; row < endRow; ++row) {
      for (std::int32_t x = 0; x < kWidth; ++x) {
        *out++ = {0, static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(row), 1};
      }
    }
    if (whileFilling != nullptr) {
      PF_Pixel other = {};
      EXPECT_EQ(whileFilling->Serve(10, 20 + firstRow, {5, 0, 0, 0}, &other), PF_Err_NONE);
      EXPECT_EQ(other.green, 99);  // This thread has claimed its strip.
    }
    return true;
  }
  static void StoreOnePixel(std::int32_t x, std::int32_t y, const PF_Pixel& in, PF_Pixel* out) {
    *out = {in.alpha, static_cast<std::uint8_t>(x), 99, static_cast<std::uint8_t>(y)};
  }
  static std::int32_t ColumnOf(std::int32_t x) { return x - 10; }
  static std::int32_t RowOf(std::int32_t y) { return y - 20; }
  static void Publish(const PF_Pixel& stored, const PF_Pixel& in, PF_Pixel* out) {
    *out = {in.alpha, stored.red, stored.green, stored.blue};
  }

  bool declines = false;
  StripPass<PlacesStage>* whileFilling = nullptr;
  std::vector<std::int32_t> filled;
};

PF_Pixel ServedAt(StripPass<PlacesStage>* pass, std::int32_t x, std::int32_t y) {
  PF_Pixel out = {};
  EXPECT_EQ(pass->Serve(x, y, {7, 1, 1, 1}, &out), PF_Err_NONE);
  return out;
}

void ExpectPixel(const PF_Pixel& pixel, int red, int green, int blue) {
  EXPECT_EQ(pixel.alpha, 7);
  EXPECT_EQ(pixel.red, red);
  EXPECT_EQ(pixel.green, green);
  EXPECT_EQ(pixel.blue, blue);
}

TEST(StripPassTest, AStripIsFilledOnceAndServesItsPixels) {
  StripPass<PlacesStage> pass;
  ASSERT_TRUE(pass.strips.Reset(PlacesStage::kWidth, 8));
  ExpectPixel(ServedAt(&pass, 12, 24), 2, 4, 1);
  ExpectPixel(ServedAt(&pass, 10, 25), 0, 5, 1);
  ExpectPixel(ServedAt(&pass, 13, 23), 3, 3, 1);
  EXPECT_EQ(pass.stage.filled, (std::vector<std::int32_t>{3}));
  ExpectPixel(ServedAt(&pass, 13, 27), 3, 7, 1);  // The last strip has two rows.
  EXPECT_EQ(pass.stage.filled, (std::vector<std::int32_t>{3, 6}));
}

TEST(StripPassTest, PixelsOutsideTheStripsAreWorkedOutByThemselves) {
  StripPass<PlacesStage> pass;
  ASSERT_TRUE(pass.strips.Reset(PlacesStage::kWidth, 8));
  for (const auto& [x, y] : {std::pair{9, 20}, {14, 20}, {10, 19}, {10, 28}}) {
    ExpectPixel(ServedAt(&pass, x, y), x, 99, y);
  }
  EXPECT_TRUE(pass.stage.filled.empty());
}

TEST(StripPassTest, WithoutStripsEveryPixelIsWorkedOutByItself) {
  StripPass<PlacesStage> pass;
  ExpectPixel(ServedAt(&pass, 10, 20), 10, 99, 20);
  EXPECT_TRUE(pass.stage.filled.empty());
}

TEST(StripPassTest, AStripThatCannotBeFilledIsAskedForAgain) {
  StripPass<PlacesStage> pass;
  ASSERT_TRUE(pass.strips.Reset(PlacesStage::kWidth, 3));
  pass.stage.declines = true;
  ExpectPixel(ServedAt(&pass, 11, 21), 11, 99, 21);
  pass.stage.declines = false;
  ExpectPixel(ServedAt(&pass, 11, 21), 1, 1, 1);
  EXPECT_EQ(pass.stage.filled, (std::vector<std::int32_t>{0, 0}));
}

// The state that another thread would find during the fill.
TEST(StripPassTest, AStripInOtherHandsIsNotWaitedFor) {
  StripPass<PlacesStage> pass;
  ASSERT_TRUE(pass.strips.Reset(PlacesStage::kWidth, 3));
  pass.stage.whileFilling = &pass;
  ExpectPixel(ServedAt(&pass, 11, 21), 1, 1, 1);
  EXPECT_EQ(pass.stage.filled, (std::vector<std::int32_t>{0}));
}

TEST(StripPassTest, StripsOfRowsHoldTheOutputOfAPictureAtTheOrigin) {
  using Strips = StripsOfRows<PF_Pixel16, 8>;
  static_assert(Strips::kStripSize == 8 && Strips::kStripLines == StripLines::kRows);
  EXPECT_EQ(Strips::ColumnOf(-3), -3);
  EXPECT_EQ(Strips::RowOf(5), 5);
  PF_Pixel16 out = {};
  Strips::Publish({1, 2, 3, 4}, {5, 6, 7, 8}, &out);
  EXPECT_EQ(out.alpha, 1);
  EXPECT_EQ(out.blue, 4);
}

}  // namespace
}  // namespace vitrell
