// Converts the host's parameters into the settings of one render.
#ifndef VITRELL_RENDER_SETTINGS_H_
#define VITRELL_RENDER_SETTINGS_H_

#include "base/render_records.h"
#include "host/host_api.h"

namespace vitrell {

// Converts the host's parameters; writes every field of info but customLayer. Nothing is validated:
// whatever the host hands over is converted as it stands. Always returns PF_Err_NONE.
PF_Err SetInfoFromParam(PF_InData* inData, LX_Info* info, PF_ParamDef* params[]);

}  // namespace vitrell

#endif  // VITRELL_RENDER_SETTINGS_H_
