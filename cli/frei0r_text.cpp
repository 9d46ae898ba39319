// Writing settings down for FFmpeg and melt.
#include "cli/frei0r_text.h"

#include <algorithm>
#include <vector>

#include "cli/failure.h"
#include "look/frei0r_mapping.h"
#include "look/mlt_text.h"
#include "look/value_text.h"

namespace vitrell::cli {
namespace {

void RefusePixels(const look::Settings& settings) {
  for (const look::Control& control : settings.GetPanel().controls) {
    const auto* point = std::get_if<look::PointValue>(&settings.ValueOf(control));
    if (point == nullptr || (point->x.percent && point->y.percent)) continue;
    throw Failure(kWrongUsage, control.name + ": " +
                                   look::FormatValue(control, settings.ValueOf(control)) +
                                   " is in pixels, and frei0r hosts take percent of the picture. "
                                   "Give --set " +
                                   control.name + "=50%,50%.");
  }
}

// At any time.
bool HasCustomLens(const look::Settings& settings) {
  const look::Control* type = settings.GetPanel().Find(look::kLensType);
  if (type == nullptr) return false;
  const auto isCustom = [&](const look::Value& value) {
    return look::FormatValue(*type, value) == look::kCustomLens;
  };
  const look::Keys* const keys = settings.KeysOf(*type);
  if (keys == nullptr) return isCustom(settings.ValueOf(*type));
  return std::any_of(keys->begin(), keys->end(),
                     [&](const look::Key& key) { return isCustom(key.value); });
}

// "0 to 32768", or the choices.
std::string RangeCell(const look::Frei0rParameter& parameter, const look::Control& control) {
  std::string cell;
  if (control.kind == look::ControlKind::kPoint) return "-32767 to 32767 %";
  if (control.kind != look::ControlKind::kChoice) return look::DescribeRange(control);
  for (std::size_t i = 0; i < control.choices.size(); ++i) {
    look::Panel panel;
    panel.controls.push_back(control);
    look::Settings settings(panel);
    settings.SetValue(panel.controls[0], look::ChoiceValue{static_cast<int>(i) + 1});
    look::Frei0rParameter alone = parameter;
    alone.control = 0;
    cell += (i == 0 ? "" : ", ") + look::Frei0rText(alone, settings) + " " + control.choices[i];
  }
  return cell;
}

std::string MarkdownRow(std::size_t number, const look::Frei0rParameter& parameter,
                        const look::Settings& settings) {
  const look::Control& control = settings.GetPanel().controls[parameter.control];
  const bool isMeasure =
      parameter.kind == look::Frei0rKind::kNumber && control.kind != look::ControlKind::kChoice;
  const std::string unit =
      control.kind == look::ControlKind::kPoint ? " %" : look::UnitSuffix(control);
  const auto end = [&](double value) {
    return isMeasure ? look::FormatNumber(value) + unit : std::string();
  };
  return "| " + std::to_string(number) + " | `" + parameter.name + "` | " + control.label + " | " +
         look::Frei0rText(parameter, settings) + " | " + end(parameter.zero) + " | " +
         end(parameter.one) + " | " +
         (control.kind == look::ControlKind::kSwitch   ? "y or n"
          : control.kind == look::ControlKind::kColour ? "red/green/blue, each from 0 to 1"
                                                       : RangeCell(parameter, control)) +
         " |\n";
}

}  // namespace

std::string Frei0rForFfmpeg(const look::Settings& settings) {
  RefusePixels(settings);
  std::string text = "frei0r=filter_name=vitrell:filter_params=";
  const char* separator = "";
  for (const look::Frei0rParameter& parameter : look::MakeFrei0rParameters(settings.GetPanel())) {
    text += separator + look::Frei0rText(parameter, settings);
    separator = "|";
  }
  return text + "\n";
}

std::string Frei0rForMelt(const look::Settings& settings, const look::TimeBase& base) {
  RefusePixels(settings);
  std::string text =
      HasCustomLens(settings) ? "-transition frei0r.vitrell_custom" : "-filter frei0r.vitrell";
  text += " threads=1";
  for (const look::Frei0rParameter& parameter : look::MakeFrei0rParameters(settings.GetPanel())) {
    text += " " + parameter.name + "=" + look::MltText(parameter, settings, base);
  }
  return text + "\n";
}

std::string Frei0rAsMarkdown(const look::Settings& settings) {
  std::string text =
      "| No. | Name | Control | Default | 0 is | 1 is | Takes |\n|--:|---|---|--:|--:|--:|---|\n";
  std::size_t number = 0;
  for (const look::Frei0rParameter& parameter : look::MakeFrei0rParameters(settings.GetPanel())) {
    text += MarkdownRow(number++, parameter, settings);
  }
  return text;
}

}  // namespace vitrell::cli
