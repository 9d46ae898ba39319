// The settings of one render, converted from the host's parameter array.
#include "literal/render/settings.h"

#include "literal/base/truncate.h"

namespace vitrell::literal {
namespace {

std::uint8_t Checkbox(const PF_ParamDef* param) {
  return static_cast<std::uint8_t>(static_cast<std::uint32_t>(param->u.bd.value) & 0xFFU);
}

float Slider(const PF_ParamDef* param) { return static_cast<float>(param->u.fs_d.value); }

float Percent(const PF_ParamDef* param) { return Slider(param) / 100.0F; }

float PercentInDouble(const PF_ParamDef* param) {
  return static_cast<float>(param->u.fs_d.value / 100.0);
}

double AngleRad(const PF_ParamDef* param) {
  const float degrees = static_cast<float>(param->u.ad.value) * 1.5258789e-05F;
  return static_cast<double>(degrees) * 3.141592653589793 / 180;
}

// Kept: the divisor is 65566, not 65536, so that positions drift toward the origin.
std::int32_t PointPx(PF_Fixed value) {
  return TruncateToInt(static_cast<double>(static_cast<float>(value) / 65566.0F));
}

void ReadLens(const PF_ParamDef* const* params, Settings& s) {
  s.lensType = params[2]->u.pd.value;
  s.placement = params[4]->u.pd.value;
  s.invertAlpha = Checkbox(params[5]);
  s.feather = Percent(params[6]);
  s.positionX = PointPx(params[7]->u.td.x_value);
  s.positionY = PointPx(params[7]->u.td.y_value);
  s.scaleWidth = Slider(params[9]) / 100.0F * Slider(params[8]) / 100.0F;
  s.scaleHeight = Slider(params[10]) / 100.0F * Slider(params[8]) / 100.0F;
  s.rotation = AngleRad(params[11]);
}

void ReadBlurs(const PF_ParamDef* const* params, Settings& s) {
  s.fastBlurVisible = Checkbox(params[15]);
  s.fastBlurAmount = Slider(params[16]);
  s.fastBlurUseLensAsBlurMap = Checkbox(params[17]);
  s.realisticVisible = Checkbox(params[20]);
  s.realisticAmount = Percent(params[21]);
  s.irisSides = params[22]->u.pd.value;
  s.irisRoundness = Percent(params[23]);
  s.irisAspectRatio = Slider(params[24]);
  s.irisRotation = AngleRad(params[25]);
  s.realisticUseLensAsBlurMap = Checkbox(params[26]);
  s.opticalVisible = Checkbox(params[29]);
  s.opticalAmount = Slider(params[30]);
  s.opticalCenterOfLens = Checkbox(params[31]);
  s.opticalCenterX = PointPx(params[32]->u.td.x_value);
  s.opticalCenterY = PointPx(params[32]->u.td.y_value);
  s.trailVisible = Checkbox(params[35]);
  s.trailAmount = Percent(params[36]);
  s.trailCenterOfLens = Checkbox(params[37]);
  s.trailCenterX = PointPx(params[38]->u.td.x_value);
  s.trailCenterY = PointPx(params[38]->u.td.y_value);
  s.directionalVisible = Checkbox(params[41]);
  s.directionalAmount = Slider(params[42]);
  s.directionalAngle = AngleRad(params[43]);
}

void ReadTone(const PF_ParamDef* const* params, Settings& s) {
  s.lightnessVisible = Checkbox(params[48]);
  s.lightnessAmount = Percent(params[49]);
  s.colorVisible = Checkbox(params[52]);
  s.colorValue[0] = params[53]->u.cd.value.alpha;
  s.colorValue[1] = params[53]->u.cd.value.red;
  s.colorValue[2] = params[53]->u.cd.value.green;
  s.colorValue[3] = params[53]->u.cd.value.blue;
  s.colorOpacity = Percent(params[54]);
  s.chromaticVisible = Checkbox(params[57]);
  s.chromaticRedCyan = PercentInDouble(params[58]);
  s.chromaticGreenMagenta = PercentInDouble(params[59]);
  s.chromaticBlueYellow = PercentInDouble(params[60]);
}

}  // namespace

Settings SettingsFromParams(const PF_ParamDef* const* params) {
  Settings s;
  ReadLens(params, s);
  ReadBlurs(params, s);
  ReadTone(params, s);
  s.intensity = Percent(params[63]);
  s.mode = params[64]->u.pd.value;
  return s;
}

}  // namespace vitrell::literal
