// The panel made from the registered parameters, and the answer to an unknown name.
#include "look/control.h"

#include <algorithm>
#include <array>

namespace vitrell::look {
namespace {

constexpr std::size_t kMaxSuggestions = 3;

// The effect registers its numbers as percent or without a unit. Of the latter these are radii and
// lengths in pixels; the others are degrees (optical distortion) and a ratio (the iris).
constexpr std::array<std::string_view, 3> kPixelControls = {
    "fast-blur.amount", "realistic-blur.amount", "directional-blur.amount"};

ControlKind KindOf(PF_ParamType type) {
  switch (type) {
    case PF_Param_CHECKBOX:
      return ControlKind::kSwitch;
    case PF_Param_POPUP:
      return ControlKind::kChoice;
    case PF_Param_POINT:
      return ControlKind::kPoint;
    case PF_Param_ANGLE:
      return ControlKind::kAngle;
    case PF_Param_COLOR:
      return ControlKind::kColour;
    case PF_Param_LAYER:
      return ControlKind::kLayer;
    default:
      return ControlKind::kNumber;
  }
}

Value DefaultOf(const headless::Parameter& parameter) {
  switch (KindOf(parameter.type)) {
    case ControlKind::kSwitch:
      return parameter.defaultNumber == 1;
    case ControlKind::kChoice:
      return ChoiceValue{static_cast<int>(parameter.defaultNumber)};
    case ControlKind::kPoint:
      return PointValue{{parameter.defaultXPercent, true}, {parameter.defaultYPercent, true}};
    case ControlKind::kColour:
      return ColourValue{parameter.defaultColor.red, parameter.defaultColor.green,
                         parameter.defaultColor.blue};
    case ControlKind::kLayer:
      return LayerValue{};
    default:
      return parameter.defaultNumber;
  }
}

Control MakeControl(const headless::Parameter& parameter) {
  Control control;
  control.kind = KindOf(parameter.type);
  control.index = parameter.index;
  control.name = parameter.path;
  control.label = parameter.Title();
  control.diskId = parameter.diskId;
  control.defaultValue = DefaultOf(parameter);
  for (const std::string& choice : parameter.choices) {
    control.choices.push_back(CollapseBlanks(choice));
  }
  control.minimum = parameter.validMin;
  control.maximum = parameter.validMax;
  control.sliderMinimum = parameter.sliderMin;
  control.sliderMaximum = parameter.sliderMax;
  control.percent = parameter.percent;
  control.pixels =
      std::find(kPixelControls.begin(), kPixelControls.end(), control.name) != kPixelControls.end();
  control.disabled = parameter.Greyed();
  return control;
}

}  // namespace

const Control* Panel::Find(std::string_view name) const {
  const auto found = std::find_if(controls.begin(), controls.end(),
                                  [&](const Control& control) { return control.name == name; });
  return found == controls.end() ? nullptr : &*found;
}

Panel MakePanel(const std::vector<headless::Parameter>& parameters) {
  Panel panel;
  panel.parameters = parameters;
  for (const headless::Parameter& parameter : parameters) {
    PanelRow row;
    row.depth = static_cast<int>(parameter.groups.size());
    if (parameter.type == PF_Param_GROUP_START) {
      row.isGroup = true;
      row.title = CollapseBlanks(parameter.name);
      row.collapsed = parameter.StartsCollapsed();
    } else if (parameter.IsControl()) {
      row.control = panel.controls.size();
      panel.controls.push_back(MakeControl(parameter));
    } else {
      continue;
    }
    panel.rows.push_back(row);
  }
  return panel;
}

std::string CollapseBlanks(std::string_view text) {
  std::string collapsed;
  for (const char c : text) {
    if (c != ' ') {
      collapsed += c;
    } else if (!collapsed.empty() && collapsed.back() != ' ') {
      collapsed += ' ';
    }
  }
  if (!collapsed.empty() && collapsed.back() == ' ') collapsed.pop_back();
  return collapsed;
}

std::string UnknownNameMessage(const Panel& panel, std::string_view unknown) {
  std::string message = "there is no control named \"" + std::string(unknown) + "\". ";
  const std::vector<std::string> nearest =
      headless::NearestPaths(panel.parameters, unknown, kMaxSuggestions);
  for (std::size_t i = 0; i < nearest.size(); ++i) {
    message += (i == 0 ? "Did you mean " : i + 1 == nearest.size() ? " or " : ", ") + nearest[i];
  }
  if (!nearest.empty()) message += "? ";
  return message + "`vitrell params` lists every name.";
}

}  // namespace vitrell::look
