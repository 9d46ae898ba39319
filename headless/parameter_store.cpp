// Sets defaults, converts units and keeps the panel state of parameter records.
#include "headless/parameter_store.h"

#include <cstring>
#include <string>

#include "headless/host_error.h"

namespace vitrell::headless {
namespace {

void SetValueToDefault(PF_ParamDef& record) {
  PF_ParamDefUnion& u = record.u;
  switch (record.param_type) {
    case PF_Param_SLIDER:
      u.sd.value = u.sd.dephault;
      break;
    case PF_Param_FIX_SLIDER:
      u.fd.value = u.fd.dephault;
      break;
    case PF_Param_FLOAT_SLIDER:
      u.fs_d.value = static_cast<PF_FpLong>(u.fs_d.dephault);
      break;
    case PF_Param_ANGLE:
      u.ad.value = u.ad.dephault;
      break;
    case PF_Param_CHECKBOX:
      u.bd.value = u.bd.dephault;
      break;
    case PF_Param_COLOR:
      u.cd.value = u.cd.dephault;
      break;
    case PF_Param_POPUP:
      u.pd.value = u.pd.dephault;
      break;
    case PF_Param_POINT:
      u.td.x_value = u.td.x_dephault;
      u.td.y_value = u.td.y_dephault;
      break;
    default:
      break;
  }
}

const char* TypeName(PF_ParamType type) {
  switch (type) {
    case PF_Param_FLOAT_SLIDER:
      return "slider";
    case PF_Param_POPUP:
      return "choice";
    case PF_Param_CHECKBOX:
      return "checkbox";
    case PF_Param_POINT:
      return "point";
    case PF_Param_ANGLE:
      return "angle";
    case PF_Param_COLOR:
      return "colour";
    default:
      return "control of that kind";
  }
}

}  // namespace

ParameterStore::ParameterStore() {
  PF_ParamDef input{};
  input.param_type = PF_Param_LAYER;
  std::strcpy(input.name, "Input");
  records_.push_back(input);
  percents_.emplace_back();
  parameters_.push_back(DescribeRecord(0, input));
}

void ParameterStore::Add(const PF_ParamDef& record) {
  const int index = Count();
  records_.push_back(record);
  percents_.emplace_back();
  parameters_.push_back(DescribeRecord(index, record));
  ArrangeTree(parameters_);
  SetValueToDefault(records_.back());
  if (record.param_type == PF_Param_POINT) {
    const Parameter& parameter = parameters_.back();
    percents_.back() = PointPercent{parameter.defaultXPercent, parameter.defaultYPercent};
  }
}

void ParameterStore::Reset() {
  for (int index = 1; index < Count(); ++index) {
    PF_ParamDef& record = Record(index);
    SetValueToDefault(record);
    if (record.param_type == PF_Param_POINT) {
      const Parameter& parameter = parameters_[static_cast<std::size_t>(index)];
      SetPointPercent(index, parameter.defaultXPercent, parameter.defaultYPercent);
    }
  }
}

const PF_ParamDef& ParameterStore::Record(int index) const {
  if (index < 0 || index >= Count()) {
    throw HostError("There is no parameter " + std::to_string(index) + "; the effect has 0 to " +
                    std::to_string(Count() - 1) + ".");
  }
  return records_[static_cast<std::size_t>(index)];
}

PF_ParamDef& ParameterStore::Record(int index) {
  return const_cast<PF_ParamDef&>(static_cast<const ParameterStore*>(this)->Record(index));
}

PF_ParamDef& ParameterStore::Record(int index, PF_ParamType type) {
  PF_ParamDef& record = Record(index);
  if (record.param_type != type) {
    const Parameter& parameter = parameters_[static_cast<std::size_t>(index)];
    const std::string name = parameter.IsControl() ? parameter.path : std::to_string(index);
    throw HostError("Parameter " + name + " is no " + TypeName(type) +
                    "; give it a value of its own kind.");
  }
  return record;
}

void ParameterStore::SetPointPixels(int index, double x, double y) {
  PF_PointDef& point = Record(index, PF_Param_POINT).u.td;
  point.x_value = ToFixed(x);
  point.y_value = ToFixed(y);
  percents_[static_cast<std::size_t>(index)].reset();
}

void ParameterStore::SetPointPercent(int index, double x, double y) {
  PF_PointDef& point = Record(index, PF_Param_POINT).u.td;
  point.x_value = ToFixed(x);
  point.y_value = ToFixed(y);
  percents_[static_cast<std::size_t>(index)] = PointPercent{x, y};
}

std::optional<PointPercent> ParameterStore::PercentOf(int index) const {
  const PF_ParamDef& record = Record(index);
  const std::optional<PointPercent>& percent = percents_[static_cast<std::size_t>(index)];
  if (!percent) return std::nullopt;
  const bool untouched =
      record.u.td.x_value == ToFixed(percent->x) && record.u.td.y_value == ToFixed(percent->y);
  return untouched ? percent : std::nullopt;
}

void ParameterStore::UpdateUI(int index, const PF_ParamDef& wanted) {
  PF_ParamDef& record = Record(index);
  record.ui_flags = wanted.ui_flags;
  record.flags = (record.flags & ~PF_ParamFlag_COLLAPSE_TWIRLY) |
                 (wanted.flags & PF_ParamFlag_COLLAPSE_TWIRLY);
  Parameter& parameter = parameters_[static_cast<std::size_t>(index)];
  parameter.uiFlags = record.ui_flags;
  parameter.flags = record.flags;
}

std::vector<PF_ParamDef> ParameterStore::RecordsForSize(A_long width, A_long height) const {
  std::vector<PF_ParamDef> copies = records_;
  for (int index = 0; index < Count(); ++index) {
    PF_ParamDef& copy = copies[static_cast<std::size_t>(index)];
    copy.uu.change_flags = PF_ChangeFlag_NONE;  // It shares its memory with the disk id.
    const std::optional<PointPercent> percent = PercentOf(index);
    if (!percent || width <= 0 || height <= 0) continue;
    copy.u.td.x_value = ToFixed(percent->x / 100.0 * width);
    copy.u.td.y_value = ToFixed(percent->y / 100.0 * height);
  }
  return copies;
}

}  // namespace vitrell::headless
