// One small frame through the module, and the host calls it makes, for tests of the driver.
#ifndef VITRELL_TESTS_RENDER_DRIVER_CASE_H_
#define VITRELL_TESTS_RENDER_DRIVER_CASE_H_

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "headless/effect_host.h"

namespace vitrell {

// The picture is 6 x 4 pixels of noise; the parameters start at their defaults.
class DriverCase {
 public:
  explicit DriverCase(bool deep = false);

  // By path: a slider, a popup (1-based) or a checkbox (any number).
  DriverCase& Set(std::string_view path, double value);
  // Every stage and the lens off; the final blend remains.
  DriverCase& AllOff();
  // A custom layer of noise, of another size than the picture.
  DriverCase& SetCustomLayer(PF_WorldFlags flags);

  headless::EffectHost& host() { return host_; }
  headless::WorldBuffer& input() { return input_; }
  headless::WorldBuffer& output() { return output_; }

  // Renders into fresh, poisoned pixels.
  headless::RenderResult Render();
  // The calls of a render that must succeed without a complaint.
  std::vector<std::string> Calls();
  // What the output holds after a render that must succeed without a complaint.
  headless::WorldBuffer Picture();

  headless::RenderOptions options;

 private:
  headless::EffectHost host_;
  headless::WorldBuffer input_;
  headless::WorldBuffer output_;
  std::optional<headless::WorldBuffer> custom_;
};

using CallList = std::vector<std::string>;

// One list after the other.
CallList Join(std::initializer_list<CallList> parts);

// What every render without a custom layer begins and ends with, for the names of its two working
// worlds.
CallList Opening();
CallList Closing();

// One round of the fast blur from one world into the other, with its temporary world.
CallList FastRound(const std::string& from, const std::string& to, const std::string& temporary);

// The final blend from one world into the other.
CallList FinalBlend(const std::string& from, const std::string& to);

}  // namespace vitrell

#endif  // VITRELL_TESTS_RENDER_DRIVER_CASE_H_
