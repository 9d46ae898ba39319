// One frame through an effect of its own: given up in time, and beside another one.
#include "panel/model/frame_effect.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <vector>

#include "headless/fakes/fake_effect.h"
#include "panel/model/answering.h"
#include "panel/model/module_copy.h"
#include "panel/test_picture.h"

namespace vitrell::panel {
namespace {

std::shared_ptr<const headless::EffectModule> RealModule() {
  return std::make_shared<const headless::EffectModule>(std::filesystem::path(VITRELL_MODULE_PATH));
}

look::Panel RealPanel() {
  headless::EffectHost host(RealModule());
  return look::MakePanel(host.Parameters());
}

TEST(ModuleCopyTest, AnEffectLoadedAgainIsAnotherOneAndRendersTheSame) {
  const auto module = RealModule();
  const auto copy = LoadAgain(module);
  EXPECT_NE(copy->EntryPoint(), module->EntryPoint());
  headless::WorldBuffer input(64, 36, false);
  input.FillNoise(3);
  std::vector<headless::WorldBuffer> results;
  for (const auto& one : {module, copy}) {
    headless::EffectHost host(one);
    results.emplace_back(64, 36, false);
    ASSERT_TRUE(host.Render(input, results.back()).Ok());
  }
  EXPECT_EQ(headless::DescribeDifference(results[0], results[1]), "");
  // What is linked has no file.
  const auto linked = headless::fakes::Module();
  EXPECT_EQ(LoadAgain(linked), linked);
}

TEST(FrameEffectTest, WhatTakesTooLongIsGivenUp) {
  FrameEffect effect(RealModule());
  const look::Panel panel = RealPanel();
  const auto frame = NoiseSource(160, 90, false).Read(0);
  std::atomic<bool> cancel = false;
  EffectOrder order{frame, look::Settings(panel), 1, &cancel, {}};
  EXPECT_FALSE(effect.Render(order).stopped);
  order.latest = std::chrono::steady_clock::now();
  EXPECT_TRUE(effect.Render(order).stopped);
}

// Stopped at whatever moment: there is all of it or nothing.
TEST(FrameEffectTest, AnAnswerHasTheMaskThatWasAskedFor) {
  FrameEffect effect(RealModule());
  const look::Panel panel = RealPanel();
  const auto frame = NoiseSource(160, 90, false).Read(0);
  std::atomic<bool> cancel = false;
  EffectOrder order{frame, look::Settings(panel), 1, &cancel, {}};
  const auto start = std::chrono::steady_clock::now();
  RenderAnswer whole;
  ASSERT_TRUE(RenderInto(whole, effect, order, true));
  ASSERT_FALSE(whole.mask.isNull());
  const auto time = std::chrono::steady_clock::now() - start;
  constexpr int kSteps = 60;
  int stopped = 0;
  for (int i = 0; i < kSteps; ++i) {
    RenderAnswer answer;
    cancel = false;
    order.latest = std::chrono::steady_clock::now() + time * i / (kSteps / 2);
    const bool done = RenderInto(answer, effect, order, true);
    stopped += done ? 0 : 1;
    EXPECT_EQ(answer.image.isNull(), !done) << i;
    EXPECT_EQ(answer.mask.isNull(), !done) << i;
  }
  EXPECT_GT(stopped, 0);
}

}  // namespace
}  // namespace vitrell::panel
