// Command dispatch: the body of the effect's one exported function.
#include "shell/entry_point.h"

#include "host/result.h"
#include "host/suite_handler.h"
#include "render/render_driver.h"
#include "shell/command_records.h"
#include "shell/panel.h"
#include "shell/parameters.h"
#include "shell/strings.h"

namespace vitrell {
namespace {

void About(const PF_InData* inData, PF_OutData* outData) {
  AEGP_SuiteHandler suites(inData->pica_basicP);
  // Kept: a carriage return joins the two strings; the lines of the second end in line feeds.
  suites.ANSICallbacksSuite1()->sprintf(outData->return_msg, "%s\r%s",
                                        GetStringPtr(STR_PRODUCT_NAME), GetStringPtr(STR_ABOUT));
}

void GlobalSetup(PF_OutData* outData) {
  outData->my_version = kEffectVersion;
  outData->out_flags = kEffectOutFlags;
  outData->out_flags2 = kEffectOutFlags2;
}

PF_Err ParamsSetup(PF_InData* inData, PF_OutData* outData) {
  RETURN_IF_ERROR(AddAllParameters(inData));
  outData->num_params = PARAM_COUNT;
  return PF_Err_NONE;
}

PF_Err Dispatch(PF_Cmd cmd, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                PF_LayerDef* output) {
  switch (cmd) {
    case PF_Cmd_ABOUT:
      About(inData, outData);
      return PF_Err_NONE;
    case PF_Cmd_GLOBAL_SETUP:
      GlobalSetup(outData);
      return PF_Err_NONE;
    case PF_Cmd_PARAMS_SETUP:
      return ParamsSetup(inData, outData);
    case PF_Cmd_RENDER:
      return RenderFrame(inData, outData, params, output);
    case PF_Cmd_USER_CHANGED_PARAM:
    case PF_Cmd_UPDATE_PARAMS_UI:
      UserChangedParam(inData, params);
      return PF_Err_NONE;
    default:
      return PF_Err_NONE;
  }
}

}  // namespace

PF_Err DispatchCommand(PF_Cmd cmd, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                       PF_LayerDef* output) {
  if (!HasRecords(cmd, inData, outData, params, output)) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  try {
    return Dispatch(cmd, inData, outData, params, output);
  } catch (const PF_Err& thrown) {
    return thrown;
  }
}

}  // namespace vitrell
