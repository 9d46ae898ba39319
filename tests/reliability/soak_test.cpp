// Thousands of renders in one process, during which nothing may grow.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "headless/effect_host.h"
#include "reliability/process_usage.h"
#include "reliability/sanitizers.h"
#include "whole/random_case.h"

namespace vitrell::reliability {
namespace {

constexpr std::uint64_t kSeed = 20261107;

// 10,000 unless VITRELL_SOAK_RENDERS says otherwise. Few with a sanitizer, which holds memory
// itself and reports leaks anyway.
int RenderCount() {
  const char* const wanted = std::getenv("VITRELL_SOAK_RENDERS");
  if (wanted != nullptr) return std::atoi(wanted);
  return kSanitized ? 300 : 10000;
}

void Print(int renders, const ProcessUsage& usage) {
  std::cout << renders << " renders: resident " << usage.residentKb << " kB, heap " << usage.heapKb
            << " kB, " << usage.handles << " handles, " << usage.threads << " threads" << std::endl;
}

// A new host every hundred renders, with set-up and set-down; two threads at a time.
TEST(SoakTest, NothingGrows) {
  const int count = RenderCount();
  ASSERT_GE(count, 100) << "VITRELL_SOAK_RENDERS must be 100 or more";
  const int warmUp = count / 10;
  const auto module = std::make_shared<const headless::EffectModule>(VITRELL_MODULE_PATH);
  std::cout << "seeds from " << kSeed << std::endl;
  std::unique_ptr<headless::EffectHost> host;
  ProcessUsage start;
  ProcessUsage largest;
  for (int i = 0; i < count; ++i) {
    if (i % 100 == 0) host = std::make_unique<headless::EffectHost>(module);
    whole::RandomCase one = whole::MakeRandomCase(kSeed + static_cast<std::uint64_t>(i), *host);
    one.options.threads = 2;
    const headless::RenderResult result =
        host->Render(one.input, one.output, one.custom ? &*one.custom : nullptr, one.options);
    ASSERT_EQ(result.complaints, std::vector<std::string>()) << "seed " << one.seed;
    if (i + 1 == warmUp) {
      start = MeasureUsage();
      largest = start;
      Print(i + 1, start);
    } else if (i > warmUp && (i + 1) % std::max(count / 10, 1) == 0) {
      const ProcessUsage now = MeasureUsage();
      Print(i + 1, now);
      largest.residentKb = std::max(largest.residentKb, now.residentKb);
      largest.heapKb = std::max(largest.heapKb, now.heapKb);
      largest.handles = std::max(largest.handles, now.handles);
      largest.threads = std::max(largest.threads, now.threads);
    }
  }
  // The spare worlds of the host come and go with the pictures' sizes.
  constexpr long kMostGrowthKb = 2048;
  if (!kSanitized) {
    EXPECT_LE(largest.residentKb, start.residentKb + kMostGrowthKb);
    EXPECT_LE(largest.heapKb, start.heapKb + kMostGrowthKb);
  }
  EXPECT_EQ(largest.handles, start.handles);
  EXPECT_EQ(largest.threads, start.threads);
}

}  // namespace
}  // namespace vitrell::reliability
