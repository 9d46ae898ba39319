// Reading and writing the values of controls as text.
#include "look/value_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "look/colour_text.h"
#include "look/failure.h"
#include "look/text_pieces.h"

namespace vitrell::look {
namespace {

// Longer numbers are written with an exponent, for which 17 digits, sign, point and exponent need
// room.
constexpr std::size_t kLongestFixed = 20;
constexpr std::size_t kLongestScientific = 24;

std::string ExampleFor(const Control& control) {
  return "Give " + DescribeRange(control) + ", for example " + control.name + "=" +
         FormatValue(control, control.defaultValue) + ".";
}

double ParseNumber(const Control& control, std::string_view text) {
  std::string_view digits = Trim(text);
  if (control.percent && digits.ends_with('%')) digits.remove_suffix(1);
  const std::optional<double> number = ReadNumber(digits);
  if (!number) throw ValueError(Quoted(text) + " is not a number. " + ExampleFor(control));
  return CheckedNumber(control, *number);
}

bool ParseSwitch(const Control& control, std::string_view text) {
  const std::string word = Lowered(Trim(text));
  if (word == "on" || word == "true" || word == "yes" || word == "1") return true;
  if (word == "off" || word == "false" || word == "no" || word == "0") return false;
  throw ValueError(Quoted(text) + " is neither on nor off. Give " + control.name + "=on or " +
                   control.name + "=off.");
}

// For a choice that a shell cut at its blank.
std::string QuotingHint(const Control& control, const std::string& wanted) {
  for (const std::string& choice : control.choices) {
    if (wanted.empty() || !Lowered(choice).starts_with(wanted + " ")) continue;
    return " Quote a value that has a blank: \"" + control.name + "=" + choice + "\".";
  }
  return {};
}

ChoiceValue ParseChoice(const Control& control, std::string_view text) {
  const std::string wanted = Lowered(CollapseBlanks(text));
  for (std::size_t i = 0; i < control.choices.size(); ++i) {
    if (Lowered(control.choices[i]) == wanted) return {static_cast<int>(i) + 1};
  }
  const std::optional<double> number = ReadNumber(text);
  if (number && *number >= 1 && *number <= static_cast<double>(control.choices.size()) &&
      *number == std::floor(*number)) {
    return {static_cast<int>(*number)};
  }
  throw ValueError(Quoted(text) + " is none of the choices. Give one of " + DescribeRange(control) +
                   ", or its number from 1 to " + std::to_string(control.choices.size()) + "." +
                   QuotingHint(control, wanted));
}

Coordinate ParseCoordinate(std::string_view text) {
  Coordinate coordinate;
  text = Trim(text);
  coordinate.percent = text.ends_with('%');
  if (coordinate.percent) text.remove_suffix(1);
  const std::optional<double> number = ReadNumber(text);
  if (!number) {
    throw ValueError(Quoted(text) +
                     " is not a number. Give pixels such as 960,540 or percent such as 50%,50%.");
  }
  if (std::abs(*number) > kFixedLimit) {
    throw ValueError(Quoted(text) + " is too far away. Give a position from -32767 to 32767.");
  }
  coordinate.value = *number;
  return coordinate;
}

PointValue ParsePoint(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos || text.find(',', comma + 1) != std::string_view::npos) {
    throw ValueError(Quoted(text) +
                     " is not a position. Give pixels such as 960,540 or percent such as 50%,50%.");
  }
  return {ParseCoordinate(text.substr(0, comma)), ParseCoordinate(text.substr(comma + 1))};
}

std::string FormatCoordinate(const Coordinate& coordinate) {
  return FormatNumber(coordinate.value) + (coordinate.percent ? "%" : "");
}

}  // namespace

double CheckedNumber(const Control& control, double number) {
  if (control.kind == ControlKind::kAngle) {
    if (std::abs(number) <= kFixedLimit) return number;
  } else if (number >= control.minimum && number <= control.maximum) {
    return number;
  }
  throw ValueError((std::isnan(number) ? "not a number" : FormatNumber(number)) +
                   std::string(" is out of range. Give ") + DescribeRange(control) + ".");
}

Value ParseValue(const Control& control, std::string_view text) {
  switch (control.kind) {
    case ControlKind::kNumber:
    case ControlKind::kAngle:
      return ParseNumber(control, text);
    case ControlKind::kSwitch:
      return ParseSwitch(control, text);
    case ControlKind::kChoice:
      return ParseChoice(control, text);
    case ControlKind::kPoint:
      return ParsePoint(text);
    case ControlKind::kColour:
      return ParseColour(text);
    case ControlKind::kLayer:
      return LayerValue{text == "none" ? std::string() : std::string(text)};
  }
  throw ValueError("this control takes no value.");
}

std::string FormatNumber(double number) {
  if (number == 0) return "0";
  std::array<char, kLongestScientific> buffer{};
  const std::to_chars_result fixed =
      std::to_chars(buffer.data(), buffer.data() + kLongestFixed, number, std::chars_format::fixed);
  if (fixed.ec == std::errc()) return {buffer.data(), fixed.ptr};
  // "1e+308" as people write it.
  const std::to_chars_result scientific = std::to_chars(
      buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::scientific);
  std::string text(buffer.data(), scientific.ptr);
  const std::size_t plus = text.find('+');
  if (plus != std::string::npos) text.erase(plus, 1);
  return text;
}

std::string FormatValue(const Control& control, const Value& value) {
  if (const auto* number = std::get_if<double>(&value)) return FormatNumber(*number);
  if (const auto* on = std::get_if<bool>(&value)) return *on ? "on" : "off";
  if (const auto* choice = std::get_if<ChoiceValue>(&value)) {
    const std::size_t position = static_cast<std::size_t>(choice->number) - 1;
    return position < control.choices.size() ? control.choices[position]
                                             : std::to_string(choice->number);
  }
  if (const auto* point = std::get_if<PointValue>(&value)) {
    return FormatCoordinate(point->x) + "," + FormatCoordinate(point->y);
  }
  if (const auto* colour = std::get_if<ColourValue>(&value)) return FormatColour(*colour);
  const std::string& path = std::get<LayerValue>(value).path;
  return path.empty() ? "none" : path;
}

std::string UnitSuffix(const Control& control) {
  if (control.kind == ControlKind::kAngle) return " degrees";
  return control.percent ? " %" : "";
}

std::string DescribeRange(const Control& control) {
  std::string text;
  switch (control.kind) {
    case ControlKind::kNumber:
      return FormatNumber(control.minimum) + " to " + FormatNumber(control.maximum) +
             UnitSuffix(control);
    case ControlKind::kAngle:
      return "-32767 to 32767 degrees";
    case ControlKind::kSwitch:
      return "on | off";
    case ControlKind::kChoice:
      for (const std::string& choice : control.choices) {
        if (!text.empty()) text += " | ";
        text += choice;
      }
      return text;
    case ControlKind::kPoint:
      return "x,y in pixels or percent";
    case ControlKind::kColour:
      return "#rrggbb, a name or red,green,blue";
    case ControlKind::kLayer:
      return "a picture file or none";
  }
  return text;
}

}  // namespace vitrell::look
