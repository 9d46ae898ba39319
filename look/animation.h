// Values that move: keys in time, and the curves between them.
//
// All sums are plain products and sums of doubles in a fixed order and number, and square roots,
// which are exactly rounded everywhere: a value has the same bits on every platform.
#ifndef VITRELL_LOOK_ANIMATION_H_
#define VITRELL_LOOK_ANIMATION_H_

#include <optional>
#include <vector>

#include "look/control.h"
#include "look/easing.h"

namespace vitrell::look {

// Keys lie within this distance from frame 0.
inline constexpr double kFarthestFrame = 1e9;

// What turns the times of keys into frames.
struct TimeBase {
  double framesPerSecond = 25;
  double length = 1;  // in frames; times from the end count back from here
};

// Frames or seconds from frame 0; from the end they are below zero: frame -1 is the last one.
struct KeyTime {
  double amount = 0;
  bool seconds = false;
  bool fromEnd = false;

  double Frame(const TimeBase& base) const;
  bool operator==(const KeyTime&) const = default;
};

// How a value moves from its key to the next one.
enum class Stretch { kLinear, kSmooth, kHold, kEased };

struct Key {
  KeyTime time;
  Value value;
  Stretch stretch = Stretch::kLinear;
  // Of kEased: one for all components of the value, or one for each.
  std::vector<CubicEasing> easing = {};
  // Of a position that moves along a curve.
  std::optional<PathTangents> path = {};

  bool operator==(const Key&) const = default;
};

// At least one key, in any order. Both coordinates of all positions have the same units.
using Keys = std::vector<Key>;

// Throws ValueError if the control cannot have these keys: a layer has none, choices and switches
// only hold, positions may not mix pixels with percent.
void CheckKeys(const Control& control, const Keys& keys);

// The keys of one control in order of time, for any number of frames. Any number of threads may
// evaluate it.
class Curve {
 public:
  // The keys must have passed CheckKeys. Of keys at the same frame the last one is taken.
  Curve(const Control& control, const Keys& keys, const TimeBase& base);

  // The value at a frame, which may be a fraction; before the first key and after the last one that
  // key's value. Numbers stay within the control's range, where a smooth stretch would overshoot.
  Value At(double frame) const;

 private:
  struct Place {
    double frame;
    Key key;
  };

  Value Between(std::size_t from, double done) const;
  double Component(std::size_t from, double done, int component) const;
  Value Composed(const double (&components)[3]) const;

  const Control& control_;
  std::vector<Place> places_;
};

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_ANIMATION_H_
