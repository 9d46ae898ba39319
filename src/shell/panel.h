// The parameter panel: which controls are greyed out under the current settings.
#ifndef VITRELL_SHELL_PANEL_H_
#define VITRELL_SHELL_PANEL_H_

#include "base/render_records.h"
#include "host/host_api.h"

namespace vitrell {

// Reserved for presets. Nothing reads or writes it, so that it stays zero.
extern LX_Info g_preset_infos[2];

// Greys out or enables controls in the host's own records and asks the host to redraw them, the
// same ones whichever parameter changed. Failed redraws are ignored; a missing suite throws. Takes
// no lock.
void UserChangedParam(PF_InData* inData, PF_ParamDef* params[]);

}  // namespace vitrell

#endif  // VITRELL_SHELL_PANEL_H_
