// The values of all controls and their way into the host.
#include "look/settings.h"

#include <algorithm>
#include <utility>

#include "look/animation_text.h"
#include "look/failure.h"
#include "look/scaling.h"
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

Settings::Settings(const Panel& panel) : panel_(panel), origins_(panel.controls.size()) {
  for (const Control& control : panel.controls) values_.push_back(control.defaultValue);
  keys_.resize(values_.size());
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
    const std::string_view text = assignment.substr(equals + 1);
    if (HoldsKeys(*control, text)) {
      SetKeys(*control, ParseKeys(*control, text));
    } else {
      SetValue(*control, ParseValue(*control, text));
    }
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
  origins_.at(PositionOf(control)) = {true, 0};
  keys_.at(PositionOf(control)).clear();
}

const Keys* Settings::KeysOf(const Control& control) const {
  const Keys& keys = keys_.at(PositionOf(control));
  return keys.empty() ? nullptr : &keys;
}

void Settings::SetKeys(const Control& control, Keys keys) {
  values_.at(PositionOf(control)) = keys.at(0).value;
  keys_.at(PositionOf(control)) = std::move(keys);
  origins_.at(PositionOf(control)) = {true, 0};
}

bool Settings::Moves() const {
  return std::any_of(keys_.begin(), keys_.end(), [](const Keys& keys) { return !keys.empty(); });
}

bool Settings::CountsFromEnd() const {
  const auto counts = [](const Key& key) { return key.time.fromEnd; };
  return std::any_of(keys_.begin(), keys_.end(), [&](const Keys& keys) {
    return std::any_of(keys.begin(), keys.end(), counts);
  });
}

Settings Settings::At(double frame, const TimeBase& base) const {
  Settings still = *this;
  for (const Control& control : panel_.controls) {
    const Keys* const keys = KeysOf(control);
    if (keys != nullptr) still.SetValue(control, Curve(control, *keys, base).At(frame));
  }
  return still;
}

void Settings::SetMadeFor(const Control& control, double width) {
  origins_.at(PositionOf(control)).width = width;
}

void Settings::SetRestMadeFor(double width) {
  for (Origin& origin : origins_) {
    if (!origin.isSet && origin.width == 0) origin.width = width;
  }
}

// Keys may begin at 0 and grow.
bool Settings::HasPixels(const Control& control) const {
  const Keys& keys = keys_.at(PositionOf(control));
  return look::HasPixels(control, ValueOf(control)) ||
         std::any_of(keys.begin(), keys.end(),
                     [&](const Key& key) { return look::HasPixels(control, key.value); });
}

std::vector<double> Settings::WidthsMadeFor() const {
  std::vector<double> widths;
  for (const Control& control : panel_.controls) {
    const double width = origins_.at(PositionOf(control)).width;
    if (width == 0 || !HasPixels(control)) continue;
    if (std::find(widths.begin(), widths.end(), width) == widths.end()) widths.push_back(width);
  }
  return widths;
}

std::vector<std::string> Settings::FitTo(double width) {
  std::vector<std::string> cut;
  for (const Control& control : panel_.controls) {
    Origin& origin = origins_.at(PositionOf(control));
    Value& value = values_.at(PositionOf(control));
    if (origin.width == 0 || !HasPixels(control)) continue;
    const double factor = width / origin.width;
    bool isCut = ScaleValue(control, factor, value);
    for (Key& key : keys_.at(PositionOf(control))) {
      isCut = ScaleKey(control, factor, key) || isCut;
    }
    if (isCut) cut.push_back(control.name);
    origin.width = width;
  }
  return cut;
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
