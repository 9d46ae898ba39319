// Ranges of controls stretched to 0..1 and back.
#include "look/frei0r_mapping.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

#include "look/value_text.h"

namespace vitrell::look {
namespace {

// Half a turn, in degrees.
constexpr double kHalfTurn = 180;
constexpr double kWhite = 255;
// Decimals that a value keeps. The largest range, 65536, times 10^9 is well below 2^53, so that the
// whole number is exact and its quotient is the double that a decimal number is read as. The
// roundings of the way there amount to less than 10^-10.
constexpr double kGrid = 1e9;
constexpr int kMaxDecimals = 17;

struct Range {
  double minimum;
  double maximum;
};

// What a control takes, beyond which nothing is mapped.
Range ValidRange(const Control& control) {
  switch (control.kind) {
    case ControlKind::kNumber:
      return {control.minimum, control.maximum};
    case ControlKind::kChoice:
      return {1, static_cast<double>(control.choices.size())};
    default:
      return {-kFixedLimit, kFixedLimit};
  }
}

// Empty for a parameter that is no number.
std::optional<Range> UnitRange(const Control& control) {
  switch (control.kind) {
    case ControlKind::kNumber:
      return Range{control.sliderMinimum, control.sliderMaximum};
    case ControlKind::kAngle:
      return Range{-kHalfTurn, kHalfTurn};
    case ControlKind::kChoice:
      return Range{1, static_cast<double>(control.choices.size())};
    case ControlKind::kPoint:
      return Range{0, 100};
    default:
      return std::nullopt;
  }
}

std::string Explanation(const Control& control, Range range) {
  std::string text = control.label + ": ";
  if (control.kind == ControlKind::kSwitch) return text + "on or off";
  if (control.kind == ControlKind::kColour) return text + "red, green and blue";
  if (control.kind == ControlKind::kChoice) {
    const double steps = static_cast<double>(control.choices.size()) - 1;
    for (std::size_t i = 0; i < control.choices.size(); ++i) {
      const double x = steps > 0 ? std::round(static_cast<double>(i) / steps * 1000) / 1000 : 0;
      text += (i == 0 ? "" : ", ") + FormatNumber(x) + " is " + control.choices[i];
    }
    return text;
  }
  const std::string unit = control.kind == ControlKind::kPoint ? " %" : UnitSuffix(control);
  return text + "0 is " + FormatNumber(range.minimum) + unit + ", 1 is " +
         FormatNumber(range.maximum) + unit;
}

Frei0rParameter MakeParameter(const Panel& panel, std::size_t position) {
  const Control& control = panel.controls[position];
  Frei0rParameter parameter;
  parameter.name = control.name;
  parameter.control = position;
  const std::optional<Range> range = UnitRange(control);
  if (range) {
    parameter.zero = range->minimum;
    parameter.one = range->maximum;
  } else {
    parameter.kind =
        control.kind == ControlKind::kColour ? Frei0rKind::kColour : Frei0rKind::kSwitch;
  }
  parameter.explanation = Explanation(control, {parameter.zero, parameter.one});
  return parameter;
}

// What x stands for, on the grid and within the control's range.
double ValueFrom(const Frei0rParameter& parameter, const Control& control, double x) {
  const Range valid = ValidRange(control);
  const double wanted = parameter.zero + x * (parameter.one - parameter.zero);
  const double value = std::clamp(wanted, valid.minimum, valid.maximum);
  return std::round(value * kGrid) / kGrid + 0.0;  // Never the negative zero.
}

double ValueOf(const Frei0rParameter& parameter, const Control& control, const Value& value) {
  if (const auto* choice = std::get_if<ChoiceValue>(&value)) return choice->number;
  if (const auto* point = std::get_if<PointValue>(&value)) {
    const Coordinate& coordinate = parameter.isY ? point->y : point->x;
    return coordinate.percent ? coordinate.value : (parameter.zero + parameter.one) / 2;
  }
  const auto* number = std::get_if<double>(&value);
  return number != nullptr ? *number : control.minimum;
}

// The shortest decimal that `reads` accepts; the shortest exact one when none does.
template <typename Predicate>
std::string ShortestText(double x, const Predicate& reads) {
  std::array<char, 64> buffer{};
  for (int decimals = 0; decimals <= kMaxDecimals; ++decimals) {
    const std::to_chars_result written = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                                       x, std::chars_format::fixed, decimals);
    if (written.ec != std::errc()) break;
    double back = 0;
    std::from_chars(buffer.data(), written.ptr, back);
    if (reads(back)) return {buffer.data(), written.ptr};
  }
  return FormatNumber(x);
}

// Hosts read channels in single precision; a text half-way between two would depend on that.
bool IsClearly(uint8_t channel, double x) { return std::abs(x * kWhite - channel) < 0.25; }

std::string ColourText(const ColourValue& colour) {
  std::string text;
  for (const uint8_t channel : {colour.red, colour.green, colour.blue}) {
    if (!text.empty()) text += '/';
    text += ShortestText(Frei0rFromChannel(channel),
                         [&](double back) { return IsClearly(channel, back); });
  }
  return text;
}

}  // namespace

std::vector<Frei0rParameter> MakeFrei0rParameters(const Panel& panel) {
  std::vector<Frei0rParameter> parameters;
  for (std::size_t i = 0; i < panel.controls.size(); ++i) {
    if (panel.controls[i].kind == ControlKind::kLayer) continue;
    parameters.push_back(MakeParameter(panel, i));
    if (panel.controls[i].kind != ControlKind::kPoint) continue;
    Frei0rParameter second = parameters.back();
    parameters.back().name += "-x";
    parameters.back().explanation += " of the width";
    second.name += "-y";
    second.explanation += " of the height";
    second.isY = true;
    parameters.push_back(std::move(second));
  }
  return parameters;
}

void SetFrei0rNumber(const Frei0rParameter& parameter, double x, Settings& settings) {
  if (std::isnan(x)) return;
  const Control& control = settings.GetPanel().controls[parameter.control];
  const double value = ValueFrom(parameter, control, x);
  if (control.kind == ControlKind::kChoice) {
    settings.SetValue(control, ChoiceValue{static_cast<int>(std::lround(value))});
  } else if (control.kind == ControlKind::kPoint) {
    PointValue point = std::get<PointValue>(settings.ValueOf(control));
    (parameter.isY ? point.y : point.x) = {value, true};
    settings.SetValue(control, point);
  } else {
    settings.SetValue(control, value);
  }
}

double Frei0rNumberOf(const Frei0rParameter& parameter, const Settings& settings) {
  const Control& control = settings.GetPanel().controls[parameter.control];
  if (parameter.one == parameter.zero) return 0;
  const double value = ValueOf(parameter, control, settings.ValueOf(control));
  return (value - parameter.zero) / (parameter.one - parameter.zero);
}

uint8_t ChannelFromFrei0r(double x) {
  return std::isnan(x) ? uint8_t{0}
                       : static_cast<uint8_t>(std::lround(std::clamp(x, 0.0, 1.0) * kWhite));
}

double Frei0rFromChannel(uint8_t channel) { return channel / kWhite; }

std::string Frei0rText(const Frei0rParameter& parameter, const Settings& settings) {
  const Control& control = settings.GetPanel().controls[parameter.control];
  const Value& value = settings.ValueOf(control);
  if (const auto* on = std::get_if<bool>(&value)) return *on ? "y" : "n";
  if (const auto* colour = std::get_if<ColourValue>(&value)) return ColourText(*colour);
  const double x = Frei0rNumberOf(parameter, settings);
  const double goal = ValueFrom(parameter, control, x);
  const bool isChoice = control.kind == ControlKind::kChoice;
  return ShortestText(x, [&](double back) {
    const double read = ValueFrom(parameter, control, back);
    return isChoice ? std::lround(read) == std::lround(goal) : read == goal;
  });
}

}  // namespace vitrell::look
