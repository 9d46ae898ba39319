// Every conversion from the host's parameters, field by field.
#include "render/settings.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

#include "shell/parameters.h"

namespace vitrell {
namespace {

constexpr PF_Fixed Fixed(int whole) { return whole * 65536; }

class SettingsTest : public testing::Test {
 protected:
  SettingsTest() {
    for (std::size_t i = 0; i < records_.size(); ++i) {
      pointers_[i] = &records_[i];
    }
  }
  PF_ParamDefUnion& At(int index) { return records_[static_cast<std::size_t>(index)].u; }
  LX_Info Convert() {
    LX_Info info = {};
    EXPECT_EQ(SetInfoFromParam(&info, pointers_.data()), PF_Err_NONE);
    return info;
  }

  std::array<PF_ParamDef, PARAM_COUNT> records_ = {};
  std::array<PF_ParamDef*, PARAM_COUNT> pointers_ = {};
};

TEST_F(SettingsTest, PopupsAndColourAreCopied) {
  At(2).pd.value = 6;
  At(4).pd.value = 2;
  At(22).pd.value = 8;
  At(53).cd.value = {11, 22, 33, 44};
  At(64).pd.value = 4;
  const LX_Info info = Convert();
  EXPECT_EQ(info.lensType, 6);
  EXPECT_EQ(info.placement, 2);
  EXPECT_EQ(info.irisSides, 8);
  EXPECT_EQ(info.colorValue.alpha, 11);
  EXPECT_EQ(info.colorValue.red, 22);
  EXPECT_EQ(info.colorValue.green, 33);
  EXPECT_EQ(info.colorValue.blue, 44);
  EXPECT_EQ(info.mode, 4);
}

TEST_F(SettingsTest, NothingIsValidated) {
  At(2).pd.value = -7;
  At(64).pd.value = 123456;
  At(6).fs_d.value = -250;
  const LX_Info info = Convert();
  EXPECT_EQ(info.lensType, -7);
  EXPECT_EQ(info.mode, 123456);
  EXPECT_EQ(info.feather, -2.5F);
}

// A value of 2 is stored as 2 and so is not 1: off.
TEST_F(SettingsTest, KeepsTheLowByteOfEachCheckbox) {
  const std::array<int, 13> boxes = {5, 15, 17, 20, 26, 29, 31, 35, 37, 41, 48, 52, 57};
  const std::array<std::uint8_t LX_Info::*, 13> fields = {&LX_Info::invertAlpha,
                                                          &LX_Info::fastBlurVisible,
                                                          &LX_Info::fastBlurUseLensAsBlurMap,
                                                          &LX_Info::realisticVisible,
                                                          &LX_Info::realisticUseLensAsBlurMap,
                                                          &LX_Info::opticalVisible,
                                                          &LX_Info::opticalCenterOfLens,
                                                          &LX_Info::trailVisible,
                                                          &LX_Info::trailCenterOfLens,
                                                          &LX_Info::directionalVisible,
                                                          &LX_Info::lightnessVisible,
                                                          &LX_Info::colorVisible,
                                                          &LX_Info::chromaticVisible};
  const std::array<std::array<int, 2>, 6> cases = {
      {{0, 0}, {1, 1}, {2, 2}, {256, 0}, {257, 1}, {-1, 255}}};
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    for (const auto& [value, stored] : cases) {
      records_ = {};
      At(boxes[i]).bd.value = value;
      const LX_Info info = Convert();
      for (std::size_t k = 0; k < fields.size(); ++k) {
        EXPECT_EQ(info.*fields[k], k == i ? stored : 0) << boxes[i] << " " << value;
      }
    }
  }
}

TEST_F(SettingsTest, PlainSlidersAreNarrowed) {
  At(16).fs_d.value = 20.1;
  At(24).fs_d.value = 1.23;
  At(30).fs_d.value = 179.9;
  At(42).fs_d.value = 65536.3;
  const LX_Info info = Convert();
  EXPECT_EQ(info.fastBlurAmount, 20.1F);
  EXPECT_EQ(info.irisAspectRatio, 1.23F);
  EXPECT_EQ(info.opticalAmount, 179.9F);
  EXPECT_EQ(info.directionalAmount, 65536.3F);
}

// 0.7 narrowed and divided in single precision is 0x1.cac082p-8; divided in double precision and
// then narrowed it is 0x1.cac084p-8.
TEST_F(SettingsTest, PercentSlidersAreDividedInSinglePrecision) {
  const std::array<int, 7> sliders = {6, 21, 23, 36, 49, 54, 63};
  const std::array<float LX_Info::*, 7> fields = {
      &LX_Info::feather,     &LX_Info::realisticAmount, &LX_Info::irisRoundness,
      &LX_Info::trailAmount, &LX_Info::lightnessAmount, &LX_Info::colorOpacity,
      &LX_Info::intensity};
  for (std::size_t i = 0; i < sliders.size(); ++i) {
    records_ = {};
    At(sliders[i]).fs_d.value = 0.7;
    const LX_Info info = Convert();
    for (std::size_t k = 0; k < fields.size(); ++k) {
      EXPECT_EQ(info.*fields[k], k == i ? 0x1.cac082p-8F : 0.0F) << sliders[i];
    }
  }
}

TEST_F(SettingsTest, KeepsTheChromaticSlidersDividedInDoublePrecision) {
  At(58).fs_d.value = 0.7;
  At(59).fs_d.value = 100;
  At(60).fs_d.value = 1.3;
  const LX_Info info = Convert();
  EXPECT_EQ(info.chromaticRedCyan, 0x1.cac084p-8F);
  EXPECT_EQ(info.chromaticGreenMagenta, 1.0F);
  EXPECT_EQ(info.chromaticBlueYellow, static_cast<float>(1.3 / 100));
}

// (33.3 / 100) x 33.3 / 100 in that order is one unit below (33.3 / 100) x (33.3 / 100).
TEST_F(SettingsTest, ScalesAreFormedLeftToRightInSinglePrecision) {
  At(8).fs_d.value = 33.3;
  At(9).fs_d.value = 33.3;
  At(10).fs_d.value = 100;
  LX_Info info = Convert();
  EXPECT_EQ(info.scaleWidth, 0x1.c6338ap-4F);
  EXPECT_EQ(info.scaleHeight, 0x1.54fdf4p-2F);
  At(8).fs_d.value = 100;
  At(9).fs_d.value = 100;
  EXPECT_EQ(Convert().scaleWidth, 1.0F);
}

TEST_F(SettingsTest, ScaleOrScaleWidthZeroGivesScaleZero) {
  At(8).fs_d.value = 0;
  At(9).fs_d.value = 400;
  At(10).fs_d.value = 400;
  EXPECT_EQ(Convert().scaleWidth, 0.0F);
  EXPECT_EQ(Convert().scaleHeight, 0.0F);
  At(8).fs_d.value = 100;
  At(9).fs_d.value = 0;
  EXPECT_EQ(Convert().scaleWidth, 0.0F);
  EXPECT_EQ(Convert().scaleHeight, 4.0F);
}

TEST_F(SettingsTest, NinetyDegreesAreHalfPi) {
  At(11).ad.value = Fixed(90);
  At(25).ad.value = Fixed(-90);
  At(43).ad.value = Fixed(180);
  const LX_Info info = Convert();
  EXPECT_EQ(info.rotation, 1.5707963267948966);
  EXPECT_EQ(info.irisRotation, -1.5707963267948966);
  EXPECT_EQ(info.directionalAngle, 3.141592653589793);
}

// 256 degrees and 1/65536: the fixed value 16777217 has 25 bits and loses its last in single
// precision.
TEST_F(SettingsTest, AnglesPassThroughSinglePrecision) {
  At(11).ad.value = Fixed(256) + 1;
  EXPECT_EQ(Convert().rotation, 256.0 * 3.141592653589793 / 180);
}

TEST_F(SettingsTest, KeepsTheDivisor65566OfPoints) {
  struct Case {
    PF_Fixed fixed;
    std::int32_t pixels;
  };
  const std::array<Case, 10> cases = {{
      {0, 0},
      {Fixed(1000), 999},   // 65536000 / 65566 = 999.54
      {Fixed(1920), 1919},  // 125829120 / 65566 = 1919.12
      {Fixed(1), 0},        // 65536 / 65566 = 0.9995
      {65566, 1},
      {65565, 0},
      {-98304, -1},  // -1.5 px: -1.4993, toward zero
      {-65566, -1},
      {-65536, 0},
      {std::numeric_limits<PF_Fixed>::max(), 32753},  // 2147483648 / 65566 = 32753.007
  }};
  const std::array<int, 3> points = {7, 32, 38};
  for (const Case& test : cases) {
    for (const int index : points) {
      records_ = {};
      At(index).td.x_value = test.fixed;
      LX_Info info = Convert();
      EXPECT_EQ(index == 7    ? info.positionX
                : index == 32 ? info.opticalCenterX
                              : info.trailCenterX,
                test.pixels);
      EXPECT_EQ(info.positionY + info.opticalCenterY + info.trailCenterY, 0);
      records_ = {};
      At(index).td.y_value = test.fixed;
      info = Convert();
      EXPECT_EQ(index == 7    ? info.positionY
                : index == 32 ? info.opticalCenterY
                              : info.trailCenterY,
                test.pixels);
      EXPECT_EQ(info.positionX + info.opticalCenterX + info.trailCenterX, 0);
    }
  }
}

TEST_F(SettingsTest, CustomLayerIsLeftAlone) {
  LX_Info info = {};
  PF_LayerDef layer = {};
  info.customLayer = &layer;
  EXPECT_EQ(SetInfoFromParam(&info, pointers_.data()), PF_Err_NONE);
  EXPECT_EQ(info.customLayer, &layer);
}

}  // namespace
}  // namespace vitrell
