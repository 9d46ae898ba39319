// The parameter table and its registration with the host.
#include "shell/parameters.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "host/result.h"

namespace vitrell {
namespace {

constexpr float kCurveTolerance = 0.05F;
constexpr PF_Fixed kLayerCenterPercent = 50 << 16;
constexpr PF_Pixel kOpaqueWhite = {255, 255, 255, 255};
constexpr std::size_t kMaxNameLength = 31;

constexpr auto kPercent = PF_ValueDisplayFlag_PERCENT;
constexpr auto kPlain = PF_ValueDisplayFlag_NONE;
constexpr auto kTenths = PF_Precision_TENTHS;

constexpr ParameterRow Group(ParamIndex index, StringId name,
                             PF_ParamFlags flags = PF_ParamFlag_NONE) {
  return {.index = index, .id = index, .type = PF_Param_GROUP_START, .name = name, .flags = flags};
}

constexpr ParameterRow GroupEnd(ParamIndex index) {
  return {.index = index, .id = index, .type = PF_Param_GROUP_END};
}

constexpr ParameterRow Popup(ParamIndex index, StringId name, StringId choices, A_short count,
                             A_short initial, PF_ParamFlags flags = PF_ParamFlag_NONE,
                             PF_ParamUIFlags uiFlags = PF_PUI_NONE) {
  return {.index = index,
          .id = index,
          .type = PF_Param_POPUP,
          .name = name,
          .flags = flags,
          .uiFlags = uiFlags,
          .text = choices,
          .choiceCount = count,
          .defaultValue = initial};
}

constexpr ParameterRow Checkbox(ParamIndex index, StringId label, A_short initial,
                                PF_ParamFlags flags = PF_ParamFlag_NONE) {
  return {.index = index,
          .id = index,
          .type = PF_Param_CHECKBOX,
          .flags = flags,
          .text = label,
          .defaultValue = initial};
}

struct Range {
  float validMin, validMax, sliderMin, sliderMax;
};

constexpr ParameterRow Slider(ParamIndex index, StringId name, Range range, float initial,
                              PF_Precision precision, PF_ValueDisplayFlags display) {
  return {.index = index,
          .id = index,
          .type = PF_Param_FLOAT_SLIDER,
          .name = name,
          .validMin = range.validMin,
          .validMax = range.validMax,
          .sliderMin = range.sliderMin,
          .sliderMax = range.sliderMax,
          .sliderDefault = initial,
          .precision = precision,
          .display = display};
}

constexpr ParameterRow Plain(ParamIndex index, PF_ParamType type, StringId name,
                             PF_ParamUIFlags uiFlags = PF_PUI_NONE) {
  return {.index = index, .id = index, .type = type, .name = name, .uiFlags = uiFlags};
}

// Kept: "Iris Rotation" shares the id of "Iris Roundness" and id 25 is unused; saved projects
// contain these ids.
constexpr ParameterRow IrisRotation() {
  ParameterRow row = Plain(PARAM_IRIS_ROTATION, PF_Param_ANGLE, STR_IRIS_ROTATION);
  row.id = PARAM_IRIS_ROUNDNESS;
  return row;
}

}  // namespace

constexpr std::array<ParameterRow, PARAM_COUNT> kParameterTable = {{
    {.index = PARAM_INPUT, .id = 0, .type = PF_Param_LAYER},
    Group(PARAM_LENS_GROUP, STR_LENS_GROUP),
    Popup(PARAM_TYPE, STR_TYPE, STR_TYPE_CHOICES, 6, 2, PF_ParamFlag_SUPERVISE),
    Plain(PARAM_CUSTOM_LAYER, PF_Param_LAYER, STR_CUSTOM_LAYER, PF_PUI_DISABLED),
    Popup(PARAM_PLACEMENT, STR_PLACEMENT, STR_PLACEMENT_CHOICES, 2, 1, PF_ParamFlag_NONE,
          PF_PUI_DISABLED),
    Checkbox(PARAM_INVERT_ALPHA, STR_INVERT_ALPHA, 0),
    Slider(PARAM_FEATHER, STR_FEATHER, {0, 1000, 0, 500}, 0, kTenths, kPercent),
    Plain(PARAM_POSITION, PF_Param_POINT, STR_POSITION),
    Slider(PARAM_SCALE, STR_SCALE, {0, 400, 0, 400}, 100, kTenths, kPercent),
    Slider(PARAM_SCALE_WIDTH, STR_SCALE_WIDTH, {0, 400, 0, 400}, 100, kTenths, kPercent),
    Slider(PARAM_SCALE_HEIGHT, STR_SCALE_HEIGHT, {0, 400, 0, 400}, 100, kTenths, kPercent),
    Plain(PARAM_ROTATION, PF_Param_ANGLE, STR_ROTATION),
    GroupEnd(PARAM_LENS_GROUP_END),
    Group(PARAM_BLUR_GROUP, STR_BLUR_GROUP),
    Group(PARAM_FAST_GROUP, STR_FAST_GROUP),
    Checkbox(PARAM_FAST_VISIBLE, STR_VISIBLE, 1),
    Slider(PARAM_FAST_AMOUNT, STR_AMOUNT, {0, 32768, 0, 127}, 20, kTenths, kPlain),
    Checkbox(PARAM_FAST_BLUR_MAP, STR_FAST_BLUR_MAP, 0, PF_ParamFlag_SUPERVISE),
    GroupEnd(PARAM_FAST_GROUP_END),
    Group(PARAM_REALISTIC_GROUP, STR_REALISTIC_GROUP, PF_ParamFlag_START_COLLAPSED),
    Checkbox(PARAM_REALISTIC_VISIBLE, STR_VISIBLE, 1),
    Slider(PARAM_REALISTIC_AMOUNT, STR_AMOUNT, {0, 500, 0, 100}, 0, kTenths, kPlain),
    Popup(PARAM_IRIS_SIDES, STR_IRIS_SIDES, STR_IRIS_SIDES_CHOICES, 8, 3),
    Slider(PARAM_IRIS_ROUNDNESS, STR_IRIS_ROUNDNESS, {0, 100, 0, 100}, 0, kTenths, kPercent),
    Slider(PARAM_IRIS_ASPECT_RATIO, STR_IRIS_ASPECT_RATIO, {0, 4, 0, 4}, 1, PF_Precision_HUNDREDTHS,
           kPlain),
    IrisRotation(),
    Checkbox(PARAM_REALISTIC_BLUR_MAP, STR_REALISTIC_BLUR_MAP, 0, PF_ParamFlag_SUPERVISE),
    GroupEnd(PARAM_REALISTIC_GROUP_END),
    Group(PARAM_OPTICAL_GROUP, STR_OPTICAL_GROUP, PF_ParamFlag_START_COLLAPSED),
    Checkbox(PARAM_OPTICAL_VISIBLE, STR_VISIBLE, 1),
    Slider(PARAM_OPTICAL_AMOUNT, STR_AMOUNT, {0, 180, 0, 180}, 0, kTenths, kPlain),
    Checkbox(PARAM_OPTICAL_LENS_CENTER, STR_CENTER_OF_THE_LENS, 1),
    Plain(PARAM_OPTICAL_CENTER, PF_Param_POINT, STR_CENTER),
    GroupEnd(PARAM_OPTICAL_GROUP_END),
    Group(PARAM_TRAIL_GROUP, STR_TRAIL_GROUP, PF_ParamFlag_START_COLLAPSED),
    Checkbox(PARAM_TRAIL_VISIBLE, STR_VISIBLE, 1),
    Slider(PARAM_TRAIL_AMOUNT, STR_AMOUNT, {0, 100, 0, 100}, 0, kTenths, kPercent),
    Checkbox(PARAM_TRAIL_LENS_CENTER, STR_CENTER_OF_THE_LENS, 1),
    Plain(PARAM_TRAIL_CENTER, PF_Param_POINT, STR_CENTER),
    GroupEnd(PARAM_TRAIL_GROUP_END),
    Group(PARAM_DIRECTIONAL_GROUP, STR_DIRECTIONAL_GROUP, PF_ParamFlag_START_COLLAPSED),
    Checkbox(PARAM_DIRECTIONAL_VISIBLE, STR_VISIBLE, 1),
    Slider(PARAM_DIRECTIONAL_AMOUNT, STR_AMOUNT, {0, 65536, 0, 20}, 0, kTenths, kPlain),
    Plain(PARAM_DIRECTION, PF_Param_ANGLE, STR_DIRECTION),
    GroupEnd(PARAM_DIRECTIONAL_GROUP_END),
    GroupEnd(PARAM_BLUR_GROUP_END),
    Group(PARAM_OTHER_GROUP, STR_OTHER_GROUP),
    Group(PARAM_LIGHTNESS_GROUP, STR_LIGHTNESS_GROUP, PF_ParamFlag_START_COLLAPSED),
    Checkbox(PARAM_LIGHTNESS_VISIBLE, STR_VISIBLE, 1),
    Slider(PARAM_LIGHTNESS_AMOUNT, STR_AMOUNT, {-100, 100, -100, 100}, 0, kTenths, kPercent),
    GroupEnd(PARAM_LIGHTNESS_GROUP_END),
    Group(PARAM_COLOR_GROUP, STR_COLOR_GROUP, PF_ParamFlag_START_COLLAPSED),
    Checkbox(PARAM_COLOR_VISIBLE, STR_VISIBLE, 1),
    Plain(PARAM_COLOR, PF_Param_COLOR, STR_COLOR),
    Slider(PARAM_COLOR_OPACITY, STR_OPACITY, {0, 100, 0, 100}, 0, kTenths, kPercent),
    GroupEnd(PARAM_COLOR_GROUP_END),
    Group(PARAM_CHROMATIC_GROUP, STR_CHROMATIC_GROUP, PF_ParamFlag_START_COLLAPSED),
    Checkbox(PARAM_CHROMATIC_VISIBLE, STR_VISIBLE, 1),
    Slider(PARAM_RED_CYAN, STR_RED_CYAN, {0, 100, 0, 100}, 0, kTenths, kPercent),
    Slider(PARAM_GREEN_MAGENTA, STR_GREEN_MAGENTA, {0, 100, 0, 100}, 0, kTenths, kPercent),
    Slider(PARAM_BLUE_YELLOW, STR_BLUE_YELLOW, {0, 100, 0, 100}, 0, kTenths, kPercent),
    GroupEnd(PARAM_CHROMATIC_GROUP_END),
    GroupEnd(PARAM_OTHER_GROUP_END),
    Slider(PARAM_INTENSITY, STR_INTENSITY, {0, 100, 0, 100}, 100, kTenths, kPercent),
    Popup(PARAM_MODE, STR_MODE, STR_MODE_CHOICES, 4, 1),
}};

namespace {

constexpr bool RowIsSound(const ParameterRow& row, std::size_t position) {
  if (static_cast<std::size_t>(row.index) != position ||
      std::string_view(g_strs[row.name].text).size() > kMaxNameLength) {
    return false;
  }
  if (position == PARAM_IRIS_ROTATION ? row.id != 23 : row.id != row.index) {
    return false;
  }
  const std::string_view text = g_strs[row.text].text;
  return row.type != PF_Param_POPUP ||
         std::count(text.begin(), text.end(), '|') + 1 == row.choiceCount;
}

static_assert([] {
  for (std::size_t i = 0; i < kParameterTable.size(); ++i) {
    if (!RowIsSound(kParameterTable[i], i)) {
      return false;
    }
  }
  return true;
}());

void FillSlider(const ParameterRow& row, PF_FloatSliderDef* slider) {
  slider->value = row.sliderDefault;
  slider->dephault = row.sliderDefault;
  slider->valid_min = row.validMin;
  slider->valid_max = row.validMax;
  slider->slider_min = row.sliderMin;
  slider->slider_max = row.sliderMax;
  slider->precision = row.precision;
  slider->display_flags = row.display;
  slider->fs_flags = PF_FSliderFlag_WANT_PHASE;
  slider->curve_tolerance = kCurveTolerance;
}

void FillValues(const ParameterRow& row, PF_ParamDefUnion* values) {
  switch (row.type) {
    case PF_Param_FLOAT_SLIDER:
      FillSlider(row, &values->fs_d);
      break;
    case PF_Param_POPUP:
      values->pd.value = row.defaultValue;
      values->pd.dephault = row.defaultValue;
      values->pd.num_choices = row.choiceCount;
      values->pd.u.namesptr = GetStringPtr(row.text);
      break;
    case PF_Param_CHECKBOX:
      values->bd.value = row.defaultValue;
      values->bd.dephault = static_cast<PF_Boolean>(row.defaultValue);
      values->bd.u.nameptr = GetStringPtr(row.text);
      break;
    case PF_Param_POINT:
      values->td.x_value = values->td.x_dephault = kLayerCenterPercent;
      values->td.y_value = values->td.y_dephault = kLayerCenterPercent;
      break;
    case PF_Param_COLOR:
      values->cd.value = kOpaqueWhite;
      values->cd.dephault = kOpaqueWhite;
      break;
    case PF_Param_LAYER:
      values->ld.dephault = PF_LayerDefault_NONE;
      break;
    default:  // Angles start at 0; groups have no values.
      break;
  }
}

PF_Err AddParameter(PF_InData* inData, const ParameterRow& row) {
  // Clears every byte, including padding and the unused members of the union, which an initialiser
  // need not do.
  PF_ParamDef def;
  std::memset(&def, 0, sizeof(def));
  def.param_type = row.type;
  if (row.type != PF_Param_GROUP_END) {
    inData->utils->ansi.strcpy(def.name, GetStringPtr(row.name));
  }
  FillValues(row, &def.u);
  def.flags = row.flags;
  def.ui_flags = row.uiFlags;
  def.uu.id = row.id;
  return inData->inter.add_param(inData->effect_ref, -1, &def);
}

}  // namespace

PF_Err AddAllParameters(PF_InData* inData) {
  for (std::size_t i = PARAM_INPUT + 1; i < kParameterTable.size(); ++i) {
    RETURN_IF_ERROR(AddParameter(inData, kParameterTable[i]));
  }
  return PF_Err_NONE;
}

}  // namespace vitrell
