// Records of worlds that no sound host passes, and some that only look odd.
#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

#include "headless/effect_module.h"
#include "reliability/guarded_cases.h"
#include "reliability/raw_host.h"
#include "shell/parameters.h"
#include "whole/dice.h"

namespace vitrell::reliability {
namespace {

constexpr PF_Err kFormatFails = 777;
constexpr int kRandomCases = 1000;
constexpr std::uint64_t kSeed = 20261104;

const headless::EffectModule& Module() {
  static const headless::EffectModule module{std::filesystem::path(VITRELL_MODULE_PATH)};
  return module;
}

enum class Look { kDefaults, kEverything, kEverythingByTheLens, kCustomLens, kCount };

void SetFloat(RawHost& host, int index, double value) { host.Param(index).u.fs_d.value = value; }

void SetLook(Look look, RawHost& host) {
  host.Param(PARAM_TYPE).u.pd.value = look == Look::kCustomLens ? 6 : 2;
  SetFloat(host, PARAM_FEATHER, 60);
  SetFloat(host, PARAM_FAST_AMOUNT, 3);
  // The curve of 16-bit lightness costs more than all the rest.
  host.Param(PARAM_LIGHTNESS_VISIBLE).u.bd.value = look == Look::kEverything ? 1 : 0;
  if (look == Look::kDefaults || look == Look::kCustomLens) return;
  SetFloat(host, PARAM_REALISTIC_AMOUNT, 4);
  SetFloat(host, PARAM_OPTICAL_AMOUNT, 70);
  SetFloat(host, PARAM_TRAIL_AMOUNT, 80);
  SetFloat(host, PARAM_DIRECTIONAL_AMOUNT, 4);
  SetFloat(host, PARAM_LIGHTNESS_AMOUNT, 20);
  SetFloat(host, PARAM_COLOR_OPACITY, 30);
  SetFloat(host, PARAM_RED_CYAN, 30);
  SetFloat(host, PARAM_INTENSITY, 70);
  host.Param(PARAM_MODE).u.pd.value = 2;
  if (look == Look::kEverythingByTheLens) {
    host.Param(PARAM_FAST_BLUR_MAP).u.bd.value = 1;
    host.Param(PARAM_REALISTIC_BLUR_MAP).u.bd.value = 1;
  }
}

struct Outcome {
  PF_Err error;
  std::uint64_t checksum;
  bool operator==(const Outcome&) const = default;
};

// Renders once; whatever went wrong beside the answer goes to *complaint.
Outcome RenderOnce(const RawHost::Setup& setup, Look look, std::string* complaint) {
  RawHost host(Module().EntryPoint(), setup);
  SetLook(look, host);
  const std::uint64_t before = host.OutputChecksum();
  const PF_Err error = host.Render();
  *complaint += host.Outstanding();
  if (error != PF_Err_NONE && host.OutputChecksum() != before) {
    *complaint += " changed the output and answered " + std::to_string(error);
  }
  return {error, host.OutputChecksum()};
}

bool IsToldAnswer(PF_Err error, FormatAnswer format) {
  return error == PF_Err_NONE || error == PF_Err_OUT_OF_MEMORY ||
         error == PF_Err_BAD_CALLBACK_PARAM ||
         (error == kFormatFails && format == FormatAnswer::kFails);
}

// The command ends, releases everything and returns one of the expected codes, twice alike.
GuardedCase MakeCase(const RawHost::Setup& setup, Look look) {
  const std::string name =
      std::string(setup.deep ? "16-bit" : "8-bit") + ", input " + NameOf(setup.input) +
      ", output " + NameOf(setup.output) + ", custom " + NameOf(setup.custom) + ", new worlds " +
      NameOf(setup.newWorlds) + (setup.onlyOneNewWorldIsStrange ? " (second)" : "") + ", format " +
      std::to_string(static_cast<int>(setup.format)) + ", look " +
      std::to_string(static_cast<int>(look)) + ", end " +
      std::to_string(static_cast<int>(setup.end)) + (setup.copiesFromNothing ? ", copies" : "") +
      (setup.givesEmptyWorlds ? ", empty worlds" : "");
  return {name, [setup, look] {
            std::string complaint;
            const Outcome first = RenderOnce(setup, look, &complaint);
            const Outcome second = RenderOnce(setup, look, &complaint);
            if (!IsToldAnswer(first.error, setup.format)) {
              complaint += " answers " + std::to_string(first.error);
            }
            if (first != second) complaint += " differs the second time";
            return complaint;
          }};
}

template <typename Visit>
void ForEachKind(const Visit& visit) {
  for (int kind = 0; kind < static_cast<int>(WorldKind::kCount); ++kind) {
    visit(static_cast<WorldKind>(kind));
  }
}

void ExpectAllEnd(const std::vector<GuardedCase>& cases) {
  EXPECT_EQ(RunGuarded(cases), std::vector<std::string>());
  std::cout << cases.size() << " hostile cases, each rendered twice" << std::endl;
}

class HostileWorldsTest : public testing::TestWithParam<bool> {
 protected:
  // Every kind in one place, in every look, with the memory closed at either end.
  void RunKinds(void (*place)(WorldKind, RawHost::Setup*)) {
    std::vector<GuardedCase> cases;
    ForEachKind([&](WorldKind kind) {
      for (int look = 0; look < static_cast<int>(Look::kCount); ++look) {
        for (const MemoryEnd end : {MemoryEnd::kFirst, MemoryEnd::kLast}) {
          for (const bool generous : {false, true}) {
            RawHost::Setup setup;
            setup.deep = GetParam();
            setup.end = end;
            setup.copiesFromNothing = setup.givesEmptyWorlds = generous;
            if (static_cast<Look>(look) == Look::kCustomLens) setup.custom = WorldKind::kUsual;
            place(kind, &setup);
            cases.push_back(MakeCase(setup, static_cast<Look>(look)));
          }
        }
      }
    });
    ExpectAllEnd(cases);
  }
};

TEST_P(HostileWorldsTest, Input) {
  RunKinds([](WorldKind kind, RawHost::Setup* setup) { setup->input = kind; });
}

TEST_P(HostileWorldsTest, Output) {
  RunKinds([](WorldKind kind, RawHost::Setup* setup) { setup->output = kind; });
}

TEST_P(HostileWorldsTest, CustomLayer) {
  RunKinds([](WorldKind kind, RawHost::Setup* setup) { setup->custom = kind; });
}

TEST_P(HostileWorldsTest, AllNewWorlds) {
  RunKinds([](WorldKind kind, RawHost::Setup* setup) { setup->newWorlds = kind; });
}

TEST_P(HostileWorldsTest, OneNewWorld) {
  RunKinds([](WorldKind kind, RawHost::Setup* setup) {
    setup->newWorlds = kind;
    setup->onlyOneNewWorldIsStrange = true;
  });
}

TEST_P(HostileWorldsTest, PixelFormats) {
  std::vector<GuardedCase> cases;
  for (int format = 0; format < static_cast<int>(FormatAnswer::kCount); ++format) {
    ForEachKind([&](WorldKind kind) {
      for (const Look look : {Look::kDefaults, Look::kEverythingByTheLens}) {
        RawHost::Setup setup;
        setup.deep = GetParam();
        setup.format = static_cast<FormatAnswer>(format);
        setup.input = kind;
        setup.copiesFromNothing = true;
        cases.push_back(MakeCase(setup, look));
      }
    });
  }
  ExpectAllEnd(cases);
}

TEST_P(HostileWorldsTest, RandomMixtures) {
  std::cout << "seed " << kSeed << std::endl;
  whole::Dice dice(kSeed);
  std::vector<GuardedCase> cases;
  const auto kind = [&dice] {
    return static_cast<WorldKind>(dice.Below(static_cast<int>(WorldKind::kCount)));
  };
  for (int i = 0; i < kRandomCases; ++i) {
    RawHost::Setup setup;
    setup.deep = GetParam();
    setup.end = dice.Chance(50) ? MemoryEnd::kFirst : MemoryEnd::kLast;
    if (dice.Chance(60)) setup.input = kind();
    if (dice.Chance(60)) setup.output = kind();
    if (dice.Chance(60)) setup.custom = kind();
    if (dice.Chance(60)) setup.newWorlds = kind();
    setup.onlyOneNewWorldIsStrange = dice.Chance(50);
    if (dice.Chance(30)) {
      setup.format = static_cast<FormatAnswer>(dice.Below(static_cast<int>(FormatAnswer::kCount)));
    }
    setup.copiesFromNothing = dice.Chance(50);
    setup.givesEmptyWorlds = dice.Chance(50);
    cases.push_back(MakeCase(setup, static_cast<Look>(dice.Below(static_cast<int>(Look::kCount)))));
  }
  ExpectAllEnd(cases);
}

INSTANTIATE_TEST_SUITE_P(Depths, HostileWorldsTest, testing::Bool(),
                         [](const auto& depth) { return depth.param ? "Deep" : "Shallow"; });

// --- What some of them have to answer ---

PF_Err AnswerTo(const RawHost::Setup& setup) {
  RawHost host(Module().EntryPoint(), setup);
  SetLook(Look::kDefaults, host);
  const PF_Err error = host.Render();
  EXPECT_EQ(host.Outstanding(), "");
  return error;
}

TEST(HostileWorldsAnswerTest, RowsThatDoNotHoldThePixelsOfTheFormat) {
  for (const MemoryEnd end : {MemoryEnd::kFirst, MemoryEnd::kLast}) {
    // 8-bit rows under a 16-bit flag, which the host's format query repeats.
    EXPECT_EQ(AnswerTo({.end = end, .input = WorldKind::kDeepFlagOnly}), PF_Err_BAD_CALLBACK_PARAM);
    // 8-bit rows and flag, 16-bit format.
    EXPECT_EQ(AnswerTo({.end = end, .format = FormatAnswer::kDeep}), PF_Err_BAD_CALLBACK_PARAM);
    // 16-bit rows read as 8-bit ones stay within the rows.
    EXPECT_EQ(AnswerTo({.deep = true, .end = end, .format = FormatAnswer::kShallow}), PF_Err_NONE);
    EXPECT_EQ(AnswerTo({.end = end, .input = WorldKind::kShallowFlagOnly}), PF_Err_NONE);
    for (const bool deep : {false, true}) {
      for (const WorldKind kind :
           {WorldKind::kRowsTooShort, WorldKind::kNoRowBytes, WorldKind::kOddDeepRows}) {
        EXPECT_EQ(AnswerTo({.deep = deep, .end = end, .input = kind}), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(AnswerTo({.deep = deep, .end = end, .newWorlds = kind}),
                  PF_Err_BAD_CALLBACK_PARAM);
      }
    }
  }
}

// Neither rows that run backwards nor padded ones change a pixel.
TEST(HostileWorldsAnswerTest, SoundRowsGiveOneAnswer) {
  for (const bool deep : {false, true}) {
    for (const WorldKind kind : {WorldKind::kUsual, WorldKind::kOddPadding, WorldKind::kBottomUp,
                                 WorldKind::kLargeExtent, WorldKind::kSmallExtent}) {
      EXPECT_EQ(AnswerTo({.deep = deep, .input = kind}), PF_Err_NONE) << NameOf(kind);
      EXPECT_EQ(AnswerTo({.deep = deep, .output = kind}), PF_Err_NONE) << NameOf(kind);
      EXPECT_EQ(AnswerTo({.deep = deep, .newWorlds = kind}), PF_Err_NONE) << NameOf(kind);
    }
  }
  const auto checksum = [](WorldKind newWorlds) {
    RawHost host(Module().EntryPoint(), {.newWorlds = newWorlds});
    SetLook(Look::kEverything, host);
    EXPECT_EQ(host.Render(), PF_Err_NONE);
    return host.OutputChecksum();
  };
  EXPECT_EQ(checksum(WorldKind::kBottomUp), checksum(WorldKind::kUsual));
  EXPECT_EQ(checksum(WorldKind::kOddPadding), checksum(WorldKind::kUsual));
}

// The mask never takes memory for more than can be read of it.
TEST(HostileWorldsAnswerTest, AHugeExtentHintOfTheOutputCostsNothing) {
  for (const WorldKind kind : {WorldKind::kLongExtent, WorldKind::kHugeExtent}) {
    EXPECT_EQ(AnswerTo({.output = kind}), PF_Err_NONE) << NameOf(kind);
  }
}

// --- A render within a render ---

// A host call may bring the host to render another frame on the same thread before it answers.
// Both frames come out as they do alone, at whichever call the second one comes.
TEST(NestedRenderTest, AtEveryHostCall) {
  for (const bool deep : {false, true}) {
    for (const Look look : {Look::kEverything, Look::kEverythingByTheLens, Look::kCustomLens}) {
      const RawHost::Setup setup = {.deep = deep, .custom = WorldKind::kUsual};
      RawHost alone(Module().EntryPoint(), setup);
      SetLook(look, alone);
      int calls = 0;
      alone.onCall = [&calls] { ++calls; };
      ASSERT_EQ(alone.Render(), PF_Err_NONE);
      const std::uint64_t expected = alone.OutputChecksum();
      std::vector<GuardedCase> cases;
      for (int n = 1; n <= calls; ++n) {
        cases.push_back({"at call " + std::to_string(n), [setup, look, n, expected] {
                           RawHost host(Module().EntryPoint(), setup);
                           SetLook(look, host);
                           PF_LayerDef second = host.MakeOutput();
                           int call = 0;
                           PF_Err inner = PF_Err_NONE;
                           host.onCall = [&] {
                             if (++call != n) return;
                             PF_LayerDef* const outer = host.output;
                             host.output = &second;
                             inner = host.Render();
                             host.output = outer;
                           };
                           const PF_Err error = host.Render();
                           if (error != 0 || inner != 0) return std::string("fails");
                           if (host.ChecksumOf(second) != expected) return std::string("inner");
                           if (host.OutputChecksum() != expected) return std::string("outer");
                           return host.Outstanding();
                         }});
      }
      EXPECT_EQ(RunGuarded(cases), std::vector<std::string>()) << static_cast<int>(look);
      std::cout << calls << " renders within a render" << std::endl;
    }
  }
}

}  // namespace
}  // namespace vitrell::reliability
