// Checks that the host passed the records that a command needs.
#include "shell/command_records.h"

#include <algorithm>
#include <iterator>

#include "shell/parameters.h"

namespace vitrell {
namespace {

bool CanAddParameters(const PF_InData* inData) {
  return inData != nullptr && inData->utils != nullptr && inData->utils->ansi.strcpy != nullptr &&
         inData->inter.add_param != nullptr;
}

bool CanRender(const PF_InData* inData) {
  if (inData == nullptr || inData->utils == nullptr) {
    return false;
  }
  const PF_InteractCallbacks& inter = inData->inter;
  const PF_UtilCallbacks& utils = *inData->utils;
  return inter.checkout_param != nullptr && inter.checkin_param != nullptr &&
         inter.abort != nullptr && utils.new_world != nullptr && utils.dispose_world != nullptr &&
         utils.copy != nullptr && utils.ansi.sin != nullptr && utils.ansi.cos != nullptr &&
         utils.ansi.sqrt != nullptr;
}

// The records of groups are never read, and the custom layer's is checked out instead.
bool HasRenderParameters(const PF_ParamDef* const params[]) {
  return params != nullptr &&
         std::all_of(kParameterTable.begin(), kParameterTable.end(), [&](const ParameterRow& row) {
           return params[row.index] != nullptr || row.type == PF_Param_GROUP_START ||
                  row.type == PF_Param_GROUP_END || row.index == PARAM_CUSTOM_LAYER;
         });
}

bool HasPanelParameters(const PF_ParamDef* const params[]) {
  constexpr ParamIndex kShown[] = {
      PARAM_TYPE,           PARAM_CUSTOM_LAYER,
      PARAM_PLACEMENT,      PARAM_INVERT_ALPHA,
      PARAM_FEATHER,        PARAM_SCALE,
      PARAM_SCALE_WIDTH,    PARAM_SCALE_HEIGHT,
      PARAM_ROTATION,       PARAM_OPTICAL_LENS_CENTER,
      PARAM_OPTICAL_CENTER, PARAM_TRAIL_LENS_CENTER,
      PARAM_TRAIL_CENTER,
  };
  return params != nullptr && std::all_of(std::begin(kShown), std::end(kShown),
                                          [&](ParamIndex i) { return params[i] != nullptr; });
}

}  // namespace

bool HasRecords(PF_Cmd cmd, const PF_InData* inData, const PF_OutData* outData,
                const PF_ParamDef* const params[], const PF_LayerDef* output) {
  switch (cmd) {
    case PF_Cmd_ABOUT:
      return inData != nullptr && outData != nullptr;
    case PF_Cmd_GLOBAL_SETUP:
      return outData != nullptr;
    case PF_Cmd_PARAMS_SETUP:
      return CanAddParameters(inData) && outData != nullptr;
    case PF_Cmd_RENDER:
      return CanRender(inData) && HasRenderParameters(params) && output != nullptr;
    case PF_Cmd_USER_CHANGED_PARAM:
    case PF_Cmd_UPDATE_PARAMS_UI:
      return inData != nullptr && HasPanelParameters(params);
    default:
      return true;
  }
}

}  // namespace vitrell
