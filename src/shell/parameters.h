// The effect's parameters: their places in the host's array, their ids in saved projects, and
// everything the host is told about them.
#ifndef VITRELL_SHELL_PARAMETERS_H_
#define VITRELL_SHELL_PARAMETERS_H_

#include <array>
#include <cstdint>

#include "host/host_api.h"
#include "shell/strings.h"

namespace vitrell {

// Positions in the host's parameter array.
enum ParamIndex : std::int32_t {
  PARAM_INPUT = 0,
  PARAM_LENS_GROUP,
  PARAM_TYPE,
  PARAM_CUSTOM_LAYER,
  PARAM_PLACEMENT,
  PARAM_INVERT_ALPHA,
  PARAM_FEATHER,
  PARAM_POSITION,
  PARAM_SCALE,
  PARAM_SCALE_WIDTH,
  PARAM_SCALE_HEIGHT,
  PARAM_ROTATION,
  PARAM_LENS_GROUP_END,
  PARAM_BLUR_GROUP,
  PARAM_FAST_GROUP,
  PARAM_FAST_VISIBLE,
  PARAM_FAST_AMOUNT,
  PARAM_FAST_BLUR_MAP,
  PARAM_FAST_GROUP_END,
  PARAM_REALISTIC_GROUP,
  PARAM_REALISTIC_VISIBLE,
  PARAM_REALISTIC_AMOUNT,
  PARAM_IRIS_SIDES,
  PARAM_IRIS_ROUNDNESS,
  PARAM_IRIS_ASPECT_RATIO,
  PARAM_IRIS_ROTATION,
  PARAM_REALISTIC_BLUR_MAP,
  PARAM_REALISTIC_GROUP_END,
  PARAM_OPTICAL_GROUP,
  PARAM_OPTICAL_VISIBLE,
  PARAM_OPTICAL_AMOUNT,
  PARAM_OPTICAL_LENS_CENTER,
  PARAM_OPTICAL_CENTER,
  PARAM_OPTICAL_GROUP_END,
  PARAM_TRAIL_GROUP,
  PARAM_TRAIL_VISIBLE,
  PARAM_TRAIL_AMOUNT,
  PARAM_TRAIL_LENS_CENTER,
  PARAM_TRAIL_CENTER,
  PARAM_TRAIL_GROUP_END,
  PARAM_DIRECTIONAL_GROUP,
  PARAM_DIRECTIONAL_VISIBLE,
  PARAM_DIRECTIONAL_AMOUNT,
  PARAM_DIRECTION,
  PARAM_DIRECTIONAL_GROUP_END,
  PARAM_BLUR_GROUP_END,
  PARAM_OTHER_GROUP,
  PARAM_LIGHTNESS_GROUP,
  PARAM_LIGHTNESS_VISIBLE,
  PARAM_LIGHTNESS_AMOUNT,
  PARAM_LIGHTNESS_GROUP_END,
  PARAM_COLOR_GROUP,
  PARAM_COLOR_VISIBLE,
  PARAM_COLOR,
  PARAM_COLOR_OPACITY,
  PARAM_COLOR_GROUP_END,
  PARAM_CHROMATIC_GROUP,
  PARAM_CHROMATIC_VISIBLE,
  PARAM_RED_CYAN,
  PARAM_GREEN_MAGENTA,
  PARAM_BLUE_YELLOW,
  PARAM_CHROMATIC_GROUP_END,
  PARAM_OTHER_GROUP_END,
  PARAM_INTENSITY,
  PARAM_MODE,
  PARAM_COUNT,
};
static_assert(PARAM_COUNT == 65);

// One row of the parameter table. Which of the values count depends on the type.
struct ParameterRow {
  ParamIndex index;
  A_long id;  // Stored in saved projects; never changes.
  PF_ParamType type;
  StringId name = STR_EMPTY;
  PF_ParamFlags flags = PF_ParamFlag_NONE;
  PF_ParamUIFlags uiFlags = PF_PUI_NONE;
  StringId text = STR_EMPTY;  // The popup's choices, or the checkbox's label.
  A_short choiceCount = 0;    // Popups.
  A_short defaultValue = 0;   // Popups (1-based) and checkboxes (1 on).
  float validMin = 0;         // Sliders, from here on.
  float validMax = 0;
  float sliderMin = 0;
  float sliderMax = 0;
  float sliderDefault = 0;
  PF_Precision precision = PF_Precision_INTEGER;
  PF_ValueDisplayFlags display = PF_ValueDisplayFlag_NONE;
};

// The input layer, which the host adds itself, and the 64 registered controls; the row of index i
// stands at position i.
extern const std::array<ParameterRow, PARAM_COUNT> kParameterTable;

// Registers the 64 controls in order. Stops at the first error of the host and returns it.
[[nodiscard]] PF_Err AddAllParameters(PF_InData* inData);

}  // namespace vitrell

#endif  // VITRELL_SHELL_PARAMETERS_H_
