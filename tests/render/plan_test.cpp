// What runs in a render, and how, for every switch and amount that decides it.
#include "render/plan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace vitrell {
namespace {

constexpr float kNotANumber = NAN;

// Everything on, with amounts in the middle of their sliders; the lens drives no blur.
LX_Info EverythingOn() {
  LX_Info info = {};
  info.lensType = kLensCircle;
  info.feather = 0.5F;
  info.positionX = 11;
  info.positionY = 12;
  info.scaleWidth = info.scaleHeight = 1;
  info.fastBlurVisible = info.realisticVisible = info.opticalVisible = 1;
  info.trailVisible = info.directionalVisible = 1;
  info.lightnessVisible = info.colorVisible = info.chromaticVisible = 1;
  info.fastBlurAmount = 20;
  info.realisticAmount = 0.2F;
  info.opticalAmount = 90;
  info.opticalCenterX = 21;
  info.opticalCenterY = 22;
  info.trailAmount = 0.3F;
  info.trailCenterX = 31;
  info.trailCenterY = 32;
  info.lightnessAmount = 0.4F;
  info.colorOpacity = 0.5F;
  info.chromaticGreenMagenta = 0.1F;
  return info;
}

// Both blurs follow the lens.
LX_Info Mapped() {
  LX_Info info = EverythingOn();
  info.fastBlurUseLensAsBlurMap = info.realisticUseLensAsBlurMap = 1;
  return info;
}

TEST(PlanTest, EverythingOnRunsInTheUniformPass) {
  const RenderPlan plan = MakePlan(EverythingOn());
  EXPECT_TRUE(plan.isLightnessOn && plan.isColorOn && plan.isChromaticOn && plan.isOpticalOn);
  EXPECT_TRUE(plan.isTrailOn && plan.isDirectionalOn && plan.lens.isOn);
  EXPECT_TRUE(plan.fastBlur.isInUniformPass && plan.realisticBlur.isInUniformPass);
  EXPECT_FALSE(plan.fastBlur.isInMappedPass || plan.realisticBlur.isInMappedPass);
  EXPECT_FALSE(plan.fastBlur.isCopy || plan.realisticBlur.isCopy);
  EXPECT_FALSE(plan.fastBlur.isByMask || plan.realisticBlur.isByMask);
  EXPECT_FALSE(plan.mask.isWholeNeeded);
  EXPECT_FALSE(plan.isMappedPassOn);
  EXPECT_TRUE(plan.isBlendBeforeLens);
  EXPECT_EQ(plan.fastBlur.radiusPx, 20);
}

TEST(PlanTest, NothingOnRunsNothing) {
  const RenderPlan plan = MakePlan(LX_Info{});
  EXPECT_FALSE(plan.isLightnessOn || plan.isColorOn || plan.isChromaticOn || plan.isOpticalOn);
  EXPECT_FALSE(plan.isTrailOn || plan.isDirectionalOn || plan.lens.isOn);
  EXPECT_FALSE(plan.fastBlur.isInUniformPass || plan.realisticBlur.isInUniformPass);
  EXPECT_FALSE(plan.needsPow || plan.needsTan || plan.needsAtan);
  EXPECT_TRUE(plan.isBlendBeforeLens);
}

// Saved projects may hold any byte.
TEST(PlanTest, ASwitchIsOnWhenItIsExactlyOne) {
  for (const std::uint8_t value : {std::uint8_t{0}, std::uint8_t{2}, std::uint8_t{255}}) {
    LX_Info info = Mapped();
    info.fastBlurVisible = info.realisticVisible = info.opticalVisible = value;
    info.trailVisible = info.directionalVisible = value;
    info.lightnessVisible = info.colorVisible = info.chromaticVisible = value;
    info.invertAlpha = value;
    const RenderPlan plan = MakePlan(info);
    EXPECT_FALSE(plan.isLightnessOn || plan.isColorOn || plan.isChromaticOn || plan.isOpticalOn);
    EXPECT_FALSE(plan.isTrailOn || plan.isDirectionalOn || plan.mask.isInverted);
    EXPECT_FALSE(plan.fastBlur.isInUniformPass || plan.fastBlur.isInMappedPass);
    EXPECT_FALSE(plan.realisticBlur.isInUniformPass || plan.realisticBlur.isInMappedPass);
    EXPECT_TRUE(plan.fastBlur.isCopy && plan.realisticBlur.isCopy);
    EXPECT_FALSE(plan.lens.isStrengthened);
  }
  LX_Info inverted = EverythingOn();
  inverted.invertAlpha = 1;
  EXPECT_TRUE(MakePlan(inverted).mask.isInverted);
}

TEST(PlanTest, AnAmountIsActiveAboveZeroAndNaNIsNot) {
  for (const float amount : {0.0F, -1.0F, kNotANumber}) {
    LX_Info info = Mapped();
    info.fastBlurAmount = info.realisticAmount = info.opticalAmount = info.trailAmount = amount;
    info.colorOpacity = info.chromaticGreenMagenta = amount;
    const RenderPlan plan = MakePlan(info);
    EXPECT_FALSE(plan.isColorOn || plan.isChromaticOn || plan.isOpticalOn || plan.isTrailOn);
    EXPECT_FALSE(plan.fastBlur.isInUniformPass || plan.fastBlur.isInMappedPass);
    EXPECT_FALSE(plan.realisticBlur.isInMappedPass || plan.isMappedPassOn);
  }
}

TEST(PlanTest, KeepsLightnessOnAtAnAmountOfZero) {
  LX_Info info = EverythingOn();
  info.lightnessAmount = 0;
  EXPECT_TRUE(MakePlan(info).isLightnessOn);
}

// The two boxes are read differently, and saved projects may hold a 2.
TEST(PlanTest, KeepsTheTwoCentreSwitchesApart) {
  struct Case {
    std::uint8_t value;
    std::int32_t opticalX;
    std::int32_t trailX;
  };
  for (const Case& c : {Case{0, 21, 31}, Case{1, 11, 11}, Case{2, 11, 31}}) {
    LX_Info info = EverythingOn();
    info.opticalCenterOfLens = info.trailCenterOfLens = c.value;
    const RenderPlan plan = MakePlan(info);
    EXPECT_EQ(plan.opticalCenter.x, c.opticalX) << int{c.value};
    EXPECT_EQ(plan.trailCenter.x, c.trailX) << int{c.value};
    EXPECT_EQ(plan.opticalCenter.y, c.opticalX + 1) << int{c.value};
    EXPECT_EQ(plan.trailCenter.y, c.trailX + 1) << int{c.value};
  }
}

TEST(PlanTest, KeepsTheFastBlurInBothPassesWhenItFollowsTheLens) {
  const RenderPlan plan = MakePlan(Mapped());
  EXPECT_TRUE(plan.fastBlur.isInUniformPass && plan.fastBlur.isInMappedPass);
  EXPECT_FALSE(plan.realisticBlur.isInUniformPass);
  EXPECT_TRUE(plan.realisticBlur.isInMappedPass);
  EXPECT_TRUE(plan.isMappedPassOn);
}

// A byte of 2 is neither off nor on: the fast blur follows the mask in the uniform pass, the
// realistic blur runs in no pass.
TEST(PlanTest, KeepsABlurMapSwitchOfTwo) {
  LX_Info info = EverythingOn();
  info.fastBlurUseLensAsBlurMap = info.realisticUseLensAsBlurMap = 2;
  const RenderPlan plan = MakePlan(info);
  EXPECT_TRUE(plan.fastBlur.isInUniformPass && plan.fastBlur.isByMask && plan.mask.isWholeNeeded);
  EXPECT_FALSE(plan.fastBlur.isInMappedPass);
  EXPECT_FALSE(plan.realisticBlur.isInUniformPass || plan.realisticBlur.isInMappedPass);
  EXPECT_FALSE(plan.isMappedPassOn || plan.lens.isStrengthened);
}

// Amount 10 against feather 10: 0.1 < 0.2. Against feather 5 both sides are the same single.
TEST(PlanTest, TheFeatherDecidesBetweenMappedPassAndStrongerMask) {
  LX_Info info = EverythingOn();
  info.realisticVisible = 0;
  info.fastBlurUseLensAsBlurMap = 1;
  info.fastBlurAmount = 10;
  info.feather = 0.1F;
  RenderPlan plan = MakePlan(info);
  EXPECT_TRUE(plan.isMappedPassOn && plan.fastBlur.isByMask);
  EXPECT_FALSE(plan.lens.isStrengthened);
  info.feather = 0.05F;
  plan = MakePlan(info);
  EXPECT_FALSE(plan.isMappedPassOn || plan.fastBlur.isByMask);
  EXPECT_TRUE(plan.lens.isStrengthened);
  EXPECT_EQ(plan.lens.strength, double{0.1F});
}

// Amount 150 arrives as 1.5 and strengthens the mask by 0.015, in addition to the mapped pass.
TEST(PlanTest, KeepsTheRealisticAmountDividedTwice) {
  LX_Info info = EverythingOn();
  info.fastBlurVisible = 0;
  info.realisticUseLensAsBlurMap = 1;
  info.realisticAmount = 1.5F;
  info.feather = 0.0075F;
  const RenderPlan plan = MakePlan(info);
  EXPECT_TRUE(plan.isMappedPassOn && plan.lens.isStrengthened);
  EXPECT_EQ(plan.lens.strength, double{1.5F / 100.0F});
  info.feather = 0.008F;
  EXPECT_FALSE(MakePlan(info).lens.isStrengthened);
}

TEST(PlanTest, KeepsTwoBlendsWithChromaticAberrationAndAMappedBlur) {
  LX_Info info = Mapped();
  EXPECT_TRUE(MakePlan(info).isBlendBeforeLens && MakePlan(info).isMappedPassOn);
  info.chromaticVisible = 0;
  EXPECT_FALSE(MakePlan(info).isBlendBeforeLens);
}

TEST(PlanTest, KeepsAScaleThatIsNotANumberFromSwitchingStagesOff) {
  LX_Info info = EverythingOn();
  info.scaleWidth = kNotANumber;
  RenderPlan plan = MakePlan(info);
  EXPECT_TRUE(plan.lens.isOn);
  EXPECT_FALSE(plan.fastBlur.isCopy);
  EXPECT_EQ(plan.mask.source, MaskSource::kNothing);
  info.scaleWidth = 1;
  info.scaleHeight = -1;
  plan = MakePlan(info);
  EXPECT_FALSE(plan.lens.isOn);
  EXPECT_FALSE(plan.fastBlur.isCopy);
  EXPECT_EQ(plan.mask.source, MaskSource::kNothing);
  info.scaleHeight = 0;
  plan = MakePlan(info);
  EXPECT_FALSE(plan.lens.isOn);
  EXPECT_TRUE(plan.fastBlur.isCopy);
}

TEST(PlanTest, TheTypeDecidesWhatTheMaskIsDrawnFrom) {
  LX_Info info = EverythingOn();
  const auto source = [&info](std::int32_t type) {
    info.lensType = type;
    return MakePlan(info).mask.source;
  };
  EXPECT_EQ(source(kLensNone), MaskSource::kEverything);
  EXPECT_FALSE(MakePlan(info).lens.isOn);
  for (const auto type : {kLensCircle, kLensWideRectangle, kLensTallRectangle, kLensTriangle}) {
    EXPECT_EQ(source(type), MaskSource::kShape) << type;
  }
  EXPECT_EQ(source(kLensCustom), MaskSource::kCustomLayer);
  for (const std::int32_t type : {-1, 0, 7}) {  // No popup offers these.
    EXPECT_EQ(source(type), MaskSource::kEverything) << type;
    EXPECT_TRUE(MakePlan(info).lens.isOn) << type;
  }
}

TEST(PlanTest, FastBlurCopiesAtARadiusOfZero) {
  LX_Info info = EverythingOn();
  info.fastBlurAmount = 0.99F;
  EXPECT_TRUE(MakePlan(info).fastBlur.isCopy);
  info.fastBlurAmount = 1;
  EXPECT_FALSE(MakePlan(info).fastBlur.isCopy);
  info.fastBlurAmount = 3e9F;  // Beyond 32 bits.
  EXPECT_FALSE(MakePlan(info).fastBlur.isCopy);
  EXPECT_LT(MakePlan(info).fastBlur.radiusPx, 0);
}

TEST(PlanTest, KeepsTheRealisticBlursOwnThreshold) {
  LX_Info info = EverythingOn();
  info.realisticAmount = 0.0001F;  // As a single just below 0.0001.
  EXPECT_TRUE(MakePlan(info).realisticBlur.isInUniformPass);
  EXPECT_TRUE(MakePlan(info).realisticBlur.isCopy);
  info.realisticAmount = 0.00011F;
  EXPECT_FALSE(MakePlan(info).realisticBlur.isCopy);
}

TEST(PlanTest, MathsAreNeededWhereAStageCallsThem) {
  LX_Info info = {};
  info.lightnessVisible = 1;
  EXPECT_TRUE(MakePlan(info).needsPow);
  info = {};
  info.opticalVisible = 1;
  info.opticalAmount = 1;
  EXPECT_TRUE(MakePlan(info).needsTan);
  info = {};
  info.lensType = kLensTriangle;
  EXPECT_TRUE(MakePlan(info).needsAtan);
  info = {};
  info.realisticVisible = 1;
  info.realisticAmount = 1;
  EXPECT_TRUE(MakePlan(info).needsAtan);
  EXPECT_FALSE(MakePlan(info).needsPow);
  info.realisticUseLensAsBlurMap = 1;
  EXPECT_TRUE(MakePlan(info).needsPow);
}

}  // namespace
}  // namespace vitrell
