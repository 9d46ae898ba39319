// Scratch blocks, each lent to one thread.
#include "pass/workspaces.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

namespace vitrell {
namespace {

using Loan = Workspaces<std::uint64_t>::Loan;

TEST(WorkspacesTest, LentBlocksAreApart) {
  constexpr std::size_t kValues = 5;
  Workspaces<std::uint64_t> workspaces;
  ASSERT_TRUE(workspaces.Reset(kValues));
  std::vector<std::unique_ptr<Loan>> loans;
  std::vector<std::uint64_t*> blocks;
  for (int i = 0; i < 16; ++i) {
    loans.push_back(std::make_unique<Loan>(&workspaces));
    std::uint64_t* const block = loans.back()->values();
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % sizeof(std::uint64_t), 0U);
    for (const std::uint64_t* const other : blocks) {
      EXPECT_TRUE(block + kValues <= other || other + kValues <= block);
    }
    block[kValues - 1] = 1;  // Sanitizers detect a block beyond the memory.
    blocks.push_back(block);
  }
  const Loan none(&workspaces);
  EXPECT_EQ(none.values(), nullptr);
}

TEST(WorkspacesTest, AReturnedBlockIsLentAgain) {
  Workspaces<std::uint64_t> workspaces;
  ASSERT_TRUE(workspaces.Reset(3));
  std::vector<std::unique_ptr<Loan>> loans;
  for (int i = 0; i < 16; ++i) {
    loans.push_back(std::make_unique<Loan>(&workspaces));
  }
  const std::uint64_t* const block = loans[5]->values();
  loans[5].reset();
  const Loan again(&workspaces);
  EXPECT_EQ(again.values(), block);
  const Loan none(&workspaces);
  EXPECT_EQ(none.values(), nullptr);
}

TEST(WorkspacesTest, ThreadsNeverShareABlock) {
  Workspaces<std::uint64_t> workspaces;
  ASSERT_TRUE(workspaces.Reset(2));
  const auto work = [&workspaces](std::uint64_t thread) {
    for (std::uint64_t i = 0; i < 3000; ++i) {
      const Loan loan(&workspaces);
      ASSERT_NE(loan.values(), nullptr);
      loan.values()[0] = thread;
      loan.values()[1] = i;
      ASSERT_EQ(loan.values()[0], thread);
      ASSERT_EQ(loan.values()[1], i);
    }
  };
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (std::uint64_t thread = 0; thread < 4; ++thread) {
    threads.emplace_back(work, thread);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

}  // namespace
}  // namespace vitrell
