// A value, or keys in time, for every control: the defaults, changed by presets and by --set.
#ifndef VITRELL_LOOK_SETTINGS_H_
#define VITRELL_LOOK_SETTINGS_H_

#include <string>
#include <string_view>
#include <vector>

#include "headless/effect_host.h"
#include "look/animation.h"
#include "look/control.h"

namespace vitrell::look {

class Settings {
 public:
  // Starts with the defaults. The panel must outlive the settings.
  explicit Settings(const Panel& panel);

  // One "--set NAME=VALUE", where VALUE may be keys. Throws Failure (wrong usage) that tells the
  // cause and the remedy.
  void Set(std::string_view assignment);

  const Panel& GetPanel() const { return panel_; }
  // In the order of Panel::controls.
  const std::vector<Value>& Values() const { return values_; }
  // Of a control with keys: the value of its first key.
  const Value& ValueOf(const Control& control) const;
  // The control has no keys then.
  void SetValue(const Control& control, Value value);

  // Lengths in pixels (radii, and positions that are not in percent) belong to the width of the
  // picture that they were chosen for. Values are for no width in particular until a preset says
  // so.
  void SetMadeFor(const Control& control, double width);
  // The same for all values that nobody set: a preset leaves them as they are for its picture, too.
  void SetRestMadeFor(double width);
  // The widths of those lengths that have one, without repetition.
  std::vector<double> WidthsMadeFor() const;
  // Scales the lengths that have a width to another one. Returns the names of those that would
  // leave their range and got its end.
  std::vector<std::string> FitTo(double width);

  // Null for a control without keys.
  const Keys* KeysOf(const Control& control) const;
  // The keys must have passed CheckKeys.
  void SetKeys(const Control& control, Keys keys);
  // Whether any control has keys.
  bool Moves() const;
  // Whether the time of any key counts from the end.
  bool CountsFromEnd() const;
  // The values at a frame, without keys.
  Settings At(double frame, const TimeBase& base) const;

  // Hands the values to the host; keys are left out. Pixels and percent of one position may be
  // mixed, for which the picture's size is needed.
  void Apply(headless::EffectHost& host, int width, int height) const;

 private:
  struct Origin {
    bool isSet = false;
    double width = 0;  // 0: not told
  };

  std::size_t PositionOf(const Control& control) const;
  bool HasPixels(const Control& control) const;

  const Panel& panel_;
  std::vector<Value> values_;
  std::vector<Keys> keys_;  // In the order of Panel::controls; empty where the value stands still.
  std::vector<Origin> origins_;  // of the values
};

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_SETTINGS_H_
