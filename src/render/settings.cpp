// Converts the host's parameters into the settings of one render.
#include "render/settings.h"

#include "base/numeric.h"
#include "base/parameter_index.h"

namespace vitrell {
namespace {

constexpr float kFixedToDegrees = 1.5258789e-05F;  // 1 / 65536.

// Kept: 65566, not 65536, so that saved projects keep their look. Positions come out about 0.046 %
// too small, which in common frame sizes is one pixel after truncation.
constexpr float kPointDivisor = 65566.0F;

std::uint8_t Checkbox(const PF_ParamDef* param) {
  return static_cast<std::uint8_t>(static_cast<std::uint32_t>(param->u.bd.value));
}

float Slider(const PF_ParamDef* param) { return static_cast<float>(param->u.fs_d.value); }

float Percent(const PF_ParamDef* param) { return Slider(param) / 100.0F; }

// Kept: the chromatic percentages, unlike all others, are divided in double precision.
float ChromaticPercent(const PF_ParamDef* param) {
  return static_cast<float>(param->u.fs_d.value / 100.0);
}

double AngleRad(const PF_ParamDef* param) {
  const float degrees = static_cast<float>(param->u.ad.value) * kFixedToDegrees;
  return static_cast<double>(degrees) * kPi / 180;
}

std::int32_t Pixels(PF_Fixed coordinate) {
  return TruncateToInt32(static_cast<float>(coordinate) / kPointDivisor);
}

void SetLens(PF_ParamDef* const params[], LX_Info* info) {
  info->lensType = params[PARAM_TYPE]->u.pd.value;
  info->placement = params[PARAM_PLACEMENT]->u.pd.value;
  info->invertAlpha = Checkbox(params[PARAM_INVERT_ALPHA]);
  info->feather = Percent(params[PARAM_FEATHER]);
  info->positionX = Pixels(params[PARAM_POSITION]->u.td.x_value);
  info->positionY = Pixels(params[PARAM_POSITION]->u.td.y_value);
  const float scale = Slider(params[PARAM_SCALE]);
  info->scaleWidth = Percent(params[PARAM_SCALE_WIDTH]) * scale / 100.0F;
  info->scaleHeight = Percent(params[PARAM_SCALE_HEIGHT]) * scale / 100.0F;
  info->rotation = AngleRad(params[PARAM_ROTATION]);
}

void SetFastAndRealisticBlur(PF_ParamDef* const params[], LX_Info* info) {
  info->fastBlurVisible = Checkbox(params[PARAM_FAST_VISIBLE]);
  info->fastBlurAmount = Slider(params[PARAM_FAST_AMOUNT]);
  info->fastBlurUseLensAsBlurMap = Checkbox(params[PARAM_FAST_BLUR_MAP]);
  info->realisticVisible = Checkbox(params[PARAM_REALISTIC_VISIBLE]);
  info->realisticAmount = Percent(params[PARAM_REALISTIC_AMOUNT]);
  info->irisSides = params[PARAM_IRIS_SIDES]->u.pd.value;
  info->irisRoundness = Percent(params[PARAM_IRIS_ROUNDNESS]);
  info->irisAspectRatio = Slider(params[PARAM_IRIS_ASPECT_RATIO]);
  info->irisRotation = AngleRad(params[PARAM_IRIS_ROTATION]);
  info->realisticUseLensAsBlurMap = Checkbox(params[PARAM_REALISTIC_BLUR_MAP]);
}

void SetOpticalTrailDirectional(PF_ParamDef* const params[], LX_Info* info) {
  info->opticalVisible = Checkbox(params[PARAM_OPTICAL_VISIBLE]);
  info->opticalAmount = Slider(params[PARAM_OPTICAL_AMOUNT]);
  info->opticalCenterOfLens = Checkbox(params[PARAM_OPTICAL_LENS_CENTER]);
  info->opticalCenterX = Pixels(params[PARAM_OPTICAL_CENTER]->u.td.x_value);
  info->opticalCenterY = Pixels(params[PARAM_OPTICAL_CENTER]->u.td.y_value);
  info->trailVisible = Checkbox(params[PARAM_TRAIL_VISIBLE]);
  info->trailAmount = Percent(params[PARAM_TRAIL_AMOUNT]);
  info->trailCenterOfLens = Checkbox(params[PARAM_TRAIL_LENS_CENTER]);
  info->trailCenterX = Pixels(params[PARAM_TRAIL_CENTER]->u.td.x_value);
  info->trailCenterY = Pixels(params[PARAM_TRAIL_CENTER]->u.td.y_value);
  info->directionalVisible = Checkbox(params[PARAM_DIRECTIONAL_VISIBLE]);
  info->directionalAmount = Slider(params[PARAM_DIRECTIONAL_AMOUNT]);
  info->directionalAngle = AngleRad(params[PARAM_DIRECTION]);
}

void SetToneAndBlend(PF_ParamDef* const params[], LX_Info* info) {
  info->lightnessVisible = Checkbox(params[PARAM_LIGHTNESS_VISIBLE]);
  info->lightnessAmount = Percent(params[PARAM_LIGHTNESS_AMOUNT]);
  info->colorVisible = Checkbox(params[PARAM_COLOR_VISIBLE]);
  info->colorOpacity = Percent(params[PARAM_COLOR_OPACITY]);
  info->colorValue = params[PARAM_COLOR]->u.cd.value;
  info->chromaticVisible = Checkbox(params[PARAM_CHROMATIC_VISIBLE]);
  info->chromaticRedCyan = ChromaticPercent(params[PARAM_RED_CYAN]);
  info->chromaticGreenMagenta = ChromaticPercent(params[PARAM_GREEN_MAGENTA]);
  info->chromaticBlueYellow = ChromaticPercent(params[PARAM_BLUE_YELLOW]);
  info->intensity = Percent(params[PARAM_INTENSITY]);
  info->mode = params[PARAM_MODE]->u.pd.value;
}

}  // namespace

PF_Err SetInfoFromParam(LX_Info* info, PF_ParamDef* params[]) {
  SetLens(params, info);
  SetFastAndRealisticBlur(params, info);
  SetOpticalTrailDirectional(params, info);
  SetToneAndBlend(params, info);
  return PF_Err_NONE;
}

}  // namespace vitrell
