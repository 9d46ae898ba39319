// The lens mask: shapes and falls-off at positions worked out by hand.
#include "lens/lens_mask.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "host/fake_host.h"
#include "host/picture.h"
#include "render/plan.h"

namespace vitrell {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kHalfPi = 1.5707963267948966;

class LensMaskTest : public testing::Test {
 protected:
  LensMaskTest() {
    info_.lensType = kLensCircle;
    info_.customLayer = &noImage_;
    info_.placement = kCenterMap;
    info_.scaleWidth = info_.scaleHeight = 1;
    SetOutput(1000, 1000, {-400, -400, 400, 400});
  }
  ~LensMaskTest() override { FreeLensMask(false); }

  void SetOutput(A_long width, A_long height, PF_LRect extent) {
    output_.width = width;
    output_.height = height;
    output_.extent_hint = extent;
    inputExtent_ = {0, 0, width, height};
  }
  // A fresh mask for each question; slow and simple.
  double At(int x, int y) {
    output_.extent_hint = {x - 1, y - 1, x + 2, y + 2};
    EXPECT_EQ(BuildLensMask({host_.inData(), &output_, inputExtent_}, info_, MakePlan(info_).mask),
              PF_Err_NONE);
    EXPECT_EQ(g_LensMaskSize, 9U);
    return GetLensMask(x, y, &output_);
  }

  FakeHost host_;
  PF_LayerDef noImage_ = {};
  PF_LayerDef output_ = {};
  PF_LRect inputExtent_ = {};
  LX_Info info_ = {};
};

// Width 1000: R = 350, band 1.5, from 349.25 to 350.75 (the widths to single precision).
TEST_F(LensMaskTest, CircleIsCentredOnItsRadius) {
  EXPECT_EQ(At(0, 0), 1.0);
  EXPECT_EQ(At(349, 0), 1.0);
  EXPECT_EQ(At(0, -349), 1.0);
  EXPECT_NEAR(At(350, 0), 0.5, 1e-6);
  EXPECT_NEAR(At(-350, 0), 0.5, 1e-6);
  EXPECT_EQ(At(351, 0), 0.0);
  // 245 x 245 + 251 x 251 = 123026, whose root 350.7506 is just beyond the band.
  EXPECT_EQ(At(245, 251), 0.0);
  // 210 x 210 + 280 x 280 = 350 x 350.
  EXPECT_NEAR(At(210, -280), 0.5, 1e-6);
}

// Four times as high, quarters of a pixel are whole rows: 1397 / 4 = 349.25 is where the band
// begins and 1403 / 4 = 350.75 where it ends. Between them 1398 is a sixth into it and 1402 five
// sixths; (cos(pi / 6) + 1) / 2 = 0.9330127.
TEST_F(LensMaskTest, BandBeginsAndEndsThreeQuartersFromTheRadius) {
  info_.scaleHeight = 4;
  for (const int sign : {-1, 1}) {
    EXPECT_EQ(At(0, sign * 1397), 1.0);
    EXPECT_NEAR(At(0, sign * 1398), 0.9330127, 1e-6);
    EXPECT_NEAR(At(0, sign * 1400), 0.5, 1e-6);
    EXPECT_NEAR(At(0, sign * 1402), 0.0669873, 1e-6);
    EXPECT_EQ(At(0, sign * 1403), 0.0);
  }
}

// Feather 0.2: the band is (0.2 + 1.5 / 350) x 350 = 71.5 wide, from 314.25 to 385.75. At 332 it is
// (332 - 314.25) / 71.5 = 0.24825 into it.
TEST_F(LensMaskTest, FeatherWidensTheBand) {
  info_.feather = 0.2F;
  EXPECT_EQ(At(314, 0), 1.0);
  EXPECT_NEAR(At(332, 0), (std::cos(0.248252 * 3.14159265) + 1) / 2, 1e-5);
  EXPECT_NEAR(At(350, 0), 0.5, 1e-6);
  EXPECT_EQ(At(386, 0), 0.0);
}

// Scale width 2: u = dx / 2, band (1.5 / 700) x 350 = 0.75.
TEST_F(LensMaskTest, ScaleStretchesTheShape) {
  info_.scaleWidth = 2;
  EXPECT_EQ(At(699, 0), 1.0);  // 349.5 < 349.625
  EXPECT_NEAR(At(700, 0), 0.5, 1e-6);
  EXPECT_EQ(At(701, 0), 0.0);
  EXPECT_EQ(At(0, 351), 0.0);
}

TEST_F(LensMaskTest, PositionIsTheCentre) {
  info_.positionX = 40;
  info_.positionY = -7;
  EXPECT_NEAR(At(390, -7), 0.5, 1e-6);
  EXPECT_NEAR(At(40, 343), 0.5, 1e-6);
}

// Any further limit on the radius is the world's own width, not its extent hint's.
TEST_F(LensMaskTest, SizesAreTheWorldsOwn) {
  output_.width = 100;  // R = 35.
  EXPECT_EQ(At(34, 0), 1.0);
  EXPECT_NEAR(At(35, 0), 0.5, 1e-6);
  EXPECT_EQ(At(36, 0), 0.0);
}

TEST_F(LensMaskTest, ScaleZeroGivesZeroOrOneWhenInverted) {
  info_.scaleHeight = 0;
  EXPECT_EQ(At(0, 0), 0.0);
  info_.invertAlpha = 1;
  EXPECT_EQ(At(0, 0), 1.0);
  EXPECT_EQ(At(900, 0), 1.0);
  info_.scaleHeight = 1;
  info_.scaleWidth = static_cast<float>(kNan);
  EXPECT_EQ(At(0, 0), 1.0);
}

TEST_F(LensMaskTest, TypeNoneIsInsideEverywhere) {
  for (const int type : {1, 0, 7, -3}) {
    info_.lensType = type;
    info_.invertAlpha = 0;
    EXPECT_EQ(At(5000, 0), 1.0) << type;
    info_.invertAlpha = 1;
    EXPECT_EQ(At(5000, 0), 0.0) << type;
  }
}

TEST_F(LensMaskTest, InvertingAsksForExactlyOne) {
  info_.invertAlpha = 2;
  EXPECT_EQ(At(0, 0), 1.0);
  info_.invertAlpha = 1;
  EXPECT_EQ(At(0, 0), 0.0);
  EXPECT_EQ(At(900, 0), 1.0);
}

// 1920 x 1080: half-width 0.75 x 1920 = 1440, half-height 0.35 x 1080 = 378, band 1.5.
TEST_F(LensMaskTest, WideRectangle) {
  SetOutput(1920, 1080, {});
  info_.lensType = kLensWideRectangle;
  EXPECT_EQ(At(1439, 0), 1.0);
  EXPECT_NEAR(At(-1440, 0), 0.5, 1e-6);
  EXPECT_EQ(At(1441, 0), 0.0);
  EXPECT_EQ(At(0, 377), 1.0);
  EXPECT_NEAR(At(0, -378), 0.5, 1e-6);
  EXPECT_NEAR(At(100, 378), 0.5, 1e-6);
  EXPECT_EQ(At(0, 379), 0.0);
}

// Half-width 0.35 x 1920 = 672, half-height 0.75 x 1080 = 810.
TEST_F(LensMaskTest, TallRectangle) {
  SetOutput(1920, 1080, {});
  info_.lensType = kLensTallRectangle;
  EXPECT_EQ(At(671, 0), 1.0);
  EXPECT_NEAR(At(672, 5), 0.5, 1e-6);
  EXPECT_EQ(At(673, 0), 0.0);
  EXPECT_EQ(At(3, 809), 1.0);
  EXPECT_NEAR(At(0, 810), 0.5, 1e-6);
  EXPECT_EQ(At(0, 811), 0.0);
}

// 100 x 100: half-width 75, half-height 35, swapped by a quarter turn.
TEST_F(LensMaskTest, RotationTurnsTheShape) {
  SetOutput(100, 100, {});
  info_.lensType = kLensWideRectangle;
  info_.rotation = kHalfPi;
  EXPECT_EQ(At(34, 0), 1.0);
  EXPECT_EQ(At(36, 0), 0.0);
  EXPECT_EQ(At(0, 74), 1.0);
  EXPECT_EQ(At(0, 76), 0.0);
}

// Inradius 175, base below at y = 175, top corner at y = -350; the band of 1.5 lies outside.
// (cos(1 / 1.5 x pi) + 1) / 2 = 0.25.
TEST_F(LensMaskTest, KeepsTheTrianglesBandOutside) {
  info_.lensType = kLensTriangle;
  EXPECT_EQ(At(0, 0), 1.0);
  EXPECT_EQ(At(0, 174), 1.0);
  EXPECT_EQ(At(0, 175), 1.0);
  EXPECT_NEAR(At(0, 176), 0.25, 1e-6);
  EXPECT_EQ(At(0, 177), 0.0);
  EXPECT_EQ(At(0, -349), 1.0);
  EXPECT_NEAR(At(0, -351), 0.25, 1e-6);
  EXPECT_EQ(At(0, -352), 0.0);
  // The corners below are at x = +-sqrt(3) x 175 = +-303.11.
  EXPECT_EQ(At(302, 175), 1.0);
  EXPECT_EQ(At(-302, 175), 1.0);
  EXPECT_EQ(At(306, 175), 0.0);
  EXPECT_EQ(At(-306, 175), 0.0);
  // Half-way up, the sides are at x = +-sqrt(3) x 350 / 4 = +-151.55.
  EXPECT_EQ(At(151, -87), 1.0);
  EXPECT_EQ(At(-151, -87), 1.0);
  EXPECT_EQ(At(154, -88), 0.0);
  EXPECT_EQ(At(-154, -88), 0.0);
}

TEST_F(LensMaskTest, PositionsOutsideTheRectangleAreZero) {
  output_.extent_hint = {2, 3, 5, 6};
  info_.lensType = kLensNone;
  ASSERT_EQ(BuildLensMask({host_.inData(), &output_, inputExtent_}, info_, MakePlan(info_).mask),
            PF_Err_NONE);
  EXPECT_EQ(GetLensMask(2, 3, &output_), 1.0);
  EXPECT_EQ(GetLensMask(4, 5, &output_), 1.0);
  for (const auto& [x, y] : {std::pair{1, 3}, {5, 3}, {2, 2}, {2, 6}, {-2147483647, 3}}) {
    EXPECT_EQ(GetLensMask(x, y, &output_), 0.0) << x << "," << y;
  }
}

// A world whose rectangle is larger than the mask never reads beyond the mask's memory.
TEST_F(LensMaskTest, ReadsThatWouldLeaveTheMaskAreZero) {
  output_.extent_hint = {0, 0, 2, 2};
  info_.lensType = kLensNone;
  ASSERT_EQ(BuildLensMask({host_.inData(), &output_, inputExtent_}, info_, MakePlan(info_).mask),
            PF_Err_NONE);
  PF_LayerDef larger = {};
  larger.extent_hint = {0, 0, 3, 1000};
  EXPECT_EQ(GetLensMask(0, 1, &larger), 1.0);  // Index 3.
  EXPECT_EQ(GetLensMask(1, 1, &larger), 0.0);  // Index 4.
  EXPECT_EQ(GetLensMask(2, 999, &larger), 0.0);
}

TEST_F(LensMaskTest, EmptyRectangleHasNoMask) {
  output_.extent_hint = {5, 5, 5, 9};
  EXPECT_EQ(BuildLensMask({host_.inData(), &output_, inputExtent_}, info_, MakePlan(info_).mask),
            PF_Err_NONE);
  EXPECT_EQ(g_LensMaskSize, 0U);
  EXPECT_EQ(GetLensMask(5, 5, &output_), 0.0);
}

TEST_F(LensMaskTest, KeepsTheOldAddressOnEarlyFailures) {
  output_.extent_hint = {0, 0, 2, 2};
  ASSERT_EQ(BuildLensMask({host_.inData(), &output_, inputExtent_}, info_, MakePlan(info_).mask),
            PF_Err_NONE);
  EXPECT_EQ(g_LensMaskSize, 4U);
  FreeLensMask(true);
  EXPECT_NE(g_LensMask, nullptr);
  EXPECT_EQ(g_LensMaskSize, 0U);
  FreeLensMask(true);  // Nothing is freed twice.
  ASSERT_EQ(BuildLensMask({host_.inData(), &output_, inputExtent_}, info_, MakePlan(info_).mask),
            PF_Err_NONE);
  FreeLensMask(false);
  EXPECT_EQ(g_LensMask, nullptr);
}

// The custom lens itself has its own test.
TEST_F(LensMaskTest, CustomLensInvertsLikeAnyOther) {
  SetOutput(20, 10, {});
  info_.lensType = kLensCustom;
  info_.positionX = 10;
  info_.positionY = 5;
  EXPECT_EQ(At(10, 5), 0.0);  // Without an image.
  info_.invertAlpha = 1;
  EXPECT_EQ(At(10, 5), 1.0);
  // (0.299 x 200 + 0.587 x 100 + 0.114 x 50) x 128 / 65025 = 124.2 x 128 / 65025.
  Picture<PF_Pixel> image(20, 10);
  image.Fill({128, 200, 100, 50});
  info_.customLayer = image.get();
  EXPECT_NEAR(At(10, 5), 1 - 124.2 * 128 / 65025, 1e-12);
  EXPECT_NEAR(At(40, 5), 1.0, 1e-12);  // Outside the image.
  info_.invertAlpha = 0;
  EXPECT_NEAR(At(10, 5), 124.2 * 128 / 65025, 1e-12);
}

}  // namespace
}  // namespace vitrell
