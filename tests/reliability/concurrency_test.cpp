// One loaded module used by many threads at once.
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <iostream>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "headless/effect_host.h"
#include "whole/random_case.h"

namespace vitrell::reliability {
namespace {

constexpr int kRenderThreads = 8;
constexpr int kIterateThreads = 7;
constexpr int kRendersOfEach = 30;
constexpr std::uint64_t kSeed = 20261106;

std::shared_ptr<const headless::EffectModule> Module() {
  static const auto module = std::make_shared<const headless::EffectModule>(VITRELL_MODULE_PATH);
  return module;
}

// One random render, its host, and its result when rendered alone.
class Job {
 public:
  explicit Job(std::uint64_t seed)
      : host_(Module()), case_(whole::MakeRandomCase(seed, host_)), untouched_(case_.output) {
    const headless::RenderResult result = Render(1);
    expectedError_ = result.error;
    expected_.emplace(case_.output);
  }

  // An empty text when the render gives what it gave alone.
  std::string RenderInCompany() {
    const headless::RenderResult result = Render(kIterateThreads);
    if (result.error != expectedError_) return "answers " + result.description;
    if (!result.complaints.empty()) return result.complaints.front();
    return headless::DescribeDifference(*expected_, case_.output);
  }

 private:
  headless::RenderResult Render(int threads) {
    case_.output = untouched_;
    headless::RenderOptions options = case_.options;
    options.threads = threads;
    options.order = headless::IterateOrder::kSinglePixels;
    return host_.Render(case_.input, case_.output, case_.custom ? &*case_.custom : nullptr,
                        options);
  }

  headless::EffectHost host_;
  whole::RandomCase case_;
  headless::WorldBuffer untouched_;
  PF_Err expectedError_ = PF_Err_NONE;
  std::optional<headless::WorldBuffer> expected_;
};

// The first complaint of any thread.
class Verdict {
 public:
  void Add(const std::string& complaint) {
    if (complaint.empty()) return;
    const std::lock_guard<std::mutex> lock(mutex_);
    if (first_.empty()) first_ = complaint;
  }
  const std::string& First() const { return first_; }

 private:
  std::mutex mutex_;
  std::string first_;
};

// What a host does on its own thread while frames are rendered.
void SendCommandsUntil(const std::atomic<bool>& ended, Verdict* verdict, std::atomic<int>* sent) {
  while (!ended) {
    headless::EffectHost host(Module());  // Sets the effect up, and down again.
    const bool fine = host.UpdatePanel() == PF_Err_NONE &&
                      host.UserChangedParam(2) == PF_Err_NONE && !host.About().empty() &&
                      host.OutData().out_flags == 0x2000400 &&
                      host.OutData().out_flags2 == 0x8000008 && host.Parameters().size() == 65 &&
                      host.Complaints().empty();
    verdict->Add(fine ? "" : "the panel or the set-up fails in company");
    ++*sent;
  }
}

TEST(ConcurrencyTest, RendersPanelsAndSetupsAtOnce) {
  std::cout << "seeds from " << kSeed << std::endl;
  // Several cases for each thread, prepared one after the other.
  std::vector<std::vector<std::unique_ptr<Job>>> jobs(kRenderThreads);
  std::uint64_t seed = kSeed;
  for (auto& ofThread : jobs) {
    for (int i = 0; i < 3; ++i) ofThread.push_back(std::make_unique<Job>(seed++));
  }
  Verdict verdict;
  std::atomic<bool> ended = false;
  std::atomic<int> sent = 0;
  std::vector<std::thread> commands;
  for (int i = 0; i < 2; ++i) {
    commands.emplace_back([&] { SendCommandsUntil(ended, &verdict, &sent); });
  }
  std::vector<std::thread> renders;
  for (auto& ofThread : jobs) {
    renders.emplace_back([&verdict, &ofThread] {
      for (int i = 0; i < kRendersOfEach; ++i) {
        verdict.Add(ofThread[static_cast<std::size_t>(i) % ofThread.size()]->RenderInCompany());
      }
    });
  }
  for (std::thread& thread : renders) thread.join();
  ended = true;
  for (std::thread& thread : commands) thread.join();
  EXPECT_EQ(verdict.First(), "");
  EXPECT_GT(sent, 0);
  std::cout << kRenderThreads * kRendersOfEach << " renders on " << kRenderThreads
            << " threads, passes on " << kIterateThreads << ", beside " << sent
            << " set-ups with panel commands" << std::endl;
}

// Rays that cross write the same pixels.
TEST(ConcurrencyTest, TrailOnManyThreadsHasNoRaces) {
  for (const bool deep : {false, true}) {
    headless::EffectHost host(Module());
    host.SetCheckbox(host.IndexOf("fast-blur.visible"), false);
    host.SetFloat(host.IndexOf("trail.amount"), 90);
    headless::WorldBuffer input(61, 47, deep, {.rowPadding = 4});
    input.FillNoise(kSeed);
    headless::WorldBuffer alone(61, 47, deep);
    ASSERT_EQ(host.Render(input, alone).error, PF_Err_NONE);
    for (int i = 0; i < 10; ++i) {
      headless::WorldBuffer output(61, 47, deep);
      headless::RenderOptions options;
      options.threads = kIterateThreads;
      options.order = headless::IterateOrder::kSinglePixels;
      ASSERT_EQ(host.Render(input, output, nullptr, options).error, PF_Err_NONE);
      ASSERT_EQ(headless::DescribeDifference(alone, output), "");
    }
  }
}

}  // namespace
}  // namespace vitrell::reliability
