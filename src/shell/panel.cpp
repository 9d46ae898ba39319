// The parameter panel: which controls are greyed out under the current settings.
#include "shell/panel.h"

#include <cstdint>

#include "host/suite_handler.h"
#include "shell/parameters.h"

namespace vitrell {

LX_Info g_preset_infos[2] = {};

namespace {

// Kept: enabling a control clears its other ui flags as well.
void SetDisabled(PF_ParamDef* param, bool disabled) {
  param->ui_flags = disabled ? param->ui_flags | PF_PUI_DISABLED : PF_PUI_NONE;
}

bool IsTicked(const PF_ParamDef& checkbox) {
  return static_cast<std::uint8_t>(checkbox.u.bd.value) == 1;
}

}  // namespace

// Kept: the order of the redraws and their repetition. "Scale Width" and "Scale Height" are redrawn
// only with the collapsed twirlies; "Feather", "Scale" and "Rotation" twice.
void UserChangedParam(PF_InData* inData, PF_ParamDef* params[]) {
  AEGP_SuiteHandler suites(inData->pica_basicP);
  const PF_ParamValue type = params[PARAM_TYPE]->u.pd.value;
  const bool isNone = type == kLensNone;
  const bool isCustom = type == kLensCustom;
  for (const ParamIndex index :
       {PARAM_INVERT_ALPHA, PARAM_ROTATION, PARAM_SCALE, PARAM_SCALE_HEIGHT, PARAM_SCALE_WIDTH}) {
    SetDisabled(params[index], isNone);
  }

  const PF_ParamUtilsSuite3* const utils = suites.ParamUtilsSuite3();
  const auto update = [&](ParamIndex index) {
    // A failed redraw leaves the panel stale until the next one, and has no other effect.
    static_cast<void>(utils->PF_UpdateParamUI(inData->effect_ref, index, params[index]));
  };
  update(PARAM_INVERT_ALPHA);
  update(PARAM_ROTATION);
  update(PARAM_SCALE);

  SetDisabled(params[PARAM_CUSTOM_LAYER], !isCustom);
  SetDisabled(params[PARAM_PLACEMENT], !isCustom);
  update(PARAM_CUSTOM_LAYER);
  update(PARAM_PLACEMENT);

  SetDisabled(params[PARAM_FEATHER], isCustom || isNone);
  update(PARAM_FEATHER);

  constexpr ParamIndex kCollapsedSliders[] = {PARAM_FEATHER, PARAM_SCALE, PARAM_SCALE_HEIGHT,
                                              PARAM_SCALE_WIDTH, PARAM_ROTATION};
  for (const ParamIndex index : kCollapsedSliders) {
    params[index]->flags |= PF_ParamFlag_COLLAPSE_TWIRLY;
  }
  for (const ParamIndex index : kCollapsedSliders) {
    update(index);
  }

  SetDisabled(params[PARAM_OPTICAL_CENTER], IsTicked(*params[PARAM_OPTICAL_LENS_CENTER]));
  update(PARAM_OPTICAL_CENTER);
  SetDisabled(params[PARAM_TRAIL_CENTER], IsTicked(*params[PARAM_TRAIL_LENS_CENTER]));
  update(PARAM_TRAIL_CENTER);
  suites.ReleaseAllSuites();
}

}  // namespace vitrell
