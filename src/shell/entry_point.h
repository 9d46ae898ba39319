// Command dispatch: the body of the effect's one exported function.
#ifndef VITRELL_SHELL_ENTRY_POINT_H_
#define VITRELL_SHELL_ENTRY_POINT_H_

#include "host/host_api.h"

namespace vitrell {

// Version 1.0.5. The develop stage is deliberate: the host compares this word with the one in the
// effect's resource.
inline constexpr A_u_long kEffectVersion = PackEffectVersion(1, 0, 5, PF_Stage_DEVELOP, 1);
inline constexpr PF_OutFlags kEffectOutFlags =
    PF_OutFlag_DEEP_COLOR_AWARE | PF_OutFlag_PIX_INDEPENDENT;
inline constexpr PF_OutFlags2 kEffectOutFlags2 =
    PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG | PF_OutFlag2_SUPPORTS_THREADED_RENDERING;
static_assert(kEffectVersion == 0x82801);
static_assert(kEffectOutFlags == 0x2000400);
static_assert(kEffectOutFlags2 == 0x8000008);

// Executes one host command and returns its error code. A thrown error code (a missing suite)
// becomes the result; a null record or callback that the command needs gives
// PF_Err_BAD_CALLBACK_PARAM. Reentrant and thread-safe; only one thread renders at a time.
PF_Err DispatchCommand(PF_Cmd cmd, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                       PF_LayerDef* output);

}  // namespace vitrell

#endif  // VITRELL_SHELL_ENTRY_POINT_H_
