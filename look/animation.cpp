// Values that move: keys in time, and the curves between them.
#include "look/animation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "look/failure.h"

namespace vitrell::look {
namespace {

bool OnlyHolds(const Control& control) {
  return control.kind == ControlKind::kChoice || control.kind == ControlKind::kSwitch;
}

int ComponentCount(const Control& control) {
  if (control.kind == ControlKind::kPoint) return 2;
  return control.kind == ControlKind::kColour ? 3 : 1;
}

double ComponentOf(const Value& value, int component) {
  if (const auto* point = std::get_if<PointValue>(&value)) {
    return component == 0 ? point->x.value : point->y.value;
  }
  if (const auto* colour = std::get_if<ColourValue>(&value)) {
    return component == 0 ? colour->red : component == 1 ? colour->green : colour->blue;
  }
  return std::get<double>(value);
}

std::uint8_t RoundedChannel(double channel) {
  return static_cast<std::uint8_t>(std::floor(std::clamp(channel, 0.0, 255.0) + 0.5));
}

// Through the two middle ones of four values at equal distances, with the slopes of the chords
// around each (Catmull and Rom, "A class of local interpolating splines", 1974).
double CatmullRom(double y0, double y1, double y2, double y3, double t) {
  const double t2 = t * t;
  const double a0 = -0.5 * y0 + 1.5 * y1 - 1.5 * y2 + 0.5 * y3;
  const double a1 = y0 - 2.5 * y1 + 2 * y2 - 0.5 * y3;
  const double a2 = -0.5 * y0 + 0.5 * y2;
  return a0 * t * t2 + a1 * t2 + a2 * t + y1;
}

}  // namespace

double KeyTime::Frame(const TimeBase& base) const {
  const double frame = seconds ? amount * base.framesPerSecond : amount;
  return fromEnd ? base.length + frame : frame;
}

void CheckKeys(const Control& control, const Keys& keys) {
  if (control.kind == ControlKind::kLayer) {
    throw ValueError("a layer's picture cannot have keys.");
  }
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (OnlyHolds(control) && keys[i].stretch != Stretch::kHold && i + 1 < keys.size()) {
      throw ValueError("this control can only jump from key to key. Write |= for = and ~=.");
    }
    const auto* first = std::get_if<PointValue>(&keys[0].value);
    const auto* point = std::get_if<PointValue>(&keys[i].value);
    if (point != nullptr &&
        (point->x.percent != first->x.percent || point->y.percent != first->y.percent)) {
      throw ValueError("the keys of a position must be all in pixels or all in percent.");
    }
  }
}

Curve::Curve(const Control& control, const Keys& keys, const TimeBase& base) : control_(control) {
  for (const Key& key : keys) places_.push_back({key.time.Frame(base), key});
  std::stable_sort(places_.begin(), places_.end(),
                   [](const Place& a, const Place& b) { return a.frame < b.frame; });
  // std::unique keeps the first of equal ones; seen from behind that is the last one.
  const auto kept = std::unique(places_.rbegin(), places_.rend(),
                                [](const Place& a, const Place& b) { return a.frame == b.frame; });
  places_.erase(places_.begin(), kept.base());
}

Value Curve::At(double frame) const {
  const auto next = std::upper_bound(places_.begin(), places_.end(), frame,
                                     [](double f, const Place& place) { return f < place.frame; });
  if (next == places_.begin()) return places_.front().key.value;
  const auto here = std::prev(next);
  if (next == places_.end() || here->frame == frame || here->key.stretch == Stretch::kHold ||
      OnlyHolds(control_)) {
    return here->key.value;
  }
  const double done = (frame - here->frame) / (next->frame - here->frame);
  return Between(static_cast<std::size_t>(here - places_.begin()), done);
}

Value Curve::Between(std::size_t from, double done) const {
  double components[3] = {};
  const Key& key = places_[from].key;
  if (key.path) {
    const double share = key.easing.empty() ? done : Ease(key.easing.front(), done);
    const auto& begin = std::get<PointValue>(key.value);
    const auto& end = std::get<PointValue>(places_[from + 1].key.value);
    const PathPosition position =
        AlongPath({begin.x.value, begin.y.value}, {end.x.value, end.y.value}, *key.path, share);
    components[0] = position.x;
    components[1] = position.y;
  } else {
    for (int i = 0; i < ComponentCount(control_); ++i) components[i] = Component(from, done, i);
  }
  return Composed(components);
}

double Curve::Component(std::size_t from, double done, int component) const {
  const auto at = [&](std::size_t place) {
    return ComponentOf(places_[place].key.value, component);
  };
  const Key& key = places_[from].key;
  const double begin = at(from);
  const double end = at(from + 1);
  if (key.stretch == Stretch::kSmooth) {
    // The first and last value stand for the neighbours that they lack.
    const double before = from > 0 ? at(from - 1) : begin;
    const double behind = from + 2 < places_.size() ? at(from + 2) : end;
    return CatmullRom(before, begin, end, behind, done);
  }
  if (key.stretch == Stretch::kEased && !key.easing.empty()) {
    const std::size_t last = key.easing.size() - 1;
    done = Ease(key.easing[std::min(static_cast<std::size_t>(component), last)], done);
  }
  return begin + (end - begin) * done;
}

Value Curve::Composed(const double (&components)[3]) const {
  switch (control_.kind) {
    case ControlKind::kPoint: {
      auto point = std::get<PointValue>(places_.front().key.value);
      point.x.value = std::clamp(components[0], -kFixedLimit, kFixedLimit);
      point.y.value = std::clamp(components[1], -kFixedLimit, kFixedLimit);
      return point;
    }
    case ControlKind::kColour:
      return ColourValue{RoundedChannel(components[0]), RoundedChannel(components[1]),
                         RoundedChannel(components[2])};
    case ControlKind::kAngle:
      return std::clamp(components[0], -kFixedLimit, kFixedLimit);
    default:
      return std::clamp(components[0], control_.minimum, control_.maximum);
  }
}

}  // namespace vitrell::look
