// Turns the settings of a render into its plan.
//
// As a rule a switch is on only if it is exactly 1 (saved projects may hold any byte), and an
// amount only if it is greater than 0, so that NaN is off. Tests that depart from this rule carry a
// "Kept:".
#include "render/plan.h"

#include "base/numeric.h"

namespace vitrell {
namespace {

bool IsOn(std::uint8_t visible, float amount) { return visible == 1 && amount > 0; }

// The amounts as they are compared with twice the feather, in single precision on both sides.
// Kept: the realistic amount already is a fraction and is divided by 100 a second time.
float FastFraction(const LX_Info& info) { return info.fastBlurAmount / 100.0F; }
float RealisticFraction(const LX_Info& info) { return info.realisticAmount / 100.0F; }
float TwiceTheFeather(const LX_Info& info) { return 2.0F * info.feather; }

MaskPlan PlanMask(const LX_Info& info) {
  MaskPlan plan = {
      .source = MaskSource::kEverything,
      .isInverted = info.invertAlpha == 1,
      // Any value but 0, unlike elsewhere: a mask that is complete without need does no harm.
      .isWholeNeeded = info.fastBlurUseLensAsBlurMap != 0 || info.realisticUseLensAsBlurMap != 0};
  if (!(info.scaleWidth > 0 && info.scaleHeight > 0)) {
    plan.source = MaskSource::kNothing;
  } else if (info.lensType == kLensCustom) {
    plan.source = MaskSource::kCustomLayer;
  } else if (info.lensType >= kLensCircle && info.lensType <= kLensTriangle) {
    plan.source = MaskSource::kShape;
  }
  return plan;
}

LensPlan PlanLens(const LX_Info& info) {
  // Kept: a NaN scale makes the mask empty but does not switch the stage off.
  LensPlan plan = {
      .isOn = info.lensType != kLensNone && !(info.scaleWidth <= 0) && !(info.scaleHeight <= 0),
      .isStrengthened = false,
      .strength = 0};
  // Where the feather is narrow compared with the amount, a strengthened mask replaces the blur
  // that would follow it.
  // Kept: this includes amounts of 0, and the realistic blur runs all the same.
  if (info.fastBlurVisible == 1 && info.fastBlurUseLensAsBlurMap == 1 &&
      TwiceTheFeather(info) <= FastFraction(info)) {
    plan.isStrengthened = true;
    plan.strength = FastFraction(info);
  }
  if (info.realisticVisible == 1 && info.realisticUseLensAsBlurMap == 1 &&
      TwiceTheFeather(info) <= RealisticFraction(info)) {
    plan.isStrengthened = true;
    plan.strength = RealisticFraction(info);
  }
  return plan;
}

FastBlurPlan PlanFastBlur(const LX_Info& info) {
  const bool isOn = IsOn(info.fastBlurVisible, info.fastBlurAmount);
  const std::int32_t radiusPx = TruncateToInt32(info.fastBlurAmount);
  return {
      // Kept: the blur-map switch is not tested here; with it on, the blur runs in both passes.
      .isInUniformPass = isOn,
      .isInMappedPass = isOn && info.fastBlurUseLensAsBlurMap == 1,
      // Kept: only a scale of exactly 0 makes it a copy, not a negative or a NaN one.
      .isCopy = info.scaleHeight == 0.0F || info.scaleWidth == 0.0F || info.fastBlurVisible != 1 ||
                radiusPx == 0,
      // Kept: any value of the switch but 0 counts, if the feather is wide compared with the
      // amount.
      .isByMask = info.fastBlurUseLensAsBlurMap != 0 && TwiceTheFeather(info) > FastFraction(info),
      .radiusPx = radiusPx};
}

RealisticBlurPlan PlanRealisticBlur(const LX_Info& info) {
  constexpr double kSmallestAmount = 0.0001;
  const bool isOn = IsOn(info.realisticVisible, info.realisticAmount);
  return {// Kept: exactly 0 here, exactly 1 below; any other value means neither pass.
          .isInUniformPass = isOn && info.realisticUseLensAsBlurMap == 0,
          .isInMappedPass = isOn && info.realisticUseLensAsBlurMap == 1,
          // Kept: the stage itself copies at amounts that are above 0 but not above this threshold.
          .isCopy = info.realisticVisible != 1 || !(info.realisticAmount > kSmallestAmount),
          .isByMask = info.realisticUseLensAsBlurMap != 0};
}

bool IsChromaticOn(const LX_Info& info) {
  return info.chromaticVisible == 1 &&
         (info.chromaticRedCyan > 0 || info.chromaticGreenMagenta > 0 ||
          info.chromaticBlueYellow > 0);
}

// The fast blur follows the lens only if the feather is wide compared with its amount.
bool IsMappedPassOn(const RenderPlan& plan, const LX_Info& info) {
  return (plan.fastBlur.isInMappedPass && FastFraction(info) < TwiceTheFeather(info)) ||
         plan.realisticBlur.isInMappedPass;
}

void PlanMaths(const LX_Info& info, RenderPlan* plan) {
  const bool isRealisticOn = IsOn(info.realisticVisible, info.realisticAmount);
  plan->needsPow = plan->isLightnessOn || (isRealisticOn && plan->realisticBlur.isByMask);
  plan->needsTan = plan->isOpticalOn;
  plan->needsAtan = isRealisticOn || info.lensType == kLensTriangle;
}

}  // namespace

RenderPlan MakePlan(const LX_Info& info) {
  const PixelPosition lensPosition = {info.positionX, info.positionY};
  RenderPlan plan = {};
  plan.mask = PlanMask(info);
  plan.lens = PlanLens(info);
  plan.fastBlur = PlanFastBlur(info);
  plan.realisticBlur = PlanRealisticBlur(info);
  plan.isOpticalOn = IsOn(info.opticalVisible, info.opticalAmount);
  // Kept: any value of this switch but 0 counts; the trail's must be exactly 1.
  plan.opticalCenter = info.opticalCenterOfLens != 0
                           ? lensPosition
                           : PixelPosition{info.opticalCenterX, info.opticalCenterY};
  plan.isTrailOn = IsOn(info.trailVisible, info.trailAmount);
  plan.trailCenter = info.trailCenterOfLens == 1
                         ? lensPosition
                         : PixelPosition{info.trailCenterX, info.trailCenterY};
  // Kept: the length is not tested; a line of a single point makes the stage copy.
  plan.isDirectionalOn = info.directionalVisible == 1;
  // Kept: the stage runs at an amount of 0 too.
  plan.isLightnessOn = info.lightnessVisible == 1;
  plan.isColorOn = IsOn(info.colorVisible, info.colorOpacity);
  plan.isChromaticOn = IsChromaticOn(info);
  plan.isMappedPassOn = IsMappedPassOn(plan, info);
  // Kept: with chromatic aberration on, the blend runs both before and after the mapped blurs.
  plan.isBlendBeforeLens = !plan.isMappedPassOn || plan.isChromaticOn;
  PlanMaths(info, &plan);
  return plan;
}

}  // namespace vitrell
