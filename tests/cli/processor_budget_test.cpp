// Who may begin more work.
#include "cli/processor_budget.h"

#include <gtest/gtest.h>

namespace vitrell::cli {
namespace {

TEST(ProcessorBudgetTest, WaitsUntilTheProcessorsCouldHaveDoneTheWork) {
  ProcessorBudget budget(2);
  budget.Account(100, 40);  // where both clocks began does not matter
  EXPECT_TRUE(budget.HasRoom());
  // Four threads for a second.
  budget.Account(101, 44);
  EXPECT_FALSE(budget.HasRoom());
  // They stop: two processors need one more second, less what may be used at once.
  budget.Account(101.8, 44);
  EXPECT_FALSE(budget.HasRoom());
  budget.Account(102, 44);
  EXPECT_TRUE(budget.HasRoom());
}

TEST(ProcessorBudgetTest, NeverHoldsUpAsManyThreads) {
  ProcessorBudget budget(3);
  for (int i = 0; i < 1000; ++i) {
    budget.Account(0.01 * i, 0.03 * i);
    ASSERT_TRUE(budget.HasRoom()) << i;
  }
}

// Otherwise a slow pipe would allow everything for long afterwards.
TEST(ProcessorBudgetTest, SavesLittleOfALongRest) {
  ProcessorBudget budget(1);
  budget.Account(0, 0);
  budget.Account(3600, 0);
  budget.Account(3601, 2);
  EXPECT_FALSE(budget.HasRoom());
}

TEST(ProcessorBudgetTest, AProcessThatEndsTakesItsWorkAlong) {
  ProcessorBudget budget(1);
  budget.Account(0, 50);
  budget.Account(1, 20);
  EXPECT_TRUE(budget.HasRoom());
  budget.Account(2, 23);
  EXPECT_FALSE(budget.HasRoom());
}

TEST(ProcessorBudgetTest, NoneIsNoLimit) {
  ProcessorBudget budget(0);
  budget.Account(0, 0);
  budget.Account(0.1, 1000);
  EXPECT_TRUE(budget.HasRoom());
}

}  // namespace
}  // namespace vitrell::cli
