// The measured cases: settings by name, and the settings each is compared with.
#include "bench/cases.h"

#include <utility>

namespace vitrell::bench {
namespace {

// Choices of "lens.type".
constexpr double kNone = 1;
constexpr double kCircle = 2;
constexpr double kTriangle = 5;
constexpr double kCustom = 6;
// Choices of "mode".
constexpr double kNormal = 1;
constexpr double kAdd = 2;
constexpr double kScreen = 3;
constexpr double kMultiply = 4;

Settings Joined(Settings first, const Settings& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

// No lens and no visible stage, then the given settings.
Settings AllOff(const Settings& more = {}) {
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

// Switches a stage on, by its name in paths, and sets its amount.
Settings Stage(const std::string& name, double amount, const std::string& control = "amount") {
  return {{name + ".visible", 1}, {name + "." + control, amount}};
}

Settings Alone(const std::string& stage, double amount) { return AllOff(Stage(stage, amount)); }

Settings Lens(double type, double feather) {
  return {{"lens.type", type}, {"lens.feather", feather}};
}

// A blur inside a circular lens, and one with that circle as its map.
Settings InCircle(const std::string& blur, double amount, double feather) {
  return AllOff(Joined(Lens(kCircle, feather), Stage(blur, amount)));
}
Settings Mapped(const std::string& blur, double amount, double feather) {
  return Joined(InCircle(blur, amount, feather), {{blur + ".use-lens-as-blur-map", 1}});
}

BenchCase Plain(std::string name, std::string detail, Settings settings, Settings other = {}) {
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

BenchCase Trail(std::string detail, double amount) {
  BenchCase result = Plain("Trail", std::move(detail), Alone("trail", amount));
  result.oneThreadOnly = true;
  return result;
}

BenchCase Pass(std::string name, std::string detail, Settings settings, int pass, int passes) {
  BenchCase result = Plain(std::move(name), std::move(detail), std::move(settings));
  result.pass = pass;
  result.passes = passes;
  return result;
}

// Lightness makes the front differ from the layer it is blended with.
BenchCase Blend(std::string detail, double mode, double intensity) {
  return Pass("Blend", std::move(detail),
              Joined(Alone("lightness", 40), {{"mode", mode}, {"intensity", intensity}}), 1, 2);
}

BenchCase Mask(std::string detail, double type) {
  BenchCase result = Plain("LensMask", std::move(detail), AllOff(Lens(type, 50)));
  result.mask = true;
  result.customLayer = type == kCustom;
  return result;
}

std::vector<BenchCase> FastBlurs() {
  return {
      Plain("FastBlur", "r5", Alone("fast-blur", 5)),
      AlsoHuge(Plain("FastBlur", "r20", Alone("fast-blur", 20))),
      Plain("FastBlur", "r500", Alone("fast-blur", 500), Alone("fast-blur", 5)),
      Plain("FastBlurInLens", "r20-feather50", InCircle("fast-blur", 20, 50)),
      Plain("FastBlurMapped", "r20-feather50", Mapped("fast-blur", 20, 50),
            InCircle("fast-blur", 20, 50)),
      // With amount / 100 >= twice the feather the fast blur does not follow the lens: the lens
      // mask is strengthened instead.
      Plain("FastBlurMapped", "r200-feather50", Mapped("fast-blur", 200, 50),
            Mapped("fast-blur", 20, 50)),
      Plain("FastBlurMapped", "r20-feather150", Mapped("fast-blur", 20, 150)),
      Plain("FastBlurMapped", "r200-feather150", Mapped("fast-blur", 200, 150),
            Mapped("fast-blur", 20, 150)),
  };
}

std::vector<BenchCase> OtherBlurs() {
  return {
      AlsoHuge(Plain("RealisticBlur", "r20", Alone("realistic-blur", 20))),
      Plain("RealisticBlur", "r50", Alone("realistic-blur", 50)),
      Plain("RealisticBlur", "r100", Alone("realistic-blur", 100)),
      Plain("RealisticBlurMapped", "r20", Mapped("realistic-blur", 20, 100)),
      Plain("RealisticBlurMapped", "r50", Mapped("realistic-blur", 50, 100)),
      Plain("DirectionalBlur", "20", Alone("directional-blur", 20)),
      Plain("DirectionalBlur", "200", Alone("directional-blur", 200),
            Alone("directional-blur", 20)),
      Trail("30", 30),
      Trail("100", 100),
      Plain("OpticalDistortion", "90deg", Alone("optical-distortion", 90)),
  };
}

std::vector<BenchCase> Tones() {
  const auto litInCircle = AllOff(Joined(Lens(kCircle, 50), Stage("lightness", 40)));
  return {
      Pass("Lightness", "40", Alone("lightness", 40), 0, 2),
      Pass("Color", "50", AllOff(Stage("color", 50, "opacity")), 0, 2),
      Pass("ChromaticAberration", "10", AllOff(Stage("chromatic-aberration", 10, "red-cyan")), 0,
           2),
      Blend("normal-100", kNormal, 100),
      Blend("normal-70", kNormal, 70),
      Blend("add-70", kAdd, 70),
      Blend("screen-70", kScreen, 70),
      Blend("multiply-100", kMultiply, 100),
      Blend("multiply-70", kMultiply, 70),
      Pass("Lens", "feather50", litInCircle, 2, 3),
      Mask("circle", kCircle),
      Mask("triangle", kTriangle),
      Mask("custom", kCustom),
  };
}

std::vector<Settings> StagesOn() {
  return {Stage("fast-blur", 20),          Stage("realistic-blur", 20),
          Stage("optical-distortion", 90), Stage("trail", 30),
          Stage("directional-blur", 20),   Stage("lightness", 40),
          Stage("color", 50, "opacity"),   Stage("chromatic-aberration", 10, "red-cyan")};
}

}  // namespace

std::vector<BenchCase> AllCases() {
  std::vector<BenchCase> cases = {AlsoHuge(Plain("WholeDefault", "", {})),
                                  Plain("AllOff", "", AllOff())};
  for (const auto& more : {FastBlurs(), OtherBlurs(), Tones()}) {
    cases.insert(cases.end(), more.begin(), more.end());
  }
  return cases;
}

Settings CircleAlone() { return AllOff(Lens(kCircle, 50)); }

Settings EverythingOn() {
  Settings settings = CircleAlone();
  for (const Settings& stage : StagesOn()) settings = Joined(settings, stage);
  return settings;
}

std::vector<Settings> EachAlone() {
  std::vector<Settings> alone;
  for (const Settings& stage : StagesOn()) alone.push_back(Joined(CircleAlone(), stage));
  return alone;
}

}  // namespace vitrell::bench
