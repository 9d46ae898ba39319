// The parameter panel: which controls are greyed out for the chosen settings.
#ifndef VITRELL_SHELL_PANEL_H_
#define VITRELL_SHELL_PANEL_H_

#include "base/render_records.h"
#include "host/host_api.h"

namespace vitrell {

// Reserved for presets; nothing reads or writes it, so that it stays all zeros.
extern LX_Info g_preset_infos[2];

// Greys out and enables controls in the host's own records and asks the host to redraw them. Runs
// the same way whichever parameter changed. Failing redraws are ignored; a missing suite throws.
// Takes no lock.
void UserChangedParam(PF_InData* inData, PF_ParamDef* params[]);

}  // namespace vitrell

#endif  // VITRELL_SHELL_PANEL_H_
