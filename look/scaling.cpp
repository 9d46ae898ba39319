// Fitting lengths to another width.
#include "look/scaling.h"

#include <algorithm>

namespace vitrell::look {
namespace {

// True when the number left the range and got its end.
bool Scale(double factor, double minimum, double maximum, double& number) {
  const double scaled = number * factor;
  number = std::clamp(scaled, minimum, maximum);
  return number != scaled;
}

}  // namespace

bool HasPixels(const Control& control, const Value& value) {
  if (const auto* point = std::get_if<PointValue>(&value)) {
    return !point->x.percent || !point->y.percent;
  }
  const auto* number = std::get_if<double>(&value);
  return control.pixels && number != nullptr && *number != 0;
}

bool ScaleValue(const Control& control, double factor, Value& value) {
  auto* point = std::get_if<PointValue>(&value);
  if (point == nullptr) {
    return Scale(factor, control.minimum, control.maximum, std::get<double>(value));
  }
  bool cut = false;
  for (Coordinate* coordinate : {&point->x, &point->y}) {
    if (coordinate->percent) continue;
    cut = Scale(factor, -kFixedLimit, kFixedLimit, coordinate->value) || cut;
  }
  return cut;
}

// The tangents of a path are offsets in the units of the position.
bool ScaleKey(const Control& control, double factor, Key& key) {
  const auto* point = std::get_if<PointValue>(&key.value);
  if (point != nullptr && !point->x.percent && key.path) {
    for (PathPosition* tangent : {&key.path->leaving, &key.path->arriving}) {
      tangent->x *= factor;
      tangent->y *= factor;
    }
  }
  return ScaleValue(control, factor, key.value);
}

}  // namespace vitrell::look
