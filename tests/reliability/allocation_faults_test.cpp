// Every allocation of many renders is made to fail in turn.
#include "reliability/allocation_faults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "headless/effect_host.h"
#include "reliability/fault_cases.h"
#include "reliability/watchdog.h"

namespace vitrell::reliability {
namespace {

std::shared_ptr<const headless::EffectModule> Module() {
  static const auto module = std::make_shared<const headless::EffectModule>(VITRELL_MODULE_PATH);
  return module;
}

bool IsOn(const FaultCase& faultCase, const std::string& path) {
  return std::any_of(faultCase.values.begin(), faultCase.values.end(),
                     [&](const auto& value) { return value.first == path && value.second == 1; });
}

// Nothing that gives memory may bypass the counting.
TEST(ModuleMemoryTest, EveryImportedAllocatorIsStoodBetween) {
  const AllocationFaults faults(*Module());
  for (const std::string& name : faults.Imported()) {
    const bool givesMemory = name.find("alloc") != std::string::npos ||
                             name.find("memalign") != std::string::npos ||
                             name.rfind("_Znw", 0) == 0 || name.rfind("_Zna", 0) == 0;
    // The first falls back on memory that the language's own library has set aside, and cannot
    // fail; the others are a sanitizer's.
    if (!givesMemory || name == "__cxa_allocate_exception" || name.rfind("__asan", 0) == 0)
      continue;
    EXPECT_NE(std::find(faults.Hooked().begin(), faults.Hooked().end(), name),
              faults.Hooked().end())
        << name;
  }
  EXPECT_FALSE(faults.Hooked().empty());
}

// The loader gives a thread its share of a module's thread-local memory when it is first used, and
// ends the process when there is none.
TEST(ModuleMemoryTest, NoThreadLocalMemory) {
  const AllocationFaults faults(*Module());
  EXPECT_EQ(std::count(faults.Imported().begin(), faults.Imported().end(), "__tls_get_addr"), 0);
}

TEST(ModuleMemoryTest, CountsAndFailsTheModulesOwnAllocations) {
  AllocationFaults faults(*Module());
  FaultRender render(Module(), FaultCases()[1], false);
  faults.FailNth(0);
  EXPECT_EQ(render.Render().error, PF_Err_NONE);
  EXPECT_GT(faults.Count(), 0);
  EXPECT_EQ(faults.Failed(), 0);
  faults.FailNth(1);
  EXPECT_EQ(render.Render().error, PF_Err_OUT_OF_MEMORY);
  EXPECT_EQ(faults.Failed(), 1);
  EXPECT_EQ(faults.LiveBlocks(), 0);
}

class AllocationFaultsTest : public testing::TestWithParam<bool> {
 protected:
  // Everything is released, and the next render is as if nothing had failed.
  void ExpectNoTrace(AllocationFaults& faults, FaultRender& render, PF_Err plainError,
                     const headless::WorldBuffer& exact) {
    EXPECT_EQ(faults.LiveBlocks(), 0);
    EXPECT_EQ(render.Output().Damage().value_or(""), "");
    faults.FailNth(0);
    headless::RenderResult next;
    RunOnAnotherThread("the render after the failing one", [&] { next = render.Render(); });
    EXPECT_EQ(next.error, plainError);
    EXPECT_EQ(next.complaints, std::vector<std::string>());
    EXPECT_EQ(headless::DescribeDifference(exact, render.Output()), "");
    EXPECT_EQ(faults.LiveBlocks(), 0);
  }
};

// Every failure ends the render with code 4 and leaves the output unchanged. The one exception is
// the directional blur's line, which is rasterised even when the stage is off and is then not
// needed.
TEST_P(AllocationFaultsTest, EveryAllocationOfEveryRender) {
  AllocationFaults faults(*Module());
  int injected = 0;
  for (const FaultCase& faultCase : FaultCases()) {
    SCOPED_TRACE(faultCase.name);
    FaultRender render(Module(), faultCase, GetParam());
    faults.FailNth(0);
    const PF_Err plainError = render.Render().error;
    const int count = faults.Count();
    const headless::WorldBuffer exact = render.Output();
    headless::WorldBuffer untouched = exact;
    untouched.FillBytes(0xA5);
    // A custom layer that cannot be copied ends the render before anything is asked for.
    EXPECT_EQ(count == 0, plainError == PF_Err_BAD_CALLBACK_PARAM);
    int unnoticed = 0;
    for (int n = 1; n <= count; ++n) {
      SCOPED_TRACE("allocation " + std::to_string(n) + " of " + std::to_string(count));
      for (const bool andAllLater : {false, true}) {
        faults.FailNth(n, andAllLater);
        headless::RenderResult failed;
        RunOnAnotherThread(faultCase.name, [&] { failed = render.Render(); });
        EXPECT_GE(faults.Failed(), 1);
        EXPECT_EQ(failed.complaints, std::vector<std::string>());
        if (failed.error == plainError && plainError == PF_Err_NONE && !andAllLater) {
          ++unnoticed;
          EXPECT_EQ(headless::DescribeDifference(exact, render.Output()), "");
        } else if (failed.error != PF_Err_NONE) {
          EXPECT_EQ(failed.error, PF_Err_OUT_OF_MEMORY);
          EXPECT_TRUE(headless::SamePixels(untouched, render.Output()));
        }
        ExpectNoTrace(faults, render, plainError, exact);
        ++injected;
      }
      if (HasFatalFailure() || HasNonfatalFailure()) return;
    }
    const bool lineMayFail =
        plainError == PF_Err_NONE && !IsOn(faultCase, "directional-blur.visible");
    EXPECT_EQ(unnoticed, lineMayFail ? 1 : 0);
  }
  std::cout << injected << " failing allocations in " << FaultCases().size() << " renders"
            << std::endl;
}

// The trail allocates on the host's threads.
TEST_P(AllocationFaultsTest, OnSevenThreads) {
  AllocationFaults faults(*Module());
  int injected = 0;
  for (const FaultCase& faultCase : FaultCases()) {
    SCOPED_TRACE(faultCase.name);
    FaultRender render(Module(), faultCase, GetParam());
    render.Options().threads = 7;
    faults.FailNth(0);
    const PF_Err plainError = render.Render().error;
    const int count = faults.Count();
    for (int n = 1; n <= count; n += 5) {
      faults.FailNth(n);
      headless::RenderResult failed;
      RunOnAnotherThread(faultCase.name, [&] { failed = render.Render(); });
      EXPECT_TRUE(failed.error == PF_Err_OUT_OF_MEMORY || failed.error == plainError);
      EXPECT_EQ(failed.complaints, std::vector<std::string>());
      EXPECT_EQ(faults.LiveBlocks(), 0);
      ++injected;
    }
    faults.FailNth(0);
    EXPECT_EQ(render.Render().error, plainError);
    EXPECT_EQ(faults.LiveBlocks(), 0);
  }
  std::cout << injected << " failing allocations on 7 threads" << std::endl;
}

INSTANTIATE_TEST_SUITE_P(Depths, AllocationFaultsTest, testing::Bool(),
                         [](const auto& depth) { return depth.param ? "Deep" : "Shallow"; });

}  // namespace
}  // namespace vitrell::reliability
