// The settings from which the stages' benchmark cases are assembled.
#include "bench/case_parts.h"

#include <utility>

namespace vitrell::bench {

Settings Joined(Settings first, const Settings& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Settings AllOff(const Settings& more) {
  return Joined({{"lens.type", kNone},
                 {"fast-blur.visible", 0},
                 {"realistic-blur.visible", 0},
                 {"optical-distortion.visible", 0},
                 {"trail.visible", 0},
                 {"directional-blur.visible", 0},
                 {"lightness.visible", 0},
                 {"color.visible", 0},
                 {"chromatic-aberration.visible", 0}},
                more);
}

Settings Stage(const std::string& name, double amount, const std::string& control) {
  return {{name + ".visible", 1}, {name + "." + control, amount}};
}

Settings Alone(const std::string& stage, double amount) { return AllOff(Stage(stage, amount)); }

Settings Lens(double type, double feather) {
  return {{"lens.type", type}, {"lens.feather", feather}};
}

Settings InCircle(const std::string& blur, double amount, double feather) {
  return AllOff(Joined(Lens(kCircle, feather), Stage(blur, amount)));
}
Settings Mapped(const std::string& blur, double amount, double feather) {
  return Joined(InCircle(blur, amount, feather), {{blur + ".use-lens-as-blur-map", 1}});
}

BenchCase Plain(std::string name, std::string detail, Settings settings, Settings other) {
  BenchCase result;
  result.name = std::move(name);
  result.detail = std::move(detail);
  result.settings = std::move(settings);
  result.other = std::move(other);
  return result;
}

BenchCase AlsoHuge(BenchCase benchCase) {
  benchCase.huge = true;
  return benchCase;
}

BenchCase Pass(std::string name, std::string detail, Settings settings, int pass, int passes) {
  BenchCase result = Plain(std::move(name), std::move(detail), std::move(settings));
  result.pass = pass;
  result.passes = passes;
  return result;
}

}  // namespace vitrell::bench
