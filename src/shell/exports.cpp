// The effect's one exported symbol.
#include "host/host_api.h"
#include "shell/entry_point.h"

extern "C" __attribute__((visibility("default"))) PF_Err EntryPointFunc(
    PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
    PF_LayerDef* output, void* /*extra*/) {
  return vitrell::DispatchCommand(cmd, in_data, out_data, params, output);
}
