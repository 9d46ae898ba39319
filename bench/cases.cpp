// All measured cases in the order of the tables, and the sets of stages that are compared.
#include "bench/cases.h"

#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {
namespace {

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
  for (const auto& more :
       {FastBlurCases(), RealisticBlurCases(), DirectionalBlurCases(), TrailCases(),
        OpticalDistortionCases(), LightnessCases(), ColorEffectCases(), ChromaticAberrationCases(),
        BlendCases(), LensStageCases(), LensMaskCases()}) {
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
