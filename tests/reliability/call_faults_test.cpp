// Every host call of many renders, and of the other commands, is made to fail in turn.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "headless/effect_host.h"
#include "reliability/expected_calls.h"
#include "reliability/fault_cases.h"
#include "reliability/watchdog.h"
#include "whole/dice.h"
#include "whole/literal_bridge.h"

namespace vitrell::reliability {
namespace {

using headless::CallKind;

constexpr PF_Err kCode = 777;
constexpr PF_Err kOtherCode = 888;
constexpr int kPairsOfFailures = 40;  // For each case and depth.
constexpr std::uint64_t kSeed = 20261103;

std::shared_ptr<const headless::EffectModule> Module() {
  static const auto module = std::make_shared<const headless::EffectModule>(VITRELL_MODULE_PATH);
  return module;
}

std::string FirstWord(const std::string& text) { return text.substr(0, text.find(' ')); }

// One case in one depth, and what it must do.
class Scenario {
 public:
  Scenario(const FaultCase& faultCase, bool deep)
      : name_(faultCase.name + (deep ? ", 16-bit" : ", 8-bit")),
        tooSlow_(faultCase.tooSlowTapByTap),
        render_(Module(), faultCase, deep) {
    if (render_.Custom() != nullptr) custom_.emplace(whole::ToLiteral(*render_.Custom()));
    render_.Output().FillBytes(0xA5);
    inputs_ = whole::MakeRenderInputs(
        render_.Host(), render_.Input(), render_.Output(), custom_ ? &*custom_ : nullptr,
        render_.Custom() != nullptr ? render_.Custom()->Def().world_flags : 0, render_.Options());
  }

  const std::string& Name() const { return name_; }
  int CallCount() const { return static_cast<int>(plain_.calls.size()); }
  const std::string& Call(int n) const { return plain_.calls[static_cast<std::size_t>(n) - 1]; }

  void RenderUndisturbed() {
    plain_ = Expect({});
    const headless::RenderResult result = render_.Render();
    EXPECT_EQ(result.error, plain_.error) << result.description;
    EXPECT_EQ(headless::CallTexts(result.calls), plain_.calls);
    EXPECT_EQ(result.complaints, std::vector<std::string>());
    exact_.emplace(render_.Output());
    if (plain_.error == 0 && !tooSlow_) {
      const literal::RenderOutcome picture = literal::Render(inputs_);
      EXPECT_EQ(headless::DescribeDifference(whole::FromLiteral(picture.output), *exact_), "");
    }
  }

  void Disturb(const std::vector<PlannedFailure>& failures) {
    const ExpectedOutcome expected = Expect(failures);
    for (const PlannedFailure& failure : failures) {
      render_.Host().GetFaults().FailNth(CallKind::kAny, failure.call, failure.error);
    }
    headless::RenderResult failed;
    RunOnAnotherThread(name_, [&] { failed = render_.Render(); });
    EXPECT_EQ(failed.error, expected.error);
    EXPECT_EQ(headless::CallTexts(failed.calls), expected.calls);
    EXPECT_EQ(failed.complaints, ExpectedComplaints(expected));
    EXPECT_EQ(render_.Output().Damage().value_or(""), "");
    if (expected.error != 0 && !WasOutputWritten(expected)) {
      headless::WorldBuffer untouched = *exact_;
      untouched.FillBytes(0xA5);
      EXPECT_TRUE(headless::SamePixels(untouched, render_.Output()));
    }
    render_.Host().GetFaults().Clear();
    headless::RenderResult next;
    RunOnAnotherThread(name_ + " again", [&] { next = render_.Render(); });
    EXPECT_EQ(next.error, plain_.error);
    EXPECT_EQ(next.complaints, std::vector<std::string>());
    EXPECT_EQ(headless::DescribeDifference(*exact_, render_.Output()), "");
  }

 private:
  ExpectedOutcome Expect(const std::vector<PlannedFailure>& failures) const {
    return ExpectRender(inputs_, literal::RenderTime{}, failures);
  }

  // The host misses nothing but the check-in that an abort request skips.
  static std::vector<std::string> ExpectedComplaints(const ExpectedOutcome& expected) {
    const bool aborted =
        expected.calls.size() > 1 && expected.calls[1].rfind("abort fails", 0) == 0;
    if (!aborted) return {};
    return {"During RENDER the effect did not check in parameter 3."};
  }

  static bool WasOutputWritten(const ExpectedOutcome& expected) {
    return std::any_of(expected.calls.begin(), expected.calls.end(), [](const std::string& call) {
      return call.find("-> output") != std::string::npos && call.find("fails") == std::string::npos;
    });
  }

  std::string name_;
  bool tooSlow_;
  FaultRender render_;
  std::optional<literal::World> custom_;
  literal::RenderInputs inputs_;
  ExpectedOutcome plain_;
  std::optional<headless::WorldBuffer> exact_;
};

class CallFaultsTest : public testing::TestWithParam<bool> {};

TEST_P(CallFaultsTest, EveryCallOfEveryRender) {
  std::map<std::string, int> injected;
  int all = 0;
  for (const FaultCase& faultCase : FaultCases()) {
    Scenario scenario(faultCase, GetParam());
    SCOPED_TRACE(scenario.Name());
    scenario.RenderUndisturbed();
    for (int n = 1; n <= scenario.CallCount(); ++n) {
      SCOPED_TRACE("call " + std::to_string(n) + ": " + scenario.Call(n));
      scenario.Disturb({{n, kCode}});
      ++injected[FirstWord(scenario.Call(n))];
      ++all;
      if (HasFatalFailure() || HasNonfatalFailure()) return;
    }
  }
  std::cout << all << " failing calls in " << FaultCases().size() << " renders:";
  for (const auto& [call, count] : injected) std::cout << " " << call << " " << count;
  std::cout << std::endl;
  EXPECT_GE(FaultCases().size(), 20U);
  for (const char* const call :
       {"checkout_param", "checkin_param", "abort", "new_world", "copy", "acquire_suite",
        "release_suite", "dispose_world", "get_pixel_format"}) {
    EXPECT_GT(injected[call], 0) << call;
  }
  EXPECT_GT(injected[GetParam() ? "fill16" : "fill"], 0);
  EXPECT_GT(injected[GetParam() ? "iterate16" : "iterate8"], 0);
}

// Two calls of one render; the second may be one that only the first one's failure brings about.
TEST_P(CallFaultsTest, PairsOfCalls) {
  std::cout << "seed " << kSeed << std::endl;
  whole::Dice dice(kSeed);
  int all = 0;
  for (const FaultCase& faultCase : FaultCases()) {
    Scenario scenario(faultCase, GetParam());
    scenario.RenderUndisturbed();
    for (int i = 0; i < kPairsOfFailures; ++i) {
      const int first = dice.Between(1, scenario.CallCount());
      const int second = first + dice.Between(1, 6);
      SCOPED_TRACE(scenario.Name() + ", calls " + std::to_string(first) + " and " +
                   std::to_string(second));
      scenario.Disturb({{first, kCode}, {second, kOtherCode}});
      ++all;
      if (HasFatalFailure() || HasNonfatalFailure()) return;
    }
  }
  std::cout << all << " pairs of failing calls" << std::endl;
}

INSTANTIATE_TEST_SUITE_P(Depths, CallFaultsTest, testing::Bool(),
                         [](const auto& depth) { return depth.param ? "Deep" : "Shallow"; });

// --- The other commands ---

// The set-up stops at the first parameter that the host rejects, and does not set num_params.
TEST(CommandFaultsTest, EveryParameterThatCannotBeAdded) {
  constexpr int kParameters = 64;
  for (int n = 1; n <= kParameters; ++n) {
    headless::EffectHost host(Module(), headless::EffectHost::Setup::kSkip);
    host.OutData().num_params = -5;
    host.GetFaults().FailNth(CallKind::kAddParam, n, kCode);
    EXPECT_EQ(host.Send(PF_Cmd_PARAMS_SETUP), kCode) << n;
    EXPECT_EQ(headless::CountCalls(host.Calls(), CallKind::kAddParam), n);
    EXPECT_EQ(host.Parameters().size(), static_cast<std::size_t>(n));
    EXPECT_EQ(host.OutData().num_params, -5);
    EXPECT_EQ(host.Complaints(), std::vector<std::string>());
  }
  headless::EffectHost host(Module(), headless::EffectHost::Setup::kSkip);
  EXPECT_EQ(host.Send(PF_Cmd_PARAMS_SETUP), PF_Err_NONE);
  EXPECT_EQ(headless::CountCalls(host.Calls(), CallKind::kAny), kParameters);
}

// The panel: every redraw and the release are ignored, the suite is needed.
TEST(CommandFaultsTest, EveryCallOfThePanel) {
  constexpr int kCalls = 15;  // The suite, 13 redraws, the release.
  for (const PF_Cmd command : {PF_Cmd_UPDATE_PARAMS_UI, PF_Cmd_USER_CHANGED_PARAM}) {
    headless::EffectHost host(Module());
    for (int n = 1; n <= kCalls; ++n) {
      host.GetFaults().FailNth(CallKind::kAny, n, kCode);
      EXPECT_EQ(host.Send(command), n == 1 ? PF_Err_BAD_CALLBACK_PARAM : PF_Err_NONE) << n;
      EXPECT_EQ(headless::CountCalls(host.Calls(), CallKind::kAny), n == 1 ? 1 : kCalls);
      EXPECT_EQ(host.Complaints(), std::vector<std::string>());
      host.GetFaults().Clear();
      EXPECT_EQ(host.UpdatePanel(), PF_Err_NONE);
    }
  }
}

TEST(CommandFaultsTest, EveryCallOfAbout) {
  headless::EffectHost host(Module());
  const std::string text = host.About();
  EXPECT_EQ(headless::CountCalls(host.Calls(), CallKind::kAny), 2);
  host.GetFaults().FailNth(CallKind::kAny, 1, kCode);
  EXPECT_EQ(host.Send(PF_Cmd_ABOUT), PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_STREQ(host.OutData().return_msg, "");
  host.GetFaults().Clear();
  host.GetFaults().FailNth(CallKind::kAny, 2, kCode);
  EXPECT_EQ(host.About(), text);
  EXPECT_EQ(host.Complaints(), std::vector<std::string>());
}

}  // namespace
}  // namespace vitrell::reliability
