// What becomes of a frame when the effect fails.
#include "frei0r/lens_instance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "frei0r/interface.h"
#include "headless/fakes/fake_effect.h"
#include "headless/host_error.h"

namespace vitrell::frei0r {
namespace {

using headless::fakes::Command;

constexpr int kWidth = 3;
constexpr int kHeight = 2;
const std::vector<std::uint32_t> kFrame = {0x01020304, 0x11121314, 0x21222324,
                                           0x31323334, 0x41424344, 0x51525354};

// What the instance makes of the frame, and what it says meanwhile.
struct Outcome {
  std::vector<std::uint32_t> result;
  std::string said;
};

Outcome RenderOnce(LensInstance& instance) {
  Outcome outcome;
  outcome.result.assign(kFrame.size(), 0);
  testing::internal::CaptureStderr();
  instance.Render(kFrame.data(), nullptr, outcome.result.data());
  outcome.said = testing::internal::GetCapturedStderr();
  return outcome;
}

// The instance's effect does `render`.
class LensInstanceTest : public testing::Test {
 protected:
  static void Behave(headless::fakes::Behaviour render) {
    headless::fakes::SetBehaviours({{PF_Cmd_RENDER, std::move(render)}});
  }
};

TEST_F(LensInstanceTest, ChannelsReachTheEffectInItsOrderAndComeBack) {
  std::vector<PF_Pixel> seen;
  Behave([&](const Command& command) {
    const auto* pixels = reinterpret_cast<const PF_Pixel*>(command.Input().data);
    seen.assign(pixels, pixels + 1);
    *reinterpret_cast<PF_Pixel*>(command.output->data) = {40, 10, 20, 30};
    return PF_Err_NONE;
  });
  const Lens lens(headless::fakes::Module());
  LensInstance instance(lens, 1, 1, false);
  const std::uint8_t frame[] = {1, 2, 3, 4};
  std::uint8_t result[4] = {};
  std::uint32_t words[2] = {};
  std::copy_n(frame, 4, reinterpret_cast<std::uint8_t*>(words));
  instance.Render(words, nullptr, words + 1);
  std::copy_n(reinterpret_cast<std::uint8_t*>(words + 1), 4, result);
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_EQ(seen[0].alpha, 4);
  EXPECT_EQ(seen[0].red, 1);
  EXPECT_EQ(seen[0].green, 2);
  EXPECT_EQ(seen[0].blue, 3);
  EXPECT_EQ(std::vector<int>(result, result + 4), (std::vector<int>{10, 20, 30, 40}));
}

TEST_F(LensInstanceTest, AFailedFrameIsHandedOnAndToldOnce) {
  bool fail = true;
  Behave([&](const Command& command) {
    std::fill_n(static_cast<std::byte*>(static_cast<void*>(command.output->data)), 4, std::byte{7});
    return fail ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
  });
  const Lens lens(headless::fakes::Module());
  LensInstance instance(lens, kWidth, kHeight, false);
  const Outcome first = RenderOnce(instance);
  EXPECT_EQ(first.result, kFrame);
  EXPECT_NE(first.said.find("vitrell: a frame of 3 x 2 stays as it was: PF_Err_OUT_OF_MEMORY"),
            std::string::npos)
      << first.said;
  EXPECT_EQ(std::count(first.said.begin(), first.said.end(), '\n'), 1);
  const Outcome second = RenderOnce(instance);
  EXPECT_EQ(second.result, kFrame);
  EXPECT_EQ(second.said, "");
  fail = false;
  EXPECT_EQ(RenderOnce(instance).result[0], 0x07070707U);
}

TEST_F(LensInstanceTest, AnExceptionOfTheEffectIsAFailedFrame) {
  Behave([](const Command& /*command*/) -> PF_Err { throw 1; });
  const Lens lens(headless::fakes::Module());
  LensInstance instance(lens, kWidth, kHeight, false);
  const Outcome outcome = RenderOnce(instance);
  EXPECT_EQ(outcome.result, kFrame);
  EXPECT_NE(outcome.said, "");
}

TEST_F(LensInstanceTest, AnEffectThatCannotBeSetUpMakesNoInstance) {
  headless::fakes::SetBehaviours({});
  const Lens lens(headless::fakes::Module());
  headless::fakes::SetBehaviours(
      {{PF_Cmd_GLOBAL_SETUP, [](const Command&) { return PF_Err_OUT_OF_MEMORY; }}});
  EXPECT_THROW(LensInstance(lens, kWidth, kHeight, false), headless::HostError);
}

TEST_F(LensInstanceTest, ParametersOfAnyNumberAreHarmless) {
  Behave([](const Command&) { return PF_Err_NONE; });
  const Lens lens(headless::fakes::Module());
  LensInstance instance(lens, kWidth, kHeight, false);
  const double half = 0.5;
  for (const int index : {-1, static_cast<int>(lens.parameters.size()), 1 << 30}) {
    double untouched = 9;
    instance.Set(index, &half);
    instance.Get(index, &untouched);
    EXPECT_EQ(untouched, 9);
  }
  double value = 9;
  instance.Set(0, &half);
  instance.Get(0, &value);
  EXPECT_EQ(value, 0.5);
}

}  // namespace
}  // namespace vitrell::frei0r
