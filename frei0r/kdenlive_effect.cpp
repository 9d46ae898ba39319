// Kdenlive's description of the filter.
#include "frei0r/kdenlive_effect.h"

#include <cstddef>
#include <string_view>
#include <vector>

#include "look/frei0r_mapping.h"
#include "look/settings.h"
#include "look/value_text.h"

namespace vitrell::frei0r {
namespace {

// Positions outside the picture, as far as its own size.
constexpr double kPositionReach = 1;

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char letter : text) {
    switch (letter) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += letter;
    }
  }
  return escaped;
}

std::string Attribute(std::string_view name, std::string_view value) {
  return " " + std::string(name) + "=\"" + Escaped(value) + "\"";
}

std::string Element(std::string_view name, std::string_view text) {
  const std::string tag(name);
  return "        <" + tag + ">" + Escaped(text) + "</" + tag + ">\n";
}

// The title of the innermost group that each control stands in: "Fast Blur: ", or nothing.
std::vector<std::string> GroupsOf(const look::Panel& panel) {
  std::vector<std::string> groups(panel.controls.size());
  std::vector<std::string> open;
  for (const look::PanelRow& row : panel.rows) {
    open.resize(static_cast<std::size_t>(row.depth));
    if (row.isGroup) {
      open.push_back(row.title + ": ");
    } else if (!open.empty()) {
      groups[row.control] = open.back();
    }
  }
  return groups;
}

std::string SwitchType(std::string_view on) {
  return Attribute("type", "bool") + Attribute("default", on == "y" ? "1" : "0");
}

// "1/0.502/0" becomes "#ff8000".
std::string ColourType(const look::Control& control) {
  return Attribute("type", "color") +
         Attribute("default", look::FormatValue(control, control.defaultValue));
}

// The numbers of all choices, as the module reads them.
std::string ListType(const look::Frei0rParameter& parameter, const look::Panel& panel,
                     std::string_view defaultText) {
  const look::Control& control = panel.controls[parameter.control];
  look::Settings settings(panel);
  std::string numbers;
  for (std::size_t i = 0; i < control.choices.size(); ++i) {
    settings.SetValue(control, look::ChoiceValue{static_cast<int>(i) + 1});
    numbers += (i == 0 ? "" : ";") + look::Frei0rText(parameter, settings);
  }
  return Attribute("type", "list") + Attribute("default", defaultText) +
         Attribute("paramlist", numbers);
}

std::string NumberType(const look::Frei0rParameter& parameter, const look::Control& control,
                       std::string_view defaultText) {
  const double span = parameter.one - parameter.zero;
  const bool isPosition = control.kind == look::ControlKind::kPoint;
  const double reach = isPosition ? kPositionReach * span : 0;
  std::string_view unit;
  if (isPosition || control.percent) unit = "%";
  if (control.kind == look::ControlKind::kAngle) unit = "°";
  return Attribute("type", "animated") + Attribute("default", defaultText) +
         Attribute("min", look::FormatNumber(-reach)) +
         Attribute("max", look::FormatNumber(span + reach)) +
         Attribute("factor", look::FormatNumber(span)) + Attribute("decimals", "2") +
         (unit.empty() ? "" : Attribute("suffix", unit));
}

// Which shown number means what, where the two are not the same.
std::string Comment(const look::Frei0rParameter& parameter, const look::Control& control) {
  const bool isNumber =
      control.kind == look::ControlKind::kNumber || control.kind == look::ControlKind::kAngle;
  if (!isNumber || parameter.zero == 0) return "";
  const std::string unit = look::UnitSuffix(control);
  return Element("comment", look::FormatNumber(-parameter.zero) + " is 0" + unit + ", 0 is " +
                                look::FormatNumber(parameter.zero) + unit + ".");
}

std::string Choices(const look::Control& control) {
  std::string names;
  for (const std::string& choice : control.choices) names += (names.empty() ? "" : ",") + choice;
  return names.empty() ? "" : Element("paramlistdisplay", names);
}

std::string Axis(const look::Frei0rParameter& parameter, const look::Control& control) {
  if (control.kind != look::ControlKind::kPoint) return "";
  return parameter.isY ? " Y" : " X";
}

std::string ParameterText(const look::Frei0rParameter& parameter, const look::Panel& panel,
                          const std::string& group) {
  const look::Control& control = panel.controls[parameter.control];
  const std::string defaultText = look::Frei0rText(parameter, look::Settings(panel));
  std::string type;
  if (parameter.kind == look::Frei0rKind::kSwitch) {
    type = SwitchType(defaultText);
  } else if (parameter.kind == look::Frei0rKind::kColour) {
    type = ColourType(control);
  } else if (control.kind == look::ControlKind::kChoice) {
    type = ListType(parameter, panel, defaultText);
  } else {
    type = NumberType(parameter, control, defaultText);
  }
  return "    <parameter" + Attribute("name", parameter.name) + type + ">\n" + Choices(control) +
         Element("name", group + control.label + Axis(parameter, control)) +
         Comment(parameter, control) + "    </parameter>\n";
}

}  // namespace

std::string KdenliveEffect(const look::Panel& panel) {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE kpartgui>\n"
      "<effect LC_NUMERIC=\"C\" tag=\"frei0r.vitrell\" id=\"frei0r.vitrell\">\n"
      "    <name>Vitrell</name>\n"
      "    <description>A lens held in front of the picture</description>\n"
      "    <author>Vitrell</author>\n"
      "    <parameter name=\"threads\" type=\"fixed\" default=\"1\" min=\"1\" max=\"1\">\n"
      "        <name>Threads</name>\n"
      "    </parameter>\n";
  const std::vector<std::string> groups = GroupsOf(panel);
  for (const look::Frei0rParameter& parameter : look::MakeFrei0rParameters(panel)) {
    text += ParameterText(parameter, panel, groups[parameter.control]);
  }
  return text + "</effect>\n";
}

}  // namespace vitrell::frei0r
