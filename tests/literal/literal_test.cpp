// The literal versions against numbers worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "literal/base/pixel_access.h"
#include "literal/base/truncate.h"
#include "literal/blur/blur_dispatcher.h"
#include "literal/blur/fast/fast_blur.h"
#include "literal/colour/blend_modes.h"
#include "literal/colour/chromatic_aberration.h"
#include "literal/colour/tone.h"
#include "literal/lens/lens_mask.h"
#include "literal/lens/lens_stage.h"
#include "literal/render/render_driver.h"
#include "literal/render/settings.h"

namespace vitrell::literal {
namespace {

const Maths kMaths = {std::sin, std::cos, std::tan, std::atan, std::sqrt, std::pow};

// Every pixel (255 or white, red(row, column), 0, 0).
World MakeWorld(std::int32_t width, std::int32_t height, bool deep,
                std::uint16_t (*red)(std::int32_t row, std::int32_t column)) {
  World world;
  world.deep = deep;
  world.width = width;
  world.height = height;
  world.extent = {0, 0, width, height};
  for (std::int32_t row = 0; row < height; ++row) {
    for (std::int32_t column = 0; column < width; ++column) {
      world.pixels.push_back(
          {{static_cast<std::uint16_t>(deep ? 32768 : 255), red(row, column), 0, 0}});
    }
  }
  return world;
}

std::uint16_t ByPosition(std::int32_t row, std::int32_t column) {
  return static_cast<std::uint16_t>(row * 10 + column);
}

// A mask of `value` everywhere, for worlds of this size.
Mask UniformMask(std::int32_t width, std::int32_t height, double value) {
  return {{0, 0, width, height},
          std::vector<double>(static_cast<std::size_t>(width * height), value)};
}

Settings CircleSettings(std::int32_t x, std::int32_t y) {
  Settings settings;
  settings.positionX = x;
  settings.positionY = y;
  return settings;
}

double MaskAt(const Mask& mask, std::int32_t x, std::int32_t y) {
  World world;
  world.extent = mask.rect;
  return GetLensMask(mask, x, y, world);
}

TEST(LiteralTruncateTest, LeavesInt32OnlyAsItsMinimum) {
  EXPECT_EQ(TruncateToInt(-1.9), -1);
  EXPECT_EQ(TruncateToInt(2147483647.9), 2147483647);
  EXPECT_EQ(TruncateToInt(2147483648.0), INT32_MIN);
  EXPECT_EQ(TruncateToInt(-2147483648.9), INT32_MIN);
  EXPECT_EQ(TruncateToInt(-3e9), INT32_MIN);
  EXPECT_EQ(TruncateToInt(std::nan("")), INT32_MIN);
  EXPECT_EQ(ChannelFromReal(-1.0, false), 255);
  EXPECT_EQ(ChannelFromReal(300.7, false), 44);
  EXPECT_EQ(ChannelFromReal(65537.0, true), 1);
  EXPECT_EQ(ChannelFromReal(std::nan(""), true), 0);
}

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

TEST(LiteralLensMaskTest, CircleIsCentredOnItsRadius) {
  const Mask mask = BuildLensMask(CircleSettings(0, 0), kMaths, {0, 0, 360, 1}, 1000, 1, {});
  EXPECT_EQ(MaskAt(mask, 349, 0), 1.0);
  EXPECT_NEAR(MaskAt(mask, 350, 0), 0.5, 1e-6);
  EXPECT_EQ(MaskAt(mask, 351, 0), 0.0);
  EXPECT_EQ(MaskAt(mask, 360, 0), 0.0);
}

TEST(LiteralLensMaskTest, NoneIsInsideAndInvertsToOutside) {
  Settings settings = CircleSettings(0, 0);
  settings.lensType = 1;
  EXPECT_EQ(BuildLensMask(settings, kMaths, {0, 0, 2, 2}, 2, 2, {}).values,
            std::vector<double>(4, 1.0));
  settings.invertAlpha = 1;
  EXPECT_EQ(BuildLensMask(settings, kMaths, {0, 0, 2, 2}, 2, 2, {}).values,
            std::vector<double>(4, 0.0));
  settings.scaleHeight = 0;
  EXPECT_EQ(BuildLensMask(settings, kMaths, {0, 0, 2, 2}, 2, 2, {}).values,
            std::vector<double>(4, 1.0));
  settings.invertAlpha = 2;
  EXPECT_EQ(BuildLensMask(settings, kMaths, {0, 0, 2, 2}, 2, 2, {}).values,
            std::vector<double>(4, 0.0));
}

TEST(LiteralLensMaskTest, RectangleDistances) {
  // Half-sizes 20 and 10, band 10 x 0.4 = 4: inner half-sizes 18 and 8.
  EXPECT_EQ(GetDistanceKWithRectMode(18, -8, 0.4, 10, 20, kMaths), 0);
  EXPECT_DOUBLE_EQ(GetDistanceKWithRectMode(19, 0, 0.4, 10, 20, kMaths), 0.25);
  EXPECT_DOUBLE_EQ(GetDistanceKWithRectMode(0, -11, 0.4, 10, 20, kMaths), 0.75);
  EXPECT_DOUBLE_EQ(GetDistanceKWithRectMode(-3, 10, 0.4, 10, 20, kMaths), 0.5);
  EXPECT_EQ(GetDistanceKWithRectMode(0, 30, 0.4, 10, 20, kMaths), 1);
  // k = 3 is above 2: inner half-sizes are b - min and a - min, 10 and 0; the band is 30.
  EXPECT_DOUBLE_EQ(GetDistanceKWithRectMode(25, 0, 3, 10, 20, kMaths), 0.5);
}

TEST(LiteralLensMaskTest, KeepsUpwardSegmentAsItsFirstPoint) {
  EXPECT_DOUBLE_EQ(GetDistanceFromPtToSegLine(3, 4, 0, 0, 10, 0, kMaths), 4);
  EXPECT_DOUBLE_EQ(GetDistanceFromPtToSegLine(13, 4, 0, 0, 10, 0, kMaths), 5);
  EXPECT_DOUBLE_EQ(GetDistanceFromPtToSegLine(-3, 4, 0, 0, -10, 0, kMaths), 5);
}

TEST(LiteralLensMaskTest, TriangleCentreIsInside) {
  Settings settings = CircleSettings(50, 50);
  settings.lensType = 5;
  const Mask mask = BuildLensMask(settings, kMaths, {0, 0, 100, 100}, 100, 100, {});
  EXPECT_EQ(MaskAt(mask, 50, 50), 1.0);
  // Inradius 17.5. The point (0, -v) lies below the centre when y grows: the flat side.
  EXPECT_EQ(MaskAt(mask, 50, 67), 1.0);
  EXPECT_EQ(MaskAt(mask, 50, 72), 0.0);
  EXPECT_EQ(MaskAt(mask, 50, 20), 1.0);  // 30 above, inside the corner at 35.
  EXPECT_EQ(MaskAt(mask, 20, 20), 0.0);
}

TEST(LiteralLensMaskTest, CustomSamplesOnePixelBeforeTheCentre) {
  World image = MakeWorld(8, 8, false, ByPosition);
  Settings settings = CircleSettings(4, 4);
  settings.lensType = 6;
  settings.customLayer = &image;
  const Mask mask = BuildLensMask(settings, kMaths, {0, 0, 8, 8}, 8, 8, {0, 0, 8, 8});
  // (0.299 x 33) x 255 / 65025 at row 3, column 3; y runs the same way in the image.
  EXPECT_NEAR(MaskAt(mask, 4, 4), 0.299 * 33 / 255, 1e-15);
  EXPECT_NEAR(MaskAt(mask, 6, 5), 0.299 * 45 / 255, 1e-15);
  EXPECT_EQ(MaskAt(mask, 0, 4), 0.0);
}

TEST(LiteralLensMaskTest, RectangleOfTheReadingWorldLeadsBeyondTheMask) {
  const Mask mask = {{0, 0, 2, 2}, {0.1, 0.2, 0.3, 0.4}};
  World world;
  world.extent = {0, 0, 3, 3};
  EXPECT_EQ(GetLensMask(mask, 2, 0, world), 0.3);
  EXPECT_EQ(GetLensMask(mask, 0, 1, world), 0.4);
  EXPECT_EQ(GetLensMask(mask, 1, 1, world), 0.0);
  EXPECT_EQ(GetLensMask(mask, 3, 0, world), 0.0);
}

TEST(LiteralBlendTest, EightBitModes) {
  EXPECT_EQ(BlendChannel8(100, 200, 0.5, 1.0F, 1, 0), 100);
  EXPECT_EQ(BlendChannel8(200, 200, 1.0, 1.0F, 2, 0), 255);
  EXPECT_EQ(BlendChannel8(100, 50, 0.5, 0.5F, 2, 0), 75);
  EXPECT_EQ(BlendChannel8(255, 10, 1.0, 1.0F, 3, 0), 255);
  EXPECT_EQ(BlendChannel8(51, 51, 1.0, 1.0F, 3, 0), 91);     // 1 - 0.8 x 0.8 = 0.36 of 255 is 91.8.
  EXPECT_EQ(BlendChannel8(100, 200, 0.5, 1.0F, 4, 0), 139);  // 78; 200 - 122 x 0.5.
  EXPECT_EQ(BlendChannel8(100, 200, 0.5, 0.0F, 4, 0), 200);
  EXPECT_EQ(BlendChannel8(100, 200, 0.5, 1.0F, 9, 17), 17);
}

TEST(LiteralBlendTest, SixteenBitModes) {
  EXPECT_EQ(BlendChannel16(20000, 20000, 1.0, 1.0F, 2, 0), 32768);
  EXPECT_EQ(BlendChannel16(10000, 10000, 0.5, 1.0F, 2, 0), 15000);
  EXPECT_EQ(BlendChannel16(16384, 16384, 1.0, 1.0F, 3, 0), 24576);
  EXPECT_EQ(BlendChannel16(16384, 16384, 1.0, 1.0F, 4, 0), 8192);
  EXPECT_EQ(BlendChannel16(16384, 16384, 0.5, 1.0F, 4, 0), 14336);
  EXPECT_EQ(BlendChannel16(30000, 10000, 0.25, 1.0F, 1, 0), 15000);
  EXPECT_EQ(BlendChannel16(1, 1000, 0.5, 1.0F, 7, 3000), 2000);
  // 65535 x 65535 wraps to -131071, which shifted is -4: 65535 - 65539 = -4.
  EXPECT_EQ(BlendChannel16(65535, 65535, 1.0, 1.0F, 4, 0), 65532);
}

TEST(LiteralBlendTest, ThresholdDiffersBetweenTheDepths) {
  const World back8 = MakeWorld(1, 1, false, [](auto, auto) -> std::uint16_t { return 9; });
  const World front8 = MakeWorld(1, 1, false, [](auto, auto) -> std::uint16_t { return 200; });
  World out8 = back8;
  BlendPass(back8, 0.0F, 1, UniformMask(1, 1, 0.0001), front8, out8);
  EXPECT_EQ(out8.At(0, 0).channel[1], 9);
  const World back16 = MakeWorld(1, 1, true, [](auto, auto) -> std::uint16_t { return 9; });
  const World front16 = MakeWorld(1, 1, true, [](auto, auto) -> std::uint16_t { return 200; });
  World out16 = back16;
  BlendPass(back16, 0.0F, 1, UniformMask(1, 1, 0.0001), front16, out16);
  EXPECT_EQ(out16.At(0, 0).channel[1], 200);
}

TEST(LiteralBlendTest, BackgroundOfTheOtherDepthUses32767) {
  const World back16 = MakeWorld(1, 1, true, [](auto, auto) -> std::uint16_t { return 65280; });
  World out8 = MakeWorld(1, 1, false, [](auto, auto) -> std::uint16_t { return 0; });
  const World front8 = out8;
  BlendPass(back16, 0.0F, 1, UniformMask(1, 1, 1), front8, out8);
  EXPECT_EQ(out8.At(0, 0).channel[1], 255);  // Clamped.
  LensPass(back16, false, 0, UniformMask(1, 1, 0), front8, out8);
  EXPECT_EQ(out8.At(0, 0).channel[1], 252);  // 508, not clamped, keeps its low byte.
}

TEST(LiteralLensTest, BlursMapStrengthensTheMask) {
  const World input = MakeWorld(1, 1, false, [](auto, auto) -> std::uint16_t { return 10; });
  const World src = MakeWorld(1, 1, false, [](auto, auto) -> std::uint16_t { return 110; });
  World dst = src;
  LensPass(input, false, 0, UniformMask(1, 1, 0.0001), src, dst);
  EXPECT_EQ(dst.At(0, 0).channel[1], 10);
  LensPass(input, false, 0, UniformMask(1, 1, 0.8), src, dst);
  EXPECT_EQ(dst.At(0, 0).channel[1], 90);
  LensPass(input, true, 0.5, UniformMask(1, 1, 0.8), src, dst);
  EXPECT_EQ(dst.At(0, 0).channel[1], 110);
}

TEST(LiteralToneTest, LightnessBendsAlphaToo) {
  const World src = MakeWorld(1, 1, true, [](auto, auto) -> std::uint16_t { return 16384; });
  World dst = src;
  LightnessPass(2.0, kMaths, src, dst);
  EXPECT_EQ(dst.At(0, 0).channel[1], 8192);
  EXPECT_DOUBLE_EQ(LightnessExponent(-1.0F, kMaths), 10.0);
}

TEST(LiteralToneTest, KeepsColourTargetAboveWhite) {
  const World src = MakeWorld(1, 1, true, [](auto, auto) -> std::uint16_t { return 100; });
  World dst = src;
  ColorPass(1.0F, {255, 255, 128, 0}, src, dst);
  EXPECT_EQ(dst.At(0, 0).channel[0], 65280);
  EXPECT_EQ(dst.At(0, 0).channel[2], 32768);
}

TEST(LiteralChromaticTest, FetchesFromHalfTheDistance) {
  const World src = MakeWorld(9, 9, false, ByPosition);
  World dst = src;
  ChromaticPass({0.5F, 1.0F, 1.0F}, 4, 4, UniformMask(9, 9, 1.0), src, dst);
  EXPECT_EQ(dst.At(8, 1).channel[1], 63);  // Row 4 + 4 / 2, column 4 - 1.5 truncated to -1.
  ChromaticPass({0.5F, 1.0F, 1.0F}, 4, 4, UniformMask(9, 9, 0.0001), src, dst);
  EXPECT_EQ(dst.At(8, 1).channel[1], 81);
  dst.At(8, 1).channel[1] = 5;
  ChromaticPass({0.0F, 1.0F, 1.0F}, 4, 4, UniformMask(9, 9, 1.0), src, dst);
  EXPECT_EQ(dst.At(8, 1).channel[1], 5);
}

TEST(LiteralFastBlurTest, OneRoundOfRadiusOne) {
  World src = MakeWorld(3, 1, false, ByPosition);
  src.pixels[0].channel[1] = 30;
  src.pixels[1].channel[1] = 60;
  src.pixels[2].channel[1] = 120;
  World dst = src;
  FastBlurRound(1, 0, false, {}, src, dst);
  // Before column 0 mirrors column 1, behind column 2 stands column 2 again.
  EXPECT_EQ(src.pixels[0].channel[1], 50);
  EXPECT_EQ(src.pixels[1].channel[1], 70);
  EXPECT_EQ(src.pixels[2].channel[1], 100);
  EXPECT_EQ(std::memcmp(src.pixels.data(), dst.pixels.data(), 3 * sizeof(Pixel)), 0);
}

TEST(LiteralFastBlurTest, MappedRoundWeighsByTheMask) {
  World src = MakeWorld(1, 3, false, ByPosition);
  src.pixels[0].channel[1] = 0;
  src.pixels[1].channel[1] = 200;
  src.pixels[2].channel[1] = 40;
  World dst = src;
  const Mask mask = {{0, 0, 1, 3}, {1.0, 0.5, 0.25}};
  FastBlurRound(0, 4, true, mask, src, dst);
  // Row 1: reach 2, weights 0, 1, 0.5, 0.25, 0 on 200, 0, 200, 40: 110 / 1.75 = 62.857; the blend
  // has t = (2 - 1) / 4: 150 + 15.71 + 0.5.
  EXPECT_EQ(src.pixels[1].channel[1], 166);
  // Row 2: reach 1, weights 0.5, 0.25, 0 on 200, 40, 40; t = 0 keeps the pixel.
  EXPECT_EQ(src.pixels[2].channel[1], 40);
  // Row 0: mask 1 is the plain box; rows -4 to 4 hold 200 40 40 200 0 200 40 40 200: 106.67 + 0.5.
  EXPECT_EQ(src.pixels[0].channel[1], 107);
}

TEST(LiteralTrailTest, CentreIsPulledInside) {
  Settings settings;
  settings.trailCenterOfLens = 1;
  settings.positionX = 0;
  settings.positionY = 500;
  const TrailGeometry geometry = MakeTrailGeometry(settings, kMaths, {0, 0, 100, 80});
  EXPECT_EQ(geometry.cx, 1);
  EXPECT_EQ(geometry.cy, 78);
  EXPECT_EQ(geometry.cornerDistance, 126);  // To (100, 0): sqrt(9801 + 6084) = 126.04.
}

TEST(LiteralRenderTest, PlanFollowsFeatherInSinglePrecision) {
  Settings settings;
  settings.fastBlurVisible = 1;
  settings.fastBlurUseLensAsBlurMap = 1;
  settings.fastBlurAmount = 10;
  settings.feather = 0.1F;
  EXPECT_TRUE(MakePlan(settings).mappedBlurs);
  EXPECT_FALSE(MakePlan(settings).blendBeforeLens);
  EXPECT_FALSE(MakePlan(settings).useBlurMap);
  settings.feather = 5.0F / 100.0F;
  EXPECT_FALSE(MakePlan(settings).mappedBlurs);
  EXPECT_TRUE(MakePlan(settings).blendBeforeLens);
  EXPECT_TRUE(MakePlan(settings).useBlurMap);
  EXPECT_EQ(MakePlan(settings).blurMapAmount, static_cast<double>(0.1F));
}

TEST(LiteralRenderTest, HostCopyConvertsWhiteToWhite) {
  World shallow = MakeWorld(2, 1, false, [](std::int32_t, std::int32_t column) -> std::uint16_t {
    return column == 0 ? 255 : 1;
  });
  World deep = shallow;
  deep.deep = true;
  HostCopy(shallow, deep);
  EXPECT_EQ(deep.pixels[0].channel[1], 32768);
  EXPECT_EQ(deep.pixels[1].channel[1], 129);  // 128.5 is 128.50196.
  deep.pixels[1].channel[1] = 65000;
  HostCopy(deep, shallow);
  EXPECT_EQ(shallow.pixels[1].channel[1], 255);
}

TEST(LiteralSettingsTest, ConvertsPointsAnglesAndBoxes) {
  std::vector<PF_ParamDef> records(65);
  std::vector<const PF_ParamDef*> params;
  params.reserve(records.size());
  for (const PF_ParamDef& record : records) {
    params.push_back(&record);
  }
  records[7].u.td.x_value = 125829120;
  records[7].u.td.y_value = -98304;
  records[8].u.fs_d.value = 50;
  records[9].u.fs_d.value = 300;
  records[11].u.ad.value = 90 * 65536;
  records[15].u.bd.value = 257;
  records[17].u.bd.value = 256;
  records[21].u.fs_d.value = 53;
  records[53].u.cd.value = {1, 2, 3, 4};
  const Settings settings = SettingsFromParams(params.data());
  EXPECT_EQ(settings.positionX, 1919);
  EXPECT_EQ(settings.positionY, -1);
  EXPECT_EQ(settings.scaleWidth, 1.5F);
  EXPECT_EQ(settings.scaleHeight, 0.0F);
  EXPECT_EQ(settings.rotation, 1.5707963267948966);
  EXPECT_EQ(settings.fastBlurVisible, 1);
  EXPECT_EQ(settings.fastBlurUseLensAsBlurMap, 0);
  EXPECT_EQ(settings.realisticAmount, 53.0F / 100.0F);
  EXPECT_EQ(settings.colorValue[3], 4);
}

}  // namespace
}  // namespace vitrell::literal
