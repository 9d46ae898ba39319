// The effect's parameters: their positions in the host's array, their ids in saved projects, and
// everything that is registered with the host.
#ifndef VITRELL_SHELL_PARAMETERS_H_
#define VITRELL_SHELL_PARAMETERS_H_

#include <array>
#include <cstdint>

#include "base/parameter_index.h"
#include "host/host_api.h"
#include "shell/strings.h"

namespace vitrell {

// One row of the parameter table. Which values apply depends on the type.
struct ParameterRow {
  ParamIndex index;
  A_long id;  // Stored in saved projects; never changes.
  PF_ParamType type;
  StringId name = STR_EMPTY;
  PF_ParamFlags flags = PF_ParamFlag_NONE;
  PF_ParamUIFlags uiFlags = PF_PUI_NONE;
  StringId text = STR_EMPTY;  // The popup's choices, or the checkbox's label.
  A_short choiceCount = 0;    // Popups.
  A_short defaultValue = 0;   // Popups (1-based) and checkboxes (1 is on).
  float validMin = 0;         // From here on: sliders.
  float validMax = 0;
  float sliderMin = 0;
  float sliderMax = 0;
  float sliderDefault = 0;
  PF_Precision precision = PF_Precision_INTEGER;
  PF_ValueDisplayFlags display = PF_ValueDisplayFlag_NONE;
};

// The input layer, which the host adds itself, and the 64 registered controls.
// kParameterTable[i].index equals i.
extern const std::array<ParameterRow, PARAM_COUNT> kParameterTable;

// Registers the 64 controls in order. Returns the host's first error and registers nothing after
// it.
[[nodiscard]] PF_Err AddAllParameters(PF_InData* inData);

}  // namespace vitrell

#endif  // VITRELL_SHELL_PARAMETERS_H_
