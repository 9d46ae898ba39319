// A value for every control: the defaults, changed by a preset and by --set.
#ifndef VITRELL_LOOK_SETTINGS_H_
#define VITRELL_LOOK_SETTINGS_H_

#include <string>
#include <string_view>
#include <vector>

#include "headless/effect_host.h"
#include "look/control.h"

namespace vitrell::look {

class Settings {
 public:
  // Starts with the defaults. The panel must outlive the settings.
  explicit Settings(const Panel& panel);

  // One "--set NAME=VALUE". Throws Failure (wrong usage) that tells the cause and the remedy.
  void Set(std::string_view assignment);

  const Panel& GetPanel() const { return panel_; }
  // In the order of Panel::controls.
  const std::vector<Value>& Values() const { return values_; }
  const Value& ValueOf(const Control& control) const;
  void SetValue(const Control& control, Value value);

  // Hands the values to the host. Pixels and percent of one position may be mixed, for which the
  // picture's size is needed.
  void Apply(headless::EffectHost& host, int width, int height) const;

 private:
  std::size_t PositionOf(const Control& control) const;

  const Panel& panel_;
  std::vector<Value> values_;
};

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_SETTINGS_H_
