// Turns registered records into parameters with a place and a path in the tree.
#include "headless/parameters.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <map>

namespace vitrell::headless {
namespace {

constexpr double kFixedOne = 65536.0;

std::string TextOf(const char* text) { return text != nullptr ? text : ""; }

std::vector<std::string> SplitChoices(const char* text) {
  std::vector<std::string> choices(1);
  for (const char c : TextOf(text)) {
    if (c == '|') {
      choices.emplace_back();
    } else {
      choices.back() += c;
    }
  }
  return choices;
}

template <typename Slider>
void DescribeSlider(const Slider& slider, double unit, Parameter& parameter) {
  parameter.validMin = static_cast<double>(slider.valid_min) / unit;
  parameter.validMax = static_cast<double>(slider.valid_max) / unit;
  parameter.sliderMin = static_cast<double>(slider.slider_min) / unit;
  parameter.sliderMax = static_cast<double>(slider.slider_max) / unit;
  parameter.defaultNumber = static_cast<double>(slider.dephault) / unit;
}

template <typename Slider>
void DescribeDisplay(const Slider& slider, Parameter& parameter) {
  parameter.precision = slider.precision;
  parameter.percent = (slider.display_flags & PF_ValueDisplayFlag_PERCENT) != 0;
}

void DescribeValue(const PF_ParamDef& record, Parameter& parameter) {
  const PF_ParamDefUnion& u = record.u;
  switch (record.param_type) {
    case PF_Param_FLOAT_SLIDER:
      DescribeSlider(u.fs_d, 1.0, parameter);
      DescribeDisplay(u.fs_d, parameter);
      break;
    case PF_Param_FIX_SLIDER:
      DescribeSlider(u.fd, kFixedOne, parameter);
      DescribeDisplay(u.fd, parameter);
      break;
    case PF_Param_SLIDER:
      DescribeSlider(u.sd, 1.0, parameter);
      break;
    case PF_Param_POPUP:
      parameter.choices = SplitChoices(u.pd.u.namesptr);
      parameter.defaultNumber = u.pd.dephault;
      break;
    case PF_Param_CHECKBOX:
      parameter.label = TextOf(u.bd.u.nameptr);
      parameter.defaultNumber = u.bd.dephault;
      break;
    case PF_Param_ANGLE:
      parameter.defaultNumber = u.ad.dephault / kFixedOne;
      break;
    case PF_Param_POINT:
      parameter.defaultXPercent = u.td.x_dephault / kFixedOne;
      parameter.defaultYPercent = u.td.y_dephault / kFixedOne;
      break;
    case PF_Param_COLOR:
      parameter.defaultColor = u.cd.dephault;
      break;
    default:
      break;
  }
}

}  // namespace

PF_Fixed ToFixed(double value) {
  if (std::isnan(value)) return 0;
  const double scaled = std::trunc(value * kFixedOne + (value < 0 ? -0.5 : 0.5));
  if (scaled <= std::numeric_limits<PF_Fixed>::min()) return std::numeric_limits<PF_Fixed>::min();
  if (scaled >= std::numeric_limits<PF_Fixed>::max()) return std::numeric_limits<PF_Fixed>::max();
  return static_cast<PF_Fixed>(scaled);
}

Parameter DescribeRecord(int index, const PF_ParamDef& record) {
  Parameter parameter;
  parameter.index = index;
  parameter.diskId = record.uu.id;
  parameter.type = record.param_type;
  parameter.name.assign(record.name, strnlen(record.name, sizeof(record.name)));
  parameter.flags = record.flags;
  parameter.uiFlags = parameter.uiFlagsAtSetup = record.ui_flags;
  DescribeValue(record, parameter);
  return parameter;
}

void ArrangeTree(std::vector<Parameter>& parameters) {
  std::vector<int> open;
  std::map<std::string, int> uses;
  for (Parameter& parameter : parameters) {
    if (parameter.type == PF_Param_GROUP_END && !open.empty()) open.pop_back();
    parameter.groups = open;
    parameter.path.clear();
    if (parameter.type == PF_Param_GROUP_START) open.push_back(parameter.index);
    const bool control = parameter.index > 0 && parameter.type != PF_Param_GROUP_START &&
                         parameter.type != PF_Param_GROUP_END;
    if (!control) continue;
    if (!parameter.groups.empty()) {
      const auto group = static_cast<std::size_t>(parameter.groups.back());
      parameter.path = PathWord(parameters.at(group).name) + ".";
    }
    parameter.path += PathWord(parameter.Title());
    const int use = ++uses[parameter.path];
    if (use > 1) parameter.path.append("-").append(std::to_string(use));
  }
}

}  // namespace vitrell::headless
