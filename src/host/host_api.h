// The host's effect interface: everything that the effect and a substitute host need of it.
#ifndef VITRELL_HOST_HOST_API_H_
#define VITRELL_HOST_HOST_API_H_

#include "host/host_callbacks.h"
#include "host/host_records.h"
#include "host/host_types.h"

// Type of the one function an effect exports.
using PF_EntryPoint = PF_Err (*)(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                 PF_ParamDef* params[], PF_LayerDef* output, void* extra);

#endif  // VITRELL_HOST_HOST_API_H_
