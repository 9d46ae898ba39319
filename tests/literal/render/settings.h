// The settings of one render, converted from the host's parameter array.
#ifndef VITRELL_LITERAL_RENDER_SETTINGS_H_
#define VITRELL_LITERAL_RENDER_SETTINGS_H_

#include "host/host_api.h"
#include "literal/base/types.h"

namespace vitrell::literal {

// `params` is the host's array of 65 records, index 0 being the input layer. Every field but
// customLayer is written; nothing is checked.
Settings SettingsFromParams(const PF_ParamDef* const* params);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_RENDER_SETTINGS_H_
