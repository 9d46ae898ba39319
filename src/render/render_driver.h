// The render command: from the host's parameters to the finished output picture.
#ifndef VITRELL_RENDER_RENDER_DRIVER_H_
#define VITRELL_RENDER_RENDER_DRIVER_H_

#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

// Renders one frame from params[0] (and the custom layer) into output. Renders of one process
// exclude each other by a recursive mutex held from start to end. Answers the code of the first
// stage that failed; a missing suite throws. Clean-up runs on every path: worlds disposed of, the
// mask freed, suites released.
//
// Kept: the input layer's extent hint gets its left and top set to 0 in the host's own record.
[[nodiscard]] PF_Err RenderFrame(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                                 PF_LayerDef* output);

// The stage of the final blend: call.io.src over call.inputLayer into call.io.dst. Answers
// PF_Err_NONE whatever the host makes of it, but PF_Err_BAD_CALLBACK_PARAM when the layer's rows do
// not hold pixels of the format that the host tells, and PF_Err_OUT_OF_MEMORY; a missing suite
// throws.
[[nodiscard]] PF_Err RenderEffect(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_RENDER_RENDER_DRIVER_H_
