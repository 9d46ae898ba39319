// How small a frame is chosen, and when that is chosen anew.
#include "panel/model/preview_budget.h"

#include <gtest/gtest.h>

#include "headless/effect_host.h"
#include "panel/model/control_watch.h"

namespace vitrell::panel {
namespace {

// Renders at a steady speed until nothing changes any more.
class PreviewBudgetTest : public testing::Test {
 protected:
  static constexpr std::int64_t kPixels = std::int64_t{1920} * 1080;

  std::int64_t Shown() const {
    const int divisor = budget_.DivisorFor(kPixels);
    return kPixels / (std::int64_t{divisor} * divisor);
  }
  int Settle(double secondsOfFrame) {
    for (int i = 0; i < 40; ++i) {
      const auto shown = static_cast<double>(Shown());
      budget_.Learn(Shown(), secondsOfFrame * shown / kPixels, true);
    }
    return budget_.DivisorFor(kPixels);
  }

  PreviewBudget budget_;
};

TEST_F(PreviewBudgetTest, SlowFramesBecomeSmallerAndQuickOnesLarger) {
  // A sixteenth of 0.3 s is 19 ms.
  EXPECT_EQ(Settle(0.010), 1);
  EXPECT_EQ(Settle(0.3), 4);
  EXPECT_GT(Settle(20.0), 4);
}

TEST_F(PreviewBudgetTest, AnEarlyStopSaysNothingAndALateOneMuch) {
  EXPECT_EQ(Settle(0.3), 4);
  for (int i = 0; i < 20; ++i) budget_.Learn(Shown(), 0.001, false);
  EXPECT_EQ(budget_.DivisorFor(kPixels), 4);
  // Nobody knows how far from its end it was.
  budget_.Learn(Shown(), 0.026, false);
  EXPECT_GE(budget_.DivisorFor(kPixels), 8);
}

TEST_F(PreviewBudgetTest, WhatIsNotKnownIsTriedAtHalfTheSize) {
  EXPECT_EQ(Settle(0.3), 4);
  budget_.Forget();
  EXPECT_EQ(budget_.DivisorFor(kPixels), 8);
  // However often: never as small as what was measured may become.
  for (int i = 0; i < 50; ++i) budget_.Forget();
  EXPECT_EQ(budget_.DivisorFor(kPixels), 12);
  EXPECT_EQ(Settle(0.3), 4);
}

TEST(ControlWatchTest, TellsWhenTheHandGoesToAnotherControl) {
  headless::EffectHost host{std::filesystem::path(VITRELL_MODULE_PATH)};
  const look::Panel panel = look::MakePanel(host.Parameters());
  look::Settings settings(panel);
  const auto set = [&](const char* assignment) {
    settings.Set(assignment);
    return settings;
  };
  ControlWatch watch;
  EXPECT_FALSE(watch.SeesOther(settings));
  EXPECT_TRUE(watch.SeesOther(set("lens.feather=10")));
  EXPECT_FALSE(watch.SeesOther(set("lens.feather=11")));
  EXPECT_FALSE(watch.SeesOther(settings));
  EXPECT_TRUE(watch.SeesOther(set("fast-blur.amount=3")));
  EXPECT_TRUE(watch.SeesOther(set("lens.feather=12")));
}

}  // namespace
}  // namespace vitrell::panel
