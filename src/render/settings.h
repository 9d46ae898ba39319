// Converts the host's parameters into the settings of one render.
#ifndef VITRELL_RENDER_SETTINGS_H_
#define VITRELL_RENDER_SETTINGS_H_

#include "base/render_records.h"
#include "host/host_api.h"

namespace vitrell {

// Converts the host's parameters and sets every field of info except customLayer. Nothing is
// validated. Always returns PF_Err_NONE.
PF_Err SetInfoFromParam(LX_Info* info, PF_ParamDef* params[]);

}  // namespace vitrell

#endif  // VITRELL_RENDER_SETTINGS_H_
