// The smallest effect module: it answers every command with success.
#include "host/host_api.h"

extern "C" __attribute__((visibility("default"))) PF_Err EntryPointFunc(PF_Cmd, PF_InData*,
                                                                        PF_OutData* out,
                                                                        PF_ParamDef*[],
                                                                        PF_LayerDef*, void*) {
  out->num_params = 1;
  return PF_Err_NONE;
}
