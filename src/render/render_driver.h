// The render command: from the host's parameters to the finished output world.
#ifndef VITRELL_RENDER_RENDER_DRIVER_H_
#define VITRELL_RENDER_RENDER_DRIVER_H_

#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

// Renders one frame from params[0] (and the custom layer) into output. A recursive mutex, held from
// start to end, lets only one thread of the process render at a time. Returns the code of the first
// stage that failed; a missing suite throws. On every path worlds are disposed of, the mask is
// freed and suites are released.
//
// Kept: left and top of the input layer's extent hint are set to 0 in the host's own record.
[[nodiscard]] PF_Err RenderFrame(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                                 PF_LayerDef* output);

// The final blend as a stage: blends call.io.src over call.inputLayer into call.io.dst. Failures of
// the pass itself are ignored. Returns PF_Err_BAD_CALLBACK_PARAM if the layer's rows are too short
// for the pixel format that the host reports, and PF_Err_OUT_OF_MEMORY if a table cannot be
// allocated; a missing suite throws.
[[nodiscard]] PF_Err RenderEffect(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_RENDER_RENDER_DRIVER_H_
