// The values of all controls and their way into the host.
#include "look/settings.h"

#include <utility>

#include "look/failure.h"
#include "look/value_text.h"

namespace vitrell::look {
namespace {

double Pixels(const Coordinate& coordinate, int size) {
  return coordinate.percent ? coordinate.value * size / 100.0 : coordinate.value;
}

void ApplyPoint(headless::EffectHost& host, int index, const PointValue& point, int width,
                int height) {
  if (point.x.percent && point.y.percent) {
    host.SetPointPercent(index, point.x.value, point.y.value);
  } else {
    host.SetPointPixels(index, Pixels(point.x, width), Pixels(point.y, height));
  }
}

}  // namespace

Settings::Settings(const Panel& panel) : panel_(panel) {
  for (const Control& control : panel.controls) values_.push_back(control.defaultValue);
}

void Settings::Set(std::string_view assignment) {
  const std::string option = "--set " + std::string(assignment) + ": ";
  const std::size_t equals = assignment.find('=');
  if (equals == std::string_view::npos || equals == 0) {
    throw Failure(kWrongUsage,
                  option + "a name and a value are needed. Write --set fast-blur.amount=35.");
  }
  const Control* control = panel_.Find(assignment.substr(0, equals));
  if (control == nullptr) {
    throw Failure(kWrongUsage, option + UnknownNameMessage(panel_, assignment.substr(0, equals)));
  }
  try {
    SetValue(*control, ParseValue(*control, assignment.substr(equals + 1)));
  } catch (const ValueError& error) {
    throw Failure(kWrongUsage, option + error.what());
  }
}

std::size_t Settings::PositionOf(const Control& control) const {
  return static_cast<std::size_t>(&control - panel_.controls.data());
}

const Value& Settings::ValueOf(const Control& control) const {
  return values_.at(PositionOf(control));
}

void Settings::SetValue(const Control& control, Value value) {
  values_.at(PositionOf(control)) = std::move(value);
}

void Settings::Apply(headless::EffectHost& host, int width, int height) const {
  for (const Control& control : panel_.controls) {
    const Value& value = ValueOf(control);
    if (const auto* on = std::get_if<bool>(&value)) {
      host.SetCheckbox(control.index, *on);
    } else if (const auto* choice = std::get_if<ChoiceValue>(&value)) {
      host.SetPopup(control.index, choice->number);
    } else if (const auto* point = std::get_if<PointValue>(&value)) {
      ApplyPoint(host, control.index, *point, width, height);
    } else if (const auto* colour = std::get_if<ColourValue>(&value)) {
      host.SetColor(control.index, {255, colour->red, colour->green, colour->blue});
    } else if (control.kind == ControlKind::kAngle) {
      host.SetAngleDegrees(control.index, std::get<double>(value));
    } else if (control.kind == ControlKind::kNumber) {
      host.SetFloat(control.index, std::get<double>(value));
    }
  }
}

}  // namespace vitrell::look
