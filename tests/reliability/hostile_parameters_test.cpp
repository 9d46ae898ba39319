// Parameter values that the panel does not offer.
#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "headless/effect_host.h"
#include "literal/host_calls.h"
#include "reliability/fault_cases.h"
#include "reliability/guarded_cases.h"
#include "reliability/sanitizers.h"
#include "whole/dice.h"
#include "whole/literal_bridge.h"

namespace vitrell::reliability {
namespace {

constexpr int kRandomCases = 500;
constexpr std::uint64_t kSeed = 20261105;
constexpr A_long kSmallest = std::numeric_limits<A_long>::min();
constexpr A_long kLargest = std::numeric_limits<A_long>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

std::shared_ptr<const headless::EffectModule> Module() {
  static const auto module = std::make_shared<const headless::EffectModule>(VITRELL_MODULE_PATH);
  return module;
}

const FaultCase& CaseNamed(const std::string& name) {
  for (const FaultCase& faultCase : FaultCases()) {
    if (faultCase.name == name) return faultCase;
  }
  throw std::logic_error("no case " + name);
}

const std::vector<double> kFloats = {kNan,  kInfinity, -kInfinity, -1,  -0.0,         1e-40, -1e300,
                                     1e300, 3e9,       -5000,      1e5, 2147483648.0, 0.01};
const std::vector<A_long> kPopups = {0, 99, -1, kSmallest, kLargest, 7, 5};
const std::vector<A_long> kCheckboxes = {2, 257, 256, -1, 255, kSmallest, kLargest, 0, 1};
const std::vector<A_long> kFixed = {kSmallest, kLargest, 0, -65566, 65536, 1 << 30, -(1 << 30)};

int ValueCount(PF_ParamType type) {
  switch (type) {
    case PF_Param_FLOAT_SLIDER:
      return static_cast<int>(kFloats.size());
    case PF_Param_POPUP:
      return static_cast<int>(kPopups.size());
    case PF_Param_CHECKBOX:
      return static_cast<int>(kCheckboxes.size());
    case PF_Param_POINT:
    case PF_Param_ANGLE:
      return static_cast<int>(kFixed.size());
    default:
      return 0;
  }
}

std::string SetHostile(headless::EffectHost& host, int index, int choice) {
  PF_ParamDef& record = host.Record(index);
  const auto i = static_cast<std::size_t>(choice);
  std::string value;
  switch (record.param_type) {
    case PF_Param_FLOAT_SLIDER:
      record.u.fs_d.value = kFloats[i];
      value = testing::PrintToString(kFloats[i]);
      break;
    case PF_Param_POPUP:
      record.u.pd.value = kPopups[i];
      value = std::to_string(kPopups[i]);
      break;
    case PF_Param_CHECKBOX:
      record.u.bd.value = kCheckboxes[i];
      value = std::to_string(kCheckboxes[i]);
      break;
    case PF_Param_POINT: {
      // Told in pixels: the host must not convert it.
      host.SetPointPixels(index, 0, 0);
      record.u.td.x_value = kFixed[i];
      record.u.td.y_value = kFixed[(i + 3) % kFixed.size()];
      value = std::to_string(kFixed[i]);
      break;
    }
    default:
      record.u.ad.value = kFixed[i];
      value = std::to_string(kFixed[i]);
      break;
  }
  return " " + host.Parameters()[static_cast<std::size_t>(index)].path + "=" + value;
}

// What the literal render can follow in a moment: it walks every tap, and folds far positions back
// in step by step.
bool IsShortEnoughForLiteral(const headless::EffectHost& host) {
  const auto within = [&host](std::string_view path, double most) {
    return std::fabs(host.Record(host.IndexOf(path)).u.fs_d.value) <= most;
  };
  return within("fast-blur.amount", 500) && within("realistic-blur.amount", 40) &&
         within("directional-blur.amount", 5000) && within("trail.amount", 5000) &&
         within("optical-distortion.amount", 5000) &&
         within("chromatic-aberration.red-cyan", 5000) &&
         within("chromatic-aberration.green-magenta", 5000) &&
         within("chromatic-aberration.blue-yellow", 5000);
}

std::string RenderTwice(FaultRender& render) {
  std::string complaint;
  PF_Err errors[2];
  std::uint64_t sums[2];
  for (int i = 0; i < 2; ++i) {
    const headless::RenderResult result = render.Render();
    errors[i] = result.error;
    sums[i] = render.Output().Checksum();
    for (const std::string& sentence : result.complaints) complaint += sentence + " ";
    if (render.Output().Damage()) complaint += *render.Output().Damage();
  }
  if (errors[0] != PF_Err_NONE && errors[0] != PF_Err_OUT_OF_MEMORY) {
    complaint += "answers " + std::to_string(errors[0]);
  }
  if (errors[0] != errors[1] || sums[0] != sums[1]) complaint += "differs the second time";
  return complaint;
}

// The literal render is the definition wherever it can be followed.
std::string CompareWithLiteral(FaultRender& render) {
  render.Output().FillBytes(0xA5);
  const literal::RenderInputs inputs = whole::MakeRenderInputs(
      render.Host(), render.Input(), render.Output(), nullptr, 0, render.Options());
  const literal::RenderOutcome expected = literal::Render(inputs);
  const headless::RenderResult result = render.Render();
  if (result.error != expected.error) {
    return "answers " + std::to_string(result.error) + ", not " + std::to_string(expected.error);
  }
  return headless::DescribeDifference(whole::FromLiteral(expected.output), render.Output(), 2);
}

constexpr const char* kLooks[] = {"the default settings", "everything", "everything by the lens",
                                  "nothing but the blend"};

// The cases of one test, and how many of them are compared with the literal render: with a
// sanitizer none, because the literal render is slow and results do not depend on sanitizers.
struct CaseList {
  std::vector<GuardedCase> cases;
  int settings = 0;
  int compared = 0;

  void Add(const char* look, bool deep, const std::vector<std::pair<int, int>>& values) {
    FaultRender probe(Module(), CaseNamed(look), deep);
    std::string name = std::string(look) + (deep ? ", 16-bit:" : ", 8-bit:");
    for (const auto& [index, choice] : values) name += SetHostile(probe.Host(), index, choice);
    const auto add = [&](const std::string& caseName, std::string (*check)(FaultRender&)) {
      cases.push_back({caseName, [look, deep, values, check] {
                         FaultRender render(Module(), CaseNamed(look), deep);
                         for (const auto& [index, choice] : values) {
                           SetHostile(render.Host(), index, choice);
                         }
                         return check(render);
                       }});
    };
    add(name, RenderTwice);
    ++settings;
    if (!kSanitized && IsShortEnoughForLiteral(probe.Host())) {
      add(name + " (compared)", CompareWithLiteral);
      ++compared;
    }
  }

  void ExpectAllEnd() const {
    EXPECT_EQ(RunGuarded(cases), std::vector<std::string>());
    std::cout << settings << " hostile settings, " << compared
              << " compared with the literal render" << std::endl;
  }
};

class HostileParametersTest : public testing::TestWithParam<bool> {};

TEST_P(HostileParametersTest, EveryParameterEveryValue) {
  const headless::EffectHost host(Module());
  CaseList list;
  for (const headless::Parameter& parameter : host.Parameters()) {
    for (int choice = 0; choice < ValueCount(parameter.type); ++choice) {
      // The plainer looks show nothing in 16 bits that they do not show in 8.
      for (int look = GetParam() ? 1 : 0; look < (GetParam() ? 3 : 4); ++look) {
        list.Add(kLooks[look], GetParam(), {{parameter.index, choice}});
      }
    }
  }
  list.ExpectAllEnd();
}

TEST_P(HostileParametersTest, RandomMixtures) {
  std::cout << "seed " << kSeed << std::endl;
  const headless::EffectHost host(Module());
  std::vector<int> controls;
  for (const headless::Parameter& parameter : host.Parameters()) {
    if (ValueCount(parameter.type) > 0) controls.push_back(parameter.index);
  }
  whole::Dice dice(kSeed);
  CaseList list;
  for (int i = 0; i < kRandomCases; ++i) {
    std::vector<std::pair<int, int>> values;
    for (int n = dice.Between(2, 12); n > 0; --n) {
      const int index = dice.Pick(controls);
      const PF_ParamType type = host.Parameters()[static_cast<std::size_t>(index)].type;
      values.emplace_back(index, dice.Below(ValueCount(type)));
    }
    list.Add(kLooks[dice.Below(3)], GetParam(), values);
  }
  list.ExpectAllEnd();
}

INSTANTIATE_TEST_SUITE_P(Depths, HostileParametersTest, testing::Bool(),
                         [](const auto& depth) { return depth.param ? "Deep" : "Shallow"; });

// --- Amounts that are offered, on a tiny picture ---

// The largest values that the panel lets a user type cost a moment and little memory.
TEST(LargestAmountsTest, EndInAMoment) {
  std::vector<GuardedCase> cases;
  const headless::EffectHost host(Module());
  for (const headless::Parameter& parameter : host.Parameters()) {
    if (parameter.type != PF_Param_FLOAT_SLIDER) continue;
    for (const double value : {parameter.validMin, parameter.validMax}) {
      for (const char* const look : kLooks) {
        for (const bool deep : {false, true}) {
          for (const int threads : {1, 7}) {
            cases.push_back({parameter.path + "=" + std::to_string(value) + ", " + look,
                             [path = parameter.path, value, look, deep, threads] {
                               FaultRender render(Module(), CaseNamed(look), deep);
                               render.Options().threads = threads;
                               render.Host().SetFloat(render.Host().IndexOf(path), value);
                               const headless::RenderResult result = render.Render();
                               return result.Ok() ? std::string() : result.description;
                             }});
          }
        }
      }
    }
  }
  EXPECT_EQ(RunGuarded(cases), std::vector<std::string>());
  std::cout << cases.size() << " renders with a slider at its end" << std::endl;
}

// A pixel whose row another thread is computing is computed alone, which must not mean summing
// every tap of a radius far beyond the panel's.
TEST(LargestAmountsTest, RadiusOfTwoThousandMillionOnSevenThreads) {
  std::vector<GuardedCase> cases;
  for (const bool deep : {false, true}) {
    cases.push_back({deep ? "16-bit" : "8-bit", [deep] {
                       FaultRender render(Module(), CaseNamed("the default settings"), deep);
                       render.Host().SetFloat(render.Host().IndexOf("fast-blur.amount"), 2e9);
                       const headless::RenderResult alone = render.Render();
                       const headless::WorldBuffer expected = render.Output();
                       render.Options().threads = 7;
                       render.Options().order = headless::IterateOrder::kSinglePixels;
                       for (int i = 0; i < 50 && alone.Ok(); ++i) {
                         render.Render();
                         if (!headless::SamePixels(expected, render.Output())) return "differs";
                       }
                       return alone.Ok() ? "" : "fails";
                     }});
  }
  EXPECT_EQ(RunGuarded(cases), std::vector<std::string>());
}

}  // namespace
}  // namespace vitrell::reliability
